/** @file */
#ifndef QUORVEL_REGISTRY_H
#define QUORVEL_REGISTRY_H

#include <stddef.h>
#include <stdint.h>

#include "api.h"

QUORVEL_BEGIN_DECLS

QUORVEL_END_DECLS

#endif
