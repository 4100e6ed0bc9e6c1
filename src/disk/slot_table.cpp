// The slot table in force, its release and its dump.
#include "disk/slot_table.h"

#include <stdio.h>
#include <stdlib.h>

#include "quorvel/platform.h"

namespace quorvel {

const struct disk_path* last_loaded_disk_set = nullptr;

}  // namespace quorvel

using namespace quorvel;

namespace {

const struct disk_path* built_in_set(int platform) {
    switch (platform) {
        case PLATFORM_BOREL:
            return borel_disk_set;
        case PLATFORM_NISK_12BAY:
            return nisk_disk_set;
        case PLATFORM_PELLMAR_12BAY:
            return pellmar_12bay_disk_set;
        default:
            return nullptr;
    }
}

const char* or_empty(const char* text) {
    return text != nullptr ? text : "";
}

void dump_word(const struct disk_path* set, int32_t type, const char* key) {
    const char* word = nullptr;
    for (; set->type != DISK_PATH_END; set++) {
        if (set->type == type && set->diskname != nullptr) word = set->diskname;
    }
    if (word != nullptr) printf("%s=%s\n", key, word);
}

}  // namespace

// The platform only matters without a set of the machine's own, and is not looked at before.
const struct disk_path* LibQuorvelBin_GetPlatformDiskSet(void) {
    last_loaded_disk_set = get_DiskOrderConfig();
    return last_loaded_disk_set != nullptr ? last_loaded_disk_set : built_in_set(LibQuorvelBin_GetPlatform());
}

void disk_path_free(const struct disk_path* set) {
    if (set == nullptr) return;
    for (const struct disk_path* row = set; row->type != DISK_PATH_END; row++) {
        free(row->path);
        free(row->scsi_id);
        free(row->diskname);
    }
    free(const_cast<struct disk_path*>(set));
}

void disk_path_dump(const struct disk_path* set) {
    if (set == nullptr) return;
    dump_word(set, DISK_PATH_INTERNAL, "HDD_DISKNAME");
    dump_word(set, DISK_PATH_USB, "USB_DISKNAME");
    puts(";");
    for (; set->type != DISK_PATH_END; set++) {
        const char* path = or_empty(set->path);
        if (set->type == DISK_PATH_INTERNAL)
            printf("HDD_INTERNAL=%d,\t%s,\t%s\n", set->slot, path, or_empty(set->scsi_id));
        if (set->type == DISK_PATH_USB)
            printf("HDD_USB=%d,\t%s,\t%d,\t%d\n", set->slot, path, set->usb_port1, set->usb_port2);
    }
}

int LibQuorvelBin_DumpDiskPathConfig(void) {
    disk_path_dump(LibQuorvelBin_GetPlatformDiskSet());
    return 0;
}
