#include "report/rooms.h"

#include <string.h>

#include <algorithm>

#include "libquorvel_bin.h"

namespace report {

namespace {

using quorvel::Text;

void add_words(Row& row, const Words& words, Paint paint = Paint::kNone) {
    add_cell(row, is_known(words) ? text_of(words) : "?", is_known(words) ? paint : Paint::kFaint);
}

template <size_t Size>
void add_text(Row& row, const Text<Size>& text, Paint paint = Paint::kNone) {
    add_cell(row, text.c_str(), paint);
}

void add_temperature(Row& row, const DiskFacts& disk) {
    if (is_known(disk.temperature_celsius)) {
        return add_text(row, Text<32>("%d °C", static_cast<int>(disk.temperature_celsius.value)));
    }
    const bool asleep = is_known(disk.asleep) && disk.asleep.value;
    add_cell(row, asleep ? "asleep" : "?", Paint::kFaint);
}

void add_errors(Row& row, const Number& errors) {
    if (!is_known(errors) || errors.value == 0) return (void)add_cell(row, "");
    add_text(row, Text<32>("%d", static_cast<int>(errors.value)), Paint::kWarning);
}

// What a disk is in: as the kernel has it, with a word for a spare; or else as the status file has it.
void add_use(Row& row, const DiskFacts& disk) {
    if (!is_known(disk.array)) return add_words(row, disk.status);
    const bool standby = strcmp(text_of(disk.status), "standby") == 0;
    add_text(row, Text<160>("%s%s", text_of(disk.array), standby ? " standby" : ""));
}

void add_disk(List<Row>& rows, const DiskFacts& disk) {
    Row* row = add(rows);
    if (row == nullptr) return;
    add_words(*row, is_known(disk.name) ? disk.name : disk.device);
    if (!is_known(disk.device)) {
        const bool present = is_known(disk.present) && disk.present.value;
        add_cell(*row, present ? "no device" : "empty", present ? Paint::kWarning : Paint::kFaint);
        return;
    }
    add_cell(*row, text_of(disk.device));
    add_cell(*row, text_of(disk.address));
    add_bytes(*row, disk.size_bytes);
    if (disk.kind == DISK_PATH_INTERNAL) {
        add_temperature(*row, disk);
        add_use(*row, disk);
    } else {
        add_cell(*row, "");
        add_cell(*row, "");
    }
    add_errors(*row, disk.read_errors);
    add_cell(*row, text_of(disk.model));
    add_cell(*row, text_of(disk.serial));
}

void add_members(Row& row, const ArrayFacts& array) {
    if (!is_known(array.raid_disks) || !is_known(array.missing_disks)) return (void)add_cell(row, "?", Paint::kFaint);
    const auto all = static_cast<int>(array.raid_disks.value);
    const auto missing = static_cast<int>(array.missing_disks.value);
    add_text(row, Text<64>("%d of %d disks", all - missing, all), missing > 0 ? Paint::kBad : Paint::kGood);
}

void add_array(List<Row>& rows, const ArrayFacts& array) {
    Row* row = add(rows);
    if (row == nullptr) return;
    add_words(*row, is_known(array.name) ? array.name : array.device);
    add_words(*row, array.device);
    add_words(*row, array.state);
    add_words(*row, array.level);
    add_members(*row, array);
    add_bytes(*row, array.size_bytes);
    if (is_known(array.sync_total_bytes)) add_words(*row, array.sync_action, Paint::kWarning);
}

void add_volume(List<Row>& rows, const VolumeFacts& volume) {
    Row* row = add(rows);
    if (row == nullptr) return;
    for (const Words* words : {&volume.mount_point, &volume.device, &volume.type})
        add_words(*row, *words);
    add_bytes(*row, volume.size_bytes);
    if (!is_known(volume.size_bytes) || volume.size_bytes.value <= 0) return;
    const double share = static_cast<double>(volume.used_bytes.value) / static_cast<double>(volume.size_bytes.value);
    add_text(*row, Text<32>("%d %%", static_cast<int>(100 * share)), share < 0.95 ? Paint::kNone : Paint::kWarning);
}

void add_interface(List<Row>& rows, const InterfaceFacts& interface) {
    Row* row = strcmp(text_of(interface.name), "lo") != 0 ? add(rows) : nullptr;
    if (row == nullptr) return;
    add_words(*row, interface.name);
    if (is_known(interface.address)) {
        add_text(*row, Text<64>("%s/%d", text_of(interface.address), static_cast<int>(interface.prefix_length.value)));
    } else {
        add_cell(*row, "");
    }
    const bool down = !is_known(interface.link) || !interface.link.value;
    add_cell(*row, down ? "link down" : "link up", down ? Paint::kWarning : Paint::kNone);
    add_speed(*row, interface.speed_bits_per_second);
    add_words(*row, interface.mac);
    if (is_known(interface.dhcp) && interface.dhcp.value) add_cell(*row, "DHCP");
}

void add_server(List<Row>& rows, const NameServerFacts& server) {
    Row* row = add(rows);
    if (row == nullptr) return;
    add_words(*row, server.address);
    if (is_known(server.answers)) add_cell(*row, server.answers.value ? "answers" : "does not answer");
}

void add_target(List<Row>& rows, const TargetFacts& target, const Facts& facts) {
    Row* row = add(rows);
    if (row == nullptr) return;
    add_words(*row, target.name);
    add_words(*row, target.device);
    const auto connected =
        std::count_if(facts.sessions.begin(), facts.sessions.end(), [&target](const SessionFacts& one) {
            return is_known(one.sid) && is_known(target.tid) && one.tid.value == target.tid.value;
        });
    add_text(*row, Text<32>("%d connections", static_cast<int>(connected)));
}

void add_closed_service(List<Row>& rows, const ServiceFacts& service) {
    Text<128> closed;
    for (const GateFacts& gate : service.gates) {
        if (!gate.open.value) closed.append("%s%s", closed.length > 0 ? " " : "", text_of(gate.interface));
    }
    Row* row = closed.length > 0 ? add(rows) : nullptr;
    if (row == nullptr) return;
    add_words(*row, service.name);
    add_text(*row, closed);
}

void add_backup(List<Row>& rows, const BackupFacts& task) {
    Row* row = add(rows);
    if (row == nullptr) return;
    add_text(*row, Text<32>("%d", static_cast<int>(task.number.value)));
    add_words(*row, task.name);
    add_words(*row, task.status, strcmp(text_of(task.status), "err") == 0 ? Paint::kBad : Paint::kNone);
    const bool weekly = strcmp(text_of(task.type), "week") == 0;
    add_text(*row, Text<64>("%s%s%s %s", text_of(task.type), weekly ? " " : "", weekly ? text_of(task.week_day) : "",
                            text_of(task.start_time)));
    if (task.pairs.count == 0) return;
    const PairFacts& pair = task.pairs.items[0];
    if (!is_known(pair.source)) return add_words(*row, pair.source);
    add_text(*row, Text<160>("%s to %s", text_of(pair.source), text_of(pair.destination)));
}

// A room that could not be looked at says so in its only row.
template <typename Record, typename AddRow>
void add_room(List<Row>& rows, const List<Record>& list, const char* name, AddRow add_row) {
    for (const Record& record : list)
        add_row(rows, record);
    if (is_known(list)) return;
    Row* row = add(rows);
    if (row != nullptr) add_text(*row, Text<160>("%s: not known (%s)", name, list.reason), Paint::kWarning);
}

// A room whose every row comes from a record of one list.
template <typename Record, typename AddRow>
void add_list_room(List<Room>& rooms, const char* heading, std::initializer_list<const char*> columns,
                   const List<Record>& list, AddRow add_row) {
    Room* room = add(rooms);
    if (room == nullptr) return;
    room->heading = heading;
    std::copy(columns.begin(), columns.end(), room->columns);
    add_room(room->rows, list, heading, add_row);
}

}  // namespace

List<Room> rooms_of(const Facts& facts) {
    List<Room> rooms;
    add_list_room(rooms, "Disks",
                  {"Place", "Device", "Address", "Size", "Temperature", "Use", "Errors", "Model", "Serial number"},
                  facts.disks, add_disk);
    add_list_room(rooms, "Arrays", {"Name", "Device", "State", "Level", "Members", "Size", "Action"}, facts.arrays,
                  add_array);
    add_list_room(rooms, "Volumes", {"Mounted at", "Device", "Type", "Size", "Used"}, facts.volumes, add_volume);
    add_list_room(rooms, "Network", {"Name", "Address", "Link", "Speed", "Hardware address", "By"}, facts.interfaces,
                  add_interface);
    add_list_room(rooms, "Name servers", {"Address", "Answers"}, facts.name_servers, add_server);
    add_list_room(rooms, "iSCSI targets", {"Name", "Device", "In use"}, facts.targets,
                  [&facts](List<Row>& rows, const TargetFacts& target) { add_target(rows, target, facts); });
    add_list_room(rooms, "Backup", {"Task", "Name", "Status", "When", "From and to"}, facts.backups, add_backup);
    add_list_room(rooms, "Closed by the firewall", {"Service", "Interfaces"}, facts.services, add_closed_service);
    return rooms;
}

}  // namespace report
