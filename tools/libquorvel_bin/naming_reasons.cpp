#include "naming_reasons.h"

#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include "disk/disk_name.h"
#include "disk/slot_match.h"
#include "libquorvel_bin.h"
#include "telling.h"

namespace {

constexpr char kNoTable[] = "no slot table for this platform, and its wiring rules do not tell";

// The set in force, and the extension card's; released when they were read from a file.
struct SlotTables {
    struct disk_path* configured = get_DiskOrderConfig();
    const struct disk_path* in_force = configured != nullptr ? configured : LibQuorvelBin_GetPlatformDiskSet();
    struct disk_path* extension = nullptr;

    SlotTables() {
        AnswersAside aside;
        if (in_force != nullptr) extension = get_ExtSlotConfig();
    }
    ~SlotTables() {
        disk_path_free(configured);
        disk_path_free(extension);
    }
    SlotTables(const SlotTables&) = delete;
    SlotTables& operator=(const SlotTables&) = delete;
};

// "/sys/block/DEVICE/" or "/sys/block/" with the text of the disk's link behind it.
struct DiskLink {
    char full[4352];
    size_t link_at = 0;
    size_t length = 0;

    std::string_view link() const { return {full + link_at, length - link_at}; }
};

[[nodiscard]] bool read_disk_link(const char* device, bool own_entry, DiskLink& disk) {
    char entry[512];
    int length = snprintf(entry, sizeof entry, "/sys/block/%s%s", device, own_entry ? "" : "/device");
    if (length < 0 || static_cast<size_t>(length) >= sizeof entry) return false;
    disk.link_at = static_cast<size_t>(strrchr(entry, '/') + 1 - entry);
    memcpy(disk.full, entry, disk.link_at);
    ssize_t read = readlink(entry, disk.full + disk.link_at, sizeof disk.full - disk.link_at);
    disk.length = disk.link_at + static_cast<size_t>(read < 0 ? 0 : read);
    return read > 0;
}

bool is_on_usb(const char* device) {
    DiskLink disk;
    return (read_disk_link(device, true, disk) || read_disk_link(device, false, disk)) &&
           disk.link().find("usb") != std::string_view::npos;
}

bool is_undecided_in(const struct disk_path* set, const quorvel::DiskPlace& place, bool& named) {
    bool undecided = false;
    if (set == nullptr || named) return false;
    int row = quorvel::find_row(set, place, [&undecided] {
        undecided = true;
        return false;
    });
    named = set[row].type != DISK_PATH_END;
    return undecided;
}

// The row of a logical name, or null.
const struct disk_path* find_named(const struct disk_path* set, const char* name) {
    for (; set != nullptr && set->type != DISK_PATH_END; set++) {
        char row_name[128];
        snprintf(row_name, sizeof row_name, "%s%d", quorvel::word_of_row(*set), set->slot);
        if (strcmp(row_name, name) == 0) return set;
    }
    return nullptr;
}

bool is_device(const char* name) {
    char entry[512];
    snprintf(entry, sizeof entry, "/sys/block/%s", name);
    struct stat status;
    return lstat(entry, &status) == 0;
}

}  // namespace

const char* without_dev(const char* name) {
    constexpr char kNodes[] = "dev/";
    const char* nodes = strstr(name, kNodes);
    return nodes != nullptr ? nodes + strlen(kNodes) : name;
}

// The cheap question comes first: only disks on USB are kept waiting. The name is taken as the library takes it, which
// would wait for a disk that was not looked at here.
bool is_never_decided(const char* device) {
    const quorvel::GivenName given = quorvel::given_name(device);
    const char* name = given.text;
    DiskLink disk;
    if (!is_on_usb(name) || !read_disk_link(name, LibQuorvelBin_IsOsNewerEqual("2.6.31.8") == 1, disk)) return false;
    const quorvel::DiskPlace place({disk.full, disk.length}, disk.link());
    SlotTables tables;
    bool named = false;
    return is_undecided_in(tables.in_force, place, named) || is_undecided_in(tables.extension, place, named);
}

const char* reason_for_no_diskname(const char* device) {
    if (!is_device(without_dev(device))) return "no such device";
    return SlotTables().in_force != nullptr ? "no row of the slot table describes its place" : kNoTable;
}

const char* reason_for_no_devname(const char* disk) {
    const SlotTables tables;
    if (tables.in_force == nullptr) return kNoTable;
    const char* name = without_dev(disk);
    bool has_row = find_named(tables.in_force, name) != nullptr || find_named(tables.extension, name) != nullptr;
    return has_row ? "no disk there" : "no row of the slot table has this name";
}

const char* reason_for_no_scsiid(const char* name) {
    const SlotTables tables;
    name = without_dev(name);
    if (tables.in_force == nullptr) return "no slot table for this platform";
    if (strstr(name, "sd") != nullptr && !is_device(name)) return "no such device";
    const struct disk_path* row = find_named(tables.in_force, name);
    if (row == nullptr) return "no internal slot of the slot table";
    return row->type == DISK_PATH_INTERNAL ? "its row of the slot table has no address" : "no internal disk";
}
