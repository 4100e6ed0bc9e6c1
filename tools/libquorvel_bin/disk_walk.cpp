// The walk over every disk of the machine and every empty bay.
//
// The slot tables and the links are read once. The matching is the library's own, but for one thing: where the library
// never returns, because a USB row does not let it decide, the disk is listed without a name.
#include <dirent.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include <algorithm>

#include "disk/slot_match.h"
#include "disk_walk.h"
#include "libquorvel_bin.h"
#include "naming_commands.h"

namespace {

constexpr char kBlockDevices[] = "/sys/block";
constexpr int32_t kUnnamed = DISK_PATH_END;  // sorts behind the other kinds

struct Line {
    int32_t kind = kUnnamed;
    int number = 0;
    const char* word = nullptr;  // with the number, the name; null without one
    char device[32] = "-";
    char address[48] = "-";
};

struct Listing {
    Line* lines = nullptr;
    size_t count = 0, room = 0;
    const struct disk_path* sets[2] = {};  // the one in force, and the extension card's
    bool new_sysfs = false;
};

Line* add_line(Listing& listing) {
    if (listing.count == listing.room) {
        size_t room = listing.room * 2 + 16;
        Line* grown = static_cast<Line*>(realloc(listing.lines, room * sizeof(Line)));
        if (grown == nullptr) return nullptr;
        listing.lines = grown;
        listing.room = room;
    }
    Line* line = &listing.lines[listing.count++];
    *line = Line();
    return line;
}

template <size_t Size>
void set_text(char (&target)[Size], std::string_view text) {
    size_t length = std::min(text.size(), Size - 1);
    memcpy(target, text.data(), length);
    target[length] = '\0';
}

// ---- One disk ----

// host:channel:target:lun
bool is_address(std::string_view component) {
    return component.find_first_not_of("0123456789:") == std::string_view::npos &&
           std::count(component.begin(), component.end(), ':') == 3;
}

// The last component of a link that is an address, or "-".
std::string_view address_in(std::string_view link) {
    while (!link.empty()) {
        size_t slash = link.rfind('/') + 1;  // 0 in front of the first component
        std::string_view component(link.data() + slash, link.size() - slash);
        if (is_address(component)) return component;
        link.remove_suffix(component.size() + (slash > 0 ? 1 : 0));
    }
    return "-";
}

void name_by_row(const struct disk_path& row, Line& line) {
    line.kind = row.type;
    line.number = row.slot;
    line.word = quorvel::word_of_row(row);
    if (row.scsi_id != nullptr) set_text(line.address, row.scsi_id);
}

void name_by_tables(const Listing& listing, const quorvel::DiskPlace& disk, Line& line) {
    bool decided = true;
    for (const struct disk_path* set : listing.sets) {
        if (set == nullptr || !decided) continue;
        const struct disk_path& row = set[quorvel::find_row(set, disk, [&decided] { return decided = false; })];
        if (row.type == DISK_PATH_END) continue;
        name_by_row(row, line);
        return;
    }
}

void name_by_rules(Line& line) {
    static constexpr const char* kWords[] = {"disk", "usbdisk"};
    char name[64] = "";
    if (LibQuorvelBin_GetDisknameFromDevname(line.device, name, sizeof name) != 0) return;
    for (int kind : {DISK_PATH_INTERNAL, DISK_PATH_USB}) {
        size_t length = strlen(kWords[kind]);
        if (strncmp(name, kWords[kind], length) != 0) continue;
        line.kind = kind;
        line.number = atoi(name + length);
        line.word = kWords[kind];
    }
}

// The path that a disk's link makes, for the layout of sysfs: "/sys/block/LINK" or "/sys/block/DEVICE/LINK".
void describe(const Listing& listing, Line& line) {
    char entry[64], full[5120];
    bool new_sysfs = listing.new_sysfs;
    int base =
        snprintf(full, sizeof full, "%s/%s%s", kBlockDevices, new_sysfs ? "" : line.device, new_sysfs ? "" : "/");
    (void)snprintf(entry, sizeof entry, "%s/%s%s", kBlockDevices, line.device, new_sysfs ? "" : "/device");
    ssize_t length = readlink(entry, full + base, sizeof full - static_cast<size_t>(base));
    if (length < 0) return;
    std::string_view link(full + base, static_cast<size_t>(length));
    quorvel::DiskPlace disk({full, static_cast<size_t>(base + length)}, link);
    set_text(line.address, address_in(link));
    if (listing.sets[0] == nullptr) {
        name_by_rules(line);
    } else {
        name_by_tables(listing, disk, line);
    }
}

// ---- Empty bays ----

bool is_listed(const Listing& listing, const Line& bay) {
    for (size_t i = 0; i < listing.count; i++) {
        const Line& line = listing.lines[i];
        if (line.kind == bay.kind && line.number == bay.number && strcmp(line.word, bay.word) == 0) return true;
    }
    return false;
}

bool add_bay(Listing& listing, const struct disk_path& row) {
    Line bay;
    name_by_row(row, bay);
    if (is_listed(listing, bay)) return true;
    Line* line = add_line(listing);
    if (line != nullptr) *line = bay;
    return line != nullptr;
}

// A row of an extension card may have neither a slot nor a place that a disk could be in.
bool is_bay(const struct disk_path& row) {
    return row.type == DISK_PATH_INTERNAL && row.path != nullptr && row.slot > 0;
}

bool add_empty_bays(Listing& listing) {
    for (const struct disk_path* row : listing.sets) {
        for (; row != nullptr && row->type != DISK_PATH_END; row++) {
            if (is_bay(*row) && !add_bay(listing, *row)) return false;
        }
    }
    int bays = listing.sets[0] == nullptr ? LibQuorvelBin_GetMaxDiskNum() : 0;
    for (int slot = 1; slot <= bays && slot <= 99; slot++) {
        if (!add_bay(listing, {DISK_PATH_INTERNAL, slot, nullptr, nullptr, -1, -1, nullptr})) return false;
    }
    return true;
}

// ---- The list ----

bool add_disks(Listing& listing, DIR* blocks) {
    while (const struct dirent* entry = readdir(blocks)) {
        if (strncmp(entry->d_name, "sd", 2) != 0) continue;
        Line* line = add_line(listing);
        if (line == nullptr) return false;
        set_text(line->device, entry->d_name);
        describe(listing, *line);
    }
    return true;
}

// sdb comes before sdaa.
int compare_devices(const char* one, const char* other) {
    size_t length = strlen(one), other_length = strlen(other);
    if (length != other_length) return length < other_length ? -1 : 1;
    return strcmp(one, other);
}

int compare_lines(const void* one, const void* other) {
    const Line& a = *static_cast<const Line*>(one);
    const Line& b = *static_cast<const Line*>(other);
    if (a.kind != b.kind) return a.kind < b.kind ? -1 : 1;
    if (a.number != b.number) return a.number < b.number ? -1 : 1;
    return compare_devices(a.device, b.device);
}

disk_entry entry_of(const Line& line) {
    disk_entry entry = {};
    set_text(entry.device, strcmp(line.device, "-") == 0 ? "" : line.device);
    set_text(entry.address, strcmp(line.address, "-") == 0 ? "" : line.address);
    if (line.word != nullptr) (void)snprintf(entry.name, sizeof entry.name, "%s%d", line.word, line.number);
    entry.kind = line.kind;
    entry.slot = line.number;
    return entry;
}

int visit_all(const Listing& listing, int (*visit)(const struct disk_entry*, void*), void* context) {
    if (listing.count > 0) qsort(listing.lines, listing.count, sizeof(Line), compare_lines);
    for (size_t i = 0; i < listing.count; i++) {
        const disk_entry entry = entry_of(listing.lines[i]);
        const int result = visit(&entry, context);
        if (result != 0) return result;
    }
    return 0;
}

// The set in force is taken apart: the configured one is to be released, a built-in one is not.
struct Tables {
    struct disk_path* configured = nullptr;
    struct disk_path* extension = nullptr;

