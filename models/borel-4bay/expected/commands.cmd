# The words that no other label asks: each with its answer and exit status, among them wrong calls and a link.
mkdir -p /usr/local/bin
ln -s /build/libquorvel_bin /usr/local/bin/platform
printf '#!/bin/sh\necho "${0##*/} $*"\n' >/usr/local/bin/setnf
chmod +x /usr/local/bin/setnf
while IFS= read -r words; do
    echo "\$ $words"
    eval "$words"
    echo "= $?"
done <<'END'
libquorvel_bin | head -n 1
libquorvel_bin --help | head -n 4
libquorvel_bin --help nand_erase
libquorvel_bin -h nothing
libquorvel_bin --version
libquorvel_bin disknam
libquorvel_bin feature
libquorvel_bin platform borel
libquorvel_bin --version >/dev/full
platform
bash -c 'exec -a /bin/kernel /build/libquorvel_bin'
platform $(seq 256)
libquorvel_bin feature SERIES_NAME
libquorvel_bin set_feature MAX_DISK_NUM 2
libquorvel_bin username 0x
libquorvel_bin tomorrow | grep -cx '20[0-9-]*'
libquorvel_bin file_exists /dev
libquorvel_bin dir_exists /dev
libquorvel_bin firminfo
libquorvel_bin kernel_newer 2.6.16.1
libquorvel_bin kernel_newer ""
libquorvel_bin kernel_newer 2..6
libquorvel_bin kernel_newer_equal 9.0.0.0
libquorvel_bin diskname sdh sdx sda
libquorvel_bin scsiid usbdisk3 disk9 bay1
libquorvel_bin diskname ../../dev/sda
libquorvel_bin devname disk3 disk9 disk1
libquorvel_bin connected -1
libquorvel_bin powered 4
libquorvel_bin scsiname one
libquorvel_bin disk_signature get
libquorvel_bin disk_readerrorcnt set /dev/disk1 -n 12
libquorvel_bin temperature sda
libquorvel_bin temperature /dev/sdq
libquorvel_bin fstype /none
libquorvel_bin partition_size /none
libquorvel_bin partition_used /proc/mounts | grep -cx '[0-9]*'
libquorvel_bin partition_free /none
libquorvel_bin fsinfo /none
libquorvel_bin mount_test /dev/sdz 2>/dev/null
libquorvel_bin create_partition sdz
libquorvel_bin create_short_partition --force sdz
libquorvel_bin create_usb_partition --dry-run --force 'sd z' xfs gpt
libquorvel_bin md diskinfo disk1
libquorvel_bin md --help
libquorvel_bin md mdinfo
libquorvel_bin config
libquorvel_bin config wirte /etc/nas_feature/KEY 1
libquorvel_bin config read /etc/nas_feature/SERIES_NAME -h
libquorvel_bin config read /nowhere/KEY --json 2>/dev/null
libquorvel_bin iscsi
libquorvel_bin firewall
libquorvel_bin firewall --help | wc -l
libquorvel_bin firewall --start --frob
libquorvel_bin firewall --config /nonexistent
libquorvel_bin firewall --start --config /nonexistent | tail -n 1
PATH=/build libquorvel_bin firewall --stop 2>/dev/null
ln -s /bin/false /tmp/iptables; PATH=/tmp:$PATH libquorvel_bin firewall --stop
libquorvel_bin backup Info x >/dev/null
libquorvel_bin backup Info
libquorvel_bin url_encode '/a b'
libquorvel_bin get_dns 2
libquorvel_bin get_dns 9 resolver
libquorvel_bin get_dns 2x
libquorvel_bin netif_exists ../net/eth0; libquorvel_bin ethinfo ../net/eth0
libquorvel_bin netif_index eth
libquorvel_bin setip eth0 1.2.3 255.0.0.0
libquorvel_bin bay sda; libquorvel_bin bay sda1
SOURCE_DATE_EPOCH=1800000000 COLUMNS=100 libquorvel_bin report --no-tools | head -n 24
libquorvel_bin status --no-tools
echo '/dev/md9 /mnt/usbdisk1 fuse.of-an-account rw 0 0' >>/proc/mounts; libquorvel_bin report --no-tools | grep -a account
echo 'HDD_USB=1, /sys/block, 1, -1' >/etc/diskpath.conf; libquorvel_bin diskname sda sdh; libquorvel_bin scsiid sdh; timeout 9 libquorvel_bin diskname "$(printf 'sdh\n.')"
printf 'HDD_INTERNAL=%s, host1, 0:0:0:0\n' 1 2 >/etc/diskpath.conf; libquorvel_bin devname disk2
printf 'dump_config=yes\nextslot1=SAS, 7\nextslot1=SATA, 8, /ext, 9:0:0:0\n' >/etc/extslot.conf; libquorvel_bin disks 2>/dev/null | grep -v ^sd
rm /etc/diskpath.conf /etc/extslot.conf; echo debug=1 >/etc/libquorvel_bin.conf; libquorvel_bin platform 2>/dev/null
rm /etc/libquorvel_bin.conf; rm /sys/block/sda && ln -s ../devices/none /sys/block/sdx && touch /sys/block/sdy /sys/block/sdaa && libquorvel_bin disks
rm -r /sys/block && libquorvel_bin disks
libquorvel_bin report --reach | sed -n '/^Name servers/,/^$/p'
END
