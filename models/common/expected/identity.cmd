echo "platform $(libquorvel_bin platform 2>/dev/null || echo none)"
echo "series $(libquorvel_bin series 2>/dev/null || echo none)"
echo "kernel $(libquorvel_bin kernel 2>/dev/null || echo none)"
