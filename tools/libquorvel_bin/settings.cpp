#include "settings.h"

#include <string.h>

#include <algorithm>
#include <utility>

#include "foundation/key_value.h"
#include "libquorvel_bin.h"
#include "registry/config_buffers.h"
#include "registry/key_notation.h"

namespace {

bool has_control_byte(std::string_view text) {
    return std::any_of(text.begin(), text.end(), [](unsigned char c) { return c < ' ' || c == 0x7f; });
}

// The key's parts are then in scKeyPath and scKeyName.
[[nodiscard]] bool separate(const char* key) {
    quorvel::scKeyPath[0] = quorvel::scKeyName[0] = '\0';
    const int level = std::exchange(debug, 0);  // the traces of the operation itself are enough
    const int result = LibQuorvelBin_SeparateRegKeyAndPath(key);
    debug = level;
    return result == 0;
}

}  // namespace

const char* find_place(std::string_view key, Place& place) {
    char text[kSettingText];
    if (has_control_byte(key)) return "the key holds a control byte";
    if (key.size() >= sizeof text) return "the key is too long";
    quorvel::copy_text(text, sizeof text, key);
    if (!separate(text)) return "the key is neither FILE/NAME nor NAME.FILE.DIRECTORY";
    memcpy(place.file, quorvel::scKeyPath, sizeof place.file);
    memcpy(place.name, quorvel::scKeyName, sizeof place.name);
    if (place.name[0] == '\0') return "the key has no name";
    return quorvel::is_possible_key(place.name) ? nullptr
                                                : "no reader finds a name with a blank, a '=' or a leading '#'";
}

const char* fault_of_value(const Place& place, std::string_view value) {
    if (has_control_byte(value)) return "the value holds a line feed or another control byte";
    // The line end is one more.
    bool fits = strlen(place.name) + 1 + value.size() < quorvel::kWriterPiece;
    return fits ? nullptr : "name, '=' and value are more than 254 characters";
}

bool read_setting(const Place& place, char (&value)[kSettingText]) {
    memset(value, '\0', sizeof value);
    return get_StringbyKey(place.file, place.name, value, sizeof value) != nullptr;
}

bool holds(const Place& place, const char* value) {
    char present[kSettingText];
    bool found = read_setting(place, present);
    bool same = value == nullptr ? !found : found && strcmp(present, value) == 0;
    explicit_bzero(present, sizeof present);
    return same;
}

bool write_setting(const Place& place, const char* value) {
    int result =
        value != nullptr ? set_StringbyKey(place.file, place.name, value) : del_StringbyKey(place.file, place.name, "");
    return result == 0 && holds(place, value);
}
