# The words that ask about interfaces or change them; a name server that answers is not in reach.
echo text >/tmp/text
mkdir -p /usr/local/ssl/bin
ln -s /usr/bin/openssl /usr/local/ssl/bin
while IFS= read -r words; do
    echo "\$ $words"
    eval "$words"
    echo "= $?"
done <<'END'
libquorvel_bin netif_exists eth9
libquorvel_bin ifinfo eth0
libquorvel_bin dns_reachable -r 1
libquorvel_bin setip eth1 10.9.8.7 255.255.0.0 && ip -o -4 address show eth1
libquorvel_bin encrypt_mac_file eth0 /tmp/text 2>/dev/null && head -c 8 /tmp/text && echo && ls /tmp/text*
libquorvel_bin decrypt_mac_file eth9 /tmp/text
libquorvel_bin encrypt_mac_file eth0 /tmp/none 2>/dev/null
ip link set eth0 address 02:0b:7e:10:00:ac && libquorvel_bin decrypt_mac_file eth0 /tmp/text 2>/dev/null | grep -ac text
END
