#include <net/if.h>
#include <sched.h>

#include "foundation/shell.h"
#include "quorvel/foundation.h"
#include "quorvel/services.h"
#include "support/scenario.h"

namespace {

const std::string ports_file = "/etc/tevra/service_ports";

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
    if (quorvel::capture_command("iptables -I FORWARD -p tcp -j ACCEPT 2>&1").status != 0)
        GTEST_SKIP() << "iptables does not work here";
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
    EXPECT_EQ(quorvel::capture_command("iptables -S").output.get(), rules);
    EXPECT_EQ(firewall({"--stop"}), (Answer{0, ""}));
    EXPECT_EQ(quorvel::capture_command("iptables -S").output.get(), policies);
}

TEST_F(FirewallTest, ChoosesItsPortsFile) {
    const std::string d = "/" + std::string(240, 'd');
    play("services/expected/ports-files", firewall,
         {
             {"{fallback}",   "Requested config file is not exist! Using default config ... \n"   },
             {"{no port}",    "wrong feature name\n"                                              },
             {"{no default}", "Default config file is not exist!\nCan't find valid config file!\n"},
             {"{long}",       "/tmp" + d + d + d + d + "/" + std::string(55,                        'f')},
             {"{empty}",              ""                                                                         }
    });
}

TEST_F(FirewallTest, ReadsItsOptionsInOrder) {
    Capture complaints(2);
    play("services/expected/firewall-options", firewall);
}

TEST_F(FirewallTest, WritesTheDefaultFile) {
    play("services/expected/default-ports", firewall,
         {
             {"{1000}", std::string(1000, 'x')}
    });
}

}  // namespace
