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
    expect_answer(LibQuorvelBin_Nameif, "nameif br0", -1, "Argument is wrong!");
    expect_answer(LibQuorvelBin_Nameif, "nameif br0 eth0", -1, "Can't change if name\n");
    expect_answer(LibQuorvelBin_Nameif, "nameif br0 bridge_with_a_long_name", 0, "");
    EXPECT_EQ(Netdev_GetIfIndex("bridge_with_a_long_name"), 70) << "cut to the same name";
}

TEST_F(NetTest, EthernetReport) {
    constexpr auto entry = LibQuorvelBin_EthInfo;
    const std::string eth0 = "MAC=02:0b:7e:10:00:ab\nlink=10000\nduplex=full\njumboframe=enable\nmtu=1400\n";
    const std::string bare = "\nlink=0\nduplex=half\njumboframe=enable\nmtu=";
    const std::string no_device = "Specified device is not exist\n", no_file = "Failed to open /sys/class/net/eth5/";
    const auto show = [](const std::string& ifname, const char* mac, const char* mtu) {
        write_file("/sys/class/net/" + ifname + "/address", mac);
        write_file("/sys/class/net/" + ifname + "/mtu", mtu);
    };
    show("eth0", "02:0b:7e:10:00:ab\n", "1400\n");
    show("br0", "80:00:02:08:fe:80:00:00\n", "1500\n");  // without speed
    show("eth3", "", "1500\n");
    show("eth4", "0\n", "");
    make_directory("/sys/class/net/eth5");
    expect_answer(entry, "ethinfo eth0", 0, eth0);
    expect_answer(entry, "ethinfo br0", 0, "MAC=80:00:02:08:fe:80" + bare + "1500\n");
    expect_answer(entry, "ethinfo eth9", -1, "");
    expect_answer(entry, "ethinfo", 0, "wrong feature name\n");
    write_file("/etc/nas_feature", "DEVICE_NETWORK_NUM=1\n");
    expect_answer(entry, "ethinfo", 0, "\n");
    from_cmdline = 1;
    write_file("/etc/nas_feature", "DEVICE_NETWORK_NUM=3\n");
    expect_answer(entry, "ethinfo", -1,
                  "[eth0]\n" + eth0 + "\n" + no_device + "Failed to get eth information (eth1)\n");
    expect_answer(entry, "ethinfo eth3", -1, "");
    expect_answer(entry, "ethinfo eth5", 0,
                  no_file + "address\n" + no_file + "mtu\nFailed to ioctl\nMAC=" + bare + "0\n");
    expect_answer(entry, "e a b", -1, "Argument is wrong!\n\nUsage is below\n\ne <interface name>\nlike : e eth0\n");
    struct eth_info info = {};
    EXPECT_EQ(read_eth_info(&info, "eth3") + read_eth_info(&info, "eth4"), -24);
}
