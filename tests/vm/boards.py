"""Two boards under qemu, a person at the terminal of each, and hands that plug disks.

The terminal is a serial line of the guest, the hands are qemu's monitor and a second shell. After learning, each board
is started again with its disks in another order, one of them missing and a controller more. Every disk carries its
bay's name as its serial number. udev and the journal of the machine are systemd's.
"""
import base64
import ctypes
import json
import os
import pathlib
import re
import signal
import socket
import subprocess
import sys
import time

import pexpect.fdpexpect

PR_SET_PDEATHSIG = 1
prctl = ctypes.CDLL(None).prctl
PROMPT = "ready> "


def connect(path):
    for _ in range(100):
        try:
            line = socket.socket(socket.AF_UNIX)
            line.connect(path)
            return line
        except OSError:
            line.close()
            time.sleep(0.1)
    raise RuntimeError("qemu did not start")


def serial_of(device):
    return re.search(r"serial=(\w+)", device).group(1)


class Shell:
    """A shell on a serial line of the guest."""

    def __init__(self, path):
        self.line = connect(path)
        self.expect = pexpect.fdpexpect.fdspawn(self.line.fileno(), timeout=240, encoding="utf-8",
                                                logfile=open(path + ".log", "a"))
        # What the guest printed before there was anybody to read it is gone.
        while self.expect.expect_exact(["# ", pexpect.TIMEOUT], timeout=1) == 1:
            self.expect.send("\n")
        self.expect.send(f"PS1='{PROMPT}' PS2=\n")
        self.expect.expect_exact(PROMPT)
        self.ask("stty -echo cols 200; bind 'set enable-bracketed-paste off' 2>/dev/null")

    def ask(self, command):
        self.expect.send(command + "\n")
        self.expect.expect_exact(PROMPT)
        return self.expect.before.replace("\r", "").strip()


