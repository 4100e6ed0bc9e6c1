// Disk names as callers give and get them.
#pragma once

#include "foundation/text.h"

namespace quorvel {

/// Room for the longest name: "/dev/", a configured word and a number.
inline constexpr size_t kDiskNameSize = 128;
using DiskName = Text<kDiskNameSize>;

/// Results of up to this many characters fit every caller's buffer.
inline constexpr size_t kShortName = 31;

/// A name taken from a caller: behind the first "dev/" and up to the first line feed. Cutting it to
/// its room makes no other disk's name of it.
struct GivenName {
    char text[kDiskNameSize] = "";
    bool had_dev = false;
    bool refused = true;  // null, or fewer than two characters

    explicit GivenName(const char* given);
    const char* prefix() const { return had_dev ? "/dev/" : ""; }
};

/// One number up or down, for counts that begin at 0 on one side and at 1 on the other; wraps.
constexpr int number_moved(int number, int by) {
    return static_cast<int>(static_cast<unsigned>(number) + static_cast<unsigned>(by));
}

}  // namespace quorvel
