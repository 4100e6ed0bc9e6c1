/** @file
 * Disk naming: the slot tables that tie each logical disk to a place in the sysfs device tree, kernel device
 * names to logical disk names and back, disk presence and power, LVM membership, and the spool directory.
 *
 * Logical names are "disk" and the slot number, "usbdisk" and the port number, "bootdisk" and a number, or a
 * configured word followed by the number. Nothing is cached: every call reads the tables, the feature settings and
 * sysfs again.
 *
 * A null pointer where a text or a buffer is expected gives the function's failure result. */
#ifndef QUORVEL_NAMING_H
#define QUORVEL_NAMING_H

#include <stddef.h>
#include <stdint.h>

#include "api.h"

QUORVEL_BEGIN_DECLS

/* ---- Slot tables ---- */

/** What a row of a slot table describes. */
enum {
    DISK_PATH_INTERNAL = 0, /**< internal SATA or SCSI slot */
    DISK_PATH_USB = 1,      /**< USB port */
    DISK_PATH_BOOT = 2,     /**< boot disk */
    DISK_PATH_END = 3       /**< the end of the table */
};

/** One row of a slot table ("disk set"); rows are tried from the top, the first that matches wins. In a set read from
 * a file the texts are on the heap and owned by the set; in a built-in set they are constant data that nobody may
 * write. The END row has no texts, ports -1, and slot -1 in a built-in set or 0 in one read from a file. */
struct disk_path {
    int32_t type;      /**< DISK_PATH_... */
    int32_t slot;      /**< N of diskN, usbdiskN or bootdiskN, from 1 */
    char* path;        /**< part of the sysfs device path that identifies the slot; null matches nothing */
    char* scsi_id;     /**< host:channel:target:lun of an internal slot, or null */
    int32_t usb_port1; /**< port on the root hub (the P of device name B-P), or -1 */
    int32_t usb_port2; /**< port on a hub behind it (the Q of device name B-P.Q), or -1 */
    char* diskname;    /**< word in place of "disk" or "usbdisk", or null */
};

/** The built-in set of platform 0. Ports 4 and 2 of its PCI USB controller are both usbdisk3, 3 and 1 both usbdisk4:
 * two wirings of the same front ports. */
extern QUORVEL_API const struct disk_path borel_disk_set[11];
/** The built-in set of platform 1. Slots 1 to 8 are there in the SAS and in the plain SCSI form. */
extern QUORVEL_API const struct disk_path nisk_disk_set[28];
/** The built-in set of platform 2: full paths, no SCSI addresses, no USB ports. */
extern QUORVEL_API const struct disk_path pellmar_12bay_disk_set[16];

/** The disk set described by /etc/diskpath.conf. Lines (read in pieces of at most 511 characters), leading blanks and
 * tabs skipped, comments beginning with ";" or "#":
 *
 *     HDD_DISKNAME=WORD                        word of the HDD_INTERNAL lines below it
 *     USB_DISKNAME=WORD                        word of the HDD_USB lines below it
 *     HDD_INTERNAL=SLOT, PATH, SCSI_ID
 *     HDD_USB=SLOT, PATH, PORT1, PORT2         PORT2 is -1 without a hub
 *     HDD_BOOT=SLOT, PATH
 *
 * Words are cut to 79 characters; a field of more than 127 characters counts as missing. Slots and PORT1 must be at
 * least 1, paths and addresses must not be empty.
 * @return a set to be released with disk_path_free, or null, without a message, when the file cannot be opened,
 *         holds no row (ENODATA) or holds a bad one (EBADMSG), or memory is short. */
QUORVEL_API struct disk_path* get_DiskOrderConfig(void);

/** The slots of a PCI extension card, from /etc/extslot.conf, whose lines are read as those of /etc/diskpath.conf:
 *
 *     [VVVV:DDDD]                              the rows below belong to this vendor and device
 *     EXTSLOT1_SATADISKNAME=WORD               word of the SATA and SCSI rows of extslot1 below it
 *     EXTSLOT1_USBDISKNAME=WORD                word of the USB rows of extslot1 below it
 *     extslot1=SATA, SLOT, PATH, SCSI_ID       or SCSI
 *     extslot1=USB, SLOT, PATH, PORT1, PORT2
 *     dump_config=yes                          print the result on standard output
 *
 * Extension slots are 1 to 4. The card is the last of 1912:0014, 1912:0015 and 1033:0194 in /proc/bus/pci/devices,
 * whose pieces of at most 59 characters each count as a line. With a card, rows below another card's section are
 * skipped; without one all rows count. A row of another kind stays as an internal one with slot and path, and no
 * address or word.
 * @return a set to be released with disk_path_free, or null when the file cannot be opened, holds no row or holds a
 *         bad one (after "dump_config=yes" with the line "/etc/extslot.conf parse error LINE=KEY=VALUE"), or memory
 *         is short. */
