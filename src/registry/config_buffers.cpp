#include "registry/config_buffers.h"

namespace quorvel {

char scKeyPath[kRegistryText];
char scKeyName[kRegistryText];
char scKeyRegVal[kRegistryText];
char pscSrc[kRegistryText];

ConfigEntry entry_of_buffers() {
    ConfigEntry entry;
    entry.path.add(scKeyPath);
    entry.name.add(scKeyName);
    entry.value.add(scKeyRegVal);
    return entry;
}

void fill_buffers(const ConfigEntry& entry) {
    copy_text(scKeyPath, sizeof scKeyPath, view(entry.path));
    copy_text(scKeyName, sizeof scKeyName, view(entry.name));
    copy_text(scKeyRegVal, sizeof scKeyRegVal, view(entry.value));
}

}  // namespace quorvel
