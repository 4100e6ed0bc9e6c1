// The iSCSI helper's subcommands.
#include <stdio.h>
#include <string.h>

#include <algorithm>
#include <string_view>

#include "foundation/answer.h"
#include "foundation/failure.h"
#include "foundation/numbers.h"
#include "foundation/options.h"
#include "foundation/text.h"
#include "quorvel/services.h"
#include "services/iscsi_sessions.h"
#include "services/iscsi_targets.h"

using namespace quorvel;
using namespace std::string_view_literals;

namespace {

constexpr size_t kFieldsSize = 1280;  // more than two fields of a line of the session file

using Fields = Text<kFieldsSize>;

// Where the walk through the session file is, as fields of a report line.
struct SessionReport {
    Fields target{"<><>"};     // "TID<>TARGET<>"
    Fields session{"<><>"};    // "SID<>INITIATOR<>" of the latest session, whichever target it was of
    size_t sid_length = 2;     // of "SID<>"
    bool idle_target = false;  // the target has shown neither a session nor a connection
};

void set_fields(Fields& fields, std::string_view number, std::string_view name) {
    fields.clear();
    for (std::string_view part : {number, "<>"sv, name, "<>"sv})
        fields.add(part);
}

// Eight bytes at a time: one at a time is a seventh of the cost of a report of thousands of lines.
bool has_control_byte(std::string_view text) {
    constexpr uint64_t kOnes = ~uint64_t{0} / 0xff;
    constexpr uint64_t kTops = kOnes * 0x80;
    uint64_t eight;
    for (; text.size() >= sizeof eight; text.remove_prefix(sizeof eight)) {
        memcpy(&eight, text.data(), sizeof eight);
        uint64_t deletes = eight ^ (kOnes * '\x7f');  // 0 in the place of a DEL
        if (((((eight - kOnes * ' ') & ~eight) | ((deletes - kOnes) & ~deletes)) & kTops) != 0) return true;
    }
    return std::any_of(text.begin(), text.end(), is_control_byte);
}

// Initiators choose their own names.
void print_report_line(SessionReport& report, std::string_view session, std::string_view address) {
    Text<3 * kFieldsSize> line;
    for (std::string_view part : {view(report.target), session, address})
        line.add(part);
    if (has_control_byte(view(line)) || view(line).find(kSecondSetLead) != std::string_view::npos)
        hide_control_bytes(line.chars);
    puts(line.c_str());
    report.idle_target = false;
}

void end_target(SessionReport& report) {
    if (report.idle_target) print_report_line(report, front_of(view(report.session), report.sid_length), "<>");
}

void begin_target(SessionReport& report, const SessionLine& line) {
    set_fields(report.target, number_text(line), view(target_name(line)));
    report.idle_target = true;
}

void begin_session(SessionReport& report, const SessionLine& line) {
    std::string_view sid = number_text(line);
    set_fields(report.session, sid, view(initiator_name(line)));
    report.sid_length = sid.size() + strlen("<>");
    report.idle_target = false;
}

int session_info(const char*) {
    if (from_cmdline != 1) return 0;
    LineFile sessions = open_session_file();
    SessionReport report;
    for (SessionLine line; next_session_line(sessions, line);) {
        if (line.kind == SessionKind::kTarget) {
            end_target(report);
            begin_target(report, line);
        } else if (line.kind == SessionKind::kSession) {
            begin_session(report, line);
        } else {
            print_report_line(report, view(report.session), initiator_address(line));
        }
    }
    end_target(report);
    return 0;
}

int volume_info(const char*) {
    if (from_cmdline != 1) return 0;
    TargetConfiguration configurations[kMostTargets];
    TargetSearch searches[kMostTargets];
    for (int i = 0; i < kMostTargets; i++) {
        configurations[i] = read_configuration(i + 1);
        searches[i].short_name = configurations[i].short_name;
    }
    find_targets(searches);
    for (int i = 0; i < kMostTargets; i++) {
        Text<16> tid;
        if (searches[i].tid != -1) tid.append("%d", searches[i].tid);
        hide_control_bytes(configurations[i].device);
        hide_control_bytes(searches[i].name.chars);
        printf("%d<>%s<>%s<>%s<>\n", i + 1, configurations[i].device, tid.c_str(), searches[i].name.c_str());
    }
    return 0;
}

int count_connected(const char*) {
    LineFile sessions = open_session_file();
    if (!sessions) return 0;
    int count = 0;
    bool armed = false;
    for (SessionLine line; next_session_line(sessions, line);) {
        if (line.kind == SessionKind::kConnection && armed) count++;
        if (line.kind != SessionKind::kTarget) armed = line.kind == SessionKind::kSession;
    }
    answer(count);
    return count;
}

int answer_free_number(const char*) {
    int tid = free_target_number();
    answer(tid);
    return tid != -1 ? tid : fail(ENODATA);
}

int answer_configured_number(const char* number_word) {
    if (number_word == nullptr || !is_digit(number_word[0])) return fail(EINVAL);
    int number = leading_int(number_word);
    TargetSearch search;
    TargetConfiguration configuration;
    if (number <= kMostTargets) {
        configuration = read_configuration(number);
        search.short_name = configuration.short_name;
        find_targets({&search, 1});
    }
    answer(search.tid);
    return search.tid != -1 ? search.tid : fail(ENODATA);
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

int print_usage() {
    answer("\niSCSI helper subcommands\n");
    answer("  session_info   : Show session info by <> separated format");
    answer("                   tid<>target name<>sid<>initiator name<>initiator IP<>;\n");
    answer("  volume_info    : Show target info written in iscsi_disks[n]");
    answer("                   config No.<>device name<>tid<>target name<>;\n");
    answer("  IsConnected    : Easy information for how many clients are connecting this server\n");
    answer("  GetTIDfromTCID : Show target tid specified by TargetConfiguretionID.\n");
    answer("  GetNewTID      : Show tid, which number is youngest value of disactive tid.\n");
    return fail(EINVAL);
}

}  // namespace

int LibQuorvelBin_iSCSIHelper(int argc, char** argv) {
    int count = argument_count(argc, argv);
    if (count < 2) return print_usage();
    for (const Subcommand& subcommand : kSubcommands) {
        if (strcmp(argv[1], subcommand.word) == 0) return subcommand.run(count > 2 ? argv[2] : nullptr);
    }
    return print_usage();
}
