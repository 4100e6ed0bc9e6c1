# Who set each disk up, and its read errors.
for node in /dev/disk*; do
    case $node in
        *_*) ;;
        *)
            echo "$node"
            libquorvel_bin disk_signature get "$node"
            libquorvel_bin disk_readerrorcnt get "$node"
            ;;
    esac
done
