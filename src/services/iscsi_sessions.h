// The kernel's iSCSI session file, line by line. Each target is followed by its sessions, each session by its
// connections:
//
//   tid:1 name:iqn.2004-08.com.example:nas1:backup
//   	sid:281474997486080 initiator:iqn.1993-08.org.example:01
//   		cid:0 ip:192.168.0.10 state:active hd:none dd:none
//
// Fields are separated by ":" and numbered from 1; runs of ":" count as one, as in LibQuorvelBin_GetSpecifiedKey. An
// initiator chooses its own name: what a line begins with settles its kind before anything that stands in it.
#pragma once

#include <stddef.h>

#include <array>
#include <string_view>

#include "foundation/line_reader.h"
#include "foundation/text.h"

namespace quorvel {

enum class SessionKind { kNone, kTarget, kSession, kConnection };

/// A line's kind and its first fields; a field is empty only when there is none. It is valid as long as the line is.
struct SessionLine {
    SessionKind kind = SessionKind::kNone;
    std::string_view text;  // without its line feed
    std::array<std::string_view, 5> fields;
};

/// The session file; without lines when it could not be opened.
[[nodiscard]] LineFile open_session_file();

/// The next target, session or connection line; false at the end. Only the fields that its kind has a use for are
/// filled: lines come by the hundred thousand, and one that is made anew each time costs a tenth more.
[[nodiscard]] bool next_session_line(LineFile& sessions, SessionLine& line);

/// Field 2 of a target or session line's first word: its tid or sid. Empty when there is none.
[[nodiscard]] std::string_view number_text(const SessionLine& line);

/// A target line's tid as a number; -1 when it does not begin with a digit.
[[nodiscard]] int target_number(const SessionLine& line);

/// Room for the longest name of each kind and its terminator.
using TargetName = Text<128>;
using InitiatorName = Text<127>;

/// A name that stands in fields 3, 4 and 5 of a target line, or 3 and 4 of a session line, joined again with ":"; empty
/// when a field is missing or the name is too long.
[[nodiscard]] TargetName target_name(const SessionLine& line);
[[nodiscard]] InitiatorName initiator_name(const SessionLine& line);

/// Field 5 of a target line, the part of its name that configurations store.
[[nodiscard]] std::string_view short_target_name(const SessionLine& line);

/// The address of a connection line: field 3 up to its first blank.
[[nodiscard]] std::string_view initiator_address(const SessionLine& line);

}  // namespace quorvel
