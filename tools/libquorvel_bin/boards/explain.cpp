// explain: why a disk has the name that it has, and whether the name leads back to it. Rows are judged by the library's
// own matching; where programs would wait for ever, because a row does not let them decide, this says so and goes on.
#include <stdio.h>
#include <string.h>

#include <iterator>

#include "boards/answers.h"
#include "boards/boards_commands.h"
#include "boards/naming_source.h"
#include "boards/reasons.h"
#include "boards/rule_reasons.h"
#include "json.h"
#include "libquorvel_bin.h"

using namespace quorvel;

namespace {

struct Explaining {
    NamingSource source;
    Json* json = nullptr;  // null for text
    bool all_agree = true;
    int disks = 0;
};

// ---- As text ----

void print_rest(int rest) {
    if (rest > 0) printf("    %d more not looked at\n", rest);
}

void print_rows(const NamedTable& table, const Search& search, const DiskPlace& disk) {
    for (int i = 0; i < search.looked_at; i++) {
        const struct disk_path& row = table.rows[i];
        Fit fit = fit_of_row(row, disk);
        if (table.line_of(i) > 0) printf("    %s:%d", table.file->path, table.line_of(i));
        if (table.line_of(i) == 0) printf("    row %d", i + 1);
        printf("  %s  %s: %s\n", name_of_row(row).c_str(), word_of_fit(fit), reason_of(fit, row, disk).c_str());
    }
    print_rest(index_of_end(table.rows) - search.looked_at);
}

// The rules count the components of the path; these are the ones that any of them looks at.
void print_components(const BlockDisk& disk) {
    printf("    components of %s:\n   ", disk.path.c_str());
    for (int i = 7; i <= 11; i++) {
        std::string_view component = path_component({disk.path.c_str(), disk.path.length}, i);
        if (!component.empty()) printf(" %d %.*s", i, static_cast<int>(component.size()), component.data());
    }
    puts("");
}

void print_rules(const NamingSource& source, const BlockDisk& disk, const Answer& answer) {
    const int looked_at = rules_looked_at(source, disk);
    print_components(disk);
    for (int i = 0; i < looked_at; i++) {
        bool holds = i + 1 == looked_at;
        printf("    rule %d  %s  %s: %s\n", i + 1, name_of_rule(kNamingRules[i]).c_str(), holds ? "yes" : "no",
               reason_of_rule(kNamingRules[i], holds, source, disk, answer).c_str());
    }
    print_rest(static_cast<int>(std::size(kNamingRules)) - looked_at);
}

void print_extension(const NamingSource& source, const Answer& answer, const DiskPlace& disk) {
    SlotFault fault = SlotFault::kNone;
    if (source.table.rows == nullptr || answer.searches[0].found || answer.searches[0].undecided) {
        printf("  extension  not asked\n");
    } else if (source.extension.rows != nullptr) {
        printf("  extension  %s\n", kExtensionFile.path);
        print_rows(source.extension, answer.searches[1], disk);
    } else if (int line = first_bad_line(kExtensionFile, fault); line != 0) {
        printf("  extension  none; %s:%d: %s\n", kExtensionFile.path, line, text_of_fault(fault));
    } else {
        printf("  extension  none in %s\n", kExtensionFile.path);
    }
}

const char* layout_text(const NamingSource& source) {
    return source.new_sysfs ? "the disk's own link counts, as from 2.6.31.8 on"
                            : "the link of the disk's \"device\" counts, as before 2.6.31.8";
}

void print_way_back(const BlockDisk& disk, const Answer& answer) {
    if (answer.name.length == 0) return;
    printf("  way back   ");
    if (answer.agrees) {
        printf("%s is %s\n", answer.name.c_str(), disk.name.c_str());
    } else if (answer.back.length > 0) {
        printf("WRONG: %s leads to %s\n", answer.name.c_str(), answer.back.c_str());
    } else {
        printf("WRONG: %s leads to no disk\n", answer.name.c_str());
    }
}

void print_disk(const NamingSource& source, const BlockDisk& disk, const Answer& answer) {
    printf("%s\n  link       %s\n", disk.name.c_str(), disk.link());
    printf("  sysfs      kernel %s: %s\n", source.kernel.c_str(), layout_text(source));
    printf("  table      %s\n", source.origin.c_str());
    if (source.table.rows != nullptr) print_rows(source.table, answer.searches[0], disk.place());
    if (source.table.rows == nullptr) print_rules(source, disk, answer);
    print_extension(source, answer, disk.place());
    printf("  answer     %s\n", answer.name.length > 0 ? answer.name.c_str() : "none");
    print_way_back(disk, answer);
}

// ---- As JSON ----

void write_optional(Json* json, const char* key, const char* text) {
    if (text[0] != '\0') json_text(json, key, text);
    if (text[0] == '\0') json_null(json, key);
}

void write_rows(Json* json, const char* key, const NamedTable& table, const Search& search, const DiskPlace& disk) {
    json_array(json, key);
    for (int i = 0; i < search.looked_at; i++) {
        Fit fit = fit_of_row(table.rows[i], disk);
        json_object(json);
        json_number(json, "row", i + 1);
        if (table.line_of(i) > 0) json_number(json, "line", table.line_of(i));
        json_text(json, "name", name_of_row(table.rows[i]).c_str());
        json_text(json, "fits", word_of_fit(fit));
        json_text(json, "reason", reason_of(fit, table.rows[i], disk).c_str());
        json_end(json);
    }
    json_end(json);
}

void write_rules(Json* json, const NamingSource& source, const BlockDisk& disk, const Answer& answer) {
    const int looked_at = source.table.rows == nullptr ? rules_looked_at(source, disk) : 0;
    json_array(json, "rules");
    for (int i = 0; i < looked_at; i++) {
        bool holds = i + 1 == looked_at;
        json_object(json);
        json_number(json, "rule", i + 1);
        json_text(json, "name", name_of_rule(kNamingRules[i]).c_str());
        json_text(json, "fits", holds ? "yes" : "no");
        json_text(json, "reason", reason_of_rule(kNamingRules[i], holds, source, disk, answer).c_str());
        json_end(json);
    }
    json_end(json);
}

void write_disk(Json* json, const NamingSource& source, const BlockDisk& disk, const Answer& answer) {
    json_object(json);
    json_text(json, "device", disk.name.c_str());
    json_text(json, "link", disk.link());
    json_text(json, "kernel", source.kernel.c_str());
    json_text(json, "sysfs", source.new_sysfs ? "new" : "old");
    json_text(json, "table", source.origin.c_str());
    write_rows(json, "rows", source.table, answer.searches[0], disk.place());
    write_rules(json, source, disk, answer);
    write_rows(json, "extension", source.extension, answer.searches[1], disk.place());
    write_optional(json, "answer", answer.name.c_str());
    write_optional(json, "back", answer.back.c_str());
    json_truth(json, "agrees", answer.agrees);
    json_end(json);
}

// ---- The disks that are asked for ----

void explain_disk(void* context, const char* device) {
    Explaining& explaining = *static_cast<Explaining*>(context);
    BlockDisk disk;
    if (!find_block_disk(device, explaining.source.new_sysfs, disk)) {
        fprintf(stderr, "libquorvel_bin: explain: /sys/block has no link of %s\n", device);
        explaining.all_agree = false;
        return;
    }
    Answer answer = answer_for(explaining.source, disk);
    if (explaining.json != nullptr) write_disk(explaining.json, explaining.source, disk, answer);
    if (explaining.json == nullptr) print_disk(explaining.source, disk, answer);
    explaining.all_agree = explaining.all_agree && answer.agrees;
    explaining.disks++;
}

// A logical name leads to the disk that is explained.
void explain_name(Explaining& explaining, const char* name) {
    char device[256] = "";
    name = without_dev_prefix(name);
    if (is_disk_entry(name)) return explain_disk(&explaining, name);
    if (LibQuorvelBin_GetDevnameFromDiskname(name, device, sizeof device) == 0)
        return explain_disk(&explaining, device);
    fprintf(stderr, "libquorvel_bin: explain: %s leads to no disk; slots shows the places that have names\n", name);
    explaining.all_agree = false;
}

[[nodiscard]] bool explain_all(Explaining& explaining) {
    if (for_each_disk(explain_disk, &explaining)) return true;
    perror("/sys/block");
    return false;
}

}  // namespace

int run_explain(int argc, char** argv) {
    bool as_json = argc > 2 && strcmp(argv[2], "--json") == 0;
    if (argc == 4 && !as_json) {
        fprintf(stderr, "libquorvel_bin: explain: --json comes first, then one name\n");
        return kExitUsage;
    }
    from_cmdline = 0;  // the explanation is the answer, not its parts
    const char* name = argc > (as_json ? 3 : 2) ? argv[argc - 1] : nullptr;
    Explaining explaining;
    if (as_json && (explaining.json = json_start(stdout)) == nullptr) return kExitNo;
    json_array(explaining.json);
    bool done = true;
    if (name != nullptr) explain_name(explaining, name);
    if (name == nullptr) done = explain_all(explaining);
    json_end(explaining.json);
    if (as_json) done = json_finish(explaining.json) && done;
    return done && explaining.all_agree ? kExitOk : kExitNo;
}
