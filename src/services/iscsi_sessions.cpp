#include "services/iscsi_sessions.h"

#include <string.h>

#include <algorithm>
#include <array>

#include "foundation/appliance_files.h"
#include "foundation/files.h"
#include "foundation/numbers.h"
#include "foundation/text.h"

namespace quorvel {

namespace {

constexpr size_t kSessionPiece = 1023;
constexpr std::string_view kBlanks = " \t";

// The next field of a line, which is empty only when there is none.
std::string_view next_field(std::string_view& rest) {
    while (rest.starts_with(':'))
        rest.remove_prefix(1);
    std::string_view field(rest.data(), std::min(rest.find(':'), rest.size()));
    rest.remove_prefix(std::min(field.size() + 1, rest.size()));
    return field;
}

template <size_t Count>
std::array<std::string_view, Count> first_fields(std::string_view text) {
    std::array<std::string_view, Count> fields;
    for (std::string_view& field : fields)
        field = next_field(text);
    return fields;
}

// Fields 3, 4 ... joined; empty when one is missing or the name does not fit.
std::string_view join_name(std::span<const std::string_view> parts, std::span<char> name) {
    size_t length = parts.size() - 1;
    for (std::string_view part : parts) {
        if (part.empty()) return {};
        length += part.size();
    }
    if (length >= name.size()) return {};
    char* end = name.data();
    for (std::string_view part : parts) {
        if (end != name.data()) *end++ = ':';
        end = std::copy(part.begin(), part.end(), end);
    }
    *end = '\0';
    return {name.data(), length};
}

// "tid:" anywhere makes a target line, whatever else is there; "sid:" goes before "cid:".
bool kind_of_line(std::string_view text, SessionLine& kind) {
    bool session = false;
    bool connection = false;
    for (size_t at = text.find(':'); at != std::string_view::npos; at = text.find(':', at + 1)) {
        if (at < 3 || text[at - 1] != 'd' || text[at - 2] != 'i') continue;
        if (text[at - 3] == 't') {
            kind = SessionLine::kTarget;
            return true;
        }
        session = session || text[at - 3] == 's';
        connection = connection || text[at - 3] == 'c';
    }
    kind = session ? SessionLine::kSession : SessionLine::kConnection;
    return session || connection;
}

}  // namespace

SessionFile::SessionFile() : file(open_for_reading(files::kIscsiSessions)), lines(file.number, kSessionPiece) {}

bool next_session_line(SessionFile& sessions, SessionLine& kind, std::string_view& text) {
    for (;;) {
        text = next_piece(sessions.lines);
        if (text.empty()) return false;
        text = std::string_view(text.data(), strnlen(text.data(), text.size()));
        if (text.ends_with('\n')) text.remove_suffix(1);
        if (kind_of_line(text, kind)) return true;
    }
}

std::string_view number_text(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    return first_fields<2>({text.data(), std::min(text.find_first_of(kBlanks), text.size())})[1];
}

int target_number(std::string_view text) {
    text = number_text(text);
    if (text.empty() || !is_digit(text[0])) return -1;
    char digits[24];
    copy_text(digits, sizeof digits, text);
    return leading_int(digits);
}

std::string_view target_name(std::string_view text, std::span<char, kTargetName> name) {
    return join_name(std::span(first_fields<5>(text)).last(3), name);
}

std::string_view initiator_name(std::string_view text, std::span<char, kInitiatorName> name) {
    return join_name(std::span(first_fields<4>(text)).last(2), name);
}

std::string_view short_target_name(std::string_view text) {
    return first_fields<5>(text)[4];
}

std::string_view initiator_address(std::string_view text) {
    std::string_view field = first_fields<3>(text)[2];
    return {field.data(), std::min(field.find_first_of(kBlanks), field.size())};
}

}  // namespace quorvel
