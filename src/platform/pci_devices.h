// The PCI list, asked for several devices in one pass.
#pragma once

#include <span>

namespace quorvel {

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
