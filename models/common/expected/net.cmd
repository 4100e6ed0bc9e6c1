# The addresses of known interfaces, then the prefix of each interface.
libquorvel_bin net 2>/dev/null
for interface in /sys/class/net/*; do
    interface=${interface##*/}
    echo "$interface $(libquorvel_bin net -i "$interface" -o mask_size 2>/dev/null || echo none)"
done