class Machine:
    def __init__(self, kernel, work, board, devices):
        self.work = work
        for name in ("terminal", "hands", "monitor"):
            if os.path.exists(f"{work}/{name}"):
                os.unlink(f"{work}/{name}")
        arguments = ["qemu-system-x86_64", "-cpu", "max", "-m", "512", "-nodefaults", "-display", "none", "-no-reboot",
                     "-kernel", kernel, "-initrd", f"{work}/tree.cpio",
                     "-append", f"console=ttyS0 quiet panic=-1 no_timer_check", "-serial", f"file:{work}/console",
                     "-serial", f"unix:{work}/terminal,server=on,wait=off",
                     "-serial", f"unix:{work}/hands,server=on,wait=off",
                     "-qmp", f"unix:{work}/monitor,server=on,wait=off", *board]
        for device in devices:
            arguments += ["-drive", self.drive(device), "-device", f"{device},drive={serial_of(device)},id={serial_of(device)}-disk"]
        self.process = subprocess.Popen(arguments, stdout=subprocess.DEVNULL, stderr=open(f"{work}/qemu", "w"),
                                        preexec_fn=lambda: prctl(PR_SET_PDEATHSIG, signal.SIGKILL))
        self.monitor = connect(f"{work}/monitor").makefile("rw")
        self.monitor.readline()
        self.command("qmp_capabilities")
        self.terminal = Shell(f"{work}/terminal")
        self.hands = Shell(f"{work}/hands")

    def drive(self, device):
        serial = serial_of(device)
        path = f"{self.work}/{serial}"
        with open(path, "a+b") as image:
            image.truncate(64 << 20)
        return f"if=none,id={serial},format=raw,cache=unsafe,file={path}"

    def command(self, name, **arguments):
        self.monitor.write(json.dumps({"execute": name, "arguments": arguments}) + "\n")
        self.monitor.flush()
        while True:
            answer = json.loads(self.monitor.readline())
            if "event" not in answer:
                return answer

    def add(self, device):
        """Plugs a disk that is described as on qemu's command line."""
        driver, *options = device.split(",")
        arguments = dict(option.split("=", 1) for option in options)
        serial = arguments["serial"]
        self.command("human-monitor-command", **{"command-line": f"drive_add 0 {self.drive(device)}"})
        answer = self.command("device_add", driver=driver, drive=serial, id=f"{serial}-disk", **arguments)
        if "error" in answer:
            raise RuntimeError(answer["error"])

    def pull_sata(self, serial):
        """Pulls a disk that qemu cannot unplug, and puts it back: the kernel's own way."""
        self.hands.ask(f"for d in /sys/block/sd*; do tail -c +5 $d/device/vpd_pg80 2>/dev/null | grep -q {serial} && disk=$d; done;"
                       " host=$(readlink -f $disk | grep -o 'host[0-9]*' | head -n 1); echo 1 >$disk/device/delete")

    def put_back(self):
        self.hands.ask("echo '- - -' >/sys/class/scsi_host/$host/scan")

    def serials(self):
        """The serial number of each disk by its kernel name."""
        answer = self.hands.ask("""for d in /sys/block/sd* /sys/block/nvme*n1; do [ -e $d ] || continue
            serial=$(cat $d/device/serial 2>/dev/null || tail -c +5 $d/device/vpd_pg80 2>/dev/null)
            case $(readlink $d) in */usb*) serial=$(cat $(readlink -f $d/device)/../../../../serial);; esac
            echo ${d##*/} $serial; done""")
        return dict(line.split()[:2] for line in answer.splitlines() if len(line.split()) > 1)

    def names(self):
        """The name of each disk by its serial number, if the name leads back."""
        answer = self.hands.ask("""for d in $(libquorvel_bin disks | cut -f 1 | grep -v -e -$); do
            libquorvel_bin explain --json $d | grep -E '^    "(device|answer|agrees)"' | sed 's/.*: //;s/[",]//g' | xargs
            done""")
        serials = self.serials()
        result = {}
        for line in answer.splitlines():
            device, name, agrees = line.split()
            result[serials.get(device, device)] = name if agrees == "true" else f"{name} one way"
        return result

    def await_disks(self, count):
        self.hands.ask(f"tries=300; until [ $(ls -d /sys/block/sd* /sys/block/nvme*n1 2>/dev/null | wc -l) = {count} ]"
                       " || [ $((tries -= 1)) = 0 ]; do sleep 0.1; done")

    def start_udev(self):
        self.hands.ask("mount -t cgroup2 cgroup2 /sys/fs/cgroup; echo 0123456789abcdef0123456789abcdef >/etc/machine-id; { /usr/lib/systemd/systemd-journald & } 2>/dev/null;"
                       " until [ -S /run/systemd/journal/dev-log ]; do sleep 0.1; done; ln -s /run/systemd/journal/dev-log /dev/log;"
                       " /usr/lib/systemd/systemd-udevd --daemon")
        self.trigger()

    def trigger(self):
        self.hands.ask("udevadm trigger --subsystem-match=block; udevadm settle")

    def links(self):
        """What each link by bay leads to: the serial number of the disk, and the number of the partition."""
        answer = self.hands.ask("""udevadm settle; for l in /dev/disk/by-bay/*; do [ -L $l ] || continue
            device=$(readlink -f /sys/class/block/$(basename $(readlink $l))); part=$(cat $device/partition 2>/dev/null)
            [ -z "$part" ] || device=${device%/*}
            echo ${l##*/} ${device##*/} ${part:+-part$part}; done""")
        serials = self.serials()
        return {bay: "".join([serials.get(device, device), *part])
                for bay, device, *part in (line.split() for line in answer.splitlines())}

    def log(self):
        """What the command said in the journal since this was asked last."""
        return self.hands.ask("journalctl --sync; journalctl -q -o cat -t libquorvel_bin --cursor-file=/run/cursor").splitlines()

    def partition(self, serial):
        """Two partitions on a disk."""
        device = {seen: device for device, seen in self.serials().items()}[serial]
        self.hands.ask(f"printf ',8M\\n,\\n' | sfdisk -q /dev/{device}; udevadm settle")

    def write_table(self, table):
        self.hands.ask("cat >/etc/diskpath.conf <<'END'\n" + table + "\nEND")

    def counts(self):
        """Reads and writes of each disk so far."""
        answer = self.hands.ask("for d in /sys/block/sd* /sys/block/nvme*n1; do [ ! -e $d ] || echo ${d##*/} $(cat $d/stat); done")
        fields = [line.split() for line in answer.splitlines()]
        return {device: (int(stat[0]), int(stat[4])) for device, *stat in fields}

    def busy(self):
        """The disks that are read within a second, and those that are written."""
        before = self.counts()
        time.sleep(1)
        after = self.counts()
        return [{device for device in before if after[device][i] > before[device][i]} for i in (0, 1)]

    def open_flags(self, device):
        """With which flags somebody has a disk open; nobody but the command has."""
        answer = self.hands.ask("grep flags $(ls -l /proc/[0-9]*/fd/* 2>/dev/null |"
                                f" sed -n 's,.* \\(/proc/[0-9]*/fd\\)/\\([0-9]*\\) -> /dev/{device}$,\\1info/\\2,p') /dev/null")
        return int(answer.split()[-1], 8) if answer else None

    def pull(self, serial, left):
        self.command("device_del", id=f"{serial}-disk")
        self.await_disks(left)
        # The picture of the disk is free when the device is.
        time.sleep(1)

    def record(self, path, option=""):
        """Records the appliance with busybox's shell, as a file here."""
        text = self.hands.ask(f"busybox sh /usr/bin/quorvel_record {option} /tmp/record; base64 /tmp/record; rm /tmp/record")
        with open(path, "wb") as record:
            record.write(base64.b64decode(text))

    def stop(self):
        self.terminal.expect.send("poweroff -f\n")
        self.process.wait(30)


