// The text form of a hardware address.
#pragma once

#include <stdint.h>

#include "foundation/text.h"

namespace quorvel {

/// "00:11:22:aa:bb:cc".
using MacText = Text<18>;

inline MacText mac_text(const uint8_t (&address)[6]) {
    return MacText("%02x:%02x:%02x:%02x:%02x:%02x", address[0], address[1], address[2], address[3], address[4],
                   address[5]);
}

}  // namespace quorvel
