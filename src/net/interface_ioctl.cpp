// What the kernel's interface ioctls answer about one interface, and the one setter.
#include <fcntl.h>
#include <netinet/in.h>
#include <stdio.h>
#include <string.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#include "foundation/failure.h"
#include "foundation/text.h"
#include "net/interface_request.h"
#include "quorvel/net.h"

using namespace quorvel;

namespace {

// Where in the answered request the result lies, and whether it is stored or returned.
enum class Result { hardware_address, address, map, number, flags };

struct Question {
    const char* function;
    const char* request_name;  // as the failure line spells it
    unsigned long request;
    Result result;
};

// clang-format off
constexpr Question kHwAddr    = {"Netdev_GetHwAddr",    "SIOCSIFHWADDR",  SIOCGIFHWADDR,  Result::hardware_address};
constexpr Question kIpAddr    = {"Netdev_GetIpAddr",    "SIOCGIFADDR",    SIOCGIFADDR,    Result::address};
constexpr Question kDstAddr   = {"Netdev_GetDstAddr",   "SIOCGIFDSTADDR", SIOCGIFDSTADDR, Result::address};
constexpr Question kNetmask   = {"Netdev_GetNetmask",   "SIOCGIFNETMASK", SIOCGIFNETMASK, Result::address};
constexpr Question kBroadAddr = {"Netdev_GetBroadAddr", "SIOCGIFBRDADDR", SIOCGIFBRDADDR, Result::address};
constexpr Question kMtu       = {"Netdev_GetMtu",       "SIOCGIFMTU",     SIOCGIFMTU,     Result::number};
constexpr Question kFlags     = {"Netdev_GetFlags",     "SIOCGIFFLAGS",   SIOCGIFFLAGS,   Result::flags};
constexpr Question kIfIndex   = {"Netdev_GetIfIndex",   "SIOCGIFINDEX",   SIOCGIFINDEX,   Result::number};
constexpr Question kMetric    = {"Netdev_GetMetric",    "SIOCGIFMETRIC",  SIOCGIFMETRIC,  Result::number};
constexpr Question kMap       = {"Netdev_GetMap",       "SIOCGIFMAP",     SIOCGIFMAP,     Result::map};
// clang-format on

// A failure line of the family, with the reason in errno, which stays; -1.
int complain(const char* what, const char* separator) {
    int reason = errno;
    fprintf(stderr, "%s%s%s\n", what, separator, strerror(reason));
    return fail(reason);
}

[[nodiscard]] Descriptor socket_for(const char* function) {
    Descriptor open_socket = interface_socket();
    if (!open_socket) complain(function, ":");
    return open_socket;
}

[[nodiscard]] int issue(const Descriptor& open_socket, unsigned long request_code, const char* request_name,
                        struct ifreq& request) {
    return ioctl(open_socket.number, request_code, &request) != -1 ? 0 : complain(request_name, " :");
}

struct sockaddr_in& ipv4_of(struct ifreq& request) {
    return reinterpret_cast<struct sockaddr_in&>(request.ifr_addr);
}

// Field by field: the kernel's record is as wide as the machine's pointers.
struct netdev_map narrow_map(const struct ifmap& map) {
    return {static_cast<uint32_t>(map.mem_start),
            static_cast<uint32_t>(map.mem_end),
            map.base_addr,
            map.irq,
            map.dma,
            map.port,
            {}};
}

[[nodiscard]] int take_result(Result result, struct ifreq& request, void* out) {
    switch (result) {
        case Result::hardware_address:
            memcpy(out, request.ifr_hwaddr.sa_data, 6);
            return 0;
        case Result::address:
            *static_cast<uint32_t*>(out) = ipv4_of(request).sin_addr.s_addr;
            return 0;
        case Result::map:
            *static_cast<struct netdev_map*>(out) = narrow_map(request.ifr_map);
            return 0;
        case Result::number:
            return request.ifr_mtu;  // MTU, index and metric lie in one place
        case Result::flags:
            break;
    }
    return request.ifr_flags;
}

[[nodiscard]] int ask(const Question& question, const char* ifname, void* out) {
    bool stores = question.result != Result::number && question.result != Result::flags;
    if (ifname == nullptr || (stores && out == nullptr)) return fail(EINVAL);
    Descriptor open_socket = socket_for(question.function);
    if (!open_socket) return -1;
    struct ifreq request = request_for(ifname);
    if (issue(open_socket, question.request, question.request_name, request) != 0) return -1;
    return take_result(question.result, request, out);
}

// Sets the address in a request, then the netmask in its place.
[[nodiscard]] int set_address(const Descriptor& open_socket, struct ifreq& request, uint32_t address,
                              uint32_t netmask) {
    ipv4_of(request).sin_family = AF_INET;
    ipv4_of(request).sin_addr.s_addr = address;
    if (issue(open_socket, SIOCSIFADDR, "SIOCSIFADDR", request) != 0) return -1;
    ipv4_of(request).sin_addr.s_addr = netmask;
    return issue(open_socket, SIOCSIFNETMASK, "SIOCSIFNETMASK", request);
}

}  // namespace

namespace quorvel {

Descriptor interface_socket() {
    Descriptor open_socket(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    if (open_socket || errno != EINVAL) return open_socket;
    // A kernel that does not know the flag takes it for another type of socket.
    open_socket = Descriptor(socket(AF_INET, SOCK_DGRAM, 0));
    if (open_socket) (void)fcntl(open_socket.number, F_SETFD, FD_CLOEXEC);
    return open_socket;
}

struct ifreq request_for(const char* ifname) {
    struct ifreq request = {};
    copy_text(request.ifr_name, sizeof request.ifr_name, ifname);
    return request;
}

}  // namespace quorvel

int Netdev_GetHwAddr(const char* ifname, uint8_t address[6]) {
    return ask(kHwAddr, ifname, address);
}
int Netdev_GetIpAddr(const char* ifname, uint32_t* address) {
    return ask(kIpAddr, ifname, address);
}
int Netdev_GetDstAddr(const char* ifname, uint32_t* address) {
    return ask(kDstAddr, ifname, address);
}
int Netdev_GetNetmask(const char* ifname, uint32_t* netmask) {
    return ask(kNetmask, ifname, netmask);
}
int Netdev_GetBroadAddr(const char* ifname, uint32_t* address) {
    return ask(kBroadAddr, ifname, address);
}
int Netdev_GetMtu(const char* ifname) {
    return ask(kMtu, ifname, nullptr);
}
int Netdev_GetFlags(const char* ifname) {
    return ask(kFlags, ifname, nullptr);
}
int Netdev_GetIfIndex(const char* ifname) {
    return ask(kIfIndex, ifname, nullptr);
}
int Netdev_GetMetric(const char* ifname) {
    return ask(kMetric, ifname, nullptr);
}
int Netdev_GetMap(const char* ifname, struct netdev_map* map) {
    return ask(kMap, ifname, map);
}

int Netdev_SetIpAddr(const char* ifname, uint32_t address, uint32_t netmask) {
    if (ifname == nullptr) return fail(EINVAL);
    Descriptor open_socket = socket_for(__func__);
    if (!open_socket) return -1;
    struct ifreq request = request_for(ifname);
    if (fits_request(ifname)) return set_address(open_socket, request, address, netmask);
    errno = ENODEV;
    return complain("SIOCSIFADDR", " :");
}

int OpenSocket(void) {
    Descriptor open_socket = interface_socket();
    if (open_socket) return open_socket.release();
    KeptErrno kept;
    perror("socket fail");
    return -1;
}

int getmac(void) {
    return fail(ENOSYS);
}
