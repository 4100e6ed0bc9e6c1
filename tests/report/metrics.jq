# Makes the samples of the metrics out of a report.
def braces: to_entries | map("\(.key)=\(.value // "" | tostring | tojson)") | if length > 0 then "{" + join(",") + "}" else "" end;
def sample($name; $labels; $value): select($value != null) |
    "quorvel_\($name)\($labels | braces) \($value | if type == "boolean" then (if . then 1 else 0 end) else . end)";
(.system | sample("system_info"; {hostname, platform, series, product: .product_name, firmware: .firmware_version, kernel}; 1),
    (("spool_size_bytes", "spool_free_bytes") as $n | sample($n; {directory: .spool_directory}; .[$n]))),
(.disks[] | select(.kind == "internal") |
    sample("disk_info"; {bay: .slot, disk: .name, device, model, serial, array, status}; 1),
    (("present", "powered", "asleep", "mine", "size_bytes", "temperature_celsius") as $n | sample("disk_\($n)"; {bay: .slot}; .[$n])),
    sample("disk_read_errors_total"; {bay: .slot}; .read_errors)),
(.arrays[] | sample("array_info"; {array: .name, device, level, state, metadata, action: .sync_action, status}; 1),
    sample("array_disks"; {array: .name, device}; .raid_disks),
    (("active_disks", "missing_disks", "spare_disks", "failed_disks", "size_bytes", "sync_done_bytes", "sync_total_bytes") as $n
        | sample("array_\($n)"; {array: .name, device}; .[$n]))),
(.volumes[] | ("size_bytes", "free_bytes") as $n | sample("volume_\($n)"; {mount_point, device, type}; .[$n])),
(.interfaces[] | sample("interface_info"; {interface: .name, mac, address}; 1),
    (("up", "link", "full_duplex", "enabled", "mtu_bytes") as $n | sample("interface_\($n)"; {interface: .name}; .[$n])),
    (.speed_bits_per_second | values / 8) as $v | sample("interface_speed_bytes_per_second"; {interface: .name}; $v)),
(.name_servers[] | sample("name_server_answers"; {address}; .answers)),
(.backup_tasks[] | sample("backup_info"; {task: .number, name, type, status}; 1),
    sample("backup_last_generation_timestamp_seconds"; {task: .number, type}; .last_generation_seconds),
    sample("backup_keep_generations"; {task: .number, type}; .keep_generations)),
(.firewall | values[] | .service as $s | .gates | values[] | sample("firewall_open"; {service: $s, interface}; .open)),
sample("iscsi_targets"; {}; .iscsi_targets | length), sample("problems"; {}; .problems | length),
sample("iscsi_connections"; {}; [.iscsi_sessions[] | select(.sid)] | length),
sample("verdict"; {}; .verdict), sample("report_timestamp_seconds"; {}; .taken_seconds)
