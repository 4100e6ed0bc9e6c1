// Records of the report in JSON, whole or some of their fields. Every record has an object "unknown": the name of each
// field that is null, and the reason.
#pragma once

#include <string.h>

#include <algorithm>
#include <span>

#include "json.h"
#include "libquorvel_bin.h"
#include "report/fields.h"
#include "report/forms.h"

namespace report {

/// Names of the fields that are written; all of them when there are none.
using Names = std::span<const char* const>;

[[nodiscard]] inline bool is_wanted(Names names, const char* name) {
    return names.empty() ||
           std::any_of(names.begin(), names.end(), [name](const char* one) { return strcmp(one, name) == 0; });
}

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
void begin_unknown(Json* json, const Record& record, Names names = {}) {
    json_object(json, "unknown");
    for (const Field<Record>& field : fields_of<Record>()) {
        const char* reason = is_wanted(names, field.name) ? reason_of(record, field) : nullptr;
        if (reason != nullptr) json_text(json, field.name, reason);
    }
}

template <typename Record>
void write_fields(Json* json, const Record& record, Names names = {}) {
    for (const Field<Record>& field : fields_of<Record>()) {
        if (is_wanted(names, field.name)) write_value(json, record, field);
    }
}

template <typename Record>
void write_record(Json* json, const Record& record, Names names);

template <typename Record>
void write_list(Json* json, const char* name, const List<Record>& list, Names names = {}) {
    if (!is_known(list)) return json_null(json, name);
    json_array(json, name);
    for (const Record& record : list)
        write_record(json, record, names);
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

inline void write_more(Json* json, const DiskFacts& disk) {
    static constexpr const char* kKinds[] = {"internal", "usb", "boot", "other"};
    const bool named = disk.kind >= 0 && disk.kind < DISK_PATH_END;
    json_text(json, "kind", kKinds[named ? disk.kind : DISK_PATH_END]);
}

inline void write_more(Json* json, const ArrayFacts& array) {
    write_list(json, "members", array.members);
}
inline void write_more_reasons(Json* json, const ArrayFacts& array) {
    write_list_reason(json, "members", array.members);
}

inline void write_more(Json* json, const ServiceFacts& service) {
    json_array(json, "ports");
    for (int i = 0; i < service.port_count; i++)
        json_number(json, nullptr, service.ports[i]);
    json_end(json);
    write_list(json, "gates", service.gates);
}
inline void write_more_reasons(Json* json, const ServiceFacts& service) {
    write_list_reason(json, "gates", service.gates);
}

inline void write_more(Json* json, const BackupFacts& task) {
    write_list(json, "pairs", task.pairs);
}
inline void write_more_reasons(Json* json, const BackupFacts& task) {
    write_list_reason(json, "pairs", task.pairs);
}

inline void write_more(Json* json, const Problem& problem) {
    json_text(json, "severity", word_of(problem.severity));
}

template <typename Record>
void write_record(Json* json, const Record& record, Names names) {
    json_object(json);
    write_fields(json, record, names);
    write_more(json, record);
    begin_unknown(json, record, names);
    write_more_reasons(json, record);
    json_end(json);
    json_end(json);
}

}  // namespace report
