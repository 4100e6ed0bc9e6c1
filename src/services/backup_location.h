// Where an entry of a backup task's pair list is, as rsync is told.
//
//   share/dir/sub        a local location
//   host@share/dir/sub   the same on another machine, or on this one when `host` is its name
#pragma once

#include "foundation/text.h"
#include "services/backup_task.h"

namespace quorvel {

/// Room for everything formed from two entries and a name, one of them percent-encoded.
inline constexpr size_t kAddressText = 6 * kTaskLine;

struct BackupLocation {
    Text<kAddressText> address;  // what rsync gets
    Text<kAddressText> origin;   // "HOST/SUB", the place of a source in a generation; may be empty
};

/// An entry without a share and a directory is its own address and has no origin.
[[nodiscard]] BackupLocation locate(const char* entry);

}  // namespace quorvel
