/** @file
 * Network: what the kernel knows of an interface, how the settings configure it, IPv4 address arithmetic and the net
 * helper command, name servers, interface renaming, the Ethernet report, and files that only the unit they were written
 * on can read.
 *
 * IPv4 addresses are 32-bit values in network byte order (as in struct in_addr) or four octets in dotted order; nothing
 * converts them. An interface name longer than 15 characters is cut to 15 where the kernel is asked about it; a
 * function that changes an interface refuses it (ENODEV), and so does one that looks below /sys/class/net for a name
 * with "/", for "." and "..", and for no name at all. A null pointer where a name, a record or a buffer is expected
 * gives the function's failure result, silently but for LibQuorvelBin_IsNetIfDhcp, which prints its own name first. */
#ifndef QUORVEL_NET_H
#define QUORVEL_NET_H

#include <stddef.h>
#include <stdint.h>

#include "api.h"

QUORVEL_BEGIN_DECLS

/* ---- Interfaces, as the kernel answers ----
 *
 * Each call opens an AF_INET datagram socket (close-on-exec), issues the named ioctl, closes the socket, and writes
 * nothing to standard output. Failures give -1, outputs untouched, the kernel's errno (ENODEV: no such interface;
 * EADDRNOTAVAIL: it has no address), and one line on standard error: "FUNCTION:REASON" when there is no socket, "IOCTL
 * :REASON" when the ioctl fails. */

/** The hardware address of an interface, through SIOCGIFHWADDR.
 * @param address  receives the first 6 bytes
 * @return 0 or -1; the ioctl's failure line begins with "SIOCSIFHWADDR". */
QUORVEL_API int Netdev_GetHwAddr(const char* ifname, uint8_t address[6]);

/** The IPv4 address of an interface, through SIOCGIFADDR. @return 0 or -1 (none set). */
QUORVEL_API int Netdev_GetIpAddr(const char* ifname, uint32_t* address);
/** The address of a point-to-point link's other end, through SIOCGIFDSTADDR; on any other kind of interface its own
 * address. @return 0 or -1 (none set). */
QUORVEL_API int Netdev_GetDstAddr(const char* ifname, uint32_t* address);
/** The netmask of an interface, through SIOCGIFNETMASK. @return 0 or -1 (no address set). */
QUORVEL_API int Netdev_GetNetmask(const char* ifname, uint32_t* netmask);
/** The broadcast address of an interface, through SIOCGIFBRDADDR. @return 0 or -1 (no address set). */
QUORVEL_API int Netdev_GetBroadAddr(const char* ifname, uint32_t* address);

/** The MTU in bytes, through SIOCGIFMTU, or -1. */
QUORVEL_API int Netdev_GetMtu(const char* ifname);
/** The flag word (IFF_UP ...), through SIOCGIFFLAGS, or -1. The kernel's 16 bits are taken as a signed number: a word
 * with bit 15 set is negative. */
QUORVEL_API int Netdev_GetFlags(const char* ifname);
/** The interface index, through SIOCGIFINDEX, or -1. */
QUORVEL_API int Netdev_GetIfIndex(const char* ifname);
/** The metric, through SIOCGIFMETRIC, or -1. */
QUORVEL_API int Netdev_GetMetric(const char* ifname);

/** Where a network device sits: the kernel's struct ifmap in its 32-bit layout, 16 bytes on every machine. Addresses
 * that do not fit are cut to their low 32 bits. */
struct netdev_map {
    uint32_t mem_start;
    uint32_t mem_end;
    uint16_t base_addr;
    uint8_t irq;
    uint8_t dma;
    uint8_t port;
    uint8_t padding[3]; /* zero */
};

/** The device map of an interface, through SIOCGIFMAP. @return 0 or -1. */
QUORVEL_API int Netdev_GetMap(const char* ifname, struct netdev_map* map);

/** Sets address (SIOCSIFADDR), then netmask (SIOCSIFNETMASK), over one socket.
 * @return 0 or -1, for a name of more than 15 characters with "SIOCSIFADDR :No such device"; when only the netmask is
 * refused the new address stays. */
QUORVEL_API int Netdev_SetIpAddr(const char* ifname, uint32_t address, uint32_t netmask);

/** An AF_INET datagram socket, close-on-exec, to be closed by the caller.
 * @return the descriptor, or -1 and "socket fail: REASON" on standard error. */
QUORVEL_API int OpenSocket(void);

