// Cutting texts into words and fields.
#include <tuple>

#include "quorvel/foundation.h"
#include "support/appliance.h"

namespace {

class TextFields : public ApplianceTest {};

TEST_F(TextFields, SpecifiedKeyCountsAsRepeatedStrtokDoes) {
    const std::tuple<const char*, const char*, int, const char*> rows[] = {
        {"a  b c\n",       " ", 2,  "b"     },
        {"a  b c\n",       " ", 4,  nullptr },
        {"a  b c\n",       " ", 0,  "a  b c"},
        {"",               " ", -1, ""      },
        {"a b\nc d\ne f",  " ", 4,  "d\ne"  },
        {"a b\nc d\ne f ", " ", 6,  nullptr },
        {"a b \nc d",      " ", 3,  nullptr },
        {"\n\na b\nc",     " ", 1,  "\n\na" },
        {"a seven7",       " ", 2,  "seven7"},
        {"a eight888",     " ", 2,  nullptr },
    };
    for (const auto& [text, delimiters, index, field] : rows) {
        char found[] = "untouched";
        EXPECT_EQ(LibQuorvelBin_GetSpecifiedKey(found, 7, text, delimiters, index), field != nullptr ? 0 : -1);
        EXPECT_STREQ(found, field != nullptr ? field : "untouched") << text << index;
    }
}

TEST_F(TextFields, LastWordAndTheRest) {
    const std::tuple<const char*, const char*, const char*> rows[] = {
        {"a/b/c",     "c",      "a/b"},
        {"a/1234567", "1234--", "a"  },
        {"abc",       "abc",    ""   },
    };
    for (const auto& [text, last, rest] : rows) {
        char found[] = "------";
        EXPECT_EQ(LibQuorvelBin_GetLastWord(found, text, "/.", 4), 0);
        EXPECT_STREQ(found, last) << text;
        EXPECT_EQ(LibQuorvelBin_AvoidLastWord(found, text, "/."), 0);
        EXPECT_STREQ(found, rest) << text;
    }
}

TEST_F(TextFields, MembershipInAList) {
    const std::tuple<const char*, const char*, const char*, int> rows[] = {
        {"sda,sdb,sdc1", "sdc",  ",", 1 },
        {"sda,sdbx,sdc", "sdb",  ",", 0 },
        {"sda",          "sdab", ",", 0 },
        {"a,",           "",     ",", 1 },
        {"aa",           "b",    "",  0 },
        {nullptr,        "a",    ",", -1},
    };
    for (const auto& [list, item, separator, result] : rows)
        EXPECT_EQ(LibQuorvelBin_IsContainedInStringList(list, item, separator), result) << item;
}

TEST_F(TextFields, Numbers) {
    const std::tuple<const char*, int, int32_t> rows[] = {
        {"0x1F",      4,  31        },
        {"0X12\n3",   6,  18        },
        {"123456789", 16, 0x23456789},
        {"0",         17, -7        },
        {"12",        -1, 0         },
    };
    for (const auto& [text, length, value] : rows)
        EXPECT_EQ(LibQuorvelBin_HexToUl(text, length), value) << text;
    debug = 10;
    EXPECT_EQ(printed_by([] { LibQuorvelBin_HexToUl("0x1F", 4); }), "hex=0x1F\nlen=4\np=1F\np=F\n");
    EXPECT_EQ(LibQuorvelBin_IsAllNumericStr("1abc", 4), 1);
    EXPECT_EQ(LibQuorvelBin_IsAllNumericStr("a1", 0), 1);
}

TEST_F(TextFields, EditingInPlace) {
    char text[] = "ab\vc d", lines[] = "a\r\nb\n\r\n", dashes[] = "a-b--c", base[] = "-----";
    remove_space(text);
    EXPECT_STREQ(text, "ab");
    remove_last_crlf(lines);
    EXPECT_STREQ(lines, "a\r\nb");
    remove_character(dashes, sizeof dashes, '-');
    EXPECT_STREQ(dashes, "ab-c");
    LibQuorvelBin_Basename(base, "/dev/sda1", 4);
    EXPECT_STREQ(base, "sda--");
    EXPECT_STREQ(getNextKey(" \t\r\n"), "\r\n");
}

}  // namespace
