// The iSCSI helper's subcommands.
#include <stdio.h>
#include <string.h>

#include <algorithm>
#include <initializer_list>

#include "foundation/answer.h"
#include "foundation/numbers.h"
#include "foundation/options.h"
#include "foundation/text.h"
#include "quorvel/services.h"
#include "services/iscsi_sessions.h"
#include "services/iscsi_targets.h"

using namespace quorvel;

namespace {

constexpr std::string_view kBar = "<>";

// A report line is put together here: a busy server has thousands, and printf would be most of
// their cost.
void print_line(std::initializer_list<std::string_view> parts) {
    char line[8192];  // more than three pieces of the session file and two names
    size_t length = 0;
    for (std::string_view part : parts) {
        memcpy(line + length, part.data(), part.size());
        length += part.size();
    }
    (void)fwrite(line, 1, length, stdout);
}

// A text that outlives the line it was found in.
struct HeldText {
    char chars[1024];
    size_t length = 0;
};

void hold(HeldText& held, std::string_view text) {
    held.length = std::min(text.size(), sizeof held.chars);
    memcpy(held.chars, text.data(), held.length);
}

std::string_view view(const HeldText& held) {
    return {held.chars, held.length};
}

// Where the walk through the session file is.
struct SessionWalk {
    HeldText tid;
    HeldText sid;  // of the latest session, whichever target it was of
    char target[kTargetName];
    char initiator[kInitiatorName];
    std::string_view target_name;
    std::string_view initiator_name;
    bool idle_target = false;  // the target has shown neither a session nor a connection
};

void end_target(const SessionWalk& walk) {
    if (!walk.idle_target) return;
    print_line({view(walk.tid), kBar, walk.target_name, kBar, view(walk.sid), "<><>\n"});
}

void begin_target(SessionWalk& walk, std::string_view text) {
    hold(walk.tid, number_text(text));
    walk.target_name = target_name(text, walk.target);
    walk.idle_target = true;
}

void begin_session(SessionWalk& walk, std::string_view text) {
    hold(walk.sid, number_text(text));
    walk.initiator_name = initiator_name(text, walk.initiator);
    walk.idle_target = false;
}

void print_connection(SessionWalk& walk, std::string_view text) {
    print_line({view(walk.tid), kBar, walk.target_name, kBar, view(walk.sid), kBar, walk.initiator_name, kBar,
                initiator_address(text), "\n"});
    walk.idle_target = false;
}

int session_info(const char*) {
    if (from_cmdline != 1) return 0;
    SessionFile sessions;
    SessionWalk walk;
    SessionLine kind;
    for (std::string_view text; sessions && next_session_line(sessions, kind, text);) {
        if (kind == SessionLine::kTarget) {
            end_target(walk);
            begin_target(walk, text);
        } else if (kind == SessionLine::kSession) {
            begin_session(walk, text);
        } else {
            print_connection(walk, text);
        }
    }
    end_target(walk);
    return 0;
}

int volume_info(const char*) {
    if (from_cmdline != 1) return 0;
    TargetConfiguration configurations[kMostTargets];
    TargetSearch searches[kMostTargets];
    for (int i = 0; i < kMostTargets; i++) {
        read_configuration(i + 1, configurations[i]);
        searches[i].short_name = configurations[i].short_name;
    }
    find_targets(searches);
    for (int i = 0; i < kMostTargets; i++) {
        Text<16> tid;
        if (searches[i].tid != -1) tid.append("%d", searches[i].tid);
        printf("%d<>%s<>%s<>%s<>\n", i + 1, configurations[i].device, tid.c_str(), searches[i].name);
    }
    return 0;
}

int count_connected(const char*) {
    SessionFile sessions;
    if (!sessions) return 0;
    int count = 0;
    bool armed = false;
    SessionLine kind;
    for (std::string_view text; next_session_line(sessions, kind, text);) {
        if (kind == SessionLine::kConnection && armed) count++;
        if (kind != SessionLine::kTarget) armed = kind == SessionLine::kSession;
    }
    answer(count);
    return count;
}

int answer_free_number(const char*) {
    int tid = free_target_number();
    answer(tid);
    return tid;
}

int answer_configured_number(const char* number_word) {
    if (number_word == nullptr || !is_digit(number_word[0])) return -1;
    int number = leading_int(number_word);
    TargetSearch search;
    TargetConfiguration configuration;
    if (number <= kMostTargets) {
        read_configuration(number, configuration);
        search.short_name = configuration.short_name;
        find_targets({&search, 1});
    }
    answer(search.tid);
    return search.tid;
}

struct Subcommand {
    const char* word;
    int (*run)(const char* parameter);  // null when there is none
};

constexpr Subcommand kSubcommands[] = {
    {"session_info",   session_info            },
    {"volume_info",    volume_info             },
    {"IsConnected",    count_connected         },
    {"GetNewTID",      answer_free_number      },
    {"GetTIDfromTCID", answer_configured_number},
};

int show_usage() {
    answer("\niSCSI helper subcommands\n");
    answer("  session_info   : Show session info by <> separated format");
    answer("                   tid<>target name<>sid<>initiator name<>initiator IP<>;\n");
    answer("  volume_info    : Show target info written in iscsi_disks[n]");
    answer("                   config No.<>device name<>tid<>target name<>;\n");
    answer("  IsConnected    : Easy information for how many clients are connecting this server\n");
    answer("  GetTIDfromTCID : Show target tid specified by TargetConfiguretionID.\n");
    answer("  GetNewTID      : Show tid, which number is youngest value of disactive tid.\n");
    return -1;
}

}  // namespace

int LibQuorvelBin_iSCSIHelper(int argc, char** argv) {
    int count = argument_count(argc, argv);
    if (count < 2) return show_usage();
    for (const Subcommand& subcommand : kSubcommands) {
        if (strcmp(argv[1], subcommand.word) == 0) return subcommand.run(count > 2 ? argv[2] : nullptr);
    }
    return show_usage();
}
