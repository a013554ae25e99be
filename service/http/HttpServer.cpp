// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "service/http/HttpServer.h"

#include "service/http/ClientStream.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstring>

#include <httplib.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace dorvantel::service {

namespace {

constexpr int backlog = 512;

/// Line breaks as well, which a '.' does not match: the library compares the decoded address, and keys may hold them.
constexpr const char* everyAddress = "[\\s\\S]*";

/// With the charset, because the library would compress a bare "application/json" for every client that allows it,
/// which over loopback costs far more than it saves.
constexpr const char* jsonType = "application/json; charset=utf-8";

std::vector<std::string> headerValues(const httplib::Request& request, const std::string& name) {
    std::vector<std::string> values;
    for (std::size_t i = 0; i < request.get_header_value_count(name); ++i) {
        values.push_back(request.get_header_value(name, i));
    }
    return values;
}

HttpRequest headOf(const httplib::Request& request) {
    HttpRequest head;
    head.method = request.method == "HEAD" ? "GET" : request.method;
    head.target = request.target;
    head.hosts = headerValues(request, "Host");
    head.origins = headerValues(request, "Origin");
    if (request.has_header("Content-Type")) {
        head.contentType = request.get_header_value("Content-Type");
    }
    head.isEncoded = request.has_header("Content-Encoding");
    head.hasBody = request.has_header("Transfer-Encoding") ||
                   (request.has_header("Content-Length") && request.get_header_value("Content-Length") != "0");
    return head;
}

/// `held` lives until the answer has gone out.
void send(HttpAnswer answer, httplib::Response& response, std::shared_ptr<void> held) {
    response.status = answer.status;
    if (!answer.allow.empty()) {
        response.set_header("Allow", answer.allow);
    }
    if (!answer.stream) {
        if (!answer.body.empty()) {
            const auto body = std::make_shared<const std::string>(std::move(answer.body));
            response.set_content_provider(
                body->size(), jsonType,
                [held = std::move(held), body](std::size_t at, std::size_t size, httplib::DataSink& sink) {
                    return sink.write(body->data() + at, size);
                });
        }
        return;
    }
    response.set_chunked_content_provider(jsonType,
                                          [held = std::move(held), stream = std::move(answer.stream),
                                           block = std::string()](std::size_t, httplib::DataSink& sink) mutable {
                                              block.clear();
                                              const auto more = stream->next(block);
                                              if (!more || !sink.write(block.data(), block.size())) {
                                                  return false;
                                              }
                                              if (!*more) {
                                                  sink.done();
                                              }
                                              return true;
                                          });
}

/// The room to begin with for a body: all that most need, with the bytes that the parser wants behind it. Not more,
/// because what a client announces costs it nothing.
std::size_t firstRoom(const httplib::Request& request) {
    constexpr std::uint64_t most = 1024 * 1024;
    constexpr std::uint64_t behind = 64;
    return std::min(request.get_header_value<std::uint64_t>("Content-Length"), most) + behind;
}

std::expected<std::string, HttpAnswer> readBody(const httplib::Request& request, const httplib::Response& response,
                                                const httplib::ContentReader& reader, std::size_t limit,
                                                ByteBudget::Share& memory) {
    std::string body;
    body.reserve(firstRoom(request));
    bool isTooLarge = false;
    bool isTooMuch = false;
    // Of a request that is refused anyway, the whole body passes by.
    const auto take = [&](const char* data, std::size_t size) {
        isTooLarge = isTooLarge || body.size() + size > limit;
        isTooMuch = isTooMuch || (!isTooLarge && !memory.take(size));
        if (!isTooLarge && !isTooMuch) {
            body.append(data, size);
        }
        return (!isTooLarge && !isTooMuch) || limit == 0;
    };
    const bool isWhole =
        request.is_multipart_form_data() ? reader([](const auto&) { return true; }, take) : reader(take);
    if (isTooLarge || response.status == 413) {
        return std::unexpected(errorAnswer(413, "the body is too large"));
    }
    if (isTooMuch) {
        return std::unexpected(errorAnswer(503, "the service has its hands full; try again"));
    }
    if (!isWhole) {
        return std::unexpected(errorAnswer(400, "the body did not come whole"));
    }
    return body;
}

/// What the library refuses by itself has no body yet.
httplib::Server::HandlerResponse completeError(const httplib::Request&, httplib::Response& response) {
    if (response.body.empty() && !response.content_provider_) {
        const char* const message = response.status == 413   ? "the body is too large"
                                    : response.status == 414 ? "the address is too long"
                                    : response.status == 404 ? "there is nothing at this address"
                                                             : "the request is not understood";
        response.set_content(errorAnswer(response.status, message).body, jsonType);
    }
    return httplib::Server::HandlerResponse::Handled;
}

} // namespace

