// Tables of (code, name) rows and their one lookup in each direction; rows are tried from the top.
#pragma once

#include <string.h>

#include <span>

namespace quorvel {

struct CodeName {
    int code;
    const char* name;
};

/// The name of the first row with this code, or `otherwise`.
template <typename Row>
[[nodiscard]] const char* name_of(std::span<const Row> rows, int code, const char* otherwise) {
    for (const Row& row : rows) {
        if (row.code == code) return row.name;
    }
    return otherwise;
}

/// The code of the first row whose name is exactly `name`, or `otherwise`.
template <typename Row>
[[nodiscard]] int code_of(std::span<const Row> rows, const char* name, int otherwise) {
    for (const Row& row : rows) {
        if (strcmp(row.name, name) == 0) return row.code;
    }
    return otherwise;
}

}  // namespace quorvel
