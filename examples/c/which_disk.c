/* Prints the kernel device of every internal disk that is in its slot: "disk1 sda". */
#include <libquorvel_bin.h>
#include <stdio.h>

int main(void) {
    int slots = LibQuorvelBin_GetMaxDiskNum();
    for (int slot = 1; slot <= slots; slot++) {
        char disk[32], device[64] = "";
        snprintf(disk, sizeof disk, "disk%d", slot);
        if (LibQuorvelBin_GetDevnameFromDiskname(disk, device, sizeof device) == 0) printf("%s %s\n", disk, device);
    }
    return slots < 0; /* the model does not tell how many disks it takes */
}
