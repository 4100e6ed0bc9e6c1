/** @file
 * Disk operations: the signature record on a disk, partition sizes, mounts and file systems, partition
 * creation, temperature and read-error counter. Names, slots and presence of disks are in naming.h.
 *
 * A null pointer where a text or a buffer is expected gives the function's failure result. A text that becomes part
 * of a shell command (each function names its commands) is one word of it: as it is, or in single quotes when it
 * holds anything a shell would act on. The commands of the signature device use getopt, whose state they share with
 * other threads. */
#ifndef QUORVEL_DISK_H
#define QUORVEL_DISK_H

#include <stddef.h>
#include <stdint.h>

#include "api.h"

QUORVEL_BEGIN_DECLS

/* ---- Disk signature ---- */

/** The record at byte 0 of a disk's signature device: whose disk it is, and what it was used in. On the device its
 * numbers are little-endian; here they are the machine's own. The texts are padded with zeros and terminated on
 * every disk that this library wrote; on a foreign disk they may fill their fields, so print them with a precision
 * ("%.8s"). */
struct disk_signature {
    struct {
        uint32_t major; /**< 1 */
        uint32_t minor; /**< 0, shown as 1.00 */
    } sig_ver;
    uint32_t hdr_len;       /**< 32: bytes in front of raw_device */
    uint8_t reserved[20];   /**< written as zero */
    char raw_device[8];     /**< the logical disk: disk1, disk2 ... */
    char mac_address[18];   /**< eth0 of the appliance that wrote it, as 00:11:22:aa:bb:cc */
    uint8_t reserved_to[2]; /**< written as zero */
    char in_device[8];      /**< the device the disk is used in: disk1, array1 ... */
    char cryptinfo[16];     /**< encrypted, normal, or empty when not given */
};

/** The signature record of a device or file: its first 84 bytes.
 * @param path    a pipe does as well; what it has yet to bring is waited for, 10 seconds at most
 * @param record  84 bytes; untouched on failure
 * @return 0; or -1, with a line on standard output: "Err: write file open fail.(PATH)" when the path cannot be
 *         opened for reading, "Err: file write fail.(PATH)" when 84 bytes cannot be read (ENODATA when there are
 *         fewer). Silently -1 for a null argument. */
QUORVEL_API int LibQuorvelBin_LoadDiskSignature(const char* path, struct disk_signature* record);

/** Whether this appliance wrote the signature record of a disk. Prints the record as `disk_signature get` does, or
 * the line of LibQuorvelBin_LoadDiskSignature when it cannot be read; asks for the hardware address of eth0 after
 * that (Netdev_GetHwAddr).
 * @param name  a path that contains "/dev/", or a name below /dev, of which the path has at most 127 characters: a
 *              longer one is no device
 * @return 1 when the record's address is that of eth0; 0 when it is not or the record cannot be read; -1 when eth0
 *         has no address to read. */
QUORVEL_API int IsMyDisk(const char* name);

/** The command `disk_signature`: argv[1] is the command word, argv[2] the operation, argv[3] the device, options
 * follow.
 *
 * "set" [-r RAW_DEVICE] [-d IN_DEVICE] [-e yes|no] writes a new record of exactly 84 bytes at byte 0 of an existing
 * device or file and waits until they are on it (fsync): a late error of a device counts as a failure to write.
 * Nothing is created or truncated, and nothing is opened before options and hardware address are known to be good.
 * Values are cut to 7 characters; the last of a repeated option counts; words that are no options are passed over;
 * any other value of -e leaves cryptinfo as it was. -h prints the usage. "--help" and "-h" print the usage, as do
 * fewer than two words behind the command word. Any other operation prints the record: six lines, version, hdr_len,
 * raw_device_name, mac_address, in_device and cryptinfo; a control byte in a text, and each of the two bytes by which
 * UTF-8 writes a control character, is printed as "?", so that a strange disk does not reach the terminal.
 *
 * Failures print the lines of LibQuorvelBin_LoadDiskSignature, when writing too; a record that could not be read
 * prints nothing else.
 * @return 0, also when the record could not be read or written; -1, nothing written, when "set" finds -h, an unknown
 *         option, an option without its value, or no hardware address of eth0. */
QUORVEL_API int DiskSignature(int argc, char** argv);

/* ---- Partitions, mounts and file systems ---- */

/** The size of a disk or partition in blocks of 1024 bytes, from the first line of /proc/partitions that contains the
 * text behind the last "/" of its name: "sda1" also finds a line of sda10 that stands in front, and "sd" the first
 * disk.
 * @return the blocks, or 0 when there is no such line (ENODEV). When /proc/partitions cannot be opened, grep_file
 *         prints its line. */
QUORVEL_API uint64_t GetPartitionBlocks(const char* device);

