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

// In the order in which a line is searched for them.
struct KindWord {
    std::string_view word;
    SessionKind kind;
};
constexpr KindWord kKindWords[] = {
    {"tid:", SessionKind::kTarget    },
    {"sid:", SessionKind::kSession   },
    {"cid:", SessionKind::kConnection},
};

SessionKind kind_of(const char* text) {
    const char* first = text + strspn(text, " \t");
    for (const KindWord& row : kKindWords) {
        if (starts_with(first, row.word)) return row.kind;
    }
    for (const KindWord& row : kKindWords) {
        if (contains(first, row.word.data())) return row.kind;
    }
    return SessionKind::kNone;
}

void split_line(SessionLine& line) {
    const char* start = line.text;
    for (std::string_view& field : line.fields) {
        while (*start == ':')
            start++;
        const char* end = strchrnul(start, ':');
        field = {start, end};
        start = end;
    }
}

// Fields that follow each other, joined; empty when one is missing or the name does not fit.
template <typename Name>
Name joined(std::span<const std::string_view> fields) {
    Name name;
    for (std::string_view field : fields) {
        if (field.empty()) return Name();
        if (name.length != 0) name.add(":");
        name.add(field);
    }
    return name.cut ? Name() : name;
}

}  // namespace

LineFile open_session_file() {
    return LineFile(open_for_reading(files::kIscsiSessions), kSessionPiece);
}

SessionLine session_line(char* text) {
    cut_at_line_feed(text);
    SessionLine line;
    line.text = text;
    line.kind = kind_of(text);
    if (line.kind != SessionKind::kNone) split_line(line);
    return line;
}

std::string_view number_text(const SessionLine& line) {
    const char* word = line.text + strspn(line.text, " ");
    word += strspn(word, ":");
    word += strcspn(word, ": ");
    word += strspn(word, ":");
    return {word, strcspn(word, ": ")};
}

int target_number(const SessionLine& line) {
    std::string_view text = number_text(line);
    return !text.empty() && is_digit(text[0]) ? leading_int(text.data()) : -1;
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
    std::string_view field = line.fields[2];
    return field.substr(0, field.find(' '));
}

}  // namespace quorvel
