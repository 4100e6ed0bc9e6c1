// The services that the firewall knows, and the ports each of them listens on, with TCP and UDP alike.
#include "quorvel/services.h"

namespace {

constexpr int kSamba[] = {137, 138, 139, 445, 515};
constexpr int kAtalk[] = {548, 5353, 32773};
constexpr int kFtp[] = {21};
constexpr int kNfs[] = {111, 2049};
constexpr int kSftp[] = {22};
constexpr int kBackup[] = {22939, 873, 8873};
constexpr int kTwonky[] = {9050, 1900, 9080};
constexpr int kItunes[] = {3689};
constexpr int kClientUtility[] = {22936};
constexpr int kChimera[] = {3000};
constexpr int kBittorrent[] = {6881, 9090};
constexpr int kPwrmgr[] = {9};
constexpr int kFarweb[] = {9000};
constexpr int kIscsi[] = {3260};
constexpr int kWebui[] = {80};
constexpr int kWebuiSsl[] = {443};

template <int Count>
constexpr firewall_service service(const char* name, const int (&ports)[Count]) {
    return {name, Count, ports};
}

}  // namespace

constexpr firewall_service set_firewall_tab[QUORVEL_FIREWALL_SERVICES] = {
    service("samba", kSamba),
    service("atalk", kAtalk),
    service("ftp", kFtp),
    service("nfs", kNfs),
    service("sftp", kSftp),
    service("backup", kBackup),
    service("twonky", kTwonky),
    service("itunes", kItunes),
    service("clientutility", kClientUtility),
    service("chimera", kChimera),
    service("bittorrent", kBittorrent),
    service("pwrmgr", kPwrmgr),
    service("farweb", kFarweb),
    service("iscsi", kIscsi),
    service("webui", kWebui),
    service("webui_ssl", kWebuiSsl),
};