/** What statfs(2) tells about a mounted file system. */
struct mounted_fs_info {
    uint32_t f_type;     /**< the file system's magic number */
    uint64_t total_size; /**< bytes */
    uint64_t free_bytes; /**< bytes available to users */
};

/** The type and sizes of the file system that holds a path, from statfs(2). Prints "f_type=0xTYPE" and
 * "total_size=BYTES free_byes=BYTES" as two lines on success.
 * @param info  untouched on failure
 * @return 0, or -1 (silent) when statfs fails, as in LibQuorvelBin_GetPartitionSize. */
QUORVEL_API int GetMountedFsInfo(const char* mount_point, struct mounted_fs_info* info);

/** The bytes of the file system that holds a path, from statfs(2), as 64-bit products of 64-bit counts on every
 * machine.
 * @return bytes, or all ones when statfs fails, or has no answer within two seconds where a file system is mounted for
 *         which a program answers (FUSE); silent. */
QUORVEL_API uint64_t LibQuorvelBin_GetPartitionSize(const char* mount_point);
/** The bytes available to users, as LibQuorvelBin_GetPartitionSize. */
QUORVEL_API uint64_t LibQuorvelBin_GetPartitionFreeSize(const char* mount_point);
/** The bytes not available to users (total minus available, so blocks reserved for the superuser count as used), as
 * LibQuorvelBin_GetPartitionSize. */
QUORVEL_API uint64_t LibQuorvelBin_GetPartitionUsedSize(const char* mount_point);

/** Whether a line of /proc/mounts, however long, contains a text anywhere: "sda1" is also found in a line of sda10.
 * @return 1 or 0; silent. */
QUORVEL_API int IsMounted(const char* text);

/** Holds a place in the interface.
 * @return -1 always (ENOSYS). */
QUORVEL_API int diskcntl(void);

/** A trial mount that lets kernel and file-system driver look at a device: runs "mount DEVICE /tmp/mount_test" and
 * "umount -f /tmp/mount_test". A missing /tmp/mount_test is made (mode 0700) and removed again, with rmdir only; an
 * existing directory stays. Nothing is run when the directory cannot be made, when it is a link or neither root's
 * nor the caller's, or when the command would be longer than 1023 characters.
 *
 * Both commands run in a mount namespace of their own, so that nobody else sees what a strange disk holds. Where
 * that cannot be had (without CAP_SYS_ADMIN, below a chroot, with a kernel that allows no mount namespace) they run in
 * the caller's: everybody sees the mount for its length, with its set-uid programs and device nodes. Where it is only
 * for want of a descriptor, a process or memory, nothing is run. Two calls at once share /tmp/mount_test, which the one
 * that made it removes.
 * @return 0 always. */
QUORVEL_API int LibQuorvelBin_MountTest(const char* device);

/** The type of the file system mounted at exactly this mount point, from the first line of /proc/mounts that names
 * it. A mount point with blanks is written there, and given here, with "\040" for each.
 * @param type  receives the type (ext3, xfs ...) and its terminator; untouched on failure
 * @param size  bytes of type; the type must be shorter
 * @return 0; or -1, silent, when /proc/mounts cannot be opened, names no such mount point, or the type does not fit.
 *         Prints the type as a line when from_cmdline is 1, each byte of a control character as "?". */
QUORVEL_API int LibQuorvelBin_GetFsType(char* type, size_t size, const char* mount_point);

/* ---- Partition creation ----
 *
 * All of these but test_usersize destroy what is on the disk, mounted or not. Each step is one shell command, run
 * with its output captured; the tools' error output stays the caller's. A step fails when its command does not exit
 * with 0; the steps that make the data or USB partition also when their output holds "failed with error". A layout
 * that fails half-way stays as it is. From the first step to the last the signals that end a process (SIGTERM,
 * SIGINT, SIGALRM ...) are held back in the calling thread and in the tools.
 *
 * The device path has at most 31 characters (a longer one counts as a device whose size cannot be read) and its size
 * comes from GetPartitionBlocks. With G the size in units of 1,000,000,000 bytes, rounded down. */

