# Every disk of the machine, by its kernel name.
for disk in /sys/block/*; do
    echo "${disk##*/} $(libquorvel_bin diskname "${disk##*/}")"
done
