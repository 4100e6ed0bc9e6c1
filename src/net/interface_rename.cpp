#include <stdio.h>
#include <sys/ioctl.h>

#include "foundation/failure.h"
#include "foundation/options.h"
#include "foundation/text.h"
#include "net/interface_request.h"
#include "quorvel/net.h"

using namespace quorvel;

namespace {

// 0, or the reason why not.
[[nodiscard]] int rename_interface(const Descriptor& open_socket, const char* from, const char* to) {
    if (!fits_request(from) || !fits_request(to)) return ENODEV;
    struct ifreq request = request_for(from);
    copy_text(request.ifr_newname, sizeof request.ifr_newname, to);
    return ioctl(open_socket.number, SIOCSIFNAME, &request) != -1 ? 0 : errno;
}

}  // namespace

int LibQuorvelBin_Nameif(int argc, char** argv) {
    if (argc != 3 || argument_count(argc, argv) != argc) {
        printf("Argument is wrong!");
        return fail(EINVAL);
    }
    Descriptor open_socket = interface_socket();
    if (!open_socket) {
        KeptErrno kept;
        puts("Can't open socket");
        return -1;
    }
    int reason = rename_interface(open_socket, argv[1], argv[2]);
    if (reason == 0) return 0;
    puts("Can't change if name");
    return fail(reason);
}
