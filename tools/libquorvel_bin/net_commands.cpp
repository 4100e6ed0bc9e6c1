#include <arpa/inet.h>
#include <limits.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "foundation/text.h"
#include "libquorvel_bin.h"
#include "mac_file_commands.h"
#include "telling.h"

namespace {

// An interface's name is looked for below /sys/class/net: a path would lead elsewhere.
bool is_no_interface(char** argv) {
    if (argv[2] == nullptr || strchr(argv[2], '/') == nullptr) return false;
    (void)no_answer(argv[1], argv[2], "a path is no interface");
    return true;
}

int run_net(int argc, char** argv) {
    return exit_status_of_result(LibQuorvelBin_NetHelper(argc, argv));
}

int run_dns_reachable(int argc, char** argv) {
    if (LibQuorvelBin_IsDNSReachable(argc - 1, argv + 1) == 1) return kExitOk;
    return no_answer(argv[1], nullptr, reason_of_file("/etc/resolv.conf", "no name server answers"));
}

int run_get_dns(int, char** argv) {
    char server[129] = "";
    unsigned n = 0;
    if (!read_number(argv[1], argv[2], UINT_MAX, n)) return kExitUsage;
    if (LibQuorvelBin_GetDNS(n, argv[3], server) != 0) return no_answer(argv[1], argv[2], "no such name server");
    quorvel::print_foreign(server);
    putchar('\n');
    return kExitOk;
}

int run_nameif(int argc, char** argv) {
    return exit_status_of_result(LibQuorvelBin_Nameif(argc - 1, argv + 1));
}

int run_ethinfo(int argc, char** argv) {
    if (is_no_interface(argv)) return kExitNo;
    return exit_status_of_result(LibQuorvelBin_EthInfo(argc - 1, argv + 1));
}

int run_ifinfo(int, char** argv) {
    if (is_no_interface(argv)) return kExitNo;
    return exit_status_of_result(getifinfo(argv[2]));
}

int run_bonding(int, char**) {
    return print_predicate(LibQuorvelBin_IsBondingMode());
}

int run_netif_count(int, char**) {
    printf("%d\n", LibQuorvelBin_GetNetIfNum());
    return kExitOk;
}

int run_netif_exists(int, char** argv) {
    return print_predicate(is_no_interface(argv) ? 0 : LibQuorvelBin_IsExistNetIf(argv[2]));
}

int run_netif_index(int, char** argv) {
    int index = LibQuorvelBin_GetInterfaceIndex(argv[2]);
    printf("%d\n", index);
    return index != -1 ? kExitOk : kExitNo;
}

int run_netif_enabled(int, char** argv) {
    return print_predicate(LibQuorvelBin_IsNetIfEnabled(argv[2]));
}

int run_netif_dhcp(int, char** argv) {
    return print_predicate(LibQuorvelBin_IsNetIfDhcp(argv[2]));
}

int run_setip(int, char** argv) {
    uint32_t address;
    uint32_t netmask;
    if (inet_pton(AF_INET, argv[3], &address) != 1 || inet_pton(AF_INET, argv[4], &netmask) != 1) {
        fprintf(stderr, "setip: address and netmask are four numbers from 0 to 255 joined by dots\n");
        return kExitUsage;
    }
    return exit_status_of_result(Netdev_SetIpAddr(argv[2], address, netmask));
}

// clang-format off
constexpr Command kCommands[] = {
    {"net",              "[OPTION]...",          "print addresses of interfaces, or compute them (-h)", "0 printed, 1 no address or wrong option",      0, -1, run_net},
    {"dns_reachable",    "[-t SECONDS] [-r RETRIES]", "look for a name server that answers",            "0 one answers, 1 none",                        0, -1, run_dns_reachable},
    {"get_dns",          "N [resolver]",         "print the n-th name server; any second argument allows /etc/resolv.conf", "0 printed, 1 none, 2 no number", 1, 2,  run_get_dns},
    {"nameif",           "OLD NEW",              "rename an interface",                                 "0 done, 1 failed",                             2, 2,  run_nameif},
    {"ethinfo",          "[INTERFACE]",          "print MAC address, speed, duplex and MTU",            "0 printed, 1 missing interface",               0, 1,  run_ethinfo},
    {"ifinfo",           "INTERFACE",            "print what the kernel knows as KEY_INTERFACE=VALUE",  "0 printed, a missing value as error; 1 no name of an interface", 1, 1,  run_ifinfo},
    {"bonding",          "",                     "print 1 when Ethernet ports are bonded, else 0",      "0 bonded, 1 not",                              0, 0,  run_bonding},
    {"netif_count",      "",                     "print the number of interfaces",                      "0 always",                                     0, 0,  run_netif_count},
    {"netif_exists",     "INTERFACE",            "print 1 when the interface exists, else 0",           "0 exists, 1 does not",                         1, 1,  run_netif_exists},
    {"netif_index",      "INTERFACE",            "print the number in an interface name, or -1",        "0 printed, 1 the name has none",               1, 1,  run_netif_index},
    {"netif_enabled",    "INTERFACE",            "print 1 when the settings enable it, else 0",         "0 enabled, 1 not",                             1, 1,  run_netif_enabled},
    {"netif_dhcp",       "INTERFACE",            "trace, then print 1 when it uses DHCP, else 0",       "0 DHCP, 1 not",                                1, 1,  run_netif_dhcp},
    {"setip",            "INTERFACE ADDRESS NETMASK", "set address and netmask of an interface",        "0 done, 1 refused, 2 no such address",         3, 3,  run_setip},
    {"encrypt_mac_file", "INTERFACE FILE",       "encipher a file in place with the MAC address",       "0 done, 1 failed",                             2, 2,  run_encrypt_mac_file},
    {"decrypt_mac_file", "INTERFACE FILE",       "print a file enciphered with the MAC address",        "0 done, 1 failed",                             2, 2,  run_decrypt_mac_file},
};
// clang-format on

}  // namespace

const std::span<const Command> kNetCommands = kCommands;
