// Address arithmetic and the net helper command.
#include "net/network.h"
#include "quorvel/foundation.h"
#include "quorvel/net.h"

TEST_F(NetTest, NetHelper) {
    ip("link add br1 type bridge");
    ip("address add 10.9.0.1/32 dev br1");
    for (const auto& [level, line, result, output] : table<4>("net/expected/net-helper")) {
        debug = std::stoi(level);
        expect_answer(LibQuorvelBin_NetHelper, line, std::stoi(result), output);
    }
    debug = 0;
    char word[] = "net", help[] = "-h";
    char* argv[] = {word, word, help};
    std::string usage = printed_by([&] { EXPECT_EQ(LibQuorvelBin_NetHelper(3, argv), 0); });
    EXPECT_TRUE(usage.starts_with("Quorvel net_helper command\nVersion 1.00\n\n    -i : ")) << usage;
    EXPECT_TRUE(
        usage.ends_with("below\n         eth0, eth1, eth2, eth3, br0, br1, wdev0, wdev0ap0, wdev1, wdev1ap0\n"));
}

TEST_F(NetTest, Records) {
    struct host_info info;
    memset(&info, 'x', sizeof info);
    EXPECT_EQ(printed_by([&] { LibQuorvelBin_PrintNetInfo(&info, 2); }), std::string(32, 'x') + "\n");
    EXPECT_EQ(LibQuorvelBin_FillInfo(&info, "br0"), -1);
    EXPECT_EQ(std::string(info.if_name, 96) + info.hostname[127], "br0" + std::string(93, '\0') + "x");
    EXPECT_EQ(LibQuorvelBin_GetIpInfo("eth0", &info.ip) + LibQuorvelBin_GetNetmask("eth0", &info.mask), 0);
    EXPECT_EQ(memcmp(info.ip.u_ip, "\xc0\xa8\x0b\x96", 4) | memcmp(info.mask.u_ip, "\xff\xff\xfc\0", 4), 0);
}
