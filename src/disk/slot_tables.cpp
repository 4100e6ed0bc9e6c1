// The built-in slot tables, and which platform has which. Rows are tried from the top.
#include "disk/slot_table.h"
#include "foundation/failure.h"
#include "quorvel/platform.h"

namespace {

// The record's texts are writable for sets read from a file; nobody writes these.
constexpr char* text(const char* constant) {
    return const_cast<char*>(constant);
}

constexpr struct disk_path internal(int slot, const char* path, const char* scsi_id) {
    return {DISK_PATH_INTERNAL, slot, text(path), text(scsi_id), -1, -1, nullptr};
}
constexpr struct disk_path usb(int port, const char* path, int root_port, int hub_port) {
    return {DISK_PATH_USB, port, text(path), nullptr, root_port, hub_port, nullptr};
}
constexpr struct disk_path boot(int number, const char* path) {
    return {DISK_PATH_BOOT, number, text(path), nullptr, -1, -1, nullptr};
}
constexpr struct disk_path kEnd = {DISK_PATH_END, -1, nullptr, nullptr, -1, -1, nullptr};

}  // namespace

// Ports 4 and 2 of the PCI USB controller are both usbdisk3, 3 and 1 both usbdisk4: two wirings of the same front
// ports.
// clang-format off
constinit const struct disk_path borel_disk_set[11] = {
    internal(1, "host0/target0:0:0/0:0:0:0", "0:0:0:0"),
    internal(2, "host1/target1:0:0/1:0:0:0", "1:0:0:0"),
    internal(3, "host2/target2:0:0/2:0:0:0", "2:0:0:0"),
    internal(4, "host3/target3:0:0/3:0:0:0", "3:0:0:0"),
    usb(1, "pci0000:00/0000:00:1d.7",              1, -1),
    usb(2, "pci0000:00/0000:00:1d.7",              2, -1),
    usb(3, "pci0000:00/0000:00:1c.0/0000:04:00.0", 4, -1),
    usb(4, "pci0000:00/0000:00:1c.0/0000:04:00.0", 3, -1),
    usb(3, "pci0000:00/0000:00:1c.0/0000:04:00.0", 2, -1),
    usb(4, "pci0000:00/0000:00:1c.0/0000:04:00.0", 1, -1),
    kEnd,
};

// Slots 1 to 8 hang on one SAS controller, whose disks appear below a SAS port or below a plain SCSI target.
constinit const struct disk_path nisk_disk_set[28] = {
    internal(1,  "host0/port-0:0/end_device-0:0", "0:0:0:0"),
    internal(1,  "host0/target0:0:0/0:0:0:0",     "0:0:0:0"),
    internal(2,  "host0/port-0:1/end_device-0:1", "0:0:1:0"),
    internal(2,  "host0/target0:0:1/0:0:1:0",     "0:0:1:0"),
    internal(3,  "host0/port-0:2/end_device-0:2", "0:0:2:0"),
    internal(3,  "host0/target0:0:2/0:0:2:0",     "0:0:2:0"),
    internal(4,  "host0/port-0:3/end_device-0:3", "0:0:3:0"),
    internal(4,  "host0/target0:0:3/0:0:3:0",     "0:0:3:0"),
    internal(5,  "host0/port-0:4/end_device-0:4", "0:0:4:0"),
    internal(5,  "host0/target0:0:4/0:0:4:0",     "0:0:4:0"),
    internal(6,  "host0/port-0:5/end_device-0:5", "0:0:5:0"),
    internal(6,  "host0/target0:0:5/0:0:5:0",     "0:0:5:0"),
    internal(7,  "host0/port-0:6/end_device-0:6", "0:0:6:0"),
    internal(7,  "host0/target0:0:6/0:0:6:0",     "0:0:6:0"),
    internal(8,  "host0/port-0:7/end_device-0:7", "0:0:7:0"),
    internal(8,  "host0/target0:0:7/0:0:7:0",     "0:0:7:0"),
    internal(9,  "host1/target1:0:0/1:0:0:0",     "1:0:0:0"),
    internal(10, "host2/target2:0:0/2:0:0:0",     "2:0:0:0"),
    internal(11, "host7/target7:0:0/7:0:0:0",     "7:0:0:0"),
    internal(12, "host8/target8:0:0/8:0:0:0",     "8:0:0:0"),
    usb(1, "pci0000:00/0000:00:1d.0", 1, 4),
    usb(2, "pci0000:00/0000:00:1d.0", 1, 3),
    usb(3, "pci0000:00/0000:00:1a.0", 1, 1),
    usb(4, "pci0000:00/0000:00:1a.0", 1, 2),
    usb(5, "pci0000:00/0000:00:1d.0", 1, 5),
    usb(6, "pci0000:00/0000:00:1d.0", 1, 6),
    boot(1, "host6/target6:0:0/6:0:0:0"),
    kEnd,
};

