"""The program under test and what its tests share: runs, checks, a report at the end.

The program is the first argument of the script; GC_EMULATOR names what runs it (a Windows program on Linux).
"""
import os
import shlex
import subprocess
import sys

EMULATOR = shlex.split(os.environ.get("GC_EMULATOR", ""))
GCAD = EMULATOR + [os.path.abspath(sys.argv[1])]
IS_WINDOWS = bool(EMULATOR) or os.name == "nt"
SKIPPED = 77  # exit code of a test that cannot be run here

failures = []


def gcad(*arguments, **options):
    """Runs the program to its end; `options` are those of subprocess.run."""
    return subprocess.run(GCAD + list(arguments), capture_output=True, text=True, encoding="utf-8", **options)


def check(name, condition, result=None):
    """Notes a failure with what the program printed."""
    if condition:
        return
    failures.append(name)
    print("FAILED", name)
    if result is not None:
        print("  exit", result.returncode, "\n  ", result.stdout[:800], "\n  ", result.stderr[:2000])


def expect(name, code, *arguments, told=None, says=None, **options):
    """Runs and checks the exit code, a part of standard error (`told`) and of standard output (`says`)."""
    result = gcad(*arguments, **options)
    good = result.returncode == code
    good = good and (told is None or told in result.stderr) and (says is None or says in result.stdout)
    check(name, good, result)
    return result


def finish():
    print(f"{len(failures)} failures")
    sys.exit(1 if failures else 0)
