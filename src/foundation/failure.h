// How a function of the interface fails: its result, with the reason in errno. include/quorvel/api.h lists the
// reasons.
#pragma once

#include <errno.h>

namespace quorvel {

/// Gives `result`, with `reason` in errno.
inline int fail(int reason, int result = -1) {
    errno = reason;
    return result;
}

/// The same for a function whose result is a pointer.
inline decltype(nullptr) fail_null(int reason) {
    errno = reason;
    return nullptr;
}

}  // namespace quorvel
