// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <expected>
#include <vector>

namespace dorvantel {

/// An invented CV as its text source has it. A plain value.
struct SampleCv {
    struct Entry {
        QString title; ///< a job or a degree; empty for the text of a section
        QString place;
        QString dates;
        QStringList paragraphs;
        QStringList bullets;
    };
    struct Section {
        QString title;
        bool aside = false; ///< in the narrow column where the layout has one
        std::vector<Entry> entries;
        QStringList tags; ///< short values: skills, languages
    };
    enum class Layout {
        Classic, ///< one column ("clasico")
        Band,    ///< a coloured head, titles beside the text ("moderno")
        Sidebar, ///< two columns ("lateral")
        Scan,    ///< one column as an image, without a text layer ("escaneado")
    };
    QString name;
    QString profession;
    QString email;
    QString gender; ///< "Femenino" or "Masculino"
    QString phone;
    QString city;
    QString accent; ///< "#rrggbb"
    Layout layout = Layout::Classic;
    int pages = 1; ///< how many it takes when drawn
    std::vector<Section> sections;
};

/// Reads a source: "key: value" lines between two "---", then "## Section" ("## < Section" goes aside), "### title |
/// place | dates", "- bullet", "* tag" and paragraphs. The error names the line.
std::expected<SampleCv, QString> parseSampleCv(const QString& source);

/// The CV as text, in reading order.
QString plainText(const SampleCv& cv);

/// The sources that are compiled in: the eight that come as PDF files ("src") or the others ("more"), as (file name
/// without ending, source), in the order of their names.
std::vector<std::pair<QString, QString>> sampleSources(const QString& folder);

} // namespace dorvantel
