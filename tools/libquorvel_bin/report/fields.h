// The names of the facts, a table a record, in the order in which they are shown.
#pragma once

#include <span>

#include "report/facts.h"

namespace report {

/// One fact of a record; one of the three members is set.
template <typename Record>
struct Field {
    const char* name;
    Words Record::*words = nullptr;
    Number Record::*number = nullptr;
    Truth Record::*truth = nullptr;

    constexpr Field(const char* field_name, Words Record::*member) : name(field_name), words(member) {}
    constexpr Field(const char* field_name, Number Record::*member) : name(field_name), number(member) {}
    constexpr Field(const char* field_name, Truth Record::*member) : name(field_name), truth(member) {}
};

template <typename Record>
[[nodiscard]] const char* reason_of(const Record& record, const Field<Record>& field) {
    if (field.words != nullptr) return (record.*field.words).reason;
    if (field.number != nullptr) return (record.*field.number).reason;
    return (record.*field.truth).reason;
}

/// The table of a record's fields.
template <typename Record>
[[nodiscard]] std::span<const Field<Record>> fields_of();

}  // namespace report
