/* interfaces: address and mask of each of the ten known interfaces */
#include <net/if.h>
#include <netinet/in.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#include "floor.h"

static char answer[2048];
static size_t used;

static void put(const char *text) {
    size_t length = strlen(text);
    memcpy(answer + used, text, length);
    used += length;
}

static void put_address(const char *label, const struct sockaddr *address) {
    const unsigned char *octet = (const unsigned char *)&((const struct sockaddr_in *)address)->sin_addr;
    put(label);
    for (int i = 0; i < 4; i++) {
        if (octet[i] > 99) answer[used++] = (char)('0' + octet[i] / 100);
        if (octet[i] > 9) answer[used++] = (char)('0' + octet[i] / 10 % 10);
        answer[used++] = (char)('0' + octet[i] % 10);
        answer[used++] = i < 3 ? '.' : '\n';
    }
}

int main(void) {
    static const char names[][10] = {"eth0", "eth1", "eth2", "eth3", "br0", "br1", "wdev0", "wdev0ap0", "wdev1", "wdev1ap0"};
    int fd = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    for (size_t i = 0; i < sizeof names / sizeof *names; i++) {
        struct ifreq address = {0}, mask = {0};
        strcpy(address.ifr_name, names[i]);
        strcpy(mask.ifr_name, names[i]);
        if (ioctl(fd, SIOCGIFADDR, &address) != 0 || ioctl(fd, SIOCGIFNETMASK, &mask) != 0) continue;
        put("if_name  :");
        put(names[i]);
        put("\n");
        put_address("ip       :", &address.ifr_addr);
        put_address("mask     :", &mask.ifr_addr);
    }
    floor_put(answer, used);
    return 0;
}
