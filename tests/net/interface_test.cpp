// The ioctl layer, its report, renaming and the Ethernet report, on real interfaces.
#include <arpa/inet.h>
#include <errno.h>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "net/ethernet_report.h"
#include "net/network.h"
#include "quorvel/foundation.h"
#include "quorvel/net.h"

// Stands in front of the C library's: an old kernel takes the close-on-exec flag for another type of socket.
static bool old_kernel = false;
extern "C" int socket(int domain, int type, int protocol) noexcept {
    if (old_kernel && (type & SOCK_CLOEXEC) != 0) return errno = EINVAL, -1;
    return static_cast<int>(syscall(SYS_socket, domain, type, protocol));
}

namespace {

// What an action writes to standard error, with room for so many descriptors.
template <typename Action>
std::string complaint_of(Action&& action, rlim_t descriptors = 1024) {
    Capture errors(2);
    rlimit before;
    getrlimit(RLIMIT_NOFILE, &before);
    const rlimit limit = {descriptors, before.rlim_max};
    setrlimit(RLIMIT_NOFILE, &limit), action(), setrlimit(RLIMIT_NOFILE, &before);
    return errors.text();
}

// The address stored, or -1 with nothing stored.
template <int (*Get)(const char*, uint32_t*)>
int address(const char* ifname) {
    uint32_t stored = 7;
    int result = Get(ifname, &stored);
    return result == 0 || stored != 7 ? static_cast<int>(stored) : result;
}

int octets(const char* text) {
    return static_cast<int>(inet_addr(text));
}

}  // namespace

// clang-format off
TEST_F(NetTest, Getters) {
    const struct { int (*get)(const char*); int eth0, eth1; std::string function, request; } rows[] = {
        {address<Netdev_GetIpAddr>,    octets("192.168.11.150"), octets("10.20.30.40"),     "Netdev_GetIpAddr:",    "SIOCGIFADDR :"},
        {address<Netdev_GetDstAddr>,   octets("192.168.11.150"), octets("10.20.30.41"),     "Netdev_GetDstAddr:",   "SIOCGIFDSTADDR :"},
        {address<Netdev_GetNetmask>,   octets("255.255.252.0"),  octets("255.255.255.252"), "Netdev_GetNetmask:",   "SIOCGIFNETMASK :"},
        {address<Netdev_GetBroadAddr>, octets("192.168.11.255"), octets("0.0.0.0"),         "Netdev_GetBroadAddr:", "SIOCGIFBRDADDR :"},
        {Netdev_GetMtu,                1400,                     1500,                      "Netdev_GetMtu:",       "SIOCGIFMTU :"},
        {Netdev_GetFlags,              0x1043,                   0x1043,                    "Netdev_GetFlags:",     "SIOCGIFFLAGS :"},
        {Netdev_GetIfIndex,            40,                       41,                        "Netdev_GetIfIndex:",   "SIOCGIFINDEX :"},
        {Netdev_GetMetric,             0,                        0,                         "Netdev_GetMetric:",    "SIOCGIFMETRIC :"},
    };
    // clang-format on
    const char no_device[] = "No such device\n", no_room[] = "Too many open files\n";
    int free_descriptor = -1;
    for (bool old : {true, false}) {
        old_kernel = old;
        free_descriptor = OpenSocket();
        EXPECT_EQ(fcntl(free_descriptor, F_GETFD), FD_CLOEXEC);
        close(free_descriptor);
    }
    for (const auto& row : rows) {
        EXPECT_TRUE(row.get("eth0") == row.eth0 && row.get("eth1") == row.eth1) << row.function;
        EXPECT_EQ(complaint_of([&] { EXPECT_EQ(row.get("x") + row.get(nullptr), -2); }), row.request + no_device);
        EXPECT_EQ(complaint_of([&] { EXPECT_EQ(row.get("eth0"), -1); }, 0), row.function + no_room);
    }
    EXPECT_EQ(complaint_of([] { EXPECT_EQ(OpenSocket(), -1); }, 0), "socket fail: Too many open files\n");
    EXPECT_EQ(complaint_of([] { EXPECT_EQ(Netdev_SetIpAddr("eth0", 1, 1), -1); }, 0),
              std::string("Netdev_SetIpAddr:") + no_room);
    EXPECT_EQ(close(free_descriptor), -1) << "a socket stayed open";
    netdev_map maps[2];
    memset(maps, 0xee, sizeof maps);
    EXPECT_EQ(Netdev_GetMap("eth0", maps), 0);
    EXPECT_EQ(std::string(reinterpret_cast<char*>(maps), 32), std::string(16, '\0') + std::string(16, '\xee'));
    EXPECT_EQ(complaint_of([&] { Netdev_GetHwAddr("x", &maps->irq); }), "SIOCSIFHWADDR :No such device\n");
}

