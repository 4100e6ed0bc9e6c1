#include <sstream>

#include "raid_appliance.h"

namespace {

// What a slot's letter in the table stands for: . single, t and T standby, b and B broken, r and R removed (upper case:
// removed since), 1 and 2 members of that array, x anything else.
const std::string letters = ".tbrTBR12x";
const int codes[] = {0x0, 0x1, 0x2, 0x3, 0x11, 0x12, 0x13, 0x101, 0x102, 0xfff};

TEST_F(RaidTest, FrontPanelShowsHowSlotsAreGrouped) {
    for (const auto& [slots, first, second, text] : table<4>("raid/expected/front-panel")) {
        model(static_cast<int>(slots.size()), 2);
        for (size_t i = 0; i < slots.size(); i++)
            disk_mode_tbl[i].code = codes[letters.find(slots[i])];
        array_mode_tbl[0].code = std::stoi(first, nullptr, 16);
        array_mode_tbl[1].code = std::stoi(second, nullptr, 16);
        EXPECT_EQ(text, printed_by(LibQuorvelBin_PrintLcdString)) << slots << first << second;
    }
}

}  // namespace