def report(scenario, right, detail=""):
    print(f"ok {scenario}" if right else f"FAILED {scenario}\n{detail}", flush=True)


# Bay or port: how a disk gets there. SATA disks are there from the beginning.
MODERN_BOARD = ["-M", "q35", "-device", "pcie-root-port,id=slot1,chassis=1,addr=1c.0,multifunction=on",
                "-device", "pcie-root-port,id=slot2,chassis=2,addr=1c.1",
                "-device", "qemu-xhci,id=usb,addr=14.0", "-device", "usb-hub,bus=usb.0,port=2"]
MODERN_DISKS = {
    "disk1": "ide-hd,bus=ide.4,serial=disk1",
    "disk2": "ide-hd,bus=ide.0,serial=disk2",
    "disk3": "ide-hd,bus=ide.2,serial=disk3",
    "disk4": "nvme,bus=slot2,serial=disk4",
    "disk5": "nvme,bus=slot1,serial=disk5",
    "usbdisk1": "usb-storage,bus=usb.0,port=3,serial=usbdisk1",
    "usbdisk2": "usb-storage,bus=usb.0,port=2.4,serial=usbdisk2",
    "usbdisk3": "usb-storage,bus=usb.0,port=2.1,serial=usbdisk3",
}
# Not another AHCI controller: ATA ports are counted over all of them, which learning says.
MODERN_MORE = ["-device", "virtio-scsi-pci,id=more,addr=5"]

SAS_BOARD = ["-M", "pc", "-device", "megasas-gen2,id=sas,addr=5", "-device", "virtio-scsi-pci,id=cage,addr=6"]
SAS_DISKS = {
    "disk1": "scsi-hd,bus=sas.0,scsi-id=3,serial=disk1",
    "disk2": "scsi-hd,bus=sas.0,scsi-id=0,serial=disk2",
    "disk3": "scsi-hd,bus=sas.0,scsi-id=2,serial=disk3",
    "disk4": "scsi-hd,bus=cage.0,scsi-id=7,serial=disk4",
    "disk5": "scsi-hd,bus=cage.0,scsi-id=1,serial=disk5",
}
SAS_MORE = ["-device", "virtio-scsi-pci,id=more,addr=9", "-device", "qemu-xhci,id=usb,addr=a"]


