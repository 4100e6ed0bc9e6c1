# The SCSI address of every slot, by its logical name.
for node in /dev/disk*; do
    case $node in
        *_*) ;;
        *) echo "${node##*/} $(libquorvel_bin scsiid "${node##*/}" 2>/dev/null || echo none)" ;;
    esac
done
