// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "demo/DemoModelServer.h"

#include "demo/DemoModel.h"
#include "demo/Vocabulary.h"

#include <httplib.h>

#include <arpa/inet.h>
#include <sys/resource.h>
#include <sys/socket.h>

#include <condition_variable>
#include <thread>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

constexpr std::size_t workerThreads = 32; // a stalled answer keeps one
constexpr std::size_t longestBody = 256U << 20U;

// The library would let a second server share the port without a word.
void allowOnlyOneServerPerPort(socket_t socket) {
    const int yes = 1;
    ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
}

std::uint16_t peerPort(int descriptor) {
    sockaddr_storage address{};
    socklen_t length = sizeof address;
    if (::getpeername(descriptor, reinterpret_cast<sockaddr*>(&address), &length) != 0) {
        return 0;
    }
    if (address.ss_family == AF_INET) {
        return ntohs(reinterpret_cast<const sockaddr_in*>(&address)->sin_port);
    }
    return address.ss_family == AF_INET6 ? ntohs(reinterpret_cast<const sockaddr_in6*>(&address)->sin6_port) : 0;
}

std::uint16_t localPort(int descriptor) {
    sockaddr_storage address{};
    socklen_t length = sizeof address;
    if (::getsockname(descriptor, reinterpret_cast<sockaddr*>(&address), &length) != 0) {
        return 0;
    }
    return ntohs(address.ss_family == AF_INET ? reinterpret_cast<const sockaddr_in*>(&address)->sin_port
                                              : reinterpret_cast<const sockaddr_in6*>(&address)->sin6_port);
}

// The library hides its sockets; the one of this request is known by its two ports.
void cutConnectionOf(const httplib::Request& request) {
    rlimit limit{};
    ::getrlimit(RLIMIT_NOFILE, &limit);
    const int highest = static_cast<int>(std::min<rlim_t>(limit.rlim_cur, 65536));
    for (int descriptor = 3; descriptor < highest; ++descriptor) {
        if (peerPort(descriptor) == request.remote_port && localPort(descriptor) == request.local_port) {
            ::shutdown(descriptor, SHUT_RDWR);
            return;
        }
    }
}

DemoRequest plain(const httplib::Request& request) {
    return {request.method, request.path, request.body, request.get_header_value("Host"),
            request.get_header_value("Origin")};
}

} // namespace

class DemoModelServer::Running {
public:
    explicit Running(Script& script)
        : m_script(script) {
        m_server.new_task_queue = [] { return new httplib::ThreadPool(workerThreads); };
        m_server.set_socket_options([this](socket_t socket) {
            allowOnlyOneServerPerPort(socket);
            m_listener = socket;
        });
        m_server.set_keep_alive_max_count(1); // an idle connection would hold up the end
        m_server.set_keep_alive_timeout(2);
        m_server.set_payload_max_length(longestBody);
        const auto handler = [this](const httplib::Request& request, httplib::Response& response) {
            answer(request, response);
        };
        m_server.Get(".*", handler).Options(".*", handler);
        m_server.Post(".*", handler).Put(".*", handler).Patch(".*", handler).Delete(".*", handler);
    }

    // The port, or -1.
    int bind(const std::string& host, int port) {
        const int bound = port == 0 ? m_server.bind_to_any_port(host) : (m_server.bind_to_port(host, port) ? port : -1);
        if (bound > 0) {
            // The library lets five clients wait; a sixth would try again after a second.
            ::listen(m_listener, SOMAXCONN);
        }
        return bound;
    }

    void listen() {
        m_thread = std::thread([this] { m_server.listen_after_bind(); });
        // Stopping before the loop runs would be lost.
        while (!m_server.is_running()) {
            std::this_thread::yield();
        }
    }

    ~Running() {
        {
            const std::lock_guard lock(m_mutex);
            m_stopping = true;
        }
        m_stopped.notify_all();
        if (m_thread.joinable()) {
            m_server.stop();
            m_thread.join();
        }
    }

private:
    // False when the server stops before.
    bool waitFor(std::chrono::milliseconds time) {
        std::unique_lock lock(m_mutex);
        return !m_stopped.wait_for(lock, time, [this] { return m_stopping; });
    }

