/** @file */
#ifndef QUORVEL_DISK_H
#define QUORVEL_DISK_H

#include <stddef.h>
#include <stdint.h>

#include "api.h"

QUORVEL_BEGIN_DECLS

QUORVEL_END_DECLS

#endif
