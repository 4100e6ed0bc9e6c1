#include "report/sources.h"

#include <errno.h>
#include <string.h>
#include <sys/stat.h>

#include <charconv>

#include "foundation/files.h"
#include "foundation/trusted.h"

namespace report {

namespace {

constexpr size_t kMostBytes = 1 << 20;
constexpr char kNotTold[] = "the kernel does not tell it";

[[nodiscard]] FileText read_text(const quorvel::Descriptor& descriptor) {
    FileText file;
    if (!descriptor) {
        file.reason = strerror(errno);
        return file;
    }
    file.bytes.reset(static_cast<char*>(malloc(kMostBytes)));
    const ssize_t length =
        file.bytes != nullptr ? quorvel::read_fully(descriptor.number, file.bytes.get(), kMostBytes) : -1;
    if (length >= 0 && static_cast<size_t>(length) < kMostBytes) {
        file.length = static_cast<size_t>(length);
        return file;
    }
    file.reason = file.bytes == nullptr ? "out of memory" : length < 0 ? strerror(errno) : "the file is too large";
    return file;
}

}  // namespace

FileText read_file(const char* path) {
    mode_t type = 0;
    return read_text(quorvel::open_for_reading(path, type));
}

FileText read_trusted_file(const char* path) {
    return read_text(quorvel::open_trusted(path));
}

bool find_setting(std::string_view text, std::string_view name, std::string_view& value) {
    while (!text.empty()) {
        const std::string_view line = next_line(text);
        if (!line.starts_with(name) || line.size() == name.size() || line[name.size()] != '=') continue;
        value = behind(line, name.size() + 1);
        return true;
    }
    return false;
}

bool read_attribute(const char* path, char* line, size_t size) {
    return quorvel::read_first_line(path, line, size);
}

bool to_number(std::string_view text, int64_t& number, int64_t unit) {
    int64_t count = 0;
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), count);
    if (error != std::errc() || stop != text.data() + text.size() || count < 0) return false;
    return !__builtin_mul_overflow(count, unit, &number);
}

void set_from(Words& words, const char* path) {
    char line[512];
    (void)read_attribute(path, line);
    set_unless_empty(words, without_blanks(line), kNotTold);
}

void set_from(Number& number, const char* path, int64_t unit) {
    char line[64];
    int64_t value = 0;
    const bool told = read_attribute(path, line) && to_number(without_blanks(line), value, unit);
    set_unless_negative(number, told ? value : -1, kNotTold);
}

void set_from(Truth& truth, const char* path) {
    char line[8];
    const bool told = read_attribute(path, line) && (line[0] == '0' || line[0] == '1');
    if (told) set(truth, line[0] == '1');
    if (!told) set_unknown(truth, kNotTold);
}

}  // namespace report
