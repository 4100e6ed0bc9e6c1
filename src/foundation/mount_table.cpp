#include "foundation/mount_table.h"

#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "foundation/appliance_files.h"
#include "foundation/files.h"
#include "foundation/handles.h"
#include "foundation/line_reader.h"
#include "foundation/numbers.h"
#include "foundation/text.h"

namespace quorvel {

namespace {

// A piece of a line could end inside the text that is looked for, or begin with it.
bool any_line(const char* table, MountTest passes, const char* text) {
    Descriptor mounts = open_for_reading(table);
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

// The number of the mount that a file was opened by, or -1: Linux tells it from 3.15 on.
int64_t mount_of(int descriptor) {
    constexpr char kNumber[] = "mnt_id:";
    constexpr size_t kLongestFact = 128;
    LineFile facts(open_for_reading(Text<64>(files::kOpenFile, descriptor)), kLongestFact);
    while (const char* line = next_line(facts.reader)) {
        if (starts_with(line, kNumber)) return leading_number(line + strlen(kNumber));
    }
    return -1;
}

}  // namespace

bool any_mount(MountTest passes, const char* text) {
    return any_line(files::kMounts, passes, text);
}

bool is_mounted_elsewhere(int descriptor) {
    const int64_t mount = mount_of(descriptor);
    const Text<32> number("%lld ", static_cast<long long>(mount));
    const MountTest is_of_mount = [](const char* line, const char* begin) { return starts_with(line, begin); };
    return mount >= 0 && !any_line(files::kOwnMounts, is_of_mount, number.c_str());
}

bool is_answered_by_program(std::string_view type) {
    return type == "fuse" || type.starts_with("fuse.");
}

bool programs_are_mounted() {
    return any_mount([](const char* line, const char*) { return contains(line, " fuse ") || contains(line, " fuse."); },
                     nullptr);
}

}  // namespace quorvel
