// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "modelserver/OllamaService.h"

#include <QWidget>

class QPropertyAnimation;
class QPushButton;

namespace dorvantel {

class AppSettings;
class MarkedRow;
class ModelChoice;

/// The settings page for the two models. Loads the server's models whenever it appears, through a service of its own;
/// what is chosen reaches the settings by "Save Selection". `settings` and `session` outlive it. Widgets have object
/// names, by which a test finds them.
class ModelSettingsView : public QWidget {
    Q_OBJECT

public:
    /// `timeout` is how long the model server may be silent.
    ModelSettingsView(AppSettings& settings, HttpSession& session,
                      std::chrono::milliseconds timeout = std::chrono::seconds(60), QWidget* parent = nullptr);

    /// What the pickers say, saved or not.
    const std::optional<QString>& selectedEmbeddingModel() const;
    const std::optional<QString>& selectedLLMModel() const;

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    QWidget* loadingSection();
    QWidget* statusSection();
    void connectParts();
    void appear();
    void showLoading();
    void showModels();
    void showStatus();
    void showSaveable();
    void save();

    AppSettings& m_settings;
    OllamaService m_ollamaService;
    MarkedRow* m_loading;
    MarkedRow* m_loaded;
    MarkedRow* m_modelError;
    MarkedRow* m_configured;
    MarkedRow* m_notConfigured;
    ModelChoice* m_embedding;
    ModelChoice* m_language;
    QPushButton* m_refresh;
    QPushButton* m_save;
    QPropertyAnimation* m_turning;
};

} // namespace dorvantel
