#include "report/fields.h"

namespace report {

namespace {

constexpr Field<SystemFacts> kSystem[] = {
    {"hostname",             &SystemFacts::hostname            },
    {"platform",             &SystemFacts::platform            },
    {"series",               &SystemFacts::series              },
    {"product_series",       &SystemFacts::product_series      },
    {"product_name",         &SystemFacts::product_name        },
    {"product_id",           &SystemFacts::product_id          },
    {"firmware_version",     &SystemFacts::firmware_version    },
    {"firmware_sub_version", &SystemFacts::firmware_sub_version},
    {"firmware_build_date",  &SystemFacts::firmware_build_date },
    {"kernel",               &SystemFacts::kernel              },
    {"max_disks",            &SystemFacts::max_disks           },
    {"max_usb_disks",        &SystemFacts::max_usb_disks       },
    {"max_arrays",           &SystemFacts::max_arrays          },
    {"front_panel",          &SystemFacts::front_panel         },
    {"spool_directory",      &SystemFacts::spool_directory     },
    {"spool_size_bytes",     &SystemFacts::spool_size_bytes    },
    {"spool_free_bytes",     &SystemFacts::spool_free_bytes    },
    {"bonding",              &SystemFacts::bonding             },
};

constexpr Field<DiskFacts> kDisk[] = {
    {"name",                     &DiskFacts::name                    },
    {"device",                   &DiskFacts::device                  },
    {"address",                  &DiskFacts::address                 },
    {"slot",                     &DiskFacts::slot                    },
    {"present",                  &DiskFacts::present                 },
    {"powered",                  &DiskFacts::powered                 },
    {"asleep",                   &DiskFacts::asleep                  },
    {"model",                    &DiskFacts::model                   },
    {"serial",                   &DiskFacts::serial                  },
    {"size_bytes",               &DiskFacts::size_bytes              },
    {"temperature_celsius",      &DiskFacts::temperature_celsius     },
    {"read_errors",              &DiskFacts::read_errors             },
    {"status",                   &DiskFacts::status                  },
    {"array",                    &DiskFacts::array                   },
    {"mine",                     &DiskFacts::mine                    },
    {"lvm",                      &DiskFacts::lvm                     },
    {"signature_version",        &DiskFacts::signature_version       },
    {"signature_disk",           &DiskFacts::signature_disk          },
    {"signature_mac",            &DiskFacts::signature_mac           },
    {"signature_use",            &DiskFacts::signature_use           },
    {"signature_encryption",     &DiskFacts::signature_encryption    },
    {"superblock_uuid",          &DiskFacts::superblock_uuid         },
    {"superblock_level",         &DiskFacts::superblock_level        },
    {"superblock_minor",         &DiskFacts::superblock_minor        },
    {"superblock_raid_devices",  &DiskFacts::superblock_raid_devices },
    {"superblock_total_devices", &DiskFacts::superblock_total_devices},
};

constexpr Field<MemberFacts> kMember[] = {
    {"device", &MemberFacts::device},
    {"disk",   &MemberFacts::disk  },
    {"role",   &MemberFacts::role  },
    {"state",  &MemberFacts::state },
    {"errors", &MemberFacts::errors},
};

constexpr Field<ArrayFacts> kArray[] = {
    {"name",             &ArrayFacts::name            },
    {"device",           &ArrayFacts::device          },
    {"status",           &ArrayFacts::status          },
    {"level",            &ArrayFacts::level           },
    {"state",            &ArrayFacts::state           },
    {"metadata",         &ArrayFacts::metadata        },
    {"uuid",             &ArrayFacts::uuid            },
    {"raid_disks",       &ArrayFacts::raid_disks      },
    {"active_disks",     &ArrayFacts::active_disks    },
    {"missing_disks",    &ArrayFacts::missing_disks   },
    {"spare_disks",      &ArrayFacts::spare_disks     },
    {"failed_disks",     &ArrayFacts::failed_disks    },
    {"size_bytes",       &ArrayFacts::size_bytes      },
    {"sync_action",      &ArrayFacts::sync_action     },
    {"sync_done_bytes",  &ArrayFacts::sync_done_bytes },
    {"sync_total_bytes", &ArrayFacts::sync_total_bytes},
};

constexpr Field<VolumeFacts> kVolume[] = {
    {"mount_point", &VolumeFacts::mount_point},
    {"device",      &VolumeFacts::device     },
    {"type",        &VolumeFacts::type       },
    {"size_bytes",  &VolumeFacts::size_bytes },
    {"used_bytes",  &VolumeFacts::used_bytes },
    {"free_bytes",  &VolumeFacts::free_bytes },
};

constexpr Field<PhysicalVolumeFacts> kPhysicalVolume[] = {
    {"device", &PhysicalVolumeFacts::device},
    {"format", &PhysicalVolumeFacts::format},
    {"group",  &PhysicalVolumeFacts::group },
};

constexpr Field<LogicalVolumeFacts> kLogicalVolume[] = {
    {"device", &LogicalVolumeFacts::device},
};

constexpr Field<InterfaceFacts> kInterface[] = {
    {"name",                  &InterfaceFacts::name                 },
    {"mac",                   &InterfaceFacts::mac                  },
    {"address",               &InterfaceFacts::address              },
    {"netmask",               &InterfaceFacts::netmask              },
    {"prefix_length",         &InterfaceFacts::prefix_length        },
    {"network",               &InterfaceFacts::network              },
    {"broadcast",             &InterfaceFacts::broadcast            },
    {"mtu_bytes",             &InterfaceFacts::mtu_bytes            },
    {"up",                    &InterfaceFacts::up                   },
    {"link",                  &InterfaceFacts::link                 },
    {"speed_bits_per_second", &InterfaceFacts::speed_bits_per_second},
    {"full_duplex",           &InterfaceFacts::full_duplex          },
    {"enabled",               &InterfaceFacts::enabled              },
    {"dhcp",                  &InterfaceFacts::dhcp                 },
};

constexpr Field<NameServerFacts> kNameServer[] = {
    {"address", &NameServerFacts::address},
    {"answers", &NameServerFacts::answers},
};

constexpr Field<TargetFacts> kTarget[] = {
    {"number", &TargetFacts::number},
    {"device", &TargetFacts::device},
    {"tid",    &TargetFacts::tid   },
    {"name",   &TargetFacts::name  },
};

constexpr Field<SessionFacts> kSession[] = {
    {"tid",       &SessionFacts::tid      },
    {"target",    &SessionFacts::target   },
    {"sid",       &SessionFacts::sid      },
    {"initiator", &SessionFacts::initiator},
    {"address",   &SessionFacts::address  },
};

constexpr Field<GateFacts> kGate[] = {
    {"interface", &GateFacts::interface},
    {"open",      &GateFacts::open     },
};

constexpr Field<ServiceFacts> kService[] = {
    {"service", &ServiceFacts::name},
};

constexpr Field<PairFacts> kPair[] = {
    {"source",      &PairFacts::source     },
    {"destination", &PairFacts::destination},
};

constexpr Field<BackupFacts> kBackup[] = {
    {"number",                  &BackupFacts::number                 },
    {"name",                    &BackupFacts::name                   },
    {"status",                  &BackupFacts::status                 },
    {"type",                    &BackupFacts::type                   },
    {"start_time",              &BackupFacts::start_time             },
    {"week_day",                &BackupFacts::week_day               },
    {"overwrite",               &BackupFacts::overwrite              },
    {"encrypted",               &BackupFacts::encrypted              },
    {"compressed",              &BackupFacts::compressed             },
    {"trashbox",                &BackupFacts::trashbox               },
    {"mirror",                  &BackupFacts::mirror                 },
    {"logfile",                 &BackupFacts::logfile                },
    {"force",                   &BackupFacts::force                  },
    {"hardlink",                &BackupFacts::hardlink               },
    {"keep_generations",        &BackupFacts::keep_generations       },
    {"last_generation_seconds", &BackupFacts::last_generation_seconds},
};

constexpr Field<Problem> kProblem[] = {
    {"subject", &Problem::subject},
    {"text",    &Problem::text   },
};

}  // namespace

template <>
std::span<const Field<SystemFacts>> fields_of() {
    return kSystem;
}
template <>
std::span<const Field<DiskFacts>> fields_of() {
    return kDisk;
}
template <>
std::span<const Field<MemberFacts>> fields_of() {
    return kMember;
}
template <>
std::span<const Field<ArrayFacts>> fields_of() {
    return kArray;
}
template <>
std::span<const Field<VolumeFacts>> fields_of() {
    return kVolume;
}
template <>
std::span<const Field<PhysicalVolumeFacts>> fields_of() {
    return kPhysicalVolume;
}
template <>
std::span<const Field<LogicalVolumeFacts>> fields_of() {
    return kLogicalVolume;
}
template <>
std::span<const Field<InterfaceFacts>> fields_of() {
    return kInterface;
}
template <>
std::span<const Field<NameServerFacts>> fields_of() {
    return kNameServer;
}
template <>
std::span<const Field<TargetFacts>> fields_of() {
    return kTarget;
}
template <>
std::span<const Field<SessionFacts>> fields_of() {
    return kSession;
}
template <>
std::span<const Field<GateFacts>> fields_of() {
    return kGate;
}
template <>
std::span<const Field<ServiceFacts>> fields_of() {
    return kService;
}
template <>
std::span<const Field<PairFacts>> fields_of() {
    return kPair;
}
template <>
std::span<const Field<BackupFacts>> fields_of() {
    return kBackup;
}
template <>
std::span<const Field<Problem>> fields_of() {
    return kProblem;
}

}  // namespace report
