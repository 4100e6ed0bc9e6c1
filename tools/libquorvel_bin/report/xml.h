// Text in XML: every form that is read by a browser goes through here.
#pragma once

#include <stdio.h>

#include <string_view>

namespace report {

/// Writes a text as character data or attribute value: markup and quotes become references, and characters that XML
/// does not know become U+FFFD.
void print_xml(FILE* stream, std::string_view text);

/// A text of at most `columns` columns: a longer one ends in "…".
void print_xml_cut(FILE* stream, std::string_view text, size_t columns);

}  // namespace report
