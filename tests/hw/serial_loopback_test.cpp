// The loopback test on real pseudo-terminals. They have no modem lines, so those are played by a model of the plug.
#include <fcntl.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <sys/syscall.h>
#include <termios.h>
#include <unistd.h>

#include <thread>
#include <tuple>

#include "hw/forced_tx.h"
#include "quorvel/foundation.h"
#include "quorvel/hw.h"
#include "support/appliance.h"

namespace {

constexpr int kDtr = TIOCM_DTR, kRts = TIOCM_RTS, kTx = TIOCM_ST, kCts = TIOCM_CTS, kCar = TIOCM_CAR;
constexpr char kTextPort[] = "/dev/ttyS0", kLinePort[] = "/dev/ttyS2", kText[] = "loop back test\n";
constexpr char kMode[] = "/proc/quorvel/gpio/mctrl/mctrl_mode", kForce[] = "/proc/quorvel/gpio/mctrl/force_tx";

// How the two kinds of plug join the lines.
int text_plug(int driven) {
    const bool dtr = driven & kDtr, rts = driven & kRts;
    return (rts ? kCts : 0) | (dtr ? TIOCM_DSR : 0) | (dtr || rts ? kCar | TIOCM_RNG : 0);
}
int line_plug(int driven) {
    const bool dtr = driven & kDtr, rts = driven & kRts, tx = driven & kTx;
    return (dtr ? TIOCM_SR : 0) | (rts ? TIOCM_RNG : 0) | (tx ? kCar : 0) | (dtr && rts ? kCts : 0) |
           (dtr && tx ? TIOCM_DSR : 0);
}
int no_plug(int) {
    return 0;
}

// The port: a plug, wires missing in it, lines its controller lacks, by how many reads its lines lag behind, whether
// it takes no text; and what the test did with it.
struct Port {
    int (*plug)(int) = no_plug;
    int missing = 0, lacking = 0, lag = 0;
    bool stopped = false;
    int driven = 0, lagging = 0, reads = 0, flushes = 0;
} port;

int lines_now() {
    const int own = port.driven & ~port.lacking;
    const int forced = read_file(kForce) == "1" ? kTx & port.lacking : 0;
    return own | (port.plug((own | forced) & ~port.missing) & ~port.missing);
}

// Takes the place of ioctl(2) in this program.
extern "C" int scripted_ioctl(int descriptor, unsigned long request, unsigned long argument) __asm__(IOCTL_SYMBOL);
int scripted_ioctl(int descriptor, unsigned long request, unsigned long argument) {
    int* lines = reinterpret_cast<int*>(argument);
    if (request == TIOCMSET) {
        port.driven = *lines;
        port.lagging = port.lag;
    } else if (request == TIOCMGET) {
        port.reads++;
        *lines = port.lagging-- > 0 ? -1 : lines_now();
    } else {
        port.flushes += request == TCFLSH && argument == TCIOFLUSH;
        return static_cast<int>(syscall(SYS_ioctl, descriptor, request, argument));
    }
    return 0;
}

class SerialLoopback : public ApplianceTest {
protected:
    void SetUp() override {
        ApplianceTest::SetUp();
        if (!exists("/dev/ptmx")) GTEST_SKIP() << "no pseudo-terminals here";
    }
};

// Runs the test with a pseudo-terminal as the port. The text port gets a reply to what it sends.
int run_on(const char* device, const Port& model, const char* reply = kText, int delay_ms = 0) {
    const bool carries_text = device == kTextPort;
    int plug_side, port_side;
    char name[64];
    EXPECT_EQ(openpty(&plug_side, &port_side, name, nullptr, nullptr), 0);
    make_link(device, name);
    if (carries_text) make_directory("/sys/class/borel");
    EXPECT_TRUE(!model.stopped || tcflow(port_side, TCOOFF) == 0);
    const int port_opened = dup(0);
    close(port_opened);
    std::thread plug([=] {
        char sent[64];
        if (!carries_text || (!model.stopped && read(plug_side, sent, sizeof sent) <= 0)) return;
        usleep(static_cast<useconds_t>(delay_ms) * 1000);
        (void)!write(plug_side, reply, strlen(reply));
    });
    port = model;
    const int result = LibQuorvelBin_UpsTest();
    plug.join();
    EXPECT_EQ(fcntl(port_opened, F_GETFD), carries_text ? FD_CLOEXEC : -1);
    struct termios set;
    EXPECT_EQ(tcgetattr(port_side, &set), 0);
    const std::tuple flags(set.c_iflag, set.c_oflag, set.c_cflag, set.c_lflag);
    EXPECT_EQ(flags == std::tuple(0x500U, 0x5U, 0xcbdU, 0x8a3bU), carries_text);
    for (int descriptor : {plug_side, port_side, port_opened})
        close(descriptor);
    return result;
}

TEST_F(SerialLoopback, EveryBrokenWireShowsInTheMask) {
    // The mask, how often the lines were read, and how the output ends.
    const std::tuple<const char*, Port, int, int, const char*> rows[] = {
        {kTextPort, {text_plug},          0,    4,  " \nOK\n"                                },
        {kTextPort, {text_plug, kCts},    0x0a, 8,  " \nNG\nNG retval = 10\n"                },
        {kTextPort, {text_plug, kDtr},    0x0c, 8,  " \nNG\nNG retval = 12\n"                },
        {kTextPort, {no_plug},            0x0e, 10, " \nNG\nNG retval = 14\n"                },
        {kTextPort, {text_plug, 0, 0, 2}, 0,    12, " \nOK\n"                                },
        {kTextPort, {text_plug, 0, 0, 3}, 0x0f, 12, " \nNG\nNG retval = 15\n"                },
        {kLinePort, {line_plug},          0,    8,  "RNG(RI) : 1 CTS : 1 CAR(DCD) : 1 \nOK\n"},
        {kLinePort, {line_plug, kDtr},    0xaa, 8,  "RNG(RI) : 1 CTS : 0 CAR(DCD) : 1 \nNG\n"},
        {kLinePort, {line_plug, kRts},    0xcc, 8,  " \nNG\n"                                },
        {kLinePort, {no_plug},            0xfe, 8,  " \nNG\n"                                },
        {kLinePort, {line_plug, 0, 0, 1}, 0xff, 8,  " \nNG\n"                                },
    };
    for (const auto& [device, model, mask, reads, end] : rows) {
        SetUp();
        from_cmdline = 2;
        Capture output;
        EXPECT_EQ(run_on(device, model), mask);
        EXPECT_TRUE(output.text().ends_with(end)) << device << mask;
        EXPECT_EQ(std::pair(port.reads, port.flushes), std::pair(reads, device == kTextPort ? 4 : 0));
    }
}

TEST_F(SerialLoopback, ShowsTheLinesOfEveryStep) {
    from_cmdline = 1;
    const auto printed = printed_by([] { run_on(kTextPort, {text_plug, kCts}); });
    EXPECT_EQ(printed, read_file("/source/tests/hw/expected/loopback-steps.txt"));
}

TEST_F(SerialLoopback, TheTextMustComeBack) {
    constexpr char kFailed[] = "Loop back test failed.\n";
    from_cmdline = 1;
    EXPECT_EQ(printed_by([] { EXPECT_EQ(run_on(kTextPort, {}, "loop back tesT\n"), -1); }), kFailed);
    // A port that takes nothing, and what is no line yet and cannot be read: neither is waited for without end.
    const Port stopped = {.stopped = true};
    EXPECT_EQ(printed_by([=] { EXPECT_EQ(run_on(kTextPort, stopped, "loop back test"), -1); }), kFailed);
    from_cmdline = 0;
    EXPECT_EQ(printed_by([] { EXPECT_EQ(run_on(kTextPort, {}, kText, 3300), 0x0e); }), "");
}

TEST_F(SerialLoopback, TxMayBeAGpio) {
    const Port without_tx = {line_plug, 0, kTx};
    EXPECT_EQ(run_on(kLinePort, without_tx), 0xf0);
    write_file(kMode, "mpp\n");
    EXPECT_EQ(run_on(kLinePort, without_tx), 0xf0);  // nothing to force it with
    EXPECT_FALSE(exists(kForce));
    EXPECT_EQ(quorvel::set_forced_tx(1), -1);
    write_file(kForce, "0\n");
    EXPECT_EQ(run_on(kLinePort, without_tx), 0);
    EXPECT_EQ(quorvel::set_forced_tx(2), -1);
    EXPECT_EQ(read_file(kMode) + read_file(kForce), "gpio1");
    EXPECT_EQ(quorvel::set_forced_tx(0), 0);
    EXPECT_EQ(read_file(kForce), "0");
}

}  // namespace
