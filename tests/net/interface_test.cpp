// The ioctl layer, its report, renaming and the Ethernet report, on real interfaces.
#include <arpa/inet.h>
#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include "net/ethernet_report.h"
#include "net/network.h"
#include "quorvel/foundation.h"
#include "quorvel/net.h"

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
    int free_descriptor = OpenSocket();
    EXPECT_EQ(fcntl(free_descriptor, F_GETFD), FD_CLOEXEC);
    close(free_descriptor);
    for (const auto& row : rows) {
        EXPECT_TRUE(row.get("eth0") == row.eth0 && row.get("eth1") == row.eth1) << row.function;
        EXPECT_EQ(complaint_of([&] { EXPECT_EQ(row.get("x") + row.get(nullptr), -2); }), row.request + no_device);
        EXPECT_EQ(complaint_of([&] { EXPECT_EQ(row.get("eth0"), -1); }, 0), row.function + no_room);
    }
    EXPECT_EQ(complaint_of(OpenSocket, 0), "socket fail: Too many open files\n");
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
    EXPECT_EQ(Netdev_GetIfIndex("bridge_with_a_long_name"), 70) << "cut to the same name";
}

TEST_F(NetTest, EthernetReport) {
    play("net/expected/ethernet-report", LibQuorvelBin_EthInfo);
    struct eth_info info = {};
    EXPECT_EQ(read_eth_info(&info, "eth3") + read_eth_info(&info, "eth4"), -24);
}
