// From a disk's place in sysfs to its logical name, by wiring rules.
#include "disk/naming_rules.h"

#include <stdio.h>

#include "foundation/appliance_files.h"
#include "foundation/key_value.h"
#include "foundation/numbers.h"
#include "foundation/trace.h"
#include "quorvel/platform.h"

namespace quorvel {

namespace {

constexpr char kFunction[] = "LibQuorvelBin_GetDisknameFromDevname";

struct Component {
    char text[kLongestComponent + 1];

    Component(std::string_view path, int number) { copy_text(text, sizeof text, path_component(path, number)); }
    /// What stands from a place on; empty when the component is shorter.
    char* from(size_t place) { return text + strnlen(text, place); }
};

// ---- USB ports ----

// Where a tree type's port number stands: the component of the path, and the place in it.
struct PortRule {
    const char* tree;
    int component;
    size_t place;
};

constexpr PortRule kPortRules[] = {
    {"single-roothub",     10, sizeof "B-" - 1  },
    {"single-roothub+hub", 11, sizeof "B-1." - 1},
};

// The ports of the PCI USB controller count backwards, and are wired twice.
char borel_port_digit(char digit) {
    if (digit == '1' || digit == '3') return '4';
    return digit == '2' || digit == '4' ? '3' : digit;
}

int borel_port(std::string_view path) {
    Component device(path, 9);
    char* port = device.from(strlen("B-"));
    if (*port == '\0') return 0;
    bool plain = starts_with(device.text, "2-") || starts_with(device.text, "3-");
    if (!plain && LibQuorvelbin_Has7042ExtentionChip() == 0)
        *port = starts_with(device.text, "5-") ? '5' : borel_port_digit(*port);
    return leading_int(port);
}

// The port that the hot-plug side gave the device, if the disk recorded there is attached.
bool armada370_port(const char* device, int& port) {
    char node[128] = "";
    (void)get_StringbyKey(files::kDeviceLinks, device, node, sizeof node);
    if (node[0] == '\0') return false;
    const char* number = node + strnlen(node, strlen("/dev/usbdisk"));
    trace(kTrace, "[%s]>p = /dev/usbdisk[%s] \n", kFunction, number);
    port = leading_int(number);
    return bus_of_recorded_disk(port) != -1;
}

bool usb_port(const char* device, std::string_view path, bool new_sysfs, int& port) {
    WiringSettings wiring;
    if (wiring.usb_tree_is("armada370-platform")) return armada370_port(device, port);
    if (wiring.usb_tree_is("borel-platform")) {
        port = borel_port(path);
        return true;
    }
    for (const PortRule& rule : kPortRules) {
        if (!wiring.usb_tree_is(rule.tree)) continue;
        port = leading_int(Component(path, rule.component).from(rule.place));
        return true;
    }
    port = leading_int(Component(path, new_sysfs ? 8 : 9).from(strlen("usb")));
    return true;
}

// ---- Internal slots ----

// The extension chip's two ports sit below the built-in ones.
bool counts_downwards() {
    return LibQuorvelBin_IsBorelPlatform() == 1 && LibQuorvelbin_Has7042ExtentionChip() == 1;
}

bool internal_slot(std::string_view path, bool new_sysfs, int& slot) {
    int number = 9;
    int step = 1;
    if (WiringSettings().internal_is("multi-host")) {
        if (path.find("platform") != std::string_view::npos) {
            number = 8;
        } else if (new_sysfs) {
            number = 7;
            if (!contains(Component(path, number).text, "host") && counts_downwards()) {
                number = 8;
                step = -1;
            }
        }
    }
    Component component(path, number);
    std::optional<int> index = number_after(component.text, "host");
    if (!index) {
        step = 1;
        index = number_after(component.text, "target0:0:");
    }
    if (!index) return false;
    slot = number_moved(*index, step);
    return true;
}

}  // namespace

WiringSettings::WiringSettings() {
    KeyRequest requests[] = {
        {"INTERNAL_SCSI_TYPE", internal, sizeof internal},
        {"USB_TREE_TYPE",      usb_tree, sizeof usb_tree}
    };
    read_keys(files::kFeature, requests);
}

bool has_new_sysfs() {
    constexpr uint64_t kFirstNew = 2ULL << 48 | 6ULL << 32 | 31ULL << 16 | 8;
    struct os_version running = {};
    (void)LibQuorvelBin_GetOsVer(&running);
    return running.version >= kFirstNew;
}

int bus_of_recorded_disk(int port) {
    char identity[1024] = "";
    (void)get_StringbyKey(files::kDiskInfo, Text<32>("usb_disk%d", port).c_str(), identity, sizeof identity);
    return identity[0] != '\0' ? get_bus_number_from_udevid(identity) : -1;
}

bool name_by_rules(const char* device, const DiskPlace& disk, bool new_sysfs, const char*& word, int& number) {
    word = disk.usb ? "usbdisk" : "disk";
    return disk.usb ? usb_port(device, disk.full, new_sysfs, number) : internal_slot(disk.full, new_sysfs, number);
}

}  // namespace quorvel
