// The platforms: one table of all that the library knows of each, but its slots.
#pragma once

namespace quorvel {

/// How the port for the UPS is tested: by its lines alone, or with text as well.
enum class LoopbackTest { kLines, kText };

struct Controllers;

struct Platform {
    int number;
    const char* name;   // as LibQuorvelBin_GetPlatformStr gives it; several may share one
    const char* title;  // for people; its own
    const char* sign;   // for people: what it is recognised by
    const char* ups_port;
    LoopbackTest loopback_test;
    bool by_controllers;  // the PCI list is read once for all that need it
    bool (*is_this)(const Controllers& machine);
};

/// The platform of this machine: the first of the table whose test holds. Null when none does.
[[nodiscard]] const Platform* find_platform();

/// Whether the test of a platform holds, whichever platform the machine counts as.
[[nodiscard]] bool is_platform(int number);

}  // namespace quorvel
