// Why a wiring rule does or does not give a disk its number, in words. Whether it does is the library's own verdict.
#pragma once

#include "boards/answers.h"
#include "boards/reasons.h"
#include "disk/rule_match.h"

/// How many rules are looked at until one gives the disk its number, that one included.
[[nodiscard]] int rules_looked_at(const NamingSource& source, const BlockDisk& disk);

/// The words for a rule that is looked at; the last of these is the one that holds.
[[nodiscard]] Reason reason_of_rule(const quorvel::NamingRule& rule, bool holds, const NamingSource& source,
                                    const BlockDisk& disk, const Answer& answer);

/// What a rule gives and from where: "disk by component 8".
[[nodiscard]] quorvel::Text<64> name_of_rule(const quorvel::NamingRule& rule);
