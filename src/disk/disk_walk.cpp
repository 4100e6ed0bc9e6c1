// Every disk of the machine and every bay, with one reading of the tables and one of each link.
#include <errno.h>
#include <stdlib.h>

#include <algorithm>

#include "disk/device_path.h"
#include "disk/naming_rules.h"
#include "disk/slot_table.h"
#include "foundation/appliance_files.h"
#include "foundation/failure.h"
#include "foundation/files.h"
#include "quorvel/foundation.h"

using namespace quorvel;

namespace {

using Entry = struct disk_entry;

constexpr int kMostBays = 99;  // that a setting may ask for

struct Walk {
    DiskSet table = set_in_force();
    DiskSet extension;
    Wiring wiring;  // for a machine without a table
    bool new_sysfs = has_new_sysfs();
    Heap<Entry> entries;
    size_t count = 0, room = 0;
};

[[nodiscard]] bool add(Walk& walk, const Entry& entry) {
    if (walk.count == walk.room) {
        size_t room = walk.room * 2 + 16;
        Entry* grown = static_cast<Entry*>(realloc(walk.entries.get(), room * sizeof(Entry)));
        if (grown == nullptr) return false;
        (void)walk.entries.release();  // realloc has it
        walk.entries.reset(grown);
        walk.room = room;
    }
    walk.entries.get()[walk.count++] = entry;
    return true;
}

// ---- One disk ----

// host:channel:target:lun
bool is_address(std::string_view component) {
    return component.find_first_not_of("0123456789:") == std::string_view::npos &&
           std::count(component.begin(), component.end(), ':') == 3;
}

// The last component of a link that is an address, or nothing.
std::string_view address_in(std::string_view link) {
    while (!link.empty()) {
        size_t begin = link.rfind('/') + 1;  // 0 in front of the first component
        std::string_view component(link.data() + begin, link.size() - begin);
        if (is_address(component)) return component;
        link.remove_suffix(component.size() + (begin > 0 ? 1 : 0));
    }
    return "";
}

void set_name(Entry& entry, const NamedDisk& named) {
    entry.kind = named.kind;
    entry.slot = named.number;
    copy_text(entry.name, sizeof entry.name, Text<sizeof entry.name>("%s%d", named.word, named.number).c_str());
    if (named.address != nullptr) copy_text(entry.address, sizeof entry.address, named.address);
}

// A row that does not let the library decide leaves the disk without a name.
std::optional<NamedDisk> name_of(const Walk& walk, const Entry& entry, const DiskPlace& place) {
    if (!walk.table) return name_by_rules(walk.wiring, entry.device, place, walk.new_sysfs);
    bool decided = true;
    auto gives_up = [&decided] { return decided = false; };
    std::optional<NamedDisk> named = named_by_table(walk.table.get(), place, gives_up);
    return named || !decided ? named : named_by_table(walk.extension.get(), place, gives_up);
}

Entry describe(const Walk& walk, const char* device) {
    Entry entry = {};
    entry.kind = DISK_PATH_END;
    copy_text(entry.device, sizeof entry.device, device);
    std::optional<DevicePath> path = device_path(entry.device, walk.new_sysfs);
    if (!path) return entry;
    DiskPlace place = path->place();
    copy_text(entry.address, sizeof entry.address, address_in(place.link));
    if (std::optional<NamedDisk> named = name_of(walk, entry, place)) set_name(entry, *named);
    return entry;
}

[[nodiscard]] bool add_disks(Walk& walk) {
    Directory blocks = open_directory(files::kBlockDevices);
    if (!blocks) return false;
    while (const struct dirent* entry = readdir(blocks.get())) {
        if (!starts_with(entry->d_name, "sd") && !is_nvme_disk(entry->d_name)) continue;
        if (!add(walk, describe(walk, entry->d_name))) return false;
    }
    return true;
}

// ---- Empty bays ----

bool is_listed(const Walk& walk, const Entry& bay) {
    const Entry* entry = walk.entries.get();
    return std::any_of(entry, entry + walk.count, [&bay](const Entry& listed) {
        return listed.kind == bay.kind && strcmp(listed.name, bay.name) == 0;
    });
}

[[nodiscard]] bool add_bay(Walk& walk, const NamedDisk& named) {
    Entry bay = {};
    set_name(bay, named);
    return is_listed(walk, bay) || add(walk, bay);
}

[[nodiscard]] bool add_bays_of_table(Walk& walk, const struct disk_path* row) {
    for (; row != nullptr && row->type != DISK_PATH_END; row++) {
        bool is_bay = row->type == DISK_PATH_INTERNAL && row->path != nullptr && row->slot > 0;
        if (is_bay && !add_bay(walk, named_by_row(*row))) return false;
    }
    return true;
}

[[nodiscard]] bool add_bays_of_setting(Walk& walk) {
    int bays = std::min(LibQuorvelBin_GetMaxDiskNum(), kMostBays);
    for (int slot = 1; slot <= bays; slot++) {
        if (!add_bay(walk, {DISK_PATH_INTERNAL, "disk", slot})) return false;
    }
    return true;
}

// ---- The order ----

// sdb comes before sdaa, and a bay before a disk that has its name too.
int compare_entries(const void* one, const void* other) {
    const Entry& a = *static_cast<const Entry*>(one);
    const Entry& b = *static_cast<const Entry*>(other);
    if (a.kind != b.kind) return a.kind < b.kind ? -1 : 1;
    if (a.slot != b.slot) return a.slot < b.slot ? -1 : 1;
    size_t length = strlen(a.device), other_length = strlen(b.device);
    if (length != other_length) return length < other_length ? -1 : 1;
    return strcmp(a.device, b.device);
}

[[nodiscard]] bool take_all(Walk& walk) {
    if (walk.table) {
        walk.extension = extension_slots();
    } else {
        walk.wiring = read_wiring();
    }
    if (!add_disks(walk)) return false;
    return walk.table ? add_bays_of_table(walk, walk.table.get()) && add_bays_of_table(walk, walk.extension.get())
                      : add_bays_of_setting(walk);
}

}  // namespace

int LibQuorvelBin_WalkDisks(int (*visit)(const struct disk_entry* disk, void* context), void* context) {
    if (visit == nullptr) return fail(EINVAL);
    Walk walk;
    if (!take_all(walk)) return -1;
    if (walk.count > 0) qsort(walk.entries.get(), walk.count, sizeof(Entry), compare_entries);
    size_t shown = 0;
    while (shown < walk.count && visit(walk.entries.get() + shown++, context) == 0) {
    }
    return static_cast<int>(shown);
}
