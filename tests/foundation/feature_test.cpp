// The model's feature settings.
#include "quorvel/foundation.h"
#include "support/appliance.h"

namespace {

constexpr char kFeatures[] = "/etc/nas_feature";

class Feature : public ApplianceTest {};

TEST_F(Feature, ValuesAsNumberAndText) {
    for (const auto& [line, number, value, printed] : table<4>("foundation/expected/feature-values")) {
        write_file(kFeatures, line);
        errno = 0;
        EXPECT_EQ(LibQuorvelBin_GetConfOnOffValInIntByKey("F"), std::stoi(number)) << line;
        EXPECT_EQ(errno, number != "-1" ? 0 : value == "-1" ? ENODATA : EBADMSG) << line;
        const auto look_up = [expected = std::stoi(value)] { EXPECT_EQ(LibQuorvelBin_GetConfValByKey("F"), expected); };
        const std::string missing = value == "-1" ? printed : "";
        EXPECT_EQ(printed_by(look_up), missing);
        from_cmdline = 2;
        EXPECT_EQ(printed_by(look_up), printed);
        debug = 10;
        EXPECT_EQ(printed_by(look_up), missing.empty() ? printed + printed : missing);
        debug = from_cmdline = 0;
    }
}

// clang-format off
TEST_F(Feature, GettersAskForTheirSetting) {
    const std::pair<const char*, int (*)()> rows[] = {
        {"MAX_USBDISK_NUM=7\n", LibQuorvelBin_GetMaxUsbdiskNum}, {"SUPPORT_2STEP_INSPECTION=7\n", LibQuorvelBin_IsSupport2StepInspection},
        {"SUPPORT_SLIDE_POWER_SWITCH=7\n", LibQuorvelBin_IsSupportSlidePowerSwitch}, {"SUPPORT_DHCPS=7\n", LibQuorvelBin_IsSupportDhcps},
        {"SUPPORT_PRINTER_SERVER=7\n", LibQuorvelBin_IsSupportPrinterServer}, {"SUPPORT_RAID=7\n", LibQuorvelBin_IsSupportRaid},
    };
    for (const auto& [setting, ask] : rows) {
        write_file(kFeatures, setting);
        EXPECT_EQ(ask(), 7) << setting;
    }
}
// clang-format on

TEST_F(Feature, SeriesNameIsComparedWithItsQuotes) {
    for (const auto& [line, ostrand, veldmark] : table<3>("foundation/expected/series")) {
        write_file(kFeatures, line);
        EXPECT_EQ(std::pair(LibQuorvelBin_IsOstrand(), LibQuorvelBin_IsVeldmark()),
                  std::pair(std::stoi(ostrand), std::stoi(veldmark)));
    }
}

TEST_F(Feature, IsChangedByTheFirstToolThatIsThere) {
    auto rows = table<6>("foundation/expected/feature-changes");
    rows.back()[1] = std::string(1000, 'x');  // a command that would have to be cut is not run
    for (const auto& [tools, value, call, before, features, printed] : rows) {
        SetUp();
        write_file(kFeatures, before);
        if (tools.find("setnf") != tools.npos) stand_in("/usr/local/bin/setnf", "exit 1");
        if (tools.find("dumpnf") != tools.npos) {
            const bool fails = tools.ends_with("fails"), silent = tools.ends_with("silent");
            stand_in("/usr/local/bin/dumpnf", silent ? "" : fails ? "echo F=2; exit 1" : "echo F=2");
        }
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
