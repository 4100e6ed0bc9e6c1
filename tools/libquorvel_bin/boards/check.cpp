// check: what is wrong with the configuration of this machine. It reads configuration, procfs and sysfs, and changes
// nothing.
#include <stdarg.h>
#include <stdio.h>

#include "boards/boards_commands.h"
#include "boards/findings.h"
#include "libquorvel_bin.h"
#include "utf8.h"

void find(Findings& findings, Severity severity, const char* file, int line, const char* format, ...) {
    bool error = severity == Severity::kError;
    (error ? findings.errors : findings.warnings)++;
    printf(line > 0 ? "%s:%d: " : "%s: ", file, line);
    // What settings hold may be a stranger's, whose record is looked at, and is shown on a terminal.
    char text[4096], shown[escaped_size(sizeof text)];
    va_list arguments;
    va_start(arguments, format);
    (void)vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    (void)escape_bytes(shown, sizeof shown, text, true);
    printf("%s: %s\n", error ? "error" : "warning", shown);
}

int run_check(int, char**) {
    from_cmdline = 0;
    Findings findings;
    check_slot_files(findings);
    check_features(findings);
    check_settings_files(findings);
    check_programs(findings);
    check_arrays(findings);
    if (findings.errors > 0) return 2;
    return findings.warnings > 0 ? 1 : 0;
}
