// Texts of others as words of a command line.
#pragma once

#include "foundation/text.h"

namespace quorvel {

/// Longest command line the library forms, terminator included.
inline constexpr size_t kCommandSize = 1024;

/// A text as one word of a command line: as it is, or in single quotes when it is empty or holds anything that a shell
/// might read as more than a plain word; a path that begins with "-" as the same path without that. No text from a file
/// or an argument becomes syntax or an option this way. A word that had to be cut fills every command line, which is
/// then cut and not run.
struct ShellWord {
    explicit ShellWord(const char* word);
    [[nodiscard]] const char* c_str() const { return plain != nullptr ? plain : quoted.c_str(); }

    const char* plain;
    Text<kCommandSize> quoted;
};

}  // namespace quorvel
