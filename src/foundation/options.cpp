#include "foundation/options.h"

#include <algorithm>

namespace quorvel {

int argument_count(int count, char** arguments) {
    int present = 0;
    while (arguments != nullptr && present < count && arguments[present] != nullptr)
        present++;
    return present;
}

OptionVector::OptionVector(int given_count, char** given)
    : count(std::min(argument_count(given_count, given), kMaxArguments)) {
    std::copy_n(given, count, arguments);
    arguments[count] = nullptr;
    // 0, not 1: the value that also clears the place inside a word of joined letters.
    optind = 0;
}

}  // namespace quorvel
