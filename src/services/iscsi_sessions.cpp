#include "services/iscsi_sessions.h"

#include <string.h>

#include <algorithm>
#include <span>

#include "foundation/appliance_files.h"
#include "foundation/files.h"
#include "foundation/numbers.h"

namespace quorvel {

namespace {

constexpr size_t kSessionPiece = 1023;

// In the order in which a line is searched for them, with how many of its fields are of use.
struct KindWord {
    std::string_view word;
    SessionKind kind;
    size_t fields;
};
constexpr KindWord kKindWords[] = {
    {"tid:", SessionKind::kTarget,     5},
    {"sid:", SessionKind::kSession,    4},
    {"cid:", SessionKind::kConnection, 3},
};

constexpr KindWord kNoKind = {"", SessionKind::kNone, 0};

const KindWord& kind_of(std::string_view line) {
    while (line.starts_with(' ') || line.starts_with('\t'))
        line.remove_prefix(1);
    bool begins_with_one = behind(line, 1).starts_with("id:");
    for (const KindWord& row : kKindWords) {
        if (begins_with_one && line[0] == row.word[0]) return row;
    }
    for (const KindWord& row : kKindWords) {
        if (line.find(row.word) != line.npos) return row;
    }
    return kNoKind;
}

void skip_all(char c, std::string_view& rest) {
    while (rest.starts_with(c))
        rest.remove_prefix(1);
}

std::string_view up_to(char end, std::string_view text) {
    const void* found = memchr(text.data(), end, text.size());
    return {text.data(), found != nullptr ? static_cast<const char*>(found) : text.end()};
}

void split_line(SessionLine& line, size_t fields) {
    std::string_view rest = line.text;
    for (std::string_view& field : std::span(line.fields).first(fields)) {
        skip_all(':', rest);
        field = up_to(':', rest);
        rest.remove_prefix(field.size());
    }
}

// Fields that follow each other, joined; empty when one is missing or the name does not fit.
template <typename Name>
Name joined(std::span<const std::string_view> fields) {
    Name name;
    bool missing = false;
    for (std::string_view field : fields) {
        missing = missing || field.empty();
        if (name.length != 0) name.add(":");
        name.add(field);
    }
    if (missing || name.cut) name.clear();
    return name;
}

}  // namespace

LineFile open_session_file() {
    return LineFile(open_for_reading(files::kIscsiSessions), kSessionPiece);
}

bool next_session_line(LineFile& sessions, SessionLine& line) {
    for (std::string_view text; !(text = next_piece(sessions.reader)).empty();) {
        if (text.ends_with('\n')) text.remove_suffix(1);
        const KindWord& kind = kind_of(text);
        if (kind.kind == SessionKind::kNone) continue;
        line.kind = kind.kind;
        line.text = text;
        split_line(line, kind.fields);
        return true;
    }
    return false;
}

std::string_view number_text(const SessionLine& line) {
    std::string_view word = line.text;
    skip_all(' ', word);
    const char* end = up_to(' ', word).end();
    std::string_view field = line.fields[1];
    return field.begin() < end ? std::string_view(field.begin(), std::min(field.end(), end)) : "";
}

int target_number(const SessionLine& line) {
    Text<kSessionPiece + 1> digits;
    digits.add(number_text(line));
    return is_digit(digits.chars[0]) ? leading_int(digits.c_str()) : -1;
}

TargetName target_name(const SessionLine& line) {
    return joined<TargetName>(std::span(line.fields).last(3));
}

InitiatorName initiator_name(const SessionLine& line) {
    return joined<InitiatorName>(std::span(line.fields).subspan(2, 2));
}

std::string_view short_target_name(const SessionLine& line) {
    return line.fields[4];
}

std::string_view initiator_address(const SessionLine& line) {
    return up_to(' ', line.fields[2]);
}

}  // namespace quorvel
