// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "bench/Report.h"
#include "data/Model.h"

#include <QCoreApplication>
#include <QRandomGenerator>

#include <cmath>

using namespace Qt::StringLiterals;

namespace dorvantel::bench {
namespace {

constexpr int recordCount = 100'000;

/// Accepts every call and answers none.
class SilentService : public RecordsService {
public:
    void fetchAll(Completion<std::vector<DBRecordPointer>>) override {}
    void fetchPDF(const QString&, Completion<std::optional<QByteArray>>) override {}
    void insertResume(const DBRecordRepresentation&, Completion<DBRecord>) override {}
    void deleteResume(const QString&) override {}
    void search(const QString&, Completion<std::shared_ptr<IdentifiableSearchResponse>>) override {}
};

/// What the values of one kind are drawn from: common ones far more often than rare ones, and one time in twenty in
/// another spelling.
class Vocabulary {
public:
    Vocabulary(const QString& stem, int distinct) {
        for (int i = 0; i < distinct; ++i) {
            const QString value = u"%1 número %2"_s.arg(stem).arg(i);
            m_spellings.append({value, value.toUpper(), value.toLower()});
        }
    }

    QString draw(QRandomGenerator& random) const {
        const double skewed = std::pow(random.generateDouble(), 3);
        const QStringList& spellings =
            m_spellings[static_cast<qsizetype>(skewed * static_cast<double>(m_spellings.size()))];
        return spellings[random.bounded(20) == 0 ? random.bounded(1, 3) : 0];
    }

private:
    QList<QStringList> m_spellings;
};

enum class Strings {
    Shared,  ///< equal spellings share their characters
    Unshared ///< every value has characters of its own
};

QStringList values(const Vocabulary& vocabulary, int count, QRandomGenerator& random, Strings strings) {
    QStringList list;
    for (int i = 0; i < count; ++i) {
        QString value = vocabulary.draw(random);
        if (strings == Strings::Unshared) {
            value.detach();
        }
        list.append(value);
    }
    return list;
}

/// Fills `model` with records of about fifteen values each, out of some 3 000.
void fill(Model& model, Strings strings) {
    const Vocabulary technical(u"Tecnología"_s, 2'600);
    const Vocabulary soft(u"Habilidad"_s, 340);
    const Vocabulary language(u"Idioma"_s, 60);
    QRandomGenerator random(20'260'101);
    for (int i = 0; i < recordCount; ++i) {
        auto record = std::make_shared<DBRecordRepresentation>();
        record->name = u"Candidata %1"_s.arg(i);
        record->email = u"candidata%1@example.com"_s.arg(i);
        record->summarizedText = QString(300, u'x');
        record->jsonCVData = {.gender = u"Femenino"_s,
                              .softSkills = values(soft, random.bounded(2, 7), random, strings),
                              .techSkills = values(technical, random.bounded(4, 15), random, strings),
                              .languages = values(language, random.bounded(1, 5), random, strings)};
        model.appendRecord(std::move(record));
    }
}

void run(int argc, char** argv) {
    SilentService service;
    Model shared(service);
    Model unshared(service);
    fill(shared, Strings::Shared);
    fill(unshared, Strings::Unshared);

    Report report(argc, argv);
    const auto sharedTime = report.measure("rebuild_shared", [&shared] { shared.rebuildCatalogues(); });
    const auto unsharedTime = report.measure("rebuild_unshared", [&unshared] { unshared.rebuildCatalogues(); });
    report.run();
    report.atMost("rebuildCatalogues of 100 000 records, shared spellings", report.seconds(sharedTime) * 1000, 150,
                  "ms");
    report.atMost("rebuildCatalogues of 100 000 records, unshared spellings", report.seconds(unsharedTime) * 1000, 150,
                  "ms");
}

} // namespace
} // namespace dorvantel::bench

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    dorvantel::bench::run(argc, argv);
    return 0;
}