QUORVEL_API struct disk_path* get_ExtSlotConfig(void);

/** The disk set in force: the one of /etc/diskpath.conf, or else the platform's built-in one.
 * @return the set, which the caller hands to disk_path_free; or null (EOPNOTSUPP) on a platform without one. */
QUORVEL_API const struct disk_path* LibQuorvelBin_GetPlatformDiskSet(void);

/** Releases a set read from a file, with its texts; does nothing for null and for a built-in set: always pass the
 * result of the functions above. */
QUORVEL_API void disk_path_free(const struct disk_path* set);

/** Prints a set on standard output in the syntax of /etc/diskpath.conf: the last word of its internal rows and the
 * last of its USB rows, ";", then internal and USB rows. Boot rows are not printed; a missing path or address is an
 * empty field. Nothing for null. */
QUORVEL_API void disk_path_dump(const struct disk_path* set);

/** Dumps the set in force, if there is one. A set read from /etc/diskpath.conf stays allocated.
 * @return 0. */
QUORVEL_API int LibQuorvelBin_DumpDiskPathConfig(void);

/* ---- Names ----
 *
 * Names are taken with or without "/dev/": what stands behind the first "dev/" counts, up to the first line feed.
 * Names of fewer than 2 characters are refused (EINVAL); one with a "/" in it is no disk's (ENODEV). A name
 * conversion answers with "/dev/" when its input had "dev/". When from_cmdline is 1 the answer is also printed, as a
 * line. All facts come from the links below /sys/block and /sys/bus/scsi/devices. Without a disk set the rules of
 * features INTERNAL_SCSI_TYPE and USB_TREE_TYPE hold, and for armada370 boards /var/tmp/devlink (a regular file, no
 * link, of root or the caller) and /etc/tevra/diskinfo.
 */

/** The logical name of a whole disk: "disk3" for "sda", "/dev/usbdisk1" for "/dev/sdb".
 * @param dst   receives the name and its terminator; at least 32 bytes
 * @param size  bytes of dst; only looked at for a name of more than 31 characters, as configured words can give
 * @return 0, or -1 with dst untouched when there is no such disk (ENODEV; a partition is none), no row or rule names
 *         it (ENXIO) or a longer name does not fit. Never returns when a USB row's path occurs in a USB disk's path
 *         and no "usb" and bus number follows it (every USB row of pellmar_12bay_disk_set): the row is then looked
 *         at again and again, with a short sleep in between. */
QUORVEL_API int LibQuorvelBin_GetDisknameFromDevname(const char* devname, char* dst, size_t size);

/** The kernel name of a logical disk: "sdc" for "disk3", "/dev/sdc" for "/dev/disk3". Boot disks are known only
 * through a disk set. Without one the first entry of a USB port in /sys/bus/scsi/devices decides: on kernels from
 * 2.6.31.8 on and for ports 1 to 5 it must be the host (hostH), otherwise the disk itself (H:0:0:0). Linux 6.1 lists
 * some targets and disks before their hosts, and such a disk is not found. A disk of another kind than sd is found
 * only as an NVMe disk (nvme0n1), by a row whose path contains "nvme".
 * @param dst   receives the name and its terminator, cut to size - 1 characters: a cut name may be another disk's,
 *              so give room for 256. Without a disk set a name behind "/dev/" is cut to 31 characters as well.
 * @return 0; -1 with dst untouched when the disk is unknown (ENXIO; with a disk set EINVAL for a name without "disk")
 *         or absent (ENODEV), the size is 0, or, with a disk set, some /sys/block link of such an entry met before the
 *         answer cannot be read. */
QUORVEL_API int LibQuorvelBin_GetDevnameFromDiskname(const char* diskname, char* dst, size_t size);

/** The SCSI address of an internal slot as the disk set in force states it: "0:0:2:0". The slots of an extension card
 * have none of their own: one whose number the set has gets that slot's.
 * @param name  a logical name, or a kernel name (any text containing "sd"); when a kernel name has no logical name,
 *              from_cmdline is left at 0; it is 0 for all threads during the conversion
 * @param dst   receives the address and its terminator, cut to size - 1 characters
 * @return 0; -1 with dst untouched for USB and boot disks, an unknown slot, a slot without an address (ENXIO),
 *         without a disk set (EOPNOTSUPP), or for a size of 0. A set read from /etc/diskpath.conf stays allocated. */
QUORVEL_API int LibQuorvelBin_GetScsiIDFromDiskname(const char* name, char* dst, size_t size);

/** The USB bus of the attached device whose serial number occurs in a disk's identity string, from
 * /proc/bus/usb/devices. Buses 1 to 9 are told; of a larger number the last digit counts, and 10, 20 and so on read
 * as -1. An empty serial number occurs nowhere.
 * @return the bus, or -1 (ENODEV). Traces every line above debug level 9. */
QUORVEL_API int get_bus_number_from_udevid(const char* udev_id);

/* ---- All disks and bays ---- */

