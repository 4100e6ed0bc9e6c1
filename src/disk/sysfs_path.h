// Components of sysfs paths: plain text work, which the command front end shares.
#pragma once

#include <stddef.h>

#include <charconv>
#include <string_view>

namespace quorvel {

/// Longest path component that is looked at; a longer one counts as empty.
inline constexpr size_t kLongestComponent = 31;

/// Component `number` of a path, counted from 1 over non-empty components; empty when it has none or
/// a longer one.
inline std::string_view path_component(std::string_view path, int number) {
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

/// The number in a text that reads "usb" and a number, whatever follows; false for another text.
inline bool usb_bus_of(std::string_view component, int& bus) {
    if (!component.starts_with("usb")) return false;
    component.remove_prefix(3);
    return std::from_chars(component.data(), component.data() + component.size(), bus).ec == std::errc();
}

}  // namespace quorvel
