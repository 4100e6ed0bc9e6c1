// What every interface ioctl starts from: a socket and a request that names the interface.
#pragma once

#include <net/if.h>
#include <stdint.h>

#include "foundation/handles.h"

namespace quorvel {

/// An AF_INET datagram socket, close-on-exec; `errno` tells why there is none.
Descriptor interface_socket();

/// A cleared request that names an interface; a name that does not fit is cut.
struct ifreq request_for(const char* ifname);

/// Netdev_GetIpAddr, then Netdev_GetNetmask, over one socket. 0, or -1 at the first that fails.
int ask_address_and_netmask(const char* ifname, uint32_t* address, uint32_t* netmask);

}  // namespace quorvel
