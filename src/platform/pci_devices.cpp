#include "platform/pci_devices.h"

#include <algorithm>

#include "foundation/appliance_files.h"
#include "foundation/files.h"
#include "foundation/line_reader.h"
#include "quorvel/platform.h"

namespace quorvel {

namespace {

// Shows the list piece by piece until `is_enough` says so or it ends.
template <typename IsEnough>
void walk_pci_list(IsEnough&& is_enough) {
    constexpr size_t kPciPiece = 1023;
    Descriptor list = open_for_reading(files::kPciDevices);
    if (!list) return;
    LineReader reader(list.number, kPciPiece);
    for (std::string_view piece; !(piece = next_piece(reader)).empty();) {
        if (is_enough(piece)) return;
    }
}

// Compares only where the mark stands.
void find_in_piece(std::string_view piece, std::span<MarvellDevice> devices) {
    size_t mark = piece.find(kMarvellMark, kMarvellMarkPlace);
    for (; mark != std::string_view::npos; mark = piece.find(kMarvellMark, mark + 1)) {
        std::string_view here(piece.data() + mark - kMarvellMarkPlace, piece.size() - mark + kMarvellMarkPlace);
        for (MarvellDevice& device : devices)
            device.present |= here.starts_with(device.id);
    }
}

}  // namespace

void find_marvell_devices(std::span<MarvellDevice> devices) {
    walk_pci_list([devices](std::string_view piece) {
        find_in_piece(piece, devices);
        return std::all_of(devices.begin(), devices.end(), [](const MarvellDevice& device) { return device.present; });
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