/// The library's server without its own way of taking connections, which knows neither limits nor who comes.
class HttpServer::Listener : public httplib::Server {
public:
    Listener(const Settings& settings, const LogLine& log)
        : m_allowed(settings.allowed)
        , m_limits(settings.client)
        , m_log(log)
        , m_connections(settings.connections, [this](int socket) { serve(socket); }) {
        m_limits.body = settings.bodyLimit;
        set_keep_alive_timeout(std::chrono::ceil<std::chrono::seconds>(m_limits.idle).count());
    }
    ~Listener() override { cut(); }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    /// Longer than the library's own, so that many can connect at once.
    void lengthenQueue() { ::listen(svr_sock_, backlog); }

    /// Takes connections until `stopAccepting`.
    void acceptAll() {
        while (!m_isStopping) {
            sockaddr_storage peer{};
            socklen_t size = sizeof peer;
            const int socket =
                ::accept4(svr_sock_, reinterpret_cast<sockaddr*>(&peer), &size, SOCK_NONBLOCK | SOCK_CLOEXEC);
            if (socket < 0) {
                waitForRoom();
            } else if (const ClientAddress client = clientAddress(peer);
                       !isAllowed(client, m_allowed) || !m_connections.add(socket, client)) {
                ::close(socket);
            }
        }
    }

    void stopAccepting() {
        m_isStopping = true;
        ::shutdown(svr_sock_, SHUT_RDWR); // wakes accept4
    }

    /// Ends every connection and the place where they came in; only when nothing is accepted any more.
    void cut() {
        m_connections.end();
        if (const int socket = svr_sock_.exchange(INVALID_SOCKET); socket != INVALID_SOCKET) {
            ::close(socket);
        }
    }

private:
    /// A failed accept is no reason to end; being out of descriptors or memory is one to let others finish.
    void waitForRoom() const {
        constexpr int pauseMs = 10;
        if (!m_isStopping && errno != ECONNABORTED && errno != EINTR) {
            ::poll(nullptr, 0, pauseMs);
        }
    }

    void serve(int socket) {
        try {
            ClientStream stream(socket, m_limits);
            while (serveRequest(stream)) {
            }
            stream.linger();
        } catch (const std::exception&) {
            m_log("a connection failed unexpectedly");
        }
    }

    /// False when the connection is at its end.
    bool serveRequest(ClientStream& stream) {
        const auto head = stream.nextRequest();
        if (!head) {
            if (head.error()) {
                stream.sendLast(*head.error());
            }
            return false;
        }
        // Behind a broken chunk, or a body that is not read, nobody could tell where the next request begins.
        const bool isLast = head->isChunked || head->bodyLength > m_limits.body;
        bool isClosedByClient = false;
        const bool isAnswered = process_request(stream, isLast, isClosedByClient, nullptr);
        return isAnswered && !isLast && !isClosedByClient && stream.isAtRequestEnd();
    }

    std::vector<ClientNetwork> m_allowed;
    ClientLimits m_limits;
    LogLine m_log;
    std::atomic<bool> m_isStopping = false;
    Connections m_connections;
};

HttpServer::HttpServer(const Settings& settings, LogLine log)
    : m_settings(settings)
    , m_gate(settings.host)
    , m_log(std::move(log))
    , m_bodies(bodiesInMemory * settings.bodyLimit)
    , m_listener(std::make_unique<Listener>(settings, m_log)) {
    setUpListener();
    routeWithoutBody();
    routeWithBody();
}

void HttpServer::setUpListener() {
    m_listener->set_keep_alive_max_count(100'000);
    m_listener->set_payload_max_length(m_settings.bodyLimit);
    // The library's own choice lets a second service take the same port.
    m_listener->set_socket_options([](socket_t socket) {
        const int yes = 1;
        setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof(yes));
    });
    m_listener->set_default_headers({{"Cache-Control", "no-store"}, {"X-Content-Type-Options", "nosniff"}});
    m_listener->set_error_handler(httplib::Server::HandlerWithResponse(completeError));
    m_listener->set_exception_handler([this](const httplib::Request&, httplib::Response& response, std::exception_ptr) {
        m_log("a request failed unexpectedly");
        send(errorAnswer(500, "the service failed"), response, nullptr);
    });
}

