/** @file
 * What all of the public interface has in common: its linkage, its errors and its use from threads. Included by the
 * subsystem headers, of no use by itself.
 *
 * Errors. A function whose result says that it failed (-1, a null pointer, or a 0 that stands for a failure) has set
 * errno; behind a 0 that is an answer ("no") errno means nothing. Where the kernel or the C library gave the reason,
 * errno is theirs (ENOENT: no such file; EACCES: no right to read it; ENOMEM ...). The library's own reasons are:
 *
 *     EINVAL        a null pointer, an unusable argument, an argument vector of more than 256 words
 *     ENAMETOOLONG  a name or path longer than what it is put into; E2BIG for a command line
 *     ERANGE        the answer does not fit into the caller's buffer
 *     ENODEV        no such device or interface; no known platform
 *     ENXIO         the device is there, but nothing tells its name or place: no row of the table, no rule
 *     EOPNOTSUPP    this platform has no slot table
 *     ENODATA       the file or output is there, but does not hold what was asked for: no such key, field or record
 *     ENOPKG        a program that the answer needs is not installed
 *     EIO           a program that the answer needs failed, or a device did
 *     EBADMSG       what was read has not the form it must have
 *     EFBIG         a file goes on behind its first 256 MiB, which is all that is read of it (4 MiB where accounts
 *                   may mount, but below /dev, /etc, /proc and /sys)
 *     EISDIR        a directory stands where a file must be
 *     ETIMEDOUT     somebody else held a file for too long, or the program that answers for a file system did not (a
 *                   process that is no child of the caller's then waits on until that program answers or ends)
 *     EPERM         a file that an unprivileged account could have put there is not used
 *
 * Threads. A function may be called from several threads at once unless its comment names what it shares with others.
 * All of them read the globals debug and from_cmdline, and what they print goes to one standard output. Where a
 * function holds signals back, it does so for its own thread and its children: the other threads still take them, but
 * commands that they start meanwhile ignore those too (HUP, INT, QUIT, PIPE, ALRM, TERM, USR1, USR2). */
#ifndef QUORVEL_API_H
#define QUORVEL_API_H

#define QUORVEL_API __attribute__((visibility("default")))

#ifdef __cplusplus
#define QUORVEL_BEGIN_DECLS extern "C" {
#define QUORVEL_END_DECLS }
#else
#define QUORVEL_BEGIN_DECLS
#define QUORVEL_END_DECLS
#endif

#endif
