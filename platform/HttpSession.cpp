// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/HttpSession.h"

#include <QCoreApplication>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>

#include <algorithm>

namespace dorvantel {

namespace {

/// Collects a reply's body as it arrives. Asking for it all at the end would hold a large body twice.
class BodyCollector {
public:
    void read(QNetworkReply& reply) {
        if (m_body.isEmpty()) {
            // A length that a server only claims must not cost memory before the bytes come.
            constexpr qint64 largestReserve = qint64{64} * 1024 * 1024;
            const qint64 announced = reply.header(QNetworkRequest::ContentLengthHeader).toLongLong();
            m_body.reserve(std::clamp<qint64>(announced, 0, largestReserve) + 64);
        }
        if (reply.isReadable()) {
            m_body.append(reply.readAll());
        }
    }
    QByteArray take() { return std::move(m_body); }

private:
    QByteArray m_body;
};

/// A request's body that can be read once. From a `QByteArray` Qt would send the request again when a connection is cut
/// before the answer, up to three times, and the server may have done each time what it was asked to do.
class OneTimeBody final : public QIODevice {
public:
    explicit OneTimeBody(QByteArray body)
        : m_body(std::move(body)) {
        open(QIODevice::ReadOnly);
    }
    bool isSequential() const override { return true; }
    bool reset() override { return false; }
    qint64 bytesAvailable() const override { return m_body.size() - m_read + QIODevice::bytesAvailable(); }

protected:
    qint64 readData(char* data, qint64 mostBytes) override {
        const qint64 count = std::min(mostBytes, m_body.size() - m_read);
        std::copy_n(m_body.constData() + m_read, count, data);
        m_read += count;
        return count == 0 && mostBytes > 0 ? -1 : count;
    }
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    QByteArray m_body;
    qint64 m_read = 0;
};

bool isHttp(const QNetworkReply& reply) {
    return reply.url().scheme().startsWith(QLatin1String("http"));
}

/// Whether the answer ended before the length that it announced. Of an answer with an error status Qt does not say so.
bool isCut(const QNetworkReply& reply, const QByteArray& body) {
    const QVariant announced = reply.header(QNetworkRequest::ContentLengthHeader);
    const bool isPlain = !reply.hasRawHeader("Content-Encoding");
    return announced.isValid() && isPlain && body.size() < announced.toLongLong();
}

/// A response with an error status is a response: only what kept one from arriving is a transport error.
bool hasResponse(const QNetworkReply& reply, const QByteArray& body) {
    if (reply.error() == QNetworkReply::NoError) {
        return true;
    }
    // Errors that stand for a status come after those of the connection, and only a status from 400 on becomes one.
    const int status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    return status >= 400 && reply.error() > QNetworkReply::UnknownNetworkError && !isCut(reply, body);
}

QString description(const QNetworkReply& reply) {
    if (reply.error() == QNetworkReply::OperationCanceledError) {
        return QStringLiteral("Se ha agotado el tiempo de espera.");
    }
    if (reply.error() == QNetworkReply::ContentReSendError) {
        // The connection closed before the answer, and a body that is sent once cannot be sent again.
        return QCoreApplication::translate("QHttp", "Connection closed"); // as Qt words it elsewhere
    }
    return reply.errorString();
}

/// A URL whose path reaches the server as it is. On the way into the request line Qt drops one slash of a path that
/// begins with several, so such a path gets one more.
QUrl keepingLeadingSlashes(QUrl url) {
    if (url.path().startsWith(QLatin1String("//")) &&
        url.adjusted(QUrl::NormalizePathSegments).path().size() < url.path().size()) {
        url.setPath(QLatin1Char('/') + url.path(QUrl::FullyEncoded), QUrl::StrictMode);
    }
    return url;
}

QNetworkReply* start(QNetworkAccessManager& manager, const HttpRequest& request) {
    QNetworkRequest networkRequest(keepingLeadingSlashes(request.url));
    networkRequest.setTransferTimeout(static_cast<int>(request.timeout.count()));
    if (!request.contentType.isEmpty()) {
        networkRequest.setHeader(QNetworkRequest::ContentTypeHeader, request.contentType);
    }
    if (request.method == HttpRequest::Method::Get) {
        return manager.get(networkRequest);
    }
    auto body = std::make_unique<OneTimeBody>(request.body);
    networkRequest.setHeader(QNetworkRequest::ContentLengthHeader, request.body.size());
    networkRequest.setAttribute(QNetworkRequest::DoNotBufferUploadDataAttribute, true);
    QNetworkReply* reply = request.method == HttpRequest::Method::Post
                               ? manager.post(networkRequest, body.get())
                               : manager.sendCustomRequest(networkRequest, QByteArrayLiteral("DELETE"), body.get());
    body.release()->setParent(reply);
    return reply;
}

HttpOutcome outcome(const QNetworkReply& reply, QByteArray body) {
    if (!hasResponse(reply, body)) {
        return std::unexpected(TransportError{description(reply)});
    }
    HttpResponse response;
    if (isHttp(reply)) {
        response.statusCode = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    }
    response.body = std::move(body);
    return response;
}

} // namespace

NetworkHttpSession::NetworkHttpSession() = default;

NetworkHttpSession::~NetworkHttpSession() = default;

/// A manager opens six connections to a host and keeps further requests waiting, their time-out running. A few requests
/// that are never answered would then take all others with them, so a request goes where a connection is free.
NetworkHttpSession::Lane& NetworkHttpSession::laneTo(const QString& place) {
    constexpr int connectionsPerManager = 6;
    constexpr std::size_t mostLanes = 32; // each has a thread, and each connection a file descriptor
    const auto open = [&place](const std::unique_ptr<Lane>& lane) { return lane->open.value(place); };
    const auto free = std::ranges::find_if(m_lanes, [](int count) { return count < connectionsPerManager; }, open);
    if (free != m_lanes.end()) {
        return **free;
    }
    if (m_lanes.size() == mostLanes) {
        return **std::ranges::min_element(m_lanes, {}, open);
    }
    m_lanes.push_back(std::make_unique<Lane>(std::make_unique<QNetworkAccessManager>()));
    return *m_lanes.back();
}

void NetworkHttpSession::leave(Lane& lane, const QString& place) {
    if (--lane.open[place] == 0) {
        lane.open.remove(place);
    }
    if (lane.open.isEmpty() && &lane != m_lanes.front().get()) {
        lane.manager.release()->deleteLater(); // the reply that has just ended is a part of it
        std::erase_if(m_lanes, [&lane](const std::unique_ptr<Lane>& other) { return other.get() == &lane; });
    }
}

void NetworkHttpSession::send(const HttpRequest& request, QObject* context,
                              std::function<void(HttpOutcome)> completion) {
    const QString place = request.url.authority();
    Lane& lane = laneTo(place);
    ++lane.open[place];
    QNetworkReply* reply = start(*lane.manager, request);
    auto body = std::make_shared<BodyCollector>();
    QObject::connect(reply, &QIODevice::readyRead, reply, [reply, body] { body->read(*reply); });
    QObject::connect(reply, &QNetworkReply::finished, reply, [this, &lane, place] { leave(lane, place); });
    QObject::connect(reply, &QNetworkReply::finished, context, [reply, body, completion = std::move(completion)] {
        reply->deleteLater();
        body->read(*reply);
        completion(outcome(*reply, body->take()));
    });
    QObject::connect(context, &QObject::destroyed, reply, [reply](QObject* gone) {
        // Aborting finishes the reply, and what is being destroyed must not hear of it.
        reply->disconnect(gone);
        reply->abort();
        reply->deleteLater();
    });
}

} // namespace dorvantel
