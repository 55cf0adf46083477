#pragma once

#ifdef __SANITIZE_THREAD__
#define SORVANE_THREAD_SANITIZER
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define SORVANE_THREAD_SANITIZER
#endif
#endif

#ifdef SORVANE_THREAD_SANITIZER
#include <sanitizer/tsan_interface.h>
#endif

/// What the toolkit orders between threads (the start of a task in its pool, the wait for its end, a queued
/// call) the thread sanitizer can't see, since the toolkit isn't built for it. Where such an order is, these
/// tell of it, once on each side; in other builds they do nothing.
namespace PoolOrder {

/// All that this thread did until now comes before the takeOver() of the same object that follows.
inline void handOver([[maybe_unused]] void* object) {
#ifdef SORVANE_THREAD_SANITIZER
    __tsan_release(object);
#endif
}

inline void takeOver([[maybe_unused]] void* object) {
#ifdef SORVANE_THREAD_SANITIZER
    __tsan_acquire(object);
#endif
}

} // namespace PoolOrder
