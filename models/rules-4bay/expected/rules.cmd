# Why each rule does or does not name a disk: wiring by the settings, another kernel, a disk where no rule finds a number.
explain() { libquorvel_bin explain "$@" | sed -n -e 's/^    rule \([0-9]*  [a-z]* \)/\1/p' -e '/^    [0-9]* more/p' -e '/^  answer/p'; }
while read -r internal usb kernel disk; do
    echo "$internal $usb $kernel"
    sed -i "s/^INTERNAL.*/INTERNAL_SCSI_TYPE=$internal/; s/^USB_TREE.*/USB_TREE_TYPE=$usb/" /etc/nas_feature
    echo "$kernel" >/proc/sys/kernel/osrelease
    explain "$disk"
done <<'END_OF_WIRINGS'
multi-id multi-roothub 3.2.40 sda
multi-host borel-platform 3.2.40 sdf
multi-host single-roothub 3.2.40 sdf
multi-host single-roothub+hub 3.2.40 sdf
multi-host armada370-platform 3.2.40 sdf
END_OF_WIRINGS
mkdir -p /sys/devices/pci0000:00/0000:00:1f.2/ata3/host2/block/sdg && ln -s ../devices/pci0000:00/0000:00:1f.2/ata3/host2/block/sdg /sys/block/sdg
explain sdg
echo 2.6.30 >/proc/sys/kernel/osrelease
ln -s ../../devices/pci0000:00/0000:00:1f.2/ata3/host2 /sys/block/sdg/device
explain sdg
for setting in INTERNAL USB; do sed -i "/^$setting/d" /etc/nas_feature; done
libquorvel_bin explain --json sdg | sed -n '/"rules"/,/\]/p'
