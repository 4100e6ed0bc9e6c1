#include "foundation/trace.h"

#include <stdarg.h>
#include <stdio.h>

namespace quorvel {

void trace(TraceLevel level, const char* format, ...) {
    if (!tracing(level)) return;
    va_list arguments;
    va_start(arguments, format);
    vprintf(format, arguments);
    va_end(arguments);
}

void report_open_failure(const char* function, const char* path) {
    printf("%s:file %s open fail.\n", function, path);
}

}  // namespace quorvel
