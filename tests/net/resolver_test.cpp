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

// clang-format off
TEST_F(NetTest, NthNameServer) {
    const std::string own = "my_dns1=10.0.0.7\nmy_dns2=not an address\nmy_dns3=\nenet_port_1_ip_address=";
    const struct { std::string info; unsigned int n; const char* flag; int result; std::string server; const char* output; } rows[] = {
        {own + "10.1.1.1\n",    1, nullptr,  0, "10.0.0.7",       ""},
        {own + "10.1.1.1\n",    2, "",       0, "not an address", ""},
        {own + "10.1.1.1\n",    3, nullptr, -1, "",               "don't check resover setting.\n"},
        {own + "10.1.1.1\n",    3, "",       0, "10.0.0.2",       ""},
        {own + "\n",            2, "",       0, "10.0.0.1",       ""},
        {"my_dns1=10.0.0.7\n",  1, "",      -1, "",               ""},
        {"",                    4, "",      -1, "",               ""},
        {"",                    5, "",       0, "10.0.0.3",       ""},
        {"",                    0, "",      -1, "",               ""},
    };
    // clang-format on
    write_file(kResolver, "search example\n\nnameserver\nnameserver 10.0.0.1\nnameserver 10.0.0.2\nnameserver " +
                              std::string(128, '9') + "\noptions rotate\nnameserver 10.0.0.3\n");
    for (const auto& row : rows) {
        write_file("/etc/tevra/info", row.info);
        char dst[] = "####################";
        EXPECT_EQ(printed_by([&] { EXPECT_EQ(LibQuorvelBin_GetDNS(row.n, row.flag, dst), row.result); }), row.output);
        EXPECT_EQ(dst, row.server + std::string(20 - row.server.size(), '#')) << row.n;
    }
}
