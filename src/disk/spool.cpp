// Which disk or array is usable for data, and where its spool directory is.
#include <stdio.h>
#include <string.h>

#include "foundation/appliance_files.h"
#include "foundation/files.h"
#include "foundation/line_reader.h"
#include "foundation/text.h"
#include "foundation/trace.h"
#include "quorvel/foundation.h"
#include "quorvel/naming.h"

using namespace quorvel;

namespace {

// The smallest buffer for a usable disk's name.
constexpr size_t kUsableDiskSize = 16;
using SpoolPath = Text<2112>;

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

bool is_taken(const SpoolPath& path, char* dst, size_t size) {
    if (path.cut || path.length >= size || !path_exists(path.c_str())) return false;
    memset(dst, '\0', size);
    memcpy(dst, path.c_str(), path.length);
    return true;
}

bool find_mounted(DIR* mounts, const char* disk, char* dst, size_t size) {
    while (const struct dirent* entry = readdir(mounts)) {
        const char* name = entry->d_name;
        if (is_dot_entry(name)) continue;
        SpoolPath path("%s%s/spool", files::kMountPoints, name);
        trace(kTrace, "libquorvel_bin>[%s]szTestName [%s]\n", "LibQuorvelBin_GetSpoolDir", path.c_str());
        if (starts_with(disk, name) && is_taken(path, dst, size)) return true;
    }
    return false;
}

bool find_volume(char* dst, size_t size) {
    char base[1024] = "", line[1024], volume[1024];
    (void)LibQuorvelBin_GetConfValInStringByKey(base, sizeof base, "MOUNT_LVM_BASE");
    Descriptor list = open_for_reading(files::kLogicalVolumes);
    if (!list) return false;
    LineReader reader(list.number, sizeof line - 1);
    while (next_line(reader, line, sizeof line)) {
        if (LibQuorvelBin_GetSpecifiedKey(volume, sizeof volume, line, "<>", 1) != 0) continue;
        const char* below = contains(volume, "/dev/") ? volume + strlen("/dev") : volume;
        SpoolPath path("%s%s/spool", base, below);
        trace(kTrace, "libquorvel_bin>[%s]lvm szTestName [%s]\n", "LibQuorvelBin_GetSpoolDir", path.c_str());
        if (is_taken(path, dst, size)) return true;
    }
    return false;
}

}  // namespace

int LibQuorvelBin_GetAvailableDiskInfo(char* dst) {
    if (dst == nullptr) return 0;
    Descriptor info = open_for_reading(files::kDiskInfo);
    if (!info) {
        printf("[%s] is not such file", files::kDiskInfo);
        return 0;
    }
    int found = 0;
    char line[31];
    LineReader reader(info.number, sizeof line - 1);
    while (next_line(reader, line, sizeof line)) {
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
    if (dst == nullptr) return nullptr;
    Directory mounts = open_directory(files::kMountPoints);
    if (!mounts) {
        (void)fputs("Can't open dir : /mnt\n", stderr);
        return nullptr;
    }
    char disk[kUsableDiskSize] = "";
    if (LibQuorvelBin_GetAvailableDiskInfo(disk) == 0) return nullptr;
    if (find_mounted(mounts.get(), disk, dst, size)) return dst;
    bool lvm = LibQuorvelBin_GetConfOnOffValInIntByKey("SUPPORT_LVM") == 1;
    return lvm && find_volume(dst, size) ? dst : nullptr;
}
