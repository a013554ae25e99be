// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QWidget>

#include <chrono>
#include <functional>
#include <optional>

class QLabel;
class QLineEdit;
class QPushButton;

namespace dorvantel {

class AppSettings;
class MarkedRow;

/// Runs something after a while, unless the context is gone by then.
using RunLater = std::function<void(std::chrono::milliseconds, QObject* context, std::function<void()>)>;
RunLater runLaterOnMainQueue();

/// The settings page for the address of the model server. The address is edited as a copy and stored only by "Save",
/// when it looks like one. Widgets have object names, by which a test finds them.
class OllamaSettingsView : public QWidget {
    Q_OBJECT

public:
    explicit OllamaSettingsView(AppSettings& settings, RunLater runLater = runLaterOnMainQueue(),
                                QWidget* parent = nullptr);

    bool showingSaveConfirmation() const { return m_showingSaveConfirmation; }

private:
    QWidget* addressRow();
    QWidget* examples();
    void save();
    void setShowingSaveConfirmation(bool showing);
    void showOutcome(const std::optional<QString>& errorMessage, bool showing);

    AppSettings& m_settings;
    RunLater m_runLater;
    bool m_showingSaveConfirmation = false;
    QLineEdit* m_urlText;
    MarkedRow* m_errorMessage;
    MarkedRow* m_saveConfirmation;
    QPushButton* m_save;
};

} // namespace dorvantel
