#include "quorvel/foundation.h"
#include "quorvel/platform.h"
#include "support/appliance.h"

namespace {

class FirmwareInfo : public ApplianceTest {};

TEST_F(FirmwareInfo, TakesEachFieldFromTheDriverOrElseFromTheRelease) {
    write_file("/proc/quorvel/firmware", "PRODUCT_NAME=QV-4\nVERSION=1.20\n");
    write_file("/etc/quorvel-release", "VERSION=9\nSUB_VERSION=0.1\nBUILD_DATE=\"" + std::string(40, 'd') + "\"\n");
    firm_info info;
    memset(&info, 'x', sizeof info);
    from_cmdline = 1;
    EXPECT_EQ(
        printed_by([&] { EXPECT_EQ(Firminfo_GetFirmInfo(&info), 0); }),
        "PRODUCT_NAME=QV-4\nVERSION=1.20\nSUB_VERSION=0.1\nPRODUCT_ID=\nBUILD_DATE=\"" + std::string(30, 'd') + "\n");
    remove_tree("/etc/quorvel-release");
    write_file("/proc/quorvel/firmware", "OTHER=1\n");
    EXPECT_EQ(Firminfo_GetFirmInfo(&info), -1);
    EXPECT_STREQ(info.version, "");
}

}  // namespace
