#include "platform/pci_devices.h"

#include <string.h>

#include "quorvel/platform.h"

namespace quorvel {

namespace {

constexpr size_t kPiece = 1023;

// Both vendor numbers, 11ab and 1b4b, end with a letter that is rare in the list: only there is it worth to compare.
void find_in_piece(std::string_view piece, std::span<MarvellDevice> devices) {
    constexpr char kMark = 'b';
    constexpr size_t kMarkPlace = 3;
    constexpr size_t kLength = sizeof MarvellDevice::id - 1;
    size_t mark = piece.find(kMark, kMarkPlace);
    for (; mark != std::string_view::npos; mark = piece.find(kMark, mark + 1)) {
        size_t begin = mark - kMarkPlace;
        if (piece.size() - begin < kLength) return;
        for (MarvellDevice& device : devices)
            device.present |= memcmp(piece.data() + begin, device.id, kLength) == 0;
    }
}

}  // namespace

void find_marvell_devices(std::span<MarvellDevice> devices, IsEnough is_enough) {
    walk_pci_list(kPiece, [devices, is_enough](std::string_view piece) {
        find_in_piece(piece, devices);
        return is_enough(devices);
    });
}

}  // namespace quorvel

using namespace quorvel;

int LibQuorvelbin_HasSomeExtentionChip(const char* id) {
    int present = 0;
    if (id == nullptr) return present;
    std::string_view wanted(id);
    walk_pci_list(kPiece, [&present, wanted](std::string_view piece) {
        present = piece.find(wanted) != std::string_view::npos ? 1 : 0;
        return present == 1;
    });
    return present;
}

int LibQuorvelbin_Has7042ExtentionChip(void) {
    return LibQuorvelbin_HasSomeExtentionChip("11ab7042");
}
