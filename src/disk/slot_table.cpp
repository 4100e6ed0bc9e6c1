// The slot table in force, its release and its dump.
#include "disk/slot_table.h"

#include <errno.h>
#include <stdio.h>
#include <stdlib.h>

#include "foundation/failure.h"
#include "quorvel/platform.h"

namespace quorvel {

const struct disk_path* last_loaded_disk_set = nullptr;

// The platform only matters without a set of the machine's own, and is not looked at before.
DiskSet set_in_force() {
    DiskSet configured(get_DiskOrderConfig());
    return configured ? static_cast<DiskSet&&>(configured) : DiskSet(built_in_set(LibQuorvelBin_GetPlatform()));
}

}  // namespace quorvel

using namespace quorvel;

namespace {

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

const struct disk_path* LibQuorvelBin_GetPlatformDiskSet(void) {
    const struct disk_path* set = set_in_force().release();
    __atomic_store_n(&last_loaded_disk_set, is_built_in(set) ? nullptr : set, __ATOMIC_RELAXED);
    return set;
}

void disk_path_free(const struct disk_path* set) {
    if (set == nullptr || is_built_in(set)) return;
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
