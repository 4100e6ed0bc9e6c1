// The kernel's iSCSI session file, line by line. Each target is followed by its sessions, each
// session by its connections:
//
//   tid:1 name:iqn.2004-08.com.example:nas1:backup
//   	sid:281474997486080 initiator:iqn.1993-08.org.example:01
//   		cid:0 ip:192.168.0.10 state:active hd:none dd:none
//
// Fields are separated by ":" and numbered from 1; runs of ":" count as one, as in
// LibQuorvelBin_GetSpecifiedKey. Everything is read in place, in one walk over a line: a field
// points into it.
#pragma once

#include <stddef.h>

#include <array>
#include <span>
#include <string_view>

#include "foundation/handles.h"
#include "foundation/line_reader.h"

namespace quorvel {

enum class SessionKind { kNone, kTarget, kSession, kConnection };

/// A line without its line end, its kind and its first fields; a field is empty only when there is
/// none.
struct SessionLine {
    SessionKind kind = SessionKind::kNone;
    std::string_view text;
    std::array<std::string_view, 5> fields;
};

struct SessionFile {
    SessionFile();
    explicit operator bool() const { return static_cast<bool>(file); }

    Descriptor file;
    LineReader lines;
};

/// The next target, session or connection line; other lines are passed over. False at the end. It
/// stays valid until the next call.
bool next_session_line(SessionFile& sessions, SessionLine& line);

/// Field 2 of a target or session line's first word: its tid or sid. Empty when there is none.
std::string_view number_text(const SessionLine& line);

/// A target line's tid as a number; -1 when it does not begin with a digit.
int target_number(const SessionLine& line);

/// More than the longest names.
inline constexpr size_t kTargetName = 128;
inline constexpr size_t kInitiatorName = 127;

/// A name that stands in fields 3, 4 and 5 of a target line, or 3 and 4 of a session line, joined
/// again with ":"; empty when a field is missing or the name is too long. It is valid as long as
/// the line and the buffer are.
std::string_view target_name(const SessionLine& line, std::span<char, kTargetName> buffer);
std::string_view initiator_name(const SessionLine& line, std::span<char, kInitiatorName> buffer);

/// Field 5 of a target line, the part of its name that configurations store.
std::string_view short_target_name(const SessionLine& line);

/// The address of a connection line: field 3 up to its first blank.
std::string_view initiator_address(const SessionLine& line);

}  // namespace quorvel
