// What the appliance's tools tell of the disks.
#pragma once

#include "report/gather.h"

namespace report {

/// Power of the bays from frontctl; identity, temperature and sleep of the disks from smartctl, which is told to leave
/// a sleeping disk alone.
void ask_drives(Facts& facts, const Request& request);

/// Array superblocks of the internal disks that are awake, from mdadm.
void ask_superblocks(Facts& facts, const Request& request);

}  // namespace report
