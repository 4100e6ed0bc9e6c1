// The running kernel's release as one comparable number.
#include <stdio.h>
#include <string.h>

#include "foundation/appliance_files.h"
#include "foundation/failure.h"
#include "foundation/files.h"
#include "foundation/numbers.h"
#include "foundation/text.h"
#include "quorvel/platform.h"

using namespace quorvel;

namespace {

constexpr size_t kLongestRelease = 255;

// Not masked: a number of more than 16 bits spills into the next field up. The last one is read as 32 bits with a sign.
uint64_t number_at(const char* text, unsigned shift) {
    return static_cast<uint64_t>(shift != 0 ? leading_number(text) : low_int(text)) << shift;
}

[[nodiscard]] int parse_numbers(const char* text, uint64_t& version) {
    version = number_at(text, 48);
    for (unsigned shift : {32U, 16U, 0U}) {
        text = strchr(text, '.');
        if (text == nullptr) return 0;
        // The fourth number follows its "." directly, so a run of them in front of it reads as 0.
        text += shift != 0 ? strspn(text, ".") : 1;
        if (shift != 0 && *text == '\0') return fail(EINVAL);
        version |= number_at(text, shift);
    }
    return 0;
}

struct os_version running_version() {
    struct os_version running = {};
    (void)LibQuorvelBin_GetOsVer(&running);
    return running;
}

}  // namespace

int LibQuorvelBin_GetOsVerFromString(struct os_version* version, const char* release) {
    if (version == nullptr) return fail(EINVAL);
    *version = {};
    if (release == nullptr) return fail(EINVAL);
    size_t length = strnlen(release, kLongestRelease + 1);
    if (length > kLongestRelease) return fail(EINVAL);

    release += strspn(release, "-");
    size_t count = strcspn(release, "-\n");
    if (count == 0) return fail(EINVAL);
    if (release[count] == '-') {
        const char* suffix = release + count + 1;
        copy_text(version->suffix, sizeof version->suffix, {suffix, strcspn(suffix, "\n")});
    }
    char numbers[kLongestRelease + 1];
    copy_text(numbers, sizeof numbers, {release, count});
    return parse_numbers(numbers, version->version);
}

int LibQuorvelBin_GetOsVer(struct os_version* version) {
    char release[128];
    if (version == nullptr) return fail(EINVAL);
    if (!read_first_line(files::kOsRelease, release, sizeof release)) return -1;
    (void)LibQuorvelBin_GetOsVerFromString(version, release);
    return 0;
}

void LibQuorvelBin_PrintOsVer(const struct os_version* version) {
    if (version == nullptr) return;
    auto field = [version](unsigned shift) { return static_cast<int>(version->version >> shift & 0xffff); };
    printf("%d.%d.%d.%d", field(48), field(32), field(16), field(0));
    if (version->suffix[0] != '\0') printf("-%.*s", static_cast<int>(sizeof version->suffix), version->suffix);
    putchar('\n');
}

int LibQuorvelBin_IsOsNewerThan(const char* release) {
    struct os_version given;
    if (release == nullptr) return fail(EINVAL, 0);
    (void)LibQuorvelBin_GetOsVerFromString(&given, release);
    return running_version().version > given.version ? 1 : 0;
}

int LibQuorvelBin_IsOsNewerEqual(const char* release) {
    struct os_version given;
    if (release == nullptr) return fail(EINVAL, 0);
    (void)LibQuorvelBin_GetOsVerFromString(&given, release);
    return running_version().version >= given.version ? 1 : 0;
}
