// The facts as tables for people, room by room: what the screen and the page show.
#pragma once

#include <string_view>

#include "foundation/text.h"
#include "report/facts.h"

namespace report {

/// Colours by meaning, not by name. Without colour the words alone tell it.
enum class Paint { kNone, kHeading, kGood, kWarning, kBad, kFaint };

struct Cell {
    quorvel::Text<160> text;
    Paint paint = Paint::kNone;
};

struct Row {
    static constexpr size_t kMostCells = 9;

    Cell cells[kMostCells];
    size_t count = 0;
};

/// A table with the names of its columns.
struct Room {
    const char* heading = "";
    const char* columns[Row::kMostCells] = {};
    List<Row> rows;
};

/// Every room, also those without rows. A room that could not be looked at says so in a row.
[[nodiscard]] List<Room> rooms_of(const Facts& facts);

/// The next cell of a row, "-" for an empty text; the last one is taken again when there are no more.
Cell& add_cell(Row& row, std::string_view text, Paint paint = Paint::kNone);

/// "1.0 TB", "38 °C", "12 %", "1 Gb/s"; "?" when it is not known.
void add_bytes(Row& row, const Number& bytes);
void add_speed(Row& row, const Number& bits_per_second);

}  // namespace report
