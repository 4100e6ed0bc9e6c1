// Mounted data, and the volumes of the volume manager as the storage scripts list them.
#include <stdlib.h>
#include <string.h>

#include "foundation/appliance_files.h"
#include "foundation/files.h"
#include "foundation/look.h"
#include "foundation/mount_table.h"
#include "foundation/text.h"
#include "report/gather.h"
#include "report/sources.h"

namespace report {

namespace {

constexpr char kListMissing[] = "the storage scripts keep no list";

// The mount table writes blanks and the like as "\040".
std::string_view unescape(std::string_view field, char* target, size_t size) {
    size_t length = 0;
    for (size_t i = 0; i < field.size() && length + 1 < size; i++) {
        char character = field[i];
        if (character == '\\' && i + 3 < field.size()) {
            character = static_cast<char>((field[i + 1] - '0') * 64 + (field[i + 2] - '0') * 8 + field[i + 3] - '0');
            i += 3;
        }
        target[length++] = character;
    }
    target[length] = '\0';
    return {target, length};
}

void set_sizes_unknown(VolumeFacts& volume, const char* reason) {
    for (Number* number : {&volume.size_bytes, &volume.used_bytes, &volume.free_bytes})
        set_unknown(*number, reason);
}

void gather_sizes(VolumeFacts& volume, const char* mount_point) {
    struct statfs sizes = {};
    if (!quorvel::read_file_system(mount_point, sizes))
        return set_sizes_unknown(volume, "the file system does not answer");
    const auto unit = static_cast<uint64_t>(sizes.f_frsize);
    const auto total = static_cast<int64_t>(sizes.f_blocks * unit);
    const auto free_bytes = static_cast<int64_t>(sizes.f_bavail * unit);
    set(volume.size_bytes, total);
    set(volume.free_bytes, free_bytes);
    set(volume.used_bytes, total - free_bytes);
}

// Network file systems and programs are not asked: one that is gone would hold the report up.
void take_mount(Facts& facts, std::string_view line) {
    char mount_point[4096], device[4096];
    const std::string_view source = unescape(next_field(line, " "), device, sizeof device);
    const std::string_view place = unescape(next_field(line, " "), mount_point, sizeof mount_point);
    if (!place.starts_with("/mnt/") || !source.starts_with("/dev/")) return;
    VolumeFacts* volume = add(facts.volumes);
    if (volume == nullptr) return;
    set(volume->mount_point, place);
    set(volume->device, source);
    const std::string_view type = next_field(line, " ");
    set(volume->type, type);
    if (!quorvel::is_answered_by_program(type)) return gather_sizes(*volume, mount_point);
    set_sizes_unknown(*volume, "the file system is a program, which is not asked");
}

void gather_mounts(Facts& facts) {
    const FileText mounts = read_file(quorvel::files::kMounts);
    facts.volumes.reason = mounts.reason;
    for (std::string_view text = mounts.view(); !text.empty();)
        take_mount(facts, next_line(text));
}

void gather_physical_volumes(Facts& facts) {
    const FileText list = read_trusted_file(quorvel::files::kPhysicalVolumes);
    facts.physical_volumes.reason = list.reason != nullptr ? kListMissing : nullptr;
    for (std::string_view text = list.view(); !text.empty();) {
        std::string_view line = next_line(text);
        PhysicalVolumeFacts* volume = line.empty() ? nullptr : add(facts.physical_volumes);
        if (volume == nullptr) continue;
        set_unless_empty(volume->device, next_field(line, "<>"), "the list does not tell it");
        set_unless_empty(volume->format, next_field(line, "<>"), "the list does not tell it");
        set_unless_empty(volume->group, next_field(line, "<>"), "in no volume group");
    }
}

void gather_logical_volumes(Facts& facts) {
    const FileText list = read_trusted_file(quorvel::files::kLogicalVolumes);
    facts.logical_volumes.reason = list.reason != nullptr ? kListMissing : nullptr;
    for (std::string_view text = list.view(); !text.empty();) {
        std::string_view line = next_line(text);
        const std::string_view device = next_field(line, "<>");
        LogicalVolumeFacts* volume = device.empty() ? nullptr : add(facts.logical_volumes);
        if (volume != nullptr) set(volume->device, device);
    }
}

}  // namespace

void gather_volumes(Facts& facts) {
    gather_mounts(facts);
    gather_physical_volumes(facts);
    gather_logical_volumes(facts);
}

}  // namespace report
