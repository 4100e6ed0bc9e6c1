#include "services/backup_location.h"

#include <string.h>
#include <unistd.h>

#include "quorvel/foundation.h"

namespace quorvel {

namespace {

bool is_other_machine(const char* host) {
    char own[256] = "";
    (void)gethostname(own, sizeof own - 1);
    return *host != '\0' && strcmp(host, own) != 0;
}

}  // namespace

BackupLocation locate(const char* entry) {
    BackupLocation location;
    char host[kTaskLine] = "";
    char place[kTaskLine] = "";
    if (contains(entry, "@")) {
        (void)LibQuorvelBin_GetSpecifiedKey(host, sizeof host, entry, "@", 1);
        (void)LibQuorvelBin_GetSpecifiedKey(place, sizeof place, entry, "@", 2);
    } else {
        copy_text(place, sizeof place, entry);
    }

    char directory[kTaskLine] = "";
    char sub[kTaskLine] = "";
    if (LibQuorvelBin_GetSpecifiedKey(directory, sizeof directory, place, "/", 2) != 0) {
        location.address.append("%s", entry);
        return location;
    }
    (void)LibQuorvelBin_GetSpecifiedKey(sub, sizeof sub, place, "/", 3);

    bool remote = is_other_machine(host);
    location.origin.append("%s/%s", remote ? host : "localhost", sub);
    if (remote) {
        char encoded[3 * kTaskLine] = "";
        (void)LibQuorvelBin_URLEncode(encoded, sub, sizeof encoded);
        location.address.append("rsync://%s/%s_%s/", host, directory, encoded);
    } else {
        location.address.append("%s/", place);
    }
    return location;
}

}  // namespace quorvel
