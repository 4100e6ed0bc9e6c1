// Single settings as the words of "config" write them: checked first, compared afterwards.
#pragma once

#include <stddef.h>

#include <string_view>

/// Characters of a key, and of a value as a reader takes it, terminator included.
inline constexpr size_t kSettingText = 512;

/// The entry that a key of either notation names.
struct Place {
    char file[kSettingText];
    char name[kSettingText];
};

/// Why a key names no entry that can be written and read back, or null with the entry in `place`.
[[nodiscard]] const char* find_place(std::string_view key, Place& place);

/// Why a value cannot be stored whole under a name, or null. It is one line: a control byte in it, a tab included, is
/// none that a reader gives back for certain.
[[nodiscard]] const char* fault_of_value(const Place& place, std::string_view value);

/// The value that a reader of the entry gets; false when there is none.
[[nodiscard]] bool read_setting(const Place& place, char (&value)[kSettingText]);

/// Whether a reader of the entry gets this value; null stands for no value at all.
[[nodiscard]] bool holds(const Place& place, const char* value);

/// Writes a value, or removes the entry for null, and looks whether that took place.
[[nodiscard]] bool write_setting(const Place& place, const char* value);
