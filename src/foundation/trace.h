// Diagnostic traces on standard output, governed by the exported level `debug`.
#pragma once

#include "quorvel/foundation.h"

namespace quorvel {

/// A trace prints when `debug` is above its level.
enum TraceLevel : int {
    kTrace = 9,         // values read, lines written, intermediate results
    kTraceHeap = 100,   // heap allocations and releases
    kTraceDetail = 101  // the inventory's details
};

[[nodiscard]] inline bool tracing(TraceLevel level) {
    return debug > level;
}

__attribute__((format(printf, 2, 3))) void trace(TraceLevel level, const char* format, ...);

/// "FUNCTION:file PATH open fail.", printed whatever the level.
void report_open_failure(const char* function, const char* path);

}  // namespace quorvel
