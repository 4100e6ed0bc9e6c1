// Which target is which: target ids, names and the appliance's target configurations.
#pragma once

#include <span>

#include "services/iscsi_sessions.h"

namespace quorvel {

/// Target ids and configuration numbers run from 1 to this.
inline constexpr int kMostTargets = 32;

/// A target configuration; empty texts stand for what its file does not hold.
struct TargetConfiguration {
    char device[1024] = "";
    char short_name[1024] = "";
};

[[nodiscard]] TargetConfiguration read_configuration(int number);

/// A target looked for by the short name of its configuration, and what is found.
struct TargetSearch {
    std::string_view short_name;  // an empty one matches nothing
    int tid = -1;
    TargetName name;  // empty when not found or not to be built
    enum { kUnknown, kMatched, kNamed } state = kUnknown;
};

/// Finds, for every search, the tid of the first target of its short name and the name of the first target of that tid.
void find_targets(std::span<TargetSearch> searches);

/// The lowest tid from 1 to 32 of which the first target line, if any, holds no name; -1 when there is none.
[[nodiscard]] int free_target_number();

}  // namespace quorvel
