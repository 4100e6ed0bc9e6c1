// Name servers, with stand-ins for answers and the real lookup tools for failures.
#include <signal.h>

#include "net/network.h"
#include "quorvel/net.h"

namespace {

constexpr char kResolver[] = "/etc/resolv.conf";
constexpr char kLookup[] = "/usr/local/bin/nslookup";
constexpr auto reach = LibQuorvelBin_IsDNSReachable;

}  // namespace

TEST_F(NetTest, Reachability) {
    for (auto disposition : {SIG_DFL, SIG_IGN}) {
        signal(SIGCHLD, disposition);
        play("net/expected/reachability", reach);
    }
    signal(SIGCHLD, SIG_DFL);
}

TEST_F(NetTest, RealLookupTools) {
    const Words question = words_of("dns -t 1 -r 1");
    const std::string checking = "Checking reachability to ";
    // The second one reports a refusal as a time-out.
    for (auto [tool, refused] : {std::pair("/usr/bin/nslookup", "OK"), std::pair("/usr/bin/busybox", "NG")}) {
        if (!exists(tool)) GTEST_SKIP() << "no " << tool;
        make_link(kLookup, tool);
        write_file(kResolver, "nameserver 192.168.11.2\n");  // nobody has this address
        EXPECT_EQ(call(reach, question), (Answer{0, checking + "192.168.11.2 ... NG\n"}));
        write_file(kResolver, "nameserver 127.0.0.1\n");  // nobody listens here
        EXPECT_EQ(call(reach, question), (Answer{refused[0] == 'O', checking + "127.0.0.1 ... " + refused + "\n"}));
    }
}

TEST_F(NetTest, NthNameServer) {
    write_file(kResolver, "search example\n\nnameserver\nnameserver 10.0.0.1\nnameserver 10.0.0.2\nnameserver " +
                              std::string(128, '9') + "\noptions rotate\nnameserver 10.0.0.3\n");
    for (const auto& [info, n, source, result, server, output] : table<6>("net/expected/name-servers")) {
        write_file("/etc/tevra/info", info);
        char dst[] = "####################";
        const char* flag = source == "resolver" ? "" : nullptr;
        Capture printed;
        EXPECT_EQ(LibQuorvelBin_GetDNS(static_cast<unsigned int>(std::stoi(n)), flag, dst), std::stoi(result)) << n;
        EXPECT_EQ(printed.text(), output);
        EXPECT_EQ(dst, server + std::string(20 - server.size(), '#')) << info << n;
    }
    char dst[20];
    remove(kResolver);
    EXPECT_EQ(LibQuorvelBin_GetDNS(1, "", dst), -1);
}
