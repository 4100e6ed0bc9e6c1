// Naming disks on platforms without a slot table: two feature settings tell how the machine's SCSI
// hosts and USB ports are wired.
#pragma once

#include "disk/disk_name.h"
#include "disk/slot_match.h"

namespace quorvel {

/// INTERNAL_SCSI_TYPE and USB_TREE_TYPE; empty when they are not set.
struct WiringSettings {
    char internal[128] = "";
    char usb_tree[128] = "";

    WiringSettings();
    bool internal_is(const char* type) const { return starts_with(internal, type); }
    bool usb_tree_is(const char* type) const { return strcmp(usb_tree, type) == 0; }
};

/// Whether sysfs has the layout of kernels from 2.6.31.8 on.
bool has_new_sysfs();

/// The bus of the USB disk that is recorded on a port, or -1 when none is or it is not attached.
int bus_of_recorded_disk(int port);

/// The logical name, by its word and number, of the disk at a place; false when the rules have none.
bool name_by_rules(const char* device, const DiskPlace& disk, bool new_sysfs, const char*& word, int& number);

/// The kernel name of a logical disk, which may be cut at its first "/"; false when the rules do not
/// know it or it is absent.
bool device_by_rules(const char* disk, char (&device)[256]);

}  // namespace quorvel
