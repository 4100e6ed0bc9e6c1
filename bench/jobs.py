"""What bench/run measures: the jobs, who does each, and the targets.

A job's floor is a program of bench/floor and its arguments; `ours` is the installed command's. A rival is a command line
as a script writer would have it, run by the shell only where it needs one. Targets are million instructions, system calls
and wall time to the floor. Programs that a command
starts are measured with it.
"""
from dataclasses import dataclass, field

COMMAND = "/usr/bin/libquorvel_bin"
STATIC_COMMAND = "/usr/bin/static/libquorvel_bin"

SMALL, LARGE = "/etc/bench/small", "/etc/bench/large"
LAST_SMALL, LAST_LARGE = "SETTING_00040", "SETTING_10000"
SESSIONS = "/proc/net/iet/session"
TWELVE = "sdc sda sdh sdb sdg sdd sdf sde sdj sdi sdm sdl".split()


@dataclass
class Job:
    name: str
    ours: list
    floor: list = field(default_factory=list)
    rivals: list = field(default_factory=list)  # argument lists; one string is a line for the shell
    target: tuple = ()
    model: str = "nisk-12bay"
    setup: tuple = ()  # name of a function of inside.py, and its arguments
    quick: bool = False  # part of bench/run --quick
    static: tuple = ()  # target of the static command
    parts: list = field(default_factory=list)  # commands that together tell the same


def readers(path, key, all_of_them):
    """Everyday ways to read one setting of a key=value file."""
    few = [["grep", "-m1", f"^{key}=", path], ["sed", "-n", f"s/^{key}=//p;T;q", path],
           ["mawk", "-F=", f'$1 == "{key}" {{ print $2; exit }}', path]]
    lens = f"Simplevars.lns incl {path}"
    return few + [["crudini", "--get", path, "", key],
                  ["augtool", "-A", "--transform", lens, "get", f"/files{path}/{key}"]] * all_of_them


def session_report(awk):
    """The session report in awk, for targets that have sessions."""
    return [awk, """
        /tid:/ { split($1, part, ":"); tid = part[2]; target = substr($2, 6); next }
        /sid:/ { split($1, part, ":"); sid = part[2]; initiator = substr($2, 11); next }
        /cid:/ { split($2, part, ":"); print tid "<>" target "<>" sid "<>" initiator "<>" part[2] }""", SESSIONS]


def sessions(lines, target, quick=False, static=()):
    return Job(f"session report, {lines:,} lines", ["iscsi", "session_info"], ["sessions"],
               [session_report("mawk"), session_report("gawk")], target, setup=("write_sessions", lines), quick=quick, static=static)


def replace(path, key):
    return f"mawk -F= '$1 != \"{key}\" {{ print }} END {{ print \"{key}=new\" }}' {path} >{path}_x && mv {path}_x {path}"


