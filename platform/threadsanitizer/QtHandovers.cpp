// SPDX-FileCopyrightText: 2026 The Dorvantel founders
// SPDX-License-Identifier: MIT

// The system's Qt is not built with the thread sanitizer, which therefore does not see how Qt hands things from one
// thread to another, and takes all that was handed over for a race. Builds with the thread sanitizer, and no others,
// put these functions between our calls of Qt and Qt itself (the linker's --wrap). Each tells of one order that Qt
// promises and of nothing more, so that two tasks that share what they must not are still found.

#include <QFutureInterface>
#include <QRunnable>
#include <QThreadPool>

#include <functional>
#include <utility>

#include <sanitizer/tsan_interface.h>

namespace {

/// Stands in the pool for another runnable: what was done before it was started comes before it runs, and what it did
/// before it is done. The pool owns it.
class HandedOver final : public QRunnable {
public:
    HandedOver(QThreadPool* pool, QRunnable* runnable)
        : m_pool(pool)
        , m_runnable(runnable) {
        __tsan_release(this);
    }

    void run() override {
        __tsan_acquire(this);
        const bool isOurs = m_runnable->autoDelete();
        m_runnable->run();
        if (isOurs) {
            delete m_runnable;
        }
        __tsan_release(m_pool);
    }

private:
    QThreadPool* m_pool;
    QRunnable* m_runnable;
};

} // namespace

void startInQt(QThreadPool* pool, QRunnable* runnable, int priority) asm("__real__ZN11QThreadPool5startEP9QRunnablei");
bool waitForDoneInQt(QThreadPool* pool, int msecs) asm("__real__ZN11QThreadPool11waitForDoneEi");
bool derefTInQt(const QFutureInterfaceBase* future) asm("__real__ZNK20QFutureInterfaceBase6derefTEv");

void start(QThreadPool* pool, QRunnable* runnable, int priority) asm("__wrap__ZN11QThreadPool5startEP9QRunnablei");
void start(QThreadPool* pool, QRunnable* runnable, int priority) {
    startInQt(pool, new HandedOver(pool, runnable), priority);
}

void start(QThreadPool* pool, std::function<void()> work,
           int priority) asm("__wrap__ZN11QThreadPool5startESt8functionIFvvEEi");
void start(QThreadPool* pool, std::function<void()> work, int priority) {
    start(pool, QRunnable::create(std::move(work)), priority);
}

bool waitForDone(QThreadPool* pool, int msecs) asm("__wrap__ZN11QThreadPool11waitForDoneEi");
bool waitForDone(QThreadPool* pool, int msecs) {
    const bool isDone = waitForDoneInQt(pool, msecs);
    if (isDone) {
        __tsan_acquire(pool);
    }
    return isDone;
}

/// Whether somebody else still refers to the result. Who does last, destroys it after all the others have used it.
bool derefT(const QFutureInterfaceBase* future) asm("__wrap__ZNK20QFutureInterfaceBase6derefTEv");
bool derefT(const QFutureInterfaceBase* future) {
    void* state = &future->mutex();
    __tsan_release(state);
    const bool isShared = derefTInQt(future);
    if (!isShared) {
        __tsan_acquire(state);
    }
    return isShared;
}
