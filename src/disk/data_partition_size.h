// How large the data partition of an internal disk becomes.
#pragma once

#include <stdint.h>

namespace quorvel {

/// Keeps every later layout of this process to the short data partition.
void turn_on_short_layout();

/// The data size in gigabytes that the layout gives a disk of so many blocks of 1024 bytes; false when the
/// disk is refused. Reports on standard error.
bool layout_data_size(uint64_t blocks, int& gigabytes);

}  // namespace quorvel
