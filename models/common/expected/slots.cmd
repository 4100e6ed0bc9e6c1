# In the syntax of /etc/diskpath.conf; nothing where names follow rules.
libquorvel_bin slots
