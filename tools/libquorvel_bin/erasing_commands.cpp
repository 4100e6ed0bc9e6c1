#include "erasing_commands.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include "command.h"
#include "disk/data_partition_size.h"
#include "disk/partition_layouts.h"
#include "disk_guard.h"
#include "foundation/look.h"
#include "held_signals.h"
#include "libquorvel_bin.h"
#include "telling.h"

using namespace quorvel;

namespace {

// One layout on one disk, as the words ask for it.
struct Request {
    int32_t kind;  // of disk: DISK_PATH_INTERNAL or DISK_PATH_USB
    bool short_layout;
    bool force = false;
    bool dry_run = false;
    const char* device = nullptr;
    const char* filesystem = nullptr;
    const char* label = nullptr;
};

// Options stand first. False for a wrong call, which is told.
[[nodiscard]] bool read_words(int argc, char** argv, Request& request) {
    int i = 2;
    for (; i < argc; i++) {
        if (strcmp(argv[i], "--force") == 0) {
            request.force = true;
        } else if (strcmp(argv[i], "--dry-run") == 0) {
            request.dry_run = true;
        } else {
            break;
        }
    }
    const int most = request.kind == DISK_PATH_USB ? 3 : 1;
    const char** const words[] = {&request.device, &request.filesystem, &request.label};
    for (int n = 0; n < most && i < argc; n++, i++)
        *words[n] = argv[i];
    if (i == argc && request.device != nullptr && strncmp(request.device, "--", 2) != 0) return true;
    fprintf(stderr, "%s: [--force] [--dry-run] DEVICE%s\n", argv[1], most > 1 ? " [FILESYSTEM [LABEL]]" : "");
    return false;
}

bool is_refused_size(const Request& request, const char* node, Reason& reason) {
    const uint64_t blocks = GetPartitionBlocks(node);
    if (blocks == 0) reason.append("%s has no size in /proc/partitions", node);
    if (blocks == 0 || request.kind == DISK_PATH_USB) return blocks == 0;
    const uint64_t capacity = gigabytes_of(blocks);
    const bool refused = layout_refuses(capacity, request.short_layout);
    if (!refused && layout_has_room(blocks, request.short_layout)) return false;
    reason.append("%s has %llu GB, %s", node, static_cast<unsigned long long>(capacity),
                  refused ? "which the layout refuses behind its first steps" : "where the layout has no room");
    return true;
}

bool stands_in_the_way(const Request& request, const Disk& disk, Reason& reason) {
    return is_in_use(disk, reason) || is_claimed(disk, request.kind, reason) ||
           is_refused_size(request, disk.node, reason);
}

// What is there but can hold no partitions: a pipe would keep dd waiting, which no signal ends here.
bool is_no_disk(const char* path) {
    struct stat status;
    return read_status(path, status) && !S_ISBLK(status.st_mode) && !S_ISREG(status.st_mode);
}

// ---- The plan ----

void print_steps(std::span<const Step> steps, const char* node) {
    for (const Step& step : steps)
        puts(command_of(step, node).c_str());
}

void print_plan(const Request& request, const char* node) {
    const uint64_t blocks = GetPartitionBlocks(node);
    if (request.kind == DISK_PATH_USB) {
        const bool gpt = is_gpt_word(request.label);
        print_steps(usb_label_steps(gpt), node);
        puts(usb_partition_command(node, blocks, request.filesystem, gpt).c_str());
        return;
    }
    print_steps(kSystemPartitions, node);
    puts(data_partition_command(node, data_gigabytes(gigabytes_of(blocks), request.short_layout)).c_str());
    print_steps(kBootFlag, node);
}

// ---- The work ----

[[nodiscard]] int refuse(const char* word, const Reason& reason, const char* remark) {
    fprintf(stderr, "%s: refused: %s%s\n", word, reason.c_str(), remark);
    return kExitRefused;
}

// fdisk ends with 0 whatever it makes of its keystrokes.
bool has_first_partition(const Descriptor& disk) {
    constexpr off_t kTable = 446;
    constexpr size_t kType = 4, kMark = 64;
    unsigned char table[kMark + 2];
    return pread(disk.number, table, sizeof table, kTable) == sizeof table && table[kType] != 0 &&
           table[kMark] == 0x55 && table[kMark + 1] == 0xaa;
}

// Two at once would mix their steps, and each take the other's partitions for its own.
[[nodiscard]] int lay_out(const char* word, const Request& request, const Disk& disk, const char* node) {
    Descriptor turn;
    Reason reason;
    // Whoever had it before may have put it to use.
    if (is_taken(node, turn, reason) || (!request.force && stands_in_the_way(request, disk, reason)))
        return refuse(word, reason, "");
    // A tool that locks the disk as well would wait for the lock that is held here.
    (void)unsetenv("LOCK_BLOCK_DEVICE");
    hold_signals();
    if (request.kind == DISK_PATH_USB) {
        const int result = create_usb_partition(node, request.filesystem, request.label);
        if (result == 0 && turn && !is_gpt_word(request.label) && !has_first_partition(turn))
            return no_answer(word, node, "no partition was made: the echo of /bin/sh must know \"-e\"");
        return exit_status_of_result(result);
    }
    return exit_status_of_result(request.short_layout ? create_short_partition(node) : create_partition(node));
}

[[nodiscard]] int run_request(int argc, char** argv, Request request) {
    if (!read_words(argc, argv, request)) return kExitUsage;
    Disk disk;
    Reason reason;
    const bool found = find_disk(request.device, disk, reason);
    const bool overridable = !is_no_disk(request.device);
    const bool refused = (!found || stands_in_the_way(request, disk, reason)) && !(request.force && overridable);
    // Links may be laid anew in the meantime, the kernel's own name may not.
    const char* node = found ? disk.node : request.device;
    const int status = refused ? refuse(argv[1], reason, overridable ? " (--force overrides)" : "") : kExitOk;
    if (refused && (!found || !request.dry_run)) return status;
    if (!request.dry_run) return lay_out(argv[1], request, disk, node);
    if (found) describe_disk(disk);
    print_plan(request, node);
    return status;
}

}  // namespace

int run_create_partition(int argc, char** argv) {
    return run_request(argc, argv, {.kind = DISK_PATH_INTERNAL, .short_layout = false});
}

int run_create_short_partition(int argc, char** argv) {
    return run_request(argc, argv, {.kind = DISK_PATH_INTERNAL, .short_layout = true});
}

int run_create_usb_partition(int argc, char** argv) {
    return run_request(argc, argv, {.kind = DISK_PATH_USB, .short_layout = false});
}
