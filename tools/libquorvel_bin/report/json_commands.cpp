// Single commands as JSON objects: records of the report, or what the command prints, taken apart. The exit status is
// that of the command.
#include "json_commands.h"

#include <stdio.h>
#include <string.h>

#include "command.h"
#include "foundation/appliance_files.h"
#include "foundation/text.h"
#include "libquorvel_bin.h"
#include "report/gather.h"
#include "report/json_records.h"
#include "report/sources.h"

namespace {

using namespace report;

// What a form is asked with: the word behind the command's, or null, and one behind that.
struct Question {
    const char* word;
    const char* subject;
};

// The status: that of a whole document is `missing` when what was asked for is not there.
[[nodiscard]] int finish(Json* json, bool found = true, int missing = kExitNo) {
    json_end(json);
    if (!json_finish(json)) return kExitNo;
    return found ? kExitOk : missing;
}

[[nodiscard]] Json* start() {
    Json* json = json_start(stdout);
    json_object(json);
    return json;
}

void gather_parts(Facts& facts, unsigned parts) {
    Request request;
    request.parts = parts;
    gather(facts, request);
}

template <typename Record>
[[nodiscard]] int print_list(const char* name, const List<Record>& list, Names names = {}, int missing = kExitNo) {
    Json* json = start();
    write_list(json, name, list, names);
    return finish(json, is_known(list), missing);
}

// One record of a list, by its name or device, or an empty list.
template <typename Record>
[[nodiscard]] int print_one(const char* name, const List<Record>& list, const char* subject, int missing) {
    const char* last = quorvel::last_component(subject);
    Json* json = start();
    bool found = false;
    json_array(json, name);
    for (const Record& record : list) {
        if (strcmp(text_of(record.name), last) != 0 && strcmp(text_of(record.device), last) != 0) continue;
        write_record(json, record, {});
        found = true;
    }
    json_end(json);
    return finish(json, found, missing);
}

// ---- Disks and arrays ----

int print_disks(const Question&) {
    static constexpr const char* kNames[] = {"name", "device", "address", "slot"};
    Facts facts;
    gather_parts(facts, kDiskListPart);
    return print_list("disks", facts.disks, kNames);
}

// "md" answers 0 also for what is not listed.
template <typename Record>
[[nodiscard]] int print_records(const char* name, const List<Record>& list, const char* subject) {
    return subject == nullptr ? print_list(name, list, {}, kExitOk) : print_one(name, list, subject, kExitOk);
}

int print_disk_records(const Question& question) {
    Facts facts;
    gather_parts(facts, kDiskListPart | kDiskPart | kArrayPart);
    return print_records("disks", facts.disks, question.subject);
}

int print_array_records(const Question& question) {
    Facts facts;
    gather_parts(facts, kDiskListPart | kDiskPart | kArrayPart);
    return print_records("arrays", facts.arrays, question.subject);
}

void write_number(Json* json, const char* key, int number) {
    if (number < 0) return json_null(json, key);
    json_number(json, key, number);
}

void write_text(Json* json, const char* key, const char* text) {
    if (text == nullptr) return json_null(json, key);
    json_text(json, key, text);
}

void write_slot(Json* json, const struct disk_path& row) {
    static constexpr const char* kKinds[] = {"internal", "usb", "boot"};
    json_object(json);
    json_text(json, "kind", kKinds[row.type]);
    json_number(json, "slot", row.slot);
    write_text(json, "path", row.path);
    write_text(json, "address", row.scsi_id);
    write_number(json, "port", row.usb_port1);
    write_number(json, "hub_port", row.usb_port2);
    write_text(json, "word", row.diskname);
    json_end(json);
}

int print_slots(const Question&) {
    struct disk_path* configured = get_DiskOrderConfig();
    const struct disk_path* set = configured != nullptr ? configured : LibQuorvelBin_GetPlatformDiskSet();
    Json* json = start();
    json_array(json, "slots");
    for (; set != nullptr && set->type != DISK_PATH_END; set++)
        write_slot(json, *set);
    json_end(json);
    disk_path_free(configured);
    return finish(json);
}

// ---- Network ----

int print_addresses(const Question&) {
    static constexpr const char* kNames[] = {"name", "address", "netmask", "prefix_length", "network", "broadcast"};
    Facts facts;
    gather_parts(facts, kInterfacePart);
    return print_list("interfaces", facts.interfaces, kNames);
}

bool is_port(const InterfaceFacts& interface, const char* subject, int ports) {
    const char* name = text_of(interface.name);
    if (subject != nullptr) return strcmp(name, subject) == 0;
    const int index = strncmp(name, "eth", 3) == 0 ? LibQuorvelBin_GetInterfaceIndex(name) : -1;
    return index >= 0 && index < ports;
}

// As many ports as the model has, or the one that is named.
int print_ethernet(const Question& question) {
    static constexpr const char* kNames[] = {"name",        "mac",      "link", "speed_bits_per_second",
                                             "full_duplex", "mtu_bytes"};
    Facts facts;
    gather_parts(facts, kInterfacePart);
    const int ports = LibQuorvelBin_GetConfOnOffValInIntByKey("DEVICE_NETWORK_NUM");
    int found = 0;
    Json* json = start();
    json_array(json, "interfaces");
    for (const InterfaceFacts& interface : facts.interfaces) {
        if (!is_port(interface, question.word, ports)) continue;
        write_record(json, interface, kNames);
        found++;
    }
    json_end(json);
    return finish(json, found >= (question.word != nullptr ? 1 : ports));
}

// ---- Services ----

int print_sessions(const Question&) {
    Facts facts;
    gather_parts(facts, kIscsiPart);
    return print_list("iscsi_sessions", facts.sessions);
}

int print_targets(const Question&) {
    Facts facts;
    gather_parts(facts, kIscsiPart);
    return print_list("iscsi_targets", facts.targets);
}

int print_iscsi(const Question&) {
    Facts facts;
    gather_parts(facts, kIscsiPart);
    Json* json = start();
    write_list(json, "iscsi_targets", facts.targets);
    write_list(json, "iscsi_sessions", facts.sessions);
    return finish(json);
}

int print_backups(const Question&) {
    Facts facts;
    gather_parts(facts, kBackupPart);
    return print_list("backup_tasks", facts.backups);
}

// ---- Settings ----

void write_setting(Json* json, std::string_view line) {
    json_object(json);
    json_text(json, "name", next_field(line, "="));
    json_text(json, "value", line);
    json_end(json);
}

// A listing has the file on its first line and the settings behind two tabs each; anything else is one value.
void write_settings(Json* json, std::string_view text) {
    if (!text.starts_with("\t.")) {
        json_text(json, "value", front_of(text, text.empty() ? 0 : text.size() - 1));
        return;
    }
    json_array(json, "settings");
    for (std::string_view line; !text.empty();) {
        line = next_line(text);
        if (line.starts_with("\t\t")) write_setting(json, behind(line, 2));
    }
    json_end(json);
}

int print_config(const Question& question) {
    int result = -1;
    quorvel::Heap<char> answer;
    {
        const Quiet quiet;
        answer = answer_of(quiet, LibQuorvelBin_ConfigHelper, {"", "config", "read", question.subject}, result);
    }
    if (result != 0 || answer == nullptr) {
        if (answer != nullptr) fputs(answer.get(), stderr);
        return kExitNo;
    }
    Json* json = start();
    json_text(json, "key", question.subject);
    write_settings(json, answer.get());
    return finish(json);
}

// The first line of a key holds, as for every reader of the file.
void write_feature(Json* json, const char* key) {
    char value[512] = "";
    if (LibQuorvelBin_GetConfValInStringByKey(value, sizeof value, key) != 0) return;
    json_object(json);
    json_text(json, "name", key);
    json_text(json, "value", value);
    write_number(json, "number", LibQuorvelBin_GetConfOnOffValInIntByKey(key));
    json_end(json);
}

bool key_of(std::string_view line, quorvel::Text<512>& key) {
    line = without_blanks(line);
    if (line.starts_with('#') || line.find('=') == std::string_view::npos) return false;
    const std::string_view word = without_blanks(next_field(line, "="));
    key.add(front_of(word, word.find_first_of(" \t")));
    return key.length > 0;
}

bool is_first_line_of(const char* key, std::string_view text, const char* line) {
    while (text.data() < line) {
        quorvel::Text<512> other;
        if (key_of(next_line(text), other) && strcmp(other.c_str(), key) == 0) return text.data() > line;
    }
    return true;
}

int print_features(const Question& question) {
    const FileText file = read_file(quorvel::files::kFeature);
    bool found = question.word == nullptr && file.reason == nullptr;
    Json* json = start();
    json_array(json, "features");
    size_t lines = 0;
    for (std::string_view text = file.view(); !text.empty() && lines < kMostRecords; lines++) {
        quorvel::Text<512> key;
        const std::string_view line = next_line(text);
        if (!key_of(line, key) || !is_first_line_of(key.c_str(), file.view(), line.data())) continue;
        if (question.word != nullptr && strcmp(question.word, key.c_str()) != 0) continue;
        write_feature(json, key.c_str());
        found = true;
    }
    json_end(json);
    return finish(json, found);
}

// ---- The forms ----

struct Form {
    const char* command;
    const char* word;  // behind it; "*" for any, null for none
    bool subject;      // whether one more stands behind that
    int (*print)(const Question& question);
};

constexpr Form kForms[] = {
    {"disks",   nullptr,        false, print_disks        },
    {"slots",   nullptr,        false, print_slots        },
    {"md",      "diskinfo",     false, print_disk_records },
    {"md",      "diskinfo",     true,  print_disk_records },
    {"md",      "mdinfo",       false, print_array_records},
    {"md",      "mdinfo",       true,  print_array_records},
    {"net",     nullptr,        false, print_addresses    },
    {"ethinfo", nullptr,        false, print_ethernet     },
    {"ethinfo", "*",            false, print_ethernet     },
    {"iscsi",   nullptr,        false, print_iscsi        },
    {"iscsi",   "session_info", false, print_sessions     },
    {"iscsi",   "volume_info",  false, print_targets      },
    {"backup",  nullptr,        false, print_backups      },
    {"config",  "read",         true,  print_config       },
    {"feature", nullptr,        false, print_features     },
    {"feature", "*",            false, print_features     },
};

// The words between the command's and "--json".
bool is_asked(const Form& form, int argc, char** argv) {
    const int given = argc - 3;
    if (strcmp(form.command, argv[1]) != 0 || given != (form.word != nullptr ? 1 : 0) + (form.subject ? 1 : 0))
        return false;
    return form.word == nullptr || strcmp(form.word, "*") == 0 || strcmp(form.word, argv[2]) == 0;
}

}  // namespace

bool run_as_json(int argc, char** argv, int& status) {
    if (argc < 3 || strcmp(argv[argc - 1], "--json") != 0) return false;
    for (const Form& form : kForms) {
        if (!is_asked(form, argc, argv)) continue;
        from_cmdline = 0;
        status = form.print({form.word != nullptr ? argv[2] : nullptr, form.subject ? argv[3] : nullptr});
        return true;
    }
    return false;
}
