// A table on a screen: columns as wide as their widest cell, lines cut at the screen's edge.
#pragma once

#include <stdio.h>

#include <string_view>

#include "report/rooms.h"

namespace report {

struct Screen {
    FILE* stream;
    size_t columns;
    bool colour;
};

/// How many columns a text takes: a character each, two for the wide ones of East Asia.
[[nodiscard]] size_t width_of(std::string_view text);

/// The longest beginning of a text that takes no more columns.
[[nodiscard]] std::string_view fitting(std::string_view text, size_t columns);

/// Prints at most as many columns of a text as there are; returns those that it took.
size_t print_cut(const Screen& screen, std::string_view text, size_t columns, Paint paint);

/// Prints a room's heading, its columns' names and its rows, if there are any.
void print_table(const Screen& screen, const Room& room);

}  // namespace report
