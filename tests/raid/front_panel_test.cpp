#include <sstream>

#include "raid_appliance.h"

namespace {

// What a slot's letter in the table stands for: . single, t and T standby, b and B broken, r and R removed (upper case:
// removed since), 1 and 2 members of that array, x anything else.
const std::string letters = ".tbrTBR12x";
const int codes[] = {0x0, 0x1, 0x2, 0x3, 0x11, 0x12, 0x13, 0x101, 0x102, 0xfff};

// Rows of the table: the slots, the codes of array 1 and array 2, and what is printed, with a line end or without.
TEST_F(RaidTest, FrontPanelShowsHowSlotsAreGrouped) {
    int rows = 0;
    std::istringstream table(text_of("expected/front-panel"));
    for (std::string row; std::getline(table, row); rows++) {
        char slots[8], text[64], line_end[8] = "";
        unsigned arrays[2];
        ASSERT_LE(4, sscanf(row.c_str(), "%7s %x %x \"%63[^\"]\"%7s", slots, &arrays[0], &arrays[1], text, line_end))
            << row;
        model(static_cast<int>(strlen(slots)), 2);
        for (size_t i = 0; slots[i] != '\0'; i++)
            disk_mode_tbl[i].code = codes[letters.find(slots[i])];
        for (int i : {0, 1})
            array_mode_tbl[i].code = static_cast<int>(arrays[i]);
        EXPECT_EQ(text + std::string(line_end[0] != '\0', '\n'), printed_by(LibQuorvelBin_PrintLcdString)) << row;
    }
    EXPECT_EQ(55, rows);
}

}  // namespace
