# Makes the answers of the single commands out of a report, as tests/report/single-commands prints them.
def dash: . // "-";
def no_text: . // "";
def number: . // 0;
def yes: if . then 1 else 0 end;
def line(name): "\(name)=\(. // "")";
.system as $system
| [
    "platform \($system.platform | no_text)", "series \($system.series | no_text)", "kernel \($system.kernel)",
    ($system | (.product_name | line("PRODUCT_NAME")), (.firmware_version | line("VERSION")),
        (.firmware_sub_version | line("SUB_VERSION")), (.product_id | line("PRODUCT_ID")),
        (.firmware_build_date | line("BUILD_DATE"))),
    ($system | "feature \(.max_disks) \(.max_usb_disks) \(.max_arrays) \(.product_series)"),
    "bonding \($system.bonding | yes)", "spooldir \($system.spool_directory | no_text)",
    "diskmode \($system.front_panel | no_text)",
    (.disks[] | select(.device or .kind == "internal") | [.device, .name, .address] | map(dash) | @tsv),
    (.disks[] | select(.kind == "internal") | (
        "bay \(.slot) connected \(.present | yes) powered \(.powered | yes)",
        "blocks \(.size_bytes / 1024)", "temperature \(.temperature_celsius)", "lvm \(.lvm | yes)",
        "version         \(.signature_version)", "hdr_len         32", "raw_device_name \(.signature_disk)",
        "mac_address     \(.signature_mac)", "in_device       \(.signature_use)", "cryptinfo       \(.signature_encryption)",
        "errors \(.read_errors)", "mine \(.mine | yes)",
        "uuid               : \(.superblock_uuid | no_text)", "in_array(diskinfo) : \(.status)",
        "par_array_level    : \(.superblock_level // "normal" | if . == "raid10" then "normal" else . end)")),
    (.volumes[] | "volume \(.mount_point) \(.type) \(.size_bytes | no_text)"),
    (.interfaces[] | "\(.name) \(.address | dash) \(.netmask | dash) \(.prefix_length | dash) \(.network | dash) " +
        "mac \(.mac) mtu \(.mtu_bytes) link \(.speed_bits_per_second | number / 1000000) " +
        "duplex \(if .full_duplex then "full" else "half" end) enabled \(.enabled | yes) dhcp \(.dhcp | yes)"),
    (.name_servers[] | "name server \(.address)"),
    (.iscsi_sessions[] | [.tid, .target, .sid, .initiator, .address] | map(no_text | tostring) | join("<>")),
    (.iscsi_targets[] | ([.number, .device, .tid, .name, ""] | map(no_text | tostring) | join("<>"))),
    (.firewall[] | select(.gates | length > 0) | .service + " | " +
        (.gates | map(if .open then "     | " else "  D  | " end) | join(""))),
    (.backup_tasks[] | (.status // "Unknown" | line("status")), (.type // "Unknown" | line("type")),
        (.start_time // "-1:-1" | line("start_time")), (.week_day // "Unknown" | line("week")),
        (.overwrite // "Unknown" | line("overwrite")), (.encrypted // "Unknown" | line("crypt")),
        (.compressed // "Unknown" | line("compress")), (.trashbox // "Unknown" | line("trashbox")),
        (.mirror // "Unknown" | line("mirror")), (.logfile // "Unknown" | line("logfile")),
        (.force // "Unknown" | line("force")), (.name | line("name")), (.hardlink // "Unknown" | line("hardlink")),
        (.keep_generations // -1 | line("keep_generation")), (.pairs[] | "\(.source) \(.destination)"))
  ][]
