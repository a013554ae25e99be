// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QHash>
#include <QObject>
#include <QString>
#include <QUrl>

#include <chrono>
#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

class QNetworkAccessManager;

namespace dorvantel {

struct HttpRequest {
    enum class Method { Get, Post, Delete };
    Method method = Method::Get;
    QUrl url;
    QByteArray contentType;                    ///< sent when not empty
    QByteArray body;                           ///< sent with POST and DELETE
    std::chrono::milliseconds timeout{60'000}; ///< of silence: data that keeps coming keeps the request alive
    std::chrono::milliseconds mostTime = std::chrono::minutes(10); ///< from the body's last byte to the answer's
    qsizetype mostBytes = qsizetype{512} * 1024 * 1024;            ///< of the answer's body, unpacked
};

struct HttpResponse {
    std::optional<int> statusCode; ///< absent when what answered does not speak HTTP (a file: URL, say)
    QByteArray body;               ///< empty when there was none
};

/// Why no response came: name not found, refused, cut, timed out, too long. `description` is a text for people.
struct TransportError {
    QString description;
};

using HttpOutcome = std::expected<HttpResponse, TransportError>;

/// Sends HTTP requests. Lives on the UI thread, is called there and completes there.
class HttpSession {
public:
    virtual ~HttpSession() = default;

    /// Returns at once and calls `completion` exactly once, never from inside this call. When `context` is destroyed
    /// first, the request is aborted and `completion` is never called. Called or not, it is destroyed on this thread.
    /// Any status code is an outcome, not an error.
    virtual void send(const HttpRequest& request, QObject* context, std::function<void(HttpOutcome)> completion) = 0;
};

/// The session that the program uses. A body is sent once, whatever happens: a redirect in answer to it is a response
/// like any other. So that none is lost with a connection that the server keeps no longer, each request asks for its
/// connection to be closed behind it; only a server that keeps it all the same is asked there again. A request without
/// a body is repeated when its connection closes before anything came, and redirected within its scheme, host and port
/// only, so that nobody is asked or believed whom the user did not name. Nearly two hundred requests to one host are
/// under way at once; only beyond that does one wait for another, with its time-out running.
class NetworkHttpSession final : public HttpSession {
public:
    NetworkHttpSession();
    ~NetworkHttpSession() override;

    void send(const HttpRequest& request, QObject* context, std::function<void(HttpOutcome)> completion) override;

private:
    /// A manager with the number of its unfinished requests to each host and port.
    struct Lane {
        std::unique_ptr<QNetworkAccessManager> manager;
        QHash<QString, int> open;
    };
    Lane& laneTo(const QString& place);
    void leave(Lane& lane, const QString& place);

    std::vector<std::unique_ptr<Lane>> m_lanes; ///< the first one stays, the others go when they have nothing to do
};

} // namespace dorvantel
