// The one runner of partitioning commands: a layout is a table of steps about the target disk.
#pragma once

#include <stdint.h>

#include <span>

#include "disk/partition_layouts.h"
#include "foundation/shell.h"

namespace quorvel {

/// Makes a device the target of the steps that follow; its size in blocks of 1024 bytes, or 0 when it
/// cannot be told. A path too long to be kept whole has none: a part of it could name another disk.
uint64_t choose_target(const char* device);

/// The path that choose_target kept.
const char* target_device();

/// Runs a command with its output captured; whether it met the demand.
bool run_layout_command(const Text<kCommandSize>& command, Demand demand);

/// Runs steps in order up to the first that fails; whether none did.
bool run_steps(std::span<const Step> steps);

}  // namespace quorvel
