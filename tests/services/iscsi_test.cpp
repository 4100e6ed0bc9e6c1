#include "quorvel/foundation.h"
#include "quorvel/services.h"
#include "support/scenario.h"

namespace {

constexpr char session_file[] = "/proc/net/iet/session";
const std::string connection = "\t\tcid:0 ip:10.0.0.1 state:active hd:none dd:none\n";

Answer ask(Words words) {
    words.insert(words.begin(), "iscsi");
    return call(LibQuorvelBin_iSCSIHelper, words);
}

using IscsiTest = ApplianceTest;

TEST_F(IscsiTest, ReportsTheSessionFile) {
    from_cmdline = 1;
    const Marks marks = {
        {"{a}",  "tid:1 name:x:y:a\n"     },
        {"{b}",  "tid:2 name:x:y:b\n"     },
        {"{i}",  "\tsid:7 initiator:i:j\n"},
        {"{ip}", connection               },
        {"{n}",  std::string(123,           'n')},
        {"{line}",      "1<>x:y:a<>7<>i:j<>10.0.0.1\n"                       },
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
        const std::string n = std::to_string(tid);
        sessions += "tid:" + n + " name:x:y:" + n + "\n\tsid:" + n + " initiator:i:j\n" + connection;
        report += n + "<>x:y:" + n + "<>" + n + "<>i:j<>10.0.0.1\n";
    }
    write_file(session_file, sessions);
    EXPECT_EQ(ask({"session_info"}), (Answer{0, report}));
    EXPECT_EQ(ask({"IsConnected"}), (Answer{4000, "4000\n"}));
    EXPECT_EQ(ask({"GetNewTID"}), (Answer{-1, "-1\n"}));
}

TEST_F(IscsiTest, FindsTheTargetsOfConfigurations) {
    std::string between;
    for (int number = 7; number < 32; number++)
        between += std::to_string(number) + "<><><><>\n";
    play("services/expected/configured-targets", ask,
         {
             {"{7 to 31}", between}
    });
}

TEST_F(IscsiTest, SaysNothingUnlessAskedTo) {
    play("services/expected/iscsi-silence", ask);
}

}  // namespace
