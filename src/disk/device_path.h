// A kernel device's place in sysfs, from its link.
#pragma once

#include <limits.h>

#include <optional>

#include "disk/slot_match.h"
#include "foundation/text.h"

namespace quorvel {

/// Room for the text of a link, and for a path that one is put into.
inline constexpr size_t kLinkSize = PATH_MAX;
inline constexpr size_t kSysfsPathSize = kLinkSize + NAME_MAX + 1;
using SysfsPath = Text<kSysfsPathSize>;

/// An entry of a directory.
using EntryName = Text<NAME_MAX + 1>;

/// A device's link below /sys/block, and the path it makes: "/sys/block/" with the link of the device's own entry, or,
/// where sysfs has the old layout, "/sys/block/DEVICE/" with that of its "device" entry.
struct DevicePath {
    SysfsPath full;
    size_t link_at = 0;

    [[nodiscard]] DiskPlace place() const {
        return {
            {full.chars,           full.length          },
            {full.chars + link_at, full.length - link_at}
        };
    }
};

/// Whether sysfs has the layout of kernels from 2.6.31.8 on.
[[nodiscard]] bool has_new_sysfs();

/// The path of a device; none, and errno, when it has no readable link.
[[nodiscard]] std::optional<DevicePath> device_path(const char* device, bool new_sysfs);

/// "nvme0n1"; not "nvme0c0n1", a path to a disk with several.
[[nodiscard]] bool is_nvme_disk(const char* entry);

}  // namespace quorvel
