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

/// Which component of the full path tells the number, and how it counts. The number of an internal disk is that of its
/// host or target and a step, the port of a USB one what follows the component's first characters.
struct NamingRule {
    bool usb;
    RuleCondition when;
    signed char component;  // 0 when the path does not tell
    signed char step;
    char tree[20];
    char before[8];
};

/// The last rule of each kind always holds. That of internal disks counts past the chip, whose two ports sit below the
/// built-in ones.
inline constexpr NamingRule kNamingRules[] = {
    {false, RuleCondition::kOtherThanMultiHost, 9,  1,  "",                   ""    },
    {false, RuleCondition::kPlatform,           8,  1,  "",                   ""    },
    {false, RuleCondition::kOldSysfs,           9,  1,  "",                   ""    },
    {false, RuleCondition::kHostInSight,        7,  1,  "",                   ""    },
    {false, RuleCondition::kAlways,             8,  -1, "",                   ""    },
    {true,  RuleCondition::kTree,               0,  0,  "armada370-platform", ""    },
    {true,  RuleCondition::kTree,               9,  0,  "borel-platform",     "B-"  },
    {true,  RuleCondition::kTree,               10, 0,  "single-roothub",     "B-"  },
    {true,  RuleCondition::kTree,               11, 0,  "single-roothub+hub", "B-1."},
    {true,  RuleCondition::kOldSysfs,           9,  0,  "",                   "usb" },
    {true,  RuleCondition::kAlways,             8,  0,  "",                   "usb" },
};

inline bool condition_holds(const NamingRule& rule, const Wiring& wiring, std::string_view path, bool new_sysfs) {
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
inline const NamingRule& rule_of(const Wiring& wiring, const DiskPlace& disk, bool new_sysfs) {
    const NamingRule* rule = kNamingRules;
    while (rule->usb != disk.usb || !condition_holds(*rule, wiring, disk.full, new_sysfs))
        rule++;
    return *rule;
}

}  // namespace quorvel
