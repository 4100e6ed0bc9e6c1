// The table that learning proposes, what it would make of the disks, and its file.
#pragma once

#include "boards/places.h"

struct LearntBay {
    int32_t type = 0;  // DISK_PATH_...
    int slot = 0;
    LearntPlace place;
    quorvel::Text<128> serial;  // of the disk that was seen there
};

struct Proposal {
    static constexpr int kMost = 128;
    LearntBay* bays = nullptr;
    int count = 0;

    Proposal();
    ~Proposal();
    Proposal(const Proposal&) = delete;
    Proposal& operator=(const Proposal&) = delete;
    /// The bay with a name, or null.
    [[nodiscard]] const LearntBay* find(int32_t type, int slot) const;
    /// The bay at a place, or null.
    [[nodiscard]] const LearntBay* find(const LearntPlace& place) const;
};

/// Takes a disk as the one in a bay. False, with a message, when no row can name its place, or bay or place are taken.
[[nodiscard]] bool add_bay(Proposal& proposal, int32_t type, int slot, const AllDisks::Disk& disk, const AllDisks& all);

/// The name of a bay: "disk1".
[[nodiscard]] quorvel::Text<32> name_of_bay(int32_t type, int slot);

/// Shows the rows, and the disks that they name: as the kernel names them, and as it would in another order. False when
/// a row does not name the one disk that was seen there.
[[nodiscard]] bool show_proposal(const Proposal& proposal, const AllDisks& all);

/// Puts the table in force. The file appears whole or not at all; one that was there stays as a copy.
[[nodiscard]] bool write_proposal(const Proposal& proposal);
