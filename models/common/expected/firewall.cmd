# The table, and every call of iptables.
libquorvel_bin firewall --start
grep ^iptables /run/tool-calls
