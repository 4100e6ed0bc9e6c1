// The "Tx" line of boards whose serial controller lacks it: a GPIO behind two files of the appliance driver.
#pragma once

namespace quorvel {

/// Whether this board has such a line.
[[nodiscard]] bool has_forced_tx();

/// Switches the line to the GPIO and forces its level.
void drive_forced_tx(bool high);

/// Whether the line is on the GPIO and forced high.
[[nodiscard]] bool is_forced_tx_high();

/// Forces the level of the line: 0 or 1. -1 for any other level, or when it cannot be written.
[[nodiscard]] int set_forced_tx(int level);

}  // namespace quorvel
