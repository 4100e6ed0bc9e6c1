// What every interface ioctl starts from: a socket and a request that names the interface.
#pragma once

#include <net/if.h>

#include "foundation/handles.h"

namespace quorvel {

/// An AF_INET datagram socket, close-on-exec; `errno` tells why there is none.
Descriptor interface_socket();

/// A cleared request that names an interface; a name that does not fit is cut.
struct ifreq request_for(const char* ifname);

}  // namespace quorvel
