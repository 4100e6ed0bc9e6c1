#include "command.h"
#include "libquorvel_bin.h"

namespace {

// The helper's vector starts with the command word.
int run_md(int argc, char** argv) {
    return exit_status_of_result(LibQuorvelBin_MdHelper(argc - 1, argv + 1));
}

// clang-format off
constexpr Command kCommands[] = {
    {"md", "SUBCOMMAND [NAME]", "RAID inventory: mdinfo MD, diskinfo DISK, diskinfo guess, diskmode, diskcap, GetEmptyMdNameForTmp", "0 answered, also for what is not listed", 1, -1, run_md},
};
// clang-format on

}  // namespace

const std::span<const Command> kRaidCommands = kCommands;