/** A disk of the machine, or an empty bay. Texts are empty where there is none. */
struct disk_entry {
    char device[32];  /**< kernel name ("sda"); empty for a bay without a disk */
    char name[96];    /**< logical name ("disk3"); empty for a disk without one */
    char address[48]; /**< SCSI address of its row in the slot table, or else in its link */
    int32_t kind;     /**< DISK_PATH_INTERNAL, _USB or _BOOT; DISK_PATH_END for a disk without a name */
    int32_t slot;     /**< number of its bay, port or boot disk, from 1; 0 without a name */
};

/** Shows all disks below /sys/block (sd..., nvmeCnN) and all bays: internal ones by slot, then USB disks, boot disks
 * and disks without a name. Bays are the internal slots of the disk set in force and of /etc/extslot.conf (its rows
 * without path or slot are none), or, without a set, as many as feature MAX_DISK_NUM says, 99 at most. Names are
 * those of LibQuorvelBin_GetDisknameFromDevname, from one reading of tables and links; a disk about which a row
 * never lets that function decide has none. Prints nothing, whatever from_cmdline and dump_config say; debug traces
 * print.
 * @param visit    called for each; any result but 0 ends the walk
 * @param context  handed to visit
 * @return how many entries were shown; or -1, with none shown, when /sys/block cannot be opened or memory is short. */
QUORVEL_API int LibQuorvelBin_WalkDisks(int (*visit)(const struct disk_entry* disk, void* context), void* context);

/* ---- Presence, power, LVM and spool ----
 *
 * None of these print their answer. /tmp/pvlist and /tmp/lvlist lie where every account can write: only regular
 * files that root or the caller owns are read, and no links.
 */

/** 1 when a disk is in a slot, else 0: the first line of /proc/quorvel/gpio/hotplug/sataN is "plugged", or, without
 * that file, the node /dev/diskN+1 exists.
 * @param slot_index  from 0 */
QUORVEL_API int LibQuorvelBin_IsConnectedDisk(int slot_index);

/** 1 when a slot has power, else 0: the first line of "/usr/local/sbin/frontctl -a hdd_set_power |grep hddN+1" has
 * nothing but "on" behind its first "=".
 * @param slot_index  from 0 */
QUORVEL_API int LibQuorvelBin_IsPowerSupplyedDisk(int slot_index);

/** The kernel name of the disk behind a SCSI host: the first "block:NAME" entry of
 * /sys/class/scsi_host/hostH/device/targetH:0:0/H:0:0:0/.
 * @param dst   receives the name and its terminator; at least 32 bytes
 * @param size  bytes of dst; only looked at for a name of more than 31 characters, which is not written when it does
 *              not fit
 * @return 0, with dst untouched when there is no such entry; -1 and the line "opendir failed" when the directory
 *         cannot be opened. Traces the entries above debug level 101. */
QUORVEL_API int LibQuorvelBin_GetScsinameFromDisknumber(int host, char* dst, size_t size);

/** 1 when a line of /tmp/pvlist (in pieces of at most 126 characters) contains the device's name and its third field,
 * behind two "<>", is not empty; else 0. Lines with fewer separators are passed over. */
QUORVEL_API int LibQuorvelBin_IsLvmVolume(const char* devname);

/** 1 when the third field (runs of "<" and ">" separate) of a line of /tmp/pvlist, in pieces of at most 1023
 * characters, contains the name of a disk or array, else 0. Traces above debug level 9.
 */
QUORVEL_API int IsLVMDisk(const char* name);

/** The first usable disk or array of /etc/tevra/diskinfo, whose lines are read in pieces of at most 30 characters:
 * "disk..." with a value beginning "normal" or "array..." with one beginning "raid".
 * @param dst  16 bytes or more, cleared by the caller: at most 15 bytes of the name are written, without a
 *             terminator; none when all usable disks belong to LVM
 * @return 1 when there is one, else 0; a missing file prints "[/etc/tevra/diskinfo] is not such file" without a line
 *         end. Traces above debug level 9. */
QUORVEL_API int LibQuorvelBin_GetAvailableDiskInfo(char* dst);

/** The spool directory: /mnt/ENTRY/spool of the usable disk (ENTRY being its name or the beginning of it), or else,
 * when feature SUPPORT_LVM is 1, the first existing one of MOUNT_LVM_BASE, a volume of /tmp/lvlist (in pieces of at
 * most 1023 characters; one with a ".." in its path is none) without its "/dev", and "/spool".
 * @param dst   cleared over all its size and filled on success
 * @param size  bytes of dst; longer directories are passed over
 * @return dst, or null with dst untouched (ENODATA: no usable disk; ENOENT: no directory). "Can't open dir : /mnt"
 *         on standard error without /mnt. Traces above debug level 9. */
QUORVEL_API char* LibQuorvelBin_GetSpoolDir(char* dst, size_t size);

QUORVEL_END_DECLS

#endif
