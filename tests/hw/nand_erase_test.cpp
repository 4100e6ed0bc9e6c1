// Wiping the NAND partitions, with stand-in tools.
#include <tuple>

#include "quorvel/hw.h"
#include "support/appliance.h"

namespace {

class NandErase : public ApplianceTest {};

constexpr char kOff[] = "echo EnableNandBoot=0; exit 1";
constexpr char kOn[] = "[ $2 = get ] && echo EnableNandBoot=1 || printf 'one\\n\\ntwo'";
constexpr char kErases[] = "head -c 100000 /dev/zero; exit 1";
constexpr char kList[] =
    "dev:    size   erasesize  name\n"
    "mtd0: 00400000 00010000 \"mtdram test device\"\n"
    "mtd1: 00040000 00010000 \"nbootx\"\n"
    "mtd2: 00040000 00010000 \"nboot\"\n"
    "mtd7: 00080000 00010000 \"nroot\"";

std::string all_calls(const char* tool) {
    std::string all;
    for (const std::string& call : calls(tool))
        all += "<" + call + ">";
    return all;
}

TEST_F(NandErase, ErasesOnlyWhenBootingFromNandIsOff) {
    const std::string kGet = "<-c get EnableNandBoot>";
    const std::string kGetAndSet = kGet + "<-c set EnableNandBoot 0>";
    const std::string kBoth = "</dev/mtdchar2></dev/mtdchar7>";
    const std::string kShown = "Erasing /dev/mtdchar2 ...\nErasing /dev/mtdchar7 ...\n";
    const std::string kRefused = "Warning! Disabling NandBoot failed!\n";
    const std::string kNotFound =
        "Erasing /dev/mtdchar2 ...\nCommand execute failed(cmd=flash_eraseall /dev/mtdchar2)\n";
    const std::string kSecond = kShown + "Command execute failed(cmd=flash_eraseall /dev/mtdchar7)\n";
    const std::string kUnmounted = "Can't open /proc/mtd (don't mount procfs?)\nErasing  ...\n";
    const std::string kNinth = "mtd9: 1 1 \"nboot\"\nmtd07: 1 1 \"nroot\"\n";
    const std::string kFill(1100, 'x');
    const std::string kLong = kFill + ": \"nboot\"\n\"nroot\"" + kFill + ": 1\n";
    // nvram and flash_eraseall (empty: not there), /proc/mtd (empty: not there); result, output, calls of each.
    const std::tuple<std::string, std::string, std::string, int, std::string, std::string, std::string> rows[] = {
        {kOff,       kErases,                               kList,  0, kShown,                                           kGet,       kBoth },
        {kOn,        kErases,                               kList,  0, "one\n\ntwo\n" + kShown,                          kGetAndSet, kBoth },
        {"",         kErases,                               kList,  3, kRefused,                                         "",         ""    },
        {"exit 126", kErases,                               kList,  3, kRefused,                                         kGetAndSet, ""    },
        {kOff,       "",                                    kList,  1, kNotFound,                                        kGet,       ""    },
        {kOff,       "[ $1 != /dev/mtdchar7 ] || exit 127", kList,  2, kSecond,                                          kGet,       kBoth },
        {kOff,       kErases,                               "",     0, kUnmounted + kUnmounted,                          kGet,       "<><>"},
        {kOff,       kErases,                               kNinth, 0, "Erasing  ...\nErasing  ...\n",                   kGet,       "<><>"},
        {kOff,       kErases,                               kLong,  0, "Erasing  ...\nNot enough area!\nErasing  ...\n", kGet,       "<><>"},
    };
    for (const auto& [nvram, eraser, list, result, printed, nvram_calls, eraser_calls] : rows) {
        SetUp();
        if (!nvram.empty()) stand_in("/usr/local/sbin/nvram", nvram);
        if (!eraser.empty()) stand_in("/usr/local/sbin/flash_eraseall", eraser);
        if (!list.empty()) write_file("/proc/mtd", list);
        Capture errors(2), output;
        EXPECT_EQ(LibQuorvelBin_NandErase(), result) << nvram << eraser;
        EXPECT_EQ(output.text(), printed);
        EXPECT_EQ(all_calls("nvram"), nvram_calls) << nvram;
        EXPECT_EQ(all_calls("flash_eraseall"), eraser_calls) << eraser;
    }
}

}  // namespace
