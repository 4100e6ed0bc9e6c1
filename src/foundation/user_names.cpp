// User names, read from the password file itself: name services would bring modules of their own into every caller.
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

// Cuts the first field off a line of fields separated by colons; false when no colon ends it.
bool cut_field(std::string_view& line, std::string_view& field) {
    size_t colon = line.find(':');
    if (colon == std::string_view::npos) return false;
    field = line.substr(0, colon);
    line.remove_prefix(colon + 1);
    return true;
}

// "name:password:uid:gid:comment:home:shell"
bool is_entry_of(std::string_view line, uint32_t uid, std::string_view& name) {
    std::string_view password;
    std::string_view number;
    if (!cut_field(line, name) || !cut_field(line, password) || !cut_field(line, number)) return false;
    return whole_number(number) == uid && !name.empty();
}

}  // namespace

int LibQuorvelBin_GetUsernameByUID(uint32_t uid, char* dst, size_t size) {
    if (dst == nullptr) return fail(EINVAL);
    LineFile file(open_for_reading(files::kPasswords), kLongestEntry);
    if (!file) return -1;
    bool line_begins = true;
    for (std::string_view piece; !(piece = next_piece(file.reader)).empty(); line_begins = piece.ends_with('\n')) {
        std::string_view name;
        // What follows a piece without a line end is the rest of an overlong line, no entry.
        if (!line_begins || piece[0] == '#' || !is_entry_of(piece, uid, name)) continue;
        if (name.size() >= size) return fail(ERANGE);
        copy_text(dst, size, name);
        answer(dst);
        return 0;
    }
    return fail(ENODATA);
}
