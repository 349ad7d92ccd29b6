#!/usr/bin/env python3
"""How a run ends: exit codes, limits, Ctrl-C, errors with their back trace. run_ends_test.py GCAD"""
import os
import shlex
import signal
import subprocess
import sys
import tempfile
import time

EMULATOR = shlex.split(os.environ.get("GC_EMULATOR", ""))
failures = []


def gcad(*arguments, typed=b"", folder=None):
    return subprocess.run(EMULATOR + [sys.argv[1], "run", "--no-module", *arguments], input=typed, capture_output=True,
                          cwd=folder, timeout=120)


def check(what, condition, run=None):
    if condition:
        return
    shown = "" if run is None else f" (code {run.returncode}, out {run.stdout!r}, err {run.stderr!r})"
    failures.append(what + shown)


def ends():
    run = gcad("-e", '(princ "one")')
    check("done is 0, its output alone on stdout", (run.returncode, run.stdout, run.stderr) == (0, b"one", b""), run)
    run = gcad("-e", '(princ "a")(exit 7)', "-e", '(princ "b")')
    check("(exit N) sets the code and ends the run", (run.returncode, run.stdout) == (7, b"a"), run)
    run = gcad("--bogus")
    check("a wrong option is 2, told on stderr", run.returncode == 2 and b"--bogus" in run.stderr and not run.stdout, run)
    run = gcad("no-such-file.lsp")
    check("a missing script is 3", run.returncode == 3 and b"no-such-file.lsp" in run.stderr, run)
    run = gcad("-", typed=b"(princ (+ 1 2))")
    check("a script from standard input", (run.returncode, run.stdout) == (0, b"3"), run)
    run = gcad("-e", "(princ *argv*)", "--", "x", "-y")
    check("arguments behind --", run.stdout == b"(x -y)", run)
    run = gcad("-e", '(startapp "true")', "--allow-programs")
    check("programs start when allowed", run.returncode == 0, run)


def errors(folder):
    with open(os.path.join(folder, "wrong.lsp"), "w", encoding="utf-8") as file:
        file.write('(defun inner (x) (/ x 0))\n(defun outer (x)\n  (inner x))\n(princ "before\\n")\n(outer 5)\n'
                   '(princ "after")\n')
    run = gcad("wrong.lsp", folder=folder)
    check("an error is 1", run.returncode == 1, run)
    check("what was printed before stands, nothing after", run.stdout == b"before\n; error: divide by zero\n", run)
    check("message and back trace on stderr", run.stderr.decode().splitlines() == [
        "error: divide by zero", "  wrong.lsp:1: INNER", "  wrong.lsp:3: OUTER", "  wrong.lsp:5: (top level)"], run)
    run = gcad("-e", "(defun f () (1+ (f)))", "-e", "(f)")
    check("endless recursion is an error", run.returncode == 1 and b"stack limit" in run.stderr, run)
    run = gcad("-e", "(princ 1", "-e", "(princ 2)")
    check("a parenthesis too few is an error", run.returncode == 1 and b"malformed list" in run.stderr, run)


def limits(folder):
    began = time.monotonic()
    run = gcad("-e", "(while T)", "--time-limit", "0.3")
    check("the time limit is 6", run.returncode == 6 and b"time limit" in run.stderr, run)
    check("and is kept", time.monotonic() - began < 60)
    run = gcad("-e", "(while T (vl-catch-all-apply '(lambda () (while T))))", "--time-limit", "0.3")
    check("programs cannot catch the time limit", run.returncode == 6, run)
    for grow in ("(setq l (cons 1 l))", '(setq s (strcat (if s s "x") "0123456789" (if s s "x")))'):
        run = gcad("-e", f"(while T {grow})", "--memory-limit", "100")
        check("the memory limit is 7", run.returncode == 7 and b"memory limit" in run.stderr, run)
    saved = os.path.join(folder, "never.dxf")
    run = gcad("-e", "(while T)", "--time-limit", "0.3", "-s", saved)
    check("a program cut off saves nothing", run.returncode == 6 and not os.path.exists(saved), run)


def endless_call():
    """A call of the module that never comes back, wanted as it is, ends with the program; nothing is saved over."""
    endless = '(kel_put_coordinates (kel_addpolyline "ModelSpace" (quote (0 0)) (quote (1 1))) "x")'
    command = EMULATOR + [os.path.abspath(sys.argv[1]), "run", "-e", endless, "--time-limit", "0.3"]
    run = subprocess.run(command, capture_output=True, timeout=120)
    check("an endless call ends with the time limit", run.returncode == 6 and b"time limit" in run.stderr, run)


def interrupt():
    if EMULATOR:
        return
    process = subprocess.Popen([sys.argv[1], "run", "--no-module", "-e", '(princ "begun\\n")', "-e", "(while T)"],
                               stdout=subprocess.PIPE, stderr=subprocess.PIPE)
    check("it runs", process.stdout.readline() == b"begun\n")
    time.sleep(0.2)
    process.send_signal(signal.SIGINT)
    out, err = process.communicate(timeout=60)
    check("Ctrl-C is 130", process.returncode == 130 and b"Function cancelled" in out + err)
    # A program that catches it goes at the third press.
    process = subprocess.Popen([sys.argv[1], "run", "--no-module", "-e", '(princ "begun\\n")', "-e",
                                "(while T (vl-catch-all-apply '(lambda () (while T))))"], stdout=subprocess.PIPE)
    process.stdout.readline()
    for _ in range(3):
        time.sleep(0.2)
        process.send_signal(signal.SIGINT)
    try:
        process.communicate(timeout=60)
    except subprocess.TimeoutExpired:
        process.kill()
    check("the third Ctrl-C ends everything", process.returncode == 130)


def main():
    with tempfile.TemporaryDirectory() as folder:
        ends()
        errors(folder)
        limits(folder)
        endless_call()
        interrupt()
    print("\n".join(failures))
    sys.exit(1 if failures else 0)


main()