def learn(machine, disks, at_boot):
    terminal = machine.terminal.expect
    terminal.send("libquorvel_bin learn --wait 3; echo status $?\n")
    ports = [f"usbdisk{n}" for n in (1, 2, 3)]
    asked = False
    for name in [f"disk{n}" for n in range(1, 6)] + ports:
        if not asked:
            terminal.expect(f"{name}: put a disk in")
        asked = name in at_boot
        if name in at_boot:
            machine.pull_sata(name)
        elif name in disks:
            machine.add(disks[name])
        else:
            terminal.send("\n")
            terminal.expect(f"{name} is left out")
            continue
        terminal.expect(f"This is {name}")
        terminal.send("\n")
        # Putting a disk back is seen while the next bay is asked for.
        if name in at_boot:
            terminal.expect("put a disk in")
            machine.put_back()
            terminal.expect("Its place has a bay already")
    terminal.expect("Type yes: ")
    shown = terminal.before
    terminal.send("yes\n")
    terminal.expect(r"status (\d)")
    status = terminal.match.group(1)
    terminal.expect_exact(PROMPT)
    return status, shown


def judge_board(kernel, work, name, title, board, disks, at_boot, more, missing, swapped, unsure):
    for serial in disks:
        pathlib.Path(work, serial).unlink(missing_ok=True)
    machine = Machine(kernel, work, board, [disks[name] for name in at_boot])
    machine.await_disks(len(at_boot))
    machine.start_udev()
    status, shown = learn(machine, disks, at_boot)
    names = machine.names()
    wanted = {name: name for name in disks}
    report(f"{title}: learnt by plugging", status == "0" and names == wanted, f"status {status}\n{shown}\n{names}")
    machine.trigger()
    links = machine.links()
    report(f"{title}: links by bay after learning", links == wanted, links)
    table = machine.hands.ask("cat /etc/diskpath.conf")
    machine.stop()
    print(table, file=sys.stderr)

    rest = [disk for name, disk in reversed(disks.items()) if name != missing]
    machine = Machine(kernel, work, board + more, rest)
    machine.write_table(table)
    machine.await_disks(len(rest))
    names = machine.names()
    del wanted[missing]
    report(f"{title}: another order, {missing} missing, a controller more", names == wanted, names)
    machine.start_udev()
    links = machine.links()
    report(f"{title}: links by bay", links == wanted, links)
    swap(machine, title, disks, swapped, wanted, len(rest))
    decide_nothing(machine, title, table, unsure)
    if not any(serial.startswith("usb") for serial in disks):
        interrupt(machine, title)
        blink(machine, title)
    machine.record(f"{work}/{name}.tar.gz")
    machine.stop()


def with_parts(links, serial):
    """The links that there must be, when a disk has two partitions."""
    bays = [bay for bay, disk in links.items() if disk == serial]
    return links | {f"{bay}-part{part}": f"{serial}-part{part}" for bay in bays for part in (1, 2)}


def swap(machine, title, disks, swapped, wanted, count):
    """Two disks change their places, and one goes on to another; a link is gone while its disk is."""
    one, other = swapped
    machine.partition(one)
    links = machine.links()
    report(f"{title}: links of partitions", links == with_parts(wanted, one), links)
    machine.pull(one, count - 1)
    machine.pull(other, count - 2)
    links = machine.links()
    report(f"{title}: links gone with their disks", links.keys() == wanted.keys() - {one, other}, links)
    for disk, place in ((one, other), (other, one)):
        machine.add(disks[place].replace(f"serial={place}", f"serial={disk}"))
    machine.await_disks(count)
    links = machine.links()
    report(f"{title}: links of two disks that changed places", links == with_parts(wanted | {one: other, other: one}, one), links)
    machine.pull(other, count - 1)
    machine.pull(one, count - 2)
    machine.add(disks[one])
    machine.await_disks(count - 1)
    links = machine.links()
    left = {bay: disk for bay, disk in wanted.items() if bay != other}
    report(f"{title}: links of a disk in another bay", links == with_parts(left, one), links)


