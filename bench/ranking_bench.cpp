// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "bench/PlainScan.h"
#include "bench/Report.h"
#include "bench/SampleVectors.h"
#include "service/ranking/VectorIndex.h"
#include "service/store/Sqlite.h"

#include <cstdio>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>

#include <sqlite3.h>

#ifdef DORVANTEL_BENCH_HAS_FAISS
#include <faiss/IndexFlat.h>
#include <omp.h>
#endif

using namespace dorvantel;
using namespace dorvantel::bench;
using namespace dorvantel::service;

// Everything runs on one thread, one query at a time; queries take turns, so that no query's rows stay in the caches.

namespace {

constexpr std::size_t dimension = 768;
constexpr std::size_t best = 5;
constexpr std::size_t filterStep = 100; ///< a filter leaves one row of so many

/// The queries of a benchmark, one after the other.
class Queries {
public:
    explicit Queries(SampleVectors::Kind kind) {
        SampleVectors samples(kind, dimension, 77);
        for (int i = 0; i < 32; ++i) {
            m_queries.push_back(samples.next());
        }
    }
    const std::vector<float>& next() { return m_queries[m_next++ % m_queries.size()]; }
    const std::vector<std::vector<float>>& all() const { return m_queries; }

private:
    std::vector<std::vector<float>> m_queries;
    std::size_t m_next = 0;
};

#ifdef DORVANTEL_BENCH_HAS_FAISS
class FaissScan {
public:
    explicit FaissScan(const VectorRows& rows)
        : m_index(dimension) {
        m_index.codes.reserve(rows.size() * dimension * sizeof(float));
        for (std::size_t row = 0; row < rows.size(); ++row) {
            m_index.add(1, rows.values(row).data());
        }
    }
    void search(const std::vector<float>& query) {
        float similarities[best];
        faiss::Index::idx_t ids[best];
        m_index.search(1, query.data(), best, similarities, ids);
        benchmark::DoNotOptimize(ids);
    }

private:
    faiss::IndexFlatIP m_index;
};
#endif

/// A table of vectors in memory, and a function of ours that SQLite calls for each row.
class SqliteScan {
public:
    explicit SqliteScan(const VectorRows& rows)
        : m_database(":memory:", SqliteDatabase::Access::ReadWriteCreate) {
        sqlite3_create_function(m_database.handle(), "dot", 2, SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr, dot,
                                nullptr, nullptr);
        m_database.execute("CREATE TABLE v (id INTEGER PRIMARY KEY, floats BLOB NOT NULL); BEGIN");
        SqliteStatement add(m_database, "INSERT INTO v (floats) VALUES (?)");
        for (std::size_t row = 0; row < rows.size(); ++row) {
            add.bindBlob(0, bytesOf(rows.values(row)));
            add.run();
        }
        m_database.execute("COMMIT");
        m_search =
            std::make_unique<SqliteStatement>(m_database, "SELECT id FROM v ORDER BY dot(floats, ?) DESC LIMIT 5");
    }
    void search(const std::vector<float>& query) {
        m_search->bindBlob(0, bytesOf(query));
        while (m_search->step()) {
            benchmark::DoNotOptimize(m_search->number(0));
        }
        m_search->reset();
    }

private:
    static std::string_view bytesOf(std::span<const float> vector) {
        return {reinterpret_cast<const char*>(vector.data()), vector.size_bytes()};
    }
    static void dot(sqlite3_context* context, int, sqlite3_value** values) {
        const auto* const row = static_cast<const float*>(sqlite3_value_blob(values[0]));
        const auto* const query = static_cast<const float*>(sqlite3_value_blob(values[1]));
        sqlite3_result_double(context, static_cast<double>(plainDot()(row, query, dimension)));
    }

