#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "command.h"
#include "libquorvel_bin.h"

namespace {

// The entry points of the services count from the command word on.
int run_iscsi(int argc, char** argv) {
    return LibQuorvelBin_iSCSIHelper(argc - 1, argv + 1) == -1 ? kExitNo : kExitOk;
}

int run_firewall(int argc, char** argv) {
    return exit_status_of_result(LibQuorvelBin_FirewallEntry(argc - 1, argv + 1));
}

int run_backup(int argc, char** argv) {
    return exit_status_of_result(LibQuorvelBin_BackupHelperEntry(argc - 1, argv + 1));
}

int run_url_encode(int, char** argv) {
    size_t size = 3 * strlen(argv[2]) + 1;
    char* encoded = static_cast<char*>(malloc(size));
    int result = LibQuorvelBin_URLEncode(encoded, argv[2], size);
    if (result == 0) puts(encoded);
    free(encoded);
    return exit_status_of_result(result);
}

// The library itself counts arguments and shows usages.
// clang-format off
constexpr Command kCommands[] = {
    {"iscsi",      "SUBCOMMAND [NUMBER]",     "iSCSI sessions, volumes and target ids",             "0 answered, 1 no such target id, or usage shown", 0, -1, run_iscsi},
    {"firewall",   "OPTION...",               "keep services off network ports",                    "0 done, 1 usage shown or default file not written", 0, -1, run_firewall},
    {"backup",     "SUBCOMMAND [TASK [PAIR]]", "settings and rsync addresses of a backup task",     "0 done or usage shown, 1 missing subcommand",     0, -1, run_backup},
    {"url_encode", "TEXT",                    "print a text percent-encoded",                       "0 done, 1 no memory",                             1,  1, run_url_encode},
};
// clang-format on

}  // namespace

const std::span<const Command> kServicesCommands = kCommands;
