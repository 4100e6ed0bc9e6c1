# The whole appliance on a screen of 96 columns, and the verdict. Sizes of mounted file systems are those of the place.
export SOURCE_DATE_EPOCH=1800000000 COLUMNS=96
libquorvel_bin report | sed -E 's/^(  \/mnt.*(xfs|vfat)) .*/\1/; s/^(  Mounted at.*Type).*/\1/'
libquorvel_bin report --nothing
echo $?
libquorvel_bin status
echo $?
libquorvel_bin report --no-tools -o /tmp/report && stat -c %a /tmp/report* && head -n 6 /tmp/report | tail -n 3
libquorvel_bin report --json -o /none/report || echo $?
