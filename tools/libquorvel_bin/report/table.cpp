#include "report/table.h"

#include <string.h>

#include <algorithm>

#include "report/views.h"
#include "utf8.h"

namespace report {

namespace {

const char* escape_of(Paint paint) {
    static constexpr const char* kEscapes[] = {"", "\033[1m", "\033[32m", "\033[33m", "\033[1;31m", "\033[2m"};
    return kEscapes[static_cast<size_t>(paint)];
}

struct Range {
    uint32_t first, last;
};

constexpr Range kWide[] = {
    {0x1100,  0x115f },
    {0x2e80,  0x303e },
    {0x3041,  0xa4cf },
    {0xac00,  0xd7a3 },
    {0xf900,  0xfaff },
    {0xfe30,  0xfe6f },
    {0xff00,  0xff60 },
    {0xffe0,  0xffe6 },
    {0x1f300, 0x1faff},
    {0x20000, 0x3fffd},
};

uint32_t code_point(std::string_view sequence) {
    constexpr uint32_t kLeadBits[] = {0x7f, 0x7f, 0x1f, 0x0f, 0x07};
    uint32_t code = static_cast<unsigned char>(sequence[0]) & kLeadBits[sequence.size()];
    for (char byte : behind(sequence, 1))
        code = code << 6 | (static_cast<unsigned char>(byte) & 0x3f);
    return code;
}

size_t width_of_sequence(std::string_view sequence) {
    const uint32_t code = code_point(sequence);
    const bool wide = std::any_of(std::begin(kWide), std::end(kWide),
                                  [code](const Range& range) { return code >= range.first && code <= range.last; });
    return wide ? 2 : 1;
}

// The longest beginning of a text that fits, and its width. Facts are whole characters: what is none is the rest of
// one, where a text was cut to its room.
std::string_view fitting(std::string_view text, size_t columns, size_t& width) {
    size_t length = 0;
    width = 0;
    while (length < text.size()) {
        const size_t bytes = utf8_sequence(behind(text, length));
        if (bytes == 0) break;
        const size_t wide = width_of_sequence(front_of(behind(text, length), bytes));
        if (width + wide > columns) break;
        width += wide;
        length += bytes;
    }
    return front_of(text, length);
}

Row names_of(const Room& room) {
    Row row;
    for (const char* name : room.columns) {
        if (name != nullptr) add_cell(row, name, Paint::kFaint);
    }
    return row;
}

void find_widths(const Row& row, size_t (&widths)[Row::kMostCells]) {
    for (size_t i = 0; i < row.count; i++)
        widths[i] = std::max(widths[i], width_of(row.cells[i].text.c_str()));
}

// Nothing behind the last cell that says something.
size_t count_of(const Row& row) {
    size_t count = row.count;
    while (count > 1 && strcmp(row.cells[count - 1].text.c_str(), "-") == 0)
        count--;
    return count;
}

void print_row(const Screen& screen, const Row& row, const size_t (&widths)[Row::kMostCells]) {
    size_t left = screen.columns;
    const size_t count = count_of(row);
    for (size_t i = 0; i < count && left > 2; i++) {
        const Cell& cell = row.cells[i];
        fputs("  ", screen.stream);
        left -= 2;
        const size_t width = print_cut(screen, cell.text.c_str(), left, cell.paint);
        left -= width;
        const size_t padding = i + 1 < count ? std::min(left, widths[i] - std::min(width, widths[i])) : 0;
        fprintf(screen.stream, "%*s", static_cast<int>(padding), "");
        left -= padding;
    }
    fputc('\n', screen.stream);
}

}  // namespace

std::string_view fitting(std::string_view text, size_t columns) {
    size_t width = 0;
    return fitting(text, columns, width);
}

size_t width_of(std::string_view text) {
    size_t width = 0;
    (void)fitting(text, SIZE_MAX, width);
    return width;
}

size_t print_cut(const Screen& screen, std::string_view text, size_t columns, Paint paint) {
    size_t width = 0;
    const std::string_view shown = fitting(text, columns, width);
    const bool painted = screen.colour && paint != Paint::kNone && !shown.empty();
    if (painted) fputs(escape_of(paint), screen.stream);
    fwrite(shown.data(), 1, shown.size(), screen.stream);
    if (painted) fputs("\033[0m", screen.stream);
    return width;
}

void print_table(const Screen& screen, const Room& room) {
    if (room.rows.count == 0) return;
    fputc('\n', screen.stream);
    print_cut(screen, room.heading, screen.columns, Paint::kHeading);
    fputc('\n', screen.stream);
    const Row names = names_of(room);
    size_t widths[Row::kMostCells] = {};
    find_widths(names, widths);
    for (const Row& row : room.rows)
        find_widths(row, widths);
    print_row(screen, names, widths);
    for (const Row& row : room.rows)
        print_row(screen, row, widths);
}

}  // namespace report
