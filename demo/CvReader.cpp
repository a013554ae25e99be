// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "demo/CvReader.h"

#include "demo/CandidateGender.h"
#include "demo/CvName.h"
#include "demo/CvProfession.h"
#include "demo/CvSkills.h"
#include "demo/CvSummary.h"
#include "demo/CvText.h"

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

// For a CV that is all lists: what they say, as a sentence.
QString summaryFrom(const CvFacts& facts) {
    QStringList sentences;
    QStringList skills = facts.techSkills;
    skills.removeIf([](const QString& skill) { return skill.startsWith("Permiso de conducir"_L1); });
    if (!skills.isEmpty()) {
        const QString who = facts.profession.isEmpty() ? u"Profesional"_s : facts.profession;
        sentences.append(who + u" con conocimientos de "_s + enumeration(skills, 4) + u"."_s);
    } else if (!facts.profession.isEmpty()) {
        sentences.append(facts.profession + u"."_s);
    }
    if (facts.languages.size() > 1) {
        sentences.append(u"Idiomas: "_s + enumeration(facts.languages, 4) + u"."_s);
    }
    return sentences.join(u' ');
}

} // namespace

QString enumeration(const QStringList& values, qsizetype most) {
    const QStringList first = values.mid(0, most);
    if (first.size() < 2) {
        return first.value(0);
    }
    const QString last = foldedKey(first.last());
    const QString joint = last.startsWith(u'i') || last.startsWith("hi"_L1) ? u" e "_s : u" y "_s;
    return first.mid(0, first.size() - 1).join(u", "_s) + joint + first.last();
}

CvFacts readCv(const QString& cvText) {
    const CvText cv(cvText);
    CvFacts facts;
    facts.email = emailIn(cv.text().original());
    const FoundName name = nameIn(cv, facts.email);
    facts.name = name.name;
    facts.gender = genderOfCandidate(facts.name, cv.text());
    facts.profession = professionIn(cv, name, facts.gender);
    facts.softSkills = softSkillsIn(cv);
    facts.techSkills = technicalSkillsIn(cv);
    facts.languages = languagesIn(cv);
    facts.summary = summaryIn(cv);
    if (facts.summary.isEmpty()) {
        facts.summary = summaryFrom(facts);
    }
    return facts;
}

} // namespace dorvantel
