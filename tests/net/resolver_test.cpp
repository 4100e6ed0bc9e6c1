// Name servers, with stand-ins for answers and the real lookup tools for failures.
#include "net/network.h"
#include "quorvel/net.h"

namespace {

constexpr char kResolver[] = "/etc/resolv.conf";
constexpr char kLookup[] = "/usr/local/bin/nslookup";
constexpr auto reach = LibQuorvelBin_IsDNSReachable;

std::string checking(const char* address, const char* outcome) {
    return std::string("Checking reachability to ") + address + " ... " + outcome + "\n";
}

}  // namespace

TEST_F(NetTest, Reachability) {
    expect_answer(reach, "dns", 0, "resover setting file(/etc/resolv.conf) is not exist!\n");
    write_file(kResolver,
               "# nameserver 10.0.0.9\nsearch example\nnameserver\n\nnameserverx 10.0.0.8\n"
               "\tnameserver \t 10.0.0.1 # first\nnameserver 10.0.0.2\nnameserver 10.0.0.3");
    stand_in(kLookup, "case $3 in 10.0.0.1) echo; echo '; timed out;';; 10.0.0.2) exit 1;; *) exit 127;; esac");
    expect_answer(reach, "dns -r 5 -x -t7", 1, checking("10.0.0.1", "NG") + checking("10.0.0.2", "OK"));
    EXPECT_EQ(read_file("/run/stand-in/nslookup"), "-timeout=7 -retry=5 10.0.0.1\n-timeout=7 -retry=5 10.0.0.2\n");
    write_file(kResolver, "nameserver 10.0.0.3\n");
    expect_answer(reach, "dns", 0, checking("10.0.0.3", "can't execute cmd (nslookup -timeout=3 -retry=2 10.0.0.3)"));
    stand_in(kLookup, "echo; exit 127");
    expect_answer(reach, "dns", 1, checking("10.0.0.3", "OK"));
}

TEST_F(NetTest, RealLookupTools) {
    // The second one reports a refusal as a time-out.
    for (auto [tool, refused] : {std::pair("/usr/bin/nslookup", "OK"), std::pair("/usr/bin/busybox", "NG")}) {
        if (!exists(tool)) GTEST_SKIP() << "no " << tool;
        make_link(kLookup, tool);
        write_file(kResolver, "nameserver 192.168.11.2\n");  // nobody has this address
        expect_answer(reach, "dns -t 1 -r 1", 0, checking("192.168.11.2", "NG"));
        write_file(kResolver, "nameserver 127.0.0.1\n");  // nobody listens here
        expect_answer(reach, "dns -t 1 -r 1", refused[0] == 'O', checking("127.0.0.1", refused));
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
}
