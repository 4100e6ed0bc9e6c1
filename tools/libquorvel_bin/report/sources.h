// Files that facts are read from: whole texts of bounded size, and attributes of one line.
#pragma once

#include <string_view>

#include "foundation/handles.h"
#include "report/facts.h"
#include "report/views.h"

namespace report {

/// A whole file of at most a mebibyte; without one the reason why not.
struct FileText {
    quorvel::Heap<char> bytes;
    size_t length = 0;
    const char* reason = nullptr;

    [[nodiscard]] std::string_view view() const { return {bytes != nullptr ? bytes.get() : "", length}; }
};

[[nodiscard]] FileText read_file(const char* path);

/// The same of a file in a directory where everybody may write: only one of root's or the caller's own, and no link.
[[nodiscard]] FileText read_trusted_file(const char* path);

/// The value on the first line "NAME=VALUE" of a text; false when there is none.
[[nodiscard]] bool find_setting(std::string_view text, std::string_view name, std::string_view& value);

/// The first line of a file, without blanks around it; "" and false when it cannot be read.
template <size_t Size>
[[nodiscard]] bool read_attribute(const char* path, char (&line)[Size]);
[[nodiscard]] bool read_attribute(const char* path, char* line, size_t size);
template <size_t Size>
bool read_attribute(const char* path, char (&line)[Size]) {
    return read_attribute(path, line, Size);
}

/// Facts from such attributes, unknown when the kernel does not tell them.
void set_from(Words& words, const char* path);
void set_from(Number& number, const char* path, int64_t unit = 1);
void set_from(Truth& truth, const char* path);

/// A whole text as a decimal number that is not negative, times a unit; false when it is none or too large.
[[nodiscard]] bool to_number(std::string_view text, int64_t& number, int64_t unit = 1);

}  // namespace report
