// Chips that extend a machine, in the PCI list.
#include "foundation/failure.h"
#include "platform/pci_devices.h"
#include "quorvel/platform.h"

using namespace quorvel;

int LibQuorvelbin_HasSomeExtentionChip(const char* id) {
    if (id == nullptr) return fail(EINVAL, 0);
    bool present = false;
    walk_pci_list(kPciPiece, [&present, id](std::string_view piece) {
        present = piece.find(id) != std::string_view::npos;
        return present;
    });
    return present ? 1 : 0;
}

int LibQuorvelbin_Has7042ExtentionChip(void) {
    return LibQuorvelbin_HasSomeExtentionChip("11ab7042");
}
