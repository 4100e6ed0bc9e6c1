// What several rooms ask of the feature settings.
#pragma once

namespace quorvel {

/// The feature that tells how many Ethernet ports the model has.
inline constexpr char kNetworkPortCount[] = "DEVICE_NETWORK_NUM";

/// How many Ethernet ports the model has, below 1 when that is not known. Prints nothing but "wrong feature name", for
/// a missing feature.
[[nodiscard]] int network_port_count();

}  // namespace quorvel
