// Learning with a person at the terminal: by plugging, and by the lights of the disks.
#include <fcntl.h>
#include <linux/fs.h>
#include <poll.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include "boards/learn.h"
#include "foundation/clock.h"
#include "foundation/files.h"
#include "libquorvel_bin.h"

using namespace quorvel;

namespace {

// ---- The terminal ----

// Whether a line, or the end of them, is there to be read within a time.
bool is_line_waiting(int timeout) {
    struct pollfd input = {STDIN_FILENO, POLLIN, 0};
    return poll(&input, 1, timeout) > 0;
}

// Reads a line as it comes from the terminal; false at the end.
[[nodiscard]] bool read_answer(char* line, size_t size) {
    size_t length = 0;
    char c = '\0';
    while (read(STDIN_FILENO, &c, 1) == 1) {
        if (c == '\n') break;
        if (length + 1 < size) line[length++] = c;
        c = '\0';
    }
    line[length] = '\0';
    return length > 0 || c == '\n';
}

// ---- Plugging ----

struct Plugging {
    Proposal& proposal;
    int wait;
    AllDisks looks[2];
    int last = 0;  // which of them was the last one
};

// A disk that one look shows and the other does not.
const AllDisks::Disk* missing_in(const AllDisks& other, const AllDisks& in) {
    for (int i = 0; i < in.count; i++) {
        const AllDisks::Disk* same = other.find(in.disks[i].name.c_str());
        if (same == nullptr || strcmp(same->link(), in.disks[i].link()) != 0) return &in.disks[i];
    }
    return nullptr;
}

// A disk that is just going has lost its serial number already while it is still there.
void keep_serials(AllDisks& now, const AllDisks& before) {
    for (int i = 0; i < now.count; i++) {
        AllDisks::Disk& disk = now.disks[i];
        const AllDisks::Disk* same = before.find(disk.name.c_str());
        if (disk.serial.length == 0 && same != nullptr && strcmp(same->link(), disk.link()) == 0) {
            disk.serial = same->serial;
        }
    }
}

enum class Change { kNone, kBay, kOther };

// What a disk that came or went tells: its place is the bay, unless the place has one already.
[[nodiscard]] Change take_change(Plugging& plugging, const AllDisks::Disk& disk, const AllDisks& all, int32_t type,
                                 int slot, bool came) {
    printf("%s %s%s%s\n", disk.name.c_str(), came ? "came" : "went", disk.serial.length > 0 ? ", serial number " : "",
           disk.serial.c_str());
    if (plugging.proposal.find(place_of_disk(disk, all)) != nullptr) {
        if (came) puts("Its place has a bay already.");
        return Change::kOther;
    }
    return add_bay(plugging.proposal, type, slot, disk, all) ? Change::kBay : Change::kOther;
}

[[nodiscard]] Change see_change(Plugging& plugging, int32_t type, int slot) {
    const AllDisks& before = plugging.looks[plugging.last];
    plugging.last = 1 - plugging.last;
    AllDisks& now = plugging.looks[plugging.last];
    now.look();
    keep_serials(now, before);
    const AllDisks::Disk* came = missing_in(before, now);
    const AllDisks::Disk* went = missing_in(now, before);
    Change change = Change::kNone;
    if (went != nullptr) change = take_change(plugging, *went, before, type, slot, false);
    if (came != nullptr && change != Change::kBay) change = take_change(plugging, *came, now, type, slot, true);
    return change;
}

// Waits for a disk to come or go. An answer without one within the wait leaves the bay out.
[[nodiscard]] bool learn_bay(Plugging& plugging, int32_t type, int slot) {
    printf("%s: put a disk in, or pull it out, and press Enter; Enter alone leaves it out.\n",
           name_of_bay(type, slot).c_str());
    int64_t end = -1;
    for (int64_t told = 0; end < 0 || nanoseconds_now() < end;) {
        if (see_change(plugging, type, slot) == Change::kBay) {
            printf("This is %s.\n", name_of_bay(type, slot).c_str());
            return true;
        }
        char line[64];
        if (end >= 0) {
            usleep(200'000);
            int64_t left = (end - nanoseconds_now()) / kSecond;
            if (left != told && left > 0) printf("  waiting for a disk, %d s left\n", static_cast<int>(told = left));
        } else if (is_line_waiting(200)) {
            if (!read_answer(line, sizeof line)) return false;
            end = nanoseconds_now() + plugging.wait * kSecond;
        }
    }
    printf("No disk came or went: %s is left out.\n", name_of_bay(type, slot).c_str());
    return true;
}

// A line typed ahead, while the disk was seen without it, must not leave the next bay out.
void drop_typed_line() {
    char line[64];
    if (is_line_waiting(1500)) (void)read_answer(line, sizeof line);
}

[[nodiscard]] bool learn_bays(Plugging& plugging, int32_t type, int count) {
    for (int slot = 1; slot <= count; slot++) {
        int before = plugging.proposal.count;
        if (!learn_bay(plugging, type, slot)) return false;
        if (plugging.proposal.count > before) drop_typed_line();
    }
    return true;
}

int count_or(int asked, int setting) {
    if (asked >= 0) return asked;
    return setting > 0 ? setting : 0;
}

// ---- Blinking ----

struct Light {
    int descriptor;
    uint64_t size;
    void* block;
    uint64_t at = 0;
};

constexpr size_t kReadSize = 65536;

// A block somewhere else each time, so that the disk has to move.
void read_somewhere(Light& light) {
    light.at = (light.at * 6364136223846793005U + 1442695040888963407U);
    uint64_t blocks = light.size / kReadSize;
    off_t place = blocks > 0 ? static_cast<off_t>(light.at % blocks * kReadSize) : 0;
    if (pread(light.descriptor, light.block, kReadSize, place) < 0) usleep(50'000);
}

// Reads for as long as nothing is typed, and no longer than the wait.
void blink(const BlockDisk& disk, int wait) {
    Descriptor opened(open(Text<128>("/dev/%s", disk.name.c_str()).c_str(), O_RDONLY | O_DIRECT | O_CLOEXEC));
    Light light = {opened.number, 0, nullptr};
    if (!opened || ioctl(opened.number, BLKGETSIZE64, &light.size) != 0 ||
        posix_memalign(&light.block, 4096, kReadSize) != 0) {
        perror(disk.name.c_str());
        return;
    }
    int64_t end = nanoseconds_now() + wait * kSecond;
    while (nanoseconds_now() < end && !is_line_waiting(0))
        read_somewhere(light);
    free(light.block);
}

[[nodiscard]] bool ask_bay(Proposal& proposal, const AllDisks::Disk& disk, const AllDisks& all, int wait) {
    printf("%s, serial number %s: which bay's light works? (3, usbdisk1; Enter alone leaves it out)\n",
           disk.name.c_str(), disk.serial.c_str());
    for (;;) {
        char line[64];
        int32_t type = 0;
        int slot = 0;
        blink(disk, wait);
        if (!read_answer(line, sizeof line)) return false;
        if (line[0] == '\0') return true;
        if (read_bay(line, type, slot) && add_bay(proposal, type, slot, disk, all)) return true;
        puts("Once more: 3, disk3, usbdisk1 or bootdisk1, or Enter alone.");
    }
}

}  // namespace

bool learn_by_plugging(Proposal& proposal, const LearnOptions& options) {
    Plugging plugging = {proposal, options.wait, {}};
    return learn_bays(plugging, DISK_PATH_INTERNAL, count_or(options.bays, LibQuorvelBin_GetMaxDiskNum())) &&
           learn_bays(plugging, DISK_PATH_USB, count_or(options.ports, LibQuorvelBin_GetMaxUsbdiskNum()));
}

bool learn_by_blinking(Proposal& proposal, const AllDisks& all, const LearnOptions& options) {
    for (int i = 0; i < all.count; i++) {
        if (!ask_bay(proposal, all.disks[i], all, options.wait)) return false;
    }
    return true;
}
