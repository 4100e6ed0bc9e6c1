// Tools of the appliance, side by side, each with a time limit.
#pragma once

#include <stddef.h>

#include <span>
#include <string_view>

#include "foundation/handles.h"
#include "foundation/text.h"

namespace report {

inline constexpr int kToolMilliseconds = 5000;
inline constexpr char kTooLate[] = "the tool did not answer in time";
inline constexpr char kCrashed[] = "the tool crashed";

/// One call: arguments before it runs; afterwards what it printed, or the reason why there is nothing.
struct Tool {
    static constexpr size_t kMostArguments = 20;

    const char* arguments[kMostArguments] = {};  // the program's path first
    quorvel::Text<64> device;                    // what an argument may point at
    const char* reason = nullptr;
    quorvel::Heap<char> output;
    size_t length = 0;
    bool cut = false;  // there was more
    int exit_status = -1;
};

/// Runs them all, at most eight at a time. One that is not through after the limit is killed with all it started;
/// output beyond 256 KiB of one is dropped.
void run_tools(std::span<Tool> tools, int milliseconds);

[[nodiscard]] inline std::string_view printed_by(const Tool& tool) {
    return tool.output != nullptr ? std::string_view(tool.output.get(), tool.length) : std::string_view();
}

}  // namespace report
