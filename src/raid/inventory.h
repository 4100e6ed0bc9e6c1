// What the inventory's rooms tell each other.
#pragma once

#include <stddef.h>
#include <stdint.h>

#include <optional>

#include "foundation/text.h"
#include "quorvel/raid.h"

extern "C" {

/// Writes both texts over those of a row of md_trans_tbl, without terminators: what stood behind them stays.
void LibQuorvelBin_SetMdTransTbl(int row, const char* feature_name, const char* array_name);

/// Asks the md driver behind a descriptor (GET_ARRAY_INFO) for the nine integers of a record. 0, or -1 with the record
/// untouched when the request fails or no array is configured. Traces them.
[[nodiscard]] int get_array_info(int descriptor, struct arrayinfo* array);

/// Runs mdadm on an md device, or on the member partition of a disk when the path contains "disk", and takes what it
/// tells of the superblock. A UUID that is not told stays as it was. 0 when the last line told something, else -1, also
/// when the command could not be started, which is printed.
[[nodiscard]] int get_md_superblock(const char* path, struct sb_info* sb);

/// The number of every disk's md member partition: the one behind the first "_" of disk 1's link, or 0.
[[nodiscard]] int get_hdd_link_partno(void);

/// The code of the word recorded for a disk or array in the status file, or kStatusUnknown.
[[nodiscard]] int get_diskinfo_status(const char* name);
}

namespace quorvel {

inline constexpr int kStatusUnknown = 0xffff;

/// The level of mdadm's name for it, -1 for all but the four that str_md_level knows.
[[nodiscard]] int md_level_of(const char* name);

/// get_md_superblock of a disk whose member partition number is known.
[[nodiscard]] int get_disk_superblock(const char* path, int member_partition, sb_info& sb);

/// The listed array "arrayN" or disk "diskN", or null.
[[nodiscard]] arrayinfo* find_array(int number);
[[nodiscard]] diskinfo* find_disk(int number);

/// The listed array behind the device mdN, or null.
[[nodiscard]] arrayinfo* find_array_of_minor(int minor);

/// Where an array or disk is mounted.
using MountPath = Text<256>;
[[nodiscard]] MountPath mount_path(const char* name);

/// The three sizes of the file system that is mounted there; none when nothing is.
[[nodiscard]] std::optional<partition_info> mounted_sizes(const MountPath& path);

/// The share used in per cent, cut; 0 of nothing.
[[nodiscard]] uint64_t used_percent(const partition_info& sizes);

}  // namespace quorvel
