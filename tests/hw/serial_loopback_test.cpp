// The loopback test on real pseudo-terminals. They have no modem lines, so those are played by a model of the plug.
#include <fcntl.h>
#include <pty.h>
#include <stdarg.h>
#include <sys/ioctl.h>
#include <sys/syscall.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
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

// The port: a plug, wires missing in it, lines its controller lacks, by how many reads its lines lag behind; and what
// the test did with it.
struct Port {
    int (*plug)(int) = no_plug;
    int missing = 0, lacking = 0, lag = 0;
    int driven = 0, lagging = 0, reads = 0, flushes = 0;
} port;

int lines_now() {
    const int own = port.driven & ~port.lacking;
    const int forced = read_file(kForce) == "1" ? kTx & port.lacking : 0;
    return own | (port.plug((own | forced) & ~port.missing) & ~port.missing);
}

}  // namespace

extern "C" int ioctl(int descriptor, unsigned long request, ...) noexcept {
    va_list arguments;
    va_start(arguments, request);
    const unsigned long argument = va_arg(arguments, unsigned long);
    va_end(arguments);
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

namespace {

class SerialLoopback : public ApplianceTest {};

// Runs the test with a pseudo-terminal as the port. The text port gets a reply to what it sends.
int run_on(const char* device, const char* reply = kText, int delay_ms = 0) {
    const bool carries_text = device == kTextPort;
    int plug_side = -1, port_side = -1;
    char name[64];
    EXPECT_EQ(openpty(&plug_side, &port_side, name, nullptr, nullptr), 0);
    make_link(device, name);
    if (carries_text) make_directory("/sys/class/borel");
    const int port_opened = dup(0);
    close(port_opened);
    std::thread plug([=] {
        char sent[64];
        if (!carries_text || read(plug_side, sent, sizeof sent) <= 0) return;
        std::this_thread::sleep_for(std::chrono::milliseconds(delay_ms));
        (void)!write(plug_side, reply, strlen(reply));
    });
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
    // The port; how the table starts over; the mask, and how often the lines were read.
    const std::tuple<const char*, Port, int, int> rows[] = {
        {kTextPort, {text_plug},          0,    4 },
        {kTextPort, {text_plug, kCts},    0x0a, 8 },
        {kTextPort, {text_plug, kDtr},    0x0c, 8 },
        {kTextPort, {no_plug},            0x0e, 10},
        {kTextPort, {text_plug, 0, 0, 2}, 0,    12},
        {kTextPort, {text_plug, 0, 0, 3}, 0x0f, 12},
        {kLinePort, {line_plug},          0,    8 },
        {kLinePort, {line_plug, kDtr},    0xaa, 8 },
        {kLinePort, {line_plug, kRts},    0xcc, 8 },
        {kLinePort, {line_plug, kCts},    0x88, 8 },
        {kLinePort, {no_plug},            0xfe, 8 },
        {kLinePort, {line_plug, 0, 0, 1}, 0xff, 8 },
    };
    for (const auto& [device, model, mask, reads] : rows) {
        SetUp();
        port = model;
        EXPECT_EQ(printed_by([&, name = device, expected = mask] { EXPECT_EQ(run_on(name), expected); }), "");
        EXPECT_EQ(port.reads, reads) << device << mask;
        EXPECT_EQ(port.flushes, device == kTextPort ? 4 : 0);
    }
}

TEST_F(SerialLoopback, ShowsLinesAndVerdict) {
    from_cmdline = 2;
    port = {text_plug, kCts};
    EXPECT_EQ(printed_by([] { run_on(kTextPort); }),
              "Loop back test success.\n"
              "Tx  : 0 RTS : 0 DTR : 0 <>Rx  : 0 DSR : 0 RNG(RI) : 0 CTS : 0 CAR(DCD) : 0 \n"
              "Tx  : 0 RTS : 1 DTR : 0 <>Rx  : 0 DSR : 0 RNG(RI) : 1 CTS : 0 CAR(DCD) : 1 \nNG\n"
              "Tx  : 0 RTS : 0 DTR : 1 <>Rx  : 0 DSR : 1 RNG(RI) : 1 CTS : 0 CAR(DCD) : 1 \n"
              "Tx  : 0 RTS : 1 DTR : 1 <>Rx  : 0 DSR : 1 RNG(RI) : 1 CTS : 0 CAR(DCD) : 1 \nNG\n"
              "NG retval = 10\n");
    remove_tree("/sys/class");
    port = {line_plug};
    const std::string shown = printed_by([] { run_on(kLinePort); });
    EXPECT_EQ(std::count(shown.begin(), shown.end(), '\n'), 9);
    EXPECT_TRUE(shown.ends_with("RNG(RI) : 1 CTS : 1 CAR(DCD) : 1 \nOK\n")) << shown;
}

TEST_F(SerialLoopback, TheTextMustComeBack) {
    constexpr char kFailed[] = "Loop back test failed.\n";
    // What comes back and when; whether somebody is told.
    const std::tuple<const char*, int, int, int, const char*> rows[] = {
        {"loop back tesT\n", 0,    1, -1,   kFailed},
        {"loop back test",   0,    1, -1,   kFailed}, // not a line yet, so nothing to read
        {kText,              3300, 0, 0x0e, ""     }, // later than the time-out
    };
    for (const auto& [reply, delay, told, result, printed] : rows) {
        from_cmdline = told;
        port = {};
        const auto run = [back = reply, late = delay, expected = result] {
            EXPECT_EQ(run_on(kTextPort, back, late), expected);
        };
        EXPECT_EQ(printed_by(run), printed) << reply;
    }
}

TEST_F(SerialLoopback, TxMayBeAGpio) {
    const std::tuple<const char*, const char*, int, const char*, const char*> rows[] = {
        {nullptr,  nullptr, 0xf0, "",     "" },
        {"mpp\n",  "0\n",   0,    "gpio", "1"},
        {"gpio\n", nullptr, 0xf0, "gpio", "" },
    };
    for (const auto& [mode, force, mask, mode_after, force_after] : rows) {
        SetUp();
        if (mode != nullptr) write_file(kMode, mode);
        if (force != nullptr) write_file(kForce, force);
        port = {line_plug, 0, kTx};
        EXPECT_EQ(run_on(kLinePort), mask);
        EXPECT_EQ(read_file(kMode), mode_after);
        EXPECT_EQ(read_file(kForce), force_after);
    }
    write_file(kForce, "1");
    EXPECT_EQ(quorvel::set_forced_tx(2), -1);
    EXPECT_EQ(read_file(kForce), "1");
}

TEST_F(SerialLoopback, EachBoardHasItsPort) {
    make_link(kTextPort, "/dev/null");
    EXPECT_EQ(LibQuorvelBin_UpsTest(), -1);
    remove_tree(kTextPort);
    make_link(kLinePort, "/dev/null");
    write_file("/proc/bus/pci/devices", "0100\t1b4b9480\t0\n0200\t1b4b9125\t0\n");
    EXPECT_EQ(LibQuorvelBin_UpsTest(), -1);
}

}  // namespace
