/** @file
 * Platform identity: which hardware platform and product series this is, and the running kernel's version. Nothing is
 * cached: every call looks again.
 *
 * A source that is missing or unreadable (no sysfs directory, no PCI list, no feature file) counts as a test that
 * fails; a null pointer gives the failure result. */
#ifndef QUORVEL_PLATFORM_H
#define QUORVEL_PLATFORM_H

#include <stddef.h>
#include <stdint.h>

#include "api.h"

QUORVEL_BEGIN_DECLS

/* ---- Hardware platform ---- */

/** Platform numbers. They are tested in this order; one that is added gets a number of its own above 4. */
enum {
    PLATFORM_BOREL = 0,         /**< /sys/class/borel exists */
    PLATFORM_NISK_12BAY = 1,    /**< a pair of Marvell controllers in the PCI list */
    PLATFORM_PELLMAR_12BAY = 2, /**< 11ab6440 in the PCI list */
    PLATFORM_ARMADA370 = 3,     /**< feature PRODUCT_SERIES begins with "KT720" in double quotes */
    PLATFORM_UNKNOWN = 4        /**< none of these */
};

/** One row of platform_num2str. */
struct platform_name {
    int32_t number;
    const char* name; /**< null in the last row */
};

/** Platform names, ended by the row (4, null). Both 12-bay platforms are "nisk": who chooses by name treats them alike.
 * Its size is for ever: a platform that is added later has a name, but no row here. */
extern QUORVEL_API const struct platform_name platform_num2str[5];

/** 1 when /sys/class/borel exists, else 0. */
QUORVEL_API int LibQuorvelBin_IsBorelPlatform(void);

/** 1 when some line of /proc/bus/pci/devices, read in pieces of at most 1023 characters, contains the text id, else 0.
 * @param id  vendor and device as eight lower-case hexadecimal digits ("11ab7042") */
QUORVEL_API int LibQuorvelbin_HasSomeExtentionChip(const char* id);

/** 1 when the PCI list names the SATA extension chip 11ab7042, else 0. */
QUORVEL_API int LibQuorvelbin_Has7042ExtentionChip(void);

/** 1 when the PCI list names 1b4b9480 and 1b4b9125, 1b4b9485 and 1b4b9125, or 1b4b9485 and 1b4b9120, else 0. Reads the
 * list once. */
QUORVEL_API int LibQuorvelBin_IsNiskPlatform12Bay(void);

/** 1 when the PCI list names 11ab6440, else 0. */
QUORVEL_API int LibQuorvelBin_IsPellmarPlatform12Bay(void);

/** 1 when feature PRODUCT_SERIES of /etc/nas_feature begins with "KT720" in double quotes, else 0. */
QUORVEL_API int LibQuorvelBin_IsArmada370(void);

/** The platform number: the first whose test holds, or 4. */
QUORVEL_API int LibQuorvelBin_GetPlatform(void);

/** The platform's name, as in platform_num2str.
 * @param buf   cleared over all its size first, then holds the name, cut to size - 1 characters
 * @param size  bytes of buf; with 0 it stays as it is
 * @return buf; null (buf untouched, nothing printed, ENODEV) on an unknown platform. Prints buf as a line when
 * from_cmdline is 1. */
QUORVEL_API char* LibQuorvelBin_GetPlatformStr(char* buf, size_t size);

/** The product series: feature SERIES_NAME without its double quotes, up to its first line feed; no more than 31
 * characters of the stored value, quotes included, are looked at. Prints nothing.
 * @param size  bytes of dst; the name must be shorter
 * @return dst, or null with dst untouched when the feature is missing, holds no text between its quotes, or does not
 * fit. */
QUORVEL_API char* LibQuorvelBin_GetSeriesName(char* dst, size_t size);

/* ---- Kernel version ---- */

/** A kernel release a.b.c.d-suffix. */
struct os_version {
    uint64_t version; /**< a << 48 | b << 32 | c << 16 | d; numbers above 65535 spill into the next field up */
    char suffix[128]; /**< the text behind the first "-", cut to 127 characters; empty when there is none */
};

/** Takes a release text apart: up to four decimal numbers separated by ".", then the suffix behind the first "-", up to
 * the first line feed. Missing numbers are 0; runs of "." in front of the second and the third number count as one; the
 * fourth number stands right behind the third ".", and what follows its digits is ignored ("2.6.31." is 2.6.31.0).
 * Leading "-" are skipped. Nothing is clamped: of the first three numbers all 64 bits count, the fourth is read as 32
 * bits with a sign ("2.6.31.4294967295" sets all upper bits).
 * @param version  cleared first; after a failure it holds the numbers read so far
 * @return 0; -1 for a text of more than 255 characters, an empty one or one of dashes only, or a first or second "."
 * with nothing but dots behind it. */
QUORVEL_API int LibQuorvelBin_GetOsVerFromString(struct os_version* version, const char* release);

/** The running kernel's release: the first line of /proc/sys/kernel/osrelease, of which at most 127 characters count.
 * @return 0 when a line was read, whether or not it could be taken apart; -1 with version untouched when the file
 * cannot be opened or is empty. */
QUORVEL_API int LibQuorvelBin_GetOsVer(struct os_version* version);

/** Prints "A.B.C.D" or "A.B.C.D-SUFFIX" as a line, whatever from_cmdline is; nothing for null. */
QUORVEL_API void LibQuorvelBin_PrintOsVer(const struct os_version* version);

/** 1 when the running kernel's version is greater than a release's, else 0. Suffixes do not count; an unreadable
 * running release counts as 0.0.0.0, and of a release that cannot be taken apart the numbers read so far count. 0 for
 * null. */
QUORVEL_API int LibQuorvelBin_IsOsNewerThan(const char* release);

/** 1 when the running kernel's version is greater than or equal to a release's, else 0; as LibQuorvelBin_IsOsNewerThan
 * otherwise. */
QUORVEL_API int LibQuorvelBin_IsOsNewerEqual(const char* release);

/* ---- Firmware information ---- */

/** What firmware this is. Every field is a terminated text, cut to its room and empty when unknown. */
struct firm_info {
    char product_name[64]; /**< key PRODUCT_NAME */
    char version[32];      /**< key VERSION */
    char sub_version[32];  /**< key SUB_VERSION */
    char product_id[32];   /**< key PRODUCT_ID */
    char build_date[32];   /**< key BUILD_DATE */
};

/** The firmware information record. Each field is the value of its key, as get_StringbyKey gives it, in the appliance
 * driver's file /proc/quorvel/firmware or, where that lacks it, in the firmware's release file /etc/quorvel-release.
 * Files, keys and record are this library's own choice. Prints the record as five lines KEY=value, in the order of the
 * fields, when from_cmdline is 1.
 * @param info  cleared first; holds what was found
 * @return 0, or -1 when neither file has any of the keys or info is null. */
QUORVEL_API int Firminfo_GetFirmInfo(struct firm_info* info);

QUORVEL_END_DECLS

#endif
