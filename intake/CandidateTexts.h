// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>
#include <vector>

namespace dorvantel {

struct DBRecordRepresentation;

/// A piece of a text that is shown in one way. A plain value.
struct TextRun {
    enum class Look { Plain, Bold, Secondary };

    QString text;
    Look look = Look::Plain;

    bool operator==(const TextRun&) const = default;
};

/// Runs follow each other directly; what is to begin on a new line brings its line feed.
using TextRuns = std::vector<TextRun>;

// What the candidate's detail view shows of the prompts and their answers. `cvText` is absent when there is no CV to
// show. Pure; any thread.

/// The extraction prompt as the recruiter would see it, which is not quite the prompt that is sent: it retells the
/// fields without the technical skills.
TextRuns shownExtractionPrompt(const std::optional<QString>& cvText);

/// The invitation mail prompt, in blocks.
TextRuns shownMailPrompt(const std::optional<QString>& cvText);

/// The stored mail in braces, with nothing escaped, and the stored gender.
TextRuns shownMailAnswer(const DBRecordRepresentation& record);

/// The stored structured data as indented JSON.
QString shownCVData(const DBRecordRepresentation& record);

} // namespace dorvantel
