// The interface report: one KEY_IFNAME=VALUE line for each question.
#include <arpa/inet.h>
#include <stdio.h>

#include "quorvel/net.h"

namespace {

void print_error(const char* key, const char* ifname) {
    printf("%s_%s=error\n", key, ifname);
}

void print_address(const char* key, const char* ifname, int (*get)(const char*, uint32_t*)) {
    struct in_addr address;
    if (get(ifname, &address.s_addr) != 0) return print_error(key, ifname);
    printf("%s_%s=%s\n", key, ifname, inet_ntoa(address));
}

}  // namespace

int getifinfo(const char* ifname) {
    if (ifname == nullptr) return 0;

    uint8_t mac[6];
    if (Netdev_GetHwAddr(ifname, mac) != 0) {
        print_error("MACADRS", ifname);
    } else {
        printf("MACADRS_%s=%02X:%02X:%02X:%02X:%02X:%02X\n", ifname, mac[0], mac[1], mac[2], mac[3], mac[4], mac[5]);
    }

    print_address("IPADDRS", ifname, Netdev_GetIpAddr);
    print_address("BCAST", ifname, Netdev_GetBroadAddr);
    print_address("NETMASK", ifname, Netdev_GetNetmask);

    int mtu = Netdev_GetMtu(ifname);
    mtu < 1 ? print_error("MTU", ifname) : (void)printf("MTU_%s=%d\n", ifname, mtu);
    int flags = Netdev_GetFlags(ifname);
    flags < 0 ? print_error("FLAG", ifname) : (void)printf("FLAG_%s=0x%x\n", ifname, static_cast<unsigned>(flags));
    int index = Netdev_GetIfIndex(ifname);
    index < 0 ? print_error("IFINDEX", ifname) : (void)printf("IFINDEX_%s=%d\n", ifname, index);
    return 0;
}
