/** @file
 * Foundation: key=value text files and text fields, the frame every call runs in (debug level, command mode, dumps,
 * command output, file tests), the model's feature settings, character sets, and small utilities.
 *
 * Key=value files. One setting a line: leading blanks and tabs are skipped; a line whose first character then is "#" is
 * a comment; a line without "=" is no setting. The key is the text before the first "=", cut at its first white space;
 * the value is everything behind it but the line end (a "\r" before it included): blanks and double quotes belong to
 * the value. Keys compare exactly. The first matching line wins. Readers take lines in pieces of at most 511
 * characters, writers in pieces of at most 255; every piece of a longer line counts as a line of its own.
 *
 * A null pointer where a text or a buffer is expected gives the function's failure result (api.h tells of errors and of
 * threads).
 *
 * Commands. Every function of the library that runs a command uses sh, with the caller's environment and every signal
 * at its default (but for those that a function holds back: api.h), waits for its end, and learns its status whatever
 * the caller does with SIGCHLD. */
#ifndef QUORVEL_FOUNDATION_H
#define QUORVEL_FOUNDATION_H

#include <stddef.h>
#include <stdint.h>
#include <stdio.h>

#include "api.h"

QUORVEL_BEGIN_DECLS

/* ---- Globals ---- */

/** Diagnostic level, 0 at load. Above 9 functions trace on standard output, above 100 also heap use, above 101 also the
 * RAID inventory's details. LibQuorvelBin_DebugLevelInit sets it; any program may. */
extern QUORVEL_API int32_t debug;

/** 1 when a command front end drives the library and its standard output is the result channel; 0 at load, never set to
 * 1 by the library. Functions that compute a printable answer then also print it, as a line. */
extern QUORVEL_API int32_t from_cmdline;

/* ---- Key=value files ---- */

/** The value of a key in a key=value file.
 * @param dst   cleared by the caller; at most size - 1 bytes are written, padded with zeros as strncpy pads; the last
 * byte is never written, so a value of size - 1 or more bytes ends unterminated in front of it
 * @param size  bytes of dst
 * @return dst, or null (dst untouched) when the key is absent or the path is no readable regular file; silent. */
QUORVEL_API char* get_StringbyKey(const char* path, const char* key, char* dst, size_t size);

/** Rewrites a key=value file: every line of the key goes; unless mode is 2, "key=value" becomes the last line (behind a
 * line end of its own when the file's last line has none). All else stays byte for byte. A missing file counts as
 * empty. The new content is written to the path with "_tmp" appended, with the permissions (but no set-uid bit) and
 * owner of the file, flushed to disk, and moved over the file with the shell command "mv PATH_tmp PATH": a reader sees
 * the old or the new content.
 * Until it is whole nobody but the caller can read the temporary file, which is always made anew: what is there of that
 * name is removed. A new file gets the mode that the caller's mask allows, 0644 at most; the mask is a strict one for
 * the moment in which it is asked for. Writers wait for each other on a lock of the temporary file, ten seconds at
 * most. Where a piece of an overlong line goes, a line end is put in its place only when the piece had one.
 *
 * The value is written as it is: a line end in it begins another setting. Who stores texts of others refuses one, and
 * more characters than a reader's line has.
 *
 * A directory that others put in the file's place before the move receives an empty file of the caller's own.
 *
 * The path is one word of the command, in single quotes when it holds anything a shell would act on.
 * @param mode  1 sets, 2 deletes (value is ignored and may be null), any other sets
 * @return 0 once the rewrite was done (the result of mv is not looked at, but what it could not move is removed); -1,
 * the file untouched and no temporary file left behind, when the path is too long for a command of 255 characters
 * (ENAMETOOLONG), the temporary file cannot be made, ETIMEDOUT among the reasons ("set_StringbyKeyExtend:file PATH_tmp
 * open fail." on standard output) or not be written completely, or when the file exists but cannot be opened or read to
 * its end (both "set_StringbyKeyExtend : ERROR"). Traces every line kept, above debug level 9. */
QUORVEL_API int set_StringbyKeyExtend(const char* path, const char* key, const char* value, int mode);

/** set_StringbyKeyExtend with mode 1. */
QUORVEL_API int set_StringbyKey(const char* path, const char* key, const char* value);

/** set_StringbyKeyExtend with mode 2; value is ignored. */
QUORVEL_API int del_StringbyKey(const char* path, const char* key, const char* value);

