// The forms of the report. Each walks the same facts and writes to a stream; none asks the machine for anything.
#pragma once

#include <stdio.h>

#include "report/facts.h"

namespace report {

/// One JSON object; false when memory was short.
[[nodiscard]] bool print_json(const Facts& facts, FILE* stream);

/// Metrics for Prometheus.
void print_metrics(const Facts& facts, FILE* stream);

/// The front of the appliance as a picture (SVG): its bays, ports and display.
void print_picture(const Facts& facts, FILE* stream);

/// A page (HTML, one file without scripts) with the picture and the tables.
void print_page(const Facts& facts, FILE* stream);

/// One screen for people, `columns` wide, in colour or not.
void print_screen(const Facts& facts, FILE* stream, size_t columns, bool colour);

/// The verdict in a word: "well", "degraded", "at risk", "not known".
[[nodiscard]] const char* word_of(Severity severity);

}  // namespace report
