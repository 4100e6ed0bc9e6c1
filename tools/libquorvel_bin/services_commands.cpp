#include <errno.h>
#include <getopt.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include <algorithm>
#include <string_view>

#include "foundation/look.h"
#include "libquorvel_bin.h"
#include "telling.h"

namespace {

// The entry points of the services count from the command word on.
int run_iscsi(int argc, char** argv) {
    return LibQuorvelBin_iSCSIHelper(argc - 1, argv + 1) == -1 ? kExitNo : kExitOk;
}

// ---- Firewall ----

constexpr char kDefaultPorts[] = "/etc/tevra/service_ports";

constexpr struct option kFirewallOptions[] = {
    {"start",      no_argument,       nullptr, 's'},
    {"restart",    no_argument,       nullptr, 's'},
    {"stop",       no_argument,       nullptr, 'p'},
    {"config",     required_argument, nullptr, 'f'},
    {"def_config", no_argument,       nullptr, 'o'},
    {"ports_list", no_argument,       nullptr, 'o'},
    {"version",    no_argument,       nullptr, 'o'},
    {"help",       no_argument,       nullptr, 'h'},
    {nullptr,      0,                 nullptr, 0  },
};

// What a call of the firewall asks for, told by the letters above; the last of start and stop counts, and the first of
// those that only print or write a file.
struct FirewallCall {
    int operation = 0;
    const char* ports_file = nullptr;
    const char* unknown = nullptr;
};

FirewallCall read_firewall_call(int argc, char** argv) {
    FirewallCall call;
    opterr = 0;
    for (int letter; (letter = getopt_long(argc, argv, "hvc:", kFirewallOptions, nullptr)) != -1;) {
        if (letter == 'f') call.ports_file = optarg;
        if (letter == 'f' || letter == 'c') continue;
        call.operation = letter == 'v' ? 'o' : letter;
        if (letter == '?') call.unknown = argv[optind - 1];
        if (strchr("ohv?", letter) != nullptr) break;
    }
    optind = 0;
    opterr = 1;
    return call;
}

bool is_on_path(const char* program) {
    const char* path = getenv("PATH");
    for (std::string_view rest = path != nullptr ? path : ""; !rest.empty();) {
        size_t length = std::min(rest.find(':'), rest.size());
        char file[4096];
        snprintf(file, sizeof file, "%.*s/%s", static_cast<int>(length), rest.data(), program);
        if (access(file, X_OK) == 0) return true;
        rest.remove_prefix(std::min(length + 1, rest.size()));
    }
    return false;
}

// Says what keeps a start or stop from doing what was asked, and whether it keeps all of it.
[[nodiscard]] bool can_filter(const FirewallCall& call, char** argv) {
    const char* program = "iptables";
    if (!is_on_path(program))
        return no_answer(argv[1], program, "no such program on PATH: no rule is changed") == kExitOk;
    if (call.operation != 's') return true;
    // The library chooses by the same question, which waits for no program that answers for a file.
    const char* file = call.ports_file;
    if (file != nullptr && IsFileExist(file) == 1) return true;
    if (file != nullptr)
        (void)no_answer(argv[1], file, quorvel::path_exists_in_time(file) ? "no regular file" : strerror(errno));
    if (IsFileExist(kDefaultPorts) == 1) return true;
    return no_answer(argv[1], kDefaultPorts, "not to be read: nothing is kept off any port") == kExitOk;
}

[[nodiscard]] int wrong_firewall_call(char** argv, const char* option, const char* fault) {
    (void)no_answer(argv[1], option, fault);
    return kExitUsage;
}

int run_firewall(int argc, char** argv) {
    FirewallCall call = read_firewall_call(argc - 1, argv + 1);
    if (call.unknown != nullptr)
        return wrong_firewall_call(argv, call.unknown, "unknown option, or without its argument");
    if (call.operation == 0 && argc > 2) return wrong_firewall_call(argv, nullptr, "no option that says what to do");
    bool filters = call.operation == 's' || call.operation == 'p';
    int able = !filters || can_filter(call, argv) ? kExitOk : kExitNo;
    errno = 0;
    int result = LibQuorvelBin_FirewallEntry(argc - 1, argv + 1);
    if (filters && errno == EIO) able = kExitNo;
    return call.operation == 'h' ? kExitOk : std::max(able, exit_status_of_result(result));
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
    {"iscsi",      "SUBCOMMAND [NUMBER]",     "iSCSI sessions, volumes and target ids",             "0 answered, 1 no such target id, 2 wrong sub-command", 0, -1, run_iscsi},
    {"firewall",   "OPTION...",               "keep services off network ports",                    "0 done, 1 no option, iptables missing or failed, no ports file, or default file not written, 2 wrong option", 0, -1, run_firewall},
    {"backup",     "SUBCOMMAND [TASK [PAIR]]", "settings and rsync addresses of a backup task",     "0 done or usage asked for, 2 wrong sub-command",   0, -1, run_backup},
    {"url_encode", "TEXT",                    "print a text percent-encoded",                       "0 done, 1 no memory",                             1,  1, run_url_encode},
};
// clang-format on

}  // namespace

const std::span<const Command> kServicesCommands = kCommands;
