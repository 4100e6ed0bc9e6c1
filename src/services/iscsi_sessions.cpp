#include "services/iscsi_sessions.h"

#include <string.h>

#include <algorithm>

#include "foundation/appliance_files.h"
#include "foundation/files.h"
#include "foundation/numbers.h"
#include "foundation/text.h"

namespace quorvel {

namespace {

constexpr size_t kSessionPiece = 1023;

std::string_view up_to(char end, std::string_view text) {
    const void* found = memchr(text.data(), end, text.size());
    return {text.data(), found != nullptr ? static_cast<const char*>(found) : text.end()};
}

void skip_all(char c, std::string_view& rest) {
    while (rest.starts_with(c))
        rest.remove_prefix(1);
}

// Fields that follow each other, joined; empty when one is missing or the name does not fit. They
// stand joined in the line already, unless a separator is repeated there.
std::string_view join_name(std::span<const std::string_view> fields, std::span<char> buffer) {
    size_t length = fields.size() - 1;
    for (std::string_view field : fields) {
        if (field.empty()) return "";
        length += field.size();
    }
    if (length >= buffer.size()) return "";
    if (fields.front().data() + length == fields.back().data() + fields.back().size())
        return {fields.front().data(), length};
    char* end = buffer.data();
    for (std::string_view field : fields) {
        if (end != buffer.data()) *end++ = ':';
        end = std::copy(field.begin(), field.end(), end);
    }
    return {buffer.data(), length};
}

// "tid:" anywhere makes a target line, whatever else is there; "sid:" goes before "cid:".
SessionKind kind_at_colon(SessionKind kind, const char* begin, const char* colon) {
    if (colon - begin < 3 || colon[-1] != 'd' || colon[-2] != 'i') return kind;
    if (colon[-3] == 't' || kind == SessionKind::kTarget) return SessionKind::kTarget;
    if (colon[-3] == 's' || kind == SessionKind::kSession) return SessionKind::kSession;
    return colon[-3] == 'c' ? SessionKind::kConnection : kind;
}

void split_line(std::string_view text, SessionLine& line) {
    line.kind = SessionKind::kNone;
    line.text = text;
    auto field = line.fields.begin();
    for (const char* start = text.begin();;) {
        const void* found = memchr(start, ':', static_cast<size_t>(text.end() - start));
        const char* colon = found != nullptr ? static_cast<const char*>(found) : text.end();
        if (colon != start && field != line.fields.end()) *field++ = {start, colon};
        if (found == nullptr) break;
        line.kind = kind_at_colon(line.kind, text.begin(), colon);
        start = colon + 1;
    }
    std::fill(field, line.fields.end(), std::string_view(""));
}

}  // namespace

SessionFile::SessionFile() : file(open_for_reading(files::kIscsiSessions)), lines(file.number, kSessionPiece) {}

bool next_session_line(SessionFile& sessions, SessionLine& line) {
    do {
        std::string_view text = next_piece(sessions.lines);
        if (text.empty()) return false;
        if (text.ends_with('\n')) text.remove_suffix(1);
        split_line(text, line);
    } while (line.kind == SessionKind::kNone);
    return true;
}

std::string_view number_text(const SessionLine& line) {
    std::string_view word = line.text;
    skip_all(' ', word);
    word = up_to(' ', word);
    skip_all(':', word);
    word.remove_prefix(std::min(word.find(':'), word.size()));
    skip_all(':', word);
    return up_to(':', word);
}

int target_number(const SessionLine& line) {
    std::string_view text = number_text(line);
    if (text.empty() || !is_digit(text[0])) return -1;
    char digits[24];
    copy_text(digits, sizeof digits, text);
    return leading_int(digits);
}

std::string_view target_name(const SessionLine& line, std::span<char, kTargetName> buffer) {
    return join_name(std::span(line.fields).last(3), buffer);
}

std::string_view initiator_name(const SessionLine& line, std::span<char, kInitiatorName> buffer) {
    return join_name(std::span(line.fields).subspan(2, 2), buffer);
}

std::string_view short_target_name(const SessionLine& line) {
    return line.fields[4];
}

std::string_view initiator_address(const SessionLine& line) {
    return up_to(' ', line.fields[2]);
}

}  // namespace quorvel
