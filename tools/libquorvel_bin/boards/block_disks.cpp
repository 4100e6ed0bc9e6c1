#include "boards/block_disks.h"

#include <dirent.h>
#include <stdlib.h>
#include <string.h>

#include "foundation/files.h"
#include "foundation/numbers.h"

using namespace quorvel;

namespace {

constexpr char kBlockDevices[] = "/sys/block";

int is_wanted(const struct dirent* entry) {
    return is_disk_entry(entry->d_name) ? 1 : 0;
}

}  // namespace

bool is_disk_entry(const char* entry) {
    if (strncmp(entry, "sd", 2) == 0) return true;
    if (!starts_with(entry, "nvme")) return false;
    // "nvme0c0n1" is one of several paths to a disk.
    const char* rest = entry + 4 + strspn(entry + 4, "0123456789");
    return *rest == 'n' && is_all_digits(rest + 1);
}

bool find_block_disk(const char* name, bool new_sysfs, BlockDisk& disk) {
    disk = BlockDisk();
    disk.name.add(name);
    disk.path.append(new_sysfs ? "%s/" : "%s/%s/", kBlockDevices, name);
    disk.link_at = disk.path.length;
    Text<160> entry(new_sysfs ? "%s/%s" : "%s/%s/device", kBlockDevices, name);
    char link[4096];
    if (entry.cut || strchr(name, '/') != nullptr || !read_link(entry.c_str(), link, sizeof link)) return false;
    disk.path.add(link);
    return true;
}

bool for_each_disk(void (*visit)(void* context, const char* name), void* context) {
    struct dirent** entries = nullptr;
    int count = scandir(kBlockDevices, &entries, is_wanted, versionsort);
    if (count < 0) return false;
    // Shorter names first, each length in its order.
    for (size_t length = 1, left = static_cast<size_t>(count); left > 0; length++) {
        for (int i = 0; i < count; i++) {
            if (strlen(entries[i]->d_name) != length) continue;
            visit(context, entries[i]->d_name);
            left--;
        }
    }
    for (int i = 0; i < count; i++)
        free(entries[i]);
    free(entries);
    return true;
}
