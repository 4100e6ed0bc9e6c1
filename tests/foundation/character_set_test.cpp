// Texts between the appliance's code page and UTF-8. Expected bytes are written out, not converted.
#include <unistd.h>

#include <cstring>
#include <tuple>

#include "quorvel/foundation.h"
#include "support/appliance.h"

namespace {

using namespace std::string_literals;

constexpr char kInfo[] = "/etc/tevra/info";
constexpr char kNihon[] = "\u65e5\u672c";
constexpr char kNihonCp932[] = "\x93\xfa\x96\x7b";
constexpr char kNihonEucJp[] = "\xc6\xfc\xcb\xdc";
constexpr char kNihonJis[] = "\033$BF|K\\";  // shifted to two-byte characters; "\033(B" shifts back

class CharacterSet : public ApplianceTest {};

using Conversion = char*(char*, size_t, const char*);

TEST_F(CharacterSet, ConvertsUntilTheInputOrTheRoomEnds) {
    // The code page; what is converted into how much room; whether that succeeds; what a buffer full of "-" then begins
    // with; what is printed behind ">FUNCTION: ".
    const std::tuple<const char*, Conversion*, const char*, size_t, bool, std::string, std::string> rows[] = {
        {"CP932",       remote2local_UTF8, kNihonCp932,   7,  true,  kNihon + "\0"s,           ""                         },
        {"EUC_JP",      local2remote_UTF8, kNihon,        16, true,  kNihonEucJp + "\0-"s,     ""                         },
        {"ISO-2022-JP", local2remote_UTF8, kNihon,        16, true,  kNihonJis + "\033(B\0-"s, ""                         },
        {"ISO-2022-JP", local2remote_UTF8, kNihon,        10, true,  kNihonJis + "\0--"s,      ""                         },
        {"CP932",       remote2local_UTF8, "",            1,  true,  "\0-"s,                   ""                         },
        {"CP932",       remote2local_UTF8, "a",           0,  false, "-",                      "dstsize(0) is too short\n"},
        {"CP932",       local2remote_UTF8, "a",           1,  false, "?-",                     "dstsize(1) is too short\n"},
        {"CP932",       remote2local_UTF8, kNihonCp932,   6,  false, "\u65e5?-",               "dstsize(6) is too short\n"},
        {"CP932",       remote2local_UTF8, "ab\xff\x40z", 16, true,  "ab?\0-"s,                ""                         }, // invalid
        {"CP932",       remote2local_UTF8, "ab\x93",      16, true,  "ab?\0-"s,                ""                         }, // incomplete
        {"CP932",       local2remote_UTF8, "ab\u20acz",   16, true,  "ab?\0-"s,                ""                         }, // not in the code page
        {"CP932",       local2remote_UTF8, "ab\xff",      3,  true,  "ab?-",                   ""                         },
        {"NO-SUCH",     remote2local_UTF8, "a",           9,  false, "-",                      "iconv_open() fail\n"      },
    };
    debug = 10;
    for (const auto& [code_page, convert, source, size, succeeds, bytes, printed] : rows) {
        write_file(kInfo, "codepage="s + code_page + "\r\n");
        std::string buffer(32, '-');
        Capture output;
        EXPECT_EQ(convert(buffer.data(), size, source), succeeds ? buffer.data() : nullptr) << source;
        const std::string function = convert == remote2local_UTF8 ? ">remote2local_UTF8: " : ">local2remote_UTF8: ";
        EXPECT_EQ(output.text(), printed.empty() ? "" : function + printed) << source;
        EXPECT_EQ(buffer.substr(0, bytes.size()), bytes) << code_page << source;
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
