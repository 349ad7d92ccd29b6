#!/usr/bin/env python3
"""The language tested in itself, and the test facility's report and exit codes. lisp_suite_test.py GCAD"""
import os
import shlex
import subprocess
import sys
import tempfile

SOURCE = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
TAP = os.path.join(SOURCE, "examples", "tap.lsp")
failures = []


def gcad(*scripts):
    command = shlex.split(os.environ.get("GC_EMULATOR", "")) + [sys.argv[1], "run", "--no-module", *scripts]
    return subprocess.run(command, capture_output=True, encoding="utf-8", timeout=300)


def suite():
    folder = os.path.join(SOURCE, "tests", "lisp", "suite")
    for name in sorted(os.listdir(folder)):
        run = gcad(TAP, os.path.join(folder, name))
        wrong = [line for line in run.stdout.splitlines() if not line.startswith("ok ")][:-1]
        if run.returncode != 0 or wrong or not run.stdout.splitlines()[-1].startswith("1.."):
            failures.append(f"{name}: code {run.returncode}\n" + "\n".join(wrong) + run.stderr)


def report():
    """Checks that hold and checks that do not, and what is told of each."""
    with tempfile.TemporaryDirectory() as folder:
        path = os.path.join(folder, "t.lsp")
        with open(path, "w", encoding="utf-8") as file:
            file.write("""(tap:is 1 1 "one")
(tap:is '(1 "a") '(1 "b") "two")
(tap:near 1.0 1.1 0.2 "three")
(tap:fails '+ '("x") "bad argument type*" "four")
(tap:fails '+ '(1 2) "*" "five")
(tap:fails '/ '(1 0) "bad*" "six")
(tap:test "seven" '(lambda () (car 5)))
(tap:skip "eight" "no screen")
(tap:done)
(princ "never")
""")
        run = gcad(TAP, path)
        wanted = """ok 1 - one
not ok 2 - two
#   got:    (1 "a")
#   wanted: (1 "b")
ok 3 - three
ok 4 - four
not ok 5 - five
#   no error, but the value 3
not ok 6 - six
#   the error was: divide by zero
not ok 7 - seven
#   error: bad argument type: listp 5
ok 8 - eight # SKIP no screen
1..8
"""
        if (run.returncode, run.stdout) != (1, wanted):
            failures.append(f"report: code {run.returncode}\n{run.stdout}{run.stderr}")


suite()
report()
print("\n".join(failures))
sys.exit(1 if failures else 0)
