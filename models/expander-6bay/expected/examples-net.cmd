. /source/scripts/lib/inside-examples <<'END'
! printf '1 SAS1\n2 SAS2\nusbdisk1 USB-A\n' >/tmp/serials
libquorvel_bin learn --serials /tmp/serials --yes | sed -n /^Disk/,/SAS2/p; tail -n 2 /etc/diskpath.conf
END
