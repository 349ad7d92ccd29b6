#!/usr/bin/env python3
"""The REPL at a terminal: forms over several lines, completion, Ctrl-C, help, history. repl_test.py GCAD"""
import os
import signal
import subprocess
import sys
import tempfile
import time

try:
    import pty
    import select
except ImportError:  # no terminals of this kind on this platform
    sys.exit(77)
if os.environ.get("GC_EMULATOR"):
    sys.exit(77)


failures = []


class Session:
    def __init__(self, home):
        self.shown = ""
        self.child, self.terminal = pty.fork()
        if self.child == 0:
            os.environ.update(HOME=home, TERM="dumb")
            os.execv(sys.argv[1], [sys.argv[1], "repl", "--no-module"])
        self.wait("Command: ")

    def wait(self, text, seconds=20):
        """What came up to the text; None when it did not come."""
        end = time.monotonic() + seconds
        while text not in self.shown:
            ready, _, _ = select.select([self.terminal], [], [], max(0, end - time.monotonic()))
            try:
                piece = os.read(self.terminal, 4096) if ready else b""
            except OSError:
                piece = b""
            if not piece:
                return None
            self.shown += piece.decode("utf-8", "replace")
        before, self.shown = self.shown.split(text, 1)
        return before

    def type(self, text):
        os.write(self.terminal, text.encode())

    def answer(self, typed, expected, end="\n"):
        """Whether what is typed brings the expected text; waits until the terminal is quiet after it."""
        self.type(typed + end)
        good = self.wait(expected) is not None
        if not good:
            failures.append(f"{typed!r} did not bring {expected!r}: {self.shown!r}")
        self.settle()

    def settle(self):
        while select.select([self.terminal], [], [], 0.3)[0]:
            os.read(self.terminal, 4096)
        self.shown = ""

    def interrupt(self, expected):
        os.kill(self.child, signal.SIGINT)
        self.answer("", expected, end="")

    def end(self):
        self.type("(exit 3)\n")
        _, status = os.waitpid(self.child, 0)
        return os.waitstatus_to_exitcode(status)


def piped(typed, code, shown):
    run = subprocess.run([sys.argv[1], "repl", "--no-module"], input=typed.encode(), capture_output=True, timeout=60)
    if (run.returncode, run.stdout.decode()) != (code, shown):
        failures.append(f"{typed!r}: {run}")


def main():
    piped("(+ 1 2)\n(list 1\n2)\n(exit 4)\n", 4, "3\n(1 2)\n")
    piped("(list 1\n", 0, "; error: malformed list on input\n")  # input ends within a form
    with tempfile.TemporaryDirectory() as home:
        session = Session(home)
        session.settle()
        session.answer("(+ 40 2)", "\r\n42\r\n")
        session.answer("(list 1\n2)", "(1 2)")                       # a form over two lines
        session.answer("(setq a 5)", "\r\n5\r\n")
        session.answer("!a", "\r\n5\r\n")                            # a variable
        session.answer("?vl-string-elt", "built in")                # help
        session.answer("(vl-string-mism\t", "atch", end="")           # completion
        session.answer(' "ab" "ac")', "\r\n1\r\n")
        session.answer("(while T)", "(while T)")
        session.interrupt("Function cancelled")                     # Ctrl-C ends a program
        session.answer("(progn (repeat 5 (entmake '((0 . \"POINT\") (10 0 0)))) (while T))", "(while T)")
        session.interrupt("Function cancelled")
        session.answer("U", "Command: ")                            # what it had done is one step for U
        session.answer('(list "left:" (ssget "_X"))', '("left:" nil)')
        session.answer("(list 1 ;| a comment\n over lines |; 2)", "(1 2)")
        session.answer("(list 1 2", "(list 1 2", end="")
        session.interrupt("Command: ")                              # and drops a line
        session.answer("(* 6 7)", "\r\n42\r\n")
        session.answer('(getstring "Name: ")', "Name: ")
        session.interrupt("Function cancelled")                     # and a question
        session.answer("(/ 1 0)", "divide by zero")
        if session.end() != 3:
            failures.append("(exit 3) does not give 3")
        with open(os.path.join(home, ".gcad_history"), encoding="utf-8") as file:
            if "vl-string" not in file.read():
                failures.append("no history is kept")
    print("\n".join(failures))
    sys.exit(1 if failures else 0)


main()
