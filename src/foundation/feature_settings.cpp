// The model's feature settings in /etc/nas_feature: typed getters, and changing one through the firmware's tools.
#include "foundation/feature_settings.h"

#include "foundation/appliance_files.h"
#include "foundation/failure.h"
#include "foundation/numbers.h"
#include "foundation/text.h"
#include "quorvel/foundation.h"

using namespace quorvel;

namespace {

constexpr size_t kValueSize = 512;

int number_of_value(const char* value) {
    if (starts_with(value, "on")) return 1;
    if (starts_with(value, "off")) return 0;
    return is_digit(value[0]) ? low_int(value) : -1;
}

int is_series(const char* quoted_name, int when_missing) {
    char value[kValueSize] = "";
    if (LibQuorvelBin_GetConfValInStringByKey(value, sizeof value, "SERIES_NAME") != 0) return when_missing;
    return starts_with(value, quoted_name) ? 1 : 0;
}

// The contract of LibQuorvelBin_GetConfValByKey, which alone shows the value as an answer.
int value_for_script(const char* key, bool is_answer) {
    char value[kValueSize] = "";
    bool present = LibQuorvelBin_GetConfValInStringByKey(value, sizeof value, key) == 0;
    int number = number_of_value(value);
    if (!present) {
        puts("wrong feature name");
        return -1;
    }
    const bool wanted[] = {is_answer, debug > 9};
    for (bool print : wanted) {
        if (print && number != -1) printf("%d\n", number);
        if (print && number == -1) puts(value);
    }
    return number != -1 ? number : 0;
}

}  // namespace

int quorvel::network_port_count() {
    return value_for_script(kNetworkPortCount, false);
}

int LibQuorvelBin_GetConfValInStringByKey(char* dst, size_t size, const char* key) {
    return get_StringbyKey(files::kFeature, key, dst, size) != nullptr ? 0 : -1;
}

int LibQuorvelBin_GetConfOnOffValInIntByKey(const char* key) {
    char value[kValueSize] = "";
    if (LibQuorvelBin_GetConfValInStringByKey(value, sizeof value, key) != 0) return -1;
    int number = number_of_value(value);
    return number != -1 ? number : fail(EBADMSG);
}

int LibQuorvelBin_GetConfValByKey(const char* key) {
    return value_for_script(key, from_cmdline != 0);
}

int LibQuorvelBin_GetMaxUsbdiskNum(void) {
    return LibQuorvelBin_GetConfOnOffValInIntByKey("MAX_USBDISK_NUM");
}
int LibQuorvelBin_GetMaxDiskNum(void) {
    return LibQuorvelBin_GetConfOnOffValInIntByKey("MAX_DISK_NUM");
}
int LibQuorvelBin_GetMaxArrayNum(void) {
    return LibQuorvelBin_GetConfOnOffValInIntByKey("MAX_ARRAY_NUM");
}
int LibQuorvelBin_IsSupport2StepInspection(void) {
    return LibQuorvelBin_GetConfOnOffValInIntByKey("SUPPORT_2STEP_INSPECTION");
}
int LibQuorvelBin_IsSupportSlidePowerSwitch(void) {
    return LibQuorvelBin_GetConfOnOffValInIntByKey("SUPPORT_SLIDE_POWER_SWITCH");
}
int LibQuorvelBin_IsSupportPrinterServer(void) {
    return LibQuorvelBin_GetConfOnOffValInIntByKey("SUPPORT_PRINTER_SERVER");
}
int LibQuorvelBin_IsSupportDhcps(void) {
    return LibQuorvelBin_GetConfOnOffValInIntByKey("SUPPORT_DHCPS");
}
int LibQuorvelBin_IsSupportRaid(void) {
    return LibQuorvelBin_GetConfOnOffValInIntByKey("SUPPORT_RAID");
}

int LibQuorvelBin_IsOstrand(void) {
    return is_series("\"Ostrand\"", 1);
}
int LibQuorvelBin_IsVeldmark(void) {
    return is_series("\"Veldmark\"", 0);
}
