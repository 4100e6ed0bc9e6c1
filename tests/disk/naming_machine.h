// Machines for the disk naming tests: a platform, a kernel, and disks as sysfs links.
#pragma once

#include "disk/slot_table.h"
#include "quorvel/foundation.h"
#include "quorvel/naming.h"
#include "support/scenario.h"

inline void set_kernel(const std::string& release) {
    write_file("/proc/sys/kernel/osrelease", release + "\n");
}

inline void set_platform(const std::string& platform, const std::string& kernel = "") {
    if (!kernel.empty()) set_kernel(kernel);
    if (platform == "borel") make_directory("/sys/class/borel");
    if (platform == "pellmar") write_file("/proc/bus/pci/devices", "0100\t11ab6440\t10\n");
}

// A disk's link in the new layout of sysfs.
inline void add_disk(const std::string& device, const std::string& place) {
    make_link("/sys/block/" + device, "../devices/" + place + "/block/" + device);
}

// "hostH/targetH:0:0/H:0:0:0"
inline std::string target(int host) {
    std::string h = std::to_string(host);
    return "host" + h + "/target" + h + ":0:0/" + h + ":0:0:0";
}

// A conversion's result, or "none" when it gives -1 and left the buffer alone.
using Conversion = int (*)(const char*, char*, size_t);
inline std::string converted(Conversion convert, const std::string& name, size_t size = 128) {
    char text[160] = "before";
    int result = convert(name.c_str(), text, size);
    if (result == 0) return text;
    return result == -1 && std::string(text) == "before" ? "none" : "result " + std::to_string(result) + ": " + text;
}
inline std::string diskname(const std::string& device) {
    return converted(LibQuorvelBin_GetDisknameFromDevname, device);
}
inline std::string devname(const std::string& disk) {
    return converted(LibQuorvelBin_GetDevnameFromDiskname, disk);
}
