// Cells of the tables: texts and scaled numbers.
#include <span>

#include "report/rooms.h"

namespace report {

namespace {

struct Unit {
    const char* name;
    double size;
};

// One decimal below ten, none above.
void add_scaled(Row& row, const Number& number, std::span<const Unit> units) {
    if (!is_known(number)) return (void)add_cell(row, "?", Paint::kFaint);
    const auto value = static_cast<double>(number.value);
    const Unit* unit = &units.back();
    for (const Unit& candidate : units) {
        if (value < candidate.size) continue;
        unit = &candidate;
        break;
    }
    const double scaled = value / unit->size;
    Cell& cell = add_cell(row, "");
    cell.text = quorvel::Text<160>("%.*f %s", scaled < 9.95 && unit->size > 1 ? 1 : 0, scaled, unit->name);
}

}  // namespace

Cell& add_cell(Row& row, std::string_view text, Paint paint) {
    Cell& cell = row.cells[row.count < Row::kMostCells ? row.count++ : Row::kMostCells - 1];
    cell.text = quorvel::Text<160>();
    cell.text.add(text.empty() ? "-" : text);
    cell.paint = paint;
    return cell;
}

void add_bytes(Row& row, const Number& bytes) {
    static constexpr Unit kUnits[] = {
        {"TB", 1e12},
        {"GB", 1e9 },
        {"MB", 1e6 },
        {"kB", 1e3 },
        {"B",  1   },
    };
    add_scaled(row, bytes, kUnits);
}

void add_speed(Row& row, const Number& bits_per_second) {
    static constexpr Unit kUnits[] = {
        {"Gb/s", 1e9},
        {"Mb/s", 1e6},
        {"b/s",  1  },
    };
    add_scaled(row, bits_per_second, kUnits);
}

}  // namespace report
