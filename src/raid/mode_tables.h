// The two tables behind the front-panel line.
#pragma once

#include "quorvel/raid.h"

/// Copies status and name of every listed array and disk into its row of array_mode_tbl and disk_mode_tbl, if the table
/// has one. Prints "array_mode=" or "disk_mode=", without a line end, for each that is not listed, unless the debug
/// level is negative.
extern "C" void fill_mode_tables(void);
