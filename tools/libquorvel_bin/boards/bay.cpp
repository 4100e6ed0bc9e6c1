// bay: the name of a disk for the rules of udev, a line "QUORVEL_BAY=disk3". It is given only where it leads back to
// the disk, so that no two disks have one name; elsewhere a line in the system's log says why there is none.
#include <stdio.h>
#include <string.h>
#include <syslog.h>
#include <unistd.h>

#include "boards/answers.h"
#include "boards/boards_commands.h"
#include "libquorvel_bin.h"

using namespace quorvel;

namespace {

// A disk that goes meanwhile spoils the way back of every other; the next look is without it.
Answer settled_answer(const NamingSource& source, const BlockDisk& disk) {
    constexpr int kLooks = 4;
    constexpr useconds_t kPause = 50'000;
    Answer answer = answer_for(source, disk);
    for (int i = 1; i < kLooks && answer.name.length > 0 && answer.back.length == 0; i++) {
        usleep(kPause);
        answer = answer_for(source, disk);
    }
    return answer;
}

// A disk that no row describes is nothing to talk of.
void tell(const char* device, const Answer& answer) {
    bool undecided = answer.searches[0].undecided || answer.searches[1].undecided;
    if (!undecided && answer.name.length == 0) return;
    openlog("libquorvel_bin", 0, LOG_DAEMON);
    syslog(LOG_WARNING, "%s: no link below /dev/disk/by-bay: %s%s; see libquorvel_bin explain %s", device,
           undecided ? "a row cannot be decided" : "its name does not lead back to it: ", answer.name.c_str(), device);
    closelog();
}

}  // namespace

int run_bay(int, char** argv) {
    from_cmdline = 0;
    NamingSource source;
    BlockDisk disk;
    const char* device = without_dev_prefix(argv[2]);
    if (!is_disk_entry(device) || !find_block_disk(device, source.new_sysfs, disk)) return kExitNo;
    Answer answer = settled_answer(source, disk);
    if (answer.agrees) printf("QUORVEL_BAY=%s\n", answer.name.c_str());
    if (!answer.agrees) tell(device, answer);
    return answer.agrees ? kExitOk : kExitNo;
}
