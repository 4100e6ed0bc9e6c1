// The words of "config" that the front end itself looks after.
#pragma once

#include "command.h"

/// config write KEY VALUE, config write KEY --stdin: refuses what no reader would give back, and looks whether it was
/// written.
[[nodiscard]] int run_config_write(char** argv);

/// config delete KEY: looks whether it was removed.
[[nodiscard]] int run_config_delete(char** argv);

/// config apply [--dry-run] [--add] FILE: several settings at once, all of them or none.
[[nodiscard]] int run_config_apply(int argc, char** argv);
