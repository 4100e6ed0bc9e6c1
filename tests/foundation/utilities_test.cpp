// User names, and days of the calendar.
#include <sys/mount.h>

#include <ctime>

#include "quorvel/foundation.h"
#include "support/appliance.h"

namespace {

class Utilities : public ApplianceTest {};

time_t scripted_now = 0;

}  // namespace

// The clock, as far as time() tells it.
extern "C" time_t time(time_t* out) noexcept {
    if (out != nullptr) *out = scripted_now;
    return scripted_now;
}

namespace {

TEST_F(Utilities, DayAfter) {
    for (const auto& [day, expected] : table<2>("foundation/expected/days")) {
        char next[11] = "none";
        EXPECT_EQ(LibQuorvelBin_DayAfter(day.c_str(), next, sizeof next), expected == "none" ? -1 : 0);
        EXPECT_EQ(next, expected) << day;
    }
}

TEST_F(Utilities, TomorrowIsADateNotASpanOfHours) {
    from_cmdline = 1;
    for (const auto& [zone, now, printed] : table<3>("foundation/expected/tomorrows")) {
        setenv("TZ", zone.c_str(), 1);
        scripted_now = std::stol(now);
        char day[11];
        EXPECT_EQ(printed_by([&] { EXPECT_EQ(LibQuorvelBin_Tomorrow(day, sizeof day), 0); }), printed);
    }
    unsetenv("TZ");
}

TEST_F(Utilities, UserNamesComeFromThePasswordFile) {
    write_file("/tmp/passwd", "root:x:0:0::/root:/bin/sh\n#off:x:7:7::/:\nlong" + std::string(4092, '-') +
                                  "rest:x:7:8::/:\nx:x:1 0:1::/:\nadmin:x:1000:100:A:/mnt:/bin/sh\n"
                                  "again:x:1000:100::/:\nnobody:x:4294967294:0::/:");
    // The root shows the host's file, or a copy of it.
    if (mount("/tmp/passwd", "/etc/passwd", nullptr, MS_BIND, nullptr) != 0)
        write_file("/etc/passwd", read_file("/tmp/passwd"));
    const auto name_of = [](uint32_t uid, size_t size) {
        char name[16] = "none";
        const int result = LibQuorvelBin_GetUsernameByUID(uid, name, size);
        return std::to_string(result) + name;
    };
    EXPECT_EQ(name_of(0, 5), "0root");
    EXPECT_EQ(name_of(0, 4), "-1none");
    EXPECT_EQ(name_of(7, 9), "-1none");  // a comment, and the rest of an overlong line
    EXPECT_EQ(name_of(1, 9), "-1none");
    EXPECT_EQ(name_of(4294967294U, 9), "0nobody");
    from_cmdline = 1;
    EXPECT_EQ(printed_by([&] { EXPECT_EQ(name_of(1000, 9), "0admin"); }), "admin\n");
    umount2("/etc/passwd", MNT_DETACH);
}

}  // namespace
