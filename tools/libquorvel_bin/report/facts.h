// What is known of the whole appliance: one plain structure, gathered once, that every form walks.
//
// A fact that could not be found out carries the reason. Texts are UTF-8 without control characters, whatever bytes
// the machine gave; numbers are in base units.
#pragma once

#include <stddef.h>
#include <stdint.h>
#include <stdlib.h>

#include <new>
#include <string_view>
#include <utility>

#include "foundation/handles.h"

namespace report {

inline constexpr char kNotAsked[] = "not asked for";
inline constexpr char kNoMemory[] = "out of memory";
inline constexpr char kTooMany[] = "more than 1024 of them";
inline constexpr size_t kMostRecords = 1024;

// The reason of a fact is null when it is known.
struct Number {
    int64_t value = 0;
    const char* reason = kNotAsked;
};

struct Truth {
    bool value = false;
    const char* reason = kNotAsked;
};

struct Words {
    quorvel::Heap<char> value;
    const char* reason = kNotAsked;
};

template <typename Fact>
[[nodiscard]] bool is_known(const Fact& fact) {
    return fact.reason == nullptr;
}

void set(Number& number, int64_t value);
void set(Truth& truth, bool value);
/// Takes any bytes: what is no UTF-8 is read in the appliance's code page, and what that does not have is escaped.
void set(Words& words, std::string_view text);

template <typename Fact>
void set_unknown(Fact& fact, const char* reason) {
    fact.reason = reason;
}

/// A number that the library tells as -1, and a text that it leaves empty, when it does not know.
void set_unless_negative(Number& number, int64_t value, const char* reason);
void set_unless_empty(Words& words, std::string_view text, const char* reason);

/// A known text, or "".
[[nodiscard]] inline const char* text_of(const Words& words) {
    return is_known(words) ? words.value.get() : "";
}

/// Records in the order in which they were added.
template <typename Record>
struct List {
    Record* items = nullptr;
    size_t count = 0, room = 0;
    const char* reason = kNotAsked;  // null when the list is known; it may be empty then

    List() = default;
    List(const List&) = delete;
    List& operator=(const List&) = delete;
    List(List&& other) noexcept
        : items(std::exchange(other.items, nullptr)),
          count(std::exchange(other.count, 0)),
          room(std::exchange(other.room, 0)),
          reason(other.reason) {}
    ~List() {
        for (size_t i = 0; i < count; i++)
            items[i].~Record();
        free(items);
    }
    [[nodiscard]] Record* begin() const { return items; }
    [[nodiscard]] Record* end() const { return items + count; }
};

/// A fresh record at the end of a list; null when memory is short or the list as long as it may get: it is not known
/// then.
template <typename Record>
[[nodiscard]] Record* add(List<Record>& list) {
    if (list.count == kMostRecords) {
        list.reason = kTooMany;
        return nullptr;
    }
    if (list.count == list.room) {
        const size_t room = 2 * list.room + 8;
        auto* grown = static_cast<Record*>(malloc(room * sizeof(Record)));
        if (grown == nullptr) {
            list.reason = kNoMemory;
            return nullptr;
        }
        for (size_t i = 0; i < list.count; i++) {
            new (&grown[i]) Record(std::move(list.items[i]));
            list.items[i].~Record();
        }
        free(list.items);
        list.items = grown;
        list.room = room;
    }
    return new (&list.items[list.count++]) Record();
}

struct SystemFacts {
    Words hostname, platform, series, product_series, product_name, product_id;
    Words firmware_version, firmware_sub_version, firmware_build_date, kernel;
    Number max_disks, max_usb_disks, max_arrays;
    Words front_panel;
    Words spool_directory;
    Number spool_size_bytes, spool_free_bytes;
    Truth bonding;
};

struct DiskFacts {
    int kind = 0;  // DISK_PATH_...; DISK_PATH_END for a disk without a name
    Words name, place, device, address;
    Number slot;
    Truth present, powered, asleep;
    Words model, serial;
    Number size_bytes, temperature_celsius, read_errors;
    Words status;  // the word that the disk status file has for it
    Words array;   // the array that the kernel has it in
    Truth mine, lvm;
    Words signature_version, signature_disk, signature_mac, signature_use, signature_encryption;
    Words superblock_uuid, superblock_level;
    Number superblock_minor, superblock_raid_devices, superblock_total_devices;
};

struct MemberFacts {
    Words device, disk, state;
    Number role, errors;
};

struct ArrayFacts {
    Words name, device, status, level, state, metadata, uuid, sync_action;
    Number raid_disks, active_disks, missing_disks, spare_disks, failed_disks;
    Number size_bytes, sync_done_bytes, sync_total_bytes;
    List<MemberFacts> members;
};

struct VolumeFacts {
    Words mount_point, device, type;
    Number size_bytes, used_bytes, free_bytes;
};

struct PhysicalVolumeFacts {
    Words device, format, group;
};

struct LogicalVolumeFacts {
    Words device;
};

struct InterfaceFacts {
    Words name, mac, address, netmask, network, broadcast;
    Number prefix_length, mtu_bytes, speed_bits_per_second;
    Truth up, link, full_duplex, enabled, dhcp;
};

struct NameServerFacts {
    Words address;
    Truth answers;
};

struct TargetFacts {
    Number number, tid;
    Words device, name;
};

struct SessionFacts {
    Number tid;
    Words target, sid, initiator, address;
};

struct GateFacts {
    Words interface;
    Truth open;
};

struct ServiceFacts {
    Words name;
    const int* ports = nullptr;  // the library's own table
    int port_count = 0;
    List<GateFacts> gates;
};

struct PairFacts {
    Words source, destination;
};

struct BackupFacts {
    Number number;
    Words name, status, type, start_time, week_day, overwrite, encrypted, compressed, trashbox, mirror, logfile, force,
        hardlink;
    Number keep_generations, last_generation_seconds;
    List<PairFacts> pairs;
};

// How bad a problem is; the worst one is the verdict. What is not known could be worse than what is only degraded.
enum Severity { kWell = 0, kDegraded = 1, kUnknown = 3, kAtRisk = 2 };

struct Problem {
    Severity severity = kWell;
    Words subject, text;
};

struct Facts {
    int64_t taken_seconds = 0;
    SystemFacts system;
    List<DiskFacts> disks;
    List<ArrayFacts> arrays;
    List<VolumeFacts> volumes;
    List<PhysicalVolumeFacts> physical_volumes;
    List<LogicalVolumeFacts> logical_volumes;
    List<InterfaceFacts> interfaces;
    List<NameServerFacts> name_servers;
    List<TargetFacts> targets;
    List<SessionFacts> sessions;
    List<ServiceFacts> services;
    List<BackupFacts> backups;
    List<Problem> problems;
    Severity verdict = kUnknown;
};

}  // namespace report
