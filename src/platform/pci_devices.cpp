#include "platform/pci_devices.h"

#include <string.h>

namespace quorvel {

namespace {

constexpr size_t kIdLength = sizeof PciDevice::id - 1;

// The characters that an id begins with: only where one stands in the list are all ids compared.
struct FirstCharacters {
    bool begins[256] = {};

    explicit FirstCharacters(std::span<const PciDevice> devices) {
        for (const PciDevice& device : devices)
            begins[static_cast<unsigned char>(device.id[0])] = true;
    }
    bool has(char c) const { return begins[static_cast<unsigned char>(c)]; }
};

void find_in_piece(std::string_view piece, const FirstCharacters& first, std::span<PciDevice> devices) {
    for (size_t at = 0; at + kIdLength <= piece.size(); at++) {
        if (!first.has(piece[at])) continue;
        for (PciDevice& device : devices)
            device.present |= memcmp(piece.data() + at, device.id, kIdLength) == 0;
    }
}

}  // namespace

void find_pci_devices(std::span<PciDevice> devices) {
    const FirstCharacters first(devices);
    walk_pci_list(kPciPiece, [devices, &first](std::string_view piece) {
        find_in_piece(piece, first, devices);
        return false;
    });
}

}  // namespace quorvel
