#include "hw/forced_tx.h"

#include <string.h>
#include <unistd.h>

#include "foundation/appliance_files.h"
#include "foundation/failure.h"
#include "foundation/files.h"

namespace quorvel {

namespace {

constexpr char kGpio[] = "gpio";

bool reads(const char* path, const char* setting) {
    char line[16];
    return read_first_line(path, line, sizeof line) && strcmp(line, setting) == 0;
}

[[nodiscard]] bool write_setting(const char* path, const char* setting) {
    Descriptor file = open_for_update(path);
    if (!file) return false;
    // A file of the driver has no length to cut.
    (void)!ftruncate(file.number, 0);
    return write_fully(file.number, setting, strlen(setting));
}

}  // namespace

bool has_forced_tx() {
    return static_cast<bool>(open_for_reading(files::kModemLineMode));
}

int set_forced_tx(int level) {
    if (level != 0 && level != 1) return fail(EINVAL);
    return write_setting(files::kForcedTx, level == 1 ? "1" : "0") ? 0 : -1;
}

void drive_forced_tx(bool high) {
    // What cannot be written does not read back either.
    (void)write_setting(files::kModemLineMode, kGpio);
    (void)set_forced_tx(high ? 1 : 0);
}

bool is_forced_tx_high() {
    // The line may also be a multi-purpose pin ("mpp"); its forced level then means nothing.
    return reads(files::kModemLineMode, kGpio) && reads(files::kForcedTx, "1");
}

}  // namespace quorvel
