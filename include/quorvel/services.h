/** @file
 * Service helpers: iSCSI sessions and target configurations, the firewall, backup tasks. Each is a command entry point:
 * argv[0] is the command word, argv[1] its first argument. */
#ifndef QUORVEL_SERVICES_H
#define QUORVEL_SERVICES_H

#include <stddef.h>
#include <stdint.h>

#include "api.h"

QUORVEL_BEGIN_DECLS

/** The iSCSI command: what the kernel's target has in /proc/net/iet/session, and the target configurations
 * /etc/tevra/iscsi_disks1 to 32 (key iscsi_device0_target, the last part of the target's name, and
 * iscsi_device0_path_lun0, its device). It prints only when from_cmdline is 1; the result says it all the same.
 *
 *   session_info         a line "TID<>TARGET<>SID<>INITIATOR<>IP" for every connection, and "TID<>TARGET<>SID<><>" for
 *                        a target without session and connection, SID then being that of the latest session above, or
 *                        empty. A session without a connection prints nothing. Returns 0
 *   volume_info          a line "NUMBER<>DEVICE<>TID<>TARGET<>" for each of the 32 configurations, with empty texts for
 *                        what is not there; returns 0
 *   IsConnected          prints and returns how many sessions have a connection; without a session file 0, printing
 *                        nothing
 *   GetNewTID            prints and returns the lowest tid from 1 to 32 that no target has, or -1
 *   GetTIDfromTCID N     prints and returns the tid of the target of configuration N, or -1; returns -1 silently when N
 *                        is missing or does not begin with a digit. N is its leading decimal number, however long; 33
 *                        and above are -1, and 0 is a configuration too
 *
 * Names are as the session file has them in ":"-separated parts: the first three of a target's (under 128 characters
 * together), the first two of an initiator's (at most 126). A name of fewer parts, or of more characters, is empty. The
 * short name is the third part. A target whose name is empty does not take its tid. An address is cut at its first ":".
 * A configuration finds the first target with its short name, and with that tid the name of the first target that has
 * it. Lines of the session file are read in pieces of at most 1023 characters.
 *
 * Initiators choose their own names: a line whose first word begins with "tid:", "sid:" or "cid:" is that of a target,
 * a session or a connection, whatever stands behind; only another line is searched for these words, in this order.
 * Control bytes, and the two by which UTF-8 writes a control character, are printed as "?". "<>" in a name stays: the
 * address is what stands behind the last "<>" of a line.
 * @param argc  entries of argv
 * @param argv  0 the command word, 1 the subcommand, 2 its parameter
 * @return as above; -1 with the usage text for any other subcommand or none (EINVAL); ENODATA for a tid that is not
 * there. */
QUORVEL_API int LibQuorvelBin_iSCSIHelper(int argc, char** argv);

/** A service that the firewall knows. Every port stands for TCP and UDP. */
struct firewall_service {
    const char* name;
    int port_count;
    const int* ports;
};

#define QUORVEL_FIREWALL_SERVICES 16

/** The services that the firewall knows, in the order in which it lists them. */
extern QUORVEL_API const struct firewall_service set_firewall_tab[QUORVEL_FIREWALL_SERVICES];

/** The firewall command: keeps services off network ports with DROP rules in the kernel's filter table, of IPv4 only.
 * The ports file, /etc/tevra/service_ports, has a line "SERVICE<>FLAG<>FLAG<>;" for each service: a flag for each
 * Ethernet port, "0" to deny; anything else, a missing flag included, allows. Flags are fields as
 * LibQuorvelBin_GetSpecifiedKey cuts them, so that runs of "<>" count as one. Lines are read in pieces of at most 1023
 * characters; lines of other services are passed over.
 *
 *   --start, --restart   flush the filter table (every rule, whoever made it), then add the rules of the ports file
 *                        with one iptables command each: for every denied port of a service tcp and udp in chain INPUT,
 *                        tcp and udp in chain OUTPUT (by destination port). Prints a line "SERVICE | FLAG | ..." for
 *                        every service, a flag being "  D  " or blank. An unknown service's name is printed without a
 *                        line end
 *   --stop               flush the filter table
 *   --config FILE        the ports file to use, if it exists; a name of one character is passed over
 *   --def_config         write the default ports file, which allows everything
 *   --ports_list         print the services and their ports
 *   --version, -v        print the version
 *   --help, -h           print the usage
 *
 * The ports file is read to its end before the filter table is touched, and nothing is printed before the last rule is
 * in. Between the flush and the last rule the signals that end a process are held back (SIGKILL cannot be). How many of
 * the commands failed, and which was the first, is told on standard error; the result is 0 all the same, and errno,
 * cleared before the call, is EIO; so it is for a start without a ports file.
 *
 * Callers take turns: who starts or stops while another's rules are being loaded waits until they are in, but not for
 * one that has been at the same command for ten seconds. The lock is the file /var/run/libquorvel_bin.firewall, for
 * root only; without a /var/run there are no turns.
 *
 * The default file is written beside the old one, which it replaces when it is whole and on the disk (a link stays one
 * and its target is replaced; what is no regular file is not). It keeps the mode and, where the caller may give it
 * away, the owner of the old one; a new one has mode 0644 or what the umask leaves of it.
 *
 * Options are read in order. The last of --start, --stop and --restart holds; --def_config and what stands below it act
 * at once and end the command. -c FILE is accepted and ignored; getopt_long reports an unknown option on standard
 * error, and it is skipped.
 *
 * The name behind --config is a format with nothing to convert: "%%" gives "%", a conversion (flags, width, precision,
 * length and one of the letters diouxXeEfFgGaAcCsSpnm) gives nothing, and any other "%" stands for itself.
 *
 * The number of Ethernet ports is feature DEVICE_NETWORK_NUM; below 1 no flag is read or written, and a missing feature
 * prints "wrong feature name". Bonded ports (LibQuorvelBin_IsBondingMode) have the first flag of a line only, and are
 * interface bond0; otherwise flags are for eth0, eth1, ... getopt and the filter table are shared with other threads.
 * @param argc  entries of argv
 * @param argv  0 the command word, then the options
 * @return 0 for all that ran, also without an operation, and when no ports file could be found or opened (which it
 * prints; the filter table is empty then, everything allowed); -1 for the usage text (EINVAL), when the default file
 * could not be made ("Can't open config file(PATH)") or not be written, and, with nothing changed, when memory ran out
 * or the ports file could not be read to its end, or the settings of the Ethernet ports are there and cannot be read.
 */
