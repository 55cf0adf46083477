#include "SideBySide.h"

#include "PoolOrder.h"

#include <QScopeGuard>
#include <QThreadPool>
#include <QtConcurrent>

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <vector>

namespace {

/// What the threads share.
struct Work {
    const std::size_t count;
    const std::function<void(std::size_t)>& call;
    std::atomic<std::size_t> next{0};
    std::mutex mutex;
    std::exception_ptr fault;
};

void takeWork(Work* work) {
    for (std::size_t number = work->next++; number < work->count; number = work->next++) {
        try {
            work->call(number);
        } catch (...) {
            const std::lock_guard<std::mutex> lock(work->mutex);
            if (!work->fault)
                work->fault = std::current_exception();
            work->next = work->count;
        }
    }
}

void takeWorkInPool(Work* work) {
    PoolOrder::takeOver(work);
    takeWork(work);
    PoolOrder::handOver(work);
}

} // namespace

void sideBySide(std::size_t count, const std::function<void(std::size_t)>& call) {
    Work work{count, call, {}, {}, {}};
    PoolOrder::handOver(&work);
    {
        std::vector<QFuture<void>> others;
        // Also where no more of them can be started: those that run use what is here.
        const auto join = qScopeGuard([&others] {
            for (QFuture<void>& other : others)
                other.waitForFinished();
        });
        // This thread is one of them, so that a busy pool can't hold up the work.
        const auto threads =
            static_cast<std::size_t>(std::max(QThreadPool::globalInstance()->maxThreadCount(), 1));
        others.reserve(std::min(threads, count));
        while (others.size() + 1 < std::min(threads, count))
            others.push_back(QtConcurrent::run(takeWorkInPool, &work));
        takeWork(&work);
    }
    PoolOrder::takeOver(&work);
    if (work.fault)
        std::rethrow_exception(work.fault);
}
