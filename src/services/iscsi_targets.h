// Which target is which: lookups between target ids, names and the appliance's target
// configurations, each by one reading of the session file.
#pragma once

#include <span>

#include "services/iscsi_sessions.h"

namespace quorvel {

/// Target ids and configuration numbers run from 1 to this.
inline constexpr int kMostTargets = 32;

inline constexpr size_t kConfigurationValue = 1024;

/// A target configuration; empty texts stand for what its file does not hold.
struct TargetConfiguration {
    char device[kConfigurationValue] = "";
    char short_name[kConfigurationValue] = "";
};

void read_configuration(int number, TargetConfiguration& configuration);

/// A target looked for by the short name of its configuration, and what is found.
struct TargetSearch {
    std::string_view short_name;  // an empty one matches nothing
    int tid = -1;
    char name[kTargetName] = "";  // empty when not found or not to be built
    bool matched = false;
};

/// Finds, for every search, the first target of its name and the full name of the first target that
/// has its tid.
void find_targets(std::span<TargetSearch> searches);

/// The lowest tid from 1 to 32 of which the first target line, if any, holds no name; -1 when there
/// is none.
int free_target_number();

}  // namespace quorvel
