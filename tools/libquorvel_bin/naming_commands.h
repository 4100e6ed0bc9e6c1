// The naming command that is large enough for a room of its own.
#pragma once

#include <stdint.h>

#include "command.h"

/// The kind (DISK_PATH_...) and logical name of a disk in /sys/block, as "disks" tells them; DISK_PATH_END and "-"
/// without one.
int32_t name_disk(const char* device, char* name, size_t size);

/// Lists every disk of the machine and every empty bay.
int run_disks(int argc, char** argv);
