// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/HttpSession.h"

#include <QCoreApplication>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QPointer>
#include <QTimer>

#include <algorithm>

namespace dorvantel {

namespace {

QString timeOutText() {
    return QStringLiteral("Se ha agotado el tiempo de espera.");
}

/// Collects a reply's body as it arrives, as long as the request's limits allow. Asking for it all at the end would
/// hold a large body twice.
///
/// All that listens to the reply is connected to this object, which goes just before the reply does. What is still
/// connected to a reply while it is destroyed may be cleared away by Qt's network thread, which takes down its own side
/// of the request at that time, and then a completion would end on that thread with all that it holds.
class Answer final : public QObject {
public:
    Answer(QNetworkReply& reply, qsizetype mostBytes)
        : m_reply(reply)
        , m_mostBytes(mostBytes) {
        connect(&reply, &QObject::destroyed, this, [this] { delete this; });
    }

    /// More than this is left to the connection: a server may be quicker than this thread is at collecting. Qt's
    /// network thread hears of it only while it works on the request, and it must have heard before the answer begins.
    /// So it is told when the request is made, when the connection is, which comes before a body is handed over, and,
    /// where the connection was there already, with the head.
    void leaveToTheConnection() {
        constexpr qint64 mostUnread = qint64{4} * 1024 * 1024;
        m_reply.setReadBufferSize(mostUnread);
    }

    void readHead() {
        const qint64 announced = m_reply.header(QNetworkRequest::ContentLengthHeader).toLongLong();
        if (announced > m_mostBytes) {
            giveUp(tooLongText());
            return;
        }
        leaveToTheConnection();
        // A length that a server only claims must not cost memory before the bytes come.
        constexpr qint64 largestReserve = qint64{64} * 1024 * 1024;
        m_body.reserve(std::clamp<qint64>(announced, 0, largestReserve) + 64);
    }

    void read() {
        if (!m_reply.isReadable() || m_givenUp) {
            return;
        }
        const QByteArray piece = m_reply.readAll();
        const qsizetype before = m_body.size();
        if (piece.size() > m_mostBytes - before) {
            giveUp(tooLongText());
            return;
        }
        m_body.resize(before + piece.size()); // appending would copy the whole body each time that it needs more room
        std::ranges::copy(piece, m_body.begin() + before);
    }

    /// Ends the request, which finishes the reply.
    void giveUp(const QString& reason) {
        m_givenUp = reason;
        m_body = {};
        m_reply.abort();
    }

    const std::optional<QString>& givenUp() const { return m_givenUp; }
    QByteArray takeBody() { return std::move(m_body); }

private:
    static QString tooLongText() { return QStringLiteral("La respuesta es demasiado larga."); }

    QNetworkReply& m_reply;
    const qsizetype m_mostBytes;
    QByteArray m_body;
    std::optional<QString> m_givenUp;
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
    const int status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (reply.error() == QNetworkReply::ContentReSendError) {
        return status >= 300; // a redirect that asks for the body again, and Qt has looked whether it could be sent
    }
    // Errors that stand for a status come after those of the connection, and only a status from 400 on becomes one.
    return status >= 400 && reply.error() > QNetworkReply::UnknownNetworkError && !isCut(reply, body);
}

QString description(const QNetworkReply& reply) {
    if (reply.error() == QNetworkReply::OperationCanceledError) {
        return timeOutText();
    }
    if (reply.error() == QNetworkReply::InsecureRedirectError) {
        return QStringLiteral("El servidor remite a otra dirección.");
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
    // A connection that is kept may be closed at the very moment when it is used again, and a body sent into it is
    // lost.
    networkRequest.setRawHeader("Connection", "close");
    if (!request.contentType.isEmpty()) {
        networkRequest.setHeader(QNetworkRequest::ContentTypeHeader, request.contentType);
    }
    if (request.method == HttpRequest::Method::Get) {
        networkRequest.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                                    QNetworkRequest::SameOriginRedirectPolicy);
        return manager.get(networkRequest);
    }
    auto body = std::make_unique<OneTimeBody>(request.body);
    networkRequest.setHeader(QNetworkRequest::ContentLengthHeader, request.body.size());
    networkRequest.setAttribute(QNetworkRequest::DoNotBufferUploadDataAttribute, true);
    networkRequest.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    QNetworkReply* reply = request.method == HttpRequest::Method::Post
                               ? manager.post(networkRequest, body.get())
                               : manager.sendCustomRequest(networkRequest, QByteArrayLiteral("DELETE"), body.get());
    body.release()->setParent(reply);
    return reply;
}

HttpOutcome outcome(const QNetworkReply& reply, Answer& answer) {
    if (answer.givenUp()) {
        return std::unexpected(TransportError{*answer.givenUp()});
    }
    QByteArray body = answer.takeBody();
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
    auto* answer = new Answer(*reply, request.mostBytes);
    answer->leaveToTheConnection();
    QObject::connect(reply, &QNetworkReply::socketStartedConnecting, answer, &Answer::leaveToTheConnection);
    QObject::connect(reply, &QNetworkReply::metaDataChanged, answer, &Answer::readHead);
    QObject::connect(reply, &QIODevice::readyRead, answer, &Answer::read);
    auto* limit = new QTimer(answer); // gone with the answer, unlike a timer that nobody holds
    limit->setSingleShot(true);
    QObject::connect(limit, &QTimer::timeout, answer, [answer] { answer->giveUp(timeOutText()); });
    limit->start(request.mostTime);
    // A large PDF takes its time on a slow line; each piece of a body moves the limit, and a body has an end.
    QObject::connect(reply, &QNetworkReply::uploadProgress, limit, [limit, time = request.mostTime] {
        if (limit->isActive()) {
            limit->start(time);
        }
    });
    QObject::connect(
        reply, &QNetworkReply::finished, answer,
        [this, &lane, place, reply, answer, asker = QPointer(context), completion = std::move(completion)] {
            leave(lane, place);
            reply->deleteLater();
            if (asker) { // what is being destroyed must not hear of it
                answer->read();
                completion(outcome(*reply, *answer));
            }
        });
    QObject::connect(context, &QObject::destroyed, reply, &QNetworkReply::abort); // which finishes the reply
}

} // namespace dorvantel
