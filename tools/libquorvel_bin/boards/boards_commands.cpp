#include "boards/boards_commands.h"

namespace {

// clang-format off
constexpr Command kCommands[] = {
    {"explain", "[--json] [NAME]", "tell why a disk has its name: link, table, each row, and the way back", "0 name and way back agree, 1 they do not, or no such disk", 0, 2, run_explain},
};
// clang-format on

}  // namespace

const std::span<const Command> kBoardCommands = kCommands;
