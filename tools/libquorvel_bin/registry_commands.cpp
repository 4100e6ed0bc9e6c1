#include "command.h"
#include "libquorvel_bin.h"

namespace {

int run_config(int argc, char** argv) {
    return exit_status_of_result(LibQuorvelBin_ConfigHelper(argc, argv));
}

// The library counts the arguments itself.
// clang-format off
constexpr Command kCommands[] = {
    {"config", "read|write|delete KEY [VALUE]", "read, write or delete one setting of a configuration file", "0 done or usage shown, 1 failed or not found", 0, -1, run_config},
};
// clang-format on

}  // namespace

const std::span<const Command> kRegistryCommands = kCommands;
