#include "disk/wiring.h"

#include "foundation/appliance_files.h"
#include "foundation/key_value.h"
#include "quorvel/foundation.h"
#include "quorvel/naming.h"

namespace quorvel {

Wiring read_wiring() {
    Wiring wiring;
    KeyRequest requests[] = {
        {"INTERNAL_SCSI_TYPE", wiring.internal, sizeof wiring.internal},
        {"USB_TREE_TYPE",      wiring.usb_tree, sizeof wiring.usb_tree}
    };
    read_keys(files::kFeature, requests);  // what is not set stays empty
    return wiring;
}

std::optional<int> bus_of_recorded_disk(int port) {
    char identity[1024] = "";
    if (get_StringbyKey(files::kDiskInfo, Text<32>("usb_disk%d", port).c_str(), identity, sizeof identity) == nullptr)
        return {};
    int bus = identity[0] != '\0' ? get_bus_number_from_udevid(identity) : -1;
    return bus != -1 ? std::optional<int>(bus) : std::nullopt;
}

}  // namespace quorvel