JOBS = [
    Job("start and print a version", ["--version"], ["version"],
        [["mawk", 'BEGIN { print "libquorvel_bin 1.0.0" }']], (0.185, 44, 1.12), quick=True, static=(0.045, 18, 0.75)),
    Job("read one setting, 40 lines", ["config", "read", f"{SMALL}/{LAST_SMALL}"], ["read_setting", SMALL, LAST_SMALL],
        readers(SMALL, LAST_SMALL, True), (0.180, 46, 1.15), quick=True, static=(0.060, 22, 0.8)),
    Job("read one setting, 10,000 lines", ["config", "read", f"{LARGE}/{LAST_LARGE}"],
        ["read_setting", LARGE, LAST_LARGE], readers(LARGE, LAST_LARGE, False), (1.00, 64, 1.2), static=(0.80, 36, 0.95)),
    Job("write one setting, 40 lines", ["config", "write", f"{SMALL}/{LAST_SMALL}", "new"],
        ["write_setting", SMALL, LAST_SMALL, "new"],
        [["crudini", "--set", SMALL, "", LAST_SMALL, "new"],
         ["augtool", "-A", "--transform", f"Simplevars.lns incl {SMALL}", "-s", "set", f"/files{SMALL}/{LAST_SMALL}", "new"]],
        (0.880, 350, 1.1)),
    Job("write one setting, 10,000 lines", ["config", "write", f"{LARGE}/{LAST_LARGE}", "new"],
        ["write_setting", LARGE, LAST_LARGE, "new"], [replace(LARGE, LAST_LARGE)], (3.60, 450, 1.3)),
    Job("list a file's settings, 40 lines", ["config", "read", "small.bench.etc"], ["list_settings", SMALL],
        [["sed", "s/^/\\t\\t/", SMALL], ["mawk", '{ print "\\t\\t" $0 }', SMALL]], (0.200, 50, 1.15)),
    Job("list a file's settings, 10,000 lines", ["config", "read", "large.bench.etc"], ["list_settings", LARGE],
        [["sed", "s/^/\\t\\t/", LARGE], ["mawk", '{ print "\\t\\t" $0 }', LARGE]], (3.20, 150, 1.3)),
    Job("name one disk of twelve", ["diskname", "sdl"], ["name_disk", "sdl"],
        [["lsscsi", "8:0:0:0"], ["udevadm", "info", "-q", "name", "/sys/block/sdl"]],
        (0.195, 58, 1.15), setup=("complete_block_devices",), quick=True, static=(0.075, 28, 0.85)),
    Job("name all twelve disks, one command", ["diskname", *TWELVE], ["name_disk", *TWELVE], [["lsscsi"], ["lsblk", "-no", "NAME"]],
        (0.360, 240, 1.6), setup=("complete_block_devices",)),
    Job("address arithmetic", ["net", "-c", "-I", "192.168.11.12", "-M", "255.255.255.0", "-o", "net_addr"],
        ["address", "192.168.11.12", "255.255.255.0"],
        [["busybox", "ipcalc", "-bn", "192.168.11.12", "255.255.255.0"], ["ipcalc", "-bn", "192.168.11.12/255.255.255.0"],
         ["gawk", 'BEGIN { split("192.168.11.12", a, "."); split("255.255.255.0", m, "."); '
                  'for (i = 1; i < 5; i++) printf "%d%s", and(a[i], m[i]), i < 4 ? "." : "\\n" }']],
        (0.185, 44, 1.12), quick=True, static=(0.052, 19, 0.75)),
    Job("Ethernet report of one interface", ["ethinfo", "eth0"], ["ethernet", "eth0"],
        [["ethtool", "eth0"], ["ip", "link", "show", "eth0"]], (0.190, 56, 1.15), quick=True),
    Job("all interfaces", ["net"], ["interfaces"], [["ip", "-br", "addr"], ["ip", "-4", "addr"], ["ip", "-json", "-4", "addr"]],
        (0.260, 95, 1.3), static=(0.10, 60, 0.95)),
    sessions(10, (0.190, 50, 1.15), True),
    sessions(1000, (0.750, 70, 1.35)),
    sessions(100000, (60, 1800, 2.0), static=(45, 620, 1.2)),
]

# What the single commands tell of an appliance of twelve bays: each room once, each bay by itself.
PARTS = [words.split() for words in (
    "platform", "series", "kernel", "firminfo", "bonding", "spooldir", "disks", "md diskmode", "net", "ethinfo",
    "get_dns 1 resolver", "iscsi session_info", "iscsi volume_info", "firewall --ports_list", "backup Info 1",
    "fstype /mnt/array1", "fsinfo /mnt/array1")] + [words.format(bay=bay, index=bay - 1, device=TWELVE[bay - 1]).split()
    for bay in range(1, 13) for words in (
        "connected {index}", "powered {index}", "temperature /dev/disk{bay}", "partition_blocks {device}", "lvm_volume {device}",
        "disk_signature get /dev/disk{bay}", "disk_readerrorcnt get /dev/disk{bay}", "mydisk disk{bay}")]
