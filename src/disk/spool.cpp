// Which disk or array is usable for data, and where its spool directory is.
#include <stdio.h>
#include <string.h>

#include "foundation/appliance_files.h"
#include "foundation/failure.h"
#include "foundation/files.h"
#include "foundation/line_reader.h"
#include "foundation/look.h"
#include "foundation/text.h"
#include "foundation/trace.h"
#include "foundation/trusted.h"
#include "quorvel/foundation.h"
#include "quorvel/naming.h"

using namespace quorvel;

namespace {

// The smallest buffer for a usable disk's name.
constexpr size_t kUsableDiskSize = 16;
constexpr size_t kPiece = 1023;                        // of a line of the list of volumes
using SpoolPath = Text<2 * kPiece + sizeof "/spool">;  // a base, a volume

struct UsableState {
    const char *key, *value;  // what they begin with
};

constexpr UsableState kUsableStates[] = {
    {"array", "raid"  },
    {"disk",  "normal"},
};

// Ends a line at its "=" when it tells of something usable.
bool is_usable(char* line) {
    char* equals = strchr(line, '=');
    if (equals == nullptr) return false;
    *equals = '\0';
    for (const UsableState& state : kUsableStates) {
        if (starts_with(line, state.key) && starts_with(equals + 1, state.value)) return true;
    }
    return false;
}

// A list that others may have a hand in must not lead out of the place it is about.
bool leads_up(const char* path) {
    for (const char* dots = strstr(path, ".."); dots != nullptr; dots = strstr(dots + 1, "..")) {
        if ((dots == path || dots[-1] == '/') && (dots[2] == '/' || dots[2] == '\0')) return true;
    }
    return false;
}

[[nodiscard]] bool is_taken(const SpoolPath& path, char* dst, size_t size) {
    if (path.length >= size || !path_exists_in_time(path)) return false;
    memset(dst, '\0', size);
    memcpy(dst, path.c_str(), path.length);
    return true;
}

[[nodiscard]] bool find_mounted(DIR* mounts, const char* disk, char* dst, size_t size) {
    while (const struct dirent* entry = readdir(mounts)) {
        const char* name = entry->d_name;
        if (is_dot_entry(name)) continue;
        SpoolPath path("%s%s/spool", files::kMountPoints, name);
        trace(kTrace, "libquorvel_bin>[%s]szTestName [%s]\n", "LibQuorvelBin_GetSpoolDir", path.c_str());
        if (starts_with(disk, name) && is_taken(path, dst, size)) return true;
    }
    return false;
}

[[nodiscard]] bool find_volume(char* dst, size_t size) {
    char base[kPiece + 1] = "";
    (void)LibQuorvelBin_GetConfValInStringByKey(base, sizeof base, "MOUNT_LVM_BASE");  // empty when it is not set
    LineFile list(open_trusted(files::kLogicalVolumes), kPiece);
    for (const char* line : list) {
        char volume[kPiece + 1];
        if (LibQuorvelBin_GetSpecifiedKey(volume, sizeof volume, line, "<>", 1) != 0 || leads_up(volume)) continue;
        const char* below = contains(volume, "/dev/") ? volume + strlen("/dev") : volume;
        SpoolPath path("%s%s/spool", base, below);
        trace(kTrace, "libquorvel_bin>[%s]lvm szTestName [%s]\n", "LibQuorvelBin_GetSpoolDir", path.c_str());
        if (is_taken(path, dst, size)) return true;
    }
    return false;
}

}  // namespace

int LibQuorvelBin_GetAvailableDiskInfo(char* dst) {
    constexpr size_t kInfoPiece = 30;
    if (dst == nullptr) return fail(EINVAL, 0);
    LineFile info(open_for_reading(files::kDiskInfo), kInfoPiece);
    if (!info) {
        int reason = errno;
        printf("[%s] is not such file", files::kDiskInfo);
        return fail(reason, 0);
    }
    int found = 0;
    for (char* line : info) {
        trace(kTrace, "[%s]>tmp_diskinfo [%s]\n", __func__, line);
        if (!is_usable(line)) continue;
        found = 1;
        if (IsLVMDisk(line) == 1) continue;
        // NOLINTNEXTLINE(bugprone-not-null-terminated-result): the caller's cleared buffer provides the terminator
        memcpy(dst, line, strnlen(line, kUsableDiskSize - 1));
        break;
    }
    return found;
}

char* LibQuorvelBin_GetSpoolDir(char* dst, size_t size) {
    if (dst == nullptr) return fail_null(EINVAL);
    Directory mounts = open_directory(files::kMountPoints);
    if (!mounts) {
        int reason = errno;
        fputs("Can't open dir : /mnt\n", stderr);
        return fail_null(reason);
    }
    char disk[kUsableDiskSize] = "";
    if (LibQuorvelBin_GetAvailableDiskInfo(disk) == 0) return fail_null(ENODATA);
    if (find_mounted(mounts.get(), disk, dst, size)) return dst;
    bool lvm = LibQuorvelBin_GetConfOnOffValInIntByKey("SUPPORT_LVM") == 1;
    return lvm && find_volume(dst, size) ? dst : fail_null(ENOENT);
}
