// The report as one JSON object.
#include "report/json_records.h"

namespace report {

namespace {

constexpr int kFormat = 1;

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
