// The report as one screen for people: problems first, then a table a room. "?" is what could not be found out; the
// reasons are in the other forms.
#include <time.h>

#include "report/forms.h"
#include "report/rooms.h"
#include "report/table.h"

namespace report {

namespace {

using quorvel::Text;

Paint paint_of(Severity severity) {
    constexpr Paint kPaints[] = {Paint::kGood, Paint::kWarning, Paint::kBad, Paint::kWarning};
    return kPaints[severity];
}

void print_line(const Screen& screen, std::string_view text, Paint paint) {
    print_cut(screen, text, screen.columns, paint);
    fputc('\n', screen.stream);
}

// ---- Title and problems ----

void append_known(Text<512>& line, const char* before, const Words& words) {
    if (is_known(words)) line.append("%s%s", before, text_of(words));
}

void print_title(const Screen& screen, const Facts& facts) {
    const SystemFacts& system = facts.system;
    Text<512> line("%s", is_known(system.hostname) ? text_of(system.hostname) : "appliance");
    append_known(line, ": ", system.product_name);
    append_known(line, ", platform ", system.platform);
    append_known(line, ", firmware ", system.firmware_version);
    append_known(line, "-", system.firmware_sub_version);
    append_known(line, ", kernel ", system.kernel);
    print_line(screen, line.c_str(), Paint::kHeading);
    const time_t taken = facts.taken_seconds;
    struct tm parts = {};
    char when[64] = "";
    if (gmtime_r(&taken, &parts) != nullptr) (void)strftime(when, sizeof when, "%Y-%m-%d %H:%M:%S UTC", &parts);
    print_line(screen, when, Paint::kFaint);
}

void print_problems(const Screen& screen, const Facts& facts) {
    print_line(screen, Text<64>("Verdict: %s", word_of(facts.verdict)).c_str(), paint_of(facts.verdict));
    for (const Problem& problem : facts.problems) {
        Text<640> line("  %s: %s", text_of(problem.subject), text_of(problem.text));
        print_line(screen, line.c_str(), paint_of(problem.severity));
    }
    if (is_known(facts.system.front_panel))
        print_line(screen, Text<192>("Front panel: %s", text_of(facts.system.front_panel)).c_str(), Paint::kNone);
}

}  // namespace

const char* word_of(Severity severity) {
    static constexpr const char* kWordsOfSeverity[] = {"well", "degraded", "at risk", "not known"};
    return kWordsOfSeverity[severity];
}

void print_screen(const Facts& facts, FILE* stream, size_t columns, bool colour) {
    const Screen screen = {stream, columns, colour};
    print_title(screen, facts);
    fputc('\n', stream);
    print_problems(screen, facts);
    for (const Room& room : rooms_of(facts))
        print_table(screen, room);
}

}  // namespace report
