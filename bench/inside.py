"""The part of bench/run that runs inside a disposable root: installs the staged tree as a package would, prepares what the
jobs read, and measures. Prints one JSON object."""
import json
import os
import re
import subprocess
import sys
from pathlib import Path
from statistics import median

from jobs import COMMAND, STATIC_COMMAND, IN_PROCESS, JOBS, LARGE, PARENTS, SESSIONS, SLOPES, SMALL

BUILD = "/build/bench"
SCRATCH = Path("/tmp/measure")
PIPE = dict(stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE)


# --- the place -------------------------------------------------------------------------------------------------------

def install():
    """The staged tree becomes part of /usr, and the loader's cache knows it: loading costs what it costs on a board."""
    # The host's cache is shown as a mount, which goes away when the host's is renewed.
    subprocess.run("mkdir /tmp/local && mount --bind /usr/local /tmp/local"
                   " && mount -t overlay overlay -o lowerdir=/build/stage/usr:/usr /usr && mount --bind /tmp/local /usr/local && cat /build/ld.so.conf >/etc/ld.so.conf"
                   " && umount /etc/ld.so.cache && rm /etc/ld.so.cache && ldconfig -C /etc/ld.so.cache",
                   shell=True, check=True)
    SCRATCH.mkdir()
    # Boards set no locale, and reading one is not the tools' own work.
    os.environ["LC_ALL"] = "C"
    # The real iptables, not the model's.
    os.environ["PATH"] = "/usr/sbin:/usr/bin:/sbin:/bin"


def show(model):
    """The model comes last: who is shown one may mount nothing."""
    subprocess.run(["/usr/bin/perl", "/source/scripts/lib/inside-model", "true"], env=os.environ | {"APPLIANCE_MODEL": model}, check=True)


def write_settings():
    for path, lines in ((SMALL, 40), (LARGE, 10000)):
        write_settings_file(path, lines)


def write_settings_file(path, lines):
    Path(path).parent.mkdir(exist_ok=True)
    Path(path).write_text("".join(f"SETTING_{i:05}=value_{i:05}\n" for i in range(1, lines + 1)))


