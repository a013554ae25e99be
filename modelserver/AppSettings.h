// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

#include <memory>
#include <optional>

class QSettings;

namespace dorvantel {

/// Which model server and which two models the program works with. Lives on the UI thread. Every change is in the
/// settings file before the setter returns, so that another process reads it; when that fails, a line on standard
/// error says so once, and the value holds until the process ends. Nothing is checked here.
class AppSettings : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString ollamaURL READ ollamaURL WRITE setOllamaURL NOTIFY ollamaURLChanged)
    Q_PROPERTY(std::optional<QString> selectedLLMModel READ selectedLLMModel WRITE setSelectedLLMModel NOTIFY
                   selectedLLMModelChanged)
    Q_PROPERTY(std::optional<QString> selectedEmbeddingModel READ selectedEmbeddingModel WRITE setSelectedEmbeddingModel
                   NOTIFY selectedEmbeddingModelChanged)
    Q_PROPERTY(bool bothModelsChosen READ bothModelsChosen NOTIFY bothModelsChosenChanged)

public:
    /// The address as long as the user has chosen none.
    static constexpr QStringView defaultURL = u"http://localhost:11434";

    /// Loads what `store` holds. A store that cannot be read counts as empty.
    explicit AppSettings(std::unique_ptr<QSettings> store, QObject* parent = nullptr);
    ~AppSettings() override;

    /// The user's settings. Made on first use, which must be on the UI thread, and kept until the process ends.
    static AppSettings& shared();

    const QString& ollamaURL() const { return m_ollamaURL; }
    void setOllamaURL(const QString& url);

    /// A model's name exactly as the server lists it.
    const std::optional<QString>& selectedLLMModel() const { return m_selectedLLMModel; }
    void setSelectedLLMModel(const std::optional<QString>& name);

    const std::optional<QString>& selectedEmbeddingModel() const { return m_selectedEmbeddingModel; }
    void setSelectedEmbeddingModel(const std::optional<QString>& name);

    bool bothModelsChosen() const { return m_selectedLLMModel && m_selectedEmbeddingModel; }

Q_SIGNALS:
    void ollamaURLChanged();
    void selectedLLMModelChanged();
    void selectedEmbeddingModelChanged();
    void bothModelsChosenChanged();

private:
    void persist(const QString& key, const std::optional<QString>& value);
    std::optional<QString> stored(const QString& key) const;
    void setModel(std::optional<QString>& property, const QString& key, const std::optional<QString>& name,
                  void (AppSettings::*changed)());

    std::unique_ptr<QSettings> m_store;
    bool m_warned = false;
    QString m_ollamaURL;
    std::optional<QString> m_selectedLLMModel;
    std::optional<QString> m_selectedEmbeddingModel;
};

} // namespace dorvantel
