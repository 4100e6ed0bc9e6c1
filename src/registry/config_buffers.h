// The texts of the configuration command that is under way: empty at its start, and nothing in them
// outlives it but for a following LibQuorvelBin_ConfigOperation.
#pragma once

#include <stddef.h>

namespace quorvel {

inline constexpr size_t kRegistryText = 512;

extern char scKeyPath[kRegistryText];    // the file, or the directory, that the key lives in
extern char scKeyName[kRegistryText];    // the entry's name in it
extern char scKeyRegVal[kRegistryText];  // the value to write, or the value read
extern char pscSrc[kRegistryText];       // a working copy of the key as given

/// What the first argument of LibQuorvelBin_ConfigOperation can be.
enum ConfigOperationCode : int { kConfigRead = 1, kConfigWrite = 2, kConfigDelete = 4 };

}  // namespace quorvel
