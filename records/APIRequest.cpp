// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#include "records/APIRequest.h"

#include "platform/Fatal.h"
#include "platform/Log.h"
#include "platform/MainQueue.h"
#include "platform/WhenFinished.h"
#include "records/Responses.h"
#include "records/WireRecords.h"

#include <QEventLoopLocker>
#include <QUrl>
#include <QtConcurrent/QtConcurrentRun>

#include <memory>
#include <utility>

namespace dorvantel {

using namespace Qt::StringLiterals;

namespace {

/// Up to this many bytes, going to another thread and back takes longer than the work.
constexpr qsizetype smallBody = qsizetype{64} * 1024;

/// A URL that only a wrong constant could keep from parsing.
QUrl trustedUrl(const QString& text) {
    const QUrl url(text, QUrl::TolerantMode);
    if (!url.isValid()) {
        fatalError(u"the URL "_s + text + u" does not parse"_s);
    }
    return url;
}

HttpRequest request(HttpRequest::Method method, const QUrl& url, const QByteArray& body = {}) {
    HttpRequest request;
    request.method = method;
    request.url = url;
    request.contentType = "application/json"_ba;
    request.body = body;
    return request;
}

/// `key` with everything but what a URL's path may hold percent-encoded.
QString pathEncoded(const QString& key) {
    return QString::fromLatin1(QUrl::toPercentEncoding(key, "!$&'()*+,;=:@/"_ba));
}

const ResponseRules& listRules() {
    static const ResponseRules rules{
        .expectedStatus = 200,
        .networkError = u"❌ Network Error: "_s,
        .invalidType = u"❌ Invalid response type"_s,
        .wrongStatus = u"❌ HTTP Error: Expected 200, got "_s,
        .responseBody = u"❌ Response body: "_s,
        .noBody = u"❌ No data received from server"_s,
        .logsProgress = true,
    };
    return rules;
}

ResponseRules pdfRules(const QString& key) {
    return {
        .expectedStatus = 200,
        .networkError = u"❌ Network Error loading PDF for "_s + key + u": "_s,
        .invalidType = u"❌ Invalid response type"_s,
        .wrongStatus = u"❌ HTTP Error loading PDF: Expected 200, got "_s,
        .responseBody = u"❌ Response body: "_s,
        .noBody = u"❌ No data received"_s,
    };
}

const ResponseRules& insertRules() {
    static const ResponseRules rules{
        .expectedStatus = 201,
        .networkError = u"❌ Network Error in insertResume: "_s,
        .invalidType = u"❌ Invalid response type in insertResume"_s,
        .wrongStatus = u"❌ Expected statusCode: 201, got "_s,
        .responseBody = u"❌ Server response: "_s,
        .noBody = u"❌ Empty response data == nil"_s,
    };
    return rules;
}

/// The candidates of a list answer, or the log lines about why there are none.
std::expected<QueryResponse, QStringList> listedCandidates(const QByteArray& body) {
    auto candidates = decodeQueryResponse(body);
    if (!candidates) {
        return std::unexpected(decodingFailureLines(candidates.error(), body));
    }
    return std::move(*candidates);
}

} // namespace

APIRequest::APIRequest(HttpSession& session, QString baseUrl)
    : m_session(session)
    , m_baseUrl(std::move(baseUrl)) {}

QString APIRequest::defaultBaseUrl() {
    return QStringLiteral(DORVANTEL_RECORDS_BASE_URL);
}

template <typename Work, typename Done>
void APIRequest::runForSize(qsizetype size, Work work, Done done) {
    if (size <= smallBody) {
        done(work());
        return;
    }
    // Shared, because a future's results are copied out of it.
    auto result = QtConcurrent::run([work = std::move(work)] { return std::make_shared<decltype(work())>(work()); });
    whenFinished(result, &m_context, [done = std::move(done)](const auto& value) { done(std::move(*value)); });
}

void APIRequest::fetchAll(Completion<std::vector<DBRecordPointer>> completion) {
    const auto received = [this, completion = std::move(completion)](HttpOutcome outcome) {
        auto body = checkedBody(std::move(outcome), listRules());
        if (!body) {
            completion(std::unexpected(body.error()));
            return;
        }
        const qsizetype size = body->size();
        const auto decode = [body = std::move(*body)] { return listedCandidates(body); };
        runForSize(size, decode, [completion](auto candidates) {
            if (candidates) {
                completion(std::move(*candidates));
                return;
            }
            for (const QString& line : candidates.error()) {
                logLine(line);
            }
            completion(std::unexpected(APIError::decodingProblem));
        });
    };
    m_session.send(request(HttpRequest::Method::Get, trustedUrl(m_baseUrl)), &m_context, received);
}

void APIRequest::fetchPDF(const QString& key, Completion<std::optional<QByteArray>> completion) {
    const QUrl url(m_baseUrl + u'/' + pathEncoded(key) + u"/file"_s, QUrl::StrictMode);
    if (!url.isValid()) {
        runOnMainQueue(&m_context, [completion = std::move(completion)] {
            completion(std::unexpected(APIError::responseProblem));
        });
        return;
    }
    const auto received = [this, key, completion = std::move(completion)](HttpOutcome outcome) {
        auto body = checkedBody(std::move(outcome), pdfRules(key));
        if (!body) {
            completion(std::unexpected(body.error()));
            return;
        }
        const qsizetype size = body->size();
        const auto decode = [body = std::move(*body)] { return decodeFileResponse(body); };
        runForSize(size, decode, [key, completion](auto answer) {
            if (!answer) {
                logLine(u"❌ Decoding Error loading PDF: "_s + debugText(answer.error()));
                completion(std::unexpected(APIError::decodingProblem));
            } else if (!answer->file || answer->file->isEmpty()) {
                logLine(u"ℹ️ No PDF data for "_s + key);
                completion(std::nullopt);
            } else {
                completion(std::move(answer->file));
            }
        });
    };
    m_session.send(request(HttpRequest::Method::Get, url), &m_context, received);
}

void APIRequest::insertResume(const DBRecordRepresentation& record, Completion<DBRecord> completion) {
    const DBRecord sent = record.toDBRecord();
    logLine(u"📤 Attempting to insert resume for "_s + sent.email + u" to "_s + m_baseUrl);
    const QUrl url = trustedUrl(m_baseUrl);

    const auto untilAnswered = std::make_shared<QEventLoopLocker>();
    const auto received = [this, untilAnswered, email = sent.email, completion](HttpOutcome outcome) {
        auto body = checkedBody(std::move(outcome), insertRules());
        if (!body) {
            completion(std::unexpected(body.error()));
            return;
        }
        const qsizetype size = body->size();
        const auto decode = [body = std::move(*body)] { return decodeDBRecord(body); };
        runForSize(size, decode, [email, completion](auto stored) {
            if (!stored) {
                logLine(u"❌ Failed to decode response: "_s + debugText(stored.error()));
                completion(std::unexpected(APIError::decodingProblem));
                return;
            }
            logLine(u"✅ Successfully inserted resume for "_s + email);
            completion(std::move(*stored));
        });
    };
    const qsizetype size = sent.file ? sent.file->size() : 0;
    const auto encode = [sent] { return encodeDBRecord(sent); };
    runForSize(size, encode, [this, url, received, completion](const std::optional<QByteArray>& body) {
        if (body) {
            m_session.send(request(HttpRequest::Method::Post, url, *body), &m_context, received);
            return;
        }
        runOnMainQueue(&m_context, [completion] { completion(std::unexpected(APIError::encodingProblem)); });
    });
}

void APIRequest::deleteResume(const QString& key) {
    const QUrl url = trustedUrl(m_baseUrl + u'/' + key);
    const std::optional<QByteArray> body = encodeKey(key);
    if (!body) {
        logLine(u"Failure! Record could not be deleted"_s);
        return;
    }
    const auto untilAnswered = std::make_shared<QEventLoopLocker>();
    const auto received = [untilAnswered](const HttpOutcome& outcome) {
        const bool isDeleted = outcome && outcome->statusCode == 204;
        logLine(isDeleted ? u"Resume deleted successfully from database"_s : u"Failure! Record could not be deleted"_s);
    };
    m_session.send(request(HttpRequest::Method::Delete, url, *body), &m_context, received);
}

void APIRequest::search(const QString& sql, Completion<std::shared_ptr<IdentifiableSearchResponse>> completion) {
    const QUrl url = trustedUrl(m_baseUrl + u"/search"_s);
    const std::optional<QByteArray> body = encodeSearchRequest({sql});
    if (!body) {
        logLine(u"Failure! No records returned"_s);
        return;
    }
    const auto received = [this, completion = std::move(completion)](HttpOutcome outcome) {
        if (!outcome || outcome->statusCode != 200 || outcome->body.isEmpty()) {
            completion(std::unexpected(APIError::responseProblem));
            return;
        }
        const qsizetype size = outcome->body.size();
        const auto decode = [body = std::move(outcome->body)] { return decodeSearchResponse(body); };
        runForSize(size, decode, [completion](auto answer) {
            if (!answer) {
                completion(std::unexpected(APIError::decodingProblem));
                return;
            }
            completion(std::make_shared<IdentifiableSearchResponse>(std::move(*answer)));
        });
    };
    m_session.send(request(HttpRequest::Method::Post, url, *body), &m_context, received);
}

} // namespace dorvantel
