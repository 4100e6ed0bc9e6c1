// Address arithmetic and the net helper command.
#include "net/network.h"
#include "quorvel/foundation.h"
#include "quorvel/net.h"

namespace {

std::string labelled(std::string name, std::string ip, std::string mask, std::string size, std::string network) {
    return "\nif_name  :" + name + "\nhostname :\nip       :" + ip + "\nmask     :" + mask + "\nmask_size:" + size +
           "\nnet_addr :" + network + "\n";
}

}  // namespace

// clang-format off
TEST_F(NetTest, NetHelper) {
    ip("link add br1 type bridge");
    ip("address add 10.9.0.1/32 dev br1");
    const auto eth0 = labelled("eth0", "192.168.11.150", "255.255.252.0", "22", "192.168.8.0");
    const auto eth1 = labelled("eth1", "10.20.30.40", "255.255.255.252", "30", "10.20.30.40");
    const struct { const char* line; int result; std::string output; } rows[] = {
        {"x net",                                          0, eth0 + eth1 + labelled("br1", "10.9.0.1", "255.255.255.255", "32", "10.9.0.1")},
        {"x net -o masks -i eth0",                         0, "255.255.252.0\n"},
        {"x net -o ip_addr -i eth0 -o net_addr",           0, "192.168.8.0\n"},
        {"x net -i br0",                                  -1, ""},
        {"x net -o ip_addr",                              -1, ""},
        {"x net -i eth0 -o mas -v",                       -1, "Invalid argument(mas)!!!\n"},
        {"x net -i eth0 -o mask -V -o y",                  0, "Version 1.00\n"},
        {"x net -i eth0 -x -v",                           -1, ""},
        {"x net a --i --option -i eth0 -o ip_addr b",      0, "192.168.11.150\n"},
        {"x net -c -I 192.168.11.12 -M 255.255.255.128",   0, labelled("", "192.168.11.12", "255.255.255.128", "25", "192.168.11.0")},
        {"x net -M 255.255.255.255 -o mask -I 1.2.3.4 -o mask_size -c",     0, "32\n"},
        {"x net -c -I 1.2.3.4 -M 255.0.255.255 -o mask_size",               0, "8\n"},
        {"x net -c -I 1.2.3.4 -M 255.3.255.0 -o mask_size",                 0, "16\n"},
        {"x net -c -I 1.2.3.4 -M 255.254.255.0 -o mask_size",               0, "15\n"},
        {"x net -c -I 300.-1.7x.256 -M 255.255.255.0 -o ip_address",        0, "44.255.7.0\n"},
        {"x net -c -I 1.2.3.9999999990 -M 255.255.255.0 -o ip_addr",        0, "1.2.3.255\n"},
        {"x net -c -I 1.2.3.4.5.6.7.89 -I .10..20.30.4 -M 0.0.0.0 -o ip_addr",0, "10.20.30.4\n"},
        {"x net -c -I 192.168.011.01299 -M 255.255.255.0 -o ip_addr",       0, "192.168.11.129\n"},
        {"x net -c -M 255.255.255.0",                                      -1, ""},
        {"x net -c -I 192.168.11 -M 255.255.255.0",                        -1, ""},
    };
    for (const auto& row : rows)
        expect_answer(LibQuorvelBin_NetHelper, row.line, row.result, row.output);
    char word[] = "net", help[] = "-h";
    char* argv[] = {word, word, help};
    std::string usage = printed_by([&] { EXPECT_EQ(LibQuorvelBin_NetHelper(3, argv), 0); });
    EXPECT_TRUE(usage.starts_with("Quorvel net_helper command\nVersion 1.00\n\n    -i : ")) << usage;
    EXPECT_TRUE(usage.ends_with("below\n         eth0, eth1, eth2, eth3, br0, br1, wdev0, wdev0ap0, wdev1, wdev1ap0\n"));
    debug = 10;
    const std::string octet = "LibQuorvelBin_GetMaskSize:mask->u_ip";
    expect_answer(LibQuorvelBin_NetHelper, "x net -c -I 1.2.3.4 -M 255.3.240.0 -o mask_size", 0,
        "Entering network addr calc mode\nhost_info.ip.sz_ip=1.2.3.4\nhost_info.mask.sz_ip=255.3.240.0\noptarg=mask_size\n"
        "u_ip[0]=1\nu_ip[1]=2\nu_ip[2]=3\nu_ip[3]=4\nu_ip[0]=255\nu_ip[1]=3\nu_ip[2]=240\nu_ip[3]=0\n" +
        octet + "[0]=255\nmask_size +8\nmask_size=8\n" + octet + "[1]=3\nmask_size=8\n" + octet + "[2]=240\nmask_size +4\n12\n");
}
// clang-format on

TEST_F(NetTest, Records) {
    struct host_info info;
    memset(&info, 'x', sizeof info);
    EXPECT_EQ(printed_by([&] { LibQuorvelBin_PrintNetInfo(&info, 2); }), std::string(32, 'x') + "\n");
    EXPECT_EQ(LibQuorvelBin_FillInfo(&info, "br0"), -1);
    EXPECT_EQ(std::string(info.if_name, 96) + info.hostname[127], "br0" + std::string(93, '\0') + "x");
    EXPECT_EQ(LibQuorvelBin_GetIpInfo("eth0", &info.ip) + LibQuorvelBin_GetNetmask("eth0", &info.mask), 0);
    EXPECT_EQ(memcmp(info.ip.u_ip, "\xc0\xa8\x0b\x96", 4) | memcmp(info.mask.u_ip, "\xff\xff\xfc\0", 4), 0);
}