/** Has no behaviour; kept for programs that link it. @return -1 (ENOSYS). */
QUORVEL_API int getmac(void);

/** Prints seven lines KEY_IFNAME=VALUE: MACADRS (upper-case, colons), IPADDRS, BCAST, NETMASK (dotted), MTU, FLAG (0x,
 * lower-case hexadecimal), IFINDEX. Each comes from its getter above; one that fails, an MTU below 1, and negative
 * flags or index give the value "error" on that line alone.
 * @return 0 (also for null, which prints nothing). */
QUORVEL_API int getifinfo(const char* ifname);

/* ---- Interface settings ----
 *
 * Existence comes from /sys/class/net, settings from the key=value file /etc/tevra/info; a missing file or key counts
 * as an empty value, so what asks the settings fails for a null pointer only. Ports and trunk groups are numbered from
 * 1 in keys: the low 8 bits of the interface's index, plus 1 (256 for a name without a number). The members of a trunk
 * group are separated by blanks and tabs. */

/** The interfaces that the net helper lists, in its order. */
extern QUORVEL_API const char target_ifs[10][32];

/** 1 when trunk group 1 or 2 has members (enet_port_trunk_group_N_members is not empty), else 0. errno, cleared before
 * the call, tells why the settings could not be read when they are there. */
QUORVEL_API int LibQuorvelBin_IsBondingMode(void);

/** The number of entries of /sys/class/net, low 16 bits; 0 when it cannot be read. */
QUORVEL_API int LibQuorvelBin_GetNetIfNum(void);

/** 1 when /sys/class/net has an entry of exactly this name, else 0; "." and ".." are none. */
QUORVEL_API int LibQuorvelBin_IsExistNetIf(const char* ifname);

/** The number formed by the first run of digits of a name (0 for wdev0ap1; at most INT_MAX), or -1 (ENODATA). */
QUORVEL_API int LibQuorvelBin_GetInterfaceIndex(const char* ifname);

/** Whether an interface is switched on: names beginning with "lo", and those beginning with "eth" with index 0, always;
 * "bond" as the first member of its trunk group (enet_port_MEMBER_enabled); other "eth" by enet_port_N_enabled. @return
 * 1 when the value begins with "on", else 0; 0 for every other name. */
QUORVEL_API int LibQuorvelBin_IsNetIfEnabled(const char* ifname);

/** Whether an interface takes its address by DHCP: names beginning with "lo" always; "bond" as the first member of its
 * trunk group (enet_port_MEMBER_ip_address); "eth" by enet_port_N_ip_address. Traces on standard output at every call:
 * a line with its own name, then (not for "lo") lines behind that name: "bonding" or "eth" for such a name, "value =
 * VALUE", and "returning 1" when it is.
 * @return 1 when the value begins with "dhcp", else 0. */
QUORVEL_API int LibQuorvelBin_IsNetIfDhcp(const char* ifname);

/* ---- Address arithmetic and the net helper ---- */

/** One IPv4 quantity. */
struct ip_record {
    char sz_ip[16];  /* dotted quad; without terminator when 16 characters long */
    uint8_t u_ip[4]; /* u_ip[0] is the first number of the dotted quad */
};

/** What is known of one interface's address. */
struct host_info {
    char hostname[128];
    char if_name[32];
    struct ip_record ip;
    struct ip_record mask;
    struct ip_record net_addr;
    uint32_t mask_size; /* 0 to 32 */
};

/** Fields for LibQuorvelBin_PrintNetInfo; -1 selects all, labelled. */
enum {
    NET_INFO_HOSTNAME = 0x1,
    NET_INFO_IF_NAME = 0x2,
    NET_INFO_IP = 0x4,
    NET_INFO_MASK = 0x8,
    NET_INFO_MASK_SIZE = 0x10,
    NET_INFO_NET_ADDR = 0x20,
    NET_INFO_LABELS = 0x8000
};

/** Clears the three addresses and the mask size; hostname and if_name stay. @return 0, or -1 for null. */
QUORVEL_API int LibQuorvelBin_Init(struct host_info* info);

/** Parses sz_ip into u_ip. Pieces between "." are read as decimal numbers of which the low 8 bits are kept (300 is 44,
 * -1 is 255, 9999999990 is 246, a piece that is no number is 0); empty pieces are skipped; pieces behind the fourth are
 * not looked at. Traces each octet above debug level 9.
 * @return 0, or -1 when there are fewer than four pieces (EINVAL): octets read so far are kept. */
