// The PCI list, asked for several devices in one pass.
#pragma once

#include <span>
#include <string_view>

#include "foundation/appliance_files.h"
#include "foundation/files.h"
#include "foundation/line_reader.h"

namespace quorvel {

/// The pieces in which chips are looked for.
inline constexpr size_t kPciPiece = 1023;

/// Shows the list in pieces of at most so many characters until `is_enough` says so or it ends.
template <typename IsEnough>
void walk_pci_list(size_t longest_piece, IsEnough&& is_enough) {
    LineFile list(open_for_reading(files::kPciDevices), longest_piece);
    for (std::string_view piece; !(piece = next_piece(list.reader)).empty();) {
        if (is_enough(piece)) return;
    }
}

/// A device: vendor and device number as the list's second column shows them, and whether some line contains them.
struct PciDevice {
    char id[9];
    bool present = false;
};

/// Sets `present` of each device that the list names.
void find_pci_devices(std::span<PciDevice> devices);

}  // namespace quorvel
