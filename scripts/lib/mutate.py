"""The driver of scripts/mutate, which says what it does."""
import argparse
import hashlib
import os
import random
import re
import resource
import shutil
import signal
import subprocess
import sys
import tempfile
import threading
from collections import Counter
from pathlib import Path

from faults import faults_of

PROJECT = Path(__file__).resolve().parents[2]
EQUAL = PROJECT / "tests/mutants-equal.txt"
MODELS = sorted(path.parent.name for path in PROJECT.glob("models/*/links.txt"))
ROOMS = sorted({test.parent.name for test in PROJECT.glob("tests/*/*_test.cpp")})
# Seconds of processor time for a process, and of the clock for a test program: what goes on for longer was noticed.
LONGEST_AT_WORK, LONGEST = 40, 240


def room_of(path):
    return path.split("/")[1] if path.startswith("src/") else path.split("/")[0]


class Fault:
    def __init__(self, path, text, begin, end, new):
        self.path, self.text, self.begin, self.end, self.new = path, text, begin, end, new
        start, stop = text.rfind("\n", 0, begin) + 1, text.find("\n", end)
        self.line = text.count("\n", 0, begin) + 1
        self.before = text[start:stop].strip()
        self.after = (text[start:begin] + new + text[end:stop]).strip()

    def key(self):
        return self.path, self.before, self.after

    def in_a_line(self):
        return str(self).replace("\n   ", "")

    def __str__(self):
        return "%s:%d\n    - %s\n    + %s" % (self.path, self.line, self.before, self.after)


def listed_as_equal():
    """(path, before, after) and the reason, out of blocks of four lines."""
    listed = {}
    for block in re.findall(r"^(\S+)\n- (.*)\n\+ (.*)\n= (.+)$", EQUAL.read_text() if EQUAL.exists() else "", re.M):
        listed[block[:3]] = block[3]
    return listed


def in_turn(what, seed):
    """Faults of the files in question: rooms take turns, and in a room its files."""
    files = sorted(str(path.relative_to(PROJECT)) for path in PROJECT.glob("src/**/*") if path.suffix in (".cpp", ".h"))
    if what.startswith("tools"):
        files = sorted(str(path.relative_to(PROJECT)) for path in PROJECT.glob("tools/**/*.cpp"))
    if what in ROOMS and what != "tools":
        files = [path for path in files if room_of(path) == what]
    elif what not in ("all", "tools"):
        files = [str((Path.cwd() / what).resolve().relative_to(PROJECT))]
    rooms = {}
    for path in files:
        text, chance = (PROJECT / path).read_text(), random.Random("%s %s" % (seed, path))
        faults = [Fault(path, text, *fault) for fault in faults_of(text, chance)]
        chance.shuffle(faults)
        rooms.setdefault(room_of(path), []).append(faults)
    for queues in rooms.values():
        random.Random(seed).shuffle(queues)
    return one_of_each(one_of_each(map(iter, queues)) for queues in rooms.values())


def unnoticed_in(log):
    """The faults, in a line each, that nobody noticed in a run that printed so."""
    verdicts = {}
    for found in re.finditer(r"^ *\d+  (\w[\w ]*?) +(src/.*|tools/.*)$", log, re.M):
        verdicts[found[2]] = found[1]
    return {line for line, verdict in verdicts.items() if verdict in ("open", "nobody")}


def one_of_each(queues):
    """What the queues hold: the first of each, then the next of each, and so on."""
    queues = list(queues)
    while queues:
        for queue in list(queues):
            try:
                yield next(queue)
            except StopIteration:
                queues.remove(queue)


def limited():
    """What a planted fault may take of the machine."""
    # A test makes a disk of 20 GB, of holes.
    resource.setrlimit(resource.RLIMIT_FSIZE, (24 << 30, 24 << 30))
    resource.setrlimit(resource.RLIMIT_CPU, (LONGEST_AT_WORK, LONGEST_AT_WORK))


def fails_first(asked, passes):
    """Whether one of those asked, one after the other, does not pass. It is asked first the next time: what notices one
    fault notices the next of its kind."""
    for place, one in enumerate(asked):
        if not passes(one):
            asked.insert(0, asked.pop(place))
            return True
    return False


