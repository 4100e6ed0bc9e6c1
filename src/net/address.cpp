// Arithmetic on IPv4 quantities held as four octets in dotted order.
#include <string.h>

#include <bit>

#include "foundation/failure.h"
#include "foundation/numbers.h"
#include "foundation/text.h"
#include "foundation/trace.h"
#include "quorvel/net.h"

using namespace quorvel;

namespace {

[[nodiscard]] int take_octets(int (*get)(const char*, uint32_t*), const char* ifname, struct ip_record* record) {
    if (record == nullptr) return fail(EINVAL);
    uint32_t value = 0;
    if (get(ifname, &value) != 0) return -1;
    static_assert(sizeof value == sizeof record->u_ip);
    memcpy(record->u_ip, &value, sizeof value);
    return 0;
}

}  // namespace

int LibQuorvelBin_Init(struct host_info* info) {
    if (info == nullptr) return fail(EINVAL);
    info->ip = {};
    info->mask = {};
    info->net_addr = {};
    info->mask_size = 0;
    return 0;
}

int LibQuorvelBin_IpAtoU(struct ip_record* address) {
    if (address == nullptr) return fail(EINVAL);
    char text[sizeof address->sz_ip + 1];
    copy_text(text, sizeof text, std::string_view(address->sz_ip, strnlen(address->sz_ip, sizeof address->sz_ip)));
    const char* piece = text;
    for (int i = 0; i < 4; i++) {
        piece += strspn(piece, ".");
        if (*piece == '\0') return fail(EINVAL);
        // No range check: the low 8 bits are the octet.
        address->u_ip[i] = static_cast<uint8_t>(leading_number(piece));
        trace(kTrace, "u_ip[%d]=%u\n", i, address->u_ip[i]);
        piece += strcspn(piece, ".");
    }
    return 0;
}

int LibQuorvelBin_GetIpInfo(const char* ifname, struct ip_record* address) {
    return take_octets(Netdev_GetIpAddr, ifname, address);
}

int LibQuorvelBin_GetNetmask(const char* ifname, struct ip_record* netmask) {
    return take_octets(Netdev_GetNetmask, ifname, netmask);
}

int LibQuorvelBin_GetNetip(const struct ip_record* ip, const struct ip_record* mask, struct ip_record* net_addr) {
    if (ip == nullptr || mask == nullptr || net_addr == nullptr) return fail(EINVAL);
    for (size_t i = 0; i < sizeof net_addr->u_ip; i++)
        net_addr->u_ip[i] = ip->u_ip[i] & mask->u_ip[i];
    return 0;
}

unsigned int LibQuorvelBin_GetMaskSize(const struct ip_record* mask) {
    if (mask == nullptr) errno = EINVAL;
    unsigned int size = 0;
    for (int i = 0; mask != nullptr && i < 4; i++) {
        uint8_t octet = mask->u_ip[i];
        trace(kTrace, "%s:mask->u_ip[%d]=%u\n", __func__, i, octet);
        int ones = std::countl_one(octet);
        bool is_mask_octet = static_cast<uint8_t>(octet << ones) == 0;
        if (is_mask_octet) {
            trace(kTrace, "mask_size +%d\n", ones);
            size += static_cast<unsigned int>(ones);
            if (ones < 8) return size;
        }
        trace(kTrace, "mask_size=%u\n", size);
    }
    return size;
}
