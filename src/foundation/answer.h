// The answer: what a function prints on standard output when a command front end drives the library.
#pragma once

#include <stdio.h>

#include "quorvel/foundation.h"

namespace quorvel {

/// Prints a text result as a line when `from_cmdline` is exactly 1.
inline void answer(const char* text) {
    if (from_cmdline == 1) puts(text);
}

/// Prints a number result as a line when `from_cmdline` is exactly 1.
inline void answer(int number) {
    if (from_cmdline == 1) printf("%d\n", number);
}

/// Keeps the answers of inner calls off standard output for as long as it lives.
struct QuietScope {
    int saved = from_cmdline;
    QuietScope() { from_cmdline = 0; }
    ~QuietScope() { from_cmdline = saved; }
    QuietScope(const QuietScope&) = delete;
    QuietScope& operator=(const QuietScope&) = delete;
};

}  // namespace quorvel
