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
inline constexpr char kPasswords[] = "/etc/passwd";

// Platform
inline constexpr char kBorelClass[] = "/sys/class/borel";
inline constexpr char kPciDevices[] = "/proc/bus/pci/devices";
inline constexpr char kOsRelease[] = "/proc/sys/kernel/osrelease";
inline constexpr char kDriverFirmware[] = "/proc/quorvel/firmware";
inline constexpr char kRelease[] = "/etc/quorvel-release";

// Disk

// Raid

// Net

// Services

// Hardware
inline constexpr char kTextLoopbackPort[] = "/dev/ttyS0";
inline constexpr char kLineLoopbackPort[] = "/dev/ttyS2";
inline constexpr char kModemLineMode[] = "/proc/quorvel/gpio/mctrl/mctrl_mode";
inline constexpr char kForcedTx[] = "/proc/quorvel/gpio/mctrl/force_tx";
inline constexpr char kMtdList[] = "/proc/mtd";
inline constexpr char kMtdCharacterDevice[] = "/dev/mtdchar%d";  // number of the MTD device

}  // namespace quorvel::files
