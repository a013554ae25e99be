// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "app/tour/Tour.h"
#include "app/tour/TourInput.h"
#include "data/SearchResults.h"
#include "search/InvitationLink.h"
#include "search/SearchResultDetailUIView.h"

#include <QAbstractButton>
#include <QDialog>
#include <QLineEdit>
#include <QTest>

#include <algorithm>
#include <stdexcept>

namespace dorvantel {

using namespace Qt::StringLiterals;

void Tour::takeSearch() {
    openWindow();
    clickCandidate(u"Buscar"_s);
    picture(u"buscar"_s);

    auto* skills = find(u"techSkills"_s).findChild<QLineEdit*>();
    typeText(*skills, u"excel,"_s);
    press(u"searchButton"_s);
    waitUntil(u"the structured search finds someone"_s, [this] { return !results().isEmpty(); });
    picture(u"busqueda-estructurada"_s);

    press(u"clearButton"_s);
    waitUntil(u"clearing takes the results away"_s, [this] { return results().isEmpty(); });
    typeText(find(u"freeText"_s), u"Contable con experiencia en cierres mensuales y auditoría"_s);
    // The vectors of new candidates are worked out in the background: the first answers may find nobody.
    waitUntil(u"the description finds someone"_s, [this] {
        press(u"searchButton"_s);
        QTest::qWait(200);
        return !results().isEmpty();
    });
    picture(u"busqueda-por-descripcion"_s);

    const auto inFirstResult = [this](const QString& name) {
        return results().first()->findChild<QAbstractButton*>(name);
    };
    QTest::mouseClick(inFirstResult(u"disclosure"_s), Qt::LeftButton);
    picture(u"resultado-abierto"_s);
    QTest::mouseClick(inFirstResult(u"cv"_s), Qt::LeftButton);
    waitUntil(u"the preview opens"_s, [this] {
        auto* preview = window().findChild<QDialog*>(u"pdfPreview"_s);
        return preview && preview->isVisible();
    });
    waitForFirstPage(*window().findChild<QDialog*>(u"pdfPreview"_s));
    picture(u"vista-previa"_s);
    press(u"close"_s);
    QTest::mouseClick(inFirstResult(u"invite"_s), Qt::LeftButton);
    const auto* first = static_cast<SearchResultDetailUIView*>(results().first());
    if (m_mail.caught() != invitationLink(first->result().email, first->result().invitationMail)) {
        throw std::runtime_error("the invitation is handed to the mail program");
    }
}

QList<QWidget*> Tour::results() const {
    QList<QWidget*> visible;
    for (auto* row : window().findChildren<SearchResultDetailUIView*>()) {
        if (row->isVisible()) {
            visible.append(row);
        }
    }
    std::ranges::sort(visible, {}, [](const QWidget* row) { return row->y(); });
    return visible;
}

} // namespace dorvantel
