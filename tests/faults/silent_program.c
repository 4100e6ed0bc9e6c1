/* Mounts file systems at the given places whose program, this one, never answers, and becomes the command behind "--". */
#include <fcntl.h>
#include <stdio.h>
#include <string.h>
#include <sys/mount.h>
#include <unistd.h>

static int mount_silent(const char* place) {
    char options[128];
    int device = open("/dev/fuse", O_RDWR);
    snprintf(options, sizeof options, "fd=%d,rootmode=40000,user_id=0,group_id=0,allow_other", device);
    return device < 0 ? -1 : mount("/dev/md2", place, "fuse", MS_NOSUID | MS_NODEV, options);
}

int main(int argc, char** argv) {
    int i = 1;
    for (; i < argc && strcmp(argv[i], "--") != 0; i++) {
        if (mount_silent(argv[i]) == 0) continue;
        perror(argv[i]);
        return 77;
    }
    if (i + 1 >= argc) return 2;
    execvp(argv[i + 1], argv + i + 1);
    return 1;
}
