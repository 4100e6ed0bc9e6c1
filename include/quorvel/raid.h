/** @file
 * RAID inventory: the appliance's md arrays and internal disks, gathered into lists in memory; the grouping of disks by
 * the array they belong to; and the md helper command with its reports and its front-panel line.
 *
 * Facts come from the feature settings (/etc/nas_feature), the disk status file (/etc/tevra/diskinfo), the md driver's
 * array-information request, the kernel's mount table and statfs, the disks' signature records, and the output of
 * /sbin/mdadm. Of superblocks only metadata 0.90 tells the array's md number and how many members were there: a disk
 * with metadata 1.x forms a group of its own, named by its device UUID, and is tied to no array.
 *
 * An array is listed when its device node opens, whether or not it runs. Between groups and arrays the md number in the
 * superblock is the only tie: the group belongs to the listed array of the device mdN, and its members to that array.
 * Nothing compares UUIDs for it.
 *
 * Each initialiser starts its list afresh; records found earlier stay valid but are no longer listed, and none is ever
 * freed. A record is inserted in front, so that a walk meets the newest one first: the highest slot, the last table
 * row. When memory runs out a record is left out. Lists and tables are shared by all functions here but those that turn
 * a code into a word: call them from one thread at a time. They also set from_cmdline to 0 for a moment.
 *
 * The details traced here stand above debug level 101. Answers of the functions called meanwhile are kept off standard
 * output (from_cmdline counts as 0), but the messages they print in any case are not: "wrong feature name" for a model
 * that does not set SUPPORT_HOT_SWAP, "opendir failed" for a slot without a SCSI host, "Err: write file open
 * fail.(...)" for a slot without a disk, "Err: file write fail.(...)" for a disk too short for a signature record. */
#ifndef QUORVEL_RAID_H
#define QUORVEL_RAID_H

#include <stddef.h>
#include <stdint.h>

#include "api.h"
#include "disk.h"

QUORVEL_BEGIN_DECLS

/* ---- Status words ---- */

/** A status code and its word. The low nibble is a disk's state (0 normal, 1 standby, 2 degrade, 3 remove); 0x10 marks
 * a disk that has since been removed; 0x100 plus a number is a member of that array; 0x1000 plus a level is a RAID
 * mode; 0xfff is off, 0xffff everything else. */
struct diskinfo_code {
    int code;
    char name[128];
};

/** The words of /etc/tevra/diskinfo and their codes, tried from the top. The last one is 0xffff, "unkown". */
extern QUORVEL_API const struct diskinfo_code diskinfo_tbl[17];

/** The word of a status code from diskinfo_tbl, or "unkown". */
QUORVEL_API const char* str_diskinfo_value(int code);

/** The name of an md disk-state bit number (0 "faulty", 1 "active", 2 "sync", 3 "removed", 9 "write_mostly"), or
 * "Unkown". The reports show an array's state word through it too: a clean array has the word 1, which prints "active",
 * whether it is degraded or not. */
QUORVEL_API const char* str_md_state(int state);

/** The name of an md level (0, 1, 5 and 6: "raid0" and so on), or "Unkown". */
QUORVEL_API const char* str_md_level(int level);

/* ---- Records ---- */

/** Links of a circular list. The head of a list is one too; the head of an empty list points to itself. */
struct list_links {
    struct list_links* next;
    struct list_links* prev;
};

/** How an array's device is found: the feature key whose value is the md device name, and the name under which the
 * array is known and mounted (/mnt/NAME). */
struct md_trans_entry {
    char feature_name[128];
    char array_name[128];
};

/** What mdadm tells of an array superblock. The numbers are -1 where it tells nothing. */
struct sb_info {
    char uuid[128];    /**< all that follows "UUID : "; empty for a disk that is no member */
    int minor;         /**< the array's md minor number */
    int level;         /**< 0, 1, 5, 6, or -1 for any other level */
    int raid_devices;  /**< members the array is made of */
    int total_devices; /**< members present when the superblock was written */
};

/** Sizes of a mounted file system in bytes; zero when nothing is mounted, 2^64-1 when they cannot be had. */
struct partition_info {
    uint64_t total_size;
    uint64_t used_size;
    uint64_t avail_size;
};

struct diskinfo;

/** A disk in the group of disks that carry one array's UUID. Starts with its list's links. */
struct pareinfo_member {
    struct list_links links;
    struct diskinfo* device;
};

/** An md device whose node can be opened. The nine integers from major on are -1 when no array is active behind it. */
struct arrayinfo {
    struct list_links links;
    char name[128];      /**< "array_boot", "array_rootfs", "array_swap", "array1" ... */
    char md_name[128];   /**< "md2" */
    int diskinfo_status; /**< the code recorded for name, or 0xffff */
    struct partition_info partition_info;
    int major; /**< the md driver's block-device number, 9 */
    int minor;
    int level;
    int raid_disks;
    int state; /**< the driver's state word */
    int active_disks;
    int working_disks;
    int failed_disks;
    int spare_disks;
    struct sb_info sb;
    struct pareinfo_member* members; /**< first member of its group, or null before the groups are linked */
};

