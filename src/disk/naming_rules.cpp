// From a disk's place in sysfs to its logical name, by wiring rules.
#include "disk/naming_rules.h"

#include "foundation/appliance_files.h"
#include "foundation/files.h"
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
std::optional<int> armada370_port(const char* device) {
    char node[128] = "";
    KeyRequest request = {device, node, sizeof node - 1};
    Descriptor links = open_trusted(files::kDeviceLinks);
    if (!links || !is_possible_key(device) || read_keys(links.number, {&request, 1}) == 0 || node[0] == '\0') return {};
    const char* digits = node + strnlen(node, strlen("/dev/usbdisk"));
    trace(kTrace, "[%s]>p = /dev/usbdisk[%s] \n", kFunction, digits);
    int port = leading_int(digits);
    return bus_of_recorded_disk(port) ? std::optional<int>(port) : std::nullopt;
}

std::optional<int> usb_port(const Wiring& wiring, const char* device, std::string_view path, bool new_sysfs) {
    if (wiring.usb_tree_is("armada370-platform")) return armada370_port(device);
    if (wiring.usb_tree_is("borel-platform")) return borel_port(path);
    for (const PortRule& rule : kPortRules) {
        if (wiring.usb_tree_is(rule.tree)) return leading_int(Component(path, rule.component).from(rule.place));
    }
    return leading_int(Component(path, new_sysfs ? 8 : 9).from(strlen("usb")));
}

// ---- Internal slots ----

// Which component of the path tells the host, and how its number counts.
struct SlotRule {
    int component = 9;
    int step = 1;
};

SlotRule slot_rule(const Wiring& wiring, std::string_view path, bool new_sysfs) {
    if (!wiring.internal_is("multi-host")) return {};
    if (path.find("platform") != std::string_view::npos) return {8};
    if (!new_sysfs) return {};
    if (contains(Component(path, 7).text, "host") || !has_borel_extension()) return {7};
    return {8, -1};  // the chip's two ports sit below the built-in ones
}

std::optional<int> internal_slot(const Wiring& wiring, std::string_view path, bool new_sysfs) {
    SlotRule rule = slot_rule(wiring, path, new_sysfs);
    Component component(path, rule.component);
    if (std::optional<int> host = number_after(component.text, "host")) return number_moved(*host, rule.step);
    std::optional<int> target = number_after(component.text, "target0:0:");
    return target ? std::optional<int>(number_moved(*target, 1)) : std::nullopt;
}

}  // namespace

std::optional<NamedDisk> name_by_rules(const Wiring& wiring, const char* device, const DiskPlace& disk,
                                       bool new_sysfs) {
    std::optional<int> number =
        disk.usb ? usb_port(wiring, device, disk.full, new_sysfs) : internal_slot(wiring, disk.full, new_sysfs);
    if (!number) return {};
    if (disk.usb) return NamedDisk{DISK_PATH_USB, "usbdisk", *number};
    return NamedDisk{DISK_PATH_INTERNAL, "disk", *number};
}

}  // namespace quorvel
