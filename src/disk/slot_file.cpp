#include "disk/slot_file.h"

#include <errno.h>
#include <stdlib.h>
#include <string.h>

#include <utility>

#include "foundation/numbers.h"
#include "foundation/text.h"
#include "quorvel/foundation.h"

namespace quorvel {

namespace {

// What scanf's "%s" takes.
std::string_view first_word(std::string_view text) {
    while (!text.empty() && is_blank_character(text.front()))
        text.remove_prefix(1);
    size_t length = 0;
    while (length < text.size() && !is_blank_character(text[length]))
        length++;
    return {text.data(), length};
}

[[nodiscard]] bool keep(char*& target, const char* text) {
    target = strdup(text);
    return target != nullptr;
}

}  // namespace

std::optional<SlotSetting> split_setting(char* line) {
    char* key = getNextKey(line);
    if (key[0] == ';' || key[0] == '#') return {};
    char* equals = strchr(key, '=');
    if (equals == nullptr) return {};
    *equals = '\0';
    char* value = equals + 1;
    remove_space(key);
    remove_last_crlf(value);
    return SlotSetting{key, value};
}

void take_word(DiskWord& word, const char* value) {
    std::string_view taken = first_word(value);
    if (!taken.empty()) copy_text(word, sizeof word, taken);
}

// cppcheck-suppress uninitMemberVar
SlotFields::SlotFields(const char* value) {
    for (auto& field : text) {
        value += strspn(value, ",");
        size_t length = strcspn(value, ",");
        copy_text(field, sizeof field, length < sizeof field ? first_word({value, length}) : "");
        value += length;
    }
}

struct disk_path* SlotTableBuilder::add() {
    size_t size = (static_cast<size_t>(count) + 2) * sizeof *rows;
    struct disk_path* grown = static_cast<struct disk_path*>(realloc(rows, size));
    if (grown == nullptr) return nullptr;
    rows = grown;
    rows[count + 1] = {DISK_PATH_END, 0, nullptr, nullptr, -1, -1, nullptr};
    rows[count] = {};
    return &rows[count++];
}

struct disk_path* SlotTableBuilder::release() {
    if (rows == nullptr) errno = ENODATA;
    return std::exchange(rows, nullptr);
}

int reason_of(SlotFault fault) {
    return fault == SlotFault::kMemory ? ENOMEM : EBADMSG;
}

SlotFault fill_row(struct disk_path& row, int32_t type, const SlotTexts& texts, const char* word) {
    row.type = type;
    row.slot = leading_int(texts.slot);
    if (row.slot < 1) return SlotFault::kSlot;
    if (texts.path[0] == '\0') return SlotFault::kPath;
    if (type == DISK_PATH_INTERNAL) {
        if (texts.third[0] == '\0') return SlotFault::kAddress;
        if (!keep(row.scsi_id, texts.third)) return SlotFault::kMemory;
    }
    if (type == DISK_PATH_USB) {
        row.usb_port1 = leading_int(texts.third);
        row.usb_port2 = leading_int(texts.fourth);
        if (row.usb_port1 < 1) return SlotFault::kPort;
    }
    if (word[0] != '\0' && !keep(row.diskname, word)) return SlotFault::kMemory;
    return keep(row.path, texts.path) ? SlotFault::kNone : SlotFault::kMemory;
}

SlotFault fill_unknown_row(struct disk_path& row, const SlotTexts& texts) {
    row.slot = leading_int(texts.slot);
    return texts.path[0] == '\0' || keep(row.path, texts.path) ? SlotFault::kNone : SlotFault::kMemory;
}

}  // namespace quorvel
