# What is wrong with the configuration.
libquorvel_bin check || echo "status $?"
