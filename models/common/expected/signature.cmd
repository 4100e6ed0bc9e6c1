# Who set each disk up, and its read errors, a line each.
for node in /dev/disk*; do
    case $node in
        *_*) ;;
        *)
            {
                echo "$node"
                libquorvel_bin disk_signature get "$node"
                libquorvel_bin disk_readerrorcnt get "$node"
            } | tr -s ' \n' ' '
            echo
            ;;
    esac
done
