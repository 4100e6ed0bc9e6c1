// A table on a screen: columns as wide as their widest cell, lines cut at the screen's edge.
#pragma once

#include <stdio.h>

#include <span>
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

struct Screen {
    FILE* stream;
    size_t columns;
    bool colour;
};

/// The next cell of a row, "-" for an empty text; the last one is taken again when there are no more.
Cell& add_cell(Row& row, std::string_view text, Paint paint = Paint::kNone);

/// "1.0 TB", "38 °C", "12 %", "1 Gb/s"; "?" when it is not known.
void add_bytes(Row& row, const Number& bytes);
void add_speed(Row& row, const Number& bits_per_second);

/// How many columns a text takes: a character each, two for the wide ones of East Asia.
size_t width_of(std::string_view text);

/// Prints at most as many columns of a text as there are; returns those that it took.
size_t print_cut(const Screen& screen, std::string_view text, size_t columns, Paint paint);

/// Prints a heading over the table's rows, if there are any.
void print_table(const Screen& screen, const char* heading, const List<Row>& rows);

}  // namespace report
