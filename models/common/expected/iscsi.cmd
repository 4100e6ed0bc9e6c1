libquorvel_bin iscsi session_info
libquorvel_bin iscsi volume_info
for question in IsConnected GetNewTID "GetTIDfromTCID 1" "GetTIDfromTCID 2" "GetTIDfromTCID 3"; do
    # shellcheck disable=SC2086  # a word and its number
    echo "$question: $(libquorvel_bin iscsi $question)"
done
