# A setting is read, added, listed and removed; keys in both notations.
libquorvel_bin config read HOSTNAME.info.tevra.etc
libquorvel_bin config write COMMENT.info.tevra.etc "front desk=1"
libquorvel_bin config write /etc/tevra/info/WORKGROUP OFFICE
libquorvel_bin config read info.tevra.etc
libquorvel_bin config delete /etc/tevra/info/COMMENT && echo gone
libquorvel_bin config read COMMENT.info.tevra.etc || echo "status $?"
libquorvel_bin config read HOSTNAME.nowhere.tevra.etc || echo "status $?"
