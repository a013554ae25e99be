// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "bench/Report.h"
#include "service/candidates/JsonText.h"
#include "service/store/SqliteWriter.h"
#include "service/store/StoreFile.h"

#include <QCoreApplication>
#include <QProcess>
#include <QTemporaryDir>
#include <QUrl>

#include <algorithm>
#include <array>
#include <chrono>
#include <fstream>
#include <functional>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

using namespace dorvantel;
using namespace dorvantel::bench;
using namespace dorvantel::service;
using namespace Qt::StringLiterals;

// The service as users run it, in a process of its own, asked over a loopback connection. All times are those of the
// clock on the wall: what a client waits.

namespace {

constexpr int recordCount = 100'000;
constexpr int repetitions = 15;

constexpr std::array words{"experiencia", "gestión",  "equipos",  "de",   "la",      "administración", "desarrollo",
                           "años",        "clientes", "análisis", "del",  "diseño",  "responsable",    "planificación",
                           "proyectos",   "técnica",  "compañía", "para", "informes"};

/// Records as they are in use: some skills stand in most CVs and most skills in few.
class SampleRecords {
public:
    Record next(int number) {
        Record record;
        record.name = "Begoña Ibáñez " + std::to_string(number);
        record.profession = "Técnica de " + text(20);
        record.email = "candidata." + std::to_string(number) + "@example.com";
        record.summarizedText = text(450);
        record.invitationMail = "Estimada candidata:\n\n" + text(150) + "\n\n" + text(400) + "\n\nUn cordial saludo.";
        record.cvData = {number % 2 == 0 ? "Femenino" : "Masculino", values("Capacidad número ", 300, 6),
                         values("Técnica ", 2'000, 10), values("Idioma ", 40, 3)};
        // Each in one CV of seven, and nobody has both.
        if (number % 7 == 0) {
            record.cvData.techSkills.emplace_back("Común");
        } else if (number % 7 == 3) {
            record.cvData.softSkills.emplace_back("Común");
        }
        record.jsonCVData = cvDataJSON(record.cvData);
        return record;
    }

private:
    std::string text(std::size_t length) {
        std::string text;
        while (text.size() < length) {
            text += words[m_random() % words.size()];
            text += ' ';
        }
        return text;
    }
    std::vector<std::string> values(const char* prefix, int distinct, int count) {
        std::vector<std::string> values;
        for (int i = 0; i < count; ++i) {
            const double part = static_cast<double>(m_random() % 65'536) / 65'536;
            values.push_back(prefix + std::to_string(static_cast<int>(distinct * part * part * part)));
        }
        return values;
    }

    std::minstd_rand m_random{20'260'101};
};

void fill(const std::filesystem::path& path) {
    const StoreFile file(path);
    SqliteWriter writer(file.path().string());
    SqliteTransaction transaction(writer.database());
    SampleRecords records;
    for (int i = 0; i < recordCount; ++i) {
        writer.add(records.next(i));
    }
    transaction.commit();
}

/// `dorvantel-records` over a store. It ends with this object.
class Service {
public:
    explicit Service(const std::filesystem::path& store) {
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(QCoreApplication::applicationDirPath() + u"/dorvantel-records"_s,
                        {u"--listen"_s, u"127.0.0.1:0"_s, u"--store"_s, QString::fromStdString(store.string())});
        while (!m_process.canReadLine()) {
            if (!m_process.waitForReadyRead()) {
                throw std::runtime_error("the service does not start");
            }
        }
        const QString line = QString::fromUtf8(m_process.readLine()).trimmed();
        m_port = QUrl(line.mid(line.indexOf(u"http"_s))).port();
    }
    ~Service() {
        m_process.terminate();
        m_process.waitForFinished();
    }
    int port() const { return m_port; }

    /// The most memory that it has held, in MB.
    double peakMemory() const {
        std::ifstream status("/proc/" + std::to_string(m_process.processId()) + "/status");
        for (std::string line; std::getline(status, line);) {
            if (line.starts_with("VmHWM:")) {
                return std::stod(line.substr(6)) / 1024;
            }
        }
        throw std::runtime_error("no memory figures of the service");
    }

private:
    QProcess m_process;
    int m_port = 0;
};

struct Exchange {
    double secondsToFirstByte = 0; ///< of the body: what comes before is known without a look into the store
    double seconds = 0;
    double megabytes = 0;
};

/// Sends a request on a connection of its own and reads until the service closes it.
Exchange ask(int port, const std::string& request) {
    const int socket = ::socket(AF_INET, SOCK_STREAM, 0);
    const sockaddr_in address{.sin_family = AF_INET,
                              .sin_port = htons(static_cast<std::uint16_t>(port)),
                              .sin_addr = {htonl(INADDR_LOOPBACK)},
                              .sin_zero = {}};
    if (connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        throw std::runtime_error("the service cannot be reached");
    }
    static std::vector<char> buffer(std::size_t{1} << 20);
    std::string head;
    Exchange exchange;
    const auto begin = std::chrono::steady_clock::now();
    const auto elapsed = [begin] {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    };
    if (::send(socket, request.data(), request.size(), MSG_NOSIGNAL) != std::ssize(request)) {
        throw std::runtime_error("the request was not taken");
    }
    ssize_t received = 0;
    while ((received = recv(socket, buffer.data(), buffer.size(), 0)) > 0) {
        exchange.megabytes += static_cast<double>(received) / 1e6;
        if (exchange.secondsToFirstByte == 0) {
            head.append(buffer.data(), static_cast<std::size_t>(received));
            const std::size_t end = head.find("\r\n\r\n");
            if (end != std::string::npos && head.size() > end + 4) {
                exchange.secondsToFirstByte = elapsed();
            }
        }
    }
    exchange.seconds = elapsed();
    close(socket);
    if (!head.starts_with("HTTP/1.1 200")) {
        throw std::runtime_error("the service answers " + head.substr(0, 200));
    }
    return exchange;
}

constexpr std::string_view requestHead = " HTTP/1.1\r\nHost: localhost\r\nConnection: close\r\n";

Exchange list(int port) {
    return ask(port, "GET /curriculums" + std::string(requestHead) + "\r\n");
}

Exchange search(int port, std::string_view conditions) {
    std::string body = "{";
    appendJSONField(body, "sql",
                    "select name,profession,email,summarizedText,invitationMail,jsonCVData,100.0 as score from "
                    "curriculums where " +
                        std::string(conditions));
    body += '}';
    return ask(port, "POST /curriculums/search" + std::string(requestHead) +
                         "Content-Type: application/json\r\nContent-Length: " + std::to_string(body.size()) +
                         "\r\n\r\n" + body);
}

/// The median of what `measure` gives.
double medianOf(const std::function<double()>& measure) {
    std::vector<double> values(repetitions);
    std::ranges::generate(values, measure);
    return median(std::move(values));
}

void searches(const Report& report, int port) {
    const std::array<std::pair<const char*, const char*>, 3> conditions{{
        {"many have", "jsonCVData::gender = '\"Femenino\"' AND "
                      "JSON_ARRAY_CONTAINS_STRING(jsonCVData::techSkills,'Técnica 0') AND "
                      "JSON_ARRAY_CONTAINS_STRING(jsonCVData::languages,'Idioma 1')"},
        {"few have", "jsonCVData::gender = '\"Masculino\"' AND "
                     "JSON_ARRAY_CONTAINS_STRING(jsonCVData::techSkills,'Técnica 1900') AND "
                     "JSON_ARRAY_CONTAINS_STRING(jsonCVData::softSkills,'Capacidad número 250')"},
        {"nobody has, though half and a seventh have each",
         "jsonCVData::gender = '\"Femenino\"' AND "
         "JSON_ARRAY_CONTAINS_STRING(jsonCVData::techSkills,'Común') AND "
         "JSON_ARRAY_CONTAINS_STRING(jsonCVData::softSkills,'Común')"},
    }};
    for (const auto& [who, text] : conditions) {
        const double first = medianOf([port, text = text] { return search(port, text).secondsToFirstByte; });
        report.atMost("search of 100 000 records, 3 conditions that " + std::string(who) + ": first byte", first * 1000,
                      5, "ms");
        const Exchange whole = search(port, text);
        std::fprintf(stderr, "%s: %.3f MB in %.2f ms\n", who, whole.megabytes, whole.seconds * 1000);
    }
}

void lists(const Report& report, int port, const Service& service) {
    const double before = service.peakMemory();
    const double rate = medianOf([port] {
        const Exchange answer = list(port);
        return answer.megabytes / answer.seconds;
    });
    report.atLeast("list of 100 000 records, streamed", rate, 300, "MB/s");
    report.atMost("list of 100 000 records: memory of the service beyond what it had", service.peakMemory() - before,
                  16, "MB");
    const Exchange whole = list(port);
    std::fprintf(stderr, "list: %.1f MB, first byte after %.2f ms\n", whole.megabytes, whole.secondsToFirstByte * 1000);
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const QTemporaryDir folder;
    const std::filesystem::path store = std::filesystem::path(folder.path().toStdString()) / "records.sqlite";
    fill(store);
    const Service service(store);
    const Report report(argc, argv);
    searches(report, service.port());
    lists(report, service.port(), service);
}
