// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "modelserver/AppSettings.h"

#include <QSettings>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

const QString urlKey = u"ollamaURL"_s;
const QString llmKey = u"selectedLLMModel"_s;
const QString embeddingKey = u"selectedEmbeddingModel"_s;

} // namespace

AppSettings::AppSettings(std::unique_ptr<QSettings> store, QObject* parent)
    : QObject(parent)
    , m_store(std::move(store))
    , m_ollamaURL(stored(urlKey).value_or(defaultURL.toString())) {
    setSelectedEmbeddingModel(stored(embeddingKey));
    setSelectedLLMModel(stored(llmKey));
}

AppSettings::~AppSettings() = default;

AppSettings& AppSettings::shared() {
    // Never destroyed: QSettings must not outlive the application's own statics, and every change is stored already.
    static auto* const instance = [] {
        auto store = std::make_unique<QSettings>(u"Dorvantel"_s, u"Dorvantel"_s);
        // A key that was removed must not come back from the defaults of the machine.
        store->setFallbacksEnabled(false);
        return new AppSettings(std::move(store));
    }();
    return *instance;
}

void AppSettings::setOllamaURL(const QString& url) {
    const bool changed = url != m_ollamaURL;
    m_ollamaURL = url;
    persist(urlKey, url);
    if (changed) {
        Q_EMIT ollamaURLChanged();
    }
}

void AppSettings::setSelectedLLMModel(const std::optional<QString>& name) {
    setModel(m_selectedLLMModel, llmKey, name, &AppSettings::selectedLLMModelChanged);
}

void AppSettings::setSelectedEmbeddingModel(const std::optional<QString>& name) {
    setModel(m_selectedEmbeddingModel, embeddingKey, name, &AppSettings::selectedEmbeddingModelChanged);
}

void AppSettings::setModel(std::optional<QString>& property, const QString& key, const std::optional<QString>& name,
                           void (AppSettings::*changed)()) {
    const bool differs = name != property;
    const bool bothChosenBefore = bothModelsChosen();
    property = name;
    persist(key, property);
    if (differs) {
        Q_EMIT(this->*changed)();
    }
    if (bothModelsChosen() != bothChosenBefore) {
        Q_EMIT bothModelsChosenChanged();
    }
}

std::optional<QString> AppSettings::stored(const QString& key) const {
    const QVariant value = m_store->value(key);
    if (value.typeId() != QMetaType::QString) {
        return std::nullopt;
    }
    return value.toString();
}

void AppSettings::persist(const QString& key, const std::optional<QString>& value) {
    if (value) {
        m_store->setValue(key, *value);
    } else {
        m_store->remove(key);
    }
    m_store->sync();
    if (m_store->status() == QSettings::AccessError && !std::exchange(m_warned, true)) {
        qWarning("The settings cannot be written to %s", qUtf8Printable(m_store->fileName()));
    }
}

} // namespace dorvantel
