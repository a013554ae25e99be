// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT
#pragma once

#include "modelserver/ModelService.h"

#include <QPromise>
#include <QQueue>

#include <memory>

namespace dorvantel::test {

/// A model service that says what a test tells it to. Every call is recorded. A call takes the oldest answer queued for
/// its kind and is finished when it returns; with none queued it stays open until the test answers it by its index.
class FakeModelService final : public ModelService {
public:
    struct ChatCall {
        QList<OllamaChatMessage> messages;
        std::optional<QString> model;
        std::optional<double> temperature;
    };
    struct EmbeddingCall {
        QString text;
        std::optional<QString> model;
    };

    void queueChat(ModelResult<QString> answer) { m_chats.queued.enqueue(std::move(answer)); }
    void queueEmbedding(ModelResult<QList<double>> answer) { m_embeddings.queued.enqueue(std::move(answer)); }

    /// Answers the call with this index (0 is the first call ever). Answers to a cancelled call have no effect.
    void answerChat(qsizetype call, const ModelResult<QString>& answer) { m_chats.answer(call, answer); }
    void answerEmbedding(qsizetype call, const ModelResult<QList<double>>& answer) {
        m_embeddings.answer(call, answer);
    }

    const QList<ChatCall>& chatCalls() const { return m_chatCalls; }
    const QList<EmbeddingCall>& embeddingCalls() const { return m_embeddingCalls; }
    /// Whether the caller has given this call up.
    bool isChatCancelled(qsizetype call) const { return m_chats.promises[call]->isCanceled(); }
    bool isEmbeddingCancelled(qsizetype call) const { return m_embeddings.promises[call]->isCanceled(); }

    QFuture<ModelResult<QString>> chat(const QList<OllamaChatMessage>& messages, const std::optional<QString>& model,
                                       const std::optional<double>& temperature) override {
        m_chatCalls.append({messages, model, temperature});
        return m_chats.begin();
    }

    QFuture<ModelResult<QList<double>>> generateEmbedding(const QString& text,
                                                          const std::optional<QString>& model) override {
        m_embeddingCalls.append({text, model});
        return m_embeddings.begin();
    }

private:
    template <typename Answer>
    struct Calls {
        QQueue<Answer> queued;
        QList<std::shared_ptr<QPromise<Answer>>> promises;

        QFuture<Answer> begin() {
            promises.append(std::make_shared<QPromise<Answer>>());
            promises.last()->start();
            QFuture<Answer> future = promises.last()->future();
            if (!queued.isEmpty()) {
                answer(promises.size() - 1, queued.dequeue());
            }
            return future;
        }

        void answer(qsizetype call, const Answer& value) {
            const std::shared_ptr<QPromise<Answer>> promise = promises.at(call);
            promise->addResult(value);
            promise->finish();
        }
    };

    QList<ChatCall> m_chatCalls;
    QList<EmbeddingCall> m_embeddingCalls;
    Calls<ModelResult<QString>> m_chats;
    Calls<ModelResult<QList<double>>> m_embeddings;
};

} // namespace dorvantel::test
