// Every path the library reads, writes or runs, once. Formats take the stated arguments; names of programs without a
// path are found on PATH.
#pragma once

namespace quorvel::files {

// Foundation
inline constexpr char kShell[] = "/bin/sh";
inline constexpr char kLibraryConfig[] = "/etc/libquorvel_bin.conf";
inline constexpr char kFeature[] = "/etc/nas_feature";
inline constexpr char kInfo[] = "/etc/tevra/info";
inline constexpr char kSetFeatureTool[] = "/usr/local/bin/setnf";
inline constexpr char kDumpFeatureTool[] = "/usr/local/bin/dumpnf";
inline constexpr char kNvramTool[] = "/usr/local/sbin/nvram";
inline constexpr char kPasswords[] = "/etc/passwd";
inline constexpr char kMoveTool[] = "mv";
inline constexpr char kNodes[] = "/dev/";
inline constexpr char kProc[] = "/proc/";
using Place = char[20];
inline constexpr Place kSystemPlaces[] = {"/etc/",         "/sys/block/", "/sys/bus/",     "/sys/class/",
                                          "/sys/devices/", "/dev/fd/",    "/proc/self/fd/"};
inline constexpr Place kOwnProcess[] = {"/proc/self/", "/proc/thread-self/"};
inline constexpr char kCopy[] = "/tmp/copy.XXXXXX";

// Platform
inline constexpr char kBorelClass[] = "/sys/class/borel";
inline constexpr char kPciDevices[] = "/proc/bus/pci/devices";
inline constexpr char kOsRelease[] = "/proc/sys/kernel/osrelease";
inline constexpr char kDriverFirmware[] = "/proc/quorvel/firmware";
inline constexpr char kRelease[] = "/etc/quorvel-release";

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
inline constexpr char kProgramDevice[] = "/dev/fuse";
inline constexpr char kTrialMountPoint[] = "/tmp/mount_test";
inline constexpr char kSmartctlTool[] = "/usr/local/sbin/smartctl";
inline constexpr char kPartedTool[] = "parted";
inline constexpr char kFdiskTool[] = "fdisk";
inline constexpr char kDdTool[] = "dd";
inline constexpr char kMountTool[] = "mount";
inline constexpr char kUnmountTool[] = "umount";
inline constexpr char kGrepTool[] = "grep";

// Raid
inline constexpr char kMdadmTool[] = "/sbin/mdadm";
inline constexpr char kMemberPartition[] = "/dev/%s_%d";
inline constexpr char kDevice[] = "/dev/%s";
inline constexpr char kMdNode[] = "/dev/md%d";
inline constexpr char kDataMount[] = "/mnt/%s";

// Net
inline constexpr char kNetInterfaces[] = "/sys/class/net";
inline constexpr char kNetInterfaceFormat[] = "/sys/class/net/%s";        // interface
inline constexpr char kNetAddressFormat[] = "/sys/class/net/%s/address";  // interface
inline constexpr char kNetMtuFormat[] = "/sys/class/net/%s/mtu";          // interface
inline constexpr char kResolverSettings[] = "/etc/resolv.conf";
inline constexpr char kOpensslTool[] = "/usr/local/ssl/bin/openssl";
inline constexpr char kMoveToolWithPath[] = "/bin/mv";
inline constexpr char kLookupTool[] = "nslookup";

// Services
inline constexpr char kIscsiSessions[] = "/proc/net/iet/session";
inline constexpr char kIscsiDisks[] = "/etc/tevra/iscsi_disks%d";  // configuration number
inline constexpr char kServicePorts[] = "/etc/tevra/service_ports";
inline constexpr char kBackupTask[] = "/etc/tevra/backup%d";  // task number
inline constexpr char kFilterTool[] = "iptables";
inline constexpr char kFirewallTurn[] = "/var/run/libquorvel_bin.firewall";

// Hardware
inline constexpr char kTextLoopbackPort[] = "/dev/ttyS0";
inline constexpr char kLineLoopbackPort[] = "/dev/ttyS2";
inline constexpr char kModemLineMode[] = "/proc/quorvel/gpio/mctrl/mctrl_mode";
inline constexpr char kForcedTx[] = "/proc/quorvel/gpio/mctrl/force_tx";
inline constexpr char kMtdList[] = "/proc/mtd";
inline constexpr char kMtdCharacterDevice[] = "/dev/mtdchar%d";  // number of the MTD device
inline constexpr char kBootSettingsTool[] = "nvram";
inline constexpr char kFlashEraseTool[] = "flash_eraseall";

}  // namespace quorvel::files