class Copy:
    """A copy of the tree with a build of its own, in which a test tells of what it noticed."""

    def __init__(self, place):
        self.tree = place
        top, skipped = str(PROJECT), shutil.ignore_patterns("build*", ".git", "out")
        shutil.copytree(PROJECT, place, symlinks=True, ignore=lambda at, names: skipped(at, names) if at == top else ())
        self.environment = dict(os.environ, QUORVEL_JOBS=str(max(1, os.cpu_count() // 2)))
        self.configured, self.planted = set(), None
        self.rooms, self.models = list(ROOMS), list(MODELS)

    def run(self, command, longest=None):
        """Whether it ended well within its time; no part of it goes on afterwards."""
        process = subprocess.Popen(command, cwd=self.tree, env=self.environment, stdin=subprocess.DEVNULL, text=True,
                                   stdout=subprocess.PIPE, stderr=subprocess.STDOUT, errors="replace",
                                   start_new_session=True, preexec_fn=limited)
        try:
            self.said = process.communicate(timeout=longest)[0]
        except subprocess.TimeoutExpired:
            os.killpg(process.pid, signal.SIGKILL)
            self.said = process.communicate()[0]
            return False
        return process.returncode == 0

    def build(self, directory, *targets):
        """Without debug information, so that an object tells whether a fault changed the code; a warning is none."""
        if directory not in self.configured:
            options = "-DCMAKE_COMPILE_WARNING_AS_ERROR=OFF -DCMAKE_CXX_FLAGS_RELWITHDEBINFO='-O1 -DNDEBUG'"
            if directory == "build-asan":
                options += " -DQUORVEL_SANITIZE=ON"
            # It comes out of ccache; of faults nothing is kept.
            self.environment.pop("CCACHE_DISABLE", None)
            script = ". scripts/lib/common.sh && . scripts/lib/build.sh && build_in %s %s" % (directory, options)
            if not self.run(["bash", "-c", script]):
                sys.exit("mutate: the tree does not build as it is\n" + self.said)
            self.configured.add(directory)
            self.environment["CCACHE_DISABLE"] = "1"
        return self.run(["ninja", "-C", directory, *targets])

    def objects(self, path):
        """What the compiler made of the source, or of everything that a header is part of."""
        stem = Path(path).name + ".o" if path.endswith(".cpp") else "*.o"
        of_library = (self.tree / "build").glob("**/CMakeFiles/quorvel_objects.dir/**/" + stem)
        of_command = (self.tree / "build/tools").glob("**/" + stem)
        return {found: hashlib.sha256(found.read_bytes()).digest() for found in (*of_library, *of_command)}

    def is_unchanged(self, path):
        """Whether the fault in the source left the compiled code as it was without one."""
        return all(self.without_fault[found] == digest for found, digest in self.objects(path).items())

    def plant(self, fault):
        """Takes the last fault away as well: both sources are compiled in one build."""
        if self.planted:
            (self.tree / self.planted.path).write_text(self.planted.text)
        (self.tree / fault.path).write_text(fault.text[:fault.begin] + fault.new + fault.text[fault.end:])
        self.planted = fault

    def room_passes(self, room, directory="build"):
        network = "--net" if room == "net" else "--net-if-possible"
        return self.run(["tests/run-in-root", network, "--", "%s/tests/%s_test" % (directory, room),
                         "--gtest_brief=1", "--gtest_fail_fast"], LONGEST)

    def model_passes(self, model):
        return self.run(["scripts/checks/models", model], LONGEST)

    def first_look(self, fault):
        """What the fault is to the compiler and to the tests of its room: "no code", "equal" to none, "room" when these
        notice it, or None."""
        room = room_of(fault.path)
        own = ["%s_test" % room] if room in ROOMS else []
        self.plant(fault)
        if not self.build("build", *(own or ["libquorvel_bin_command"])):
            return "no code"
        if self.is_unchanged(fault.path):
            return "equal"
        return "room" if own and not self.room_passes(room) else None

    def second_look(self, fault, sanitized):
        """Who notices what the tests of its room did not: "no code", "others", "models", "sanitizers" or "nobody"."""
        self.plant(fault)
        if not self.build("build"):
            return "no code"
        if fails_first(self.rooms, self.room_passes):
            return "others"
        if fails_first(self.models, self.model_passes):
            return "models"
        room = room_of(fault.path)
        if sanitized and room in ROOMS and self.build("build-asan", "%s_test" % room):
            return "nobody" if self.room_passes(room, "build-asan") else "sanitizers"
        return "nobody"

    def check_unharmed(self, what, sanitized):
        """Without a fault everything passes; otherwise nothing could be told."""
        rooms = [what] if what in ROOMS else ROOMS
        steps = [("the build", lambda: self.build("build"))]
        steps += [("the tests of " + room, lambda room=room: self.room_passes(room)) for room in rooms]
        steps += [("the answers of " + model, lambda model=model: self.model_passes(model)) for model in MODELS]
        if sanitized:
            steps += [("the build for sanitizers", lambda: self.build("build-asan"))]
            steps += [("the sanitized tests of " + room, lambda room=room: self.room_passes(room, "build-asan")) for room in rooms]
        for name, passes in steps:
            if not passes():
                sys.exit("mutate: %s fail as they are\n%s" % (name, self.said[-4000:]))


class Hunt:
    """Faults taken in turn by several copies, until enough of them were told: first by the tests of their rooms, then,
    what these did not notice, by everything else."""

    def __init__(self, options):
        self.options, self.equal = options, listed_as_equal()
        self.faults, self.guard = in_turn(options.what, options.seed), threading.Lock()
        if options.again:
            again = unnoticed_in(Path(options.again).read_text())
            self.faults = (fault for fault in self.faults if fault.in_a_line() in again)
        self.told, self.open, self.underway = [], [], 0

    def found(self):
        return len(self.told) + len(self.open) + self.underway

    def next(self):
        with self.guard:
            while self.found() < self.options.count and (fault := next(self.faults, None)):
                if fault.key() not in self.equal:
                    self.underway += 1
                    return fault
                self.told.append((fault, "listed"))
            return None

    def take(self, fault, verdict):
        with self.guard:
            self.underway -= 1
            if verdict is None:
                self.open.append(fault)
            elif verdict not in ("no code", "equal"):
                self.told.append((fault, verdict))
            print("%4d  %-10s  %s" % (self.found(), verdict or "open", fault.in_a_line()), flush=True)

    def first(self, copy):
        while (fault := self.next()) is not None:
            self.take(fault, copy.first_look(fault))

    def next_open(self):
        with self.guard:
            if not self.open:
                return None
            self.underway += 1
            return self.open.pop(0)

    def second(self, copy):
        while (fault := self.next_open()) is not None:
            self.take(fault, copy.second_look(fault, self.options.sanitized))

    def go(self, copies):
        for step in (self.first, self.second):
            workers = [threading.Thread(target=step, args=(copy,)) for copy in copies]
            for worker in workers:
                worker.start()
            for worker in workers:
                worker.join()

    def report(self):
        kinds = ["room", "others", "models", "sanitizers", "nobody", "listed"]
        table = {}
        for fault, verdict in self.told:
            table.setdefault(room_of(fault.path), Counter())[verdict] += 1
        table["together"] = sum(table.values(), Counter())
        print("\n| room | planted | room's own test | others | models | sanitizers | unnoticed | change nothing |")
        print("|---|---|---|---|---|---|---|---|")
        for room, counts in table.items():
            print("| %s | %d | %s |" % (room, sum(counts.values()), " | ".join(str(counts[kind]) for kind in kinds)))
        missed = [fault for fault, verdict in self.told if verdict == "nobody"]
        counted = len(self.told) - table["together"]["listed"]
        print("\n%d of %d noticed%s" % (counted - len(missed), counted, "; unnoticed:" if missed else ""))
        for fault in sorted(missed, key=lambda fault: (fault.path, fault.line)):
            print(fault)
        return 1 if missed or not counted else 0


def stale_entries():
    return [key for key in listed_as_equal()
            if not (PROJECT / key[0]).exists() or key[1] not in (PROJECT / key[0]).read_text()]


def main():
    parser = argparse.ArgumentParser(prog="mutate")
    parser.add_argument("what", nargs="?", default="all")
    parser.add_argument("count", nargs="?", type=int, default=100)
    parser.add_argument("--sanitized", action="store_true")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--jobs", type=int, default=os.cpu_count())
    parser.add_argument("--list", action="store_true")
    parser.add_argument("--again")
    options = parser.parse_args()
    for path, before, _ in stale_entries():
        print("mutate: tests/mutants-equal.txt names what is no longer in %s: %s" % (path, before), file=sys.stderr)
    if options.list:
        for _, fault in zip(range(options.count), in_turn(options.what, options.seed)):
            print(fault)
        return 0
    hunt = Hunt(options)
    with tempfile.TemporaryDirectory(prefix="mutate.") as place:
        copies = [Copy(Path(place) / str(n)) for n in range(max(1, min(options.jobs, options.count)))]
        copies[0].check_unharmed(options.what, options.sanitized)
        for copy in copies:
            copy.build("build")
            copy.without_fault = copy.objects("")
        hunt.go(copies)
    return hunt.report()


sys.exit(main())
