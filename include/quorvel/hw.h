/** @file
 * Hardware maintenance: the loopback test of the UPS port, and wiping the NAND flash partitions. Both are commands:
 * they print their progress and result on standard output. */
#ifndef QUORVEL_HW_H
#define QUORVEL_HW_H

#include <stddef.h>
#include <stdint.h>

#include "api.h"

QUORVEL_BEGIN_DECLS

/** Tests the serial port of the UPS with a loopback plug in place of the cable: drives the output modem lines
 * (TIOCMSET) through a table of patterns and looks at the lines that must follow (TIOCMGET). Results of the ioctls are
 * not looked at; lines that cannot be read count as low. Nothing keeps another process or thread off the port
 * meanwhile.
 *
 * Borel and 12-bay nisk boards: /dev/ttyS0, four patterns (RTS and DTR), up to three reads a pattern 100 microseconds
 * apart. Before them the port is set to 9600 baud, 8 data bits, canonical with echo, all control characters off, and
 * the line "loop back test" is sent and must come back. The wait for it ends after 3 seconds when from_cmdline is not
 * 0; otherwise the call blocks until something arrives. The port, once opened, stays open whatever the result: closing
 * it would drop its lines. Each call takes one more descriptor.
 *
 * All other boards: /dev/ttyS2, eight patterns (DTR, RTS and secondary transmit), one read a pattern. Where the
 * appliance driver shows /proc/quorvel/gpio/mctrl/mctrl_mode, secondary transmit is driven through it and
 * /proc/quorvel/gpio/mctrl/force_tx, and counts as high while they read "gpio" and "1" up to their line ends. A
 * force_tx file that is missing reads as low.
 *
 * Prints, only when from_cmdline is not 0: the eight lines after each pattern; on /dev/ttyS0 "Loop back test success."
 * or "Loop back test failed.", "NG" for every failed pattern, and at the end "OK" or "NG retval = MASK"; on /dev/ttyS2
 * at the end "OK" or "NG". Each is a line.
 * @return a mask with bit i set for every pattern i that failed, 0 when all passed; -1 when the port cannot be opened
 * (silent) or the text does not come back (EIO). */
QUORVEL_API int LibQuorvelBin_UpsTest(void);

/** Wipes the NAND flash partitions named "nboot" and "nroot" after switching off booting from NAND.
 *
 * Runs, found on the caller's PATH: "nvram -c get EnableNandBoot"; unless the first line of its answer with a "=" has a
 * value that reads as 0 (no such line counts as 0), "nvram -c set EnableNandBoot 0", whose output lines are shown;
 * "flash_eraseall /dev/mtdcharN" for each partition, N being its number in /proc/mtd. A partition that is not listed,
 * or not among the first eight devices, runs the tool without a device. The tools' own statuses are not looked at. A
 * command counts as not started when its pipe cannot be made, and when the shell does not find it (127) or cannot
 * execute it (126).
 *
 * What was begun is finished: from the first command to the last the signals that end a process are held back (SIGKILL
 * cannot be), and a reader that goes away stops nothing.
 *
 * Prints "Erasing DEVICE ..." for each partition, and where it applies "Can't open /proc/mtd (don't mount procfs?)",
 * "Not enough area!" (a name without an end within 1024 characters), "Command execute failed(cmd=COMMAND)", "Warning!
 * Disabling NandBoot failed!". Each is a line.
 * @return 0 the erase ran for both; 1 that of nboot could not be started; 2 that of nroot could not be started; 3
 * booting from NAND was on (or unknown) and switching it off could not be started: nothing was erased. */
QUORVEL_API int LibQuorvelBin_NandErase(void);

QUORVEL_END_DECLS

#endif
