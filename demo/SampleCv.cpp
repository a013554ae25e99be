// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "demo/SampleCv.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

static void registerSampleFiles() {
    Q_INIT_RESOURCE(demo_samples);
}

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

using Layout = SampleCv::Layout;

bool setLayout(SampleCv& cv, const QString& name) {
    const std::vector<std::pair<QString, Layout>> layouts = {{u"clasico"_s, Layout::Classic},
                                                             {u"moderno"_s, Layout::Band},
                                                             {u"lateral"_s, Layout::Sidebar},
                                                             {u"escaneado"_s, Layout::Scan}};
    for (const auto& [known, layout] : layouts) {
        if (known == name) {
            cv.layout = layout;
            return true;
        }
    }
    return false;
}

bool setField(SampleCv& cv, const QString& key, const QString& value) {
    const std::vector<std::pair<QString, QString*>> fields = {
        {u"name"_s, &cv.name},     {u"profession"_s, &cv.profession}, {u"email"_s, &cv.email},
        {u"gender"_s, &cv.gender}, {u"phone"_s, &cv.phone},           {u"city"_s, &cv.city},
        {u"accent"_s, &cv.accent}};
    for (const auto& [known, field] : fields) {
        if (known == key) {
            *field = value;
            return true;
        }
    }
    if (key == "pages"_L1) {
        bool isNumber = false;
        cv.pages = value.toInt(&isNumber);
        return isNumber;
    }
    return key == "layout"_L1 && setLayout(cv, value);
}

SampleCv::Entry entryFrom(const QString& line) {
    const QStringList parts = line.split(u" | "_s);
    return {parts.value(0), parts.value(1), parts.value(2), {}, {}};
}

SampleCv::Section sectionFrom(const QString& title) {
    const bool aside = title.startsWith("< "_L1);
    return {aside ? title.mid(2) : title, aside, {}, {}};
}

SampleCv::Entry& openEntry(SampleCv::Section& section) {
    if (section.entries.empty()) {
        section.entries.push_back({});
    }
    return section.entries.back();
}

// A source wraps its paragraphs and bullets; a blank line ends them.
void addText(SampleCv::Section& section, const QString& line, bool continues) {
    SampleCv::Entry& entry = openEntry(section);
    if (line.startsWith("- "_L1)) {
        entry.bullets.append(line.mid(2));
    } else if (continues && !entry.bullets.isEmpty()) {
        entry.bullets.last() += u' ' + line;
    } else if (continues && !entry.paragraphs.isEmpty()) {
        entry.paragraphs.last() += u' ' + line;
    } else {
        entry.paragraphs.append(line);
    }
}

void addLine(SampleCv& cv, const QString& line, bool continues) {
    if (line.startsWith("## "_L1)) {
        cv.sections.push_back(sectionFrom(line.mid(3)));
        return;
    }
    SampleCv::Section& section = cv.sections.back();
    if (line.startsWith("### "_L1)) {
        section.entries.push_back(entryFrom(line.mid(4)));
    } else if (line.startsWith("* "_L1)) {
        section.tags.append(line.mid(2));
    } else {
        addText(section, line, continues);
    }
}

} // namespace

std::expected<SampleCv, QString> parseSampleCv(const QString& source) {
    SampleCv cv;
    const QStringList lines = source.split(u'\n');
    bool inHead = false;
    bool continues = false;
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const QString line = lines[i].trimmed();
        const QString place = u"line %1: "_s.arg(i + 1);
        if (line == "---"_L1) {
            inHead = i == 0;
        } else if (inHead) {
            if (!setField(cv, line.section(u": "_s, 0, 0), line.section(u": "_s, 1))) {
                return std::unexpected(place + u"not a known field and value"_s);
            }
        } else if (!line.isEmpty()) {
            if (cv.sections.empty() && !line.startsWith("## "_L1)) {
                return std::unexpected(place + u"text before the first section"_s);
            }
            addLine(cv, line, continues);
        }
        continues = !line.isEmpty() && !line.startsWith(u'#');
    }
    if (cv.name.isEmpty() || cv.sections.empty()) {
        return std::unexpected(u"no name or no section"_s);
    }
    return cv;
}

QString plainText(const SampleCv& cv) {
    QStringList lines = {cv.name, cv.profession, cv.email, cv.phone, cv.city};
    for (const SampleCv::Section& section : cv.sections) {
        lines.append(section.title);
        for (const SampleCv::Entry& entry : section.entries) {
            lines.append({entry.title, entry.dates, entry.place});
            lines.append(entry.paragraphs);
            lines.append(entry.bullets);
        }
        lines.append(section.tags);
    }
    lines.removeAll(QString());
    return lines.join(u'\n');
}

std::vector<std::pair<QString, QString>> sampleSources(const QString& folder) {
    registerSampleFiles();
    std::vector<std::pair<QString, QString>> sources;
    const QFileInfoList files = QDir(u":/demo/samples/"_s + folder).entryInfoList(QDir::Files, QDir::Name);
    for (const QFileInfo& info : files) {
        QFile file(info.filePath());
        if (file.open(QIODevice::ReadOnly)) {
            sources.emplace_back(info.completeBaseName(), QString::fromUtf8(file.readAll()));
        }
    }
    return sources;
}

} // namespace dorvantel
