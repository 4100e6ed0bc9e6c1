# What --help COMMAND shows as the example of a command, in all examples*.cmd: its first line, what that prints, and its
# exit status.
. /source/scripts/lib/inside-examples <<'END'
libquorvel_bin feature MAX_DISK_NUM
! mkdir -p /usr/local/bin /usr/local/ssl/bin && ln -s /usr/bin/openssl /usr/local/ssl/bin
! printf '#!/bin/sh\nsed -i "s/^$1=.*/$1=$2/" /etc/nas_feature\n' >/usr/local/bin/setnf; echo '#!/bin/sh' >/usr/local/bin/dumpnf
! chmod +x /usr/local/bin/*nf; export SOURCE_DATE_EPOCH=1800000000
libquorvel_bin set_feature MAX_DISK_NUM 2 && libquorvel_bin feature MAX_DISK_NUM
! setnf MAX_DISK_NUM 4
libquorvel_bin username 0
libquorvel_bin tomorrow | sed s/[0-9]/N/g
libquorvel_bin day_after 2028-02-28
libquorvel_bin file_exists /etc/nas_feature && echo there
libquorvel_bin dir_exists /mnt/array9
libquorvel_bin firminfo | head -n 4
libquorvel_bin platform
libquorvel_bin series
libquorvel_bin kernel
libquorvel_bin kernel_newer 3.3.4
libquorvel_bin kernel_newer_equal 3.3.4
libquorvel_bin borel
libquorvel_bin nisk
libquorvel_bin pellmar
libquorvel_bin armada370
libquorvel_bin has_chip 11ab7042
libquorvel_bin disks | head -n 5
libquorvel_bin diskname sda /dev/sdd
libquorvel_bin devname disk1 disk2
libquorvel_bin scsiid disk2
libquorvel_bin slots | head -n 4
libquorvel_bin connected 0
libquorvel_bin powered 0
libquorvel_bin scsiname 1
libquorvel_bin lvm_volume sda
libquorvel_bin lvm_disk array1
libquorvel_bin available_disk
libquorvel_bin spooldir
libquorvel_bin explain sda | tail -n 6
! echo MAX_DISK_NUM=8 >>/etc/nas_feature
libquorvel_bin check | head -n 1
! sed -i '$d' /etc/nas_feature
libquorvel_bin bay sda
libquorvel_bin disk_signature get /dev/disk1
libquorvel_bin disk_readerrorcnt get /dev/disk1
libquorvel_bin mydisk disk1
libquorvel_bin temperature /dev/disk1
libquorvel_bin fstype /mnt/array1
libquorvel_bin partition_blocks sda
libquorvel_bin partition_size /mnt/array1 | sed 's/[0-9]*/BYTES/'
libquorvel_bin partition_used /mnt/array1 | sed 's/[0-9]*/BYTES/'
libquorvel_bin partition_free /mnt/array1 | sed 's/[0-9]*/BYTES/'
libquorvel_bin mounted /mnt/array1
libquorvel_bin fsinfo /mnt/array1 | cut -d = -f 1
libquorvel_bin mount_test /dev/sda 2>/dev/null
libquorvel_bin create_partition --dry-run --force sda | head -n 3
libquorvel_bin create_short_partition --dry-run --force sda | head -n 3
libquorvel_bin create_usb_partition --dry-run --force sde xfs gpt
libquorvel_bin test_usersize sda
libquorvel_bin md diskinfo guess
libquorvel_bin net -i eth0 -o mask_size
libquorvel_bin dns_reachable -r 1 2>/dev/null
libquorvel_bin get_dns 1
libquorvel_bin ifinfo eth0 | head -n 4
libquorvel_bin bonding
libquorvel_bin netif_count
libquorvel_bin netif_exists eth0
libquorvel_bin netif_index eth1
libquorvel_bin netif_enabled eth0
libquorvel_bin netif_dhcp eth0
libquorvel_bin setip eth1 10.9.8.7 255.255.0.0 && libquorvel_bin net -i eth1 -o ip_addr
! echo text >/tmp/text
libquorvel_bin encrypt_mac_file eth0 /tmp/text 2>/dev/null && head -c 8 /tmp/text && echo
libquorvel_bin decrypt_mac_file eth0 /tmp/text 2>/dev/null
libquorvel_bin config read /etc/nas_feature/SERIES_NAME
libquorvel_bin iscsi session_info | head -n 2
! echo 'ftp<>0<>1<>;' >/etc/tevra/service_ports
libquorvel_bin firewall --start 2>/dev/null
libquorvel_bin backup GetDestination 1 1
libquorvel_bin url_encode '/share/my files'
libquorvel_bin ups_test
libquorvel_bin report | head -n 4
libquorvel_bin status && echo well
END
