// Why a disk has no name, no device or no address: looked up when the library gave no answer.
#pragma once

/// What stands behind the first "dev/" of a name, or all of it.
[[nodiscard]] const char* without_dev(const char* name);

/// Whether the search for a device's name would never end: a USB row does not let it decide.
[[nodiscard]] bool is_never_decided(const char* device);

[[nodiscard]] const char* reason_for_no_diskname(const char* device);
[[nodiscard]] const char* reason_for_no_devname(const char* disk);
[[nodiscard]] const char* reason_for_no_scsiid(const char* name);
