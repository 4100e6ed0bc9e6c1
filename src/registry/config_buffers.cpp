#include "registry/config_buffers.h"

namespace quorvel {

char scKeyPath[kRegistryText];
char scKeyName[kRegistryText];
char scKeyRegVal[kRegistryText];
char pscSrc[kRegistryText];

}  // namespace quorvel
