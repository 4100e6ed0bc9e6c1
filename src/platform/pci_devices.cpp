#include "platform/pci_devices.h"

#include <string.h>

#include "foundation/failure.h"
#include "quorvel/platform.h"

namespace quorvel {

namespace {

constexpr size_t kPiece = 1023;
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
    walk_pci_list(kPiece, [devices, &first](std::string_view piece) {
        find_in_piece(piece, first, devices);
        return false;
    });
}

}  // namespace quorvel

using namespace quorvel;

int LibQuorvelbin_HasSomeExtentionChip(const char* id) {
    if (id == nullptr) return fail(EINVAL, 0);
    bool present = false;
    walk_pci_list(kPiece, [&present, id](std::string_view piece) {
        present = piece.find(id) != std::string_view::npos;
        return present;
    });
    return present ? 1 : 0;
}

int LibQuorvelbin_Has7042ExtentionChip(void) {
    return LibQuorvelbin_HasSomeExtentionChip("11ab7042");
}
