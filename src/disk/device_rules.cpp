// From a logical disk to its kernel name, by wiring rules: first its SCSI device, then the block
// device below that.
#include <stdio.h>

#include <algorithm>

#include "disk/naming_rules.h"
#include "foundation/appliance_files.h"
#include "foundation/files.h"
#include "foundation/numbers.h"
#include "foundation/trace.h"
#include "quorvel/platform.h"

namespace quorvel {

namespace {

constexpr char kFunction[] = "LibQuorvelBin_GetDevnameFromDiskname";

using SysfsPath = Text<4352>;
using LinkText = char[4096];

// ---- Internal slots ----

// Where the slot's index stands in a SCSI address.
struct AddressRule {
    const char* type;
    const char *before, *behind;
};

constexpr AddressRule kAddressRules[] = {
    {"multi-host",    "",       ":0:0:0"},
    {"multi-channel", "0:",     ":0:0"  },
    {"multi-id",      "0:0:",   ":0"    },
    {"multi-lun",     "0:0:0:", ""      },
    {"",              "",       ":0:0:0"},
};

// On a borel board with the extension chip, slots from the fifth on skip the chip's two hosts.
int address_index(int slot) {
    int index = number_moved(slot, -1);
    if (index <= 3) return index;
    bool skips = LibQuorvelBin_IsBorelPlatform() == 1 && LibQuorvelbin_Has7042ExtentionChip() == 1;
    return skips ? number_moved(slot, 1) : index;
}

bool find_internal(int slot, SysfsPath& path) {
    WiringSettings wiring;
    const AddressRule* rule = kAddressRules;
    while (!wiring.internal_is(rule->type))
        rule++;
    LinkText link;
    Text<128> address("%s/%s%d%s", files::kScsiDevices, rule->before, address_index(slot), rule->behind);
    if (!read_link(address.c_str(), link, sizeof link)) return false;
    path.append("%s/%s", files::kScsiDevices, link);
    return !contains(path.c_str(), "usb");
}

// ---- USB ports ----

// Texts one of which is in the link of a SCSI device on a port. An empty first one is in every link, an empty second
// one in none.
struct PortKeys {
    char first[16] = "";
    char second[16] = "";
};

constexpr int kWiredPorts = 5;
constexpr PortKeys kBorelPorts[kWiredPorts] = {
    {"2-1", "3-1"},
    {"2-2", "3-2"},
    {"1-2", "1-4"},
    {"1-1", "1-3"},
    {"2-5", "5-1"}
};
constexpr PortKeys kTamarackPorts[kWiredPorts] = {
    {"4-1", ""   },
    {"5-1", ""   },
    {"1-2", "2-2"},
    {"1-1", "2-1"},
    {"1-3", "2-3"}
};

PortKeys wired_port(const PortKeys (&ports)[kWiredPorts], int port) {
    return port >= 1 && port <= kWiredPorts ? ports[port - 1] : PortKeys();
}

void set_key(char (&key)[16], const char* before, int number, const char* behind = "") {
    (void)snprintf(key, sizeof key, "%s%d%s", before, number, behind);
}

// The key follows the bus on which the disk recorded for the port is found.
bool armada370_key(int port, PortKeys& keys) {
    trace(kTrace, "[%s]>p = /dev/usbdisk[%d] \n", kFunction, port);
    int bus = bus_of_recorded_disk(port);
    if (bus < 1 || bus > 3) return false;
    set_key(keys.first, "", bus, bus == 3 ? "-1" : "-2");
    return true;
}

bool find_port_keys(int port, PortKeys& keys) {
    WiringSettings wiring;
    if (wiring.usb_tree_is("armada370-platform")) return armada370_key(port, keys);
    if (wiring.usb_tree_is("tamarack-platform")) {
        keys = wired_port(kTamarackPorts, port);
    } else if (wiring.usb_tree_is("borel-platform")) {
        if (LibQuorvelbin_Has7042ExtentionChip() == 0) {
            keys = wired_port(kBorelPorts, port);
        } else {
            set_key(keys.first, "1-", port);
            set_key(keys.second, "2-", port);
        }
    } else if (wiring.usb_tree_is("single-roothub")) {
        set_key(keys.first, "1-", port);
    } else if (wiring.usb_tree_is("single-roothub+hub")) {
        set_key(keys.first, "1-1.", port);
    } else {
        set_key(keys.first, "usb", port);
    }
    return true;
}

bool has_key(const char* link, const PortKeys& keys) {
    return contains(link, keys.first) || (keys.second[0] != '\0' && contains(link, keys.second));
}

bool find_scsi_device(const PortKeys& keys, SysfsPath& path) {
    Directory devices = open_directory(files::kScsiDevices);
    if (!devices) return false;
    LinkText link;
    while (const struct dirent* entry = readdir(devices.get())) {
        if (is_dot_entry(entry->d_name)) continue;
        Text<512> name("%s/%s", files::kScsiDevices, entry->d_name);
        if (!read_link(name.c_str(), link, sizeof link) || !has_key(link, keys)) continue;
        path.append("%s/%s", files::kScsiDevices, link);
        return true;
    }
    return false;
}

// The first SCSI device found on a port is its host; the disk stands below it.
void append_target(int port, SysfsPath& path) {
    if (port < 1 || port > kWiredPorts) return;
    std::string_view host = path_component(path.c_str(), port == 3 || port == 4 ? 15 : 14);
    char digits[kLongestComponent + 1];
    host.remove_prefix(std::min(host.size(), strlen("host")));
    copy_text(digits, sizeof digits, host);
    int number = leading_int(digits);
    path.append("/target%d:0:0/%d:0:0:0", number, number);
}

bool find_usb(int port, bool new_sysfs, SysfsPath& path) {
    PortKeys keys;
    if (!find_port_keys(port, keys)) return false;
    trace(kTrace, "[%s]>test_key = [%s] \n", kFunction, keys.first);
    if (keys.second[0] != '\0') trace(kTrace, "[%s]>test_key = [%s] \n", kFunction, keys.second);
    if (!find_scsi_device(keys, path)) return false;
    if (new_sysfs) append_target(port, path);
    trace(kTrace, "[%s]>path = [%s] \n", kFunction, path.c_str());
    return true;
}

// ---- The block device of a SCSI device ----

bool find_entry(const char* directory, const char* part, char (&name)[256]) {
    Directory entries = open_directory(directory);
    if (!entries) return false;
    while (const struct dirent* entry = readdir(entries.get())) {
        if (!contains(entry->d_name, part)) continue;
        copy_text(name, sizeof name, entry->d_name);
        return true;
    }
    return false;
}

bool find_block_device(SysfsPath& path, bool new_sysfs, char (&device)[256]) {
    if (new_sysfs) {
        path.append("/block");
        return !path.cut && find_entry(path.c_str(), "sd", device);
    }
    if (path.cut || !find_entry(path.c_str(), "block:", device)) return false;
    LinkText link;
    path.append("/%s", device);
    if (path.cut || !read_link(path.c_str(), link, sizeof link)) return false;
    copy_text(device, sizeof device, last_component(link));
    return true;
}

}  // namespace

bool device_by_rules(const char* disk, char (&device)[256]) {
    static constexpr std::string_view kInternal = "disk", kUsb = "usbdisk";
    bool internal = starts_with(disk, kInternal);
    if (!internal && !starts_with(disk, kUsb)) return false;
    int number = leading_int(disk + (internal ? kInternal : kUsb).size());
    bool new_sysfs = has_new_sysfs();
    SysfsPath path;
    return (internal ? find_internal(number, path) : find_usb(number, new_sysfs, path)) &&
           find_block_device(path, new_sysfs, device);
}

}  // namespace quorvel
