# Those that emulated boards cannot answer.
. /source/scripts/lib/inside-examples <<'END'
! echo codepage=CP932 >>/etc/tevra/info; ip link set eth1 down
libquorvel_bin to_utf8 "$(printf '\226\274\221\117')"
libquorvel_bin from_utf8 名前 | od -An -tx1
libquorvel_bin ethinfo eth0
libquorvel_bin nameif eth1 lan1 && libquorvel_bin ifinfo lan1 | head -n 1
END
