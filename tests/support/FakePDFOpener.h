// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/PDFDocument.h"
#include "platform/PDFOpener.h"
#include "tests/support/FakePDFPageRenderer.h"

#include <QPointer>

#include <utility>
#include <vector>

namespace dorvantel::test {

/// Opens nothing by itself: each opening waits until the test answers it by its index (0 is the first ever).
class FakePDFOpener final : public PDFOpener {
public:
    void open(const QByteArray& bytes, QObject* context, Completion completion) override {
        m_openings.push_back({bytes, context, std::move(completion)});
    }

    /// The renderer answers when the test lets it.
    std::unique_ptr<PDFPageRenderer> makeRenderer(std::shared_ptr<const PDFDocument>) const override {
        auto renderer = std::make_unique<FakePDFPageRenderer>();
        m_renderers.push_back(renderer.get());
        return renderer;
    }
    /// The renderer made last; null when it is gone or there was none.
    FakePDFPageRenderer* renderer() const { return m_renderers.empty() ? nullptr : m_renderers.back().get(); }

    qsizetype openings() const { return static_cast<qsizetype>(m_openings.size()); }
    const QByteArray& bytes(std::size_t opening) const { return m_openings.at(opening).bytes; }
    bool isGivenUp(std::size_t opening) const { return !m_openings.at(opening).context; }

    /// The bytes are a PDF with these page texts.
    void succeed(std::size_t opening, const QStringList& pageTexts) {
        answer(opening, std::make_shared<PDFDocument>(m_openings.at(opening).bytes, pageTexts));
    }
    void fail(std::size_t opening) { answer(opening, nullptr); }

private:
    struct Opening {
        QByteArray bytes;
        QPointer<QObject> context;
        Completion completion;
    };
    void answer(std::size_t opening, const std::shared_ptr<PDFDocument>& document) {
        if (m_openings.at(opening).context) {
            // Taken out first: a completion may open the next one.
            const Completion completion = std::exchange(m_openings.at(opening).completion, nullptr);
            completion(document);
        }
    }

    std::vector<Opening> m_openings;
    mutable std::vector<QPointer<FakePDFPageRenderer>> m_renderers;
};

} // namespace dorvantel::test
