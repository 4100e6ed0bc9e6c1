// The texts that stay behind when the configuration command ends, for a following LibQuorvelBin_ConfigOperation. They
// are read and filled at the edge only; inside, an entry is a value.
#pragma once

#include <stddef.h>

#include "foundation/text.h"

namespace quorvel {

inline constexpr size_t kRegistryText = 512;

extern char scKeyPath[kRegistryText];    // the file, or the directory, that the key lives in
extern char scKeyName[kRegistryText];    // the entry's name in it
extern char scKeyRegVal[kRegistryText];  // the value to write, or the value read
extern char pscSrc[kRegistryText];       // a working copy of the key as given

using RegistryText = Text<kRegistryText>;

/// An entry of the registry as a value: what a key names, and what is written or was read.
struct ConfigEntry {
    RegistryText path;
    RegistryText name;
    RegistryText value;
};

/// The entry that the buffers hold, and the buffers as an entry leaves them.
[[nodiscard]] ConfigEntry entry_of_buffers();
void fill_buffers(const ConfigEntry& entry);

/// What the first argument of LibQuorvelBin_ConfigOperation can be.
enum ConfigOperationCode : int { kConfigRead = 1, kConfigWrite = 2, kConfigDelete = 4 };

}  // namespace quorvel
