// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "platform/HttpSession.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>

namespace dorvantel {

namespace {

/// Collects a reply's body as it arrives. Asking for it all at the end would hold a large body twice.
class BodyCollector {
public:
    void read(QNetworkReply& reply) {
        if (m_body.isEmpty()) {
            // A length that a server only claims must not cost memory before the bytes come.
            constexpr qint64 largestReserve = 64 * 1024 * 1024;
            const qint64 announced = reply.header(QNetworkRequest::ContentLengthHeader).toLongLong();
            m_body.reserve(std::clamp<qint64>(announced, 0, largestReserve) + 64);
        }
        m_body.append(reply.readAll());
    }
    QByteArray take() { return std::move(m_body); }

private:
    QByteArray m_body;
};

/// A response with an error status is a response: only what kept one from arriving is a transport error.
bool hasResponse(const QNetworkReply& reply) {
    const bool hasStatus = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).isValid();
    return reply.error() == QNetworkReply::NoError ||
           (hasStatus && reply.error() >= QNetworkReply::ContentAccessDenied);
}

QString description(const QNetworkReply& reply) {
    if (reply.error() == QNetworkReply::OperationCanceledError) {
        return QStringLiteral("The request timed out.");
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

} // namespace

NetworkHttpSession::NetworkHttpSession()
    : m_manager(std::make_unique<QNetworkAccessManager>()) {}

NetworkHttpSession::~NetworkHttpSession() = default;

void NetworkHttpSession::send(const HttpRequest& request, QObject* context,
                              std::function<void(HttpOutcome)> completion) {
    QNetworkRequest networkRequest(keepingLeadingSlashes(request.url));
    networkRequest.setTransferTimeout(static_cast<int>(request.timeout.count()));
    if (!request.contentType.isEmpty()) {
        networkRequest.setHeader(QNetworkRequest::ContentTypeHeader, request.contentType);
    }

    QNetworkReply* reply = nullptr;
    switch (request.method) {
    case HttpRequest::Method::Get:
        reply = m_manager->get(networkRequest);
        break;
    case HttpRequest::Method::Post:
        reply = m_manager->post(networkRequest, request.body);
        break;
    case HttpRequest::Method::Delete:
        reply = m_manager->sendCustomRequest(networkRequest, QByteArrayLiteral("DELETE"), request.body);
        break;
    }

    auto body = std::make_shared<BodyCollector>();
    QObject::connect(reply, &QIODevice::readyRead, reply, [reply, body] { body->read(*reply); });
    QObject::connect(reply, &QNetworkReply::finished, context, [reply, body, completion = std::move(completion)] {
        reply->deleteLater();
        if (!hasResponse(*reply)) {
            completion(std::unexpected(TransportError{description(*reply)}));
            return;
        }
        body->read(*reply);
        HttpResponse response;
        const QVariant status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
        if (status.isValid()) {
            response.statusCode = status.toInt();
        }
        response.body = body->take();
        completion(std::move(response));
    });
    QObject::connect(context, &QObject::destroyed, reply, [reply](QObject* gone) {
        // Aborting finishes the reply, and what is being destroyed must not hear of it.
        reply->disconnect(gone);
        reply->abort();
        reply->deleteLater();
    });
}

} // namespace dorvantel
