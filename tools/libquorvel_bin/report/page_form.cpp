// The report as a page: one file, without scripts and without anything to load. Narrow screens get each row as a block
// with the names of its columns. What colour says, words say too.
#include <string.h>
#include <time.h>

#include "report/forms.h"
#include "report/rooms.h"
#include "report/xml.h"

namespace report {

namespace {

constexpr char kStyle[] =
    "body{font:16px/1.45 sans-serif;margin:0 "
    "auto;max-width:1100px;padding:12px;overflow-wrap:anywhere;color:#111;background:#fff}\n"
    "h1{font-size:1.5em;margin:.3em 0}h2{font-size:1.15em;margin:1.4em 0 .4em}\n"
    "svg{width:100%;height:auto;max-width:720px;display:block}\n"
    "table{border-collapse:collapse;width:100%}\n"
    "th,td{text-align:left;padding:.25em .7em .25em 0;border-bottom:1px solid #bbb;vertical-align:top;"
    "overflow-wrap:anywhere}\n"
    ".good{color:#0b5c1e}.warning{color:#8a4500;font-weight:bold}.bad{color:#a30000;font-weight:bold}.faint{color:#"
    "595959}\n"
    "@media(max-width:700px){thead{position:absolute;left:-9999px}tr{display:block;border-bottom:2px solid #777;"
    "padding:.4em 0}td{display:flex;gap:.6em;border:0;padding:.1em 0}td::before{content:attr(data-label);"
    "flex:0 0 38%;color:#595959;font-weight:normal}}\n";

const char* class_of(Paint paint) {
    static constexpr const char* kClasses[] = {nullptr, nullptr, "good", "warning", "bad", "faint"};
    return kClasses[static_cast<size_t>(paint)];
}

void print_element(FILE* stream, const char* name, std::string_view text) {
    fprintf(stream, "<%s>", name);
    print_xml(stream, text);
    fprintf(stream, "</%s>\n", name);
}

// ---- Tables ----

void print_cell(FILE* stream, const Cell& cell, const char* column) {
    fputs("<td data-label=\"", stream);
    print_xml(stream, column != nullptr ? column : "");
    fputc('"', stream);
    if (const char* name = class_of(cell.paint)) fprintf(stream, " class=\"%s\"", name);
    fputs("><span>", stream);
    print_xml(stream, cell.text.c_str());
    fputs("</span></td>", stream);
}

void print_row(FILE* stream, const Row& row, const Room& room) {
    fputs("<tr>", stream);
    for (size_t i = 0; i < Row::kMostCells && (i < row.count || room.columns[i] != nullptr); i++)
        print_cell(stream, i < row.count ? row.cells[i] : Cell(), room.columns[i]);
    fputs("</tr>\n", stream);
}

void print_room(FILE* stream, const Room& room) {
    if (room.rows.count == 0) return;
    fputs("<section>\n", stream);
    print_element(stream, "h2", room.heading);
    fputs("<table>\n<thead><tr>", stream);
    for (const char* column : room.columns) {
        if (column == nullptr) continue;
        fputs("<th scope=\"col\">", stream);
        print_xml(stream, column);
        fputs("</th>", stream);
    }
    fputs("</tr></thead>\n<tbody>\n", stream);
    for (const Row& row : room.rows)
        print_row(stream, row, room);
    fputs("</tbody>\n</table>\n</section>\n", stream);
}

// ---- The page ----

void print_problems(FILE* stream, const Facts& facts) {
    static constexpr const char* kClassesOfSeverity[] = {"good", "warning", "bad", "warning"};
    fprintf(stream, "<p class=\"%s\">Verdict: %s</p>\n", kClassesOfSeverity[facts.verdict], word_of(facts.verdict));
    if (facts.problems.count == 0) return;
    fputs("<ul>\n", stream);
    for (const Problem& problem : facts.problems) {
        fprintf(stream, "<li class=\"%s\">", kClassesOfSeverity[problem.severity]);
        print_xml(stream, text_of(problem.subject));
        fputs(": ", stream);
        print_xml(stream, text_of(problem.text));
        fprintf(stream, " (%s)</li>\n", word_of(problem.severity));
    }
    fputs("</ul>\n", stream);
}

void print_identity(FILE* stream, const Facts& facts) {
    const SystemFacts& system = facts.system;
    fputs("<p>", stream);
    for (const Words* words : {&system.product_name, &system.platform, &system.firmware_version, &system.kernel}) {
        if (!is_known(*words)) continue;
        print_xml(stream, words == &system.platform           ? "platform "
                          : words == &system.firmware_version ? "firmware "
                          : words == &system.kernel           ? "kernel "
                                                              : "");
        print_xml(stream, text_of(*words));
        fputs("; ", stream);
    }
    const time_t taken = facts.taken_seconds;
    struct tm parts = {};
    char when[64] = "";
    if (gmtime_r(&taken, &parts) != nullptr) (void)strftime(when, sizeof when, "%Y-%m-%d %H:%M:%S UTC", &parts);
    print_xml(stream, when);
    fputs("</p>\n", stream);
}

}  // namespace

void print_page(const Facts& facts, FILE* stream) {
    const char* name = is_known(facts.system.hostname) ? text_of(facts.system.hostname) : "appliance";
    fputs(
        "<!DOCTYPE html>\n<html xmlns=\"http://www.w3.org/1999/xhtml\" lang=\"en\">\n<head>\n<meta "
        "charset=\"utf-8\"/>\n"
        "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\"/>\n",
        stream);
    print_element(stream, "title", name);
    fprintf(stream, "<style>\n%s</style>\n</head>\n<body>\n<main>\n", kStyle);
    print_element(stream, "h1", name);
    print_identity(stream, facts);
    print_problems(stream, facts);
    print_picture(facts, stream);
    for (const Room& room : rooms_of(facts))
        print_room(stream, room);
    fputs("</main>\n</body>\n</html>\n", stream);
}

}  // namespace report
