libquorvel_bin iscsi session_info
# Every volume has a line; those of volumes without a target are counted.
libquorvel_bin iscsi volume_info | grep -v '<><><><>$'
libquorvel_bin iscsi volume_info | grep -c '<><><><>$'
for question in IsConnected GetNewTID "GetTIDfromTCID 1" "GetTIDfromTCID 2" "GetTIDfromTCID 3"; do
    # shellcheck disable=SC2086  # a word and its number
    echo "$question: $(libquorvel_bin iscsi $question)"
done
