// The model's feature settings.
#include <tuple>

#include "quorvel/foundation.h"
#include "support/appliance.h"

namespace {

constexpr char kFeatures[] = "/etc/nas_feature";

class Feature : public ApplianceTest {};

TEST_F(Feature, ValuesAsNumberAndText) {
    // The line; what it is as a number; what the printing look-up gives and prints.
    const std::tuple<const char*, int, int, const char*> rows[] = {
        {"F=4\n",           4,         4,         "4\n"                 },
        {"F=\"4\"\n",       -1,        0,         "\"4\"\n"             },
        {"F=once\n",        1,         1,         "1\n"                 },
        {"F=offline\n",     0,         0,         "0\n"                 },
        {"F=-1\n",          -1,        0,         "-1\n"                },
        {"F=%s\n",          -1,        0,         "%s\n"                },
        {"G=1\n",           -1,        -1,        "wrong feature name\n"},
        {"F=99999999999\n", INT32_MAX, INT32_MAX, "2147483647\n"        },
    };
    for (const auto& [line, number, looked_up, printed] : rows) {
        write_file(kFeatures, line);
        EXPECT_EQ(LibQuorvelBin_GetConfOnOffValInIntByKey("F"), number) << line;
        const auto look_up = [expected = looked_up] { EXPECT_EQ(LibQuorvelBin_GetConfValByKey("F"), expected); };
        const std::string missing = looked_up == -1 ? printed : "";
        EXPECT_EQ(printed_by(look_up), missing);
        from_cmdline = 2;
        EXPECT_EQ(printed_by(look_up), printed);
        debug = 10;
        EXPECT_EQ(printed_by(look_up), missing.empty() ? std::string(printed) + printed : missing);
        debug = from_cmdline = 0;
    }
}

TEST_F(Feature, SeriesNameIsComparedWithItsQuotes) {
    const std::tuple<const char*, int, int> rows[] = {
        {"SERIES_NAME=\"Ostrand\" \n", 1, 0},
        {"SERIES_NAME=\"Veldmark\"\n", 0, 1},
        {"SERIES_NAME=Ostrand\n",      0, 0},
        {"",                           1, 0},
    };
    for (const auto& [line, ostrand, veldmark] : rows) {
        write_file(kFeatures, line);
        EXPECT_EQ(std::pair(LibQuorvelBin_IsOstrand(), LibQuorvelBin_IsVeldmark()), std::pair(ostrand, veldmark));
    }
}

TEST_F(Feature, IsChangedByTheFirstToolThatIsThere) {
    constexpr char kNoDumpnf[] =
        "This system looks like don't support dumpnf command.\n"
        "Warn! : setnf command was found, but dumpnf command is not found!\n"
        "        maybe need to restart to reflect this change!\n";
    constexpr char kByNvram[] =
        "This system looks like don't support setnf command.\n"
        "Warn! : Easily reflected to nas_feature.\n"
        "        You need to check by restart process to reflect this change!\n";
    constexpr char kByNone[] =
        "This system looks like don't support setnf command.\n"
        "This system looks like don't support nvram command.\n"
        "LibQuorvelBin_SetConfValInString : set feature failed!\n";
    const std::string kNoSetnf(kByNone, 52);
    const std::string long_value(1000, 'x');  // a command that would have to be cut is not run
    // Tools present, the value; what is printed, the one call of setnf or nvram, the file afterwards.
    const std::tuple<std::string, std::string, std::string, std::string, std::string> rows[] = {
        {"setnf dumpnf nvram", "2",        "",        "F 2",        "dumped\n"  },
        {"setnf nvram",        "2",        kNoDumpnf, "F 2",        "F=1\n"     },
        {"dumpnf nvram",       "2",        kByNvram,  "-c set F 2", "F=1\nF=2\n"},
        {"dumpnf",             "2",        kByNone,   "",           "F=1\n"     },
        {"nvram",              long_value, kNoSetnf,  "",           "F=1\n"     },
    };
    for (const auto& [tools, value, printed, call, features] : rows) {
        SetUp();
        write_file(kFeatures, "F=1\n");
        if (tools.find("setnf") != tools.npos) stand_in("/usr/local/bin/setnf", "exit 1");
        if (tools.find("dumpnf") != tools.npos) stand_in("/usr/local/bin/dumpnf", "echo dumped");
        if (tools.find("nvram") != tools.npos) stand_in("/usr/local/sbin/nvram");
        const auto change = [&, text = value.c_str(), result = call.empty() ? -1 : 0] {
            EXPECT_EQ(LibQuorvelBin_SetConfValInString("F", text), result);
        };
        EXPECT_EQ(printed_by(change), printed);
        const std::vector<std::string> one_call(call.empty() ? 0 : 1, call);
        EXPECT_EQ(calls(tools.starts_with("setnf") ? "setnf" : "nvram"), one_call) << tools;
        EXPECT_EQ(read_file(kFeatures), features) << tools;
    }
}

}  // namespace
