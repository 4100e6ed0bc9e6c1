// The report as one JSON object. Every record has an object "unknown": the name of each field that is null, and the
// reason.
#include <string.h>

#include "json.h"
#include "libquorvel_bin.h"
#include "report/fields.h"
#include "report/forms.h"

namespace report {

namespace {

constexpr int kFormat = 1;

template <typename Record>
void write_value(Json* json, const Record& record, const Field<Record>& field) {
    if (reason_of(record, field) != nullptr) {
        json_null(json, field.name);
    } else if (field.words != nullptr) {
        json_text(json, field.name, text_of(record.*field.words));
    } else if (field.number != nullptr) {
        json_number(json, field.name, (record.*field.number).value);
    } else {
        json_truth(json, field.name, (record.*field.truth).value);
    }
}

// The reasons of a record's own fields; the object stays open.
template <typename Record>
void begin_unknown(Json* json, const Record& record) {
    json_object(json, "unknown");
    for (const Field<Record>& field : fields_of<Record>()) {
        if (const char* reason = reason_of(record, field)) json_text(json, field.name, reason);
    }
}

template <typename Record>
void write_fields(Json* json, const Record& record) {
    for (const Field<Record>& field : fields_of<Record>())
        write_value(json, record, field);
}

template <typename Record>
void write_record(Json* json, const Record& record);

template <typename Record>
void write_list(Json* json, const char* name, const List<Record>& list) {
    if (!is_known(list)) return json_null(json, name);
    json_array(json, name);
    for (const Record& record : list)
        write_record(json, record);
    json_end(json);
}

template <typename Record>
void write_list_reason(Json* json, const char* name, const List<Record>& list) {
    if (!is_known(list)) json_text(json, name, list.reason);
}

// What a record holds beside its fields: nothing, or lists, each with its reason.
template <typename Record>
void write_more(Json*, const Record&) {}
template <typename Record>
void write_more_reasons(Json*, const Record&) {}

template <>
void write_more(Json* json, const DiskFacts& disk) {
    static constexpr const char* kKinds[] = {"internal", "usb", "boot", "other"};
    const bool named = disk.kind >= 0 && disk.kind < DISK_PATH_END;
    json_text(json, "kind", kKinds[named ? disk.kind : DISK_PATH_END]);
}

template <>
void write_more(Json* json, const ArrayFacts& array) {
    write_list(json, "members", array.members);
}
template <>
void write_more_reasons(Json* json, const ArrayFacts& array) {
    write_list_reason(json, "members", array.members);
}

template <>
void write_more(Json* json, const ServiceFacts& service) {
    json_array(json, "ports");
    for (int i = 0; i < service.port_count; i++)
        json_number(json, nullptr, service.ports[i]);
    json_end(json);
    write_list(json, "gates", service.gates);
}
template <>
void write_more_reasons(Json* json, const ServiceFacts& service) {
    write_list_reason(json, "gates", service.gates);
}

template <>
void write_more(Json* json, const BackupFacts& task) {
    write_list(json, "pairs", task.pairs);
}
template <>
void write_more_reasons(Json* json, const BackupFacts& task) {
    write_list_reason(json, "pairs", task.pairs);
}

template <>
void write_more(Json* json, const Problem& problem) {
    json_text(json, "severity", word_of(problem.severity));
}

template <typename Record>
void write_record(Json* json, const Record& record) {
    json_object(json);
    write_fields(json, record);
    write_more(json, record);
    begin_unknown(json, record);
    write_more_reasons(json, record);
    json_end(json);
    json_end(json);
}

// Calls `visit` with every list of the report and its name.
template <typename Visit>
void for_each_list(const Facts& facts, Visit visit) {
    visit("disks", facts.disks);
    visit("arrays", facts.arrays);
    visit("volumes", facts.volumes);
    visit("physical_volumes", facts.physical_volumes);
    visit("logical_volumes", facts.logical_volumes);
    visit("interfaces", facts.interfaces);
    visit("name_servers", facts.name_servers);
    visit("iscsi_targets", facts.targets);
    visit("iscsi_sessions", facts.sessions);
    visit("firewall", facts.services);
    visit("backup_tasks", facts.backups);
}

}  // namespace

bool print_json(const Facts& facts, FILE* stream) {
    Json* json = json_start(stream);
    json_object(json);
    json_number(json, "format", kFormat);
    json_number(json, "taken_seconds", facts.taken_seconds);
    json_number(json, "verdict", facts.verdict);
    write_list(json, "problems", facts.problems);
    json_object(json, "system");
    write_fields(json, facts.system);
    begin_unknown(json, facts.system);
    json_end(json);
    json_end(json);
    for_each_list(facts, [json](const char* name, const auto& list) { write_list(json, name, list); });
    json_object(json, "unknown");
    write_list_reason(json, "problems", facts.problems);
    for_each_list(facts, [json](const char* name, const auto& list) { write_list_reason(json, name, list); });
    json_end(json);
    json_end(json);
    return json_finish(json);
}

}  // namespace report
