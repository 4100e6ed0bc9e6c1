ip link set eth1 down && libquorvel_bin nameif eth1 eth8 && ip -o link show eth8 | cut -d ' ' -f 2
