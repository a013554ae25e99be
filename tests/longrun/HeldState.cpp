// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "tests/longrun/HeldState.h"

#include "data/Model.h"
#include "platform/PDFDocument.h"

#include <algorithm>
#include <malloc.h>
#include <vector>

namespace dorvantel::test {

namespace {

constexpr qint64 perBlock = 8; ///< what the allocator keeps with a block

class Blocks {
public:
    /// The memory of a QString or QByteArray; none for one that is a part of the program.
    template <typename Text>
    void add(const Text& text) {
        if (auto* block = const_cast<Text&>(text).data_ptr().d_ptr()) {
            m_blocks.push_back(block);
        }
    }
    void addList(const QStringList& list) {
        constexpr qint64 head = 16;
        addBytes(list.capacity() * static_cast<qint64>(sizeof(QString)) + head);
        m_unfilled += (list.capacity() - list.size()) * static_cast<qint64>(sizeof(QString));
        for (const QString& text : list) {
            add(text);
        }
    }
    void addCatalogue(const Model::Catalogue& catalogue) {
        for (auto entry = catalogue.cbegin(); entry != catalogue.cend(); ++entry) {
            add(entry.key());
            add(entry.value());
        }
        addBytes(catalogue.capacity() * static_cast<qint64>(2 * sizeof(QString)));
    }
    void addBytes(qint64 bytes) { m_bytes += bytes + perBlock; }

    Held held() {
        std::ranges::sort(m_blocks);
        m_blocks.erase(std::ranges::unique(m_blocks).begin(), m_blocks.end());
        qint64 sum = m_bytes;
        for (void* block : m_blocks) {
            sum += static_cast<qint64>(malloc_usable_size(block)) + perBlock;
        }
        return {.reserved = sum, .filled = sum - m_unfilled};
    }

private:
    std::vector<void*> m_blocks;
    qint64 m_bytes = 0;
    qint64 m_unfilled = 0;
};

void addDocument(Blocks& blocks, const PDFDocument& document) {
    blocks.add(document.dataRepresentation());
    for (qsizetype page = 0; page < document.pageCount(); ++page) {
        blocks.add(document.pageText(page));
    }
    blocks.addBytes(document.pageCount() * static_cast<qint64>(sizeof(QString)));
    blocks.addBytes(sizeof(PDFDocument));
}

void addRecord(Blocks& blocks, const DBRecordRepresentation& record) {
    constexpr qint64 sharing = 16;       // the counts of a shared pointer
    constexpr qint64 context = 16 + 120; // a QObject and its private part
    blocks.addBytes(static_cast<qint64>(sizeof(DBRecordRepresentation)) + sharing);
    for (const QString* text : {&record.name, &record.profession, &record.email, &record.jsonCVData.gender}) {
        blocks.add(*text);
    }
    for (const auto* text : {&record.summarizedText, &record.invitationMail}) {
        if (*text) {
            blocks.add(**text);
        }
    }
    for (const QStringList* list :
         {&record.jsonCVData.softSkills, &record.jsonCVData.techSkills, &record.jsonCVData.languages}) {
        blocks.addList(*list);
    }
    if (record.file) {
        blocks.add(*record.file);
    }
    if (record.pdfOpening) {
        blocks.addBytes(context);
    }
    if (const auto document = record.pdfDocument()) {
        addDocument(blocks, *document);
    }
}

} // namespace

Held heldBy(const Model& model) {
    Blocks blocks;
    const std::vector<DBRecordPointer>& records = model.dbRecords();
    blocks.addBytes(static_cast<qint64>(records.capacity() * sizeof(DBRecordPointer)));
    for (const DBRecordPointer& record : records) {
        addRecord(blocks, *record);
    }
    for (const QStringList& list : {model.techSkills(), model.softSkills(), model.languages(), model.knownTechSkills(),
                                    model.knownSoftSkills(), model.knownLanguages()}) {
        blocks.addList(list);
    }
    for (const Model::Catalogue* catalogue :
         {&model.techSkillsDictionary(), &model.softSkillsDictionary(), &model.languagesDictionary()}) {
        blocks.addCatalogue(*catalogue);
    }
    return blocks.held();
}

} // namespace dorvantel::test
