// From a disk's place in sysfs to its logical name, by wiring rules.
#include "disk/naming_rules.h"

#include "disk/rule_match.h"
#include "foundation/appliance_files.h"
#include "foundation/files.h"
#include "foundation/key_value.h"
#include "foundation/numbers.h"
#include "foundation/trace.h"
#include "foundation/trusted.h"
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

// The ports of the PCI USB controller count backwards, and are wired twice.
char borel_port_digit(char digit) {
    if (digit == '1' || digit == '3') return '4';
    return digit == '2' || digit == '4' ? '3' : digit;
}

int borel_port(const NamingRule& rule, std::string_view path) {
    Component device(path, rule.component);
    char* port = device.from(strlen(rule.before));
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

std::optional<int> usb_port(const NamingRule& rule, const char* device, std::string_view path) {
    switch (rule.port) {
        case PortSource::kHotPlug:
            return armada370_port(device);
        case PortSource::kBorelWires:
            return borel_port(rule, path);
        default:
            return leading_int(Component(path, rule.component).from(strlen(rule.before)));
    }
}

// ---- Internal slots ----

std::optional<int> internal_slot(const NamingRule& rule, std::string_view path) {
    Component component(path, rule.component);
    if (std::optional<int> host = number_after(component.text, "host")) return number_moved(*host, rule.step);
    std::optional<int> target = number_after(component.text, "target0:0:");
    return target ? std::optional<int>(number_moved(*target, 1)) : std::nullopt;
}

}  // namespace

std::optional<NamedDisk> name_by_rules(const Wiring& wiring, const char* device, const DiskPlace& disk,
                                       bool new_sysfs) {
    const NamingRule& rule = rule_of(wiring, disk, new_sysfs);
    std::optional<int> number = disk.usb ? usb_port(rule, device, disk.full) : internal_slot(rule, disk.full);
    if (!number) return {};
    if (disk.usb) return NamedDisk{DISK_PATH_USB, "usbdisk", *number};
    return NamedDisk{DISK_PATH_INTERNAL, "disk", *number};
}

}  // namespace quorvel
