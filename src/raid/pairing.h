// Between the groups of disks and their arrays.
#pragma once

#include "quorvel/raid.h"

extern "C" {

/// Ties every group whose array is listed to it: the array to its first member, the members to the array. The last
/// group of an array in list order wins.
void link_master_arrays(void);

/// Prints what every array and every disk is, told from this number of groups, which is not 0.
void print_guess(int group_count);
}

namespace quorvel {

/// The whole guess report, also for no group at all.
void print_guess_report();

}  // namespace quorvel
