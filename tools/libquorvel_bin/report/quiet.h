// Keeps what library calls print off the program's own output, and hands it over where it is the answer.
#pragma once

#include <stdint.h>

#include <initializer_list>

#include "foundation/handles.h"

namespace report {

/// As long as it lives, standard output goes to a pipe, which no limit on files cuts, and standard error nowhere, and
/// nothing is traced: a trace would stand among the answers.
struct Quiet {
    Quiet();
    ~Quiet();
    Quiet(const Quiet&) = delete;
    Quiet& operator=(const Quiet&) = delete;

    quorvel::Descriptor output, error, store;
    int32_t level;
};

/// What an entry point prints for a command front end, with its argument vector; null when it cannot be had. `result`
/// receives what it returned.
[[nodiscard]] quorvel::Heap<char> answer_of(const Quiet& quiet, int (*entry)(int, char**),
                                            std::initializer_list<const char*> words, int& result);

}  // namespace report
