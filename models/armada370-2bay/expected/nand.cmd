# Boot from NAND is switched off, then both partitions are wiped.
libquorvel_bin nand_erase
grep -E '^(nvram|flash_eraseall)' /run/tool-calls