    SqliteDatabase m_database;
    std::unique_ptr<SqliteStatement> m_search;
};

/// All ways to the same five rows, over the same vectors.
class Contest {
public:
    Contest(Report& report, std::string name, SampleVectors::Kind kind, std::size_t count, bool withSqlite)
        : m_report(report)
        , m_name(std::move(name))
        , m_queries(kind) {
        SampleVectors samples(kind, dimension, 1);
        std::vector<float> vector(dimension);
        for (std::size_t i = 0; i < count; ++i) {
            samples.next(vector);
            m_index.put(static_cast<std::int64_t>(i) + 1, vector);
        }
        std::vector<std::int64_t> some;
        for (std::size_t id = filterStep; id <= count; id += filterStep) {
            some.push_back(static_cast<std::int64_t>(id));
        }
        m_filtered = std::move(some);
        checkAgreement();
        m_bounded = measure("bounded", [this] { benchmark::DoNotOptimize(m_index.best(m_queries.next(), {}, best)); });
        m_few = measure("bounded-filtered",
                        [this] { benchmark::DoNotOptimize(m_index.best(m_queries.next(), m_filtered, best)); });
        m_plain =
            measure("plain", [this] { benchmark::DoNotOptimize(plainBestFive(m_index.rows(), m_queries.next())); });
#ifdef DORVANTEL_BENCH_HAS_FAISS
        m_faiss = std::make_unique<FaissScan>(m_index.rows());
        m_faissTime = measure("faiss", [this] { m_faiss->search(m_queries.next()); });
#endif
        if (withSqlite) {
            m_sqlite = std::make_unique<SqliteScan>(m_index.rows());
            m_sqliteTime = measure("sqlite", [this] { m_sqlite->search(m_queries.next()); });
        }
    }

    void print() const {
        const std::string of = "best 5 of " + m_name + " x 768: ";
        m_report.atMost(of + "bounded scan / plain " + std::string(plainDotName()) + " pass",
                        m_report.ratio(m_bounded, m_plain), 0.35, "times");
        m_report.atMost(of + "with a filter that leaves 1 % / without", m_report.ratio(m_few, m_bounded), 0.05,
                        "times");
#ifdef DORVANTEL_BENCH_HAS_FAISS
        m_report.atLeast(of + "FAISS IndexFlatIP / bounded scan, one thread each",
                         m_report.ratio(m_faissTime, m_bounded), 10, "times");
#endif
        if (m_sqlite) {
            m_report.atLeast(of + "SQLite function scan / bounded scan", m_report.ratio(m_sqliteTime, m_bounded), 5,
                             "times");
        }
        std::fprintf(stderr, "%s bounded %.3f ms with %.*s\n", of.c_str(), m_report.seconds(m_bounded) * 1000,
                     static_cast<int>(bestDotKernel().name.size()), bestDotKernel().name.data());
    }

private:
    template <typename Work>
    Report::Measurement measure(const std::string& what, Work work) {
        return m_report.measure(m_name + "-" + what, work);
    }

    /// A fast answer that is wrong is worth nothing.
    void checkAgreement() const {
        for (const std::vector<float>& query : m_queries.all()) {
            const auto found = m_index.best(query, {}, best);
            const BestFive plain = plainBestFive(m_index.rows(), query);
            for (std::size_t i = 0; i < best; ++i) {
                if (std::abs(found[i].score - scoreOf(static_cast<double>(plain[i].first))) > 1e-3F) {
                    throw std::runtime_error("the bounded scan of " + m_name + " does not find the best rows");
                }
            }
        }
    }

    Report& m_report;
    std::string m_name;
    Queries m_queries;
    VectorIndex m_index;
    SomeIds m_filtered;
    Report::Measurement m_bounded = 0;
    Report::Measurement m_few = 0;
    Report::Measurement m_plain = 0;
#ifdef DORVANTEL_BENCH_HAS_FAISS
    std::unique_ptr<FaissScan> m_faiss;
    Report::Measurement m_faissTime = 0;
#endif
    std::unique_ptr<SqliteScan> m_sqlite;
    Report::Measurement m_sqliteTime = 0;
};

double availableGigabytes() {
    std::ifstream meminfo("/proc/meminfo");
    for (std::string line; std::getline(meminfo, line);) {
        if (line.starts_with("MemAvailable:")) {
            return std::stod(line.substr(13)) / (1024 * 1024);
        }
    }
    return 0;
}

} // namespace

int main(int argc, char** argv) {
#ifdef DORVANTEL_BENCH_HAS_FAISS
    omp_set_num_threads(1);
#endif
    using Kind = SampleVectors::Kind;
    Report report(argc, argv);
    std::vector<std::unique_ptr<Contest>> contests;
    const auto add = [&](const char* name, Kind kind, std::size_t count, bool withSqlite) {
        contests.push_back(std::make_unique<Contest>(report, name, kind, count, withSqlite));
    };
    add("10 000 clustered", Kind::Clustered, 10'000, true);
    add("100 000 clustered", Kind::Clustered, 100'000, true);
    add("100 000 random", Kind::Random, 100'000, false);
    constexpr double gigabytesForAMillion = 9;
    if (availableGigabytes() > gigabytesForAMillion) {
        add("1 000 000 clustered", Kind::Clustered, 1'000'000, false);
    } else {
        std::fputs("a million vectors do not fit the memory that is free\n", stderr);
    }
    report.run();
    for (const auto& contest : contests) {
        contest->print();
    }
}
