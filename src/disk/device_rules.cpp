#include "disk/device_rules.h"

#include <errno.h>
#include <stdio.h>

#include <algorithm>

#include "disk/wiring.h"
#include "foundation/appliance_files.h"
#include "foundation/files.h"
#include "foundation/numbers.h"
#include "foundation/trace.h"
#include "quorvel/platform.h"

namespace quorvel {

namespace {

constexpr char kFunction[] = "LibQuorvelBin_GetDevnameFromDiskname";

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

// Slots from the fifth on skip the chip's two hosts.
int address_index(int slot) {
    int index = number_moved(slot, -1);
    return index > 3 && has_borel_extension() ? number_moved(slot, 1) : index;
}

std::optional<SysfsPath> scsi_device(const char* entry) {
    char link[kLinkSize];
    if (!read_link(Text<512>("%s/%s", files::kScsiDevices, entry), link, sizeof link)) return {};
    return SysfsPath("%s/%s", files::kScsiDevices, link);
}

std::optional<SysfsPath> find_internal(const Wiring& wiring, int slot) {
    const AddressRule* rule = kAddressRules;
    while (!wiring.internal_is(rule->type))
        rule++;
    Text<64> address("%s%d%s", rule->before, address_index(slot), rule->behind);
    std::optional<SysfsPath> path = scsi_device(address.c_str());
    if (path && contains(path->c_str(), "usb")) path.reset();
    return path;
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
    snprintf(key, sizeof key, "%s%d%s", before, number, behind);
}

// The key follows the bus on which the disk recorded for the port is found.
std::optional<PortKeys> armada370_keys(const char* digits) {
    trace(kTrace, "[%s]>p = /dev/usbdisk[%s] \n", kFunction, digits);
    std::optional<int> bus = bus_of_recorded_disk(leading_int(digits));
    if (!bus || *bus < 1 || *bus > 3) return {};
    PortKeys keys;
    set_key(keys.first, "", *bus, *bus == 3 ? "-1" : "-2");
    return keys;
}

// What stands in front of the port's number in the keys of a tree type; the last row is that of any other type.
struct KeyRule {
    const char* tree;
    const char *first, *second;
};

constexpr KeyRule kKeyRules[] = {
    {"borel-platform",     "1-",   "2-"   },
    {"single-roothub",     "1-",   nullptr},
    {"single-roothub+hub", "1-1.", nullptr},
    {nullptr,              "usb",  nullptr},
};

std::optional<PortKeys> port_keys(const Wiring& wiring, const char* digits) {
    if (wiring.usb_tree_is("armada370-platform")) return armada370_keys(digits);
    int port = leading_int(digits);
    if (wiring.usb_tree_is("tamarack-platform")) return wired_port(kTamarackPorts, port);
    if (wiring.usb_tree_is("borel-platform") && LibQuorvelbin_Has7042ExtentionChip() == 0)
        return wired_port(kBorelPorts, port);
    const KeyRule* rule = kKeyRules;
    while (rule->tree != nullptr && !wiring.usb_tree_is(rule->tree))
        rule++;
    PortKeys keys;
    set_key(keys.first, rule->first, port);
    if (rule->second != nullptr) set_key(keys.second, rule->second, port);
    return keys;
}

// The directory in front of the link holds no key.
bool has_key(const char* path, const PortKeys& keys) {
    return contains(path, keys.first) || (keys.second[0] != '\0' && contains(path, keys.second));
}

std::optional<SysfsPath> find_scsi_device(const PortKeys& keys) {
    Directory devices = open_directory(files::kScsiDevices);
    while (const struct dirent* entry = devices ? readdir(devices.get()) : nullptr) {
        if (is_dot_entry(entry->d_name)) continue;
        std::optional<SysfsPath> path = scsi_device(entry->d_name);
        if (path && has_key(path->c_str(), keys)) return path;
    }
    return {};
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

std::optional<SysfsPath> find_usb(const Wiring& wiring, const char* digits, bool new_sysfs) {
    std::optional<PortKeys> keys = port_keys(wiring, digits);
    if (!keys) return {};
    trace(kTrace, "[%s]>test_key = [%s] \n", kFunction, keys->first);
    if (keys->second[0] != '\0') trace(kTrace, "[%s]>test_key = [%s] \n", kFunction, keys->second);
    std::optional<SysfsPath> path = find_scsi_device(*keys);
    if (!path) return {};
    if (new_sysfs) append_target(leading_int(digits), *path);
    trace(kTrace, "[%s]>path = [%s] \n", kFunction, path->c_str());
    return path;
}

// ---- The block device of a SCSI device ----

std::optional<EntryName> find_entry(const SysfsPath& directory, const char* part) {
    Directory entries = open_directory(directory);
    while (const struct dirent* entry = entries ? readdir(entries.get()) : nullptr) {
        if (contains(entry->d_name, part)) return EntryName("%s", entry->d_name);
    }
    return {};
}

std::optional<EntryName> block_device(SysfsPath& path, bool new_sysfs) {
    if (new_sysfs) path.add("/block");
    std::optional<EntryName> entry = find_entry(path, new_sysfs ? "sd" : "block:");
    if (new_sysfs || !entry) return entry;
    char link[kLinkSize];
    path.append("/%s", entry->c_str());
    if (!read_link(path, link, sizeof link)) return {};
    return EntryName("%s", last_component(link));
}

}  // namespace

std::optional<EntryName> device_by_rules(const char* disk) {
    static constexpr std::string_view kInternal = "disk", kUsb = "usbdisk";
    bool internal = starts_with(disk, kInternal);
    errno = ENXIO;
    if (!internal && !starts_with(disk, kUsb)) return {};
    const char* digits = disk + (internal ? kInternal : kUsb).size();
    bool new_sysfs = has_new_sysfs();
    Wiring wiring = read_wiring();
    std::optional<SysfsPath> path =
        internal ? find_internal(wiring, leading_int(digits)) : find_usb(wiring, digits, new_sysfs);
    std::optional<EntryName> device;
    if (path) device = block_device(*path, new_sysfs);
    if (!device) errno = ENODEV;
    return device;
}

}  // namespace quorvel
