// How a function of the interface fails: its result, with the reason in errno. include/quorvel/api.h lists the
// reasons.
#pragma once

#include <errno.h>

namespace quorvel {

/// Gives `result`, with `reason` in errno.
[[nodiscard]] inline int fail(int reason, int result = -1) {
    errno = reason;
    return result;
}

/// The same for a function whose result is a pointer.
[[nodiscard]] inline decltype(nullptr) fail_null(int reason) {
    errno = reason;
    return nullptr;
}

/// Puts errno back as it was: an answer "no" is no failure, whatever looking for it met.
struct KeptErrno {
    int before = errno;
    KeptErrno() = default;
    ~KeptErrno() { errno = before; }
    KeptErrno(const KeptErrno&) = delete;
    KeptErrno& operator=(const KeptErrno&) = delete;
};

}  // namespace quorvel
