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

}  // namespace quorvel
