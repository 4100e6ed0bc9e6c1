// The PCI list, asked for several devices in one pass.
#pragma once

#include <span>

#include "foundation/line_reader.h"

namespace quorvel {

/// A device: vendor and device number as the list's second column shows them, and whether some line contains them.
struct PciDevice {
    char id[9];
    bool present = false;
};

/// The PCI list, in pieces of at most `piece_limit` characters; false when it cannot be opened.
LineFile open_pci_list(size_t piece_limit);

/// Sets `present` of each device that the list names.
void find_pci_devices(std::span<PciDevice> devices);

}  // namespace quorvel