def write_sessions(lines):
    """Targets with one session of one connection each; `lines` in all, cut where they end."""
    text = [line for i in range(lines // 3 + 1) for line in (
        f"tid:{i + 1} name:iqn.2004-08.org.example:nas:vol{i}", f"\tsid:{562949990973952 + i} initiator:iqn.2005-03.org.example:desk{i}",
        f"\t\tcid:0 ip:192.168.{i // 250 % 250}.{i % 250 + 1} state:active hd:none dd:none")]
    Path(SESSIONS).parent.mkdir(parents=True, exist_ok=True)
    Path(SESSIONS).write_text("\n".join(text[:lines // 3 * 3]) + "\n")


def complete_block_devices():
    """What lsblk and udevadm ask for beside the links that the library reads."""
    Path("/sys/dev/block").mkdir(parents=True, exist_ok=True)
    for minor, link in enumerate(sorted(Path("/sys/block").iterdir())):
        if not (link / "dev").exists():
            (link / "dev").write_text(f"8:{minor * 16}\n")
            (link / "size").write_text("976773168\n")
            (link / "uevent").write_text(f"MAJOR=8\nMINOR={minor * 16}\nDEVNAME={link.name}\nDEVTYPE=disk\n")
            (link / "subsystem").symlink_to("/sys/class/block")
            Path(f"/sys/dev/block/8:{minor * 16}").symlink_to(f"../../block/{link.name}")


def write_block_devices(count):
    """/sys/block with this many disks; the one in the last slot comes last."""
    block = Path("/sys/block")
    for link in block.iterdir():
        link.unlink()
    for i in range(count):
        host, name = (8, "sdl") if i == count - 1 else (i + 100, f"sd{i:04}")
        target = Path(f"/sys/devices/pci0000:00/0000:00:1c.4/0000:05:00.0/ata{host}/host{host}/target{host}:0:0/{host}:0:0:0/block/{name}")
        target.mkdir(parents=True, exist_ok=True)
        (block / name).symlink_to("../" + str(target.relative_to("/sys")))


def deny_everything():
    """Every service denied on both ports, and the same rules as a shell script."""
    ports = {name: numbers.split() for name, numbers in
             re.findall(r"^ *(\S+) :((?: +\d+)+)$", output([COMMAND, "firewall", "--ports_list"]), re.M)}
    Path("/etc/tevra/service_ports").write_text("".join(f"{name}<>0<>0<>;\n" for name in ports))
    rules = [f"iptables -A {chain} -p {protocol} --dport {port} -j DROP {way} eth{i}" for numbers in ports.values() for i in (0, 1)
             for port in numbers for chain, way in (("INPUT", "-i"), ("OUTPUT", "-o")) for protocol in ("tcp", "udp")]
    Path("/etc/bench").mkdir(exist_ok=True)
    Path("/etc/bench/firewall.sh").write_text("\n".join(["iptables --table filter --flush", *rules]) + "\n")


# --- one command -----------------------------------------------------------------------------------------------------

def argument_list(command):
    return ["sh", "-c", command] if isinstance(command, str) else command


def output(command):
    return subprocess.run(argument_list(command), **PIPE, check=True).stdout.decode(errors="replace")


def instructions(command, children=True, function=None):
    """Millions under callgrind, loading included, with or without the programs that the command starts."""
    for old in SCRATCH.glob("callgrind.*"):
        old.unlink()
    wanted = ["--trace-children=yes"] if children else ["--child-silent-after-fork=yes"]
    wanted += [f"--toggle-collect={function}"] if function else []
    subprocess.run(["valgrind", "--tool=callgrind", f"--callgrind-out-file={SCRATCH}/out.callgrind", f"--log-file={SCRATCH}/callgrind.%p",
                    *wanted, *argument_list(command)], **PIPE, check=False)
    logs = "".join(log.read_text() for log in SCRATCH.glob("callgrind.*"))
    return sum(int(count) for count in re.findall(r"Collected : (\d+)", logs)) / 1e6


def system_calls(command, *options):
    subprocess.run(["strace", *options, "-c", "-U", "calls,name", "-o", SCRATCH / "calls", *argument_list(command)], **PIPE, check=True)
    return int(re.search(r"(\d+) total", (SCRATCH / "calls").read_text())[1])


def programs_run(command):
    subprocess.run(["strace", "-f", "-e", "trace=execve", "-o", SCRATCH / "programs", *argument_list(command)], **PIPE, check=True)
    return len(re.findall(r"execve\(.* = 0$", (SCRATCH / "programs").read_text(), re.M)) - 1


def side_by_side(commands, rounds):
    """Each command's wall time to the first one's, as the median of rounds in which all ran in turn; and its peak memory."""
    words = []
    for command in commands:
        words += ["--", *argument_list(command)]
    lines = output([f"{BUILD}/bench_launch", str(rounds), *words[1:]]).splitlines()
    times = [[int(word) for word in line.split()] for line in lines]
    peaks = times.pop()
    return [(median(row[i] / row[0] for row in times), peaks[i]) for i in range(len(commands))]


def problem(command):
    """Why a command cannot be measured here, or nothing."""
    try:
        done = subprocess.run(argument_list(command), **PIPE)
    except OSError:
        return "not installed"
    return f"does not work here: {done.stderr.decode().strip()[:60]}" if done.returncode else None


# --- the tables ------------------------------------------------------------------------------------------------------

def prepare(job):
    if job.setup:
        globals()[job.setup[0]](*job.setup[1:])


def measure_job(job, rounds):
    prepare(job)
    floor, ours = [f"{BUILD}/floor_{job.floor[0]}", *job.floor[1:]], [COMMAND, *job.ours]
    others = [[STATIC_COMMAND, *job.ours], *job.rivals]
    problems = {str(command): problem(command) for command in [floor, ours, *others]}
    if problems[str(ours)]:
        return dict(name=job.name, problem=problems[str(ours)])
    lost = set(output(floor).splitlines()) - set(output(ours).splitlines())
    commands = [command for command in [floor, ours, *others] if not problems[str(command)]]
    rows = [dict(command=command, instructions=instructions(command), calls=system_calls(command, "-f"), wall=wall, peak=peak)
            for command, (wall, peak) in zip(commands, side_by_side(commands, rounds))]
    missing = [dict(command=command, problem=problems[str(command)]) for command in others if problems[str(command)]]
    return dict(name=job.name, target=job.target, static=job.static, rows=rows + missing, lost=sorted(lost))


def measure_on_board(job, emulator):
    """What the board's process does, as its emulator tells: instructions step by step, and system calls."""
    prepare(job)
    command, steps = ["/build/board/libquorvel_bin", *job.ours], SCRATCH / "steps"
    os.mkfifo(steps)
    counter = subprocess.Popen(["grep", "-c", "^Trace", steps], stdout=subprocess.PIPE)
    subprocess.run([emulator, "-singlestep", "-d", "exec,nochain", "-D", steps, *command], **PIPE, check=True)
    count = int(counter.communicate()[0])
    steps.unlink()
    calls = subprocess.run([emulator, "-strace", *command], **PIPE, check=True).stderr.decode(errors="replace")
    return dict(name=job.name, instructions=count / 1e6, calls=len(re.findall(r"^\d+ \w+\(", calls, re.M)), target=job.static[:2])


def measure_parent(job):
    """A command that is mostly other programs: its own part, and what its children cost."""
    prepare(job)
    ours = [COMMAND, *job.ours]
    if problem(ours):
        return dict(name=job.name, problem=problem(ours))
    rival = [dict(command=line, problem=problem(line)) if problem(line) else
             dict(command=line, instructions=None if isinstance(line, str) else instructions(line),
                  wall=side_by_side([ours, line], 3)[1][0]) for line in job.rivals]
    parts = dict(count=len(job.parts), own=sum(instructions([COMMAND, *part], children=False) for part in job.parts),
                 start=instructions([COMMAND, "--version"], children=False))
    return dict(name=job.name, parts=parts, own=instructions(ours, children=False), calls=system_calls(ours),
                children=sum(count * instructions(line) for count, line in job.floor), programs=programs_run(ours),
                expected=2 * sum(count for count, _ in job.floor), target=job.target, rivals=rival)


def measure_in_process(question):
    if question.lines:
        write_settings_file("/etc/bench/lines", question.lines)

    def each(measure):
        few, many = (measure(count) for count in (2, 12))
        return (many - few) / 10

    def ask(way, count):
        return [f"{BUILD}/bench_in_process", way, question.word, str(count), *question.arguments]

    row = dict(name=question.name, target=question.target)
    for way, function in (("floor", question.floor), ("library", question.function)):
        row[way] = (each(lambda count: 1e6 * instructions(ask(way, count), function=function)),
                    each(lambda count: system_calls(ask(way, count))))
    floor, library = map(int, output(ask("time", 41)).split())
    return row | dict(wall=library / floor)


def measure_slope(slope):
    counts = []
    for size in slope.sizes:
        globals()[slope.setup](*slope.arguments, size)
        command = [COMMAND, *slope.ours]
        if problem(command):
            return dict(name=slope.name, problem=problem(command))
        counts.append((size, instructions(command), system_calls(command)))
    return dict(name=slope.name, unit=slope.unit, counts=counts)


def main(model, quick, wanted, emulator):
    def chosen(items):
        return [item for item in items if item.model == model and (item.quick or not quick) and wanted in item.name]

    install()
    show(model)
    write_settings()
    if emulator:
        # Step by step, a hundred million take the better part of an hour.
        json.dump(dict(board=[measure_on_board(job, emulator) for job in chosen(JOBS) if job.static and job.static[0] < 10]), sys.stdout)
        return
    rounds = 21 if quick else 41
    result = dict(jobs=[measure_job(job, rounds) for job in chosen(JOBS)],
                  parents=[measure_parent(job) for job in chosen(PARENTS)],
                  in_process=[measure_in_process(question) for question in chosen(IN_PROCESS)])
    if chosen(JOBS):
        result["bare"] = {name: dict(instructions=instructions([path]), calls=system_calls([path]), peak=side_by_side([[path]], 9)[0][1])
                          for name, path in (("`true`", "true"), ("one `printf` in C", f"{BUILD}/bench_printed_line"))}
    result["slopes"] = [measure_slope(slope) for slope in chosen(SLOPES)]
    json.dump(result, sys.stdout)


if __name__ == "__main__":
    main(sys.argv[1], sys.argv[2] == "quick", sys.argv[3], sys.argv[4])
