// iSCSI targets and sessions, the firewall table as configured, and the backup tasks.
#include <dirent.h>
#include <stdio.h>
#include <string.h>
#include <time.h>

#include <algorithm>

#include "foundation/appliance_files.h"
#include "foundation/files.h"
#include "foundation/look.h"
#include "foundation/numbers.h"
#include "foundation/text.h"
#include "libquorvel_bin.h"
#include "report/gather.h"
#include "report/sources.h"

namespace report {

namespace {

using quorvel::Text;

constexpr char kNotConfigured[] = "not configured";
constexpr char kNoAnswer[] = "the library gave no answer";

void set_number(Number& number, std::string_view text, const char* reason) {
    int64_t value = -1;
    (void)to_number(text, value);
    set_unless_negative(number, value, reason);
}

// ---- iSCSI: lines of "<>"-separated fields ----

void take_target(Facts& facts, std::string_view line) {
    const std::string_view number = next_field(line, "<>");
    if (line.find_first_not_of("<>") == std::string_view::npos) return;  // an unused configuration
    TargetFacts* target = add(facts.targets);
    if (target == nullptr) return;
    set_number(target->number, number, kNotConfigured);
    set_unless_empty(target->device, next_field(line, "<>"), kNotConfigured);
    set_number(target->tid, next_field(line, "<>"), "no such target is running");
    set_unless_empty(target->name, next_field(line, "<>"), "no such target is running");
}

// An initiator chooses its own name, with separators in it as well; the address behind it has none.
void take_session(Facts& facts, std::string_view line) {
    static constexpr char kNobody[] = "nobody is connected";
    SessionFacts* session = add(facts.sessions);
    if (session == nullptr) return;
    set_number(session->tid, next_field(line, "<>"), kNoAnswer);
    set_unless_empty(session->target, next_field(line, "<>"), "the kernel tells no name");
    set_unless_empty(session->sid, next_field(line, "<>"), kNobody);
    const std::string_view initiator = front_of(line, line.rfind("<>"));
    set_unless_empty(session->initiator, initiator, kNobody);
    set_unless_empty(session->address, behind(line, initiator.size() + strlen("<>")), kNobody);
}

template <typename Record>
void take_lines(Facts& facts, List<Record>& list, const Quiet& quiet, const char* word,
                void (*take)(Facts&, std::string_view)) {
    int result = -1;
    const quorvel::Heap<char> answer = answer_of(quiet, LibQuorvelBin_iSCSIHelper, {"iscsi", word}, result);
    list.reason = answer != nullptr ? nullptr : kNoAnswer;
    for (std::string_view text = answer != nullptr ? answer.get() : ""; !text.empty();)
        take(facts, next_line(text));
}

// ---- Firewall: lines "SERVICE<>FLAG<>FLAG<>;" ----

// Runs of the separator count as one, as the library cuts fields.
std::string_view next_flag(std::string_view& line) {
    std::string_view flag;
    while (flag.empty() && !line.empty())
        flag = next_field(line, "<>");
    return flag;
}

void take_flags(ServiceFacts& service, std::string_view line, int port_count) {
    const bool bonded = LibQuorvelBin_IsBondingMode() == 1;
    service.gates.reason = nullptr;
    for (size_t i = 0; i < static_cast<size_t>(bonded ? 1 : std::max(port_count, 0)); i++) {
        // A service may have several lines, and what one of them denies is denied.
        const bool open = next_flag(line) != "0";
        const bool fresh = i == service.gates.count;
        GateFacts* gate = fresh ? add(service.gates) : &service.gates.items[i];
        if (gate == nullptr) return;
        set(gate->interface, bonded ? "bond0" : Text<32>("eth%zu", i).c_str());
        set(gate->open, open && (fresh || gate->open.value));
    }
}

void take_service(Facts& facts, const firewall_service& known, std::string_view ports_file, int port_count) {
    ServiceFacts* service = add(facts.services);
    if (service == nullptr) return;
    set(service->name, known.name);
    service->ports = known.ports;
    service->port_count = known.port_count;
    service->gates.reason = "the ports file has no such line";
    while (!ports_file.empty()) {
        std::string_view line = next_line(ports_file);
        if (next_flag(line) == known.name) take_flags(*service, line, port_count);
    }
}

// ---- Backup: the lines of "Info" and "Destinfo" ----

struct BackupField {
    const char* key;
    Words BackupFacts::*words;
};

constexpr BackupField kBackupFields[] = {
    {"name",       &BackupFacts::name      },
    {"status",     &BackupFacts::status    },
    {"type",       &BackupFacts::type      },
    {"start_time", &BackupFacts::start_time},
    {"week",       &BackupFacts::week_day  },
    {"overwrite",  &BackupFacts::overwrite },
    {"crypt",      &BackupFacts::encrypted },
    {"compress",   &BackupFacts::compressed},
    {"trashbox",   &BackupFacts::trashbox  },
    {"mirror",     &BackupFacts::mirror    },
    {"logfile",    &BackupFacts::logfile   },
    {"force",      &BackupFacts::force     },
    {"hardlink",   &BackupFacts::hardlink  },
};

void take_backup_settings(BackupFacts& task, std::string_view text) {
    for (const BackupField& field : kBackupFields) {
        std::string_view value;
        const bool told = find_setting(text, field.key, value) && value != "Unknown" && value != "-1:-1";
        set_unless_empty(task.*field.words, told ? value : "", "not set for this task");
    }
    std::string_view generations;
    (void)find_setting(text, "keep_generation", generations);
    set_number(task.keep_generations, generations, "not set for this task");
}

// "20261120233000", local time, as a generation's folder is called.
int64_t seconds_of_generation(const char* name) {
    struct tm day = {};
    if (strlen(name) != 14 || !quorvel::is_all_digits(name)) return -1;
    if (sscanf(name, "%4d%2d%2d%2d%2d%2d", &day.tm_year, &day.tm_mon, &day.tm_mday, &day.tm_hour, &day.tm_min,
               &day.tm_sec) != 6)
        return -1;
    day.tm_year -= 1900;
    day.tm_mon -= 1;
    day.tm_isdst = -1;
    return mktime(&day);
}

// The latest of a folder.
bool find_latest(const char* folder, void* answer) {
    int64_t& latest = *static_cast<int64_t*>(answer);
    const quorvel::Directory generations = quorvel::open_directory(folder);
    while (const struct dirent* entry = generations ? readdir(generations.get()) : nullptr)
        latest = std::max(latest, seconds_of_generation(entry->d_name));
    return static_cast<bool>(generations);
}

// The latest generation in a task's folder, below "DESTINATION/task-NAME/".
void find_generation(BackupFacts& task, std::string_view destination) {
    const Text<512> marker("/task-%s/", text_of(task.name));
    const size_t found = destination.find(marker.c_str());
    if (marker.cut || found == std::string_view::npos) return;
    Text<2048> folder;
    folder.add(front_of(destination, found + marker.length));
    int64_t latest = is_known(task.last_generation_seconds) ? task.last_generation_seconds.value : -1;
    if (quorvel::look_in_time({find_latest, folder, &latest, sizeof latest}) && latest >= 0)
        set(task.last_generation_seconds, latest);
}

// "SOURCE DESTINATION", or "SOURCE DESTINATION --link-dest TARGET". With a blank in a folder or a name, which others
// may choose, no word of it tells where it stands.
bool tells_its_words(std::string_view line) {
    const auto blanks = std::count(line.begin(), line.end(), ' ');
    return blanks == 1 || (blanks == 3 && line.find(" --link-dest ") != std::string_view::npos);
}

// A destination that keeps generations is a new one each time, and is shown up to its task.
void take_pair(BackupFacts& task, std::string_view line) {
    PairFacts* pair = line.empty() ? nullptr : add(task.pairs);
    if (pair == nullptr) return;
    if (!tells_its_words(line)) {
        for (Words* words : {&pair->source, &pair->destination})
            set_unknown(*words, "a folder or the task's name holds a blank");
        return;
    }
    set(pair->source, next_field(line, " "));
    const std::string_view destination = next_field(line, " ");
    find_generation(task, destination);
    const Text<512> marker("/task-%s/", text_of(task.name));
    const size_t found =
        line.empty() && task.keep_generations.value < 0 ? std::string_view::npos : destination.find(marker.c_str());
    set(pair->destination,
        found == std::string_view::npos ? destination : front_of(destination, found + marker.length - 1));
}

void gather_backup(Facts& facts, int number, const Quiet& quiet) {
    BackupFacts* task = add(facts.backups);
    if (task == nullptr) return;
    const Text<16> word("%d", number);
    int result = -1;
    quorvel::Heap<char> answer =
        answer_of(quiet, LibQuorvelBin_BackupHelperEntry, {"backup", "Info", word.c_str()}, result);
    set(task->number, number);
    take_backup_settings(*task, answer != nullptr ? answer.get() : "");
    set_unknown(task->last_generation_seconds, "the task keeps no generations here");
    answer = answer_of(quiet, LibQuorvelBin_BackupHelperEntry, {"backup", "Destinfo", word.c_str()}, result);
    task->pairs.reason = answer != nullptr ? nullptr : kNoAnswer;
    for (std::string_view text = answer != nullptr ? answer.get() : ""; !text.empty();)
        take_pair(*task, next_line(text));
}

int compare_numbers(const void* one, const void* other) {
    return *static_cast<const int*>(one) - *static_cast<const int*>(other);
}

}  // namespace

void gather_iscsi(Facts& facts, const Quiet& quiet) {
    take_lines(facts, facts.targets, quiet, "volume_info", take_target);
    take_lines(facts, facts.sessions, quiet, "session_info", take_session);
}

void gather_firewall(Facts& facts) {
    const FileText ports = read_file(quorvel::files::kServicePorts);
    facts.services.reason = ports.reason;
    const int port_count = LibQuorvelBin_GetConfOnOffValInIntByKey("DEVICE_NETWORK_NUM");
    if (ports.reason != nullptr) return;
    for (const firewall_service& service : set_firewall_tab)
        take_service(facts, service, ports.view(), std::min(port_count, 16));
}

void gather_backups(Facts& facts, const Quiet& quiet) {
    constexpr int kMostTasks = 64;
    int numbers[kMostTasks] = {}, count = 0;
    const quorvel::Directory settings = quorvel::open_directory("/etc/tevra");
    facts.backups.reason = settings ? nullptr : "there is no /etc/tevra";
    while (const struct dirent* entry = settings ? readdir(settings.get()) : nullptr) {
        const char* number = entry->d_name + strlen("backup");
        if (!quorvel::starts_with(entry->d_name, "backup") || !quorvel::is_all_digits(number)) continue;
        if (count < kMostTasks && strlen(number) < 9) numbers[count++] = quorvel::leading_int(number);
    }
    qsort(numbers, static_cast<size_t>(count), sizeof *numbers, compare_numbers);
    for (int i = 0; i < count; i++)
        gather_backup(facts, numbers[i], quiet);
}

}  // namespace report
