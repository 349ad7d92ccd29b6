#!/usr/bin/env python3
"""Undo puts everything back: for every command and function that changes drawings, a drawing saved before a call and
after U, UNDO Back and UNDO 2 is the same file, byte for byte, and after REDO the one saved after the call. The calls
stand in data/undo_law.txt; a command or function that is neither called nor excused there makes the test fail.
undo_law_test.py GCAD [NAME...]"""
import concurrent.futures
import glob
import json
import os
import re
import sys
import tempfile

from program import check, finish, gcad

HERE = os.path.dirname(os.path.abspath(__file__))
DATA = os.path.join(HERE, "data")
COMMANDS = os.path.join(HERE, "../../host/ed/commands/*.cpp")
PER_RUN = 20

OTHER = """(progn (entmake '((0 . "BLOCK") (2 . "GATE") (10 0 0 0) (70 . 0)))
 (entmake '((0 . "LINE") (8 . "Far") (10 0 0 0) (11 1 1 1))) (entmake '((0 . "ENDBLK")))
 (entmake '((0 . "INSERT") (2 . "GATE") (10 0 0 0))) (entmake '((0 . "CIRCLE") (10 5 5 0) (40 . 1.0))))"""

# What is done with a call, and the files saved on the way. `law-line` is a second step, so that UNDO 2 has two.
STEPS = """
(command "_.UNDO" "_Control" "_None")
(command "_.UNDO" "_Control" "_All")
(law-save "before" T)
{call}
(law-save "after" T)
(command "_.U")
(law-save "undone" T)
(command "_.REDO")
(law-save "redone" T)
(command "_.U")
(law-save "again" nil)
(command "_.UNDO" "_Mark")
{call}
(law-line)
(command "_.UNDO" "_Back")
(law-save "back" nil)
{call}
(law-line)
(command "_.UNDO" 2)
(law-save "two" nil)
"""

READING = """
(law-save "before" nil)
{call}
(law-save "after" nil)
"""

PRELUDE = """
(setq folder "{folder}")
(defun law-line () (entmake '((0 . "LINE") (10 0 0 0) (11 7 7 7))))
(defun law-save (name both)
 (setq law-file (strcat folder "/" (itoa law-case) "_" name))
 (command "_.SAVE" (strcat law-file ".dxf"))
 (if both (command "_.SAVE" (strcat law-file ".dwg"))))
(load "{setup}")
"""


def rows():
    """Calls as (name, call, changes), and the names excused without a call."""
    calls, excused = [], []
    with open(os.path.join(DATA, "undo_law.txt"), encoding="utf-8") as file:
        for line in file.read().splitlines():
            if not line or line.startswith("#"):
                continue
            name, tab, call = line.partition("\t")
            if tab:
                calls.append((name.removeprefix("="), call, not name.startswith("=")))
            elif line.startswith("  "):
                excused += line.split()
            else:
                check(f"a reason: {line}", line.startswith("= "))
    return calls, excused


def command_names():
    names = []
    for path in glob.glob(COMMANDS):
        with open(path, encoding="utf-8") as file:
            for table in re.findall(r"Command kCommands\[\] = \{(.*?)\n\};", file.read(), re.DOTALL):
                names += re.findall(r'\{"([^"]+)", "[^"]*", \w+\}', table)
    return names


def function_names():
    return [each["name"] for each in json.loads(gcad("functions", "--json").stdout)]


def check_complete(calls, excused):
    known = {name for name, _, _ in calls} | set(excused)
    existing = command_names() + function_names()
    check("commands and functions are found", len(existing) > 550)
    check(f"a line for {sorted(set(existing) - known)}", set(existing) <= known)
    check(f"lines for what is not there: {sorted(known - set(existing))}", known <= set(existing))


def difference(first, second):
    """The first lines in which two DXF files differ, with the record they stand in."""
    with open(first, encoding="latin-1") as a, open(second, encoding="latin-1") as b:
        a, b = a.read().split("\n"), b.read().split("\n")
    at = next((i for i, pair in enumerate(zip(a, b)) if pair[0] != pair[1]), min(len(a), len(b)))
    return f"line {at + 1}: {a[at - 7:at + 5]} / {b[at - 7:at + 5]}"


def same(folder, number, name, first, second, extension="dxf", told=True):
    paths = [os.path.join(folder, f"{number}_{each}.{extension}") for each in (first, second)]
    contents = []
    for path in paths:
        if not os.path.exists(path):
            check(f"{name}: {os.path.basename(path)} was saved", False)
            return True
        with open(path, "rb") as file:
            contents.append(file.read())
    if contents[0] == contents[1]:
        return True
    if told and extension == "dxf":
        print(name, first, second, difference(*paths))
    return False


def check_call(folder, number, name, call, changes):
    title = f"{name} {call}"
    if not changes:
        check(f"{title}: changes nothing", same(folder, number, name, "before", "after"))
        return
    check(f"{title}: changes the drawing", not same(folder, number, name, "before", "after", told=False))
    for extension in ("dxf", "dwg"):
        check(f"{title}: U, {extension}", same(folder, number, name, "before", "undone", extension))
        check(f"{title}: REDO, {extension}", same(folder, number, name, "after", "redone", extension))
    check(f"{title}: U after REDO", same(folder, number, name, "before", "again"))
    check(f"{title}: UNDO Back", same(folder, number, name, "before", "back"))
    check(f"{title}: UNDO 2", same(folder, number, name, "before", "two"))


def run(first, calls, other):
    """Runs some calls, one after the other, in a drawing of their own."""
    with tempfile.TemporaryDirectory() as folder:
        place = folder.replace("\\", "/")
        with open(other, "rb") as source, open(os.path.join(folder, "other.dxf"), "wb") as target:
            target.write(source.read())
        text = PRELUDE.format(folder=place, setup=os.path.join(DATA, "undo_setup.lsp").replace("\\", "/"))
        for number, (_, call, changes) in enumerate(calls):
            text += f"(setq law-case {number})" + (STEPS if changes else READING).format(call=call)
        script = os.path.join(folder, "law.lsp")
        with open(script, "w", encoding="utf-8") as file:
            file.write(text)
        drags = os.path.join(folder, "input.txt")
        with open(drags, "w", encoding="utf-8") as file:
            file.write("pick 7,8\n" * 100)
        result = gcad("run", script, "-i", drags, cwd=folder)
        check(f"calls {first} to {first + len(calls)} end", result.returncode == 0, result)
        for number, (name, call, changes) in enumerate(calls):
            check_call(folder, number, name, call, changes)


def main():
    calls, excused = rows()
    check_complete(calls, excused)
    if len(sys.argv) > 2:
        calls = [each for each in calls if each[0] in sys.argv[2:]]
    with tempfile.TemporaryDirectory() as folder:
        other = os.path.join(folder, "other.dxf")
        check("the other drawing is made", gcad("run", "-e", OTHER, "-s", other).returncode == 0)
        with concurrent.futures.ThreadPoolExecutor(2) as pool:
            parts = [(at, calls[at:at + PER_RUN], other) for at in range(0, len(calls), PER_RUN)]
            list(pool.map(lambda part: run(*part), parts))
    print(f"{len(calls)} calls, {len(excused)} commands and functions that leave drawings as they are")
    finish()


main()
