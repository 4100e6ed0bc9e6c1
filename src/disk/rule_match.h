// Finding the wiring rule that a disk's place in sysfs belongs to. Plain work on texts and tables, so that the command
// front end, which tells why, decides as the library does.
#pragma once

#include "disk/slot_match.h"
#include "disk/wiring.h"

namespace quorvel {

/// What must hold for a rule, beside its kind of disk.
enum class RuleCondition : unsigned char {
    kOtherThanMultiHost,  // INTERNAL_SCSI_TYPE is not multi-host
    kPlatform,            // the path holds "platform"
    kOldSysfs,
    kHostInSight,  // the component holds "host", or there is no extension chip
    kTree,         // USB_TREE_TYPE is the rule's
    kAlways
};

/// Where the port of a USB disk comes from.
enum class PortSource : unsigned char {
    kNone,        // the disk is internal
    kComponent,   // a number in the rule's component of the path
    kBorelWires,  // the same, as the ports of that platform are wired
    kHotPlug      // the record of the hot-plug side
};

/// Which component of the full path tells the number, and how it counts. The number of an internal disk is that of its
/// host or target and a step, the port of a USB one what follows the component's first characters.
struct NamingRule {
    PortSource port;
    RuleCondition when;
    signed char component;  // 0 when the path does not tell
    signed char step;
    char tree[20];
    char before[8];
};

[[nodiscard]] constexpr bool is_usb(const NamingRule& rule) {
    return rule.port != PortSource::kNone;
}

/// The last rule of each kind always holds. That of internal disks counts past the chip, whose two ports sit below the
/// built-in ones.
inline constexpr NamingRule kNamingRules[] = {
    {PortSource::kNone,       RuleCondition::kOtherThanMultiHost, 9,  1,  "",                   ""    },
    {PortSource::kNone,       RuleCondition::kPlatform,           8,  1,  "",                   ""    },
    {PortSource::kNone,       RuleCondition::kOldSysfs,           9,  1,  "",                   ""    },
    {PortSource::kNone,       RuleCondition::kHostInSight,        7,  1,  "",                   ""    },
    {PortSource::kNone,       RuleCondition::kAlways,             8,  -1, "",                   ""    },
    {PortSource::kHotPlug,    RuleCondition::kTree,               0,  0,  "armada370-platform", ""    },
    {PortSource::kBorelWires, RuleCondition::kTree,               9,  0,  "borel-platform",     "B-"  },
    {PortSource::kComponent,  RuleCondition::kTree,               10, 0,  "single-roothub",     "B-"  },
    {PortSource::kComponent,  RuleCondition::kTree,               11, 0,  "single-roothub+hub", "B-1."},
    {PortSource::kComponent,  RuleCondition::kOldSysfs,           9,  0,  "",                   "usb" },
    {PortSource::kComponent,  RuleCondition::kAlways,             8,  0,  "",                   "usb" },
};

[[nodiscard]] inline bool condition_holds(const NamingRule& rule, const Wiring& wiring, std::string_view path,
                                          bool new_sysfs) {
    switch (rule.when) {
        case RuleCondition::kOtherThanMultiHost:
            return !wiring.internal_is("multi-host");
        case RuleCondition::kPlatform:
            return path.find("platform") != std::string_view::npos;
        case RuleCondition::kOldSysfs:
            return !new_sysfs;
        case RuleCondition::kHostInSight:
            return path_component(path, rule.component).find("host") != std::string_view::npos ||
                   !has_borel_extension();
        case RuleCondition::kTree:
            return wiring.usb_tree_is(rule.tree);
        default:
            return true;
    }
}

/// The rule that gives a disk its number.
[[nodiscard]] inline const NamingRule& rule_of(const Wiring& wiring, const DiskPlace& disk, bool new_sysfs) {
    const NamingRule* rule = kNamingRules;
    while (is_usb(*rule) != disk.usb || !condition_holds(*rule, wiring, disk.full, new_sysfs))
        rule++;
    return *rule;
}

}  // namespace quorvel
