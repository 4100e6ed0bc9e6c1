#include "registry_commands.h"

#include <string.h>

#include "libquorvel_bin.h"

namespace {

int run_config(int argc, char** argv) {
    const char* operation = argc > 2 ? argv[2] : "";
    if (strcmp(operation, "apply") == 0) return run_config_apply(argc, argv);
    if (strcmp(operation, "write") == 0) return run_config_write(argv);
    if (strcmp(operation, "delete") == 0) return run_config_delete(argv);
    return exit_status_of_result(LibQuorvelBin_ConfigHelper(argc, argv));
}

// The library counts the arguments itself.
// clang-format off
constexpr Command kCommands[] = {
    {"config", "read|write|delete|apply KEY|FILE [VALUE]", "read, write or delete one setting of a configuration file, or apply a list of them",
     "0 done or usage shown, 1 failed or not found, 3 refused and nothing written, 4 (apply) not all could be put back", 0, -1, run_config},
};
// clang-format on

}  // namespace

const std::span<const Command> kRegistryCommands = kCommands;