/** The first line of a file that contains a text.
 * @param buf   cleared over all its size first; holds the line with its line feed on success
 * @param size  bytes of buf; lines are read in pieces of at most size - 2 characters
 * @return buf, or null when no line matches, size is below 3, or the file cannot be opened or not be read to its end
 * (of a file 256 MiB are read, and a pipe is waited for ten seconds in all); only what cannot be opened prints:
 * "grep_file:file PATH open fail." */
QUORVEL_API char* grep_file(const char* path, const char* needle, char* buf, size_t size);

/* ---- Words and fields ---- */

/** The first character of a line that is neither blank nor tab (its end, for a line of blanks); null for null. */
QUORVEL_API char* getNextKey(const char* line);

/** Ends a text at its first white-space character, in place: every white-space character becomes a terminator. */
QUORVEL_API void remove_space(char* text);

/** Removes the trailing run of "\r" and "\n", in place. */
QUORVEL_API void remove_last_crlf(char* text);

/** Removes occurrences of a character within the first length bytes by moving the bytes behind it one place left, in
 * place; the last byte keeps its value. The scan goes on behind the place of a removal, so that the second of two
 * adjacent occurrences stays. length includes the terminator. */
QUORVEL_API void remove_character(char* text, int length, char ch);

/** The index-th field of the first line of a text, fields being separated by runs of any of the delimiter characters.
 * When the first line has fewer fields, counting goes on into the following lines, whose line feeds are then part of
 * the fields; it ends at a first line whose last character is a delimiter. An index of 0 or less gives the whole first
 * line, leading line feeds included.
 * @param dst       receives the field and its terminator; may be the text itself
 * @param dst_size  bytes of dst; the field must be shorter
 * @return 0, or -1 with dst untouched when there is no such field or it does not fit. Works without a copy of the text,
 * so that no allocation can fail. */
QUORVEL_API int LibQuorvelBin_GetSpecifiedKey(char* dst, uint64_t dst_size, const char* text, const char* delimiters,
                                              int index);

/** The text behind the last separator, or the whole text when it holds none.
 * @param separator  points at one character; an empty text separates nothing
 * @param length     bytes written to dst: cut to it without a terminator, or padded with zeros, as strncpy does
 * @return 0, or -1 for a null argument. Traces dst above debug level 9. */
QUORVEL_API int LibQuorvelBin_GetLastWord(char* dst, const char* text, const char* separator, size_t length);

/** The text before the last separator; the empty text (not the whole) when it holds none, the whole text when the
 * separator is empty.
 * @param dst  has room for the text; may be the text itself
 * @return 0, or -1 when the working copy cannot be allocated. Traces above debug levels 9 and 100. */
QUORVEL_API int LibQuorvelBin_AvoidLastWord(char* dst, const char* text, const char* separator);

/** Whether item is an element of a list joined with a separator text. The last element also matches when it only begins
 * with the item; an empty list or a trailing separator has an empty last element. An element in front is never empty.
 * @return 1 or 0; -1 when list is null, 0 (EINVAL) when item or separator is. */
QUORVEL_API int LibQuorvelBin_IsContainedInStringList(const char* list, const char* item, const char* separator);

/** The part of a path behind its last "/", or the whole path: at most size - 1 bytes and no terminator are written, so
 * the caller clears dst first. Reads only up to the path's terminator.
 * @return 0, or -1 for a null argument or a size of 0. */
QUORVEL_API int LibQuorvelBin_Basename(char* dst, const char* path, size_t size);

/** 1 when length is below 1 or the first character is a decimal digit (only the first is looked at), else 0. */
QUORVEL_API int LibQuorvelBin_IsAllNumericStr(const char* text, int length);

/** The value of a hexadecimal text, with or without "0x", up to its first other character, wrapped to 32 bits.
 * @param length  the text's size; no character behind it is looked at
 * @return the value (negative when its top bit is set), or -7 when length is above 16 or hex is null. Traces above
 * debug level 9. */
QUORVEL_API int32_t LibQuorvelBin_HexToUl(const char* hex, int length);

/* ---- Frame ---- */

/** Sets the debug level from key "debug" of /etc/libquorvel_bin.conf (its low 32 bits; no number gives 0) and prints
 * "debug=LEVEL".
 * @return what printf returned, or 0 with the level unchanged and nothing printed when file or key is missing. */
QUORVEL_API int LibQuorvelBin_DebugLevelInit(void);

