// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "bench/Report.h"
#include "service/api/RequestBodies.h"
#include "service/candidates/JsonText.h"
#include "service/candidates/Plan.h"
#include "service/store/Schema.h"

#include <QCoreApplication>
#include <QProcess>
#include <QTemporaryDir>
#include <QUrl>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <random>
#include <thread>

#include <arpa/inet.h>
#include <netinet/tcp.h>
#include <sqlite3.h>
#include <sys/socket.h>
#include <sys/uio.h>
#include <unistd.h>

using namespace dorvantel;
using namespace dorvantel::bench;
using namespace dorvantel::service;
using namespace Qt::StringLiterals;

namespace {

constexpr std::size_t pdfSize = 200'000;
constexpr int insertsPerRun = 320;
constexpr int runs = 7;

[[noreturn]] void giveUp(const std::string& reason) {
    std::cerr << reason << '\n';
    std::exit(1);
}

/// The same candidate each time, but for the e-mail.
Record sampleRecord() {
    std::minstd_rand random(1);
    std::string pdf(pdfSize, '\0');
    std::ranges::generate(pdf, [&random] { return static_cast<char>(random()); });
    Record record{.name = "Ana María López Ortega",
                  .profession = "Analista de datos",
                  .email = "",
                  .summarizedText = std::string(900, 's'),
                  .invitationMail = std::string(600, 'm'),
                  .jsonCVData = {},
                  .cvData = {"Femenino",
                             {"Trabajo en equipo", "Comunicación"},
                             {"Excel", "Python", "SQL", "Power BI"},
                             {"Español", "Inglés"}},
                  .file = std::move(pdf)};
    record.jsonCVData = cvDataJSON(record.cvData);
    return record;
}

std::string emailOf(int number) {
    return "candidate-" + std::to_string(100'000 + number) + "@example.com";
}

double secondsOf(const std::function<void()>& work) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

/// One connection to the service that sends inserts and waits for each answer. As plain as it can be, because on this
/// machine the client takes its time from the service.
class Connection {
public:
    explicit Connection(int port)
        : m_socket(socket(AF_INET, SOCK_STREAM, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(static_cast<std::uint16_t>(port));
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        const int yes = 1;
        setsockopt(m_socket, IPPROTO_TCP, TCP_NODELAY, &yes, sizeof yes);
        if (connect(m_socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
            giveUp("the service cannot be reached");
        }
    }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    ~Connection() { close(m_socket); }

    /// `body` without its first byte, the opening brace: the e-mail goes before it.
    void insert(const std::string& email, std::string_view body) {
        const std::string start = "{\"email\":\"" + email + "\",";
        const std::string head =
            "POST /curriculums HTTP/1.1\r\nHost: 127.0.0.1\r\nContent-Type: application/json\r\nContent-Length: " +
            std::to_string(start.size() + body.size()) + "\r\n\r\n" + start;
        send(head);
        send(body);
        receiveAnswer();
    }

private:
    void send(std::string_view bytes) {
        while (!bytes.empty()) {
            const ssize_t sent = ::send(m_socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
            if (sent <= 0) {
                giveUp("the service closed the connection");
            }
            bytes.remove_prefix(static_cast<std::size_t>(sent));
        }
    }

    void receiveAnswer() {
        std::size_t size = 0;
        std::size_t whole = m_buffer.size();
        bool isHeadRead = false;
        while (size < whole) {
            const ssize_t received = recv(m_socket, m_buffer.data() + size, m_buffer.size() - size, 0);
            if (received <= 0) {
                giveUp("the service closed the connection");
            }
            size += static_cast<std::size_t>(received);
            const std::string_view text(m_buffer.data(), size);
            const std::size_t headEnd = isHeadRead ? 0 : text.find("\r\n\r\n");
            if (!isHeadRead && headEnd != std::string_view::npos) {
                constexpr std::string_view length = "Content-Length: ";
                if (!text.starts_with("HTTP/1.1 201 ")) {
                    giveUp("the service refused: " + std::string(text));
                }
                whole = headEnd + 4 + std::strtoul(text.data() + text.find(length) + length.size(), nullptr, 10);
                isHeadRead = true;
            }
        }
    }

    int m_socket;
    std::vector<char> m_buffer = std::vector<char>(2 * pdfSize);
};

/// Inserts a second through the service as a process with a new store, from as many clients at once.
double serviceRate(const QString& store, int clients, const Record& record) {
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QCoreApplication::applicationDirPath() + u"/dorvantel-records"_s,
                  {u"--listen"_s, u"127.0.0.1:0"_s, u"--store"_s, store});
    if (!process.waitForReadyRead(30'000)) {
        giveUp("the service does not start");
    }
    const QString url = QString::fromUtf8(process.readLine()).section(u' ', -1).trimmed();
    const int port = QUrl(url).port();

    std::string body = recordJSON(record);
    const std::string emptyEmail = R"("email":"",)";
    body.erase(body.find(emptyEmail), emptyEmail.size()).erase(0, 1);
    const double seconds = secondsOf([&] {
        std::vector<std::jthread> threads;
        for (int client = 0; client < clients; ++client) {
            threads.emplace_back([=, &body] {
                Connection connection(port);
                for (int i = client; i < insertsPerRun; i += clients) {
                    connection.insert(emailOf(i), body);
                }
            });
        }
    });
    process.terminate();
    process.waitForFinished(30'000);
    return insertsPerRun / seconds;
}

/// SQLite alone, without anything of the service but its tables.
class BareProgram {
public:
    explicit BareProgram(const std::string& path) {
        {
            const SqliteDatabase schema(path, SqliteDatabase::Access::ReadWriteCreate);
            migrate(schema, migrations());
        }
        check(sqlite3_open(path.c_str(), &m_database));
        check(sqlite3_exec(m_database, "PRAGMA journal_mode = WAL; PRAGMA synchronous = FULL; PRAGMA foreign_keys = ON",
                           nullptr, nullptr, nullptr));
        prepare("BEGIN IMMEDIATE", m_begin);
        prepare("INSERT INTO record (email, name, profession, summary, mail, cv_text, cv_json, stored_at) "
                "VALUES (?, ?, ?, ?, ?, ?, ?, unixepoch())",
                m_record);
        prepare("INSERT INTO pdf (record, bytes) VALUES (?, ?)", m_pdf);
        prepare("INSERT OR IGNORE INTO trait (kind, value, record) VALUES (?, ?, ?)", m_trait);
        prepare("INSERT INTO embedding_queue (record) VALUES (?)", m_queue);
        prepare("COMMIT", m_commit);
    }
    BareProgram(const BareProgram&) = delete;
    BareProgram& operator=(const BareProgram&) = delete;
    ~BareProgram() {
        for (sqlite3_stmt* const statement : {m_begin, m_record, m_pdf, m_trait, m_queue, m_commit}) {
            sqlite3_finalize(statement);
        }
        sqlite3_close(m_database);
    }

    void insert(const std::string& email, const Record& record) {
        run(m_begin);
        int column = 0;
        for (const std::string* const text : {&email, &record.name, &record.profession, &record.summarizedText,
                                              &record.invitationMail, &record.jsonCVData, &record.jsonCVData}) {
            sqlite3_bind_text(m_record, ++column, text->data(), static_cast<int>(text->size()), SQLITE_STATIC);
        }
        run(m_record);
        const sqlite3_int64 id = sqlite3_last_insert_rowid(m_database);
        sqlite3_bind_int64(m_pdf, 1, id);
        sqlite3_bind_blob(m_pdf, 2, record.file->data(), static_cast<int>(record.file->size()), SQLITE_STATIC);
        run(m_pdf);
        addTrait(Trait::Gender, record.cvData.gender, id);
        for (const auto& [trait, values] : {std::pair{Trait::TechSkill, &record.cvData.techSkills},
                                            std::pair{Trait::SoftSkill, &record.cvData.softSkills},
                                            std::pair{Trait::Language, &record.cvData.languages}}) {
            for (const std::string& value : *values) {
                addTrait(trait, value, id);
            }
        }
        sqlite3_bind_int64(m_queue, 1, id);
        run(m_queue);
        run(m_commit);
    }

private:
    void check(int result) const {
        if (result != SQLITE_OK) {
            giveUp(sqlite3_errmsg(m_database));
        }
    }
    void prepare(const char* sql, sqlite3_stmt*& statement) const {
        check(sqlite3_prepare_v2(m_database, sql, -1, &statement, nullptr));
    }
    void run(sqlite3_stmt* statement) const {
        if (sqlite3_step(statement) != SQLITE_DONE) {
            giveUp(sqlite3_errmsg(m_database));
        }
        sqlite3_reset(statement);
    }
    void addTrait(Trait trait, const std::string& value, sqlite3_int64 id) const {
        sqlite3_bind_int64(m_trait, 1, static_cast<int>(trait));
        sqlite3_bind_text(m_trait, 2, value.data(), static_cast<int>(value.size()), SQLITE_STATIC);
        sqlite3_bind_int64(m_trait, 3, id);
        run(m_trait);
    }

    sqlite3* m_database = nullptr;
    sqlite3_stmt* m_begin = nullptr;
    sqlite3_stmt* m_record = nullptr;
    sqlite3_stmt* m_pdf = nullptr;
    sqlite3_stmt* m_trait = nullptr;
    sqlite3_stmt* m_queue = nullptr;
    sqlite3_stmt* m_commit = nullptr;
};

double bareRate(const QString& store, const Record& record) {
    BareProgram program(store.toStdString());
    const double seconds = secondsOf([&] {
        for (int i = 0; i < insertsPerRun; ++i) {
            program.insert(emailOf(i), record);
        }
    });
    return insertsPerRun / seconds;
}

} // namespace

/// Inserts of 200 KB PDFs over real HTTP, base64 in JSON, each answered when it is on the disk, against a plain program
/// that writes the same rows into the same tables with the same pragmas, one commit each. Both write beside the
/// benchmark's program, so the disk is that of the build folder. The two take turns, and medians are compared.
int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const Report report(argc, argv);
    const Record record = sampleRecord();
    std::vector<double> bare(runs);
    std::vector<double> one(runs);
    std::vector<double> many(runs);
    for (std::size_t run = 0; run < runs; ++run) {
        const auto fresh = [](auto measure) {
            const QTemporaryDir folder(QCoreApplication::applicationDirPath() + u"/inserts-XXXXXX"_s);
            return measure(folder.filePath(u"records.sqlite"_s));
        };
        bare[run] = fresh([&](const QString& store) { return bareRate(store, record); });
        one[run] = fresh([&](const QString& store) { return serviceRate(store, 1, record); });
        many[run] = fresh([&](const QString& store) { return serviceRate(store, 32, record); });
        std::cerr << "inserts per second: bare " << bare[run] << ", one client " << one[run] << ", 32 clients "
                  << many[run] << '\n';
    }
    report.atLeast("inserts of 200 KB PDFs, 1 client: service / bare SQLite", median(one) / median(bare), 0.8, "times");
    report.atLeast("inserts of 200 KB PDFs, 32 clients: service / bare SQLite", median(many) / median(bare), 0.8,
                   "times");
}
