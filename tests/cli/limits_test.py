#!/usr/bin/env python3
"""What each limit does to each kind of endless program. limits_test.py GCAD

However a program is caught up (a LISP loop, one long builtin, one long command, a loop over commands or over functions
of the module), the time limit, the memory limit and Ctrl-C end it with their own exit code, its *error* is called, what
it saved before is whole, and nothing is saved over.
"""
import concurrent.futures
import os
import shlex
import signal
import subprocess
import sys
import tempfile

EMULATOR = shlex.split(os.environ.get("GC_EMULATOR", ""))
GCAD = EMULATOR + [os.path.abspath(sys.argv[1])]
MODULE_IS_BUILT = os.path.exists(os.path.join(os.path.dirname(os.path.abspath(sys.argv[1])), "VrkEntPropertyEx.grx"))

# A list whose parts are shared sixty times over: some bytes in memory, endless to walk.
SHARED = "(setq a '(1) b '(1)) (repeat 60 (setq a (list a a) b (list b b))) "
LINE = "'((0 . \"LINE\") (10 0 0) (11 1 1))"

STANDING = {  # loops that need no memory
    "while": "(while T)",
    "repeat": "(repeat 2147483647 (repeat 2147483647))",
    "foreach": "(while T (foreach x '(1 2 3) (mapcar '1+ '(1 2 3))))",
    "comparison of vl-sort": "(vl-sort '(3 1 2) '(lambda (x y) (while T)))",
    "eval of texts": '(while T (eval (read "(strcat \\"a\\" \\"b\\")")))',
    "one call of equal": SHARED + "(equal a b)",
    "one call of member": SHARED + "(member a (list b))",
    "variables": '(while T (setvar "OSMODE" 1) (getvar "OSMODE"))',
    "changes of one entity": f"(setq e (entmakex {LINE})) (while T (entdel e))",
}
GROWING = {  # loops that take ever more
    "list": "(while T (setq l (cons 1 l)))",
    "text": '(setq s "x") (while T (setq s (strcat s "0123456789" s)))',
    "one call of vl-prin1-to-string": SHARED + "(vl-prin1-to-string a)",
    "new entities": f"(while T (entmake {LINE}))",
    "commands": "(while T (command \"_.CIRCLE\" '(0 0) 1))",
    "one long command": f"(entmake {LINE}) (command \"_.-ARRAY\" \"_L\" \"\" \"_R\" 100000 100000 1 1)",
    "selection sets": f"(entmake {LINE}) (while T (setq l (cons (ssget \"_X\") l)))",
}
if MODULE_IS_BUILT:
    GROWING["functions of the module"] = "(while T (kel_addline \"ModelSpace\" '(0.0 0.0 0.0) '(1.0 0.0 0.0)))"

failures = []


def check(what, condition, run):
    if not condition:
        failures.append(f"{what}: code {run.returncode}, out {run.stdout!r}, err {run.stderr!r}")


def command(folder, program, options):
    saved = os.path.join(folder, "saved.dxf")
    prepared = ('(defun *error* (m) (princ (strcat "handler: " m "\\n"))) (entmake \'((0 . "POINT") (10 1 2 3))) '
                f'(command "_.SAVEAS" "" "{saved}") (princ "begun\\n")').replace("\\\\", "/")
    return GCAD + ["run", "-e", prepared, "-e", program, "-s", os.path.join(folder, "never.dxf"), *options]


def left(what, folder, run):
    """What stands in the folder after a run that was cut off."""
    info = subprocess.run(GCAD + ["info", os.path.join(folder, "saved.dxf")], capture_output=True, timeout=300)
    check(f"{what}: the drawing saved before is whole", info.returncode == 0 and b"POINT" in info.stdout.upper(), info)
    check(f"{what}: nothing is saved after", os.listdir(folder) == ["saved.dxf"], run)


def limited(kind, name, program, options, code, message):
    with tempfile.TemporaryDirectory() as folder:
        run = subprocess.run(command(folder, program, options), capture_output=True, timeout=300, cwd=folder)
        what = f"{kind}, {name}"
        out = run.stdout.replace(b"\r\n", b"\n")
        check(f"{what}: exit code {code}", run.returncode == code, run)
        check(f"{what}: *error* is called, once", out == b"begun\nhandler: " + message + b"\n", run)
        check(f"{what}: told on stderr", b"error: " + message in run.stderr, run)
        left(what, folder, run)


def interrupted(name, program):
    with tempfile.TemporaryDirectory() as folder:
        process = subprocess.Popen(command(folder, program, []), stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                   cwd=folder)
        begun = process.stdout.readline()
        process.send_signal(signal.SIGINT)
        out, err = process.communicate(timeout=300)
        run = subprocess.CompletedProcess(process.args, process.returncode, begun + out, err)
        what = f"Ctrl-C, {name}"
        check(f"{what}: exit code 130", run.returncode == 130, run)
        check(f"{what}: *error* is called, once", run.stdout == b"begun\nhandler: Function cancelled\n", run)
        left(what, folder, run)


def main():
    everything = STANDING | GROWING
    with concurrent.futures.ThreadPoolExecutor(2) as runs:
        jobs = [runs.submit(limited, "time", name, program, ["--time-limit", "1.5"], 6, b"time limit reached")
                for name, program in everything.items() if name not in ("text", "one call of vl-prin1-to-string")]
        jobs += [runs.submit(limited, "memory", name, program, ["--memory-limit", "60"], 7, b"memory limit reached")
                 for name, program in GROWING.items()]
        if not EMULATOR:
            jobs += [runs.submit(interrupted, name, program) for name, program in everything.items() if name != "text"]
        for job in jobs:
            job.result()
    print("\n".join(failures))
    sys.exit(1 if failures else 0)


main()
