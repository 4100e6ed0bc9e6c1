#include <net/if.h>
#include <sched.h>

#include "foundation/shell.h"
#include "quorvel/foundation.h"
#include "quorvel/services.h"
#include "services/entry_point.h"

namespace {

const std::string ports_file = "/etc/tevra/service_ports";
const std::string no_default = "Default config file is not exist!\nCan't find valid config file!\n";

Answer firewall(Words words) {
    words.insert(words.begin(), "firewall");
    return call(LibQuorvelBin_FirewallEntry, words);
}

// The rules that keep ports off interfaces, as the stand-in logs them behind the flush.
Words deny(const std::string& ports_and_interfaces) {
    Words rules = {"--table filter --flush"};
    std::istringstream pairs(ports_and_interfaces);
    for (std::string port, interface; pairs >> port >> interface;) {
        const std::string dport = " --dport " + port + " -j DROP ";
        for (const std::string chain : {"INPUT -p tcp", "INPUT -p udp", "OUTPUT -p tcp", "OUTPUT -p udp"})
            rules.push_back("-A " + chain + dport + (chain[0] == 'I' ? "-i " : "-o ") + interface);
    }
    return rules;
}

using FirewallTest = ApplianceTest;

TEST_F(FirewallTest, TurnsThePortsFileIntoRules) {
    from_cmdline = 1;
    for (const auto& [features, info, ports, screen, denied] : table<5>("services/expected/firewall-rules")) {
        remove_tree("/run/stand-in");
        stand_in("/usr/local/sbin/iptables", "exit 1");
        write_file("/etc/nas_feature", features);
        write_file("/etc/tevra/info", info);
        write_file(ports_file, ports);
        EXPECT_EQ(firewall({"--restart"}), (Answer{0, screen}));
        EXPECT_EQ(calls("iptables"), deny(denied)) << ports;
    }
}

TEST_F(FirewallTest, LoadsRulesThatTheKernelTellsBack) {
    // Only in a network of this test's own, or at least in one that has no interface but the loopback.
    char name[IF_NAMESIZE];
    if (unshare(CLONE_NEWNET) != 0 && if_indextoname(2, name) != nullptr) GTEST_SKIP() << "no network namespace here";
    int status = -1;
    (void)quorvel::capture_command("iptables -I FORWARD -p tcp -j ACCEPT 2>&1", status);
    if (status != 0) GTEST_SKIP() << "iptables does not work here";
    write_file("/etc/nas_feature", "DEVICE_NETWORK_NUM=2\n");
    write_file("/tmp/ports", "webui<>1<>0<>;\nftp<>0<>1<>;\n");
    EXPECT_EQ(firewall({"--start", "--config", "/tmp/ports"}).result, 0);
    const std::string policies = "-P INPUT ACCEPT\n-P FORWARD ACCEPT\n-P OUTPUT ACCEPT\n";
    std::string rules = policies;
    for (const char* end : {"INPUT -i eth", "OUTPUT -o eth"}) {
        for (const char* port : {"1 -p tcp -m tcp --dport 80", "1 -p udp -m udp --dport 80",
                                 "0 -p tcp -m tcp --dport 21", "0 -p udp -m udp --dport 21"})
            rules += std::string("-A ") + end + port + " -j DROP\n";
    }
    EXPECT_EQ(quorvel::capture_command("iptables -S", status).get(), rules);
    EXPECT_EQ(firewall({"--stop"}), (Answer{0, ""}));
    EXPECT_EQ(quorvel::capture_command("iptables -S", status).get(), policies);
}

TEST_F(FirewallTest, ChoosesItsPortsFile) {
    const std::string d = "/" + std::string(240, 'd');
    const std::string longest = "/tmp" + d + d + d + d + "/" + std::string(55, 'f');
    const std::string fallback = "Requested config file is not exist! Using default config ... \n";
    const Marks marks = {
        {"{fallback}",   fallback              },
        {"{no port}",    "wrong feature name\n"},
        {"{no default}", no_default            },
        {"{long}",       longest               }
    };
    stand_in("/usr/local/sbin/iptables");
    for (const auto& [file, asked, usual, screen] : table<4>("services/expected/ports-files")) {
        remove_tree(ports_file);
        if (!usual.empty()) write_file(ports_file, "usual");
        if (!file.empty()) write_file(filled(file, marks), "name");
        EXPECT_EQ(firewall({"--start", "--config", filled(asked, marks)}), (Answer{0, filled(screen, marks)})) << asked;
    }
}

TEST_F(FirewallTest, ReadsItsOptionsInOrder) {
    stand_in("/usr/local/sbin/iptables");
    write_file("/etc/nas_feature", "DEVICE_NETWORK_NUM=2\n");
    Capture complaints(2);
    EXPECT_EQ(firewall({"start", "-c", "/tmp/x"}), (Answer{0, ""}));
    EXPECT_EQ(firewall({"--bogus", "-v", "--def_config"}), (Answer{0, "Ver.0.11\n"}));
    EXPECT_EQ(firewall({"--start", "--help"}).result, -1);
    EXPECT_TRUE(firewall({}).text.starts_with("\nQUORVEL INC. NAS firewall utility Ver.0.11\n\nUsage   : "));
    EXPECT_FALSE(exists("/run/stand-in/iptables") || exists(ports_file));
    EXPECT_EQ(firewall({"--start", "--stop"}), (Answer{0, ""}));
    EXPECT_EQ(firewall({"--stop", "--start", "--config"}), (Answer{0, no_default}));
    EXPECT_EQ(calls("iptables"), Words(2, "--table filter --flush"));
    EXPECT_NE(firewall({"--ports_list"}).text.find("list -----\n\n           samba :   137   138"), std::string::npos);
}

TEST_F(FirewallTest, WritesTheDefaultFile) {
    const std::pair<std::string, std::string> rows[] = {
        {"DEVICE_NETWORK_NUM=2\n", "samba<>1<>1<>;\natalk<>1<>1<>;\n"},
        {"DEVICE_NETWORK_NUM=0\n", "samba<>;\natalk<>;\n"            },
    };
    EXPECT_EQ(firewall({"--def_config"}),
              (Answer{-1, "wrong feature name\nCan't open config file(/etc/tevra/service_ports)\n"}));
    for (const auto& [features, beginning] : rows) {
        write_file("/etc/nas_feature", features);
        write_file(ports_file, std::string(1000, 'x'));
        EXPECT_EQ(firewall({"--config", "/tmp/other", "--def_config"}), (Answer{0, ""}));
        EXPECT_TRUE(read_file(ports_file).starts_with(beginning)) << read_file(ports_file);
        EXPECT_TRUE(read_file(ports_file).ends_with("<>;\n")) << read_file(ports_file);
    }
    make_link(ports_file, "/dev/full");
    EXPECT_EQ(firewall({"--def_config"}), (Answer{-1, ""}));
}

}  // namespace
