// config apply: several settings at once, all of them or none.
#include <errno.h>
#include <stdio.h>
#include <string.h>
#include <unistd.h>

#include "held_signals.h"
#include "libquorvel_bin.h"
#include "registry_commands.h"
#include "settings_list.h"

namespace {

constexpr int kExitNotPutBack = 4;

struct Options {
    bool dry_run = false;
    bool add = false;
    const char* list = nullptr;
};

[[nodiscard]] bool read_options(int argc, char** argv, Options& options) {
    for (int i = 3; i < argc; i++) {
        if (strcmp(argv[i], "--dry-run") == 0) {
            options.dry_run = true;
        } else if (strcmp(argv[i], "--add") == 0) {
            options.add = true;
        } else if (options.list == nullptr && strncmp(argv[i], "--", 2) != 0) {
            options.list = argv[i];
        } else {
            return false;
        }
    }
    return options.list != nullptr;
}

bool changes_anything(const Change& change) {
    const char* old = change.old_value();
    return old == nullptr || change.value == nullptr || strcmp(old, change.value) != 0;
}

// What the library prints about a file that it could not write is no part of the answer, which is a list.
struct OutputToErrors {
    OutputToErrors() : output(dup(STDOUT_FILENO)) { (void)dup2(STDERR_FILENO, STDOUT_FILENO); }
    ~OutputToErrors() {
        (void)fflush(stdout);
        (void)dup2(output.number, STDOUT_FILENO);
    }
    OutputToErrors(const OutputToErrors&) = delete;
    OutputToErrors& operator=(const OutputToErrors&) = delete;

    quorvel::Descriptor output;
};

void print_entry(const char* mark, const Change& change, const char* value) {
    if (value != nullptr) printf("%s%s=%s\n", mark, change.key, value);
}

void print_difference(const SettingsList& list) {
    for (const Change& change : list) {
        if (!changes_anything(change)) continue;
        print_entry("< ", change, change.old_value());
        print_entry("> ", change, change.value);
    }
}

// A list that gives back what is there before it is applied. False when it could not be written to its end.
[[nodiscard]] bool print_former_values(const SettingsList& list) {
    for (const Change& change : list) {
        if (!changes_anything(change)) continue;
        print_entry("", change, change.old_value());
        if (!change.present) printf("-%s\n", change.key);
    }
    return fflush(stdout) == 0 && ferror(stdout) == 0;
}

// Everything up to the line that failed, which may have been written by half.
[[nodiscard]] int put_back(const SettingsList& list, const Change& failed) {
    int status = kExitNo;
    for (const Change& change : list) {
        if (!changes_anything(change) || &change > &failed) continue;
        if (holds(change.place, change.old_value()) || write_setting(change.place, change.old_value())) continue;
        fprintf(stderr, "config apply: %s: not put back\n", change.key);
        status = kExitNotPutBack;
    }
    return status;
}

[[nodiscard]] int write_all(const SettingsList& list) {
    for (const Change& change : list) {
        if (!changes_anything(change) || write_setting(change.place, change.value)) continue;
        fprintf(stderr, "config apply: line %zu: %s: not written; the earlier ones are put back\n", change.line,
                change.key);
        return put_back(list, change);
    }
    return kExitOk;
}

[[nodiscard]] int apply(const SettingsList& list) {
    // Whoever reads it must have it before anything is written.
    if (!print_former_values(list)) return kExitNo;
    hold_signals();
    OutputToErrors quiet;
    int status = write_all(list);
    LibQuorvelBin_Sync();
    return status;
}

}  // namespace

int run_config_apply(int argc, char** argv) {
    Options options;
    if (!read_options(argc, argv, options)) {
        fputs("Usage: libquorvel_bin config apply [--dry-run] [--add] FILE|-\n", stderr);
        return kExitUsage;
    }
    SettingsList list;
    const char* unreadable = read_list(options.list, list);
    const int faults = unreadable == nullptr ? check_list(list, options.add) : 0;
    if (faults < 0) unreadable = strerror(errno);
    if (unreadable != nullptr) {
        fprintf(stderr, "config apply: %s: %s\n", options.list, unreadable);
        return kExitNo;
    }
    if (faults > 0) {
        fputs("config apply: nothing was written\n", stderr);
        return kExitRefused;
    }
    if (!options.dry_run) return apply(list);
    print_difference(list);
    return kExitOk;
}