QUORVEL_API int LibQuorvelBin_FirewallEntry(int argc, char** argv);

/** The backup command: what a backup task's settings are, and what rsync is to be told for it. Reads and prints only.
 *
 * The settings of task N are in /etc/tevra/backup<N>, a key and a value a line, fields being cut at "=", so that a
 * value ends at its first "=". The last value of a key holds, but the first of "folder" and "name", even an empty one;
 * later ones print "Warning! specified dest already have a velue". A line has at most 1023 characters: what stands
 * behind is no part of any setting, the entry of a folder list that is cut there is left out, and a line on standard
 * error says so.
 *
 *   Info N               prints the settings, a line each, control bytes in folder and name as "?". What is missing or
 *                        not known is "Unknown" (start_time "-1:-1", keep_generation -1, folder and name empty)
 *   GetDestination N P   prints "SOURCE DESTINATION" for pair P, counted from 1, of the task's folders; nothing for a
 *                        missing pair
 *   Destinfo N           prints that for every pair up to the first missing one
 *   Version, --version, -v   prints "0.01"
 *   help, --help, -h         prints the usage
 *
 * A pair is two entries of the "<>"-separated folder list: "share/dir/sub" here, or "host@share/dir/sub". On another
 * host than this one (gethostname) the address is "rsync://host/dir_SUB/" with SUB percent-encoded
 * (LibQuorvelBin_URLEncode), otherwise "share/dir/sub/". An entry without share and directory is printed as it is.
 *
 * A pair counts as missing, and a line on standard error says so, when an entry holds a control byte, a component ".."
 * or a word (also the one behind "@") that begins with "-": rsync would take it for an option, or for a place outside
 * of the share. The same goes for the task's name where it becomes part of a destination. A blank in either is printed
 * as it is: a line of other than two words, or four with "--link-dest" as the third, does not tell where one ends. So
 * is a ":" in front of the first "/" of a word that is no "rsync://" address: rsync would take a host to stand before
 * it.
 *
 * With the setting hardlink on, a destination on this machine goes to a generation of its own,
 * "DESTINATION/task-NAME/TIME/HOST/SUB/", TIME being the local time to the second and HOST/SUB from the source; and
 * when the task's directory holds another generation (a name of digits only; the greatest counts, compared as 64-bit
 * numbers), " --link-dest TARGET" follows: the same place in that generation, relative to the new destination
 * directory, which is what rsync takes it as. There is one "../" for every level from the generation's directory down
 * to the destination. A generation of the same second is not an earlier one. A target above 1023 characters prints
 * "LibQuorvelBin_GetLastDestTarget : Warning! buffer is too short!" and is left away. Relative locations are looked up
 * from the working directory, as rsync does.
 * @param argc  entries of argv
 * @param argv  0 the command word, 1 the sub-command, then its arguments
 * @return 0, also with the usage text, for an unknown sub-command, missing arguments (or other than two for
 * GetDestination), or a task number that is not all digits (behind "LibQuorvelBin_LoadTaskInfo : -1"); -1 with the
 * usage text without a sub-command (EINVAL). */
QUORVEL_API int LibQuorvelBin_BackupHelperEntry(int argc, char** argv);

QUORVEL_END_DECLS

#endif