/** Prints a hex dump: a line "ADDRESS: --<TITLE>-- len=LENGTH", then rows of eight bytes behind their offset. A length
 * that is a multiple of eight ends with an empty line.
 * @param title  null counts as empty
 * @return the result of the last character output. */
QUORVEL_API int dumpf(const char* title, FILE* stream, const void* data, int length);

/** dumpf on standard output. */
QUORVEL_API int dump(const char* title, const void* data, int length);

/** Runs a shell command and collects its standard output.
 * @param buffer  receives a terminated text to be released with free(), in every case in which it is not null; after a
 * failure to grow it holds what came so far, unterminated
 * @return the command's wait status, or -1 when memory, the pipe or the shell could not be had. */
QUORVEL_API int ExecPipe(const char* command, char** buffer);

/** 1 when the path is a regular file that the caller can open for reading, else 0. Devices are not opened for that. */
QUORVEL_API int IsFileExist(const char* path);

/** 1 when the path is a directory that the caller can open for reading, else 0. Devices are not opened for that. */
QUORVEL_API int IsDirExist(const char* path);

/** Flushes all file-system buffers: sync(2). */
QUORVEL_API void LibQuorvelBin_Sync(void);

/* ---- Feature settings: /etc/nas_feature, read again at every call ---- */

/** A feature's value as text, through get_StringbyKey: the caller clears dst.
 * @return 0, or -1 (dst untouched) when file or key is missing. */
QUORVEL_API int LibQuorvelBin_GetConfValInStringByKey(char* dst, size_t size, const char* key);

/** A feature's value as a number: 1 when it begins with "on", 0 with "off", the low 32 bits of its leading decimal
 * number when it begins with a digit, otherwise (quoted, negative, empty: EBADMSG; missing) -1. */
QUORVEL_API int LibQuorvelBin_GetConfOnOffValInIntByKey(const char* key);

/** A feature's value for a script: as LibQuorvelBin_GetConfOnOffValInIntByKey when that is not -1; else 0 when the key
 * exists as text; else -1 and the line "wrong feature name". Prints number or text as a line when from_cmdline is not
 * 0, and (again) when debug is above 9. */
QUORVEL_API int LibQuorvelBin_GetConfValByKey(const char* key);

/** Feature MAX_USBDISK_NUM: how many USB disks the model takes, or -1. */
QUORVEL_API int LibQuorvelBin_GetMaxUsbdiskNum(void);
/** Feature MAX_DISK_NUM: how many internal disks the model takes, or -1. */
QUORVEL_API int LibQuorvelBin_GetMaxDiskNum(void);
/** Feature MAX_ARRAY_NUM: how many data arrays the model takes, or -1. */
QUORVEL_API int LibQuorvelBin_GetMaxArrayNum(void);
/** Feature SUPPORT_2STEP_INSPECTION: 1, 0, or -1 when missing. */
QUORVEL_API int LibQuorvelBin_IsSupport2StepInspection(void);
/** Feature SUPPORT_SLIDE_POWER_SWITCH: 1, 0, or -1 when missing. */
QUORVEL_API int LibQuorvelBin_IsSupportSlidePowerSwitch(void);
/** Feature SUPPORT_PRINTER_SERVER: 1, 0, or -1 when missing. */
QUORVEL_API int LibQuorvelBin_IsSupportPrinterServer(void);
/** Feature SUPPORT_DHCPS: 1, 0, or -1 when missing. */
QUORVEL_API int LibQuorvelBin_IsSupportDhcps(void);
/** Feature SUPPORT_RAID: 1, 0, or -1 when missing. */
QUORVEL_API int LibQuorvelBin_IsSupportRaid(void);

/** 1 when feature SERIES_NAME begins with "Ostrand" in double quotes or is missing (a model without it is of the small
 * series), else 0. */
QUORVEL_API int LibQuorvelBin_IsOstrand(void);
/** 1 when feature SERIES_NAME begins with "Veldmark" in double quotes, else 0, also when missing. */
QUORVEL_API int LibQuorvelBin_IsVeldmark(void);

/** Changes a feature through the firmware's own tools: /usr/local/bin/setnf and /usr/local/bin/dumpnf, or else
 * /usr/local/sbin/nvram, which also appends the line to /etc/nas_feature (readers keep the first, old line until the
 * file is made anew), behind a line end where the last line has none. Prints which tools are missing and what to
 * expect. Results of the tools are not looked at, but what the feature file held is put back when dumpnf failed or gave
 * no setting. The file is never made wider than 0644; where it is made, the caller's mask is a strict one for a moment.
 * Signals that end a process are held back from the first tool to the last.
 *
 * Key and value reach the shell unquoted: they must hold no character that is special to a shell.
 * @return 0; -1 when there is no tool ("LibQuorvelBin_SetConfValInString : set feature failed!" and two lines above it)
 * or when a command line would be longer than 1023 characters (nothing is run then). */
