// Why a row of a slot table does or does not describe a disk, in words. The verdict is the library's own.
#pragma once

#include "disk/slot_match.h"
#include "foundation/text.h"

using Reason = quorvel::Text<512>;

/// The words for a verdict of fit_of_row.
[[nodiscard]] Reason reason_of(quorvel::Fit fit, const struct disk_path& row, const quorvel::DiskPlace& disk);

/// "yes", "no" or "undecided".
[[nodiscard]] const char* word_of_fit(quorvel::Fit fit);

/// The name that a row gives: "disk3".
[[nodiscard]] quorvel::Text<128> name_of_row(const struct disk_path& row);
