libquorvel_bin backup Info 1
libquorvel_bin backup Destinfo 1
