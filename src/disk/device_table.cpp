#include "disk/device_table.h"

#include <errno.h>

#include <charconv>

#include "disk/slot_match.h"
#include "foundation/appliance_files.h"
#include "foundation/files.h"
#include "foundation/numbers.h"
#include "foundation/text.h"

namespace quorvel {

namespace {

struct WantedDisk {
    const char* name;
    int32_t type;
    int number;
};

int32_t type_of_name(const char* name) {
    if (contains(name, "usb")) return DISK_PATH_USB;
    return contains(name, "bootdisk") ? DISK_PATH_BOOT : DISK_PATH_INTERNAL;
}

bool is_word_and_number(std::string_view name, const char* word, int number) {
    if (!name.starts_with(word)) return false;
    name.remove_prefix(strlen(word));
    char digits[12];
    std::to_chars_result end = std::to_chars(digits, digits + sizeof digits, number);
    return name == std::string_view(digits, static_cast<size_t>(end.ptr - digits));
}

bool names_disk(const struct disk_path& row, const WantedDisk& disk) {
    if (row.type != disk.type) return false;
    return row.diskname != nullptr ? is_word_and_number(disk.name, row.diskname, row.slot) : row.slot == disk.number;
}

bool is_nvme_place(const struct disk_path& row) {
    return row.path != nullptr && contains(row.path, "nvme");
}

// What a row finds: an NVMe disk only where its path names an NVMe place.
struct BlockLink {
    std::string_view text;
    bool nvme;
};

bool holds_link(const struct disk_path& row, const BlockLink& link) {
    const auto behind = behind_path(link.text, row);
    return behind && (!link.nvme || is_nvme_place(row)) &&
           (row.type != DISK_PATH_USB || fit_of_usb_port(row, *behind, link.text) == Fit::kYes);
}

bool has_nvme_row(const struct disk_path* set, const WantedDisk& disk) {
    while (set->type != DISK_PATH_END && !(is_nvme_place(*set) && names_disk(*set, disk)))
        set++;
    return set->type != DISK_PATH_END;
}

// The first row from `first` on, and before `limit`, that names the disk and holds the link; or `limit`.
int row_of_link(const struct disk_path* set, int first, int limit, const WantedDisk& disk, const BlockLink& link) {
    while (first < limit && !(names_disk(set[first], disk) && holds_link(set[first], link)))
        first++;
    return first;
}

}  // namespace

// Rows are tried in turn, each on all links; one pass over the links answers for all rows, because only a link that an
// earlier row holds can take the place of one found before.
FoundDevice find_device(const struct disk_path* set, const char* disk) {
    std::optional<int> number = number_after(disk, "disk");
    if (!number) return {EINVAL, {}};
    WantedDisk wanted = {disk, type_of_name(disk), *number};
    int first = 0;
    while (set[first].type != DISK_PATH_END && !names_disk(set[first], wanted))
        first++;
    int found = index_of_end(set);
    if (first == found) return {ENXIO, {}};

    Directory blocks = open_directory(files::kBlockDevices);
    if (!blocks) return {errno, {}};
    FoundDevice device = {ENODEV, {}};
    bool with_nvme = has_nvme_row(set + first, wanted);
    while (const struct dirent* entry = found == first ? nullptr : readdir(blocks.get())) {
        const bool nvme = with_nvme && is_nvme_disk(entry->d_name);
        if (entry->d_name[0] == '.' || (!nvme && !contains(entry->d_name, "sd"))) continue;
        char link[kLinkSize];
        if (!read_link(Text<512>("%s/%s", files::kBlockDevices, entry->d_name), link, sizeof link)) return {errno, {}};
        int row = row_of_link(set, first, found, wanted, {link, nvme});
        if (row < found) device = {0, EntryName("%s", entry->d_name)};
        found = row;
    }
    return device;
}

}  // namespace quorvel
