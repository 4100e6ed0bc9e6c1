// Cutting texts into words and fields.
#include "quorvel/foundation.h"
#include "support/appliance.h"

namespace {

class TextFields : public ApplianceTest {};

TEST_F(TextFields, SpecifiedKeyCountsAsRepeatedStrtokDoes) {
    for (const auto& [text, delimiters, index, field] : table<4>("foundation/expected/fields")) {
        char found[] = "none-----";
        const int result = LibQuorvelBin_GetSpecifiedKey(found, 7, text.c_str(), delimiters.c_str(), std::stoi(index));
        EXPECT_EQ(result, field == "none" ? -1 : 0) << text << index;
        EXPECT_EQ(found, result == 0 ? field : "none-----") << text << index;
    }
}

TEST_F(TextFields, LastWordAndTheRest) {
    for (const auto& [text, last, rest] : table<3>("foundation/expected/last-words")) {
        char found[] = "------";
        EXPECT_EQ(LibQuorvelBin_GetLastWord(found, text.c_str(), "/.", 4), 0);
        EXPECT_EQ(found, last) << text;
        EXPECT_EQ(LibQuorvelBin_AvoidLastWord(found, text.c_str(), "/."), 0);
        EXPECT_EQ(found, rest) << text;
    }
    const std::string directory(300, 'd'), path = directory + "/f";
    char found[302];
    const auto told_at = [&](int level) {
        debug = level;
        return printed_by([&] { EXPECT_EQ(LibQuorvelBin_AvoidLastWord(found, path.c_str(), "/"), 0); });
    };
    EXPECT_EQ(told_at(100).find("malloced"), std::string::npos);
    const auto told = told_at(101);
    EXPECT_EQ(found, directory);
    EXPECT_EQ(told.find("LibQuorvelBin_AvoidLastWord : 303 bytes malloced at 0x"), 0U) << told;
    char whole[4] = "";
    EXPECT_EQ(LibQuorvelBin_GetLastWord(whole, "abc", "", 4), 0);
    EXPECT_STREQ(whole, "abc");
}

TEST_F(TextFields, MembershipInAList) {
    const auto is_in = LibQuorvelBin_IsContainedInStringList;
    for (const auto& [list, item, separator, result] : table<4>("foundation/expected/list-members"))
        EXPECT_EQ(is_in(list.c_str(), item.c_str(), separator.c_str()), std::stoi(result)) << item;
}

TEST_F(TextFields, Numbers) {
    for (const auto& [text, length, value] : table<3>("foundation/expected/hex-numbers"))
        EXPECT_EQ(LibQuorvelBin_HexToUl(text.c_str(), std::stoi(length)), std::stoi(value)) << text;
    debug = 10;
    EXPECT_EQ(printed_by([] { LibQuorvelBin_HexToUl("0x1F", 4); }), "hex=0x1F\nlen=4\np=1F\np=F\n");
    EXPECT_EQ(LibQuorvelBin_IsAllNumericStr("1abc", 4), 1);
    EXPECT_EQ(LibQuorvelBin_IsAllNumericStr("a1", 0), 1);
}

TEST_F(TextFields, EditingInPlace) {
    char text[] = "ab\vc d", lines[] = "a\r\nb\n\r\n", dashes[] = "a-b--c", base[] = "-----", line[] = "key value";
    remove_space(text);
    EXPECT_STREQ(text, "ab");
    EXPECT_STREQ(text + 3, "c");
    remove_last_crlf(lines);
    EXPECT_STREQ(lines, "a\r\nb");
    remove_character(dashes, sizeof dashes, '-');
    EXPECT_STREQ(dashes, "ab-c");
    LibQuorvelBin_Basename(base, "/dev/sda1", 4);
    EXPECT_STREQ(base, "sda--");
    LibQuorvelBin_GetSpecifiedKey(line, sizeof line, line, " ", 2);
    EXPECT_STREQ(line, "value");
    EXPECT_STREQ(getNextKey(" \t\r\n"), "\r\n");
}

}  // namespace
