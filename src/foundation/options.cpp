#include "foundation/options.h"

#include <algorithm>

namespace quorvel {

int argument_count(int count, char** arguments) {
    int present = 0;
    while (arguments != nullptr && present < count && arguments[present] != nullptr)
        present++;
    return present;
}

// cppcheck-suppress uninitMemberVar
OptionVector::OptionVector(int given_count, char** given)
    : callers_index(optind), callers_error_output(opterr), callers_letter(optopt), callers_argument(optarg) {
    int present = argument_count(given_count, given);
    whole = present <= kMaxArguments;
    count = whole ? present : 0;
    std::copy_n(given, count, arguments);
    arguments[count] = nullptr;
    // 0, not 1: the value that also clears the place inside a word of joined letters.
    optind = 0;
}

OptionVector::~OptionVector() {
    optind = callers_index;
    opterr = callers_error_output;
    optopt = callers_letter;
    optarg = callers_argument;
}

}  // namespace quorvel