PARTS_LIMIT = 1.5

# Jobs that are mostly other programs. The floor is what must be run, as (times, shell line); the target is the command's
# own instructions in millions, and its share of what the others cost.
PARENTS = [
    Job("firewall start, 224 rules", ["firewall", "--start"],
        [(1, "iptables --table filter --flush"), (224, "iptables -A INPUT -p tcp --dport 445 -j DROP -i eth0")],
        ["sh /etc/bench/firewall.sh"], (0.60, 0.03), model="borel-4bay", setup=("deny_everything",)),
    # mdadm that finds no array, and no front-panel tool at all: the least that the two command lines can cost.
    Job("md front-panel line, four disks", ["md", "diskmode"], [(4, "/usr/sbin/mdadm --examine /dev/disk1_6"), (4, "true | grep hdd1")],
        [], (None, 0.05), model="borel-4bay"),
    # A tool for each bay's superblock, one for its drive, and one for the power of all.
    Job("report as JSON, twelve bays", ["report", "--json"], [(12, "/usr/sbin/mdadm --examine /dev/disk1_6"), (13, "true")],
        [["lsblk", "-J", "-O"], ["lshw", "-json"]], (None, None), setup=("complete_block_devices",), parts=PARTS),
]


@dataclass
class Question:
    """A function asked again and again in one process. The target: instructions, system calls, time to the floor."""
    name: str
    function: str
    floor: str
    word: str
    arguments: list
    target: tuple
    lines: int = 0  # of the settings file that is asked
    model: str = "nisk-12bay"
    quick: bool = False


def key_question(lines, target):
    return Question(f"`get_StringbyKey`, last key of {lines:,} lines", "get_StringbyKey", "floor_scan", "key",
                    ["/etc/bench/lines", f"SETTING_{lines:05}"], target, lines, quick=lines < 1000)


IN_PROCESS = [
    key_question(10, (2000, 5, 1.4)),
    key_question(100, (9500, 5, 1.4)),
    key_question(1000, (85000, 7, 1.5)),
    key_question(10000, (830000, 21, 1.5)),
    key_question(100000, (8300000, 168, 1.8)),
    Question("`LibQuorvelBin_GetSpecifiedKey`, field 3 of a 28-byte line", "LibQuorvelBin_GetSpecifiedKey", "floor_field", "field",
             ["8 0 976773168 sda sdb sdc  \n", " "], (650, 0, 2.5), quick=True),
    Question("`LibQuorvelBin_GetDisknameFromDevname`, twelfth disk of the 12-bay table", "LibQuorvelBin_GetDisknameFromDevname",
             "floor_disk", "disk", ["sdl"], (14000, 17, 1.4), quick=True),
]


@dataclass
class Slope:
    """A command at growing sizes: what one more line or device costs."""
    name: str
    ours: list
    setup: str  # a function of inside.py, its arguments and the size
    arguments: list = field(default_factory=list)
    unit: str = "line"
    sizes: tuple = (10, 100, 1000, 10000, 100000)
    model: str = "nisk-12bay"
    quick: bool = False


DEVICES = dict(setup="write_block_devices", unit="device", sizes=(1, 10, 100, 1000))
SLOPES = [
    Slope("write a setting", ["config", "write", "/etc/bench/lines/NEW", "x"], "write_settings_file", ["/etc/bench/lines"]),
    Slope("list a file's settings", ["config", "read", "lines.bench.etc"], "write_settings_file", ["/etc/bench/lines"]),
    Slope("session report", ["iscsi", "session_info"], "write_sessions"),
    Slope("name one disk", ["diskname", "sdl"], **DEVICES),
    Slope("find the device of a disk", ["devname", "disk12"], **DEVICES),
    Slope("name all disks", ["disks"], **DEVICES),
]
