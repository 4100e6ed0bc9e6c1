# What the appliance answered when it was recorded; of what check finds, all but programs that are missing.
ask() {
    answer=$(libquorvel_bin "$@" 2>/dev/null) && status=0 || status=$?
    printf '%s\n' "$*: $answer ($status)"
}
for question in platform series kernel slots disks spooldir available_disk firminfo "md diskmode" "iscsi session_info" \
    "config read info.tevra.etc" "backup Info 1"; do
    # shellcheck disable=SC2086  # a word and its arguments
    ask $question
done
libquorvel_bin check 2>/dev/null | grep -v 'warning: not there'
libquorvel_bin explain 2>/dev/null | grep -E '^[^ ]|^  (answer|way back)| yes: '
for disk in /sys/block/sd* /sys/block/nvme*n*; do
    disk=${disk##*/}
    [ -e "/sys/block/$disk" ] || continue
    ask diskname "$disk" && ask scsiid "$disk" && ask devname "$(libquorvel_bin diskname "$disk" 2>/dev/null)"
done
for index in 0 1 2 3 4 5 6 7 8 9 10 11; do
    [ $index -ge "$(libquorvel_bin feature MAX_DISK_NUM 2>/dev/null)" ] || echo "$(ask connected $index) $(ask powered $index)"
done 2>/dev/null
for disk in /dev/disk[0-9] /dev/disk[0-9][0-9]; do
    [ ! -e "$disk" ] || ask disk_signature get "$disk"
done
