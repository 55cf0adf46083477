#pragma once

#include "PoolOrder.h"

#include <QFuture>
#include <QtConcurrent>

#include <exception>
#include <functional>
#include <optional>
#include <utility>

/// A call that another core makes meanwhile, and its result.
template <class Result>
class Meanwhile {
public:
    /// Starts the call in a thread of the pool. It is made by the caller of take() if no thread is free until
    /// then.
    explicit Meanwhile(std::function<Result()> call) : m_call(std::move(call)) {
        PoolOrder::handOver(this);
        m_future = QtConcurrent::run(make, this);
    }

    /// Waits for the end of the call.
    ~Meanwhile() { wait(); }

    Meanwhile(const Meanwhile&) = delete;
    Meanwhile& operator=(const Meanwhile&) = delete;

    /// Waits for the result; to be called once. Throws what the call threw.
    Result take() {
        wait();
        if (m_fault)
            std::rethrow_exception(m_fault);
        return std::move(*m_result);
    }

private:
    static void make(Meanwhile* task) {
        PoolOrder::takeOver(task);
        try {
            task->m_result = task->m_call();
        } catch (...) {
            task->m_fault = std::current_exception();
        }
        PoolOrder::handOver(task);
    }

    void wait() {
        m_future.waitForFinished();
        PoolOrder::takeOver(this);
    }

    std::function<Result()> m_call;
    std::optional<Result> m_result;
    std::exception_ptr m_fault;
    QFuture<void> m_future;
};
