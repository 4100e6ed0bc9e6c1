// What is wrong. One row a kind of problem; limits come from the settings file.
#include <stdarg.h>
#include <stdio.h>
#include <string.h>

#include <algorithm>

#include "foundation/appliance_files.h"
#include "foundation/text.h"
#include "libquorvel_bin.h"
#include "report/gather.h"
#include "report/sources.h"

namespace report {

namespace {

using quorvel::Text;

struct Limits {
    int64_t disk_celsius = 55;
    int64_t spool_percent = 95;
    int64_t read_errors = 100;
};

// A limit of 0 switches its check off; what is no number leaves the limit as it is.
Limits read_limits() {
    Limits limits;
    const struct {
        const char* key;
        int64_t* limit;
    } rows[] = {
        {"limit_disk_celsius",  &limits.disk_celsius },
        {"limit_spool_percent", &limits.spool_percent},
        {"limit_read_errors",   &limits.read_errors  },
    };
    for (const auto& row : rows) {
        char value[32] = "";
        int64_t number = 0;
        if (get_StringbyKey(quorvel::files::kLibraryConfig, row.key, value, sizeof value - 1) == nullptr) continue;
        if (to_number(without_blanks(value), number)) *row.limit = number;
    }
    return limits;
}

__attribute__((format(printf, 4, 5))) void tell(Facts& facts, Severity severity, const char* subject,
                                                const char* format, ...) {
    Problem* problem = add(facts.problems);
    if (problem == nullptr) return;
    char text[512];
    va_list arguments;
    va_start(arguments, format);
    vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    problem->severity = severity;
    set(problem->subject, subject);
    set(problem->text, text);
}

// ---- Arrays ----

const char* name_of(const ArrayFacts& array) {
    return is_known(array.name) ? text_of(array.name) : text_of(array.device);
}

bool is_running(const ArrayFacts& array) {
    constexpr std::string_view kRunning[] = {"clean",     "active",        "active-idle", "readonly",
                                             "read-auto", "write-pending", "suspended"};
    return std::find(std::begin(kRunning), std::end(kRunning), text_of(array.state)) != std::end(kRunning);
}

bool is_expected(const ArrayFacts& array) {
    return strncmp(text_of(array.status), "raid", 4) == 0;
}

// How many members an array can do without. Of raid10 it depends on which: the kernel stops one that lost too many.
int64_t spare_members(const ArrayFacts& array) {
    const std::string_view level = text_of(array.level);
    const int64_t members = is_known(array.raid_disks) ? array.raid_disks.value : 0;
    if (level == "raid1") return members - 1;
    if (level == "raid10") return members / 2;
    if (level == "raid4" || level == "raid5") return 1;
    return level == "raid6" ? 2 : 0;
}

// A disk that the status file has in an array, and that the kernel has not.
bool is_missing_from(const DiskFacts& disk, const ArrayFacts& array) {
    return is_known(disk.status) && is_known(array.name) && strcmp(text_of(disk.status), text_of(array.name)) == 0 &&
           strcmp(text_of(disk.array), text_of(array.name)) != 0;
}

bool has_failed_member(const ArrayFacts& array, const DiskFacts& disk) {
    return std::any_of(array.members.begin(), array.members.end(), [&disk](const MemberFacts& member) {
        return strcmp(text_of(member.disk), text_of(disk.name)) == 0 &&
               strstr(text_of(member.state), "faulty") != nullptr;
    });
}

void tell_of_missing_members(Facts& facts, const ArrayFacts& array, Severity severity) {
    size_t told = 0;
    for (const DiskFacts& disk : facts.disks) {
        if (!is_missing_from(disk, array)) continue;
        tell(facts, severity, text_of(disk.name), "%s %s (%s, degraded)",
             has_failed_member(array, disk) ? "failed in" : "missing from", name_of(array), text_of(array.level));
        told++;
    }
    if (told > 0) return;
    tell(facts, severity, name_of(array), "%d of %d members missing (%s, degraded)",
         static_cast<int>(array.missing_disks.value), static_cast<int>(array.raid_disks.value), text_of(array.level));
}

void tell_of_rebuild(Facts& facts, const ArrayFacts& array) {
    const std::string_view action = text_of(array.sync_action);
    if (action != "recover" && action != "resync" && action != "reshape") return;
    if (!is_known(array.sync_total_bytes) || array.sync_total_bytes.value == 0) return;
    const double done =
        100.0 * static_cast<double>(array.sync_done_bytes.value) / static_cast<double>(array.sync_total_bytes.value);
    tell(facts, kDegraded, name_of(array), "%s, %.1f %% done",
         action == "recover" ? "rebuilding" : text_of(array.sync_action), done);
}

void check_array(Facts& facts, const ArrayFacts& array) {
    if (!is_known(array.state)) {
        if (!is_expected(array) && is_known(array.name)) return;
        return tell(facts, kUnknown, name_of(array), "state not known (%s)", array.state.reason);
    }
    if (!is_running(array)) {
        if (is_expected(array) || strcmp(text_of(array.state), "not running") != 0) {
            tell(facts, kAtRisk, name_of(array), "%s%s%s", text_of(array.state),
                 is_expected(array) ? ", recorded as " : "", is_expected(array) ? text_of(array.status) : "");
        }
        return;
    }
    if (!is_known(array.missing_disks))
        return tell(facts, kUnknown, name_of(array), "members not known (%s)", array.missing_disks.reason);
    tell_of_rebuild(facts, array);
    if (array.missing_disks.value == 0) return;
    const bool lost = array.missing_disks.value > spare_members(array);
    tell_of_missing_members(facts, array, lost ? kAtRisk : kDegraded);
}

// ---- Disks ----

// A disk that the status file has in use by itself: nothing else holds its data.
void check_presence(Facts& facts, const DiskFacts& disk) {
    const std::string_view status = text_of(disk.status);
    const bool gone = is_known(disk.present) && (!disk.present.value || !is_known(disk.device));
    if (gone && status == "normal") tell(facts, kAtRisk, text_of(disk.name), "missing, recorded as in use");
    if (gone && status == "standby") tell(facts, kDegraded, text_of(disk.name), "missing, recorded as standby");
    if (status == "degrade") tell(facts, kDegraded, text_of(disk.name), "recorded as broken");
}

void check_temperature(Facts& facts, const DiskFacts& disk, const Limits& limits) {
    if (limits.disk_celsius == 0 || !is_known(disk.device) || disk.kind != DISK_PATH_INTERNAL) return;
    if (is_known(disk.temperature_celsius)) {
        if (disk.temperature_celsius.value >= limits.disk_celsius)
            tell(facts, kDegraded, text_of(disk.name), "%d degrees", static_cast<int>(disk.temperature_celsius.value));
        return;
    }
    if (is_known(disk.asleep) && disk.asleep.value) return;
    tell(facts, kUnknown, text_of(disk.name), "temperature not known (%s)", disk.temperature_celsius.reason);
}

void check_disk(Facts& facts, const DiskFacts& disk, const Limits& limits) {
    check_presence(facts, disk);
    check_temperature(facts, disk, limits);
    if (limits.read_errors > 0 && is_known(disk.read_errors) && disk.read_errors.value >= limits.read_errors)
        tell(facts, kDegraded, text_of(disk.name), "%d read errors", static_cast<int>(disk.read_errors.value));
}

// ---- The rest ----

void check_spool(Facts& facts, const Limits& limits) {
    const SystemFacts& system = facts.system;
    if (limits.spool_percent == 0 || !is_known(system.spool_size_bytes) || system.spool_size_bytes.value <= 0) return;
    const double used = 100.0 - 100.0 * static_cast<double>(system.spool_free_bytes.value) /
                                    static_cast<double>(system.spool_size_bytes.value);
    if (used >= static_cast<double>(limits.spool_percent))
        tell(facts, kDegraded, "spool", "%d %% full", static_cast<int>(used));
}

// Without the status file nobody can tell which disks and arrays ought to be there.
void check_sources(Facts& facts) {
    if (!is_known(facts.disks)) tell(facts, kUnknown, "disks", "not known (%s)", facts.disks.reason);
    if (!is_known(facts.arrays)) tell(facts, kUnknown, "arrays", "not known (%s)", facts.arrays.reason);
    const FileText status = read_file(quorvel::files::kDiskInfo);
    if (status.reason != nullptr) {
        tell(facts, kUnknown, "disks", "which ones belong here is not known (%s: %s)", quorvel::files::kDiskInfo,
             status.reason);
    }
}

// The worst first; what is not known could be anything, so it is worse than what is only degraded.
int rank_of(Severity severity) {
    constexpr int kRanks[] = {0, 1, 3, 2};
    return kRanks[severity];
}

void sort_problems(List<Problem>& problems) {
    for (size_t i = 1; i < problems.count; i++) {
        for (size_t k = i; k > 0; k--) {
            Problem &before = problems.items[k - 1], &here = problems.items[k];
            if (rank_of(before.severity) < rank_of(here.severity)) std::swap(before, here);
        }
    }
}

}  // namespace

void find_problems(Facts& facts) {
    const Limits limits = read_limits();
    facts.problems.reason = nullptr;
    check_sources(facts);
    for (const ArrayFacts& array : facts.arrays)
        check_array(facts, array);
    for (const DiskFacts& disk : facts.disks)
        check_disk(facts, disk, limits);
    check_spool(facts, limits);
    sort_problems(facts.problems);
    facts.verdict = facts.problems.count > 0 ? facts.problems.items[0].severity : kWell;
    if (!is_known(facts.problems)) facts.verdict = kUnknown;
}

}  // namespace report