QUORVEL_API int LibQuorvelBin_IpAtoU(struct ip_record* address);

/** Netdev_GetIpAddr into u_ip; sz_ip stays. @return its result. */
QUORVEL_API int LibQuorvelBin_GetIpInfo(const char* ifname, struct ip_record* address);
/** Netdev_GetNetmask into u_ip; sz_ip stays. @return its result. */
QUORVEL_API int LibQuorvelBin_GetNetmask(const char* ifname, struct ip_record* netmask);

/** The network address: u_ip of the first two, ANDed octet by octet, into u_ip of the third.
 * @return 0, or -1 for null. */
QUORVEL_API int LibQuorvelBin_GetNetip(const struct ip_record* ip, const struct ip_record* mask,
                                       struct ip_record* net_addr);

/** The prefix length of a mask, from u_ip: 8 for each leading 255, and the first octet among 254, 252, 248, 240, 224,
 * 192, 128, 0 adds its bits and ends the count. Any other octet adds nothing and the count goes on behind it
 * (255.3.255.0 gives 16, 255.0.255.255 gives 8). Traces above debug level 9.
 * @return 0 to 32; 0 for null. */
QUORVEL_API unsigned int LibQuorvelBin_GetMaskSize(const struct ip_record* mask);

/** Prints the selected fields, one a line, in the order if_name, hostname, ip, mask, mask_size, net_addr (addresses
 * from u_ip). With NET_INFO_LABELS an empty line comes first and each value stands behind a label of ten characters.
 * @return 0, or -1 for null. */
QUORVEL_API int LibQuorvelBin_PrintNetInfo(const struct host_info* info, int selection);

/** Fills a record from an interface: if_name (cut to 31 characters), address, netmask, mask size and network address;
 * hostname stays.
 * @return 0, or -1 when address or netmask cannot be had: what was filled before stays. */
QUORVEL_API int LibQuorvelBin_FillInfo(struct host_info* info, const char* ifname);

/** The net helper: `FRONTEND net [OPTION]...`. Without options it prints every field, labelled, of each interface of
 * target_ifs that has an address. -i IF prints those of one interface; -c -I ADDRESS -M NETMASK computes them; -o
 * ip_addr|mask|mask_size|net_addr (matched by that prefix, the last one given wins) prints one bare value; -v or -V
 * prints "Version 1.00"; -h the usage; -d sets debug to 1; words behind "--" are ignored. Options work in order, so
 * that -v ends the command with 0 wherever it stands behind options that are right. Interfaces without an address leave
 * the kernel's reason on standard error only.
 * @return 0; -1 without a command word (EINVAL), for an unknown option, an unknown -o field ("Invalid
 * argument(FIELD)!!!"), an interface
 *         without address (or none given), and a calculation in which address or netmask is missing or
 *         has fewer than four numbers. Shares getopt's state with all that use getopt. */
QUORVEL_API int LibQuorvelBin_NetHelper(int argc, char** argv);

/* ---- Name servers ----
 *
 * From /etc/resolv.conf, whose lines are taken in pieces of at most 1023 characters; fields are separated by blanks and
 * tabs and are at most 127 characters long. When it is no regular file that can be read: "resover setting
 * file(/etc/resolv.conf) is not exist!"; when opening it then fails: "can't open resover setting
 * file(/etc/resolv.conf)", on standard output. Control bytes of an address are printed as "?". */

/** Whether a name server answers: `WORD [-t SECONDS] [-r RETRIES]` (3 and 2 unless given; other options are ignored).
 * For each "nameserver" line prints "Checking reachability to ADDRESS ... ", runs "nslookup -timeout=SECONDS
 * -retry=RETRIES ADDRESS" and ends the line with "NG" when a line of its output contains "timed out" and "OK"
 * otherwise. One that works longer than 4 * SECONDS * (RETRIES + 1) seconds is killed, which gives "NG" as well; for
 * that SECONDS below 1 count as 5, above 3600 as that, and RETRIES are held to 0 to 100. A command that cannot be
 * started, or that the shell cannot find or execute, gives "can't execute cmd (COMMAND)" instead and counts as no
 * answer. The address is one word of the command, in single quotes when it holds anything a shell would act on; one
 * that begins with "-", which would be an option of the tool, is passed over.
 * @param argv  argv[0] is the command word
 * @return 1 at the first OK, 0 when there is none (ENOPKG when a name server could not be asked for lack of nslookup)
 * or no file. Shares getopt's state with all that use getopt. */
