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

// Raid

// Net

// Services
inline constexpr char kIscsiSessions[] = "/proc/net/iet/session";
inline constexpr char kIscsiDisks[] = "/etc/tevra/iscsi_disks%d";  // the configuration number
inline constexpr char kServicePorts[] = "/etc/tevra/service_ports";
inline constexpr char kBackupTask[] = "/etc/tevra/backup%d";  // the task number

// Hardware

}  // namespace quorvel::files
