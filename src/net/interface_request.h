// What every interface ioctl starts from: a socket and a request that names the interface.
#pragma once

#include <net/if.h>
#include <string.h>

#include "foundation/files.h"
#include "foundation/handles.h"

namespace quorvel {

/// An AF_INET datagram socket, close-on-exec; `errno` tells why there is none.
[[nodiscard]] Descriptor interface_socket();

/// A cleared request that names an interface; a name that does not fit is cut.
[[nodiscard]] struct ifreq request_for(const char* ifname);

/// Whether a name fits into a request. What changes an interface refuses a longer one: its beginning may name another.
[[nodiscard]] inline bool fits_request(const char* ifname) {
    return strlen(ifname) < IFNAMSIZ;
}

/// Whether a name can be that of an interface's directory: a path would lead elsewhere.
[[nodiscard]] inline bool is_directory_name(const char* ifname) {
    return *ifname != '\0' && strchr(ifname, '/') == nullptr && !is_dot_entry(ifname);
}

}  // namespace quorvel
