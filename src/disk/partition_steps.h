// The one runner of partitioning commands: a layout is a table of steps about the target disk.
#pragma once

#include <stdint.h>

#include <span>

#include "disk/partition_layouts.h"
#include "foundation/shell.h"

namespace quorvel {

/// The disk that a layout is for.
struct Target {
    char path[32];
    uint64_t blocks;  // of 1024 bytes; 0, and errno, when they cannot be told
};

/// A path too long to be kept whole has no size: a part of it could name another disk.
[[nodiscard]] Target choose_target(const char* device);

/// Runs a command with its output captured; whether it met the demand, or errno.
[[nodiscard]] bool run_layout_command(const Text<kCommandSize>& command, Demand demand);

/// Runs steps in order up to the first that fails; whether none did.
[[nodiscard]] bool run_steps(std::span<const Step> steps, const Target& target);

}  // namespace quorvel
