// The interface report: one KEY_IFNAME=VALUE line for each question.
#include <stdio.h>
#include <string.h>

#include "foundation/mac_text.h"
#include "quorvel/net.h"

using namespace quorvel;

namespace {

using Value = MacText;  // the longest of them

void print_line(const char* key, const char* ifname, const Value& value) {
    printf("%s_%s=%s\n", key, ifname, value.c_str());
}

Value error() {
    return Value("error");
}

Value hardware_address(const char* ifname) {
    uint8_t mac[6];
    if (Netdev_GetHwAddr(ifname, mac) != 0) return error();
    Value text;
    add_mac_text(text, mac, Letters::capital);
    return text;
}

Value dotted(int (*get)(const char*, uint32_t*), const char* ifname) {
    uint32_t address;
    if (get(ifname, &address) != 0) return error();
    uint8_t octets[sizeof address];
    memcpy(octets, &address, sizeof octets);
    return Value("%u.%u.%u.%u", octets[0], octets[1], octets[2], octets[3]);
}

}  // namespace

int getifinfo(const char* ifname) {
    if (ifname == nullptr) return 0;
    print_line("MACADRS", ifname, hardware_address(ifname));
    print_line("IPADDRS", ifname, dotted(Netdev_GetIpAddr, ifname));
    print_line("BCAST", ifname, dotted(Netdev_GetBroadAddr, ifname));
    print_line("NETMASK", ifname, dotted(Netdev_GetNetmask, ifname));
    int mtu = Netdev_GetMtu(ifname);
    print_line("MTU", ifname, mtu < 1 ? error() : Value("%d", mtu));
    int flags = Netdev_GetFlags(ifname);
    print_line("FLAG", ifname, flags < 0 ? error() : Value("0x%x", static_cast<unsigned>(flags)));
    int index = Netdev_GetIfIndex(ifname);
    print_line("IFINDEX", ifname, index < 0 ? error() : Value("%d", index));
    return 0;
}
