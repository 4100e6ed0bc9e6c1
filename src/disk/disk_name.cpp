#include "disk/disk_name.h"

#include <errno.h>

namespace quorvel {

GivenName given_name(const char* given) {
    GivenName name;
    if (given == nullptr || given[0] == '\0' || given[1] == '\0') {
        name.fault = EINVAL;
        return name;
    }
    const char* behind = without_dev_prefix(given);
    std::string_view text(behind, strcspn(behind, "\n"));
    name.had_dev = behind != given;
    if (text.find('/') != std::string_view::npos) name.fault = ENODEV;
    copy_text(name.text, sizeof name.text, text);
    return name;
}

}  // namespace quorvel
