// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

#include <functional>
#include <utility>

namespace dorvantel {

/// A token field's hold on the list of tokens that its owner keeps: reads see the list as it is, every write that
/// changes it is reported at once. The list must outlive the binding.
class TokenBinding {
public:
    TokenBinding(QStringList& list, std::function<void()> changed)
        : m_list(list)
        , m_changed(std::move(changed)) {}

    const QStringList& tokens() const { return m_list; }

    void set(const QStringList& tokens) {
        if (m_list != tokens) {
            m_list = tokens;
            m_changed();
        }
    }

    void append(const QStringList& tokens) {
        if (!tokens.isEmpty()) {
            m_list.append(tokens);
            m_changed();
        }
    }

private:
    QStringList& m_list;
    std::function<void()> m_changed;
};

} // namespace dorvantel
