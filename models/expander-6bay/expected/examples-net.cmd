# As those of borel-4bay.
printf '1 SAS1\n2 SAS2\nusbdisk1 USB-A\n' >/tmp/serials
words='libquorvel_bin learn --serials /tmp/serials --yes | sed -n /^Disk/,/SAS2/p; tail -n 2 /etc/diskpath.conf'
printf '$ %s\n' "$words"
eval "$words"
echo "= $?"
