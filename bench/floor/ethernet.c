/* ethernet IF: MAC address, link speed, duplex and MTU */
#include <linux/ethtool.h>
#include <linux/sockios.h>
#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#include "floor.h"

static size_t put_file(char *to, const char *directory, const char *name) {
    char path[128];
    ssize_t length = floor_read(strcat(strcat(strcpy(path, directory), "/"), name), to, 64);
    return length > 0 ? (size_t)length : 0;
}

int main(int argc, char **argv) {
    char answer[256] = "MAC=", directory[64] = "/sys/class/net/";
    struct ethtool_cmd settings = {.cmd = ETHTOOL_GSET};
    struct ifreq request = {.ifr_data = (char *)&settings};
    size_t used = 4;
    if (argc != 2) return 1;
    strcat(directory, argv[1]);
    strncpy(request.ifr_name, argv[1], IFNAMSIZ - 1);
    used += put_file(answer + used, directory, "address");
    int fd = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    int full = ioctl(fd, SIOCETHTOOL, &request) == 0 && settings.duplex == 1;
    close(fd);
    const char *link = full ? "link=10000\nduplex=full\njumboframe=enable\nmtu=" : "link=0\nduplex=half\njumboframe=enable\nmtu=";
    strcpy(answer + used, link);
    used += strlen(link);
    used += put_file(answer + used, directory, "mtu");
    floor_put(answer, used);
    return 0;
}
