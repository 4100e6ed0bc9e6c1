// learn: writes /etc/diskpath.conf for the machine it runs on, after the person has seen what it will say.
#include "boards/learn.h"

#include <getopt.h>
#include <stdio.h>
#include <string.h>
#include <unistd.h>

#include "boards/boards_commands.h"
#include "foundation/numbers.h"
#include "libquorvel_bin.h"

using namespace quorvel;

namespace {

constexpr struct option kOptions[] = {
    {"serials",     required_argument, nullptr, 's'},
    {"from-kernel", no_argument,       nullptr, 'k'},
    {"blink",       no_argument,       nullptr, 'b'},
    {"yes",         no_argument,       nullptr, 'y'},
    {"bays",        required_argument, nullptr, 'n'},
    {"ports",       required_argument, nullptr, 'u'},
    {"wait",        required_argument, nullptr, 'w'},
    {nullptr,       0,                 nullptr, 0  },
};

[[nodiscard]] bool take_number(const char* text, int& number) {
    if (!is_all_digits(text)) return false;
    number = leading_int(text);
    return number <= kMostBay;
}

[[nodiscard]] bool take_option(LearnOptions& options, int option) {
    switch (option) {
        case 's':
            options.serials = optarg;
            return true;
        case 'k':
            return options.from_kernel = true;
        case 'b':
            return options.blink = true;
        case 'y':
            return options.yes = true;
        case 'n':
            return take_number(optarg, options.bays);
        case 'u':
            return take_number(optarg, options.ports);
        case 'w':
            return take_number(optarg, options.wait);
        default:
            return false;
    }
}

// The words behind the command's own; at most one way to learn.
[[nodiscard]] bool read_options(LearnOptions& options, int argc, char** argv) {
    optind = 1;
    for (int option; (option = getopt_long(argc - 1, argv + 1, "", kOptions, nullptr)) != -1;) {
        if (!take_option(options, option)) return false;
    }
    int ways = (options.serials != nullptr ? 1 : 0) + (options.from_kernel ? 1 : 0) + (options.blink ? 1 : 0);
    return optind == argc - 1 && ways <= 1;
}

bool asks_a_person(const LearnOptions& options) {
    return options.blink || (options.serials == nullptr && !options.from_kernel);
}

[[nodiscard]] bool fill(Proposal& proposal, const LearnOptions& options) {
    if (options.serials == nullptr && asks_a_person(options) && !options.blink)
        return learn_by_plugging(proposal, options);
    AllDisks all;
    if (options.serials != nullptr) return learn_by_serials(proposal, all, options.serials);
    return options.from_kernel ? learn_from_kernel(proposal, all) : learn_by_blinking(proposal, all, options);
}

bool is_agreed(const LearnOptions& options) {
    if (options.yes) return true;
    printf("\nWrite these rows to /etc/diskpath.conf? Type yes: ");
    (void)fflush(stdout);
    char line[16] = "";
    return fgets(line, sizeof line, stdin) != nullptr && strcmp(line, "yes\n") == 0;
}

// Whether every name leads to the disk that was seen in its bay, as far as the disk is there.
[[nodiscard]] bool leads_back(const Proposal& proposal) {
    AllDisks all;
    bool right = true;
    for (int i = 0; i < proposal.count; i++) {
        const LearntBay& bay = proposal.bays[i];
        char device[256] = "";
        Text<32> name = name_of_bay(bay.type, bay.slot);
        bool there = LibQuorvelBin_GetDevnameFromDiskname(name.c_str(), device, sizeof device) == 0;
        if (!there || bay.serial.length == 0) continue;
        const AllDisks::Disk* disk = all.find(device);
        right = right && disk != nullptr && strcmp(disk->serial.c_str(), bay.serial.c_str()) == 0;
    }
    return right;
}

// Nothing is written before the rows are right, seen and agreed to.
[[nodiscard]] int conclude(const Proposal& proposal, const LearnOptions& options) {
    if (proposal.count == 0) {
        fputs("libquorvel_bin: learn: no bay was learnt; nothing is written\n", stderr);
        return kExitNo;
    }
    bool right = false;
    {
        AllDisks all;
        right = show_proposal(proposal, all);
    }
    if (!right || !is_agreed(options)) {
        fputs(right ? "Nothing is written.\n" : "libquorvel_bin: learn: not every row is right; nothing is written\n",
              stderr);
        return kExitNo;
    }
    if (!write_proposal(proposal)) return kExitNo;
    puts("Written. What check and explain say of it:");
    char* arguments[] = {nullptr, nullptr, nullptr};
    int checked = run_check(2, arguments);
    (void)run_explain(2, arguments);
    return checked < 2 && leads_back(proposal) ? kExitOk : kExitNo;
}

}  // namespace

int run_learn(int argc, char** argv) {
    LearnOptions options;
    if (!read_options(options, argc, argv)) {
        fputs(
            "Usage: libquorvel_bin learn [--serials FILE | --from-kernel | --blink] [--bays N] [--ports N] [--wait S] "
            "[--yes]\n",
            stderr);
        return kExitUsage;
    }
    bool terminal = isatty(STDIN_FILENO) != 0;
    if (!terminal && (!options.yes || asks_a_person(options))) {
        fputs("libquorvel_bin: learn: without a terminal only with --yes, and --serials or --from-kernel\n", stderr);
        return kExitUsage;
    }
    from_cmdline = 0;
    (void)setvbuf(stdout, nullptr, _IOLBF, 0);
    Proposal proposal;
    return fill(proposal, options) ? conclude(proposal, options) : kExitNo;
}
