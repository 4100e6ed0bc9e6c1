// The firewall's ports file: which one is used, and the default one that allows everything.
#pragma once

namespace quorvel {

/// The ports file to use, and what is to be said of the choice.
struct PortsFile {
    const char* path = nullptr;  // null: there is none
    bool requested_missing = false;
    bool default_missing = false;
};

/// `requested` is null without --config, and must outlive the answer.
[[nodiscard]] PortsFile choose_ports_file(const char* requested);

/// Prints what is to be said of a choice.
void print_choice(const PortsFile& file);

/// Writes the default ports file: 0; -1 with errno, and with a line where no file could be made. The old content stands
/// until the new one is whole.
[[nodiscard]] int write_default_ports_file();

}  // namespace quorvel