/** Bits of a disk's status. */
enum {
    DISK_CONNECTED = 0x01,    /**< a disk is in the slot, or the model does not support hot swapping */
    DISK_POWERED = 0x02,      /**< the slot has power */
    DISK_HAS_SCSINAME = 0x04, /**< the SCSI host of the slot's index exists; the name may still be unknown */
    DISK_OPENABLE = 0x08,     /**< /dev/diskN opens for reading and writing */
    DISK_MOUNTED = 0x10       /**< /mnt/diskN is a mount point */
};

/** An internal disk slot. */
struct diskinfo {
    struct list_links links;
    char name[128];      /**< "disk1" is the first slot */
    char scsiname[128];  /**< "sda", or empty; see LibQuorvelBin_InitDiskInfo */
    int diskinfo_status; /**< the code recorded for name, or 0xffff */
    struct partition_info partition_info;
    struct disk_signature sig; /**< all zeros when it cannot be read */
    int status;                /**< bits DISK_... */
    struct sb_info sb;
    struct arrayinfo* in_array; /**< the listed array of its group, or null */
};

/** The disks whose superblocks carry one UUID. */
struct pareinfo {
    struct list_links links;
    char uuid[128];
    char array_name[128]; /**< name of the array behind the superblock's md number, or empty */
    int level;            /**< this and the two counts: from the highest-numbered disk of the group */
    int raid_devices;
    int total_devices;
    struct list_links members; /**< of pareinfo_member, in ascending order of disks */
};

/** Heads of the lists of arrayinfo, diskinfo and pareinfo; every record starts with its links. */
extern QUORVEL_API struct list_links arrayinfo_list;
extern QUORVEL_API struct list_links diskinfo_list;
extern QUORVEL_API struct list_links pareinfo_list;

/** Row 0 boot, 1 root, 2 swap, from 3 the data arrays; unused rows are empty. */
extern QUORVEL_API struct md_trans_entry md_trans_tbl[16];

/** Status code and name of array1 and array2, and of disk1 to disk4, as the front-panel line takes them. Rows of arrays
 * and disks that were not found keep what they held: zeros (a normal disk) at first. */
extern QUORVEL_API struct diskinfo_code array_mode_tbl[2];
extern QUORVEL_API struct diskinfo_code disk_mode_tbl[4];

/* ---- Inventory ---- */

/** Fills md_trans_tbl and arrayinfo_list.
 *
 * Data array n (1 to 5) is taken as long as /etc/tevra/diskinfo has a value for "arrayN_dev" (its device is then
 * feature DEVICE_HDDd_EDP, d being the value without its first four characters, nothing for a shorter one) or a line
 * "arrayN" (feature DEVICE_MDn_REAL). Table texts are written over older ones without a terminator: the tail of a
 * longer one stays. Rows that are no longer filled keep their text.
 *
 * A row whose feature has a value V is listed when /dev/V opens for reading and writing; V carries no "/dev/" of its
 * own. Runs "/sbin/mdadm -D /dev/V" once for every active array.
 * @return 0. Prints "get mdadm info failed (target:PATH)" when no command can be started. Above debug level 101 traces
 * the counters of every active array, mount points with their sizes, and each record. */
QUORVEL_API int LibQuorvelBin_InitMdInfo(void);

/** Fills diskinfo_list with slots 1 to MAX_DISK_NUM. For every slot, present or not, the power query and "/sbin/mdadm
 * --examine /dev/diskN_P" run once; P is the number behind the first "_" of feature DEVICE_HDD1_LINK (0 without one),
 * disk 1 standing for all.
 *
 * The slot's index, from 0, is taken for the number of its SCSI host. Where slots and hosts do not run alike, as on the
 * twelve-bay models (disk7), scsiname is another disk's name or none: ask LibQuorvelBin_GetDevnameFromDiskname.
 * @return 0. Messages and traces as for the arrays; its traces stand on lines of their own. */
QUORVEL_API int LibQuorvelBin_InitDiskInfo(void);

/** Fills pareinfo_list from diskinfo_list; arrays and disks must have been initialised. Prints "can't get arrayinfo @
 * diskN" for a group whose md number belongs to no listed array, and traces above debug level 101.
 * @return 0. */
QUORVEL_API int LibQuorvelBin_InitPareInfo(void);

/** What a key is compared with, exactly. */
enum {
    INFO_KEY_DISKNAME = 1,       /**< name of a disk */
    INFO_KEY_MDNAME = 0x1001,    /**< md_name of an array */
    INFO_KEY_ARRAYNAME = 0x1002, /**< name of an array; array_name of a group */
    INFO_KEY_UUID = 0x2000       /**< UUID of an array, disk or group */
};

