#include "boards/reasons.h"

#include <algorithm>

using namespace quorvel;

namespace {

// Takes the first component off a path.
std::string_view take_component(std::string_view& path) {
    path.remove_prefix(std::min(path.find_first_not_of('/'), path.size()));
    std::string_view component(path.data(), std::min(path.find('/'), path.size()));
    path.remove_prefix(component.size());
    return component;
}

size_t common_prefix(std::string_view one, std::string_view other) {
    return static_cast<size_t>(std::mismatch(one.begin(), one.end(), other.begin(), other.end()).first - one.begin());
}

// The first component in which a row's path and a disk's differ, where the row's fits the disk's best.
struct Difference {
    std::string_view wanted, found;
    size_t likeness = 0;
};

// Lays a row's path on what is left of a disk's. A component counts more than all characters of one.
Difference lay_on(std::string_view row, std::string_view disk) {
    constexpr size_t kWholeComponent = 1000;
    Difference result;
    for (bool first = true;; first = false) {
        result.wanted = take_component(row);
        result.found = take_component(disk);
        bool same = first ? result.found.ends_with(result.wanted) : result.found == result.wanted;
        if (!same || row.empty()) break;
        result.likeness += kWholeComponent;
    }
    result.likeness += common_prefix(result.wanted, result.found);
    return result;
}

Difference find_difference(std::string_view row, std::string_view disk) {
    Difference best;
    std::string_view rest = row;
    best.wanted = take_component(rest);
    while (!disk.empty()) {
        Difference here = lay_on(row, disk);
        if (here.likeness > best.likeness) best = here;
        (void)take_component(disk);
    }
    return best;
}

int length_of(std::string_view text) {
    return static_cast<int>(text.size());
}

void explain_place(const struct disk_path& row, const DiskPlace& disk, Reason& reason) {
    if (row.path == nullptr) return reason.add("the row has no path");
    Difference difference = find_difference(row.path, disk.full);
    reason.append("its path differs at \"%.*s\"", length_of(difference.wanted), difference.wanted.data());
    if (difference.likeness == 0) return reason.add(", which is nowhere in the disk's");
    if (difference.found.empty()) return reason.add(", before which the disk's ends");
    reason.append(": the disk has \"%.*s\"", length_of(difference.found), difference.found.data());
}

// The device that the disk's link goes through last: "1-2.4" of ".../usb1/1-2/1-2.4/1-2.4:1.0/...".
std::string_view usb_device_of(std::string_view link) {
    std::string_view device;
    while (!link.empty()) {
        std::string_view component = take_component(link);
        if (component.find_first_not_of("0123456789-.") == std::string_view::npos &&
            component.find('-') != component.npos)
            device = component;
    }
    return device;
}

void add_ports(const struct disk_path& row, Reason& reason) {
    reason.append("its port is %d", row.usb_port1);
    if (row.usb_port2 != -1) reason.append(" and %d behind a hub", row.usb_port2);
}

void explain_port(const struct disk_path& row, const DiskPlace& disk, Reason& reason) {
    add_ports(row, reason);
    std::string_view device = usb_device_of(disk.link);
    reason.append(": the disk is at \"%.*s\"", length_of(device), device.data());
}

void explain_indecision(const struct disk_path& row, const DiskPlace& disk, Reason& reason) {
    std::string_view behind = behind_path(disk.full, row).value_or("");
    std::string_view next = take_component(behind);
    reason.append("behind its path \"usb\" and a bus must follow, not \"%.*s\": programs that ask wait for ever",
                  length_of(next), next.data());
}

}  // namespace

Reason reason_of(Fit fit, const struct disk_path& row, const DiskPlace& disk) {
    Reason reason;
    switch (fit) {
        case Fit::kOtherKind:
            reason.add(disk.usb ? "the disk is on USB, the row is not"
                                : "the row is a USB one, the disk is not on USB");
            break;
        case Fit::kOtherPlace:
            explain_place(row, disk, reason);
            break;
        case Fit::kOtherPort:
            explain_port(row, disk, reason);
            break;
        case Fit::kUndecided:
            explain_indecision(row, disk, reason);
            break;
        case Fit::kYes:
            reason.append("the disk's path holds \"%s\"", row.path);
            if (row.type != DISK_PATH_USB) break;
            reason.add(", and ");
            add_ports(row, reason);
    }
    return reason;
}

const char* word_of_fit(Fit fit) {
    if (fit == Fit::kYes) return "yes";
    return fit == Fit::kUndecided ? "undecided" : "no";
}

Text<128> name_of_row(const struct disk_path& row) {
    return Text<128>("%s%d", word_of_row(row), row.slot);
}
