#include "boards/rule_reasons.h"

#include "foundation/appliance_files.h"

using namespace quorvel;

namespace {

void add_setting(const char* key, const char* value, Reason& reason) {
    if (value[0] != '\0') reason.append("%s is \"%s\"", key, value);
    if (value[0] == '\0') reason.append("%s is not set", key);
}

Text<32> component_of(const NamingRule& rule, const BlockDisk& disk) {
    std::string_view text = path_component({disk.path.c_str(), disk.path.length}, rule.component);
    return Text<32>("%.*s", static_cast<int>(text.size()), text.data());
}

void explain_host(const NamingRule& rule, bool holds, const BlockDisk& disk, Reason& reason) {
    bool in_sight = contains(component_of(rule, disk).c_str(), "host");
    reason.append("component %d %s \"host\"", rule.component, in_sight ? "holds" : "does not hold");
    if (!in_sight) reason.append(", and there is %s extension chip", holds ? "no" : "an");
}

void explain_condition(const NamingRule& rule, bool holds, const NamingSource& source, const BlockDisk& disk,
                       Reason& reason) {
    switch (rule.when) {
        case RuleCondition::kOtherThanMultiHost:
            add_setting("INTERNAL_SCSI_TYPE", source.wiring.internal, reason);
            break;
        case RuleCondition::kPlatform:
            reason.append("\"platform\" is %s the disk's path", holds ? "in" : "nowhere in");
            break;
        case RuleCondition::kOldSysfs:
            reason.append("%s link counts", holds ? "the \"device\"" : "the disk's own");
            break;
        case RuleCondition::kHostInSight:
            explain_host(rule, holds, disk, reason);
            break;
        case RuleCondition::kTree:
            add_setting("USB_TREE_TYPE", source.wiring.usb_tree, reason);
            if (!holds) reason.append(", not \"%s\"", rule.tree);
            break;
        default:
            reason.add("no rule above holds");
    }
}

void explain_number(const NamingRule& rule, const BlockDisk& disk, const Answer& answer, Reason& reason) {
    bool has_name = answer.name.length > 0;
    if (rule.port == PortSource::kHotPlug) {
        reason.append("; %s tells %s", files::kDeviceLinks, has_name ? "the port" : "no port with a disk on record");
        return;
    }
    reason.append("; component %d is \"%s\"", rule.component, component_of(rule, disk).c_str());
    if (!has_name) reason.add(", with no number behind \"host\" or \"target0:0:\"");
}

}  // namespace

int rules_looked_at(const NamingSource& source, const BlockDisk& disk) {
    return static_cast<int>(&rule_of(source.wiring, disk.place(), source.new_sysfs) - kNamingRules) + 1;
}

Reason reason_of_rule(const NamingRule& rule, bool holds, const NamingSource& source, const BlockDisk& disk,
                      const Answer& answer) {
    Reason reason;
    if (is_usb(rule) != disk.place().usb) {
        reason.add(is_usb(rule) ? "the rule is a USB one, the disk is not on USB"
                                : "the disk is on USB, the rule is not");
        return reason;
    }
    explain_condition(rule, holds, source, disk, reason);
    if (holds) explain_number(rule, disk, answer, reason);
    return reason;
}

Text<64> name_of_rule(const NamingRule& rule) {
    const char* word = is_usb(rule) ? "usbdisk" : "disk";
    if (rule.component == 0) return Text<64>("%s on record", word);
    return Text<64>("%s by component %d", word, rule.component);
}