void HttpServer::routeWithoutBody() {
    const auto withoutBody = [this](const httplib::Request& request, httplib::Response& response) {
        const auto refuse = [](std::size_t) {
            return std::unexpected(errorAnswer(400, "a body is not taken here, or not without its length"));
        };
        auto running = m_active.begin();
        HttpAnswer result = answer(headOf(request), refuse, running != nullptr);
        send(std::move(result), response, std::move(running));
    };
    m_listener->Get(everyAddress, withoutBody);
    m_listener->Options(everyAddress, withoutBody);
    m_listener->Delete(everyAddress, withoutBody); // the library's choice for one without a length
}

void HttpServer::routeWithBody() {
    const auto withBody = [this](const httplib::Request& request, httplib::Response& response,
                                 const httplib::ContentReader& reader) {
        // An answer may be as large as the body, so the room of the one becomes that of the other.
        struct Held {
            explicit Held(HttpServer& server)
                : running(server.m_active.begin())
                , memory(server.m_bodies) {}
            std::shared_ptr<void> running;
            ByteBudget::Share memory;
        };
        const auto held = std::make_shared<Held>(*this);
        const auto read = [&](std::size_t limit) { return readBody(request, response, reader, limit, held->memory); };
        send(answer(headOf(request), read, held->running != nullptr), response, held);
    };
    m_listener->Delete(everyAddress, httplib::Server::HandlerWithContentReader(withBody));
    m_listener->Post(everyAddress, httplib::Server::HandlerWithContentReader(withBody));
    m_listener->Put(everyAddress, httplib::Server::HandlerWithContentReader(withBody));
    m_listener->Patch(everyAddress, httplib::Server::HandlerWithContentReader(withBody));
}

HttpServer::~HttpServer() {
    stop();
}

std::expected<void, std::string> HttpServer::bind() {
    errno = 0;
    if (m_settings.port == 0) {
        m_port = m_listener->bind_to_any_port(m_settings.host);
    } else if (m_listener->bind_to_port(m_settings.host, m_settings.port)) {
        m_port = m_settings.port;
    } else {
        m_port = -1;
    }
    if (m_port < 0) {
        const std::string reason = errno == EADDRINUSE ? "the port is in use by another program"
                                   : errno != 0        ? std::strerror(errno)
                                                       : "there is no such address on this machine";
        return std::unexpected("cannot listen on " + m_settings.host + ":" + std::to_string(m_settings.port) + ": " +
                               reason);
    }
    m_listener->lengthenQueue();
    return {};
}

std::string HttpServer::url() const {
    const bool isIPv6 = m_settings.host.find(':') != std::string::npos;
    return "http://" + (isIPv6 ? "[" + m_settings.host + "]" : m_settings.host) + ":" + std::to_string(m_port) +
           "/curriculums";
}

void HttpServer::start(const RecordsApi& api) {
    m_api = &api;
    m_thread = std::thread([this] { m_listener->acceptAll(); });
}

void HttpServer::stop() {
    if (m_thread.joinable()) {
        m_active.drain(m_settings.stopPatience); // whoever comes now is told that the service is stopping
        m_listener->stopAccepting();
        m_thread.join();
        m_listener->cut();
    }
}

void HttpServer::hurry() {
    m_active.hurry();
}

HttpAnswer HttpServer::answer(HttpRequest request, const ReadBody& readBody, bool isServing) const {
    auto refusal = isServing ? m_gate.refusal(request) : errorAnswer(503, "the service is stopping");
    auto operation = route(request.method, request.target);
    if (!refusal && !operation) {
        refusal = std::move(operation.error());
    }
    if (request.hasBody) {
        // Read even when it is refused: what stays on the connection would be taken for the next request.
        auto body = readBody(refusal ? 0 : m_settings.bodyLimit);
        if (!refusal && !body) {
            refusal = std::move(body.error());
        } else if (!refusal) {
            request.body = std::move(*body);
        }
    }
    if (refusal) {
        return std::move(*refusal);
    }
    HttpAnswer answer = m_api->answer(*operation, request);
    if (answer.status >= 500) {
        m_log(answer.error);
    }
    return answer;
}

} // namespace dorvantel::service