// The USB paths run past the bus level, which the matcher answers by never returning.
constinit const struct disk_path pellmar_12bay_disk_set[16] = {
    internal(1,  "pci0000:00/0000:00:1f.2/host3/target3:0:0/3:0:0:0",                  nullptr),
    internal(2,  "pci0000:00/0000:00:1f.2/host2/target2:0:0/2:0:0:0",                  nullptr),
    internal(3,  "pci0000:00/0000:00:06.0/0000:01:00.0/host0/port-0:3/end_device-0:3", nullptr),
    internal(4,  "pci0000:00/0000:00:06.0/0000:01:00.0/host0/port-0:0/end_device-0:0", nullptr),
    internal(5,  "pci0000:00/0000:00:1f.2/host4/target4:0:0/4:0:0:0",                  nullptr),
    internal(6,  "pci0000:00/0000:00:1c.0/0000:02:00.0/host1/port-1:0/end_device-1:0", nullptr),
    internal(7,  "pci0000:00/0000:00:1c.0/0000:02:00.0/host1/port-1:2/end_device-1:2", nullptr),
    internal(8,  "pci0000:00/0000:00:06.0/0000:01:00.0/host0/port-0:2/end_device-0:2", nullptr),
    internal(9,  "pci0000:00/0000:00:1f.2/host5/target5:0:0/5:0:0:0",                  nullptr),
    internal(10, "pci0000:00/0000:00:1c.0/0000:02:00.0/host1/port-1:1/end_device-1:1", nullptr),
    internal(11, "pci0000:00/0000:00:1c.0/0000:02:00.0/host1/port-1:3/end_device-1:3", nullptr),
    internal(12, "pci0000:00/0000:00:06.0/0000:01:00.0/host0/port-0:1/end_device-0:1", nullptr),
    usb(1, "pci0000:00/0000:00:1d.0/usb2/2-1/2-1.7/2-1.7:1.0", -1, -1),
    usb(2, "pci0000:00/0000:00:1a.0/usb1/1-1/1-1.3/1-1.3:1.0", -1, -1),
    usb(3, "pci0000:00/0000:00:1a.0/usb1/1-1/1-1.1/1-1.1:1.0", -1, -1),
    kEnd,
};
// clang-format on

namespace quorvel {

namespace {

struct BuiltInSet {
    int platform;
    const struct disk_path* set;
};

// A set that is added stays in this file: an exported one would keep its size for ever.
constexpr BuiltInSet kBuiltInSets[] = {
    {PLATFORM_BOREL,         borel_disk_set        },
    {PLATFORM_NISK_12BAY,    nisk_disk_set         },
    {PLATFORM_PELLMAR_12BAY, pellmar_12bay_disk_set},
};

}  // namespace

const struct disk_path* built_in_set(int platform) {
    for (const BuiltInSet& row : kBuiltInSets) {
        if (row.platform == platform) return row.set;
    }
    return fail_null(EOPNOTSUPP);
}

bool is_built_in(const struct disk_path* set) {
    for (const BuiltInSet& row : kBuiltInSets) {
        if (row.set == set) return true;
    }
    return false;
}

}  // namespace quorvel
