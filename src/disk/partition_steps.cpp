#include "disk/partition_steps.h"

#include <errno.h>

#include "quorvel/disk.h"

namespace quorvel {

namespace {

// The step that changes nothing has parted take a label word for its device: a name in the caller's directory, where
// somebody else may have laid a pipe that it would wait at, or a link. In the root directory only root lays any.
[[nodiscard]] Text<kCommandSize> shell_line(const Step& step, const char* target) {
    const Text<kCommandSize> command = command_of(step, target);
    return step.demand == Demand::kNothing ? Text<kCommandSize>("cd / && %s", command.c_str()) : command;
}

}  // namespace

Target choose_target(const char* device) {
    Target target;
    copy_text(target.path, sizeof target.path, device);
    bool whole = strcmp(target.path, device) == 0;
    if (!whole) errno = ENAMETOOLONG;
    target.blocks = whole ? GetPartitionBlocks(target.path) : 0;
    return target;
}

bool run_layout_command(const Text<kCommandSize>& command, Demand demand) {
    auto [output, status] = capture_command(command);
    if (demand == Demand::kNothing) return true;
    errno = could_not_execute(status) ? ENOPKG : EIO;
    if (status != 0) return false;
    return demand == Demand::kExitStatus || !contains(output.get(), "failed with error");
}

bool run_steps(std::span<const Step> steps, const Target& target) {
    for (const Step& step : steps) {
        if (!run_layout_command(shell_line(step, target.path), step.demand)) return false;
    }
    return true;
}

}  // namespace quorvel