    explicit Tables(Listing& listing) {
        from_cmdline = 0;  // the list is the answer, not its parts
        listing.new_sysfs = LibQuorvelBin_IsOsNewerEqual("2.6.31.8") == 1;
        configured = get_DiskOrderConfig();
        listing.sets[0] = configured != nullptr ? configured : LibQuorvelBin_GetPlatformDiskSet();
        if (listing.sets[0] != nullptr) listing.sets[1] = extension = get_ExtSlotConfig();
    }
    ~Tables() {
        disk_path_free(configured);
        disk_path_free(extension);
    }
    Tables(const Tables&) = delete;
    Tables& operator=(const Tables&) = delete;
};

}  // namespace

int32_t name_disk(const char* device, char* name, size_t size) {
    const int level = from_cmdline;
    Listing listing;
    Line line;
    {
        Tables tables(listing);
        set_text(line.device, device);
        describe(listing, line);
        if (line.word == nullptr) line.kind = kUnnamed;
        (void)snprintf(name, size, "%s", line.word != nullptr ? line.word : "-");
        size_t length = strlen(name);
        if (line.word != nullptr) (void)snprintf(name + length, size - length, "%d", line.number);
    }
    from_cmdline = level;
    return line.kind;
}

int walk_disks(int (*visit)(const struct disk_entry* disk, void* context), void* context) {
    DIR* blocks = opendir(kBlockDevices);
    if (blocks == nullptr) return -1;
    const int32_t saved = from_cmdline;
    int result = -1;
    {
        Listing listing;
        Tables tables(listing);
        if (add_disks(listing, blocks) && add_empty_bays(listing)) result = visit_all(listing, visit, context);
        free(listing.lines);
    }
    from_cmdline = saved;
    (void)closedir(blocks);
    return result;
}
