// The signature record between its 84 bytes on a device and its form in memory, and its report.
#pragma once

#include "quorvel/disk.h"

namespace quorvel {

/// Room for "00:11:22:aa:bb:cc".
inline constexpr size_t kAddressTextSize = sizeof(disk_signature::mac_address);

/// The address of this appliance's first Ethernet port as a record holds it; what Netdev_GetHwAddr
/// answered.
int read_own_address(char (&text)[kAddressTextSize]);

/// Reads and prints the record of a device; when that fails the failure is printed, and `record`
/// untouched.
void show_signature(const char* path, disk_signature& record);

/// Writes the record to an existing device; failures are printed.
void write_signature(const char* path, const disk_signature& record);

}  // namespace quorvel