/** The first array in list order that a key matches, or null; null for any other mode. Above debug level 101 prints
 * "ARRAY : NAME" for each array looked at. */
QUORVEL_API struct arrayinfo* LibQuorvelBin_SearchArrayInfo(const char* key, int mode);

/** The first disk in list order that a key matches, or null; null for any other mode. Above debug level 101 prints
 * "DISK  : NAME" for each disk looked at. */
QUORVEL_API struct diskinfo* LibQuorvelBin_SearchDiskInfo(const char* key, int mode);

/** The first group in list order that a key matches, or null; null for any other mode. Silent. */
QUORVEL_API struct pareinfo* LibQuorvelBin_SearchPareInfo(const char* key, int mode);

/* ---- Reports ---- */

/** Prints the report of an array: names, level, state, counters, members when the groups are linked, and sizes with the
 * percentage used (0 for a size of 0). Control bytes of a UUID are printed as "?", as by DiskSignature.
 * @param name  "md2" or a path to it; the last component counts
 * @return 0; -1 (ENODEV) behind "ARRAY         : NAME" and "  not exist" when the array is not listed; -1 for null. */
QUORVEL_API int LibQuorvelBin_ShowMdInfo(const char* name);

/** Prints the report of a disk: name, kernel name, status bits, signature record, arrays by status file, by UUID and by
 * md number, and sizes as for arrays. Control bytes of signature and UUID are "?" as above.
 * @param name  "disk1" or a path to it; the last component counts
 * @return 0; -1 (ENODEV) behind "LibQuorvelBin_ShowDiskInfo :   error" when the disk is not listed; -1 for null. */
QUORVEL_API int LibQuorvelBin_ShowDiskInfo(const char* name);

/** Prints the front-panel line of the disks and arrays in disk_mode_tbl and array_mode_tbl, without a line end: the
 * grouping of slots in two-disk and four-disk models, or the line "HD Unknown"; the line "Unsupported system disk
 * number" for any other MAX_DISK_NUM. A slot number that a line shows and no disk has is 0.
 * @return 0. Traces above debug level 101. */
QUORVEL_API int LibQuorvelBin_PrintLcdString(void);

/** The md helper command. Initialises arrays, disks and groups, links the groups to their arrays, and runs argument 1:
 *
 * - "mdinfo" MD: LibQuorvelBin_ShowMdInfo
 * - "diskinfo" DISK: LibQuorvelBin_ShowDiskInfo
 * - "diskinfo" "guess": what every array and disk is, told from the superblocks, see below
 * - "diskmode": the front-panel line, LibQuorvelBin_PrintLcdString
 * - "diskcap": four percentages used, of each disk's array or else of the disk, each followed by a blank; 0 for what is
 *   not mounted, has no size or no slot. Whether an array is mounted is asked when its value is printed
 * - "GetEmptyMdNameForTmp": "/dev/mdN" for the first N from 11 to 15 whose node opens and has no active array, or
 *   nothing
 *
 * The guess report. Without any group "arrayN=off" for each array that the model takes and "diskN=normal" for each
 * disk. With exactly two groups, taken for a striped pair of mirrors, first "array1=raid10", "arrayN=off" for every
 * other array and "diskN=array1" for every disk; the lines that follow hold, as the last value of a key does. Then for
 * each array "arrayN=raidLEVEL" (raid-1 for an unknown level), or "arrayN=off" when no group is tied to it; a group
 * whose superblock counts fewer devices in total than in the array has two lines in front: "Warning(0)!!! : Not match
 * between 'raid devices counts' and 'raid total devices counts'" and "Warning(0)!!! : Maybe arrayN is degraded.". Then
 * for each disk "diskN=arrayN" for a member of a group that is tied to a listed array, else "diskN=normal"; "diskN="
 * without a line end for one that is not listed. When the counts of the last such array disagree, every other disk is
 * looked at: one that is mounted has a line "diskN : IS_MOUNT_OK condition" in front, and any other is mounted and
 * unmounted on trial (LibQuorvelBin_MountTest of /dev/diskN_P), whose answer leaves it "normal".
 *
 * diskmode and diskcap have no line end. They fill the mode tables first: an array or disk that is not listed prints
 * "array_mode=" or "disk_mode=" (also one beyond the tables' rows, which are left out).
 * @param argv  argv[0] is the command word. The first two sub-commands take exactly one argument, the others ignore
 * theirs. Other sub-commands and counts print nothing; without a sub-command nothing is done at all.
 * @return 0. Traces above debug level 9. */
QUORVEL_API int LibQuorvelBin_MdHelper(int argc, char** argv);

QUORVEL_END_DECLS

#endif
