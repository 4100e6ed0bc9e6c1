#include "services/iscsi_targets.h"

#include "foundation/appliance_files.h"
#include "foundation/key_value.h"

namespace quorvel {

namespace {

// Shows every target line to a function.
template <typename Look>
void for_each_target(Look look) {
    LineFile sessions = open_session_file();
    for (SessionLine line; next_session_line(sessions, line);) {
        if (line.kind == SessionKind::kTarget) look(line);
    }
}

}  // namespace

TargetConfiguration read_configuration(int number) {
    TargetConfiguration configuration;
    KeyRequest requests[] = {
        {"iscsi_device0_path_lun0", configuration.device,     sizeof configuration.device    },
        {"iscsi_device0_target",    configuration.short_name, sizeof configuration.short_name},
    };
    read_keys(Text<64>(files::kIscsiDisks, number).c_str(), requests);  // what is missing stays empty
    return configuration;
}

void find_targets(std::span<TargetSearch> searches) {
    for_each_target([&](const SessionLine& line) {
        for (TargetSearch& search : searches) {
            if (search.state != search.kUnknown || search.short_name.empty()) continue;
            if (search.short_name != short_target_name(line)) continue;
            search.state = search.kMatched;
            search.tid = target_number(line);
        }
    });
    // Not in the same walk: a tid may stand above the line that the short name finds.
    for_each_target([&](const SessionLine& line) {
        for (TargetSearch& search : searches) {
            if (search.tid == -1 || search.state == search.kNamed || search.tid != target_number(line)) continue;
            search.state = search.kNamed;
            search.name = target_name(line);
        }
    });
}

int free_target_number() {
    enum : unsigned char { kUnused, kNamed, kNameless } states[kMostTargets + 1] = {};
    for_each_target([&](const SessionLine& line) {
        int tid = target_number(line);
        if (tid < 1 || tid > kMostTargets || states[tid] != kUnused) return;
        states[tid] = target_name(line).length == 0 ? kNameless : kNamed;
    });
    for (int tid = 1; tid <= kMostTargets; tid++) {
        if (states[tid] != kNamed) return tid;
    }
    return -1;
}

}  // namespace quorvel
