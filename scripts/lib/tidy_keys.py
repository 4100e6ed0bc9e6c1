"""Prints "KEY FILE" for every source of src and tools: a verdict of clang-tidy holds as long as the key is the same.

It is made of the tool's version, the rules, the compiler's options, and the text of the file and of all that it
includes, which the build wrote down.
"""
import hashlib
import json
import os
import re
import subprocess
from pathlib import Path

BUILD = Path("build").resolve()
read = {}


def digest(*texts):
    return hashlib.sha256("\0".join(texts).encode()).hexdigest()


def hash_of(path):
    if path not in read:
        read[path] = hashlib.sha256(path.read_bytes()).hexdigest()
    return read[path]


def headers_of_objects():
    """What each object was made of, out of blocks of an object's name and indented paths."""
    said = subprocess.run(["ninja", "-C", BUILD, "-t", "deps"], capture_output=True, text=True, check=True).stdout
    for name, lines in re.findall(r"^(\S+): #deps [^\n]*\(VALID\)\n((?:    [^\n]*\n)*)", said, re.M):
        yield name, [Path(os.path.normpath(BUILD / line.strip())) for line in lines.splitlines()]


rules = Path(".clang-tidy").read_text()
made_of = dict(headers_of_objects())
version = subprocess.run(["clang-tidy-14", "--version"], capture_output=True, text=True, check=True).stdout
commands = json.loads((BUILD / "compile_commands.json").read_text())
# What goes into several programs is looked at once.
for source, entry in {os.path.relpath(entry["file"]): entry for entry in reversed(commands)}.items():
    if not source.startswith(("src/", "tools/")):
        continue
    options = entry["command"].replace(str(Path.cwd()), "")
    parts = made_of[re.search(r" -o (\S+)", entry["command"])[1]]
    print(digest(version, rules, options, *sorted(hash_of(path) for path in set(parts))), source)
