#include "foundation/mount_table.h"

#include <errno.h>
#include <stdio.h>
#include <stdlib.h>

#include "foundation/appliance_files.h"
#include "foundation/files.h"
#include "foundation/handles.h"
#include "foundation/text.h"

namespace quorvel {

// A piece of a line could end inside the text that is looked for.
bool any_mount(MountTest passes, const char* text) {
    Descriptor mounts = open_for_reading(files::kMounts);
    File lines(mounts ? fdopen(mounts.number, "r") : nullptr);
    if (!lines) return false;
    (void)mounts.release();  // the stream has it
    char* line = nullptr;
    size_t room = 0;
    bool found = false;
    while (!found && getline(&line, &room, lines.get()) > 0)
        found = passes(line, text);
    free(line);
    return found;
}

bool is_answered_by_program(std::string_view type) {
    return type == "fuse" || type.starts_with("fuse.");
}

// Who is not shown the table, in a changed root without /proc, is not shown what accounts mount with either.
bool programs_are_mounted() {
    errno = 0;
    return any_mount([](const char* line, const char*) { return contains(line, " fuse ") || contains(line, " fuse."); },
                     nullptr) ||
           errno != 0;
}

}  // namespace quorvel
