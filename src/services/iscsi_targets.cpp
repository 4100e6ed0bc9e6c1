#include "services/iscsi_targets.h"

#include <algorithm>

#include "foundation/appliance_files.h"
#include "foundation/key_value.h"
#include "foundation/text.h"

namespace quorvel {

namespace {

// Remembers which tids a reading came by. Two tids may share a place: then the later one counts as
// seen.
struct SeenNumbers {
    static constexpr unsigned kPlaces = 65536;
    unsigned char bits[kPlaces / 8] = {};
};

bool mark_seen(SeenNumbers& seen, int tid) {
    unsigned place = static_cast<unsigned>(tid) % SeenNumbers::kPlaces;
    auto bit = static_cast<unsigned char>(1U << place % 8);
    bool before = (seen.bits[place / 8] & bit) != 0;
    seen.bits[place / 8] |= bit;
    return before;
}

bool next_target(SessionFile& sessions, SessionLine& line) {
    while (next_session_line(sessions, line)) {
        if (line.kind == SessionKind::kTarget) return true;
    }
    return false;
}

void copy_target_name(const SessionLine& line, std::span<char, kTargetName> name) {
    char buffer[kTargetName];
    copy_text(name.data(), name.size(), target_name(line, buffer));
}

// The name on the first line of a tid.
void name_target(int tid, std::span<char, kTargetName> name) {
    SessionFile sessions;
    for (SessionLine line; sessions && next_target(sessions, line);) {
        if (target_number(line) != tid) continue;
        copy_target_name(line, name);
        return;
    }
}

}  // namespace

void read_configuration(int number, TargetConfiguration& configuration) {
    KeyRequest requests[] = {
        {"iscsi_device0_path_lun0", configuration.device,     sizeof configuration.device    },
        {"iscsi_device0_target",    configuration.short_name, sizeof configuration.short_name},
    };
    read_keys(Text<64>(files::kIscsiDisks, number).c_str(), requests);
}

void find_targets(std::span<TargetSearch> searches) {
    auto is_open = [](const TargetSearch& search) { return !search.matched && !search.short_name.empty(); };
    auto missing = std::count_if(searches.begin(), searches.end(), is_open);
    if (missing == 0) return;
    SessionFile sessions;
    SeenNumbers seen;
    for (SessionLine line; missing > 0 && sessions && next_target(sessions, line);) {
        int tid = target_number(line);
        bool repeated = mark_seen(seen, tid);
        std::string_view short_name = short_target_name(line);
        for (TargetSearch& search : searches) {
            if (!is_open(search) || search.short_name != short_name) continue;
            search.matched = true;
            search.tid = tid;
            missing--;
            if (tid == -1) continue;
            // The kernel gives each target a tid of its own, so that this line is the first of it.
            if (!repeated) copy_target_name(line, search.name);
            if (repeated) name_target(tid, search.name);
        }
    }
}

int free_target_number() {
    enum : unsigned char { kUnused, kNamed, kNameless } states[kMostTargets + 1] = {};
    SessionFile sessions;
    for (SessionLine line; sessions && next_target(sessions, line);) {
        int tid = target_number(line);
        if (tid < 1 || tid > kMostTargets || states[tid] != kUnused) continue;
        char name[kTargetName];
        states[tid] = target_name(line, name).empty() ? kNameless : kNamed;
    }
    for (int tid = 1; tid <= kMostTargets; tid++) {
        if (states[tid] != kNamed) return tid;
    }
    return -1;
}

}  // namespace quorvel
