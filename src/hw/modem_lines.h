// The modem-control lines of a serial port, as one word of TIOCM_ bits.
#pragma once

namespace quorvel {

/// Prints the state of eight lines as one line of text: the driven ones, "<>", the read ones.
void print_modem_lines(int lines);

/// Whether the board drives the "Tx" line through a GPIO because its serial controller lacks it.
bool has_forced_tx();

/// Switches the line to the GPIO and forces its level.
void drive_forced_tx(bool high);

/// Whether the line is on the GPIO and forced high.
bool is_forced_tx_high();

/// Forces the level of the line: 0 or 1; -1 for any other level, or when it cannot be written.
int set_forced_tx(int level);

}  // namespace quorvel
