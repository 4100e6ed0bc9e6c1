// How large the data partition of an internal disk becomes.
#pragma once

#include <stdint.h>

#include <optional>

namespace quorvel {

inline constexpr uint64_t kLastSmallDisk = 249;  // gigabytes; larger disks come in steps of ten
inline constexpr uint64_t kLastAcceptedDigit = 6;
inline constexpr int kDataStart = 7168;  // megabytes; in front of it stand the system partitions

/// A disk's size in units of 10^9 bytes, from blocks of 1024 bytes.
[[nodiscard]] inline uint64_t gigabytes_of(uint64_t blocks) {
    return blocks * 1024 / 1000000000;
}

/// The gigabytes that the layout gives to data on a disk of so many.
[[nodiscard]] inline int data_gigabytes(uint64_t capacity, bool short_layout) {
    constexpr int kShortDataSize = 17;
    constexpr uint64_t kSystemSize = 8;
    if (short_layout) return kShortDataSize;
    return static_cast<int>((capacity <= kLastSmallDisk ? capacity / 5 * 5 : capacity - capacity % 10) - kSystemSize);
}

/// Whether the layout refuses a disk of so many gigabytes, which it does when the data partition is due.
[[nodiscard]] inline bool layout_refuses(uint64_t capacity, bool short_layout) {
    return !short_layout && capacity > kLastSmallDisk && capacity % 10 > kLastAcceptedDigit;
}

/// Whether the data partition has a place on a disk of so many blocks. parted takes an end up to half a unit behind the
/// disk's.
[[nodiscard]] inline bool layout_has_room(uint64_t blocks, bool short_layout) {
    constexpr int64_t kGigabyte = 1000000000, kMegabyte = 1000000;
    const auto bytes = static_cast<int64_t>(blocks * 1024);
    const int64_t end = data_gigabytes(gigabytes_of(blocks), short_layout) * kGigabyte;
    return end > kDataStart * kMegabyte && end < bytes + kGigabyte / 2;
}

/// Keeps every later layout of this process to the short data partition.
void turn_on_short_layout();

/// The data size in gigabytes that the layout gives a disk of so many blocks of 1024 bytes; none when the disk is
/// refused. Reports on standard error.
[[nodiscard]] std::optional<int> layout_data_size(uint64_t blocks);

}  // namespace quorvel
