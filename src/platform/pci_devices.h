// The PCI list, asked for several devices in one pass.
#pragma once

#include <span>
#include <string_view>

namespace quorvel {

/// A controller by Marvell: vendor and device as the PCI list's second column shows them, and
/// whether some line contains them.
struct MarvellDevice {
    std::string_view id;  // eight characters, the fourth of which is kMarvellMark
    bool present = false;
};

/// Both Marvell vendor numbers, 11ab and 1b4b, end with this letter; it is rare in the list.
inline constexpr char kMarvellMark = 'b';
inline constexpr size_t kMarvellMarkPlace = 3;

/// Sets `present` of each device that the list names; leaves the others.
void find_marvell_devices(std::span<MarvellDevice> devices);

}  // namespace quorvel
