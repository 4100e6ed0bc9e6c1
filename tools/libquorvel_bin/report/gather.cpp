#include "report/gather.h"

#include <stdlib.h>
#include <time.h>

#include "report/sources.h"

namespace report {

namespace {

// A build that is to be repeated states its own time.
int64_t now_seconds() {
    const char* stated = getenv("SOURCE_DATE_EPOCH");
    int64_t seconds = 0;
    return stated != nullptr && to_number(stated, seconds) ? seconds : static_cast<int64_t>(time(nullptr));
}

}  // namespace

// Disks come before arrays, which name their members and tell the disks which array they are in.
void gather(Facts& facts, const Request& request) {
    const Quiet quiet;
    const auto wanted = [&request](unsigned parts) { return (request.parts & parts) != 0; };
    facts.taken_seconds = now_seconds();
    if (wanted(kSystemPart)) gather_system(facts, quiet);
    if (wanted(kDiskListPart | kDiskPart | kArrayPart)) gather_disk_list(facts);
    if (wanted(kDiskPart)) gather_disks(facts, request, quiet);
    if (wanted(kArrayPart)) gather_arrays(facts);
    if (wanted(kVolumePart)) gather_volumes(facts);
    if (wanted(kInterfacePart)) gather_interfaces(facts, quiet);
    if (wanted(kNameServerPart)) gather_name_servers(facts, request.reach);
    if (wanted(kIscsiPart)) gather_iscsi(facts, quiet);
    if (wanted(kFirewallPart)) gather_firewall(facts);
    if (wanted(kBackupPart)) gather_backups(facts, quiet);
    constexpr unsigned kJudged = kSystemPart | kDiskPart | kArrayPart;
    if ((request.parts & kJudged) == kJudged) find_problems(facts);
}

}  // namespace report
