// Which interfaces exist, and what the settings say of them.
#include "quorvel/net.h"
#include "support/appliance.h"

using SettingsTest = ApplianceTest;

// clang-format off
TEST_F(SettingsTest, NamesAndNumbers) {
    EXPECT_EQ(LibQuorvelBin_GetNetIfNum() + LibQuorvelBin_IsExistNetIf("eth0"), 0);
    for (const char* name : {"lo", "eth0", "wdev12ap3"})
        make_link(std::string("/sys/class/net/") + name, "../../devices/virtual/net/none");
    EXPECT_EQ(LibQuorvelBin_GetNetIfNum(), 3);
    const struct { const char* name; int exists, index; } rows[] = {
        {"eth0", 1, 0}, {"wdev12ap3", 1, 12}, {"lo", 1, -1},  {"eth", 0, -1}, {"eth01", 0, 1},  {"ETH0", 0, 0},
        {".", 0, -1},   {"..", 0, -1},        {"", 0, -1},    {"lo/", 0, -1}, {"eth-2x", 0, 2}, {nullptr, 0, -1},
        {"99999999999", 0, 2147483647}};
    for (auto [name, exists, index] : rows) {
        EXPECT_EQ(LibQuorvelBin_IsExistNetIf(name), exists) << testing::PrintToString(name);
        EXPECT_EQ(LibQuorvelBin_GetInterfaceIndex(name), index) << testing::PrintToString(name);
    }
}

TEST_F(SettingsTest, Bonding) {
    const auto bonding = [](const char* settings) {
        write_file("/etc/tevra/info", settings);
        return LibQuorvelBin_IsBondingMode();
    };
    EXPECT_EQ(bonding("enet_port_trunk_group_1_members=eth0 eth1\n"), 1);
    EXPECT_EQ(bonding("enet_port_trunk_group_1_members=\nenet_port_trunk_group_2_members=eth2\n"), 1);
    EXPECT_EQ(bonding("enet_port_trunk_group_2_members=\nenet_port_trunk_group_3_members=eth2\n"), 0);
}

TEST_F(SettingsTest, EnabledAndDhcp) {
    write_file("/etc/tevra/info",
               "enet_port_1_enabled=off\nenet_port_1_ip_address=dhcp\n"
               "enet_port_2_enabled=onboard\nenet_port_2_ip_address=192.168.11.150\n"
               "enet_port_3_enabled=ON\nenet_port_3_ip_address=DHCP\n"
               "enet_port_trunk_group_1_members=eth7 eth1\nenet_port_eth7_enabled=on\nenet_port_eth7_ip_address=dhcp6\n"
               "enet_port_trunk_group_2_members=on,dhcp\n"
               "enet_port_256_enabled=on\nenet_port_trunk_group_256_members=eth9\nenet_port_eth9_ip_address=dhcp\n");
    // clang-format on
    const std::string function = "LibQuorvelBin_IsNetIfDhcp";
    for (const auto& [ifname, enabled, dhcp, expected] : table<4>("net/expected/enabled-and-dhcp")) {
        EXPECT_EQ(std::to_string(LibQuorvelBin_IsNetIfEnabled(ifname.c_str())), enabled) << ifname;
        std::string trace = printed_by([name = ifname.c_str(), result = dhcp] {
            EXPECT_EQ(std::to_string(LibQuorvelBin_IsNetIfDhcp(name)), result) << name;
        });
        for (size_t at; (at = trace.find(function)) != std::string::npos;)
            trace.replace(at, function.size(), "@");
        EXPECT_EQ(trace, expected) << ifname;
    }
}
