// The commands that make the names of a new board right.
#pragma once

#include "command.h"

/// Tells why a disk has the name that it has.
[[nodiscard]] int run_explain(int argc, char** argv);
/// Tells what is wrong with the machine's configuration.
[[nodiscard]] int run_check(int argc, char** argv);
/// Writes the slot table of this machine.
[[nodiscard]] int run_learn(int argc, char** argv);
/// Gives udev the name of a disk.
[[nodiscard]] int run_bay(int argc, char** argv);
