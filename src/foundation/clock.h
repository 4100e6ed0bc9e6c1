// Time that only goes forward, whatever is done to the clock on the wall.
#pragma once

#include <stdint.h>
#include <time.h>

namespace quorvel {

inline constexpr int64_t kSecond = 1'000'000'000;  // nanoseconds
inline constexpr int64_t kMillisecond = 1'000'000;

/// Nanoseconds since some moment in the past: for differences.
[[nodiscard]] inline int64_t nanoseconds_now() {
    struct timespec now = {};
    (void)clock_gettime(CLOCK_MONOTONIC, &now);
    return now.tv_sec * kSecond + now.tv_nsec;
}

}  // namespace quorvel
