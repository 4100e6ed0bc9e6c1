# What the appliance said of its interfaces when it was recorded.
libquorvel_bin net 2>/dev/null
for interface in /sys/class/net/*; do
    interface=${interface##*/}
    [ "$interface" = lo ] || echo "$interface $(libquorvel_bin net -i "$interface" -o mask_size 2>/dev/null || echo none)"
done
