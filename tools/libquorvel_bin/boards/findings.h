// What a check finds, a line each, as compilers print it.
#pragma once

#include <stdio.h>

struct disk_path;

enum class Severity { kWarning, kError };

struct Findings {
    int warnings = 0, errors = 0;
};

/// Prints "FILE:LINE: error: TEXT"; without ":LINE" for line 0.
__attribute__((format(printf, 5, 6))) void find(Findings& findings, Severity severity, const char* file, int line,
                                                const char* format, ...);

// The parts of a check, each of which looks at one kind of thing.
void check_slot_files(Findings& findings);
void check_rows(Findings& findings);
void check_features(Findings& findings);
void check_settings_files(Findings& findings);
void check_programs(Findings& findings);
void check_arrays(Findings& findings);

/// Whether a row runs past the place from which the library reads the bus, and so can never be decided.
[[nodiscard]] bool is_undecidable(const struct disk_path& row);
