// The naming command that is large enough for a room of its own.
#pragma once

#include "command.h"

/// Lists every disk of the machine and every empty bay.
[[nodiscard]] int run_disks(int argc, char** argv);
