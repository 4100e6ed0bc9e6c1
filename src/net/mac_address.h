// The text form of a hardware address in reports and pass phrases.
#pragma once

#include <stdint.h>

#include "foundation/text.h"

namespace quorvel {

/// Adds "00:11:22:AA:BB:CC". No copy of it is left behind: it may be a secret.
inline void add_mac_text(Text<18>& text, const uint8_t (&mac)[6]) {
    text.append("%02X:%02X:%02X:%02X:%02X:%02X", mac[0], mac[1], mac[2], mac[3], mac[4], mac[5]);
}

}  // namespace quorvel