TEST_F(NetTest, SetIpAddr) {
    EXPECT_EQ(Netdev_SetIpAddr("br0", inet_addr("10.0.0.1"), inet_addr("255.255.252.0")), 0);
    ip("-4 -o address show dev br0 | grep -q 'inet 10.0.0.1/22 '");
    EXPECT_EQ(complaint_of([] { EXPECT_EQ(Netdev_SetIpAddr("br0", inet_addr("10.0.0.2"), 0x00ff00ff), -1); }),
              "SIOCSIFNETMASK :Invalid argument\n");
    ip("-4 -o address show dev br0 | grep -q 'inet 10.0.0.2/8 '");
    EXPECT_EQ(complaint_of([] { EXPECT_EQ(Netdev_SetIpAddr("x", 0, 0), -1); }), "SIOCSIFADDR :No such device\n");
}

TEST_F(NetTest, InterfaceReport) {
    ip("link set br0 dynamic on");  // the flag of bit 15
    EXPECT_EQ(printed_by([] { EXPECT_EQ(getifinfo("eth0") + getifinfo("br0") + getifinfo("x"), 0); }),
              read_file("/source/tests/net/expected/interface-report.txt"));
}

TEST_F(NetTest, Rename) {
    play("net/expected/renaming", LibQuorvelBin_Nameif);
    EXPECT_EQ(Netdev_GetIfIndex("fifteen_letters_"), 70) << "cut to the same name";
    EXPECT_EQ(complaint_of([] { EXPECT_EQ(Netdev_SetIpAddr("fifteen_letters_", 1, 1), -1); }),
              "SIOCSIFADDR :No such device\n");
    char from[] = "br0", to[] = "br1";
    char* words[] = {from, from, to};
    Capture output;
    complaint_of([&] { EXPECT_EQ(LibQuorvelBin_Nameif(3, words), -1); }, 0);
    EXPECT_EQ(output.text(), "Can't open socket\n");
}

TEST_F(NetTest, EthernetReport) {
    play("net/expected/ethernet-report", LibQuorvelBin_EthInfo);
}

