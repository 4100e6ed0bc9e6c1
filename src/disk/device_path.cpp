#include "disk/device_path.h"

#include <errno.h>

#include "foundation/appliance_files.h"
#include "foundation/files.h"
#include "foundation/numbers.h"
#include "quorvel/platform.h"

namespace quorvel {

bool has_new_sysfs() {
    return LibQuorvelBin_IsOsNewerEqual("2.6.31.8") == 1;
}

std::optional<DevicePath> device_path(const char* device, bool new_sysfs) {
    SysfsPath entry("%s/%s%s", files::kBlockDevices, device, new_sysfs ? "" : "/device");
    char link[kLinkSize];
    if (!read_link(entry, link, sizeof link)) {
        // No entry, or one that is no link: a partition has a directory only below its disk's.
        if (errno == ENOENT || errno == EINVAL) errno = ENODEV;
        return {};
    }
    std::optional<DevicePath> path(std::in_place);
    path->full.append("%s/%s%s", files::kBlockDevices, new_sysfs ? "" : device, new_sysfs ? "" : "/");
    path->link_at = path->full.length;
    path->full.add(link);
    return path;
}

bool is_nvme_disk(const char* entry) {
    if (!starts_with(entry, "nvme")) return false;
    const char* rest = entry + strlen("nvme");
    rest += strspn(rest, "0123456789");
    return *rest == 'n' && is_all_digits(rest + 1);
}

}  // namespace quorvel