def decide_nothing(machine, title, table, unsure):
    """A row that does not let decide, or that names two disks: no link, and a line in the journal for each disk."""
    row, without, reason = unsure
    before = machine.links()
    machine.write_table(row + "\n" + table)
    machine.log()
    machine.trigger()
    links, log = machine.links(), machine.log()
    gone = set(machine.serials().values()) - set(links.values())
    right = gone in without and len(log) == len(gone) and all(reason in line for line in log)
    report(f"{title}: no link, and a line in the journal", right, f"{links}\n{log}")
    machine.write_table(table)
    machine.trigger()
    links = machine.links()
    report(f"{title}: the links are back with the table", links == before and not machine.log(), links)


def interrupt(machine, title):
    """Ctrl-C while a bay, a light or the last word is awaited: everything is as it was."""
    terminal = machine.terminal.expect
    state = ("find / -xdev -newer /run/mark ! -path '/dev/*' ! -path '/run/*' ! -path '/root*' ! -path /; ls /etc;"
             " stat -c '%i %s %y' /etc/diskpath.conf; cat /etc/diskpath.conf")
    machine.hands.ask("sleep 1; touch /run/mark; sleep 1")
    before = machine.hands.ask(state)
    count, left = len(machine.serials()), []
    for options, bays in (("", -1), ("--blink --wait 60", 1), ("--blink --wait 60", count)):
        terminal.send(f"libquorvel_bin learn {options}\n")
        terminal.expect("put a disk in" if bays < 0 else "which bay")
        for bay in range(1, bays + 1):
            terminal.send(f"{bay}\n")
            terminal.expect("Type yes: " if bay == count else "which bay")
        terminal.send("\x03")
        terminal.expect_exact(PROMPT)
        left.append((machine.terminal.ask("echo $?"), machine.hands.ask(state)))
    report(f"{title}: learning that is interrupted leaves nothing behind", left == [("130", before)] * 3, f"{before}\n{left}")


def blink(machine, title):
    """One disk after the other is read, for no longer than the wait, past the kernel's memory, and none is written."""
    terminal = machine.terminal.expect
    terminal.send("libquorvel_bin learn --blink --wait 12; echo status $?\n")
    seen, wrong = {}, []
    for _ in machine.serials():
        terminal.expect(r"(\w+), serial number (\w+): which bay")
        device, serial = terminal.match.groups()
        seen[serial] = serial
        read, written = machine.busy()
        flags = machine.open_flags(device)
        if read != {device} or written or flags is None or not flags & os.O_DIRECT or flags & os.O_ACCMODE != os.O_RDONLY:
            wrong.append((device, read, written, flags))
        if len(seen) == 1:
            time.sleep(12)
            wrong += [("still", busy) for busy in machine.busy() if busy]
        terminal.send(f"{serial}\n")
    terminal.expect("Type yes: ")
    terminal.send("yes\n")
    terminal.expect(r"status (\d)")
    status = terminal.match.group(1)
    terminal.expect_exact(PROMPT)
    names = machine.names()
    report(f"{title}: learnt by blinking", status == "0" and names == seen and not wrong, f"status {status} {names} {wrong}")


# The rows stand in front of what was learnt: programs would wait for ever, or two disks have one name.
BOARDS = {
    "ahci-nvme": ("AHCI, NVMe and USB", MODERN_BOARD, MODERN_DISKS, ["disk1", "disk2", "disk3"], MODERN_MORE, "disk2",
                  ("disk4", "disk5"),
                  ("HDD_USB=9, pci0000:00, 1, -1", [{"usbdisk1", "usbdisk2", "usbdisk3"}], "a row cannot be decided")),
    "sas-cage": ("SAS and hot-plug cage", SAS_BOARD, SAS_DISKS, ["disk1", "disk2", "disk3"], SAS_MORE, "disk3",
                 ("disk4", "disk5"), ("HDD_INTERNAL=9, 0000:00:05.0/, -", [{"disk1"}, {"disk2"}], "does not lead back to it: disk9")),
}


def main():
    kernel, work, *wanted = sys.argv[1:]
    for name in wanted or BOARDS:
        judge_board(kernel, work, name, *BOARDS[name])


if __name__ == "__main__":
    main()
