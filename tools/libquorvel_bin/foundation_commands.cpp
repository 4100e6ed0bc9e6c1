#include "command.h"
#include "libquorvel_bin.h"

namespace {

// The library itself prints the value, or "wrong feature name".
int run_feature(int, char** argv) {
    return LibQuorvelBin_GetConfValByKey(argv[2]) == -1 ? kExitNo : kExitOk;
}

int run_set_feature(int, char** argv) {
    return exit_status_of_result(LibQuorvelBin_SetConfValInString(argv[2], argv[3]));
}

// clang-format off
constexpr Command kCommands[] = {
    {"feature",     "KEY",       "print a feature setting of the model",                "0 found, 1 missing", 1, 1, run_feature},
    {"set_feature", "KEY VALUE", "change a feature setting through the firmware tools", "0 done, 1 no tool",  2, 2, run_set_feature},
};
// clang-format on

}  // namespace

const std::span<const Command> kFoundationCommands = kCommands;
