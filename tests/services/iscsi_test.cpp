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
    const std::string a = target("1", "x:y:a");
    const std::string i = session("7", "i:j");
    const std::string ip = connection("10.0.0.1");
    const std::string long_name = "x:y:" + std::string(123, 'n');  // 127 characters
    const std::string ab = a + i + ip + target("2", "x:y:b");
    const std::string line = "1<>x:y:a<>7<>i:j<>10.0.0.1\n";
    // What the session file holds, the report, the sessions connected and the lowest free tid.
    // clang-format off
    const std::tuple<std::string, std::string, int, int> rows[] = {
        {a + i, "", 0, 2},
        {a + i + ip + ip, line + line, 1, 2},
        {a + i + ip + i + ip, line + line, 2, 2},
        {ab, line + "2<>x:y:b<>7<><>\n", 1, 3},
        {a + ip + a, "1<>x:y:a<><><>10.0.0.1\n1<>x:y:a<><><>\n", 0, 2},
        {ip, "<><><><>10.0.0.1\n", 0, 1},
        // A session that has lost its connection hands its claim to the next target's.
        {a + i + target("2", "x:y:b") + ip, "2<>x:y:b<>7<>i:j<>10.0.0.1\n", 1, 3},
        // Names are built of exactly their parts, or not at all.
        {target("1", "x:y") + session("8", "j") + connection("fe80::1"), "1<><>8<><>fe80\n", 1, 1},
        {target("1", "x::y:a:b"), "1<>x:y:a<><><>\n", 0, 2},
        {target("1", long_name), "1<>" + long_name + "<><><>\n", 0, 2},
        {target("1", long_name + "n"), "1<><><><>\n", 0, 1},
        {a + i + session("9", long_name.substr(2)) + ip, "1<>x:y:a<>9<>" + long_name.substr(2) + "<>10.0.0.1\n", 1, 2},
        {a + i + session("9", long_name.substr(2) + "nn") + ip, "1<>x:y:a<>9<><>10.0.0.1\n", 1, 2},
        // Only the first line of a tid tells whether it is taken; "tid:" anywhere makes a target.
        {target("1", "x:y") + a, "1<><><><>\n1<>x:y:a<><><>\n", 0, 1},
        {target("", "x:y:a") + target("x", "x:y:a"), "<>x:y:a<><><>\nx<>x:y:a<><><>\n", 0, 1},
        {"\tsid:7 tid:1\n", "7<><><><>\n", 0, 1},
        {"sid:7 cid:1 ip:2\n", "", 0, 1},
        {"no kind:1\n\n" + a + "ipid:3\n", "1<>x:y:a<><><>\n", 0, 2},
    };
    // clang-format on
    for (const auto& [sessions, report, connected, free_tid] : rows) {
        write_file(session_file, sessions);
        EXPECT_EQ(ask({"session_info"}), (Answer{0, report})) << sessions;
        EXPECT_EQ(ask({"IsConnected"}), (Answer{connected, std::to_string(connected) + "\n"})) << sessions;
        EXPECT_EQ(ask({"GetNewTID"}), (Answer{free_tid, std::to_string(free_tid) + "\n"})) << sessions;
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
    const std::pair<int, std::string> files[] = {
        {0,  "zero=1\niscsi_device0_target=first\n"                          },
        {1,  "iscsi_device0_path_lun0=/dev/md1\niscsi_device0_target=again\n"},
        {2,  "iscsi_device0_target=far\n"                                    },
        {3,  "iscsi_device0_target=s\n"                                      },
        {4,  "iscsi_device0_target=\niscsi_device0_path_lun0=/dev/md4\n"     },
        {5,  "iscsi_device0_target=bad\n"                                    },
        {6,  "iscsi_device0_target=again\n"                                  },
        {32, "iscsi_device0_target=r\n"                                      },
    };
    for (const auto& [number, text] : files)
        write_file("/etc/tevra/iscsi_disks" + std::to_string(number), text);
    std::string volumes =
        "1<>/dev/md1<>5<>x:y:first<>\n2<><>65541<>x:y:far<>\n3<><><><>\n4<>/dev/md4<><><>\n5<><><><>\n"
        "6<><>5<>x:y:first<>\n";
    for (int number = 7; number < 32; number++)
        volumes += std::to_string(number) + "<><><><>\n";
    EXPECT_EQ(ask({"volume_info"}), (Answer{0, volumes + "32<><>6<>p:q:r<>\n"}));

    // Configuration number, and what is printed.
    const std::pair<std::string, std::string> rows[] = {
        {"1",          "5"    },
        {"2",          "65541"},
        {"3",          "-1"   },
        {"0",          "5"    },
        {"32x",        "6"    },
        {"33",         "-1"   },
        {"4294967297", "-1"   },
    };
    for (const auto& [number, tid] : rows)
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
