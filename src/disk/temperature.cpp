#include <errno.h>
#include <stdio.h>
#include <sys/stat.h>

#include "foundation/answer.h"
#include "foundation/appliance_files.h"
#include "foundation/failure.h"
#include "foundation/look.h"
#include "foundation/numbers.h"
#include "foundation/shell.h"
#include "quorvel/disk.h"

using namespace quorvel;

namespace {

constexpr int kNotExecutable = 95;

// A row of the attribute table; the raw value is field 10 and may be followed by its range:
// "194 Temperature_Celsius     0x0022   112   099   000    Old_age   Always       -       38 (Min/Max 20/45)"
constexpr char kTemperatureRow[] = "194 ";
constexpr int kRawValueField = 10;
constexpr size_t kPiece = 1023;

int report_temperature(const char* row) {
    char value[kPiece + 1];
    if (LibQuorvelBin_GetSpecifiedKey(value, sizeof value, row, " ", kRawValueField) != 0) return fail(ENODATA);
    if (LibQuorvelBin_IsAllNumericStr(value, static_cast<int>(strlen(value))) != 1) return fail(ENODATA);
    answer(leading_int(value));
    return 0;
}

}  // namespace

int LibQuorvelBin_GetDiskTemperature(int, const char* device) {
    struct stat status;
    if (!read_status(device != nullptr ? device : "", status)) {
        int reason = errno;
        puts("smartctl is not exist on this platform!");
        return fail(reason, reason);
    }
    if ((status.st_mode & (S_IXUSR | S_IXGRP)) == 0) {
        puts("smartctl doesn't have a executable flag!");
        return fail(EACCES, kNotExecutable);
    }
    Text<kCommandSize> command;
    if (LibQuorvelBin_IsTargetUseMarvelLHBA(device) == 1) {
        command.append("%s -d marvell -A %s", files::kSmartctlTool, ShellWord(device).c_str());
    }
    CommandOutput table(command, kPiece);
    if (!table) return errno;
    for (const char* row : table) {
        if (starts_with(row, kTemperatureRow)) return report_temperature(row);
    }
    return fail(could_not_execute(table.finish()) ? ENOPKG : ENODATA);
}

int LibQuorvelBin_IsTargetUseMarvelLHBA(const char*) {
    return 1;
}
