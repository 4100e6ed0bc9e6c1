// Which interfaces exist, and what the appliance's settings say of them.
#include <stdio.h>

#include "foundation/appliance_files.h"
#include "foundation/files.h"
#include "foundation/key_value.h"
#include "foundation/numbers.h"
#include "foundation/text.h"
#include "quorvel/foundation.h"
#include "quorvel/net.h"

using namespace quorvel;

const char target_ifs[10][32] = {"eth0", "eth1",  "eth2",     "eth3",  "br0",
                                 "br1",  "wdev0", "wdev0ap0", "wdev1", "wdev1ap0"};

namespace {

using Setting = char[128];
using Key = Text<128>;

// Entries of the interface directory; only those of this name, when one is given.
int count_interfaces(const char* name) {
    Directory directory = open_directory(files::kNetInterfaces);
    int count = 0;
    while (const struct dirent* entry = directory ? readdir(directory.get()) : nullptr) {
        if (is_dot_entry(entry->d_name)) continue;
        if (name == nullptr || strcmp(entry->d_name, name) == 0) count++;
    }
    return count;
}

void read_setting(const Key& key, Setting& value) {
    (void)get_StringbyKey(files::kInfo, key.c_str(), value, sizeof value);
}

// Ports and trunk groups count from 1 where interfaces count from 0; an index is one byte wide there.
int settings_number(const char* ifname) {
    return static_cast<uint8_t>(LibQuorvelBin_GetInterfaceIndex(ifname)) + 1;
}

// Reads enet_port_PORT_WHAT for the port that stands for a bond: the first member of its trunk group.
void read_bond_setting(const char* ifname, const char* what, Setting& value) {
    Setting members = "";
    read_setting(Key("enet_port_trunk_group_%d_members", settings_number(ifname)), members);
    Setting member;
    if (LibQuorvelBin_GetSpecifiedKey(member, sizeof member, members, " ", 1) != 0) return;
    read_setting(Key("enet_port_%s_%s", member, what), value);
}

void read_port_setting(const char* ifname, const char* what, Setting& value) {
    read_setting(Key("enet_port_%d_%s", settings_number(ifname), what), value);
}

}  // namespace

int LibQuorvelBin_IsBondingMode(void) {
    Setting first = "";
    Setting second = "";
    KeyRequest groups[] = {
        {"enet_port_trunk_group_1_members", first,  sizeof first },
        {"enet_port_trunk_group_2_members", second, sizeof second}
    };
    read_keys(files::kInfo, groups);
    return first[0] != '\0' || second[0] != '\0' ? 1 : 0;
}

int LibQuorvelBin_GetNetIfNum(void) {
    return static_cast<uint16_t>(count_interfaces(nullptr));
}

int LibQuorvelBin_IsExistNetIf(const char* ifname) {
    return ifname != nullptr && count_interfaces(ifname) != 0 ? 1 : 0;
}

int LibQuorvelBin_GetInterfaceIndex(const char* ifname) {
    if (ifname == nullptr) return -1;
    const char* digits = strpbrk(ifname, "0123456789");
    return digits != nullptr ? leading_int(digits) : -1;
}

int LibQuorvelBin_IsNetIfEnabled(const char* ifname) {
    if (ifname == nullptr) return 0;
    if (starts_with(ifname, "lo")) return 1;
    Setting value = "";
    if (starts_with(ifname, "bond")) {
        read_bond_setting(ifname, "enabled", value);
    } else if (starts_with(ifname, "eth")) {
        if (LibQuorvelBin_GetInterfaceIndex(ifname) == 0) return 1;
        read_port_setting(ifname, "enabled", value);
    }
    return starts_with(value, "on") ? 1 : 0;
}

int LibQuorvelBin_IsNetIfDhcp(const char* ifname) {
    puts(__func__);
    if (ifname == nullptr) return 0;
    if (starts_with(ifname, "lo")) return 1;
    Setting value = "";
    if (starts_with(ifname, "bond")) {
        printf("%s bonding\n", __func__);
        read_bond_setting(ifname, "ip_address", value);
    } else if (starts_with(ifname, "eth")) {
        printf("%s eth\n", __func__);
        read_port_setting(ifname, "ip_address", value);
    }
    printf("%s value = %s\n", __func__, value);
    if (!starts_with(value, "dhcp")) return 0;
    printf("%s returning 1\n", __func__);
    return 1;
}
