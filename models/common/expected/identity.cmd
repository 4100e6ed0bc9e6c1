for question in platform series kernel; do
    echo "$question $(libquorvel_bin "$question" 2>/dev/null || echo none)"
done
