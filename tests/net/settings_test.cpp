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
    for (const auto& [name, exists, index] : table<3>("net/expected/interface-names")) {
        EXPECT_EQ(LibQuorvelBin_IsExistNetIf(name.c_str()), std::stoi(exists)) << name;
        EXPECT_EQ(LibQuorvelBin_GetInterfaceIndex(name.c_str()), std::stoi(index)) << name;
    }
    EXPECT_EQ(LibQuorvelBin_IsExistNetIf(nullptr), 0);
    EXPECT_EQ(LibQuorvelBin_GetInterfaceIndex(nullptr), -1);
}

TEST_F(SettingsTest, Bonding) {
    for (const auto& [settings, bonding] : table<2>("net/expected/bonding")) {
        write_file("/etc/tevra/info", settings);
        EXPECT_EQ(LibQuorvelBin_IsBondingMode(), std::stoi(bonding)) << settings;
    }
}

TEST_F(SettingsTest, EnabledAndDhcp) {
    write_file("/etc/tevra/info",
               "enet_port_1_enabled=off\nenet_port_1_ip_address=dhcp\n"
               "enet_port_2_enabled=onboard\nenet_port_2_ip_address=192.168.11.150\n"
               "enet_port_3_enabled=ON\nenet_port_3_ip_address=DHCP\n"
               "enet_port_trunk_group_1_members=eth7\teth1\nenet_port_eth7_enabled=on\nenet_port_eth7_ip_address=dhcp6\n"
               "enet_port_trunk_group_2_members=on,dhcp\n"
               "enet_port_256_enabled=on\nenet_port_trunk_group_256_members=eth9 eth1\nenet_port_eth9_ip_address=dhcp\n");
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
