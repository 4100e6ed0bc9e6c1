// getopt for entry points that are called again and again in one process: each parse starts from a clean state and
// leaves the caller's vector, and the caller's place in a parse of its own, as they were.
#pragma once

#include <getopt.h>

namespace quorvel {

/// Longest argument vector an entry point parses. A longer one is a wrong call: nothing is read from a part of it.
inline constexpr int kMaxArguments = 256;

/// A copy of an argument vector that getopt may permute. A null entry ends it early; a null vector is empty. Making one
/// resets getopt: use getopt(vector.count, vector.arguments, ...) right after, to its end. The caller's own place in
/// getopt is put back at the end of its life.
struct OptionVector {
    OptionVector(int given_count, char** given);
    ~OptionVector();
    OptionVector(const OptionVector&) = delete;
    OptionVector& operator=(const OptionVector&) = delete;

    /// Whether all of the vector is here.
    explicit operator bool() const { return whole; }

    bool whole;
    int count = 0;
    char* arguments[kMaxArguments + 1];

private:
    int callers_index, callers_error_output, callers_letter;
    char* callers_argument;
};

/// The number of arguments really there: `count`, or fewer when a null entry comes first; 0 for a null vector.
[[nodiscard]] int argument_count(int count, char** arguments);

}  // namespace quorvel