// Each call fails, or has the answer "no", whose errno is that of before: 0.
TEST_F(NetTest, Reasons) {
    write_file("/sys/class/net/eth3/address", "");
    write_file("/sys/class/net/eth4/address", "0\n");
    write_file("/sys/class/net/eth4/mtu", "");
    write_file("/sys/class/net/address", "");
    stand_in("/usr/local/ssl/bin/openssl", "exit 3");
    stand_in("/usr/local/bin/nslookup", "exit 127");
    struct eth_info eth = {};
    struct host_info host;
    const struct ip_record no_mask = {};
    const Words many(258, "-v");
    // clang-format off
    const struct { int line; int result, reason; std::function<int()> ask; } rows[] = {
        {__LINE__, -1, ENODEV, [] { return Netdev_GetMtu("x"); }},
        {__LINE__, -1, EINVAL, [] { return Netdev_GetHwAddr("eth0", nullptr); }},
        {__LINE__, -1, EINVAL, [] { return Netdev_SetIpAddr(nullptr, 0, 0); }},
        {__LINE__, -1, ENOSYS, [] { return getmac(); }},
        {__LINE__,  0, EINVAL, [] { return static_cast<int>(LibQuorvelBin_GetMaskSize(nullptr)); }},
        {__LINE__,  0, 0,      [&] { return static_cast<int>(LibQuorvelBin_GetMaskSize(&no_mask)); }},
        {__LINE__, 32, 0,      [&] { return memset(&host.mask, 0xff, sizeof host.mask), static_cast<int>(LibQuorvelBin_GetMaskSize(&host.mask)); }},
        {__LINE__,  0, 0,      [] { return getifinfo(nullptr); }},
        {__LINE__, -1, EADDRNOTAVAIL, [&] { return LibQuorvelBin_FillInfo(&host, "br0"); }},
        {__LINE__, -1, EINVAL, [&] { return LibQuorvelBin_GetIpInfo("eth0", nullptr); }},
        {__LINE__, -1, EINVAL, [&] { return call(LibQuorvelBin_NetHelper, many).result; }},
        {__LINE__, -1, EINVAL, [] { return call(LibQuorvelBin_NetHelper, {"x", "net", "-x"}).result; }},
        {__LINE__, -1, EINVAL, [] { return call(LibQuorvelBin_NetHelper, {"x"}).result; }},
        {__LINE__,  0, EINVAL, [] { return LibQuorvelBin_IsExistNetIf(nullptr); }},
        {__LINE__, -1, ENODATA, [] { return LibQuorvelBin_GetInterfaceIndex("lo"); }},
        {__LINE__,  0, 0,      [] { return LibQuorvelBin_IsBondingMode() + LibQuorvelBin_IsNetIfEnabled("eth1"); }},
        {__LINE__,  0, 0,      [] { return call([](int, char**) { return LibQuorvelBin_IsNetIfDhcp("bond"); }, {}).result; }},
        {__LINE__, -1, EINVAL, [] { return call(LibQuorvelBin_Nameif, {"x", "eth0"}).result; }},
        {__LINE__, -1, ENODEV, [] { return call(LibQuorvelBin_Nameif, {"x", "br9", "br8"}).result; }},
        {__LINE__, -17, ENODEV, [&] { return read_eth_info(&eth, ""); }},
        {__LINE__, -12, ENODATA, [&] { return read_eth_info(&eth, "eth3"); }},
        {__LINE__, -12, ENODATA, [&] { return read_eth_info(&eth, "eth4"); }},
        {__LINE__, -1, ENODEV, [] { return call(LibQuorvelBin_EthInfo, {"x", "eth9"}).result; }},
        {__LINE__,  0, EINVAL, [&] { return call(LibQuorvelBin_IsDNSReachable, many).result; }},
        {__LINE__,  0, ENOENT, [] { return call(LibQuorvelBin_IsDNSReachable, {"x"}).result; }},
        {__LINE__,  0, 0,      [] { return write_file("/etc/resolv.conf", "search x\n"), errno = 0, call(LibQuorvelBin_IsDNSReachable, {"x"}).result; }},
        {__LINE__,  0, ENOPKG, [] { return write_file("/etc/resolv.conf", "nameserver 1\n"), call(LibQuorvelBin_IsDNSReachable, {"x"}).result; }},
        {__LINE__,  1, E2BIG,  [] { return LibQuorvelBin_SetEncryptionMacAddressNicFile("eth0", std::string(39, 'a').c_str()); }},
        {__LINE__,  0, EIO,    [] { return LibQuorvelBin_RecoveryEncryptionMacAddressNicFile("eth0", "x"); }},
        {__LINE__,  0, ENOPKG, [] { return remove_tree("/usr/local/ssl"), LibQuorvelBin_SetEncryptionMacAddressNicFile("eth0", "x"); }},
        {__LINE__,  1, EISDIR, [] { return make_directory("x.1"), LibQuorvelBin_SetEncryptionMacAddressNicFile("eth0", "x"); }},
    };
    // clang-format on
    for (const auto& row : rows) {
        errno = 0;
        int result = row.ask(), reason = errno;
        EXPECT_TRUE(result == row.result && reason == row.reason)
            << "line " << row.line << ": " << result << " " << strerror(reason);
    }
}
