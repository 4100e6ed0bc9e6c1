// User names, read from the password file itself: name services would bring modules of their own into every caller.
#include <optional>
#include <string_view>

#include "foundation/answer.h"
#include "foundation/appliance_files.h"
#include "foundation/failure.h"
#include "foundation/files.h"
#include "foundation/line_reader.h"
#include "foundation/numbers.h"
#include "foundation/text.h"
#include "quorvel/foundation.h"

using namespace quorvel;

namespace {

constexpr size_t kLongestEntry = 4096;

// Cuts the first field off a line of fields separated by colons; none when no colon ends it.
std::optional<std::string_view> cut_field(std::string_view& line) {
    size_t colon = line.find(':');
    if (colon == std::string_view::npos) return {};
    std::string_view field = front_of(line, colon);
    line.remove_prefix(colon + 1);
    return field;
}

// The name in a user's entry "name:password:uid:gid:comment:home:shell"; empty when it is another's, or none.
std::string_view name_in_entry(std::string_view line, uint32_t uid) {
    const auto name = cut_field(line);
    const auto password = cut_field(line);
    const auto number = cut_field(line);
    return password && number && whole_number(*number) == uid ? *name : "";
}

}  // namespace

int LibQuorvelBin_GetUsernameByUID(uint32_t uid, char* dst, size_t size) {
    if (dst == nullptr) return fail(EINVAL);
    LineFile file(open_for_reading(files::kPasswords), kLongestEntry);
    if (!file) return -1;
    bool line_begins = true;
    for (std::string_view piece; !(piece = next_piece(file.reader)).empty(); line_begins = piece.ends_with('\n')) {
        // What follows a piece without a line end is the rest of an overlong line, no entry.
        const std::string_view name = line_begins && piece[0] != '#' ? name_in_entry(piece, uid) : "";
        if (name.empty()) continue;
        if (name.size() >= size) return fail(ERANGE);
        copy_text(dst, size, name);
        answer(dst);
        return 0;
    }
    return fail(ENODATA);
}
