#include "boards/boards_commands.h"

namespace {

// clang-format off
constexpr Command kCommands[] = {
    {"explain", "[--json] [NAME]", "tell why a disk has its name: link, table, each row, and the way back", "0 name and way back agree, 1 they do not, or no such disk", 0, 2, run_explain},
    {"check",   "",                "tell what is wrong with the configuration, a line each",              "0 clean, 1 warnings, 2 errors",                            0, 0, run_check},
    {"bay",     "DEVICE",          "print QUORVEL_BAY= and the logical name, for udev",                    "0 printed, 1 none that leads back to the device",          1, 1, run_bay},
    {"learn",   "[OPTION]...",     "write /etc/diskpath.conf for this machine, by plugging or --serials", "0 written and right, 1 not written or not right",          0, -1, run_learn},
};
// clang-format on

}  // namespace

const std::span<const Command> kBoardCommands = kCommands;
