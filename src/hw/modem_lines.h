// The modem-control lines of a serial port, as one word of TIOCM_ bits.
#pragma once

namespace quorvel {

/// Prints the state of eight lines as one line of text: the driven ones, "<>", the read ones.
void print_modem_lines(int lines);

}  // namespace quorvel
