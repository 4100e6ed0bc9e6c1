/** @file */
#ifndef QUORVEL_RAID_H
#define QUORVEL_RAID_H

#include <stddef.h>
#include <stdint.h>

#include "api.h"

QUORVEL_BEGIN_DECLS

QUORVEL_END_DECLS

#endif
