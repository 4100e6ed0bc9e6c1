# Learnt by serial numbers; then the same disks under other kernel names, the USB 3 stick at USB 2 speed.
printf '1 SAS1\n2 SAS2\n3 SAS3\n4 PMP4\n5 PMP5\n6 PMP6\nusbdisk1 USB-A\nusbdisk2 USB-B\n' >/tmp/serials
libquorvel_bin learn --serials /tmp/serials --yes >/tmp/shown && cat /etc/diskpath.conf
sed -n '/^Disk/,/^Written/p' /tmp/shown
libquorvel_bin disks
usb=/sys/devices/pci0000:00/0000:00:14.0
mkdir -p $usb/usb1/1-5/1-5:1.0/host6/target6:0:0/6:0:0:0/block/sdg
ln -sf ../devices/pci0000:00/0000:00:14.0/usb1/1-5/1-5:1.0/host6/target6:0:0/6:0:0:0/block/sdg /sys/block/sdg
libquorvel_bin diskname sdg
# What the kernel tells by itself: the bays of the enclosure.
libquorvel_bin learn --from-kernel --yes >/tmp/shown
grep -h ^HDD /etc/diskpath.conf
# What is refused.
printf '1 NONE\nx SAS1\n' >/tmp/serials
libquorvel_bin learn --serials /tmp/serials --yes
libquorvel_bin learn
printf '1 USB-A\n' >/tmp/serials
libquorvel_bin learn --serials /tmp/serials --yes || ls /etc/diskpath*
