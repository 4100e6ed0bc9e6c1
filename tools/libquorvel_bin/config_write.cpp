// config write: one setting, from the command line or from standard input. config delete: one setting.
#include <errno.h>
#include <stdio.h>
#include <string.h>
#include <unistd.h>

#include "foundation/files.h"
#include "held_signals.h"
#include "libquorvel_bin.h"
#include "registry_commands.h"
#include "settings.h"

namespace {

// The key is not repeated: it may hold what a terminal acts on.
[[nodiscard]] int refuse(const char* fault) {
    fprintf(stderr, "config write: %s; nothing was written\n", fault);
    return kExitRefused;
}

// One line, of which a line feed at the end is no part. A text that is too long stays too long; a NUL byte in it is
// seen by whoever looks at its length.
[[nodiscard]] bool read_value(char (&value)[kSettingText], std::string_view& read) {
    ssize_t length = quorvel::read_fully(STDIN_FILENO, value, sizeof value - 1);
    if (length < 0) return false;
    read = {value, static_cast<size_t>(length)};
    if (read.ends_with('\n')) read.remove_suffix(1);
    value[read.size()] = '\0';
    return true;
}

[[nodiscard]] int write_checked(char** argv, char* value, const Place& place) {
    char* words[] = {argv[0], argv[1], argv[2], argv[3], value, nullptr};
    hold_signals();
    if (LibQuorvelBin_ConfigHelper(5, words) != 0) return kExitNo;
    if (holds(place, value)) return kExitOk;
    fprintf(stderr, "config write: %s: not written; %s is as it was\n", argv[3], place.file);
    return kExitNo;
}

[[nodiscard]] int write_from_input(char** argv, const Place& place, char (&value)[kSettingText]) {
    std::string_view text;
    if (!read_value(value, text)) {
        fprintf(stderr, "config write: standard input: %s\n", strerror(errno));
        return kExitNo;
    }
    const char* fault = fault_of_value(place, text);
    return fault != nullptr ? refuse(fault) : write_checked(argv, value, place);
}

}  // namespace

int run_config_write(char** argv) {
    Place place;
    const char* fault = find_place(argv[3], place);
    if (fault != nullptr) return refuse(fault);
    if (strcmp(argv[4], "--stdin") != 0) {
        fault = fault_of_value(place, argv[4]);
        return fault != nullptr ? refuse(fault) : write_checked(argv, argv[4], place);
    }
    char value[kSettingText];
    int status = write_from_input(argv, place, value);
    explicit_bzero(value, sizeof value);
    return status;
}

int run_config_delete(char** argv) {
    hold_signals();
    if (LibQuorvelBin_ConfigHelper(4, argv) != 0) return kExitNo;
    Place place;
    // What no reader finds is not there.
    if (find_place(argv[3], place) != nullptr || holds(place, nullptr)) return kExitOk;
    fprintf(stderr, "config delete: %s: not removed; %s is as it was\n", argv[3], place.file);
    return kExitNo;
}
