#include "TextDate.h"

#include <array>
#include <cstddef>
#include <cstdio>
#include <ctime>

namespace {

constexpr std::array<const char*, 7> dayNames = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
constexpr std::array<const char*, 12> monthNames = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                    "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

QByteArray textOfSecond(std::time_t seconds) {
    std::tm local{};
    if (!localtime_r(&seconds, &local))
        return {};
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%s %s %d %02d:%02d:%02d %04d",
                  dayNames.at(static_cast<std::size_t>(local.tm_wday)),
                  monthNames.at(static_cast<std::size_t>(local.tm_mon)), local.tm_mday, local.tm_hour,
                  local.tm_min, local.tm_sec, 1900 + local.tm_year);
    return text.data();
}

} // namespace

QByteArray textDate(qint64 time) {
    constexpr qint64 second = 1000;
    // Down, also before 1970.
    const std::time_t seconds = time / second - (time % second < 0 ? 1 : 0);
    // Thousands of files that were unpacked together share few dates, and local time is under a lock.
    struct Known {
        std::time_t seconds;
        QByteArray text;
    };
    thread_local std::array<Known, 64> cache;
    Known& known = cache[static_cast<std::size_t>(seconds) % cache.size()];
    if (known.text.isEmpty() || known.seconds != seconds)
        known = {seconds, textOfSecond(seconds)};
    return known.text;
}
