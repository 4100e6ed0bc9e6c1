# What explain answers is what diskname and devname answer; one disk in full.
for disk in /sys/block/*; do
    disk=${disk##*/}
    answer=$(libquorvel_bin explain "$disk" | sed -n 's/^  answer *//p')
    name=$(libquorvel_bin diskname "$disk" || echo none)
    [ "$answer" = "$name" ] || echo "$disk: $answer, not $name"
    libquorvel_bin explain "$disk" >/dev/null && agreed=$disk || agreed=
    [ "$(libquorvel_bin devname "$name")" = "$agreed" ] || echo "$disk: way back"
done
libquorvel_bin explain disk2 && echo "status $?"
