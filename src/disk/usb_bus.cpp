// On which USB bus a disk hangs, from the kernel's list of USB devices:
//
//     T:  Bus=01 Lev=01 Prnt=01 Port=00 Cnt=01 Dev#=  2 Spd=480  MxCh= 0     begins a device
//     S:  SerialNumber=LABSTICK1                                             one of its texts
#include <string.h>

#include <optional>

#include "foundation/appliance_files.h"
#include "foundation/failure.h"
#include "foundation/files.h"
#include "foundation/line_reader.h"
#include "foundation/numbers.h"
#include "foundation/text.h"
#include "foundation/trace.h"
#include "quorvel/naming.h"

using namespace quorvel;

namespace {

constexpr char kFunction[] = "get_bus_number_from_udevid";
constexpr size_t kPiece = 1023;
constexpr size_t kLongestSerial = 31;
constexpr int kNoBus = -1;

// The first digit of the two is skipped and the second must be 1 to 9, so bus 12 reads as 2 and bus 10 as none.
int bus_of_device(const char* line) {
    const char* field = strstr(line, "Bus");
    if (field == nullptr) {
        trace(kTrace, "[%s]>p_bus NULL\n", kFunction);
        return kNoBus;
    }
    const char* digits = field + strlen("Bus");
    if (digits[0] != '=' || digits[1] == '\0') return kNoBus;
    digits += 2;
    trace(kTrace, "[%s]>p_bus = %s\n", kFunction, digits);
    if (digits[0] == '0') trace(kTrace, "[%s]>p_bus = 0 contiune\n", kFunction);
    if (digits[0] == ' ') trace(kTrace, "[%s]>p_bus = space break\n", kFunction);
    int bus = is_digit(digits[0]) && digits[0] != '0' ? leading_int(digits) : kNoBus;
    trace(kTrace, "[%s]>bus = [%d] \n", kFunction, bus);
    return bus;
}

using Serial = Text<kLongestSerial + 1>;

// The serial number of a text line, cut to its room; none when it is another text.
std::optional<Serial> serial_of(const char* line) {
    static constexpr char kKey[] = "SerialNumber=";
    const char* found = strstr(line, kKey);
    if (found == nullptr) {
        trace(kTrace, "[%s]>p_seri NULL\n", kFunction);
        return {};
    }
    found += strlen(kKey);
    size_t length = strcspn(found, " \n");
    if (found[length] == ' ') trace(kTrace, "[%s]>p_seri = space break\n", kFunction);
    if (found[length] == '\n') trace(kTrace, "[%s]>p_seri = return break\n", kFunction);
    Serial serial;
    serial.add({found, length});
    trace(kTrace, "[%s]>serial = [%s] \n", kFunction, serial.c_str());
    return serial;
}

bool is_serial_in(const char* identity, const char* serial) {
    trace(kTrace, "[%s]>udev_id[%s] = serial[%s] \n", kFunction, identity, serial);
    bool in = serial[0] != '\0' && contains(identity, serial);
    trace(kTrace, in ? "[%s]>serial OK break\n" : "[%s]>serial NG. initialize bus numberk\n", kFunction);
    return in;
}

}  // namespace

int get_bus_number_from_udevid(const char* udev_id) {
    if (udev_id == nullptr) return fail(EINVAL);
    LineFile list(open_for_reading(files::kUsbDevices), kPiece);
    if (!list) return kNoBus;
    int bus = kNoBus;
    for (const char* line : list) {
        trace(kTrace, "[%s]>line [%s][%d] \n", kFunction, line, bus);
        if (starts_with(line, "T:")) bus = bus_of_device(line);
        const auto serial = starts_with(line, "S:") ? serial_of(line) : std::nullopt;
        if (!serial) continue;
        if (is_serial_in(udev_id, serial->c_str())) break;
        bus = kNoBus;
    }
    trace(kTrace, "[%s]>bus [%d]\n", kFunction, bus);
    return bus != kNoBus ? bus : fail(ENODEV);
}
