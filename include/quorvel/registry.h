/** @file
 * Configuration registry: single settings of the appliance's configuration files through one key notation. The registry
 * is the file system: a directory is a key path, a file is the innermost key, a line name=value in it is an entry.
 *
 * Two notations name the same entry:
 *   /etc/tevra/info/HOSTNAME   slash form, when the key holds a "/": cut at its first "."; then the name is behind the
 *                              last "/", the file in front of it
 *   HOSTNAME.info.tevra.etc    dotted form: the name is in front of the first ".", the file's path behind it, innermost
 *                              component first; empty components are skipped
 *
 * Files are key=value files as foundation.h describes them. A file is rewritten by set_StringbyKey. */
#ifndef QUORVEL_REGISTRY_H
#define QUORVEL_REGISTRY_H

#include <stddef.h>
#include <stdint.h>

#include "api.h"

QUORVEL_BEGIN_DECLS

/** The config command: reads, writes or deletes one entry.
 *
 *   read KEY          prints the entry's value; or, when the key's path is a directory and its name a file in it, the
 *                     file: "\t.info.tevra.etc", "\t{", a line "\t\tname=rest" for every line, split at its first "="
 *                     (a line without one, comments and empty lines included, prints "name=" with nothing behind),
 *                     "\t}"
 *   write KEY VALUE   sets the entry, at the end of its file, and prints the value now stored;
 *                     "NAME/etc.info.tevra.etc is not exist in registory. newly add it." comes first when it was not
 *                     there
 *   delete KEY        removes the entry, if it is there; any word of six letters that begins with "delet" does
 *
 * An option -h in front of the operation, or any other operation, prints the usage line. Behind the operation
 * everything is taken as it is: keys and values may begin with "-".
 *
 * A key or a value has at most 511 characters; nothing is cut. But set_StringbyKey knows a line by its first 255
 * characters, line end included: an entry whose name, "=" and value have more than 254 together is stored and read, and
 * a later write or delete of it removes only that much of its line; the rest stays behind as lines of its own.
 * @param argc  entries of argv
 * @param argv  0 the front end, 1 the command word, 2 the operation, 3 the key, 4 the value
 * @return 0, also for the usage line; -1 silently for a wrong number of arguments or a key with neither "/" nor "."
 * (EINVAL), for a key or a value above 511 characters (ENAMETOOLONG), and for a read of an entry that is not there
 * (ENODATA); -1 with "KEY is not a valid registory key." when the file, or the directory, does not exist (ENOENT),
 * behind "PATH is not a file!" when the name in a directory is no regular file that can be read; -1 when the file could
 * not be rewritten (set_StringbyKey tells why), or not be read to its end.
 *
 * File systems are flushed after a write or delete. Files and directories are never created. Lines of the listing are
 * read in pieces of at most 511 characters. Traces above debug level 9. The key and the value stay in buffers of the
 * library for LibQuorvelBin_ConfigOperation: threads share those, and getopt. */
QUORVEL_API int LibQuorvelBin_ConfigHelper(int argc, char** argv);

/** Prints the config command's usage, a single line. @return 0. */
QUORVEL_API int LibQuorvelBin_ConfigHelperShowUsage(void);

/** Carries out an operation on the key, and for a write the value, that the last LibQuorvelBin_ConfigHelper call was
 * given; before any call there is none, and every key is invalid. After a listing the key's path is the file listed.
 * Threads share what that call left.
 * @param operation  1 read, 2 write, 4 delete
 * @return and prints as LibQuorvelBin_ConfigHelper does for the operation; -1 for any other code (EINVAL). */
QUORVEL_API int LibQuorvelBin_ConfigOperation(int operation);

QUORVEL_END_DECLS

#endif
