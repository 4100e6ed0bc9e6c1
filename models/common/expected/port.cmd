# Which port for the UPS is tested, by text or by its lines: a plain file stands for one port after the other, and nothing
# answers.
for port in $(grep -o '/dev/tty[A-Za-z0-9]*' /source/src/foundation/appliance_files.h); do
    : >"$port"
    libquorvel_bin ups_test 2>/dev/null | sed -n "\$s|^|$port: |p"
    rm "$port"
done
