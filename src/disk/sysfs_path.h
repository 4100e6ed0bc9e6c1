// Components of sysfs paths: plain text work, which the command front end shares.
#pragma once

#include <stddef.h>

#include <optional>
#include <string_view>

#include "foundation/numbers.h"
#include "foundation/text.h"

namespace quorvel {

/// Longest path component that is looked at; a longer one counts as empty.
inline constexpr size_t kLongestComponent = 31;

/// Component `number` of a path, counted from 1 over non-empty components; empty when it has none or a longer one.
[[nodiscard]] inline std::string_view path_component(std::string_view path, int number) {
    for (size_t begin = 0;;) {
        while (begin < path.size() && path[begin] == '/')
            begin++;
        if (begin == path.size()) return "";
        size_t end = path.find('/', begin);
        if (end == std::string_view::npos) end = path.size();
        if (--number == 0) return {path.data() + begin, end - begin <= kLongestComponent ? end - begin : 0};
        begin = end;
    }
}

/// The bus of a component as scanf's "usb%d" reads it, whatever follows; none for another one.
[[nodiscard]] inline std::optional<int> usb_bus_of(std::string_view component) {
    if (!component.starts_with("usb") || component.size() > kLongestComponent) return {};
    component.remove_prefix(strlen("usb"));
    char digits[kLongestComponent + 1];
    copy_text(digits, sizeof digits, component);
    return scanned_int(digits);
}

}  // namespace quorvel
