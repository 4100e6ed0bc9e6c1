// A look at a path that a second process makes: what does not answer holds that process up, and not the caller.
#pragma once

#include <stddef.h>

#include "foundation/text.h"

namespace quorvel {

/// A look at what a path holds: fills an answer, or is false and sets errno; EINVAL is told for one that does not.
using Look = bool (*)(const char* path, void* answer);

/// What is to be looked at, a path that is not cut, where the answer goes, which is one message of a page or so at
/// most, and whether it is the number of a descriptor.
struct Question {
    Look look;
    WholeText path;
    void* answer;
    size_t size;
    bool brings_descriptor = false;
};

/// Has a second process look, which has two seconds, is no child of the caller's and ends by itself. False, and errno,
/// when the look is, or no process can be had; ETIMEDOUT when it did not answer. A descriptor arrives as one of the
/// caller's, and may be a standard one.
[[nodiscard]] bool look_elsewhere(const Question& question);

}  // namespace quorvel
