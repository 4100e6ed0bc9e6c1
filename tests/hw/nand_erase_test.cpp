// Wiping the NAND partitions, with stand-in tools.
#include "quorvel/hw.h"
#include "support/appliance.h"

namespace {

class NandErase : public ApplianceTest {};

TEST_F(NandErase, ErasesOnlyWhenBootingFromNandIsOff) {
    auto rows = table<7>("hw/expected/nand-erasures");
    const std::string fill(1100, 'x');  // a line is read in pieces
    rows.back()[3] = fill + ": \"nboot\"\n\"nroot\"" + fill + ": 1\n";
    for (const auto& [result, nvram, eraser, list, nvram_calls, eraser_calls, printed] : rows) {
        SetUp();
        if (!nvram.empty()) stand_in("/usr/local/sbin/nvram", nvram);
        stand_in("/usr/local/sbin/flash_eraseall", eraser);
        if (!list.empty()) write_file("/proc/mtd", list);
        Capture errors(2), output;
        EXPECT_EQ(LibQuorvelBin_NandErase(), std::stoi(result)) << nvram << eraser;
        EXPECT_EQ(output.text(), printed);
        EXPECT_EQ(read_file("/run/stand-in/nvram"), nvram_calls) << nvram;
        EXPECT_EQ(read_file("/run/stand-in/flash_eraseall"), eraser_calls) << nvram;
    }
}

}  // namespace
