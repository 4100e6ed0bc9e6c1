// The iSCSI helper's subcommands.
#include <stdio.h>
#include <string.h>

#include <string_view>

#include "foundation/answer.h"
#include "foundation/numbers.h"
#include "foundation/options.h"
#include "foundation/text.h"
#include "quorvel/services.h"
#include "services/iscsi_sessions.h"
#include "services/iscsi_targets.h"

using namespace quorvel;

namespace {

// Texts one behind the other. A busy server has thousands of report lines, and printf would be most
// of their cost.
template <size_t Size>
struct JoinedText {
    char chars[Size];
    size_t length = 0;
};

template <size_t Size>
void add_field(JoinedText<Size>& joined, std::string_view text) {
    if (Size - joined.length < text.size() + 2) return;
    char* end = static_cast<char*>(mempcpy(joined.chars + joined.length, text.data(), text.size()));
    end[0] = '<';
    end[1] = '>';
    joined.length += text.size() + 2;
}

constexpr size_t kPiece = 2048;             // more than a line of the session file
constexpr size_t kReportLine = 3 * kPiece;  // more than a line of the report

// The report, and where the walk through the session file is, in pieces of a report line.
struct SessionReport {
    JoinedText<16384 + kReportLine> lines;
    JoinedText<kPiece> target;   // "TID<>TARGET<>"
    JoinedText<kPiece> session;  // "SID<>INITIATOR<>" of the latest session, whichever target it was of
    size_t sid_length = 0;       // of "SID<>"
    bool idle_target = false;    // the target has shown neither a session nor a connection
};

void set_target(SessionReport& report, std::string_view tid, std::string_view name) {
    report.target.length = 0;
    add_field(report.target, tid);
    add_field(report.target, name);
}

void set_session(SessionReport& report, std::string_view sid, std::string_view initiator) {
    report.session.length = 0;
    add_field(report.session, sid);
    report.sid_length = report.session.length;
    add_field(report.session, initiator);
}

void flush(SessionReport& report) {
    (void)fwrite(report.lines.chars, 1, report.lines.length, stdout);
    report.lines.length = 0;
}

void add_line(SessionReport& report, std::string_view session, std::string_view rest) {
    if (sizeof report.lines.chars - report.lines.length < kReportLine) flush(report);
    char* end = report.lines.chars + report.lines.length;
    for (std::string_view part : {std::string_view(report.target.chars, report.target.length), session, rest})
        end = static_cast<char*>(mempcpy(end, part.data(), part.size()));
    *end++ = '\n';
    report.lines.length = static_cast<size_t>(end - report.lines.chars);
    report.idle_target = false;
}

void end_target(SessionReport& report) {
    if (report.idle_target) add_line(report, {report.session.chars, report.sid_length}, "<>");
}

void begin_target(SessionReport& report, const SessionLine& line) {
    char buffer[kTargetName];
    set_target(report, number_text(line), target_name(line, buffer));
    report.idle_target = true;
}

void begin_session(SessionReport& report, const SessionLine& line) {
    char buffer[kInitiatorName];
    set_session(report, number_text(line), initiator_name(line, buffer));
    report.idle_target = false;
}

void add_connection(SessionReport& report, const SessionLine& line) {
    add_line(report, {report.session.chars, report.session.length}, initiator_address(line));
}

int session_info(const char*) {
    if (from_cmdline != 1) return 0;
    SessionFile sessions;
    SessionReport report;
    set_target(report, "", "");
    set_session(report, "", "");
    for (SessionLine line; sessions && next_session_line(sessions, line);) {
        if (line.kind == SessionKind::kTarget) {
            end_target(report);
            begin_target(report, line);
        } else if (line.kind == SessionKind::kSession) {
            begin_session(report, line);
        } else {
            add_connection(report, line);
        }
    }
    end_target(report);
    flush(report);
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
