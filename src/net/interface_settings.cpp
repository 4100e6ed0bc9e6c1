// Which interfaces exist, and what the appliance's settings say of them.
#include <stdio.h>

#include "foundation/appliance_files.h"
#include "foundation/failure.h"
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

using Key = Text<128>;

// The value of a key of the settings, or "".
struct Setting {
    char text[128] = "";
};

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

Setting setting_of(const Key& key) {
    Setting value;
    if (!key.cut) get_StringbyKey(files::kInfo, key.c_str(), value.text, sizeof value.text);
    return value;
}

int index_in(const char* ifname) {
    const char* digits = strpbrk(ifname, "0123456789");
    return digits != nullptr ? leading_int(digits) : -1;
}

// Ports and trunk groups count from 1 where interfaces count from 0; an index is one byte wide there.
int settings_number(const char* ifname) {
    return static_cast<uint8_t>(index_in(ifname)) + 1;
}

// Of the port that stands for a bond: the first member of its trunk group.
Setting bond_setting(const char* ifname, const char* what) {
    Setting members = setting_of(Key("enet_port_trunk_group_%d_members", settings_number(ifname)));
    char member[sizeof members.text];
    if (LibQuorvelBin_GetSpecifiedKey(member, sizeof member, members.text, " \t", 1) != 0) return {};
    return setting_of(Key("enet_port_%s_%s", member, what));
}

// enet_port_PORT_WHAT of an interface; none of one that is no port.
Setting port_setting(const char* ifname, const char* what) {
    if (starts_with(ifname, "bond")) return bond_setting(ifname, what);
    if (starts_with(ifname, "eth")) return setting_of(Key("enet_port_%d_%s", settings_number(ifname), what));
    return {};
}

bool is_always_enabled(const char* ifname) {
    return starts_with(ifname, "lo") || (starts_with(ifname, "eth") && index_in(ifname) == 0);
}

}  // namespace

int LibQuorvelBin_IsBondingMode(void) {
    const int before = errno;
    int unreadable = 0;
    bool bonds = false;
    for (int group = 1; group <= 2; group++) {
        errno = 0;
        bonds = bonds || setting_of(Key("enet_port_trunk_group_%d_members", group)).text[0] != '\0';
        if (could_not_be_read(errno)) unreadable = errno;
    }
    errno = bonds || unreadable == 0 ? before : unreadable;
    return bonds ? 1 : 0;
}

int LibQuorvelBin_GetNetIfNum(void) {
    return static_cast<uint16_t>(count_interfaces(nullptr));
}

int LibQuorvelBin_IsExistNetIf(const char* ifname) {
    if (ifname == nullptr) return fail(EINVAL, 0);
    return count_interfaces(ifname) != 0 ? 1 : 0;
}

int LibQuorvelBin_GetInterfaceIndex(const char* ifname) {
    if (ifname == nullptr) return fail(EINVAL);
    int index = index_in(ifname);
    return index >= 0 ? index : fail(ENODATA);
}

int LibQuorvelBin_IsNetIfEnabled(const char* ifname) {
    if (ifname == nullptr) return fail(EINVAL, 0);
    KeptErrno kept;
    return is_always_enabled(ifname) || starts_with(port_setting(ifname, "enabled").text, "on") ? 1 : 0;
}

int LibQuorvelBin_IsNetIfDhcp(const char* ifname) {
    puts(__func__);
    if (ifname == nullptr) return fail(EINVAL, 0);
    if (starts_with(ifname, "lo")) return 1;
    KeptErrno kept;
    if (starts_with(ifname, "bond")) printf("%s bonding\n", __func__);
    if (starts_with(ifname, "eth")) printf("%s eth\n", __func__);
    Setting value = port_setting(ifname, "ip_address");
    printf("%s value = %s\n", __func__, value.text);
    if (!starts_with(value.text, "dhcp")) return 0;
    printf("%s returning 1\n", __func__);
    return 1;
}
