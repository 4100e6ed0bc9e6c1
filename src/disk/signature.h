// The signature record between its 84 bytes on a device and its form in memory, and its report.
#pragma once

#include <optional>

#include "foundation/mac_text.h"
#include "quorvel/disk.h"

namespace quorvel {

/// The address of this appliance's first Ethernet port as a record holds it; none, and errno, when it cannot be read.
[[nodiscard]] std::optional<MacText> own_address();

/// Reads and prints the record of a device; none when that fails, which is printed.
[[nodiscard]] std::optional<disk_signature> show_signature(WholeText path);

/// Writes the record to an existing device; failures are printed.
void write_signature(const char* path, const disk_signature& record);

}  // namespace quorvel
