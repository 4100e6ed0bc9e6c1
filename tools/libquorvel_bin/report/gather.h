// Gathering the facts: nothing is mounted, nothing written, and no disk that is known to sleep is read.
#pragma once

#include "report/facts.h"
#include "report/quiet.h"

namespace report {

/// Parts of the appliance; each is a room of facts.
enum Part : unsigned {
    kSystemPart = 1 << 0,
    kDiskListPart = 1 << 1,  // which disks and bays there are
    kDiskPart = 1 << 2,      // ... and what is known of each
    kArrayPart = 1 << 3,
    kVolumePart = 1 << 4,
    kInterfacePart = 1 << 5,
    kNameServerPart = 1 << 6,
    kIscsiPart = 1 << 7,
    kFirewallPart = 1 << 8,
    kBackupPart = 1 << 9,
    kEveryPart = (1 << 10) - 1,
};

struct Request {
    unsigned parts = kEveryPart;
    bool tools = true;     // run smartctl, mdadm and frontctl
    bool contents = true;  // read signatures and superblocks from disks that are awake
    bool reach = false;    // ask the name servers
};

void gather(Facts& facts, const Request& request);

// The rooms.
void gather_system(Facts& facts, const Quiet& quiet);
void gather_disk_list(Facts& facts);
void gather_disks(Facts& facts, const Request& request, const Quiet& quiet);
void gather_arrays(Facts& facts);
void gather_volumes(Facts& facts);
void gather_interfaces(Facts& facts, const Quiet& quiet);
void gather_name_servers(Facts& facts, bool reach);
void gather_iscsi(Facts& facts, const Quiet& quiet);
void gather_firewall(Facts& facts);
void gather_backups(Facts& facts, const Quiet& quiet);
/// From all the others: what is wrong, the worst first, and the verdict.
void find_problems(Facts& facts);

}  // namespace report
