#include "disk/partition_steps.h"

#include "quorvel/disk.h"

namespace quorvel {

namespace {

char target[32];

}  // namespace

uint64_t choose_target(const char* device) {
    copy_text(target, sizeof target, device);
    return strcmp(target, device) == 0 ? GetPartitionBlocks(target) : 0;
}

const char* target_device() {
    return target;
}

bool run_layout_command(const Text<kCommandSize>& command, Demand demand) {
    auto [output, status] = capture_command(command);
    if (demand == Demand::kNothing) return true;
    if (status != 0) return false;
    return demand == Demand::kExitStatus || !contains(output.get(), "failed with error");
}

bool run_steps(std::span<const Step> steps) {
    for (const Step& step : steps) {
        if (!run_layout_command(command_of(step, target), step.demand)) return false;
    }
    return true;
}

}  // namespace quorvel
