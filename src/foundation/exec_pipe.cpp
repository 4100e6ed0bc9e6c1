#include <stdlib.h>

#include "foundation/failure.h"
#include "foundation/files.h"
#include "foundation/shell.h"
#include "quorvel/foundation.h"

using namespace quorvel;

namespace {

constexpr size_t kFirstCapacity = 2048;

// Doubles the block, which always has one byte more than its capacity, for the terminator.
[[nodiscard]] bool grow(char** buffer, size_t& capacity) {
    char* grown = static_cast<char*>(realloc(*buffer, capacity * 2 + 1));
    if (grown == nullptr) return false;
    *buffer = grown;
    capacity *= 2;
    return true;
}

}  // namespace

int ExecPipe(const char* command, char** buffer) {
    if (buffer == nullptr) return fail(EINVAL);
    *buffer = static_cast<char*>(calloc(kFirstCapacity + 1, 1));
    if (*buffer == nullptr) return -1;
    if (command == nullptr) return fail(EINVAL);
    CommandOutput output(command, 1);
    if (!output) return -1;

    size_t capacity = kFirstCapacity;
    size_t length = 0;
    for (;;) {
        // One more byte decides whether a full block has to grow.
        char extra;
        bool full = length == capacity;
        ssize_t count =
            read_fully(output.lines.descriptor, full ? &extra : *buffer + length, full ? 1 : capacity - length);
        if (count <= 0) break;
        if (full) {
            if (!grow(buffer, capacity)) return -1;
            (*buffer)[length] = extra;
        }
        length += static_cast<size_t>(count);
    }
    (*buffer)[length] = '\0';
    return output.finish();
}
