/* name_disk sdX...: the slot behind each kernel name on the 12-bay set, straight from its link */
#include "floor.h"

static int slot_of(const char *link) {
    const char *end_device = strstr(link, "/end_device-0:");
    const char *host = strstr(link, "/host");
    if (end_device != NULL) return end_device[14] - '0' + 1;
    if (host == NULL) return 0;
    switch (host[5]) {
        case '1': return 9;
        case '2': return 10;
        case '7': return 11;
        case '8': return 12;
        default: return 0;
    }
}

int main(int argc, char **argv) {
    static char answer[1024], link[512];
    size_t used = 0;
    struct stat status;
    (void)stat("/sys/class/borel", &status);
    floor_read("/proc/bus/pci/devices", floor_block, sizeof floor_block);
    floor_read("/etc/nas_feature", floor_block, sizeof floor_block);
    floor_read("/proc/sys/kernel/osrelease", floor_block, sizeof floor_block);
    floor_read("/etc/diskpath.conf", floor_block, sizeof floor_block);
    for (int i = 1; i < argc; i++) {
        char path[64] = "/sys/block/";
        ssize_t length = readlink(strcat(path, argv[i]), link, sizeof link - 1);
        if (length < 0) return 1;
        link[length] = '\0';
        int slot = slot_of(link);
        memcpy(answer + used, "disk", 4);
        used += 4;
        if (slot > 9) answer[used++] = '1';
        answer[used++] = (char)('0' + slot % 10);
        answer[used++] = '\n';
    }
    floor_put(answer, used);
    return 0;
}
