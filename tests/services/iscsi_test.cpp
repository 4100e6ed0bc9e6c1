#include "quorvel/foundation.h"
#include "quorvel/services.h"
#include "services/entry_point.h"

namespace {

const std::string session_file = "/proc/net/iet/session";

std::string target(const std::string& tid, const std::string& name) {
    return "tid:" + tid + " name:" + name + "\n";
}
std::string session(const std::string& sid, const std::string& initiator) {
    return "\tsid:" + sid + " initiator:" + initiator + "\n";
}
std::string connection(const std::string& address) {
    return "\t\tcid:0 ip:" + address + " state:active hd:none dd:none\n";
}

Answer ask(Words words) {
    words.insert(words.begin(), "iscsi");
    return call(LibQuorvelBin_iSCSIHelper, words);
}

using IscsiTest = ApplianceTest;

TEST_F(IscsiTest, ReportsTheSessionFile) {
    from_cmdline = 1;
    const Marks marks = {
        {"{a}",        target("1",     "x:y:a")},
        {"{b}",            target("2",                      "x:y:b")},
        {"{i}",    session("7","i:j")},
        {"{ip}",connection("10.0.0.1")         },
        {"{n}",       std::string(123,  'n')},
        {"{line}",        "1<>x:y:a<>7<>i:j<>10.0.0.1\n"},
    };
    for (const auto& [sessions, report, connected, free_tid] : table<4>("services/expected/sessions")) {
        write_file(session_file, filled(sessions, marks));
        EXPECT_EQ(ask({"session_info"}), (Answer{0, filled(report, marks)})) << sessions;
        EXPECT_EQ(ask({"IsConnected"}), (Answer{std::stoi(connected), connected + "\n"})) << sessions;
        EXPECT_EQ(ask({"GetNewTID"}), (Answer{std::stoi(free_tid), free_tid + "\n"})) << sessions;
    }
}

TEST_F(IscsiTest, ReportsThousandsOfSessions) {
    from_cmdline = 1;
    std::string sessions, report;
    for (int tid = 1; tid <= 4000; tid++) {
        std::string number = std::to_string(tid);
        sessions += target(number, "x:y:" + number) + session(number, "i:j") + connection("10.0.0.1");
        report += number + "<>x:y:" + number + "<>" + number + "<>i:j<>10.0.0.1\n";
    }
    write_file(session_file, sessions);
    EXPECT_EQ(ask({"session_info"}), (Answer{0, report}));
    EXPECT_EQ(ask({"IsConnected"}), (Answer{4000, "4000\n"}));
    EXPECT_EQ(ask({"GetNewTID"}), (Answer{-1, "-1\n"}));
}

TEST_F(IscsiTest, FindsTheTargetsOfConfigurations) {
    from_cmdline = 1;
    write_file(session_file, target("5", "x:y:first") + target("65541", "x:y:far") + target("5", "x:y:again") +
                                 target("6", "p:q:r:s") + target("x", "x:y:bad") + target("7", "x:y:bad"));
    std::string lines[33], volumes;
    for (const auto& [number, text, line] : table<3>("services/expected/volumes")) {
        write_file("/etc/tevra/iscsi_disks" + number, text);
        lines[std::stoul(number)] = line;
    }
    for (size_t number = 1; number <= 32; number++)
        volumes += std::to_string(number) + "<>" + (lines[number].empty() ? "<><><>" : lines[number]) + "\n";
    EXPECT_EQ(ask({"volume_info"}), (Answer{0, volumes}));

    for (const auto& [number, tid] : table<2>("services/expected/target-ids"))
        EXPECT_EQ(ask({"GetTIDfromTCID", number}), (Answer{std::stoi(tid), tid + "\n"})) << number;
    EXPECT_EQ(ask({"GetTIDfromTCID", "-1"}), (Answer{-1, ""}));
    EXPECT_EQ(ask({"GetTIDfromTCID"}), (Answer{-1, ""}));
}

TEST_F(IscsiTest, SaysNothingUnlessAskedTo) {
    from_cmdline = 1;
    EXPECT_EQ(ask({"session_info"}), (Answer{0, ""}));
    EXPECT_EQ(ask({"IsConnected"}), (Answer{0, ""}));
    EXPECT_EQ(ask({"GetNewTID"}), (Answer{1, "1\n"}));
    EXPECT_TRUE(ask({"volume_inf"}).text.starts_with("\niSCSI helper subcommands\n\n  session_info   : "));
    write_file(session_file, target("1", "x:y:a") + session("7", "i:j") + connection("10.0.0.1"));
    from_cmdline = 2;
    EXPECT_EQ(ask({}), (Answer{-1, ""}));
    EXPECT_EQ(ask({"session_info"}), (Answer{0, ""}));
    EXPECT_EQ(ask({"volume_info"}), (Answer{0, ""}));
    EXPECT_EQ(ask({"IsConnected"}), (Answer{1, ""}));
    EXPECT_EQ(ask({"GetNewTID"}), (Answer{2, ""}));
}

}  // namespace
