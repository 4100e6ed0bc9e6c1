// The ports file and the rules of the kernel's filter table that it stands for: one iptables
// command each, whose result nobody looks at.
#pragma once

#include <stddef.h>

namespace quorvel {

/// The feature that tells how many Ethernet ports the model has.
inline constexpr char kNetworkPortCount[] = "DEVICE_NETWORK_NUM";

/// How many Ethernet ports the model has, below 1 when that is not known. Prints nothing but "wrong
/// feature name", for a missing feature.
int network_port_count();

/// Removes every rule of the filter table, whoever made it.
void flush_rules();

/// Walks through a ports file: prints its table, and adds the rules for what it denies.
/// `descriptor` is borrowed.
void apply_ports_file(int descriptor);

}  // namespace quorvel
