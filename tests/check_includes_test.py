#!/usr/bin/env python3
"""Plants one wrong arrow of each kind, and one right one, and sees what check_includes.py says.

usage: check_includes_test.py
"""
import pathlib
import subprocess
import sys
import tempfile

CHECK = pathlib.Path(__file__).with_name("check_includes.py")
# File, include line, and what of the check's words must appear; None: it passes.
PLANTED = [
    ("store/a.cpp", '#include "platform/files.h"', None),
    ("store/a.cpp", '#include "shell/main_frame.h"', "upwards or sideways"),
    ("memcards/a.cpp", '#include "plugins/plugin.h"', "upwards or sideways"),
    ("platform/sqlite/a.cpp", '#include "store/options.h"', "upwards or sideways"),
    ("store/a.cpp", "#include <QString>", "Qt outside a window file"),
    ("store/a.cpp", '#include "widgets/text.h"', "upwards or sideways"),
    ("plugins/a.cpp", '#include "widgets/text.h"', "only window files include widgets/"),
    ("plugins/a_view.cpp", '#include "widgets/text.h"', None),
    ("plugins/a_view.cpp", '#include "platform/files.h"', "only platform/message_box.h"),
    ("plugins/a_view.cpp", '#include "platform/message_box.h"', None),
    ("shell/a.cpp", '#include "platform/linux/descriptor.h"', "a room of platform/ alone"),
    ("platform/sqlite/a.cpp", '#include "platform/linux/descriptor.h"', None),
    ("plugins/a_main.cpp", '#include "platform/linux/descriptor.h"', None),
    ("cellar/a.cpp", "#include <string>", "on no floor"),
]


def verdict(file, line):
    with tempfile.TemporaryDirectory() as root:
        source = pathlib.Path(root, file)
        source.parent.mkdir(parents=True)
        source.write_text(line + "\n", encoding="utf-8")
        run = subprocess.run([sys.executable, CHECK, root], capture_output=True, text=True)
        return run.returncode, run.stdout


wrong = []
for file, line, words in PLANTED:
    code, said = verdict(file, line)
    if (code, words is None or words in said) != (0 if words is None else 1, True):
        wrong.append(f"{file}: {line}: {said.strip()}")
print("\n".join(wrong) if wrong else f"{len(PLANTED)} planted arrows, each told as it is")
sys.exit(bool(wrong))
