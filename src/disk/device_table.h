// From a logical disk to its kernel name, by a slot table.
#pragma once

#include "quorvel/naming.h"

namespace quorvel {

/// Looks for a logical disk's kernel name among the links of /sys/block. The index of the row that
/// led to it, of END when no row did, or -1 when the name holds no "disk", /sys/block cannot be
/// opened, or a link on the way cannot be read.
int find_device(const struct disk_path* set, const char* disk, char (&device)[256]);

}  // namespace quorvel
