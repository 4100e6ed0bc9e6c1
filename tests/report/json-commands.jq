# Reads a report, then single commands as JSON, each with its exit status; names those that disagree.
[inputs] as $in | $in[0] as $report | $in[1] as $listing | $in[-1] as $slots
| [$in[2:-1] | _nwise(2)] as $answers
| def answer($n): $answers[$n][0];
  def some($names): map(with_entries(select(.key as $key | $names | index([$key]))));
  def ports: [.[] | select(.name | test("^eth"))];
{
    statuses: ([$answers[][1]] == [0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 1]),
    disks: (answer(0).disks | map(del(.unknown)) == ($report.disks | some(["name", "device", "address", "slot", "kind"]))),
    slots: (($slots | [scan("HDD_[A-Z]+=([0-9]+),\t([^,\n]*)") | [(.[0] | tonumber), .[1]]])
        == ([answer(1).slots[] | select(.kind != "boot") | [.slot, .path // ""]])),
    diskinfo: (answer(2).disks == $report.disks),
    mdinfo: (answer(3).arrays == $report.arrays),
    disk2: (answer(4).disks == [$report.disks[] | select(.name == "disk2")]),
    md2: (answer(5).arrays == [$report.arrays[] | select(.device == "md2")]),
    net: (answer(6).interfaces | map(.address) == ($report.interfaces | map(.address))),
    ethinfo: (answer(7).interfaces | map([.name, .mac, .speed_bits_per_second]) == ($report.interfaces | ports | map([.name, .mac, .speed_bits_per_second]))),
    iscsi: (answer(8) == ($report | {iscsi_targets, iscsi_sessions})),
    volume_info: (answer(9) == ($report | {iscsi_targets})),
    backup: (answer(10) == ($report | {backup_tasks})),
    config: ($listing == "\t.info.tevra.etc\n\t{\n" + ([answer(11).settings[] | "\t\t\(.name)=\(.value)\n"] | join("")) + "\t}\n"),
    value: (answer(12).value == $report.system.hostname),
    features: ([answer(13).features[] | select(.name == "MAX_DISK_NUM", .name == "PRODUCT_SERIES") | .value]
        | sort == ([$report.system | (.max_disks | tostring), .product_series] | sort)),
    feature: (answer(14).features[0].number == $report.system.max_disks),
    missing: ([answer(15).features, answer(16).interfaces] == [[], []])
} | to_entries[] | select(.value | not) | .key
