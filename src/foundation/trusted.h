// What lies where every account may write, and yet decides: only when nobody but root or the caller can have put it
// there.
#pragma once

#include "foundation/handles.h"
#include "foundation/text.h"

namespace quorvel {

/// Opens a file for reading: only a regular one, no link and with no other name, that root or the caller owns, and that
/// no program answers for.
[[nodiscard]] Descriptor open_trusted(WholeText path);

/// Whether a path, itself no link, is a directory that root or the caller owns, and that no program answers for.
[[nodiscard]] bool is_trusted_directory(WholeText path);

}  // namespace quorvel
