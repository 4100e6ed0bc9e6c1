#include <fcntl.h>
#include <net/if.h>
#include <sched.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <tuple>

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
        Capture told(2);
        EXPECT_EQ(firewall({"--restart"}), (Answer{0, screen}));
        const Words commands = deny(denied);
        EXPECT_EQ(calls("iptables"), commands) << ports;
        EXPECT_EQ(told.text(), "firewall: commands that failed: " + std::to_string(commands.size()) +
                                   ", first \"iptables --table filter --flush\"\n");
    }
}

// What happens to a caller, and how its process ends: a signal, or 0.
const std::tuple<const char*, int> attacks[] = {
    {"",                     0      },
    {"nobody listens",       SIGPIPE},
    {"the pipe is full",     SIGKILL},
    {"ended in between",     SIGTERM},
    {"children are ignored", 0      },
};

[[noreturn]] void start_under(const std::string& attack) {
    int ends[2];
    if (pipe(ends) != 0 || dup2(ends[1], STDOUT_FILENO) < 0) _exit(2);
    if (attack == "nobody listens") close(ends[0]);
    if (attack == "the pipe is full" && fcntl(ends[1], F_SETFL, O_NONBLOCK) == 0) {
        while (write(ends[1], "x", 1) == 1) {
        }
        fcntl(ends[1], F_SETFL, 0);
    }
    if (attack == "ended in between" && setpgid(0, 0) == 0)
        stand_in("/usr/local/sbin/iptables",
                 "for i in TERM XCPU IO 40; do kill -$i 0; done; exec /usr/sbin/iptables \"$@\"");
    if (attack == "children are ignored") signal(SIGCHLD, SIG_IGN);
    char command[] = "firewall", start[] = "--start", config[] = "--config", file[] = "/tmp/ports";
    char* words[] = {command, start, config, file};
    const int result = LibQuorvelBin_FirewallEntry(4, words);
    _exit(result + fflush(stdout));
}

