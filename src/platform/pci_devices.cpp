#include "platform/pci_devices.h"

#include <string.h>

#include <string_view>

#include "foundation/appliance_files.h"
#include "foundation/files.h"
#include "foundation/line_reader.h"
#include "quorvel/platform.h"

namespace quorvel {

namespace {

// Shows the list piece by piece until `is_enough` says so or it ends.
template <typename IsEnoughPiece>
void walk_pci_list(IsEnoughPiece&& is_enough) {
    constexpr size_t kPciPiece = 1023;
    Descriptor list = open_for_reading(files::kPciDevices);
    if (!list) return;
    LineReader reader(list.number, kPciPiece);
    for (std::string_view piece; !(piece = next_piece(reader)).empty();) {
        if (is_enough(piece)) return;
    }
}

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
    walk_pci_list([devices, is_enough](std::string_view piece) {
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
    walk_pci_list([&present, wanted](std::string_view piece) {
        present = piece.find(wanted) != std::string_view::npos ? 1 : 0;
        return present == 1;
    });
    return present;
}

int LibQuorvelbin_Has7042ExtentionChip(void) {
    return LibQuorvelbin_HasSomeExtentionChip("11ab7042");
}
