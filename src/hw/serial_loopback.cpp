// The test of the UPS port with a loopback plug in place of the cable.
#include <errno.h>
#include <fcntl.h>
#include <poll.h>
#include <stdio.h>
#include <string.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <span>

#include "foundation/appliance_files.h"
#include "foundation/failure.h"
#include "foundation/files.h"
#include "hw/forced_tx.h"
#include "hw/modem_lines.h"
#include "platform/platforms.h"
#include "quorvel/foundation.h"
#include "quorvel/hw.h"

using namespace quorvel;

namespace {

constexpr int kDtr = TIOCM_DTR;
constexpr int kRts = TIOCM_RTS;
constexpr int kTx = TIOCM_ST;
constexpr int kRx = TIOCM_SR;
constexpr int kCts = TIOCM_CTS;
constexpr int kCar = TIOCM_CAR;
constexpr int kRng = TIOCM_RNG;
constexpr int kDsr = TIOCM_DSR;

// The lines driven, and those which the plug then makes answer.
struct Pattern {
    int driven;
    int answering;
};

// clang-format off
constexpr Pattern kTextPortPatterns[] = {
    {0,           0                        },
    {kRts,        kCts | kCar | kRng       },
    {kDtr,               kCar | kRng | kDsr},
    {kDtr | kRts, kCts | kCar | kRng | kDsr},
};

constexpr Pattern kLinePortPatterns[] = {
    {0,                 0                              },
    {kDtr,              kRx                            },
    {kRts,                                  kRng       },
    {kDtr | kRts,       kRx | kCts |        kRng       },
    {kTx,                            kCar              },
    {kDtr | kTx,        kRx |        kCar |        kDsr},
    {kRts | kTx,                     kCar | kRng       },
    {kDtr | kRts | kTx, kRx | kCts | kCar | kRng | kDsr},
};
// clang-format on

struct PortTest {
    std::span<const Pattern> patterns;
    int reads;          // of the lines after each step, until they match
    bool carries_text;  // flush what came before each step, and name each failed one
    bool may_force_tx;  // the Tx line may be a GPIO
};

constexpr PortTest kTextPortTest = {kTextPortPatterns, 3, true, false};
constexpr PortTest kLinePortTest = {kLinePortPatterns, 1, false, true};

const PortTest& test_of(const Platform* platform) {
    const bool carries_text = platform != nullptr && platform->loopback_test == LoopbackTest::kText;
    return carries_text ? kTextPortTest : kLinePortTest;
}

const char* port_of(const Platform* platform) {
    return platform != nullptr ? platform->ups_port : files::kLineLoopbackPort;
}

void report(const char* text) {
    if (from_cmdline != 0) puts(text);
}

// Results of the ioctls are not looked at: a line that cannot be driven or read shows as a failed step.
void drive(int port, int lines, const PortTest& test) {
    (void)ioctl(port, TIOCMSET, &lines);
    if (test.may_force_tx && has_forced_tx()) drive_forced_tx((lines & kTx) != 0);
}

[[nodiscard]] int read_once(int port, const PortTest& test) {
    int lines = 0;
    (void)ioctl(port, TIOCMGET, &lines);
    if (test.may_force_tx && is_forced_tx_high()) lines |= kTx;
    return lines;
}

[[nodiscard]] int read_until(int port, int wanted, const PortTest& test) {
    constexpr useconds_t kPause = 100;
    int lines = 0;
    for (int i = 0; i < test.reads; i++) {
        lines = read_once(port, test);
        if (lines == wanted) break;
        if (test.reads > 1) usleep(kPause);
    }
    return lines;
}

bool passes(int port, const Pattern& pattern, const PortTest& test) {
    const int wanted = pattern.driven | pattern.answering;
    if (test.carries_text) (void)ioctl(port, TCFLSH, TCIOFLUSH);
    drive(port, pattern.driven, test);
    const int lines = read_until(port, wanted, test);
    if (from_cmdline != 0) print_modem_lines(lines);
    if (lines != wanted && test.carries_text) report("NG");
    return lines == wanted;
}

// A bit for every step that failed.
int failed_steps(int port, const PortTest& test) {
    int mask = 0;
    for (size_t i = 0; i < test.patterns.size(); i++) {
        if (!passes(port, test.patterns[i], test)) mask |= 1 << i;
    }
    return mask;
}

// 9600 baud, 8 data bits, no modem control, whole lines with echo. Control characters stay off.
void set_up_text_port(int port) {
    struct termios settings = {};
    settings.c_iflag = IXON | ICRNL;
    settings.c_oflag = OPOST | ONLCR;
    settings.c_cflag = CS8 | CREAD | HUPCL | CLOCAL;
    settings.c_lflag = ISIG | ICANON | ECHO | ECHOE | ECHOK | ECHOCTL | ECHOKE | IEXTEN;
    (void)cfsetspeed(&settings, B9600);
    (void)tcsetattr(port, TCSANOW, &settings);
}

// A line of text, for poll(2).
bool has_input_within(int port, int milliseconds) {
    struct pollfd input = {port, POLLIN, 0};
    int ready = 0;
    do {
        ready = poll(&input, 1, milliseconds);
    } while (ready < 0 && errno == EINTR);
    return ready != 0;
}

bool returns_text(int port) {
    constexpr char kText[] = "loop back test\n";
    constexpr size_t kLength = sizeof kText - 1;
    constexpr int kTimeoutMs = 3000, kForEver = -1;
    (void)write_fully(port, kText, kLength);  // a port that takes nothing returns nothing
    // Without the front end nobody is told of a time-out, and the test waits for the text as long as it takes.
    if (!has_input_within(port, from_cmdline != 0 ? kTimeoutMs : kForEver)) return false;
    char answer[kLength];
    const ssize_t count = read(port, answer, sizeof answer);
    return count == static_cast<ssize_t>(kLength) && memcmp(answer, kText, kLength) == 0;
}

int test_text_port(const char* path, const PortTest& test) {
    // Never closed: closing would drop the lines that the plug is being watched on.
    const int port = open_for_update(path, O_NONBLOCK).release();
    if (port < 0) return -1;
    set_up_text_port(port);
    const bool returned = returns_text(port);
    report(returned ? "Loop back test success." : "Loop back test failed.");
    if (!returned) return fail(EIO);
    const int mask = failed_steps(port, test);
    if (mask == 0) report("OK");
    if (mask != 0 && from_cmdline != 0) printf("NG retval = %d\n", mask);
    return mask;
}

int test_line_port(const char* path, const PortTest& test) {
    Descriptor port = open_for_update(path, O_NONBLOCK);
    if (!port) return -1;
    const int mask = failed_steps(port.number, test);
    report(mask == 0 ? "OK" : "NG");
    return mask;
}

}  // namespace

int LibQuorvelBin_UpsTest(void) {
    const Platform* platform = find_platform();
    const PortTest& test = test_of(platform);
    return test.carries_text ? test_text_port(port_of(platform), test) : test_line_port(port_of(platform), test);
}
