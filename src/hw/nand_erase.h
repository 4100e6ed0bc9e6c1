// The steps of wiping the NAND flash partitions from which the appliance can boot.
#pragma once

#include "quorvel/api.h"

QUORVEL_BEGIN_DECLS

/// The boot loader's setting of booting from NAND: 0 off; -1 when nvram could not be started.
[[nodiscard]] int get_nand_boot(void);

/// Switches booting from NAND off, showing what nvram prints: 0, or -1 when nvram could not be started.
[[nodiscard]] int clear_nand_boot(void);

/// Erases the MTD partition of a name: 0, or -1 when the erase tool could not be started. The tool is run without a
/// device when no partition among the first eight MTD devices has this name; its own status is not looked at.
[[nodiscard]] int erase_mtd_by_name(const char* name);

QUORVEL_END_DECLS
