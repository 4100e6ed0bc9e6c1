#include "boards/naming_source.h"

#include <stdlib.h>

#include "disk/slot_match.h"
#include "foundation/files.h"
#include "foundation/line_reader.h"
#include "libquorvel_bin.h"
#include "platform/platforms.h"

using namespace quorvel;

namespace {

const char* shown_setting(const char* value) {
    return value[0] != '\0' ? value : "(not set)";
}

// The file is in force, or why it is not; then what holds instead.
void describe_origin(NamingSource& source, bool configured) {
    if (configured) return source.origin.add(kDiskOrderFile.path);
    const Platform* platform = find_platform();
    const char* title = platform != nullptr ? platform->title : "unknown";
    const char* sign = platform != nullptr ? platform->sign : "no sign of a known platform is there";
    if (source.table.rows != nullptr) {
        source.origin.append("built into the library for platform %s (%s)", title, sign);
    } else {
        source.origin.append("none: rules INTERNAL_SCSI_TYPE=%s, USB_TREE_TYPE=%s; platform %s (%s)",
                             shown_setting(source.wiring.internal), shown_setting(source.wiring.usb_tree), title, sign);
    }
    SlotFault fault = SlotFault::kNone;
    int line = first_bad_line(kDiskOrderFile, fault);
    if (line != 0) source.origin.append("; %s:%d: %s", kDiskOrderFile.path, line, text_of_fault(fault));
}

struct LineNumbers {
    int* lines;
    int room;
};

void note_line(void* context, const SlotLine& line, const struct disk_path*) {
    LineNumbers& numbers = *static_cast<LineNumbers*>(context);
    if (line.rows > 0 && line.rows <= numbers.room && numbers.lines[line.rows - 1] == 0)
        numbers.lines[line.rows - 1] = line.number;
}

void ignore_line(void*, const SlotLine&, const struct disk_path*) {}

// Reads a file, and which line each row stands on; null when the library takes no table from it.
[[nodiscard]] struct disk_path* load(NamedTable& table, const SlotFile& file) {
    struct disk_path* rows = nullptr;
    if (!walk_slot_file(file, ignore_line, nullptr, &rows) || rows == nullptr) return nullptr;
    int count = index_of_end(rows);
    table.rows = rows;
    table.file = &file;
    table.lines.reset(static_cast<int*>(calloc(static_cast<size_t>(count) + 1, sizeof(int))));
    LineNumbers numbers = {table.lines.get(), table.lines ? count : 0};
    (void)walk_slot_file(file, note_line, &numbers);
    return rows;
}

bool is_blank_or_comment(const char* line) {
    const char* text = getNextKey(line);
    return text[strspn(text, "\r\n")] == '\0' || text[0] == ';' || text[0] == '#';
}

struct BadLine {
    int number;
    SlotFault fault;
};

void keep_first_bad(void* context, const SlotLine& line, const struct disk_path*) {
    BadLine& bad = *static_cast<BadLine*>(context);
    if (bad.number == 0 && line.fault != SlotFault::kNone) bad = {line.number, line.fault};
}

}  // namespace

bool walk_slot_file(const SlotFile& file, SlotLineVisitor visit, void* context, struct disk_path** table) {
    Descriptor opened = open_for_reading(file.path);
    if (!opened) return false;
    DiskOrder order;
    ExtensionFile extension;
    if (file.extension) extension.card = find_card();
    LineReader reader(opened.number, kSlotFilePiece);
    char line[kSlotFilePiece + 1];
    bool line_ended = true, good = true;
    for (int number = 0; next_line(reader, line, sizeof line);) {
        if (line_ended) number++;
        line_ended = line[0] != '\0' && line[strlen(line) - 1] == '\n';
        bool section = file.extension && take_section(extension, line);
        const auto setting = section ? std::nullopt : split_setting(line);
        if (!setting && !section && is_blank_or_comment(line)) continue;
        SlotFault fault = SlotFault::kNone;
        if (setting) {
            fault = file.extension ? take_extension_setting(extension, setting->key, setting->value)
                                   : take_disk_order_setting(order, setting->key, setting->value);
        }
        const SlotTableBuilder& read = file.extension ? extension.table : order.table;
        visit(
            context,
            {number, setting ? setting->key : nullptr, setting ? setting->value : nullptr, section, fault, read.count},
            read.rows);
        good = good && fault == SlotFault::kNone;
    }
    if (table != nullptr && good) *table = (file.extension ? extension.table : order.table).release();
    return true;
}

int first_bad_line(const SlotFile& file, SlotFault& fault) {
    BadLine bad = {0, SlotFault::kNone};
    (void)walk_slot_file(file, keep_first_bad, &bad);
    fault = bad.fault;
    return bad.number;
}

const char* text_of_fault(SlotFault fault) {
    switch (fault) {
        case SlotFault::kSlot:
            return "the slot is no number from 1 on";
        case SlotFault::kPath:
            return "the path is missing or longer than 127 characters";
        case SlotFault::kAddress:
            return "the SCSI address is missing or longer than 127 characters";
        case SlotFault::kPort:
            return "the first USB port is no number from 1 on";
        case SlotFault::kExtensionSlot:
            return "the key is not extslot1 to extslot4";
        default:
            return "memory is short";
    }
}

NamingSource::NamingSource() {
    struct os_version running = {};
    (void)LibQuorvelBin_GetOsVer(&running);
    for (int shift : {48, 32, 16, 0})
        kernel.append("%s%u", shift < 48 ? "." : "", static_cast<unsigned>(running.version >> shift & 0xffff));
    new_sysfs = LibQuorvelBin_IsOsNewerEqual("2.6.31.8") == 1;
    owned[0] = load(table, kDiskOrderFile);
    // Without a configured set what the library gives is built in, and nobody's to release.
    if (owned[0] == nullptr) table.rows = LibQuorvelBin_GetPlatformDiskSet();
    if (table.rows != nullptr) owned[1] = load(extension, kExtensionFile);
    // What is not set stays empty.
    (void)LibQuorvelBin_GetConfValInStringByKey(wiring.internal, sizeof wiring.internal, "INTERNAL_SCSI_TYPE");
    (void)LibQuorvelBin_GetConfValInStringByKey(wiring.usb_tree, sizeof wiring.usb_tree, "USB_TREE_TYPE");
    describe_origin(*this, owned[0] != nullptr);
}

NamingSource::~NamingSource() {
    for (struct disk_path* set : owned)
        disk_path_free(set);
}
