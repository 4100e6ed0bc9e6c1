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
inline constexpr char kDiskOrder[] = "/etc/diskpath.conf";
inline constexpr char kExtensionSlots[] = "/etc/extslot.conf";
inline constexpr char kBlockDevices[] = "/sys/block";
inline constexpr char kScsiDevices[] = "/sys/bus/scsi/devices";
inline constexpr char kScsiHostTarget[] = "/sys/class/scsi_host/host%d/device/target%d:0:0/%d:0:0:0/";  // host, thrice
inline constexpr char kUsbDevices[] = "/proc/bus/usb/devices";
inline constexpr char kDeviceLinks[] = "/var/tmp/devlink";
inline constexpr char kDiskInfo[] = "/etc/tevra/diskinfo";
inline constexpr char kSlotHotplug[] = "/proc/quorvel/gpio/hotplug/sata%d";  // slot index
inline constexpr char kSlotNode[] = "/dev/disk%d";                           // slot
inline constexpr char kFrontTool[] = "/usr/local/sbin/frontctl";
inline constexpr char kPhysicalVolumes[] = "/tmp/pvlist";
inline constexpr char kLogicalVolumes[] = "/tmp/lvlist";
inline constexpr char kMountPoints[] = "/mnt/";
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
