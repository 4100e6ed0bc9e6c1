#include <stdio.h>
#include <sys/ioctl.h>

#include "foundation/options.h"
#include "foundation/text.h"
#include "net/interface_request.h"
#include "quorvel/net.h"

using namespace quorvel;

int LibQuorvelBin_Nameif(int argc, char** argv) {
    if (argc != 3 || argument_count(argc, argv) != argc) {
        printf("Argument is wrong!");
        return -1;
    }
    Descriptor open_socket = interface_socket();
    if (!open_socket) {
        puts("Can't open socket");
        return -1;
    }
    struct ifreq request = request_for(argv[1]);
    copy_text(request.ifr_newname, sizeof request.ifr_newname, argv[2]);
    if (ioctl(open_socket.number, SIOCSIFNAME, &request) == -1) {
        puts("Can't change if name");
        return -1;
    }
    return 0;
}
