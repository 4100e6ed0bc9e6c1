// disks: every disk of the machine and every empty bay, a line each: kernel name, logical name and SCSI address,
// separated by tabs, "-" where there is none. Bays come first, by slot, then USB disks, boot disks and disks without a
// name.
//
// The slot tables and the links are read once. The matching is the library's own, but for one thing: where the library
// never returns, because a USB row does not let it decide, the disk is listed without a name.
#include <dirent.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include <algorithm>

#include "boards/block_disks.h"
#include "disk/slot_match.h"
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

bool add_empty_bays(Listing& listing) {
    for (const struct disk_path* row : listing.sets) {
        for (; row != nullptr && row->type != DISK_PATH_END; row++) {
            if (row->type == DISK_PATH_INTERNAL && !add_bay(listing, *row)) return false;
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
        if (!is_disk_entry(entry->d_name)) continue;
        Line* line = add_line(listing);
        if (line == nullptr) return false;
        set_text(line->device, entry->d_name);
        describe(listing, *line);
        // The library knows disks of other kinds only where a row names their place.
        if (line->word == nullptr && strncmp(entry->d_name, "sd", 2) != 0) listing.count--;
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

void print(const Listing& listing) {
    if (listing.count > 0) qsort(listing.lines, listing.count, sizeof(Line), compare_lines);
    for (size_t i = 0; i < listing.count; i++) {
        const Line& line = listing.lines[i];
        printf("%s\t%s", line.device, line.word != nullptr ? line.word : "-");
        if (line.word != nullptr) printf("%d", line.number);
        printf("\t%s\n", line.address);
    }
}

}  // namespace

int run_disks(int, char**) {
    DIR* blocks = opendir(kBlockDevices);
    if (blocks == nullptr) {
        perror(kBlockDevices);
        return kExitNo;
    }
    from_cmdline = 0;  // the list is the answer, not its parts
    Listing listing;
    listing.new_sysfs = LibQuorvelBin_IsOsNewerEqual("2.6.31.8") == 1;
    // The set in force, taken apart: the configured one is to be released, a built-in one is not.
    struct disk_path* configured = get_DiskOrderConfig();
    listing.sets[0] = configured != nullptr ? configured : LibQuorvelBin_GetPlatformDiskSet();
    if (listing.sets[0] != nullptr) listing.sets[1] = get_ExtSlotConfig();
    bool complete = add_disks(listing, blocks) && add_empty_bays(listing);
    if (complete) print(listing);
    if (!complete) perror("disks");
    free(listing.lines);
    disk_path_free(configured);
    disk_path_free(listing.sets[1]);
    (void)closedir(blocks);
    return complete ? kExitOk : kExitNo;
}
