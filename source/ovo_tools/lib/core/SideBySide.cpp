#include "SideBySide.h"

#include <QThreadPool>
#include <QtConcurrent>

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <vector>

void sideBySide(std::size_t count, const std::function<void(std::size_t)>& work) {
    std::atomic<std::size_t> next{0};
    std::mutex mutex;
    std::exception_ptr fault;
    const auto takeWork = [&] {
        for (std::size_t number = next++; number < count; number = next++) {
            try {
                work(number);
            } catch (...) {
                const std::lock_guard<std::mutex> lock(mutex);
                if (!fault)
                    fault = std::current_exception();
                next = count;
            }
        }
    };
    // This thread is one of them, so that a busy pool can't hold up the work.
    const auto threads =
        static_cast<std::size_t>(std::max(QThreadPool::globalInstance()->maxThreadCount(), 1));
    std::vector<QFuture<void>> others;
    while (others.size() + 1 < std::min(threads, count))
        others.push_back(QtConcurrent::run(takeWork));
    takeWork();
    for (QFuture<void>& other : others)
        other.waitForFinished();
    if (fault)
        std::rethrow_exception(fault);
}