QUORVEL_API int LibQuorvelBin_IsDNSReachable(int argc, char** argv);

/** The n-th name server. When /etc/tevra/info has both my_dnsN and enet_port_1_ip_address (not empty), it is the value
 * of the former, as it stands there. Otherwise, unless use_resolver is null ("don't check resover setting."), field 2
 * of the n-th line of /etc/resolv.conf that has two fields, if that line's field 1 is "nameserver"; lines with two
 * other fields count as well.
 * @param n             from 1
 * @param use_resolver  any pointer but null allows the resolver file; it is not looked behind
 * @param dst           cleared by the caller, at least 128 bytes; gets the characters, no terminator
 * @return 0, or -1 with dst untouched (ENODATA: nobody names it). */
QUORVEL_API int LibQuorvelBin_GetDNS(unsigned int n, const void* use_resolver, char* dst);

/* ---- Renaming, and the Ethernet report ---- */

/** Renames an interface, through SIOCSIFNAME: `WORD OLD NEW`. Older kernels refuse while it is up. A name of more than
 * 15 characters, old or new, is refused (ENODEV). Prints "Argument is wrong!" (no line end) for another number of
 * arguments, "Can't open socket", "Can't change if name".
 * @param argv  argv[0] is the command word
 * @return 0 or -1. */
QUORVEL_API int LibQuorvelBin_Nameif(int argc, char** argv);

/** Prints the lines MAC=, link= (Mb/s, 0 when unknown), duplex= (full or half), jumboframe=enable, mtu= of Ethernet
 * interfaces: `WORD [INTERFACE]`. MAC and mtu come from /sys/class/net/NAME, link and duplex from the driver
 * (SIOCETHTOOL, ETHTOOL_GSET); what cannot be read stays empty, 0 or half.
 *
 * Without an interface: eth0 and so on, as many as feature DEVICE_NETWORK_NUM tells; each record stands behind a line
 * "[NAME]" and prints only when from_cmdline is set; an empty line ends each in any case. With one: that record,
 * whatever from_cmdline is. from_cmdline also decides over the failure lines "Specified device is not exist", "Failed
 * to open PATH", "Failed to open socket", "Failed to ioctl", "Failed to get eth information (NAME)". Any other number
 * of arguments prints a usage.
 * @param argv  argv[0] is the command word
 * @return 0 (also when there is no interface to report), or -1 for a wrong number of arguments, or when an interface
 * does not exist (ENODEV) or its address or mtu file is empty (ENODATA): the report ends there. */
QUORVEL_API int LibQuorvelBin_EthInfo(int argc, char** argv);

/* ---- Files bound to a hardware address ----
 *
 * Both run /usr/local/ssl/bin/openssl through the shell (AES-256-CBC) with a pass phrase made of the interface's
 * hardware address (Netdev_GetHwAddr); pass phrase and command are wiped from memory before they return. The path is
 * one word of the command, in single quotes when a shell would act on it. A command of more than 255 characters is
 * never run cut: a path longer than 38 characters (deciphering: 175) runs nothing and gives 1 (E2BIG). They print
 * nothing themselves; openssl has its own messages. Result: -1 when the hardware address cannot be read, 1 when the
 * command exits with status 1, 0 for every other outcome: 0 alone does not tell that the work is done. errno, cleared
 * before the call, does: it is ENOPKG when there is no openssl and EIO for every other status but 0.
 *
 * What this does not keep out: while the command runs, the pass phrase stands in the list of processes, which every
 * account can read; a hardware address is no secret, everybody on the same network knows it; and in a directory where
 * others may write, they may put files of their own in the place of these. */

/** Enciphers a file in place: into PATH.1, which replaces PATH only when that succeeded. Whatever is called PATH.1 is
 * removed first, never written to, and a new one made that nobody else can read; when that fails nothing is run and the
 * result is 1. Mode and owner of PATH stay as they were. After a failure there is no PATH.1. What was begun is
 * finished: the signals that end a process are held back meanwhile (SIGKILL cannot be). */
QUORVEL_API int LibQuorvelBin_SetEncryptionMacAddressNicFile(const char* ifname, const char* path);

/** Deciphers a file to standard output; the file stays. */
QUORVEL_API int LibQuorvelBin_RecoveryEncryptionMacAddressNicFile(const char* ifname, const char* path);

QUORVEL_END_DECLS

#endif
