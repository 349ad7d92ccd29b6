#!/usr/bin/env python3
"""Drags fed from a file or standard input, and the record of the screen: drag_test.py GCAD"""
import json
import os
import pathlib
import shlex
import subprocess
import sys
import tempfile

EMULATOR = shlex.split(os.environ.get("GC_EMULATOR", ""))
SCRIPT = """
(setq line (kel_addline "ModelSpace" '(0.0 0.0 0.0) '(1.0 0.0 0.0)))
(setq base (getpoint "Base: "))
(princ (kel_ssdragmove "Copy" (ssadd line) base "To: "))
(princ (kel_ssdragrotate "Copy" (ssadd line) base "Turn: "))
(princ (kel_ssdragmove_x (ssadd line) base "Last: "))
(command "_.LINE" '(0.0 0.0 0.0) line 2 2.5 "" "")
(command "_ZOOM" "_W" '(0 0) '(40 30))
"""
ANSWERS = "1,1\nmove 2,2\npick 3,4\nkey c\n"
failures = []


def check(what, condition):
    if not condition:
        failures.append(what)


def run(*arguments, typed=None, folder=None):
    return subprocess.run(EMULATOR + [sys.argv[1], "run", *arguments], input=typed, capture_output=True, cwd=folder,
                          timeout=120)


def undrawn(records):
    """Lines that were drawn in complement an odd number of times, and so are left on the screen."""
    left = set()
    for record in records:
        if record["event"] == "grdraw" and record["color"] == -1:
            left ^= {(tuple(record["from"]), tuple(record["to"]))}
    return left


def main():
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        (folder / "script.lsp").write_text(SCRIPT, encoding="utf-8")
        (folder / "answers.txt").write_text(ANSWERS, encoding="utf-8", newline="\r\n")
        log = folder / "screen.jsonl"
        from_file = run("script.lsp", "--input", "answers.txt", "--screen-log", str(log), folder=folder)
        check(f"answers from a file: {from_file.stdout!r}",
              from_file.returncode == 0 and from_file.stdout.startswith(b"Base: To: (3.0 4.0 0.0)Turn: CopyLast: nil"))
        records = [json.loads(line) for line in log.read_text(encoding="utf-8").splitlines()]
        drags = [record for record in records if record["event"] == "drag"]
        check(f"frames: {drags}", [drag["matrix"][3:8:4] for drag in drags] == [[1, 1], [2, 3]])
        check(f"entities: {drags}", len({tuple(drag["entities"]) for drag in drags}) == 1)
        check(f"lines stay on the screen: {undrawn(records)}", not undrawn(records))
        handle = drags[0]["entities"][0]
        commands = [record["items"] for record in records if record["event"] == "command"]
        check(f"commands: {commands}", commands[0] == ["_.LINE", [0, 0, 0], handle, 2, 2.5, "", ""])
        zooms = [record for record in records if record["event"] == "zoom"]
        check(f"zoom: {zooms}", len(zooms) == 1 and zooms[0]["center"] == [20, 15] and zooms[0]["height"] >= 30)

        typed = run("script.lsp", "--input", "-", typed=ANSWERS.encode(), folder=folder)
        check(f"answers from standard input: {typed.stdout!r}", typed.stdout == from_file.stdout)
        missing = run("script.lsp", "--input", "absent.txt", folder=folder)
        check("a missing file of answers is 3", missing.returncode == 3 and b"absent.txt" in missing.stderr)
        nowhere = run("script.lsp", "--screen-log", str(folder / "absent" / "log"), folder=folder)
        check("a record that cannot be written is 4", nowhere.returncode == 4 and b"log" in nowhere.stderr)
    for failure in failures:
        print(failure)
    sys.exit(1 if failures else 0)


main()
