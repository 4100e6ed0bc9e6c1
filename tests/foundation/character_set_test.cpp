// Texts between the appliance's code page and UTF-8. Expected bytes are written out, not converted.
#include <unistd.h>

#include <cstring>

#include "quorvel/foundation.h"
#include "support/appliance.h"

namespace {

using namespace std::string_literals;

constexpr char kInfo[] = "/etc/tevra/info";
constexpr char kNihon[] = "\u65e5\u672c";
constexpr char kNihonCp932[] = "\x93\xfa\x96\x7b";
constexpr char kNihonEucJp[] = "\xc6\xfc\xcb\xdc";

class CharacterSet : public ApplianceTest {};

TEST_F(CharacterSet, ConvertsUntilTheInputOrTheRoomEnds) {
    debug = 10;
    for (const auto& [page, direction, room, source, bytes, complaint] : table<6>("foundation/expected/conversions")) {
        write_file(kInfo, "codepage=" + page + "\r\n");
        const bool to_utf8 = direction == "to UTF-8", succeeds = complaint.empty();
        const std::string function = to_utf8 ? ">remote2local_UTF8: " : ">local2remote_UTF8: ";
        std::string buffer(32, '-');
        Capture output;
        const char* converted =
            (to_utf8 ? remote2local_UTF8 : local2remote_UTF8)(buffer.data(), std::stoul(room), source.c_str());
        EXPECT_EQ(output.text(), succeeds ? "" : function + complaint) << source;
        EXPECT_EQ(converted, succeeds ? buffer.data() : nullptr) << source;
        EXPECT_EQ(buffer.substr(0, bytes.size()), bytes) << page << source;
    }
}

TEST_F(CharacterSet, ConvertsTextsOfAnyLength) {
    write_file(kInfo, "codepage=CP932\n");
    std::string source, expected;
    while (source.size() < 300001) {
        source += kNihonCp932 + "a"s;
        expected += kNihon + "a"s;
    }
    std::string buffer(expected.size() + 1, '-');
    ASSERT_NE(remote2local_UTF8(buffer.data(), buffer.size(), source.c_str()), nullptr);
    EXPECT_TRUE(buffer.c_str() == expected);
}

TEST_F(CharacterSet, AMissingSettingLeavesTheCodePageLoadedLast) {
    char buffer[8] = "";
    write_file(kInfo, "codepage=EUC_JP\n");
    local2remote_UTF8(buffer, sizeof buffer, "a");
    remove_tree(kInfo);
    EXPECT_EQ(printed_by([&] { local2remote_UTF8(buffer, sizeof buffer, kNihon); }),
              "codepage not found in info file.\n");
    EXPECT_STREQ(buffer, kNihonEucJp);
}

TEST_F(CharacterSet, AFreshProcessKnowsCp932) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            char buffer[8] = "";
            local2remote_UTF8(buffer, sizeof buffer, kNihon);
            _exit(strcmp(buffer, kNihonCp932));
        },
        testing::ExitedWithCode(0), "");
}

}  // namespace
