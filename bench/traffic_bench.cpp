// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "bench/Report.h"
#include "service/api/RequestBodies.h"
#include "service/candidates/JsonText.h"

#include <QCoreApplication>
#include <QProcess>
#include <QTemporaryDir>
#include <QUrl>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <iostream>
#include <random>
#include <thread>

#include <httplib.h>

using namespace dorvantel;
using namespace dorvantel::bench;
using namespace dorvantel::service;
using namespace Qt::StringLiterals;

namespace {

using Clock = std::chrono::steady_clock;

constexpr int clients = 200;
constexpr auto duration = std::chrono::seconds(60);
constexpr auto step = std::chrono::seconds(10); ///< from one look at the memory to the next
constexpr int storedRecords = 300;
constexpr std::size_t pdfSize = 50'000;
constexpr std::size_t dimension = 768;
constexpr const char* jsonType = "application/json";
const std::string selectList = "select name,profession,email,summarizedText,invitationMail,jsonCVData,";

[[noreturn]] void giveUp(const std::string& reason) {
    std::cerr << reason << '\n';
    std::exit(1);
}

std::string numbers(std::minstd_rand& random) {
    std::string text;
    for (std::size_t i = 0; i < dimension; ++i) {
        text += (i == 0 ? "" : ",") + std::to_string(static_cast<double>(random() % 2'001) / 1'000 - 1);
    }
    return text;
}

/// Answers every text with some vector, as fast as it can.
class ModelServer {
public:
    ModelServer() {
        m_server.Post("/api/embed", [](const httplib::Request& request, httplib::Response& response) {
            std::minstd_rand random(static_cast<unsigned>(std::hash<std::string>()(request.body)));
            response.set_content("{\"embeddings\":[[" + numbers(random) + "]]}", jsonType);
        });
        m_port = m_server.bind_to_any_port("127.0.0.1");
        m_thread = std::thread([this] { m_server.listen_after_bind(); });
    }
    ModelServer(const ModelServer&) = delete;
    ModelServer& operator=(const ModelServer&) = delete;
    ~ModelServer() {
        m_server.stop();
        m_thread.join();
    }
    int port() const { return m_port; }

private:
    httplib::Server m_server;
    int m_port = 0;
    std::thread m_thread;
};

/// The service as a process with a store of its own.
class Service {
public:
    explicit Service(int modelPort) {
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(QCoreApplication::applicationDirPath() + u"/dorvantel-records"_s,
                        {u"--listen"_s, u"127.0.0.1:0"_s, u"--store"_s, m_folder.filePath(u"records.sqlite"_s),
                         u"--embedding-model"_s, u"m"_s, u"--model-server"_s,
                         u"http://127.0.0.1:"_s + QString::number(modelPort)});
        if (!m_process.waitForReadyRead(30'000)) {
            giveUp("the service does not start");
        }
        m_port = QUrl(QString::fromUtf8(m_process.readLine()).section(u' ', -1).trimmed()).port();
    }
    Service(const Service&) = delete;
    Service& operator=(const Service&) = delete;
    ~Service() {
        m_process.terminate();
        m_process.waitForFinished(30'000);
    }

    httplib::Client client() const {
        httplib::Client client("127.0.0.1", m_port);
        client.set_keep_alive(true);
        client.set_tcp_nodelay(true);
        client.set_read_timeout(60);
        return client;
    }
    /// What of the memory is in use, in kilobytes.
    double residentMemory() const {
        std::ifstream status("/proc/" + std::to_string(m_process.processId()) + "/status");
        for (std::string line; std::getline(status, line);) {
            if (line.starts_with("VmRSS:")) {
                return std::stod(line.substr(6));
            }
        }
        giveUp("the service has ended");
    }

private:
    QTemporaryDir m_folder{QCoreApplication::applicationDirPath() + u"/traffic-XXXXXX"_s};
    QProcess m_process;
    int m_port = 0;
};

std::string insertBodyOf(const std::string& email, std::minstd_rand& random) {
    Record record{.name = "Ana María López Ortega",
                  .profession = "Analista de datos",
                  .email = email,
                  .summarizedText = std::string(900, 's'),
                  .invitationMail = std::string(600, 'm'),
                  .jsonCVData = {},
                  .cvData = {random() % 2 == 0 ? "Femenino" : "Masculino",
                             {"Trabajo en equipo", "Habilidad " + std::to_string(random() % 50)},
                             {"Excel", "Técnica " + std::to_string(random() % 50)},
                             {"Español", "Idioma " + std::to_string(random() % 10)}},
                  .file = std::string(pdfSize, 'p')};
    record.jsonCVData = cvDataJSON(record.cvData);
    return recordJSON(record);
}

std::string searchBodyOf(const std::string& rest) {
    std::string body = "{";
    appendJSONField(body, "sql", selectList + rest);
    return body + "}";
}

/// What one client does for as long as the traffic lasts, one request after the other as fast as they are answered:
/// mostly searches and PDFs, now and then a list, and as many deletions as inserts, so that the store stays as large as
/// it is.
class Recruiter {
public:
    Recruiter(const Service& service, int number)
        : m_client(service.client())
        , m_random(static_cast<unsigned>(number) + 1)
        , m_email("recruiter" + std::to_string(number) + "@example.com")
        , m_semanticBody(searchBodyOf("GREATEST(0, LEAST(100, (dot_product(vector, JSON_ARRAY_PACK('[" +
                                      numbers(m_random) +
                                      "]')) + 1) * 50)) AS score from curriculums ORDER BY score DESC LIMIT 5")) {}

    void work(Clock::time_point end) {
        while (Clock::now() < end) {
            const auto begin = Clock::now();
            const bool isWell = one();
            seconds.push_back(std::chrono::duration<double>(Clock::now() - begin).count());
            errors += isWell ? 0 : 1;
        }
    }

    std::vector<double> seconds; ///< of each request
    int errors = 0;

private:
    bool one() {
        const auto dice = m_random() % 100;
        if (dice < 5) {
            return is(m_client.Get("/curriculums"), 200);
        }
        if (dice < 40) {
            return is(m_client.Post("/curriculums/search", structuredBody(), jsonType), 200);
        }
        if (dice < 60) {
            return is(m_client.Post("/curriculums/search", m_semanticBody, jsonType), 200);
        }
        if (dice < 85) {
            return is(m_client.Get("/curriculums/stored" + std::to_string(m_random() % storedRecords) + "@x/file"),
                      200);
        }
        m_hasOwn = !m_hasOwn;
        return m_hasOwn ? is(m_client.Post("/curriculums", insertBodyOf(m_email, m_random), jsonType), 201)
                        : is(m_client.Delete("/curriculums/" + m_email), 204);
    }

    std::string structuredBody() {
        return searchBodyOf("100.0 as score from curriculums where jsonCVData::gender = '\"Femenino\"' AND "
                            "JSON_ARRAY_CONTAINS_STRING(jsonCVData::techSkills,'Técnica " +
                            std::to_string(m_random() % 50) + "')");
    }

    static bool is(const httplib::Result& result, int status) { return result && result->status == status; }

    httplib::Client m_client;
    std::minstd_rand m_random;
    std::string m_email;
    std::string m_semanticBody;
    bool m_hasOwn = false;
};

void fill(const Service& service) {
    httplib::Client client = service.client();
    std::minstd_rand random(1);
    for (int i = 0; i < storedRecords; ++i) {
        const std::string email = "stored" + std::to_string(i) + "@x";
        const auto answer = client.Post("/curriculums", insertBodyOf(email, random), jsonType);
        if (!answer || answer->status != 201) {
            giveUp("the store cannot be filled");
        }
    }
}

/// The value below which this part of them lies.
double quantile(std::vector<double>& values, double part) {
    const auto at = values.begin() + static_cast<std::ptrdiff_t>(part * static_cast<double>(values.size() - 1));
    std::ranges::nth_element(values, at);
    return *at;
}

} // namespace

/// 200 clients at once for a minute, none of which ever pauses, against the service as a process. The clients take
/// their time from the same cores.
int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const Report report(argc, argv);
    const ModelServer model;
    const Service service(model.port());
    fill(service);

    const auto begin = Clock::now();
    std::vector<std::unique_ptr<Recruiter>> recruiters;
    std::vector<std::thread> threads;
    for (int i = 0; i < clients; ++i) {
        recruiters.push_back(std::make_unique<Recruiter>(service, i));
        threads.emplace_back([&recruiter = *recruiters.back(), begin] { recruiter.work(begin + duration); });
    }
    std::vector<double> memory; // every ten seconds, the last time just before the end
    for (auto at = step; at <= duration; at += step) {
        std::this_thread::sleep_until(begin + at - std::chrono::milliseconds(200));
        memory.push_back(service.residentMemory());
    }
    std::ranges::for_each(threads, &std::thread::join);

    std::vector<double> seconds;
    int errors = 0;
    for (const auto& recruiter : recruiters) {
        seconds.insert(seconds.end(), recruiter->seconds.begin(), recruiter->seconds.end());
        errors += recruiter->errors;
    }
    std::cerr << seconds.size() << " requests; resident kB every 10 s:";
    std::ranges::for_each(memory, [](double kilobytes) { std::cerr << ' ' << kilobytes; });
    std::cerr << '\n';
    report.atMost("mixed traffic, 200 clients for 60 s: errors", errors, 0, "requests");
    report.atMost("mixed traffic, 200 clients: half of the answers within", quantile(seconds, 0.5) * 1'000, 250, "ms");
    report.atMost("mixed traffic, 200 clients: 99 % of the answers within", quantile(seconds, 0.99) * 1'000, 2'000,
                  "ms");
    report.atMost("mixed traffic, 200 clients: memory at the end / after 10 s", memory.back() / memory.front(), 1.1,
                  "times");
}
