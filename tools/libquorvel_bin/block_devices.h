// Disks and partitions in sysfs.
#pragma once

#include <stdio.h>
#include <sys/sysmacros.h>

#include "foundation/files.h"
#include "foundation/text.h"

inline constexpr char kBlockDevices[] = "/sys/block";

using SysPath = quorvel::Text<640>;

/// The number that the attribute "dev" of a directory holds; false when there is none.
[[nodiscard]] inline bool read_number(const char* directory, dev_t& number) {
    char text[32];
    unsigned int major_number, minor_number;
    if (!quorvel::read_first_line(SysPath("%s/dev", directory).c_str(), text, sizeof text)) return false;
    if (sscanf(text, "%u:%u", &major_number, &minor_number) != 2) return false;
    number = makedev(major_number, minor_number);
    return true;
}

/// Visits the entries of a directory up to the first for which `visit` is true; whether there was one.
template <typename Visit>
[[nodiscard]] bool any_entry(const char* directory, Visit&& visit) {
    quorvel::Directory entries = quorvel::open_directory(directory);
    while (const struct dirent* entry = entries != nullptr ? readdir(entries.get()) : nullptr) {
        if (!quorvel::is_dot_entry(entry->d_name) && visit(static_cast<const char*>(entry->d_name))) return true;
    }
    return false;
}

/// Visits a disk and then its partitions, whose names begin with the disk's: their directory, name and number. The link
/// "device" of an NVMe disk has a number as well, that of a character device.
template <typename Visit>
[[nodiscard]] bool any_part(const char* disk, Visit&& visit) {
    const SysPath whole("%s/%s", kBlockDevices, disk);
    dev_t number;
    if (read_number(whole.c_str(), number) && visit(whole.c_str(), disk, number)) return true;
    return any_entry(whole.c_str(), [&](const char* name) {
        const SysPath part("%s/%s", whole.c_str(), name);
        return quorvel::starts_with(name, disk) && read_number(part.c_str(), number) &&
               visit(part.c_str(), name, number);
    });
}