/** Lays out an internal disk: dd over the first mebibyte, a GPT label, five system partitions up to 7168 MB (the
 * third and the fourth without extent), one data partition from there to U gigabytes, and the bios_grub flag on
 * partition 3. U is G - 8 - G % 10 above 249 (disks with G % 10 above 6 are refused), otherwise G / 5 * 5 - 8, and
 * 17 in the short layout. The refusal comes when the data partition is due, that is after the wipe and the system
 * partitions; so does the failure on a disk without room for it (below 20 GB, up to 16.5 in the short layout).
 * Two calls for one disk at once mix their steps, here and in create_usb_partition: the caller locks the disk's node
 * (flock) meanwhile, as the command does. A tool that locks it too (fdisk, where LOCK_BLOCK_DEVICE is set) would wait
 * for that lock.
 *
 * Prints on standard output "DEVICE total blocks=BLOCKS bytes=BYTES N[GB]" (N of 2^30 bytes), the command of the
 * data partition, and "toggle bios_grub set to DEVICE3"; on standard error, unless the layout is the short one,
 * "sectors=SECTORS G[GB] G%10" above 249, and, unless the disk is refused, "usersize=U[GB]". Shares with other
 * threads whether layouts are short.
 * @return 0, also when only the flag could not be set ("CreatePartitionHdd_sub:toggle 3 bios_grub failed. Maybe
 *         kernel warning."); -1 when the size reads 0 ("device[DEVICE] access fail.", no command is run), the disk
 *         is refused ("this disk can't used" on standard error; EINVAL), or a step failed
 *         ("CreatePartitionHdd_sub:fail." on standard error; EIO, or ENOPKG without the tool). */
QUORVEL_API int create_partition(const char* device);

/** create_partition in the short layout, to which create_partition and test_usersize keep from then on for the life
 * of the process. */
QUORVEL_API int create_short_partition(const char* device);

/** Makes one partition over a USB disk: dd over the first mebibyte, then with the label "gpt" a GPT label and a
 * partition of the whole size (read once more) made by parted, with any other label (or null) an MBR label and
 * partition 1 made by keystrokes to fdisk.
 *
 * The keystrokes come from "echo -e": /bin/sh must be a shell whose echo knows it (bash and busybox do; with dash
 * fdisk reads "-e" as commands and makes no partition).
 * @param filesystem  what the partition is marked for: "fat" or "vfat" (to parted "fat", a word that parted 3.5
 *                    refuses: the step fails with it); "xfs" (GPT only); any other, or null, ext3 (type 83)
 * @return 0; -1 when the size reads 0 ("device[DEVICE] access fail.", no command is run) or a step failed
 *         ("CreatePartitionUsb_sub_GPT:fail." or "CreatePartitionUsb_sub_MBR:fail."). All on standard output, behind
 *         "DEVICE total sectors=BLOCKS bytes=BYTES N[GB}". */
QUORVEL_API int create_usb_partition(const char* device, const char* filesystem, const char* label);

/** Prints the data size a disk would get by a rule of its own, which is not create_partition's: "sectors=SECTORS
 * G[GB] G%10" (not in the short layout) and "usersize=U[GB]", U being G - G % 10 - 1, or 17 in the short layout.
 * Changes nothing. A size that cannot be read counts as 0. Shares with other threads whether layouts are short.
 * @return 0; -1 for a refused disk (G % 10 above 6), with "this disk can't used" as the second line. */
QUORVEL_API int test_usersize(const char* device);

/* ---- Health ---- */

/** The temperature of a disk in degrees Celsius: the number that begins field 10 of the line of attribute 194 that
 * "/usr/local/sbin/smartctl -d marvell -A DEVICE" prints. The temperature is printed as a line when from_cmdline is
 * 1, and not handed over otherwise.
 * @param unused  not looked at
 * @param device  a node that somebody has given an execute bit, as the kernel's have none
 * @return 0; -1 when there is no line that begins "194 " or its field is no number; 95 when the device path has an
 *         execute bit neither for its owner nor for its group ("smartctl doesn't have a executable flag!" as a
 *         line); errno when the path does not exist ("smartctl is not exist on this platform!" as a line) or the
 *         command could not be started. ENOPKG tells that there is no smartctl. The test and the wording on the
 *         device path are part of the interface. */
QUORVEL_API int LibQuorvelBin_GetDiskTemperature(int unused, const char* device);

/** Whether the temperature query of a device goes through the Marvell pass-through.
 * @return 1 always. */
QUORVEL_API int LibQuorvelBin_IsTargetUseMarvelLHBA(const char* device);

/** The command `disk_readerrorcnt`: argv[1] is the command word, argv[2] the operation, argv[3] the device, options
 * follow. The counter is 4 bytes at byte 86 of the signature device: at most 3 characters of decimal text, padded
 * with zeros.
 *
 * "get" prints the number its first 3 bytes spell, 0 when they spell none. A pipe has no byte 86.
 *
 * "set" [-c] [-n COUNT] writes the 4 bytes to an existing device or file and waits until they are on it (fsync): -c,
 * or no option, four zeros; -n its text, digits or not. The last option counts. Nothing is created or truncated. Any
 * other operation, and none, prints the usage.
 * @return 0; 1, nothing written, when a COUNT is longer than 3 characters or (with the usage) an option is unknown
 *         or lacks its value; 2 when the device is missing or cannot be opened ("Err: write file open fail.(PATH)"),
 *         read or written ("Err: file write fail.(PATH)"). */
QUORVEL_API int DiskReadErrorCnt(int argc, char** argv);

QUORVEL_END_DECLS

#endif