// The signal that ended a process, which gets three seconds.
int end_of(pid_t process) {
    int status = 0;
    for (int i = 0; i < 300 && waitpid(process, &status, WNOHANG) == 0; i++)
        usleep(10'000);
    if (kill(process, SIGKILL) == 0) waitpid(process, &status, 0);
    EXPECT_TRUE(WIFSIGNALED(status) || WEXITSTATUS(status) == 0);
    return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
}

TEST_F(FirewallTest, LoadsRulesThatTheKernelTellsBack) {
    // Only in a network of this test's own, or at least in one that has no interface but the loopback.
    char name[IF_NAMESIZE];
    if (unshare(CLONE_NEWNET) != 0 && if_indextoname(2, name) != nullptr) GTEST_SKIP() << "no network namespace here";
    if (quorvel::capture_command("iptables -L 2>&1").status != 0) GTEST_SKIP() << "iptables does not work here";
    const std::string policies = "-P INPUT ACCEPT\n-P FORWARD ACCEPT\n-P OUTPUT ACCEPT\n";
    std::string rules = policies;
    for (const char* end : {"INPUT -i eth", "OUTPUT -o eth"}) {
        for (const char* port : {"1 -p tcp -m tcp --dport 80", "1 -p udp -m udp --dport 80",
                                 "0 -p tcp -m tcp --dport 21", "0 -p udp -m udp --dport 21"})
            rules += std::string("-A ") + end + port + " -j DROP\n";
    }
    for (const auto& [attack, signal_number] : attacks) {
        SetUp();
        write_file("/etc/nas_feature", "DEVICE_NETWORK_NUM=2\n");
        write_file("/tmp/ports", "webui<>1<>0<>;\nftp<>0<>1<>;\n");
        EXPECT_EQ(quorvel::run_command("iptables -I FORWARD -p tcp -j ACCEPT"), 0);
        Capture told(2);
        const pid_t caller = fork();
        if (caller == 0) start_under(attack);
        EXPECT_EQ(end_of(caller), signal_number) << attack;
        EXPECT_EQ(quorvel::capture_command("/usr/sbin/iptables -S").output.get(), rules) << attack;
        EXPECT_EQ(told.text(), "") << attack;
    }
    EXPECT_EQ(firewall({"--stop"}), (Answer{0, ""}));
    EXPECT_EQ(quorvel::capture_command("iptables -S").output.get(), policies);
}

// What is there and cannot be opened, and what a start makes of it.
TEST_F(FirewallTest, LoadsNothingForInterfacesThatItCannotTell) {
    const std::tuple<std::string, int, int, Words> rows[] = {
        {"/etc/tevra/info",  -1, ELOOP, {}                        },
        {"/etc/nas_feature", -1, ELOOP, {}                        },
        {ports_file,         0,  EIO,   {"--table filter --flush"}},
    };
    for (const auto& [path, result, reason, commands] : rows) {
        SetUp();
        stand_in("/usr/local/sbin/iptables");
        write_file("/etc/nas_feature", "DEVICE_NETWORK_NUM=1\n");
        write_file(ports_file, "webui<>0<>;\n");
        remove_tree(path);
        make_link(path, path);
        char command[] = "firewall", start[] = "--start";
        errno = 0;
        const int answer = LibQuorvelBin_FirewallEntry(2, std::array{command, start}.data());
        EXPECT_EQ(std::pair(answer, errno), std::pair(result, reason)) << path;
        EXPECT_EQ(calls("iptables"), commands) << path;
    }
}

pid_t start_in_background(const std::string& option) {
    const pid_t process = fork();
    if (process == 0) _exit(firewall({option}).result);
    return process;
}

TEST_F(FirewallTest, LetsNobodyIntoTheMiddleOfItsRules) {
    write_file("/etc/nas_feature", "DEVICE_NETWORK_NUM=1\n");
    make_directory("/var/run");
    for (const auto& [second, denied] : {std::pair("--stop", ""), std::pair("--start", "21 eth0")}) {
        write_file(ports_file, "webui<>0<>;\n");
        remove_tree("/run/stand-in");
        remove_tree("/run/begun");
        remove_tree("/run/go");
        stand_in(
            "/usr/local/sbin/iptables",
            "case $* in -A*) mkdir /run/begun 2>/dev/null && until [ -e /run/go ]; do sleep 0.01; done; esac; true");
        const pid_t one = start_in_background("--start");
        while (!exists("/run/begun"))
            usleep(1000);
        const pid_t other = start_in_background(second);
        usleep(200'000);
        // What has changed by its turn is what the other caller loads.
        write_file(ports_file, "ftp<>0<>;\n");
        write_file("/run/go", "");
        for (const pid_t caller : {one, other})
            EXPECT_EQ(end_of(caller), 0);
        Words rules = deny("80 eth0");
        for (const std::string& rule : deny(denied))
            rules.push_back(rule);
        EXPECT_EQ(calls("iptables"), rules) << second;
    }
    EXPECT_FALSE(exists("/var/run/libquorvel_bin.firewall"));
}

// Longer than a lock is waited for.
TEST_F(FirewallTest, WaitsForWhoGetsOn) {
    write_file("/etc/nas_feature", "DEVICE_NETWORK_NUM=1\n");
    make_directory("/var/run");
    write_file(ports_file, "nfs<>0<>;\n");
    stand_in("/usr/local/sbin/iptables", "case $* in -A*) sleep 1.5;; esac");
    const pid_t one = start_in_background("--start");
    while (!exists("/run/stand-in/iptables"))
        usleep(1000);
    EXPECT_EQ(firewall({"--stop"}), (Answer{0, ""}));
    waitpid(one, nullptr, 0);
    Words rules = deny("111 eth0 2049 eth0");
    rules.push_back(rules.front());
    EXPECT_EQ(calls("iptables"), rules);
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
    EXPECT_EQ(firewall(Words(256, "--version")), (Answer{-1, ""}));
}

TEST_F(FirewallTest, WritesTheDefaultFile) {
    play("services/expected/default-ports", firewall,
         {
             {"{1000}", std::string(1000, 'x')}
    });
}

TEST_F(FirewallTest, ReplacesItsFileWhenTheNewOneIsWhole) {
    write_file("/etc/nas_feature", "DEVICE_NETWORK_NUM=2\n");
    // The mode of the old file, if there is one; the caller's mask; the mode of the new file.
    const std::tuple<mode_t, mode_t, mode_t> rows[] = {
        {0,    0,   0644},
        {0,    077, 0600},
        {0640, 0,   0640},
    };
    for (const auto& [old, mask, mode] : rows) {
        remove_tree("/etc/tevra");
        make_link(ports_file, "file");
        if (old != 0) write_file("/etc/tevra/file", "old");
        EXPECT_EQ(chmod("/etc/tevra/file", old), old != 0 ? 0 : -1);
        const mode_t before = umask(mask);
        EXPECT_EQ(firewall({"--def_config"}), (Answer{0, ""}));
        umask(before);
        struct stat status = {};
        EXPECT_EQ(stat(ports_file.c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 07777, mode);
    }
    // There is no room: nothing is lost and nothing is left over.
    signal(SIGXFSZ, SIG_IGN);
    const std::string before = read_file(ports_file);
    struct rlimit usual;
    getrlimit(RLIMIT_FSIZE, &usual);
    const struct rlimit small = {100, usual.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    const int result = LibQuorvelBin_FirewallEntry(
        2, std::array{const_cast<char*>("firewall"), const_cast<char*>("--def_config")}.data());
    setrlimit(RLIMIT_FSIZE, &usual);
    EXPECT_EQ(std::pair(result, errno), std::pair(-1, EFBIG));
    EXPECT_EQ(read_file("/etc/tevra/file"), before);
    EXPECT_EQ(quorvel::capture_command("ls /etc/tevra").output.get(), std::string("file\nservice_ports\n"));
}

}  // namespace
