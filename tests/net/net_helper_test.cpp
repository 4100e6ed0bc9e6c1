// Address arithmetic and the net helper command.
#include "net/network.h"
#include "quorvel/foundation.h"
#include "quorvel/net.h"

TEST_F(NetTest, NetHelper) {
    ip("link add br1 type bridge");
    ip("address add 10.9.0.1/32 dev br1");
    play("net/expected/net-helper", LibQuorvelBin_NetHelper);
    debug = 0;
    EXPECT_EQ(call(LibQuorvelBin_NetHelper, words_of("x net -d -h")).result, 0);
    EXPECT_EQ(debug, 1);
    debug = 0;
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
