. /source/scripts/lib/inside-examples <<'END'
libquorvel_bin nand_erase
END
