#include "services/ports_file.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include "foundation/appliance_files.h"
#include "foundation/child.h"
#include "foundation/failure.h"
#include "foundation/feature_settings.h"
#include "foundation/files.h"
#include "quorvel/foundation.h"
#include "quorvel/services.h"

namespace quorvel {

namespace {

constexpr size_t kLongestPath = 1024;
constexpr mode_t kWidestMode = 0644;
constexpr mode_t kModeBits = 07777;

// "1<>" for every port, or null.
[[nodiscard]] Heap<char> allowing_flags(int ports) {
    constexpr char kAllow[] = "1<>";
    constexpr size_t kLength = sizeof kAllow - 1;
    size_t count = ports > 0 ? static_cast<size_t>(ports) : 0;
    Heap<char> flags(count < SIZE_MAX / kLength ? static_cast<char*>(malloc(kLength * count + 1)) : nullptr);
    if (!flags) return flags;
    for (size_t i = 0; i < count; i++)
        memcpy(flags.get() + i * kLength, kAllow, kLength);
    flags.get()[count * kLength] = '\0';
    return flags;
}

// The file that a name stands for, a link's target; the name itself where there is none. Null when it is no regular
// file.
[[nodiscard]] Heap<char> place_of(const char* name, struct stat& old) {
    old = {};
    if (stat(name, &old) != 0) return Heap<char>(strdup(name));
    errno = S_ISDIR(old.st_mode) ? EISDIR : EINVAL;
    return Heap<char>(S_ISREG(old.st_mode) ? realpath(name, nullptr) : nullptr);
}

// A file that is written beside another one and takes its place when it is whole.
struct Replacement {
    Text<512> temporary;
    File file;
    mode_t mode = 0;
};

[[nodiscard]] bool begin(Replacement& next, const char* place, const struct stat& old) {
    // One name for each thread: whoever writes at the same time has a file of his own.
    next.temporary.append("%s_%d", place, gettid());
    bool replaces = old.st_mode != 0;
    Descriptor made = create_anew(next.temporary, replaces ? S_IRUSR | S_IWUSR : kWidestMode);
    struct stat status;
    if (!made || fstat(made.number, &status) != 0) return false;
    next.mode = (replaces ? old.st_mode : status.st_mode) & kModeBits;
    // Without the right to give a file away it stays the caller's own.
    if (replaces && fchown(made.number, old.st_uid, old.st_gid) != 0) errno = 0;
    if (fchmod(made.number, S_IRUSR | S_IWUSR) == 0) next.file.reset(fdopen(made.number, "w"));
    if (next.file) (void)made.release();
    return static_cast<bool>(next.file);
}

[[nodiscard]] bool write_services(FILE* file, const char* flags) {
    for (const firewall_service& service : set_firewall_tab)
        fprintf(file, "%s<>%s;\n", service.name, flags);
    return fflush(file) == 0 && ferror(file) == 0;
}

[[nodiscard]] bool take_place(const Replacement& next, const char* place) {
    int written = fileno(next.file.get());
    return fchmod(written, next.mode) == 0 && fsync(written) == 0 && rename(next.temporary.c_str(), place) == 0;
}

}  // namespace

PortsFile choose_ports_file(const char* requested) {
    PortsFile file;
    if (requested != nullptr && strlen(requested) >= 2) {
        if (IsFileExist(requested) != 0) {
            if (strlen(requested) <= kLongestPath) file.path = requested;
            return file;
        }
        file.requested_missing = true;
    }
    if (IsFileExist(files::kServicePorts) != 0) {
        file.path = files::kServicePorts;
    } else {
        file.default_missing = true;
    }
    return file;
}

void print_choice(const PortsFile& file) {
    if (file.requested_missing) puts("Requested config file is not exist! Using default config ... ");
    if (file.default_missing) puts("Default config file is not exist!");
    if (file.path == nullptr) puts("Can't find valid config file!");
}

int write_default_ports_file() {
    Heap<char> flags = allowing_flags(network_port_count());
    if (!flags) return fail(ENOMEM);
    HeldSignals until_in_place;
    struct stat old;
    Heap<char> place = place_of(files::kServicePorts, old);
    Replacement next;
    if (!place || !begin(next, place.get(), old)) {
        int reason = errno;
        printf("Can't open config file(%s)\n", files::kServicePorts);
        return fail(reason);
    }
    if (write_services(next.file.get(), flags.get()) && take_place(next, place.get())) return 0;
    int reason = errno;
    (void)unlink(next.temporary.c_str());
    return fail(reason);
}

}  // namespace quorvel
