#include "command.h"
#include "held_signals.h"
#include "libquorvel_bin.h"

namespace {

// The library itself prints lines and verdict.
int run_ups_test(int, char**) {
    return exit_status_of_result(LibQuorvelBin_UpsTest());
}

// The library's results but one: 2 is the status of a wrong call.
int run_nand_erase(int, char**) {
    constexpr int kRootNotErased = 2;
    constexpr int kExitRootNotErased = 4;
    hold_signals();
    int result = LibQuorvelBin_NandErase();
    return result == kRootNotErased ? kExitRootNotErased : result;
}

// clang-format off
constexpr Command kCommands[] = {
    {"ups_test",   "", "test the UPS port with a loopback plug in it",       "0 passed, 1 failed", 0, 0, run_ups_test},
    {"nand_erase", "", "switch NAND boot off and wipe its two partitions",
     "0 both given to flash_eraseall, 1 nboot not erased, 3 NAND boot not switched off and nothing erased, 4 nroot not erased", 0, 0, run_nand_erase},
};
// clang-format on

}  // namespace

const std::span<const Command> kHwCommands = kCommands;