    void waitForStop() {
        std::unique_lock lock(m_mutex);
        m_stopped.wait(lock, [this] { return m_stopping; });
    }

    void answer(const httplib::Request& request, httplib::Response& response) {
        const ScriptedStep step = m_script.next(request.method, request.path).value_or(ScriptedStep{});
        if (step.way == ScriptedStep::Way::Stall) {
            waitForStop();
            cutConnectionOf(request);
            return;
        }
        if (!waitFor(step.delay) || step.way == ScriptedStep::Way::Cut) {
            cutConnectionOf(request);
            return;
        }
        send(step, scripted(step, request), response);
    }

    static DemoReply scripted(const ScriptedStep& step, const httplib::Request& request) {
        DemoReply reply = step.body ? DemoReply{200, "application/json; charset=utf-8", *step.body, false}
                                    : demoAnswer(plain(request));
        reply.status = step.status.value_or(reply.status);
        reply.contentType = step.contentType.value_or(reply.contentType);
        return reply;
    }

    void send(const ScriptedStep& step, DemoReply reply, httplib::Response& response) {
        response.status = reply.status;
        if (step.way == ScriptedStep::Way::CutInBody) {
            sendHalf(std::move(reply), response);
        } else if (step.chunkBytes > 0) {
            sendChunks(std::move(reply), step.chunkBytes, step.chunkDelay, response);
        } else if (reply.streamed) {
            const std::size_t lineLength = reply.body.find('\n') + 1;
            sendChunks(std::move(reply), lineLength, std::chrono::milliseconds(0), response);
        } else if (!reply.contentType.empty()) {
            response.set_content(reply.body, reply.contentType);
        }
    }

    void sendChunks(DemoReply reply, std::size_t size, std::chrono::milliseconds delay, httplib::Response& response) {
        const std::string type = reply.contentType;
        response.set_chunked_content_provider(
            type, [this, body = std::move(reply.body), size, delay](std::size_t offset, httplib::DataSink& sink) {
                if (offset >= body.size()) {
                    sink.done();
                    return true;
                }
                if (offset > 0 && !waitFor(delay)) {
                    return false;
                }
                return sink.write(body.data() + offset, std::min(size, body.size() - offset));
            });
    }

    static void sendHalf(DemoReply reply, httplib::Response& response) {
        const std::string type = reply.contentType;
        const std::size_t whole = reply.body.size();
        response.set_content_provider(whole, type,
                                      [body = std::move(reply.body)](std::size_t offset, std::size_t, auto& sink) {
                                          if (offset == 0) {
                                              sink.write(body.data(), body.size() / 2);
                                          }
                                          return false;
                                      });
    }

    Script& m_script;
    httplib::Server m_server;
    socket_t m_listener = INVALID_SOCKET;
    std::thread m_thread;
    std::mutex m_mutex;
    std::condition_variable m_stopped;
    bool m_stopping = false; ///< guarded by m_mutex
};

DemoModelServer::DemoModelServer(Script script)
    : m_script(std::make_unique<Script>(std::move(script))) {}

DemoModelServer::~DemoModelServer() = default;

std::expected<std::uint16_t, QString> DemoModelServer::start(const QString& host, std::uint16_t port) {
    vocabulary(); // read now, so that the first answer is as quick as the others
    auto running = std::make_unique<Running>(*m_script);
    const int bound = running->bind(host.toStdString(), port);
    if (bound <= 0) {
        return std::unexpected(u"cannot listen on %1:%2: %3"_s.arg(host).arg(port).arg(QString::fromUtf8(
            errno == EADDRINUSE ? "the port is in use" : "the address is none of this machine's, or not permitted")));
    }
    running->listen();
    m_running = std::move(running);
    m_url = u"http://%1:%2"_s.arg(host).arg(bound);
    return static_cast<std::uint16_t>(bound);
}

void DemoModelServer::stop() {
    m_running.reset();
}

QString DemoModelServer::url() const {
    return m_url;
}

} // namespace dorvantel
