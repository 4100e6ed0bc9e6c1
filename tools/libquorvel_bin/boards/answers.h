// What the tables and rules answer for a disk, and what the answer leads back to.
#pragma once

#include "boards/block_disks.h"
#include "boards/naming_source.h"

// How far the search went through one table.
struct Search {
    int looked_at = 0;  // rows, from the top
    bool found = false, undecided = false;
};

struct Answer {
    Search searches[2];       // the table in force, the extension's
    quorvel::Text<128> name;  // empty without one
    quorvel::Text<256> back;  // the disk that the name leads to, empty without one
    bool agrees = false;
};

/// The answer for a disk. Where programs would wait for ever, because a row does not let them decide, there is none.
[[nodiscard]] Answer answer_for(const NamingSource& source, const BlockDisk& disk);
