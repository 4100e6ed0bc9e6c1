#include "platform/pci_devices.h"

#include <string.h>

#include <algorithm>

namespace quorvel {

namespace {

constexpr size_t kIdLength = sizeof PciDevice::id - 1;

// What the character at the end of a place in the list tells (after Horspool): whether an id ends with it, and how far
// the next place is that may hold one. A list is asked at every disk name, and nothing in it is looked at twice.
struct Steps {
    bool ends_id[256] = {};
    unsigned char to_next[256];

    explicit Steps(std::span<const PciDevice> devices) {
        memset(to_next, kIdLength, sizeof to_next);
        for (const PciDevice& device : devices) {
            const auto* id = reinterpret_cast<const unsigned char*>(device.id);
            for (size_t i = 0; i < kIdLength - 1; i++)
                to_next[id[i]] = std::min<unsigned char>(to_next[id[i]], static_cast<unsigned char>(kIdLength - 1 - i));
            ends_id[id[kIdLength - 1]] = true;
        }
    }
};

void find_in_piece(std::string_view piece, const Steps& steps, std::span<PciDevice> devices) {
    for (size_t end = kIdLength; end <= piece.size();) {
        auto last = static_cast<unsigned char>(piece[end - 1]);
        if (steps.ends_id[last]) {
            for (PciDevice& device : devices)
                device.present |= memcmp(piece.data() + end - kIdLength, device.id, kIdLength) == 0;
        }
        end += steps.to_next[last];
    }
}

}  // namespace

void find_pci_devices(std::span<PciDevice> devices) {
    const Steps steps(devices);
    walk_pci_list(kPciPiece, [devices, &steps](std::string_view piece) {
        find_in_piece(piece, steps, devices);
        return false;
    });
}

}  // namespace quorvel
