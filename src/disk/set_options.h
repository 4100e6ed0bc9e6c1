// The options of "set", which both commands about the signature device have.
#pragma once

#include <errno.h>

#include "foundation/options.h"

namespace quorvel {

/// Hands each option to `take(letter, argument)`, until one gives a result other than 0, which is the answer. `letters`
/// begin with "-", so that words that are no options do not end them, whatever POSIXLY_CORRECT says: those are passed
/// over. A vector that is too long gives `wrong` and errno.
template <typename Take>
[[nodiscard]] int take_options(int count, char** arguments, const char* letters, int wrong, Take&& take) {
    constexpr int kOtherWord = 1;
    OptionVector vector(count, arguments);
    if (!vector) errno = EINVAL;
    int result = vector ? 0 : wrong;
    for (int letter = 0; result == 0 && letter != -1;) {
        letter = getopt(vector.count, vector.arguments, letters);
        if (letter != -1 && letter != kOtherWord) result = take(letter, optarg);
    }
    return result;
}

}  // namespace quorvel
