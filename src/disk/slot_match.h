// Finding the row of a slot table that a disk's place in sysfs belongs to. Plain work on texts and tables without any
// input or output of its own, so that the command front end, which shows all disks at once, decides as the library
// does.
#pragma once

#include <optional>
#include <string_view>

#include "disk/sysfs_path.h"
#include "quorvel/naming.h"

namespace quorvel {

/// A disk's place: its full path below /sys/block, and the part of it that is the text of the disk's link.
struct DiskPlace {
    std::string_view full;
    std::string_view link;
    bool usb;  // the full path contains "usb"

    DiskPlace(std::string_view full_path, std::string_view link_text)
        : full(full_path), link(link_text), usb(full_path.find("usb") != std::string_view::npos) {}
};

/// How a row fits a disk: kYes, kUndecided, or why it does not.
enum class Fit {
    kYes,
    kUndecided,   // a USB row whose path no bus follows
    kOtherKind,   // an internal row and a disk on USB, or the other way round
    kOtherPlace,  // the row's path is not in the disk's
    kOtherPort    // another port of the same USB controller
};

/// What follows a row's path in a text that contains it. A row without a path is nowhere.
[[nodiscard]] inline std::optional<std::string_view> behind_path(std::string_view text, const struct disk_path& row) {
    if (row.path == nullptr) return {};
    std::string_view path(row.path);
    size_t begin = text.find(path);
    if (begin == std::string_view::npos) return {};
    text.remove_prefix(begin + path.size());
    return text;
}

/// Whether a USB row describes the disk with this link, given what follows the row's path: that must begin with the
/// bus, or the question is undecided.
[[nodiscard]] inline Fit fit_of_usb_port(const struct disk_path& row, std::string_view behind, std::string_view link) {
    std::string_view component = path_component(behind, 1);
    std::optional<int> bus = usb_bus_of(component);
    if (!bus) return Fit::kUndecided;
    Text<112> ports("/%.*s/%d-%d", static_cast<int>(component.size()), component.data(), *bus, row.usb_port1);
    if (row.usb_port2 != -1) ports.append("/%d-%d.%d", *bus, row.usb_port1, row.usb_port2);
    ports.add("/");
    return link.find({ports.chars, ports.length}) != std::string_view::npos ? Fit::kYes : Fit::kOtherPort;
}

/// Whether a row describes a disk. Internal rows only describe disks that are not on USB, USB rows only those that are,
/// boot rows both.
[[nodiscard]] inline Fit fit_of_row(const struct disk_path& row, const DiskPlace& disk) {
    bool usb_row = row.type == DISK_PATH_USB;
    if (row.type != DISK_PATH_BOOT && usb_row != disk.usb) return Fit::kOtherKind;
    const auto behind = behind_path(disk.full, row);
    if (!behind) return Fit::kOtherPlace;
    return usb_row ? fit_of_usb_port(row, *behind, disk.link) : Fit::kYes;
}

/// The index of the END row.
[[nodiscard]] inline int index_of_end(const struct disk_path* set) {
    int index = 0;
    while (set[index].type != DISK_PATH_END)
        index++;
    return index;
}

/// The index of the first row that describes a disk, or of END. An undecided row is looked at again as long as
/// `look_again` says so, and then ends the search.
template <typename LookAgain>
[[nodiscard]] int find_row(const struct disk_path* set, const DiskPlace& disk, LookAgain&& look_again) {
    int index = 0;
    for (; set[index].type != DISK_PATH_END; index++) {
        Fit fit = fit_of_row(set[index], disk);
        while (fit == Fit::kUndecided) {
            if (!look_again()) return index_of_end(set);
            fit = fit_of_row(set[index], disk);
        }
        if (fit == Fit::kYes) break;
    }
    return index;
}

/// The word of a row's logical name, which its slot number follows.
[[nodiscard]] inline const char* word_of_row(const struct disk_path& row) {
    if (row.type == DISK_PATH_BOOT) return "bootdisk";
    if (row.diskname != nullptr) return row.diskname;
    return row.type == DISK_PATH_USB ? "usbdisk" : "disk";
}

}  // namespace quorvel
