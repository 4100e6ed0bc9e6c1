// Wiping the NAND partitions, with stand-in tools.
#include <tuple>

#include "quorvel/hw.h"
#include "support/appliance.h"

namespace {

class NandErase : public ApplianceTest {};

TEST_F(NandErase, ErasesOnlyWhenBootingFromNandIsOff) {
    const std::string kOff = "echo EnableNandBoot=0; exit 1", kErases = "head -c 100000 /dev/zero; exit 1";
    const std::string kOn = "[ $2 = get ] && echo EnableNandBoot=1 || printf 'one\\n\\ntwo'";
    const std::string kList = "mtd1: 1 1 \"nbootx\"\nmtd2: 1 1 \"nboot\"\nmtd7: 1 1 \"nroot\"";
    const std::string kNinth = "mtd9: 1 1 \"nboot\"\nmtd07: 1 1 \"nroot\"\n";
    const std::string kFill(1100, 'x'), kLong = kFill + ": \"nboot\"\n\"nroot\"" + kFill + ": 1\n";
    const std::string kShown = "Erasing /dev/mtdchar2 ...\nErasing /dev/mtdchar7 ...\n", kNone = "Erasing  ...\n";
    const std::string kRefused = "Warning! Disabling NandBoot failed!\n";
    const std::string kFails = "Command execute failed(cmd=flash_eraseall /dev/mtdchar7)\n";
    const std::string kUnmounted = "Can't open /proc/mtd (don't mount procfs?)\n" + kNone;
    using Calls = std::vector<std::string>;
    const Calls kGet = {"-c get EnableNandBoot"}, kGetAndSet = {kGet[0], "-c set EnableNandBoot 0"};
    const Calls kBoth = {"/dev/mtdchar2", "/dev/mtdchar7"}, kNoDevice = {"", ""};
    // nvram, flash_eraseall, /proc/mtd (empty: not there); result, output, calls of the two tools.
    const std::tuple<std::string, std::string, std::string, int, std::string, Calls, Calls> rows[] = {
        {kOff,       kErases,                              kList,             0, kShown,                               kGet,       kBoth     },
        {kOn,        kErases,                              kList,             0, "one\n\ntwo\n" + kShown,              kGetAndSet, kBoth     },
        {"",         kErases,                              kList,             3, kRefused,                             {},         {}        },
        {"exit 126", kErases,                              kList,             3, kRefused,                             kGetAndSet, {}        },
        {kOff,       "exit 127",                           "mtd7: \"nboot\"", 1, kShown.substr(26) + kFails,           kGet,       {kBoth[1]}},
        {kOff,       "[ $1 = /dev/mtdchar2 ] || exit 127", kList,             2, kShown + kFails,                      kGet,       kBoth     },
        {kOff,       kErases,                              "",                0, kUnmounted + kUnmounted,              kGet,       kNoDevice },
        {kOff,       kErases,                              kNinth,            0, kNone + kNone,                        kGet,       kNoDevice },
        {kOff,       kErases,                              kLong,             0, kNone + "Not enough area!\n" + kNone, kGet,       kNoDevice },
    };
    for (const auto& [nvram, eraser, list, result, printed, nvram_calls, eraser_calls] : rows) {
        SetUp();
        if (!nvram.empty()) stand_in("/usr/local/sbin/nvram", nvram);
        stand_in("/usr/local/sbin/flash_eraseall", eraser);
        if (!list.empty()) write_file("/proc/mtd", list);
        Capture errors(2), output;
        EXPECT_EQ(LibQuorvelBin_NandErase(), result) << nvram << eraser;
        EXPECT_EQ(output.text(), printed);
        EXPECT_EQ(std::pair(calls("nvram"), calls("flash_eraseall")), std::pair(nvram_calls, eraser_calls)) << nvram;
    }
}

}  // namespace
