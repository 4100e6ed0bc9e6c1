// The facts of the Ethernet report, read without printing them.
#pragma once

#include "quorvel/api.h"

QUORVEL_BEGIN_DECLS

struct eth_info {
    char mac[18];
    int link;    // Mb/s; 0 when unknown
    int duplex;  // 1 full, 0 otherwise
    int mtu;
};

/// Fills a cleared record from /sys/class/net/NAME and the driver; what cannot be read stays as it was. 0, also when
/// the driver could not be asked; -17 when there is no such directory; -12 when its file address or mtu is empty.
/// Failure lines are printed when from_cmdline is set.
[[nodiscard]] int read_eth_info(struct eth_info* info, const char* ifname);

QUORVEL_END_DECLS
