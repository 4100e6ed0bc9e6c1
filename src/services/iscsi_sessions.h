// The kernel's iSCSI session file, line by line. Each target is followed by its sessions, each
// session by its connections:
//
//   tid:1 name:iqn.2004-08.com.example:nas1:backup
//   	sid:281474997486080 initiator:iqn.1993-08.org.example:01
//   		cid:0 ip:192.168.0.10 state:active hd:none dd:none
//
// Fields are separated by ":" and numbered from 1; runs of ":" count as one, as in
// LibQuorvelBin_GetSpecifiedKey. Everything is read in place: a field points into its line.
#pragma once

#include <stddef.h>

#include <span>
#include <string_view>

#include "foundation/handles.h"
#include "foundation/line_reader.h"

namespace quorvel {

enum class SessionLine { kTarget, kSession, kConnection };

struct SessionFile {
    SessionFile();
    explicit operator bool() const { return static_cast<bool>(file); }

    Descriptor file;
    LineReader lines;
};

/// The next target, session or connection line, without its line end; other lines are passed over.
/// False at the end. `text` stays valid until the next call.
bool next_session_line(SessionFile& sessions, SessionLine& kind, std::string_view& text);

/// Field 2 of a target or session line's first word: its tid or sid. Empty when there is none.
std::string_view number_text(std::string_view text);

/// A target line's tid as a number; -1 when it does not begin with a digit.
int target_number(std::string_view text);

/// Longest names, terminator included.
inline constexpr size_t kTargetName = 128;
inline constexpr size_t kInitiatorName = 127;

/// A name that stands in fields 3, 4 and 5 of a target line, or 3 and 4 of a session line, joined
/// again with ":"; empty when a field is missing or the name is too long.
std::string_view target_name(std::string_view text, std::span<char, kTargetName> name);
std::string_view initiator_name(std::string_view text, std::span<char, kInitiatorName> name);

/// Field 5 of a target line, the part of its name that configurations store.
std::string_view short_target_name(std::string_view text);

/// The address of a connection line: field 3 up to its first blank.
std::string_view initiator_address(std::string_view text);

}  // namespace quorvel
