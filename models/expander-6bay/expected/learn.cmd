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
# What an enclosure says that counts to no bay.
echo 2147483647 >/sys/class/enclosure/0:0:3:0/Slot02/slot
libquorvel_bin learn --from-kernel --yes >/tmp/shown; grep -h ^HDD /etc/diskpath.conf
# What an enclosure on another host says of a disk, and two that contradict each other.
for said in '4:0:0:1 6 sdf' '0:0:1:9 5 sda'; do
    set -- $said
    mkdir -p /sys/class/enclosure/$1/Slot && echo $2 >/sys/class/enclosure/$1/Slot/slot
    ln -s "$(realpath /sys/block/$3/device)" /sys/class/enclosure/$1/Slot/device
    libquorvel_bin learn --from-kernel --yes >/tmp/shown && grep -h ^HDD /etc/diskpath.conf
done
rm -r /sys/class/enclosure/0:0:1:9
# What is refused.
printf '1 NONE\nx SAS1\n' >/tmp/serials
libquorvel_bin learn --serials /tmp/serials --yes
libquorvel_bin learn
rm -f /tmp/serials && mkfifo /tmp/serials
libquorvel_bin learn --serials /tmp/serials --yes
rm /tmp/serials
# What a disk says of itself is text: it moves no cursor and becomes no row.
printf '....\033]2;x\007PMP4\nHDD_BOOT=1,\t/x' >/sys/devices/pci0000:00/0000:00:17.0/ata3/host3/target3:0:0/3:0:0:0/vpd_pg80
echo '4 PMP4' >/tmp/serials
libquorvel_bin learn --serials /tmp/serials --yes | grep -a sdf
echo '4 ]2;x?PMP4?HDD_BOOT=1,?/x' >/tmp/serials
libquorvel_bin learn --serials /tmp/serials --yes | grep -a ^sdf
# Nothing is written through what has the name of the new file.
ln -s /etc/hosts /etc/diskpath.conf_tmp
libquorvel_bin learn --from-kernel --yes >/tmp/shown
ls /etc/diskpath* /etc/hosts 2>&1
printf '1 USB-A\n' >/tmp/serials
libquorvel_bin learn --serials /tmp/serials --yes || ls /etc/diskpath*
