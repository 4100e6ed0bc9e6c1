// getopt for entry points that are called again and again in one process: each parse starts from a
// clean state and leaves the caller's vector as it was.
#pragma once

#include <getopt.h>

namespace quorvel {

/// Longest argument vector an entry point parses; arguments behind it are not looked at.
inline constexpr int kMaxArguments = 256;

/// A copy of an argument vector that getopt may permute. A null entry ends it early; a null vector
/// is empty. Making one resets getopt: use getopt(vector.count, vector.arguments, ...) right after,
/// to its end.
struct OptionVector {
    OptionVector(int given_count, char** given);

    int count = 0;
    char* arguments[kMaxArguments + 1];
};

/// The number of arguments really there: `count`, or fewer when a null entry comes first; 0 for a
/// null vector.
int argument_count(int count, char** arguments);

}  // namespace quorvel
