# What the superblocks say, and the line of the front panel.
libquorvel_bin md diskinfo guess
libquorvel_bin md diskmode
echo
