// The report as metrics, in the text that Prometheus and OpenMetrics readers share: one family behind the other, each
// with its help and its type. What is not known has no sample; what is told by words stands in labels of an "_info"
// sample.
#include <inttypes.h>
#include <string.h>

#include <algorithm>
#include <span>

#include "libquorvel_bin.h"
#include "report/forms.h"

namespace report {

namespace {

// Label values: "\", '"' and line feeds are written with a backslash. Line feeds cannot occur in facts.
void print_label(FILE* stream, const char* name, const char* value, bool first) {
    fprintf(stream, "%s%s=\"", first ? "" : ",", name);
    for (const char* c = value; *c != '\0'; c++) {
        if (*c == '\\' || *c == '"') fputc('\\', stream);
        fputc(*c, stream);
    }
    fputc('"', stream);
}

void begin_family(FILE* stream, const char* name, const char* type, const char* help) {
    fprintf(stream, "# HELP quorvel_%s %s\n# TYPE quorvel_%s %s\n", name, help, name, type);
}

/// A label of every sample of a record.
template <typename Record>
struct Label {
    const char* name;
    Words Record::*words = nullptr;
    Number Record::*number = nullptr;
};

/// A family with a sample a record.
template <typename Record>
struct Family {
    const char* name;
    const char* type;
    const char* help;
    Number Record::*number = nullptr;
    Truth Record::*truth = nullptr;
    double unit = 1;  // what the fact is multiplied with
};

template <typename Record>
const char* value_of(const Record& record, const Label<Record>& label, char (&digits)[32]) {
    if (label.words != nullptr) return text_of(record.*label.words);
    digits[0] = '\0';
    if (is_known(record.*label.number)) snprintf(digits, sizeof digits, "%" PRId64, (record.*label.number).value);
    return digits;
}

template <typename Record>
void print_labels(FILE* stream, const Record& record, std::span<const Label<Record>> labels) {
    char digits[32];
    bool first = true;
    fputc('{', stream);
    for (const Label<Record>& label : labels) {
        print_label(stream, label.name, value_of(record, label, digits), first);
        first = false;
    }
    fputc('}', stream);
}

template <typename Record>
bool has_same_labels(const Record& one, const Record& other, std::span<const Label<Record>> labels) {
    char digits[32], other_digits[32];
    return std::all_of(labels.begin(), labels.end(), [&](const Label<Record>& label) {
        return strcmp(value_of(one, label, digits), value_of(other, label, other_digits)) == 0;
    });
}

// Two samples of one name and labels make a reader refuse the whole text: the first holds.
template <typename Record>
bool is_repeated(std::span<const Record> records, const Record& record, std::span<const Label<Record>> labels) {
    for (const Record& earlier : records) {
        if (&earlier == &record) return false;
        if (has_same_labels(earlier, record, labels)) return true;
    }
    return false;
}

template <typename Record>
bool has_sample(const Record& record, const Family<Record>& family) {
    if (family.number != nullptr) return is_known(record.*family.number);
    return family.truth == nullptr || is_known(record.*family.truth);
}

template <typename Record>
double value_of(const Record& record, const Family<Record>& family) {
    if (family.number != nullptr) return static_cast<double>((record.*family.number).value) * family.unit;
    return family.truth == nullptr || (record.*family.truth).value ? 1 : 0;
}

template <typename Record>
void print_family(FILE* stream, std::span<const Record> records, const Family<Record>& family,
                  std::span<const Label<Record>> labels) {
    bool begun = false;
    for (const Record& record : records) {
        if (!has_sample(record, family) || is_repeated(records, record, labels)) continue;
        if (!begun) begin_family(stream, family.name, family.type, family.help);
        begun = true;
        fprintf(stream, "quorvel_%s", family.name);
        print_labels(stream, record, labels);
        fprintf(stream, " %.17g\n", value_of(record, family));
    }
}

template <typename Record>
void print_families(FILE* stream, std::span<const Record> records, std::span<const Family<Record>> families,
                    std::span<const Label<Record>> labels) {
    for (const Family<Record>& family : families)
        print_family(stream, records, family, labels);
}

template <typename Record>
std::span<const Record> records_of(const List<Record>& list) {
    return {list.items, list.count};
}

// ---- The families ----

// clang-format off

constexpr char kGauge[] = "gauge";
constexpr char kCounter[] = "counter";

constexpr Label<SystemFacts> kSystemLabels[] = {
    {"hostname", &SystemFacts::hostname        },
    {"platform", &SystemFacts::platform        },
    {"series",   &SystemFacts::series          },
    {"product",  &SystemFacts::product_name    },
    {"firmware", &SystemFacts::firmware_version},
    {"kernel",   &SystemFacts::kernel          },
};
constexpr Family<SystemFacts> kSystemFamilies[] = {
    {"system_info", kGauge, "What the appliance is; always 1."},
};
constexpr Label<SystemFacts> kSpoolLabels[] = {
    {"directory", &SystemFacts::spool_directory},
};
constexpr Family<SystemFacts> kSpoolFamilies[] = {
    {"spool_size_bytes", kGauge, "Size of the file system that holds the spool.", &SystemFacts::spool_size_bytes        },
    {"spool_free_bytes", kGauge, "What of it users can still take.",              &SystemFacts::spool_free_bytes},
};

constexpr Label<DiskFacts> kDiskInfoLabels[] = {
    {"bay",    nullptr,            &DiskFacts::slot},
    {"disk",   &DiskFacts::name                    },
    {"device", &DiskFacts::device                  },
    {"model",  &DiskFacts::model                   },
    {"serial", &DiskFacts::serial                  },
    {"array",  &DiskFacts::array                   },
    {"status", &DiskFacts::status                  },
};
constexpr Family<DiskFacts> kDiskInfoFamilies[] = {
    {"disk_info", kGauge, "An internal bay and the disk in it; always 1."},
};
constexpr Label<DiskFacts> kDiskLabels[] = {
    {"bay", nullptr, &DiskFacts::slot},
};
constexpr Family<DiskFacts> kDiskFamilies[] = {
    {"disk_present",             kGauge,   "Whether a disk is in the bay.",                nullptr,                         &DiskFacts::present},
    {"disk_powered",             kGauge,   "Whether the bay has power.",                   nullptr,                         &DiskFacts::powered},
    {"disk_asleep",              kGauge,   "Whether the disk is in standby.",              nullptr,                         &DiskFacts::asleep },
    {"disk_mine",                kGauge,   "Whether this unit wrote the disk's signature.", nullptr,                        &DiskFacts::mine   },
    {"disk_size_bytes",          kGauge,   "Size of the disk.",                            &DiskFacts::size_bytes                              },
    {"disk_temperature_celsius", kGauge,   "Temperature of the disk.",                     &DiskFacts::temperature_celsius                     },
    {"disk_read_errors_total",   kCounter, "Read errors that the appliance counted.",      &DiskFacts::read_errors                             },
};

constexpr Label<ArrayFacts> kArrayInfoLabels[] = {
    {"array",    &ArrayFacts::name    },
    {"device",   &ArrayFacts::device  },
    {"level",    &ArrayFacts::level   },
    {"state",    &ArrayFacts::state   },
    {"metadata", &ArrayFacts::metadata},
    {"action",   &ArrayFacts::sync_action},
    {"status",   &ArrayFacts::status  },
};
constexpr Family<ArrayFacts> kArrayInfoFamilies[] = {
    {"array_info", kGauge, "An array, its state in the kernel and the status that is recorded; always 1."},
};
constexpr Label<ArrayFacts> kArrayLabels[] = {
    {"array",  &ArrayFacts::name  },
    {"device", &ArrayFacts::device},
};
constexpr Family<ArrayFacts> kArrayFamilies[] = {
    {"array_disks",            kGauge, "Members that the array is made of.",            &ArrayFacts::raid_disks      },
    {"array_active_disks",     kGauge, "Members in sync.",                              &ArrayFacts::active_disks    },
    {"array_missing_disks",    kGauge, "Members missing, failed or being rebuilt.",     &ArrayFacts::missing_disks   },
    {"array_spare_disks",      kGauge, "Spares.",                                       &ArrayFacts::spare_disks     },
    {"array_failed_disks",     kGauge, "Members marked as faulty.",                     &ArrayFacts::failed_disks    },
    {"array_size_bytes",       kGauge, "Size of the array.",                            &ArrayFacts::size_bytes      },
    {"array_sync_done_bytes",  kGauge, "How far a rebuild or check is.",                &ArrayFacts::sync_done_bytes },
    {"array_sync_total_bytes", kGauge, "How far it has to go.",                         &ArrayFacts::sync_total_bytes},
};

constexpr Label<VolumeFacts> kVolumeLabels[] = {
    {"mount_point", &VolumeFacts::mount_point},
    {"device",      &VolumeFacts::device     },
    {"type",        &VolumeFacts::type       },
};
constexpr Family<VolumeFacts> kVolumeFamilies[] = {
    {"volume_size_bytes", kGauge, "Size of a mounted file system.",   &VolumeFacts::size_bytes},
    {"volume_free_bytes", kGauge, "What of it users can still take.", &VolumeFacts::free_bytes},
};

constexpr Label<InterfaceFacts> kInterfaceInfoLabels[] = {
    {"interface", &InterfaceFacts::name   },
    {"mac",       &InterfaceFacts::mac    },
    {"address",   &InterfaceFacts::address},
};
constexpr Family<InterfaceFacts> kInterfaceInfoFamilies[] = {
    {"interface_info", kGauge, "A network interface; always 1."},
};
constexpr Label<InterfaceFacts> kInterfaceLabels[] = {
    {"interface", &InterfaceFacts::name},
};
constexpr Family<InterfaceFacts> kInterfaceFamilies[] = {
    {"interface_up",                     kGauge, "Whether the interface is switched on.",     nullptr,                                &InterfaceFacts::up         },
    {"interface_link",                   kGauge, "Whether it has a link.",                    nullptr,                                &InterfaceFacts::link       },
    {"interface_full_duplex",            kGauge, "Whether the link is full duplex.",          nullptr,                                &InterfaceFacts::full_duplex},
    {"interface_enabled",                kGauge, "Whether the settings enable it.",           nullptr,                                &InterfaceFacts::enabled    },
    {"interface_speed_bytes_per_second", kGauge, "Speed of the link.",                        &InterfaceFacts::speed_bits_per_second, nullptr,                    0.125},
    {"interface_mtu_bytes",              kGauge, "Largest packet.",                           &InterfaceFacts::mtu_bytes                                          },
};

constexpr Label<NameServerFacts> kServerLabels[] = {
    {"address", &NameServerFacts::address},
};
constexpr Family<NameServerFacts> kServerFamilies[] = {
    {"name_server_answers", kGauge, "Whether a name server answers; asked on request only.", nullptr, &NameServerFacts::answers},
};

constexpr Label<BackupFacts> kBackupInfoLabels[] = {
    {"task",   nullptr,              &BackupFacts::number},
    {"name",   &BackupFacts::name                        },
    {"type",   &BackupFacts::type                        },
    {"status", &BackupFacts::status                      },
};
constexpr Family<BackupFacts> kBackupInfoFamilies[] = {
    {"backup_info", kGauge, "A backup task; always 1."},
};
constexpr Label<BackupFacts> kBackupLabels[] = {
    {"task", nullptr,            &BackupFacts::number},
    {"type", &BackupFacts::type                      },
};
constexpr Family<BackupFacts> kBackupFamilies[] = {
    {"backup_last_generation_timestamp_seconds", kGauge, "When the latest generation on this machine was begun.", &BackupFacts::last_generation_seconds},
    {"backup_keep_generations",                  kGauge, "How many generations are kept.",                       &BackupFacts::keep_generations       },
};

// clang-format on

// ---- What is counted ----

void print_count(FILE* stream, const char* name, const char* help, size_t count) {
    begin_family(stream, name, kGauge, help);
    fprintf(stream, "quorvel_%s %zu\n", name, count);
}

void print_firewall(FILE* stream, const List<ServiceFacts>& services) {
    if (!is_known(services)) return;
    begin_family(stream, "firewall_open", kGauge, "Whether a service is open on an interface, as configured.");
    for (const ServiceFacts& service : services) {
        for (const GateFacts& gate : service.gates) {
            fputs("quorvel_firewall_open{", stream);
            print_label(stream, "service", text_of(service.name), true);
            print_label(stream, "interface", text_of(gate.interface), false);
            fprintf(stream, "} %d\n", gate.open.value ? 1 : 0);
        }
    }
}

size_t connections(const Facts& facts) {
    size_t count = 0;
    for (const SessionFacts& session : facts.sessions) {
        if (is_known(session.sid)) count++;
    }
    return count;
}

// Only bays: USB ports and the like come and go.
size_t internal_disks(const Facts& facts) {
    size_t count = 0;
    while (count < facts.disks.count && facts.disks.items[count].kind == DISK_PATH_INTERNAL)
        count++;
    return count;
}

void print_disks(FILE* stream, const Facts& facts) {
    const std::span<const DiskFacts> bays(facts.disks.items, internal_disks(facts));
    print_families<DiskFacts>(stream, bays, kDiskInfoFamilies, kDiskInfoLabels);
    print_families<DiskFacts>(stream, bays, kDiskFamilies, kDiskLabels);
}

}  // namespace

void print_metrics(const Facts& facts, FILE* stream) {
    const std::span<const SystemFacts> system(&facts.system, 1);
    print_families<SystemFacts>(stream, system, kSystemFamilies, kSystemLabels);
    print_families<SystemFacts>(stream, system, kSpoolFamilies, kSpoolLabels);
    print_disks(stream, facts);
    print_families<ArrayFacts>(stream, records_of(facts.arrays), kArrayInfoFamilies, kArrayInfoLabels);
    print_families<ArrayFacts>(stream, records_of(facts.arrays), kArrayFamilies, kArrayLabels);
    print_families<VolumeFacts>(stream, records_of(facts.volumes), kVolumeFamilies, kVolumeLabels);
    print_families<InterfaceFacts>(stream, records_of(facts.interfaces), kInterfaceInfoFamilies, kInterfaceInfoLabels);
    print_families<InterfaceFacts>(stream, records_of(facts.interfaces), kInterfaceFamilies, kInterfaceLabels);
    print_families<NameServerFacts>(stream, records_of(facts.name_servers), kServerFamilies, kServerLabels);
    print_families<BackupFacts>(stream, records_of(facts.backups), kBackupInfoFamilies, kBackupInfoLabels);
    print_families<BackupFacts>(stream, records_of(facts.backups), kBackupFamilies, kBackupLabels);
    print_firewall(stream, facts.services);
    if (is_known(facts.targets)) print_count(stream, "iscsi_targets", "Configured iSCSI targets.", facts.targets.count);
    if (is_known(facts.sessions))
        print_count(stream, "iscsi_connections", "Connections to iSCSI targets.", connections(facts));
    print_count(stream, "problems", "What is wrong, counted.", facts.problems.count);
    begin_family(stream, "verdict", kGauge, "0 well, 1 degraded, 2 data at risk or lost, 3 not to be told.");
    fprintf(stream, "quorvel_verdict %d\n", facts.verdict);
    begin_family(stream, "report_timestamp_seconds", kGauge, "When the facts were gathered.");
    fprintf(stream, "quorvel_report_timestamp_seconds %" PRId64 "\n", facts.taken_seconds);
}

}  // namespace report
