"""Two boards under qemu, a person at the terminal of each, and hands that plug disks.

The terminal is a serial line of the guest, the hands are qemu's monitor and a second shell. After learning, each board
is started again with its disks in another order, one of them missing and a controller more. Every disk carries its
bay's name as its serial number.
"""
import ctypes
import json
import os
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
        self.expect.send(f"PS1='{PROMPT}'\n")
        self.expect.expect_exact(PROMPT)
        self.ask("stty -echo cols 200; bind 'set enable-bracketed-paste off' 2>/dev/null")

    def ask(self, command):
        self.expect.send(command + "\n")
        self.expect.expect_exact(PROMPT)
        return self.expect.before.replace("\r", "").strip()


class Machine:
    def __init__(self, kernel, work, board, devices, after=""):
        self.work = work
        for name in ("terminal", "hands", "monitor"):
            if os.path.exists(f"{work}/{name}"):
                os.unlink(f"{work}/{name}")
        arguments = ["qemu-system-x86_64", "-cpu", "max", "-m", "512", "-nodefaults", "-display", "none", "-no-reboot",
                     "-kernel", kernel, "-initrd", f"{work}/tree.cpio",
                     "-append", f"console=ttyS0 quiet panic=-1 {after}", "-serial", f"file:{work}/console",
                     "-serial", f"unix:{work}/terminal,server=on,wait=off",
                     "-serial", f"unix:{work}/hands,server=on,wait=off",
                     "-qmp", f"unix:{work}/monitor,server=on,wait=off", *board]
        for device in devices:
            arguments += ["-drive", self.drive(device), "-device", device + ",drive=" + serial_of(device)]
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

    def names(self):
        """The name of each disk by its serial number, and whether the name leads back."""
        answer = self.hands.ask("""for d in $(libquorvel_bin disks | cut -f 1 | grep -v -e -$); do
            libquorvel_bin explain --json $d | grep -e device -e answer -e agrees | sed 's/.*: //;s/[",]//g' | xargs; done""")
        serials = self.hands.ask("""for d in /sys/block/sd* /sys/block/nvme*n1; do [ -e $d ] || continue
            for s in $d/device/vpd_pg80 $d/device/serial; do [ -e $s ] && serial=$(tail -c +$([ ${s##*/} = serial ] && echo 1 || echo 5) $s); done
            case $(readlink $d) in */usb*) serial=$(cat $(readlink -f $d/device)/../../../../serial);; esac
            echo ${d##*/} $serial; done""")
        by_device = dict(line.split()[:2] for line in serials.splitlines() if len(line.split()) > 1)
        result = {}
        for line in answer.splitlines():
            device, name, agrees = line.split()
            result[by_device.get(device, device)] = name if agrees == "true" else f"{name} one way"
        return result

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
MODERN_MORE = ["-device", "ahci,id=more,addr=1e.0"]

SAS_BOARD = ["-M", "pc", "-device", "mptsas1068,id=sas,addr=5", "-device", "virtio-scsi-pci,id=cage,addr=6"]
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


def judge_board(kernel, work, title, board, disks, at_boot, more, missing):
    machine = Machine(kernel, work, board, [disks[name] for name in at_boot])
    status, shown = learn(machine, disks, at_boot)
    names = machine.names()
    wanted = {name: name for name in disks}
    report(f"{title}: learnt by plugging", status == "0" and names == wanted, f"status {status}\n{shown}\n{names}")
    table = machine.hands.ask("cat /etc/diskpath.conf")
    machine.stop()
    print(table, file=sys.stderr)

    rest = [disk for name, disk in reversed(disks.items()) if name != missing]
    machine = Machine(kernel, work, board + more, rest)
    machine.hands.ask("cat >/etc/diskpath.conf <<'END'\n" + table + "\nEND")
    machine.hands.ask(f"tries=100; until [ $(ls -d /sys/block/sd* /sys/block/nvme*n1 2>/dev/null | wc -l) = {len(rest)} ]"
                      " || [ $((tries -= 1)) = 0 ]; do sleep 0.1; done")
    names = machine.names()
    del wanted[missing]
    report(f"{title}: another order, {missing} missing, a controller more", names == wanted, names)
    machine.stop()


def main():
    kernel, work = sys.argv[1:]
    judge_board(kernel, work, "AHCI, NVMe and USB", MODERN_BOARD, MODERN_DISKS, ["disk1", "disk2", "disk3"], MODERN_MORE,
                "disk2")
    judge_board(kernel, work, "SAS and hot-plug cage", SAS_BOARD, SAS_DISKS, ["disk1", "disk2", "disk3"], SAS_MORE, "disk3")


main()
