// The text form of a hardware address.
#pragma once

#include <stdint.h>

#include "foundation/text.h"

namespace quorvel {

using MacText = Text<18>;

enum class Letters { small, capital };

/// Adds "00:11:22:aa:bb:cc", or the same with capital letters. Nothing of it is left elsewhere: it may be a pass
/// phrase.
inline void add_mac_text(MacText& text, const uint8_t (&address)[6], Letters letters) {
    for (uint8_t octet : address) {
        if (text.length > 0) text.add(":");
        text.append(letters == Letters::capital ? "%02X" : "%02x", octet);
    }
}

/// "00:11:22:aa:bb:cc".
[[nodiscard]] inline MacText mac_text(const uint8_t (&address)[6]) {
    MacText text;
    add_mac_text(text, address, Letters::small);
    return text;
}

}  // namespace quorvel