QUORVEL_API int LibQuorvelBin_SetConfValInString(const char* key, const char* value);

/* ---- Character sets ---- */

/** A text from the appliance's code page to UTF-8, by the C library's iconv.
 *
 * The code page is the value of key "codepage" in /etc/tevra/info, read again at every call: its first 31 characters
 * exactly as get_StringbyKey gives them (quotes and blanks belong to it), with the first "_" replaced by "-". Without
 * that key the line "codepage not found in info file." is printed and the code page loaded last is used; in a fresh
 * process that is CP932. A name that the converter does not know is tried once more as another name of the same code
 * page (CP932 as SHIFT_JIS). The code page loaded last is shared by all threads: with several, only the same setting is
 * safe.
 * @param dst      needs no clearing; holds the terminated text on success
 * @param dstsize  bytes of dst, the terminator included
 * @param src      a terminated text of any length
 * @return dst. A byte sequence that cannot be converted ends the text: what came before it, then "?", and the
 * terminator where there is room for it. Null, dst untouched, when there is no such converter (the line
 * ">remote2local_UTF8: iconv_open() fail" above debug level 9). Null and ERANGE when dst is too small, as it is with a
 * size of 1 for any text that is not empty (the line ">remote2local_UTF8: dstsize(SIZE) is too short"): it then holds
 * what had room, then "?", and no terminator; nothing is written for a size of 0. Null for a null argument; silent. */
QUORVEL_API char* remote2local_UTF8(char* dst, size_t dstsize, const char* src);

/** A text from UTF-8 to the appliance's code page; all else as remote2local_UTF8, whose name its messages replace by
 * its own. A code page with shift states is brought back to its first state at the end when there is room for that. */
QUORVEL_API char* local2remote_UTF8(char* dst, size_t dstsize, const char* src);

/* ---- Utilities ---- */

/** Percent-encodes a text: every byte but A-Z a-z 0-9 - . _ ~ becomes "%" and two upper-case hexadecimal digits. That
 * set is this library's own choice: the result is safe in a URL path, a URL query and an rsync module name. Bytes are
 * taken as they are, whatever their character set.
 * @param dst   receives the encoded text and its terminator; three times the text plus one always suffices
 * @param size  bytes of dst
 * @return 0, or -1 with dst untouched when the result does not fit or an argument is null. */
QUORVEL_API int LibQuorvelBin_URLEncode(char* dst, const char* src, size_t size);

/** The name of the user with an id: the first entry of /etc/passwd that has it. Name services beyond that file are not
 * asked, so that the answer needs no module at run time. Signature and behaviour are this library's own choice. Prints
 * the name when from_cmdline is 1.
 * @param dst   receives the terminated name; needs no clearing
 * @param size  bytes of dst; the name must be shorter
 * @return 0, or -1 with dst untouched when there is no such user, the name does not fit, the file cannot be read, or
 * dst is null. */
QUORVEL_API int LibQuorvelBin_GetUsernameByUID(uint32_t uid, char* dst, size_t size);

/** The calendar day after a given one, both as text "YYYY-MM-DD". Signature, form and behaviour are this library's own
 * choice. Prints the day when from_cmdline is 1.
 * @param date  a day of the Gregorian calendar, years 0000 to 9999, in exactly this form
 * @param dst   receives the terminated text; needs no clearing, may be date
 * @param size  bytes of dst, at least 11
 * @return 0, or -1 with dst untouched when date is no such day, the year would be 10000, dst is too small, or an
 * argument is null. */
QUORVEL_API int LibQuorvelBin_DayAfter(const char* date, char* dst, size_t size);

/** The calendar day after today, as LibQuorvelBin_DayAfter gives it. Today is the current day of the process's time
 * zone (environment variable TZ, or /etc/localtime); a change of clocks does not move it. Prints the day when
 * from_cmdline is 1.
 * @return 0, or -1 with dst untouched as in LibQuorvelBin_DayAfter. */
QUORVEL_API int LibQuorvelBin_Tomorrow(char* dst, size_t size);

QUORVEL_END_DECLS

#endif
