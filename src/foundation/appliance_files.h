// Every path the library reads, writes or runs, once. Formats take the stated arguments.
#pragma once

namespace quorvel::files {

// Foundation
inline constexpr char kLibraryConfig[] = "/etc/libquorvel_bin.conf";
inline constexpr char kFeature[] = "/etc/nas_feature";
inline constexpr char kInfo[] = "/etc/tevra/info";
inline constexpr char kSetFeatureTool[] = "/usr/local/bin/setnf";
inline constexpr char kDumpFeatureTool[] = "/usr/local/bin/dumpnf";
inline constexpr char kNvramTool[] = "/usr/local/sbin/nvram";

// Platform
inline constexpr char kBorelClass[] = "/sys/class/borel";
inline constexpr char kPciDevices[] = "/proc/bus/pci/devices";
inline constexpr char kOsRelease[] = "/proc/sys/kernel/osrelease";

// Disk
inline constexpr char kPartitions[] = "/proc/partitions";
inline constexpr char kMounts[] = "/proc/mounts";
inline constexpr char kTrialMountPoint[] = "/tmp/mount_test";
inline constexpr char kSmartctlTool[] = "/usr/local/sbin/smartctl";

// Raid

// Net
inline constexpr char kNetInterfaces[] = "/sys/class/net";
inline constexpr char kNetInterfaceFormat[] = "/sys/class/net/%s";        // interface
inline constexpr char kNetAddressFormat[] = "/sys/class/net/%s/address";  // interface
inline constexpr char kNetMtuFormat[] = "/sys/class/net/%s/mtu";          // interface
inline constexpr char kResolverSettings[] = "/etc/resolv.conf";
inline constexpr char kOpensslTool[] = "/usr/local/ssl/bin/openssl";

// Services

// Hardware

}  // namespace quorvel::files
