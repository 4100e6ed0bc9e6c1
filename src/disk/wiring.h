// How a machine without a slot table is wired: two feature settings, the board's extension chip, and the USB disks that
// were recorded on its ports.
#pragma once

#include <string.h>

#include <optional>

#include "foundation/text.h"
#include "quorvel/platform.h"

namespace quorvel {

/// INTERNAL_SCSI_TYPE and USB_TREE_TYPE; empty when they are not set.
struct Wiring {
    char internal[128] = "";
    char usb_tree[128] = "";

    [[nodiscard]] bool internal_is(const char* type) const { return starts_with(internal, type); }
    [[nodiscard]] bool usb_tree_is(const char* type) const { return strcmp(usb_tree, type) == 0; }
};

/// Reads the feature settings.
[[nodiscard]] Wiring read_wiring();

/// Whether this is a borel board with the extension chip, whose two hosts lie among the built-in ones.
[[nodiscard]] inline bool has_borel_extension() {
    return LibQuorvelBin_IsBorelPlatform() == 1 && LibQuorvelbin_Has7042ExtentionChip() == 1;
}

/// The bus of the USB disk that is recorded on a port; none when no disk is, or it is not attached.
[[nodiscard]] std::optional<int> bus_of_recorded_disk(int port);

}  // namespace quorvel
