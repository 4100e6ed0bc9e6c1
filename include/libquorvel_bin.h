/** @file
 * libquorvel_bin: the shared system-helper library of the appliances. Includes every subsystem. */
#ifndef LIBQUORVEL_BIN_H
#define LIBQUORVEL_BIN_H

#include "quorvel/disk.h"
#include "quorvel/foundation.h"
#include "quorvel/hw.h"
#include "quorvel/naming.h"
#include "quorvel/net.h"
#include "quorvel/platform.h"
#include "quorvel/raid.h"
#include "quorvel/registry.h"
#include "quorvel/services.h"

#endif
