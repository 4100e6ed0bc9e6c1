#include "surroundings.h"

#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <spawn.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <initializer_list>

#include "libquorvel_bin.h"

namespace {

constexpr char kCommandOutput[] = "/tmp/command_output";

struct Surrounding {
    const char* path;
    const char* text;
};

// A small 4-bay appliance: enough for every function to get past its first file.
constexpr Surrounding kAppliance[] = {
    {"/etc/nas_feature",
     "MAX_DISK_NUM=4\nMAX_ARRAY_NUM=2\nDEVICE_NETWORK_NUM=2\nSERIES_NAME=\"Ostrand\"\nDEVICE_HDD1_LINK=disk1_6\n"
     "DEVICE_MD1_REAL=md2\nSUPPORT_LVM=on\nMOUNT_LVM_BASE=/mnt\n"                                         },
    {"/etc/tevra/info",            "codepage=CP932\nmy_dns1=192.0.2.1\nenet_port_1_ip_address=192.0.2.2\n"},
    {"/etc/tevra/diskinfo",        "array1=raid5\ndisk1=array1\ndisk2=normal\nusb_disk1=LABSTICK1\n"      },
    {"/etc/tevra/iscsi_disks1",    "iscsi_device0_target=share\niscsi_device0_path_lun0=/dev/disk1\n"     },
    {"/etc/resolv.conf",           "nameserver 192.0.2.1\n"                                               },
    {"/proc/sys/kernel/osrelease", "3.4.69\n"                                                             },
    {"/proc/mounts",               "/dev/sda1 /mnt/disk1 ext3 rw 0 0\n"                                   },
    {"/dev/md2",                   ""                                                                     },
    {"/dev/disk1",                 ""                                                                     },
};

const FuzzTarget* chosen;
bool commands_run;
int commands_left = INT_MAX;

void free_records(list_links& head) {
    while (head.next != &head) {
        list_links* record = head.next;
        head.next = record->next;
        free(record);
    }
    head.prev = &head;
}

void choose_target(const char* name) {
    for (const FuzzTarget* row = kTargets; row->name != nullptr; row++) {
        if (strcmp(row->name, name) == 0) chosen = row;
    }
}

void make_link(const char* path, const char* target) {
    put_file(path, "", 0);
    (void)unlink(path);
    if (symlink(target, path) != 0) abort();
}

}  // namespace

void put_file(const char* path, const void* data, size_t size) {
    char directory[256];
    for (const char* slash = strchr(path + 1, '/'); slash != nullptr; slash = strchr(slash + 1, '/')) {
        snprintf(directory, sizeof directory, "%.*s", static_cast<int>(slash - path), path);
        (void)mkdir(directory, 0755);
    }
    int file = open(path, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0755);
    if (file < 0 || write(file, data, size) != static_cast<ssize_t>(size)) abort();
    close(file);
}

const FuzzTarget& chosen_target() {
    return *chosen;
}

void set_command_output(const void* data, size_t size) {
    put_file(kCommandOutput, data, size);
}

void run_commands() {
    commands_run = true;
}

void allow_commands(int count) {
    commands_left = count;
}

void forget_inventory() {
    for (list_links* group = pareinfo_list.next; group != &pareinfo_list; group = group->next) {
        free_records(reinterpret_cast<pareinfo*>(group)->members);
    }
    for (list_links* head : {&pareinfo_list, &arrayinfo_list, &diskinfo_list})
        free_records(*head);
}

// In the place of the C library's: whatever command is asked for, the output is the fuzzer's, unless commands run.
extern "C" int posix_spawn(pid_t* child, const char* path, const posix_spawn_file_actions_t* actions,
                           const posix_spawnattr_t* attributes, char* const* words, char* const* environment) {
    static const auto spawn = reinterpret_cast<decltype(&posix_spawn)>(dlsym(RTLD_NEXT, "posix_spawn"));
    if (commands_left == 0) return EAGAIN;
    commands_left--;
    if (commands_run) return spawn(child, path, actions, attributes, words, environment);
    char name[] = "cat";
    char output[sizeof kCommandOutput];
    memcpy(output, kCommandOutput, sizeof output);
    char* arguments[] = {name, output, nullptr};
    return spawn(child, "/bin/cat", actions, attributes, arguments, arguments + 2);
}

extern "C" int LLVMFuzzerInitialize(int* count, char*** arguments) {
    static constexpr char kTarget[] = "--target=";
    for (int i = 1; i < *count; i++) {
        const char* argument = (*arguments)[i];
        if (strncmp(argument, kTarget, strlen(kTarget)) == 0) choose_target(argument + strlen(kTarget));
    }
    if (chosen == nullptr) {
        fputs("no such target\n", stderr);
        exit(2);
    }
    if (access("/.disposable-root", F_OK) != 0) {
        fputs("fuzz targets run inside the disposable root only: scripts/fuzz\n", stderr);
        exit(2);
    }
    // With it a second process would make each look at a share's path, which takes a hundred times as long.
    (void)umount2("/dev/fuse", MNT_DETACH);
    (void)unlink("/dev/fuse");
    for (const Surrounding& file : kAppliance)
        put_file(file.path, file.text, strlen(file.text));
    make_link("/sys/block/sda", "../devices/pci0000:00/0000:00:1f.2/host0/target0:0:0/0:0:0:0/block/sda");
    make_link("/sys/block/sdb",
              "../devices/pci0000:00/0000:00:1d.7/usb1/1-1/1-1:1.0/host6/target6:0:0/6:0:0:0/block/sdb");
    set_command_output("", 0);
    (void)atexit([] { fprintf(stderr, "processor seconds: %ld\n", static_cast<long>(clock() / CLOCKS_PER_SEC)); });
    if (freopen("/dev/null", "w", stdout) == nullptr) abort();
    from_cmdline = 1;
    debug = 1000;
    opterr = 0;  // words without end about options would be most of a run
    return 0;
}
