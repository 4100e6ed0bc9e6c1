# Every slot, USB port and boot disk with a disk, by its logical name.
for node in /dev/*disk*; do
    case $node in
        *_*) ;;
        *) echo "$node $(libquorvel_bin devname "$node")" ;;
    esac
done
