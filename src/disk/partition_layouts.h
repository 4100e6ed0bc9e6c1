// The command lines of every layout, which the library runs and the command front end shows: tables and texts, without
// input or output of their own.
#pragma once

#include <stdint.h>

#include <span>

#include "foundation/shell_word.h"

namespace quorvel {

enum class Demand { kNothing, kExitStatus, kExitStatusAndOutput };

/// A command with the target's path between its arguments, and what it takes to have succeeded.
struct Step {
    const char* tool;
    const char* before_target;
    const char* behind_target;
    Demand demand;
};

[[nodiscard]] Text<kCommandSize> command_of(const Step& step, const char* target);

/// An internal disk: the system partitions, then data_partition_command, then the boot flag.
extern const std::span<const Step> kSystemPartitions;
extern const std::span<const Step> kBootFlag;
[[nodiscard]] Text<kCommandSize> data_partition_command(const char* target, int gigabytes);

/// Whether a label word asks for a GPT; any other, and none, for an MBR.
[[nodiscard]] bool is_gpt_word(const char* label);

/// A USB disk: its label, then usb_partition_command, whose demand is the exit status and the output.
[[nodiscard]] std::span<const Step> usb_label_steps(bool gpt);
[[nodiscard]] Text<kCommandSize> usb_partition_command(const char* target, uint64_t blocks, const char* filesystem,
                                                       bool gpt);

}  // namespace quorvel
