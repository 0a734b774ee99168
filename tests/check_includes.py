#!/usr/bin/env python3
"""Checks that every #include of the sources points downwards.

The folders under src/ stand on floors. A file may include its own folder and the folders that
the table names; Qt, only if it is a window file; and a window file outside widgets/ may include
of platform/ the message box alone. The rooms of this host's forms are for platform/ itself, and
for main.cpp and the programs of their own (`*_main.cpp`).

usage: check_includes.py <src folder>
"""
import pathlib
import re
import sys

LOGIC = {
    "platform": set(),
    "widgets": {"platform"},
    "regedit": {"platform"},
    "gamepad": {"platform", "widgets"},
    "imager": {"platform", "widgets"},
    "store": {"platform", "gamepad"},
    "plugins": {"platform", "widgets", "gamepad", "store"},
    "memcards": {"platform", "widgets", "store"},
    "launch": {"platform", "gamepad", "store", "plugins"},
    "interchange": {"platform", "widgets", "regedit", "gamepad", "store"},
    "autoplay": {"platform", "widgets", "store", "launch"},
    "portable": {"platform", "widgets", "gamepad", "store", "plugins", "autoplay"},
}
EVERYTHING = set(LOGIC) | {"shell"}
TABLE = {**LOGIC, "shell": EVERYTHING, "": EVERYTHING}
WINDOW_ENDINGS = ("_view", "_dialog", "_window", "_model")
BOX = "platform/message_box.h"
HOST_ROOMS = ("platform/linux/", "platform/sqlite/")
INCLUDE = re.compile(r'^\s*#\s*include\s+([<"])([^>"]+)[>"]')


def faults(source: pathlib.Path, root: pathlib.Path):
    inside = source.relative_to(root)
    folder = inside.parts[0] if len(inside.parts) > 1 else ""
    window = folder == "widgets" or source.stem.endswith(WINDOW_ENDINGS)
    program = source.stem == "main" or source.stem.endswith("_main")
    if folder not in TABLE:
        yield f"{inside}: the folder is on no floor"
        return
    for number, line in enumerate(source.read_text(encoding="utf-8").splitlines(), 1):
        match = INCLUDE.match(line)
        if not match:
            continue
        target = match.group(2)
        where = f"{inside}:{number}: {target}"
        top = target.split("/")[0]
        if re.match(r"Q[A-Z]|Qt", target):
            if not window:
                yield f"{where}: Qt outside a window file"
        elif match.group(1) == '"' or top in TABLE:
            if top != folder and top not in TABLE[folder]:
                yield f"{where}: points upwards or sideways"
            elif target.startswith(HOST_ROOMS) and folder != "platform" and not program:
                yield f"{where}: a room of platform/ alone"
            elif window and folder != "widgets" and top == "platform" and target != BOX:
                yield f"{where}: a window includes of platform/ only {BOX}"
            elif top == "widgets" and not window:
                yield f"{where}: only window files include widgets/"


def main():
    root = pathlib.Path(sys.argv[1])
    sources = [p for p in root.rglob("*") if p.suffix in (".h", ".cpp")]
    found = [fault for source in sorted(sources) for fault in faults(source, root)]
    print("\n".join(found) if found else f"{len(sources)} files, every include points downwards")
    sys.exit(1 if found or not sources else 0)


main()
