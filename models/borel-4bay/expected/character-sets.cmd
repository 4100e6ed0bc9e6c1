# There and back in the code page that counts when none is set.
libquorvel_bin to_utf8 "$(libquorvel_bin from_utf8 名前)"
