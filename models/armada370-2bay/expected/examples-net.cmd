# As those of borel-4bay.
words='libquorvel_bin nand_erase'
printf '$ %s\n' "$words"
eval "$words"
echo "= $?"
