// The kernel's list of PCI devices, and the question for several of them in one pass.
#pragma once

#include <span>
#include <string_view>

#include "foundation/appliance_files.h"
#include "foundation/files.h"
#include "foundation/line_reader.h"

namespace quorvel {

/// Shows the list in pieces of at most so many characters until `is_enough` says so or it ends.
template <typename IsEnoughPiece>
void walk_pci_list(size_t longest_piece, IsEnoughPiece&& is_enough) {
    LineFile list(open_for_reading(files::kPciDevices), longest_piece);
    if (!list) return;
    for (std::string_view piece; !(piece = next_piece(list.reader)).empty();) {
        if (is_enough(piece)) return;
    }
}

/// A controller by Marvell: vendor and device as the PCI list's second column shows them, and
/// whether some line contains them.
struct MarvellDevice {
    char id[9];
    bool present = false;
};

/// Sets `present` of each device that the list names, until `is_enough` says so or the list ends.
using IsEnough = bool (*)(std::span<const MarvellDevice> devices);
void find_marvell_devices(std::span<MarvellDevice> devices, IsEnough is_enough);

}  // namespace quorvel
