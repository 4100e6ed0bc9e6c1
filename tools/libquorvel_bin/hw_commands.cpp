#include "command.h"

const std::span<const Command> kHwCommands = {};
