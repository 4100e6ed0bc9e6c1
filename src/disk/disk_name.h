// Disk names as callers give and get them.
#pragma once

#include "foundation/text.h"

namespace quorvel {

/// Room for the longest name: "/dev/", a configured word and a number.
inline constexpr size_t kDiskNameSize = 128;
using DiskName = Text<kDiskNameSize>;

/// Results of up to this many characters fit every caller's buffer.
inline constexpr size_t kShortName = 31;

/// A name taken from a caller: behind the first "dev/" and up to the first line feed. Cutting it to its room makes no
/// other disk's name of it.
struct GivenName {
    char text[kDiskNameSize] = "";
    bool had_dev = false;
    int fault = 0;  // EINVAL: null, or fewer than two characters; ENODEV: a path, which no disk is called

    [[nodiscard]] const char* prefix() const { return had_dev ? "/dev/" : ""; }
};

[[nodiscard]] GivenName given_name(const char* given);

}  // namespace quorvel
