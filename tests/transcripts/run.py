#!/usr/bin/env python3
"""Runs transcripts through gcad and compares everything: run.py [--accept] GCAD TRANSCRIPT...

A transcript is a conversation with LISP, one form after the other in one document:
  #   a comment; an empty line ends a form          #!  options for gcad, before the first form
  >   LISP to evaluate (further such lines continue the form)
  <   a line typed at a prompt of that form
  |   a printed line            =  the value            !  the message of an uncaught error
  %   objects left open by the form's functions
Entity names are written <Entity 1>, <Entity 2> … in the order in which they come up. In options and forms, ${SOURCE}
is the source tree and ${SCRATCH} a folder that is empty at first and removed at the end.
"""
import json
import os
import re
import shlex
import subprocess
import sys
import tempfile

EMULATOR = shlex.split(os.environ.get("GC_EMULATOR", ""))  # runs a Windows program
SOURCE = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
NAME = re.compile(r"<Entity name: ([0-9a-f]+)>")
# A path as a Windows program says it of a file of this machine; in LISP texts each backslash is doubled.
WINDOWS_PATH = re.compile(r'Z:(?:\\+[^\\"<>|?*:\s]+)+')


class Exchange:
    def __init__(self, first):
        self.first = first      # index of the first line of the form
        self.form = []
        self.typed = []
        self.last = first       # index of the last line of form and typed lines
        self.expected = []      # (line index, text)


def read(path):
    """The lines of a transcript, its options and exchanges."""
    with open(path, encoding="utf-8", newline="\n") as file:
        lines = file.read().split("\n")
    options, exchanges, in_form = [], [], False
    for index, line in enumerate(lines):
        mark, text = line[:1], line[2:]
        if line.startswith("#!"):
            options += shlex.split(text)
        if mark in ("", "#"):
            in_form = False
        elif mark == ">":
            if not in_form:
                exchanges.append(Exchange(index))
            exchanges[-1].form.append(text)
            exchanges[-1].last = index
            in_form = True
        elif mark == "<":
            exchanges[-1].typed.append(text)
            exchanges[-1].last = index
            in_form = False
        elif mark in "|=!%":
            exchanges[-1].expected.append((index, line.rstrip()))
            in_form = False
        else:
            raise SystemExit(f"{path}:{index + 1}: a line begins with one of # > < | = ! %")
    return lines, options, exchanges


def marked(mark, text):
    return f"{mark} {text}".rstrip()


class Host:
    """gcad, one request at a time."""

    def __init__(self, gcad, options, scratch):
        self.numbers = {}
        self.scratch = scratch
        self.at_line_start = True
        environment = dict(os.environ, TMPDIR=scratch, HOME=scratch)
        if EMULATOR:  # keeps what it needs in the person's cache: once, not for each transcript
            environment.setdefault("XDG_CACHE_HOME", os.path.expanduser("~/.cache"))
        command = EMULATOR + [gcad, "repl", "--json"]
        self.process = subprocess.Popen(command + [self.filled(o) for o in options], stdin=subprocess.PIPE,
                                        stdout=subprocess.PIPE, stderr=subprocess.PIPE, cwd=scratch, env=environment)

    def filled(self, text):
        return text.replace("${SOURCE}", SOURCE).replace("${SCRATCH}", self.scratch)

    def normal(self, text):
        def number(match):
            return f"<Entity {self.numbers.setdefault(match[1], len(self.numbers) + 1)}>"
        if EMULATOR:
            text = WINDOWS_PATH.sub(lambda path: re.sub(r"\\+", "/", path[0][2:]), text)
        return NAME.sub(number, text).replace(self.scratch, "${SCRATCH}").replace(SOURCE, "${SOURCE}")

    def perform(self, exchange):
        """What a form printed and gave, as lines of a transcript."""
        request = {"eval": self.filled("\n".join(exchange.form)), "input": [self.filled(t) for t in exchange.typed]}
        self.process.stdin.write((json.dumps(request) + "\n").encode())
        self.process.stdin.flush()
        answer = self.process.stdout.readline()
        if not answer:
            return None
        reply = json.loads(answer)
        printed, failed = reply["printed"], reply["status"] != "done"
        began_fresh = self.at_line_start
        if printed:
            self.at_line_start = printed.endswith("\n")
        notice = f"; error: {reply.get('message')}\n"
        if failed and printed.endswith(notice):
            # The notice of an error is what the ! line stands for, with the newline that ends an earlier line.
            printed = printed[:-len(notice)]
            if not began_fresh and printed == "\n":
                printed = ""
        lines = [marked("|", self.normal(line)) for line in printed.removesuffix("\n").split("\n")] if printed else []
        lines.append(marked("!", self.normal(reply["message"])) if failed else marked("=", self.normal(reply["value"])))
        for note in reply["open"]:
            names = " ".join(self.normal(f"<Entity name: {0x7ff600000000 + int(h, 16) * 16:x}>") for h in note["objects"])
            lines.append(marked("%", f"{note['function'].lower()} {names}"))
        return "\n".join(lines).split("\n")

    def end(self):
        out, err = self.process.communicate()
        return self.process.returncode, err.decode("utf-8", "replace")


def rewritten(lines, exchanges, actual):
    """The transcript with what was printed now in place of what was expected."""
    replaced = {index for exchange in exchanges for index, _ in exchange.expected}
    result = []
    after = {exchange.last: got for exchange, got in zip(exchanges, actual)}
    for index, line in enumerate(lines):
        if index not in replaced:
            result.append(line)
        if index in after:
            result += after[index]
    return "\n".join(result)


def run(gcad, path, accept):
    lines, options, exchanges = read(path)
    failures, actual = 0, []
    with tempfile.TemporaryDirectory() as scratch:
        host = Host(gcad, options, os.path.realpath(scratch))
        for exchange in exchanges:
            got = host.perform(exchange)
            if got is None:
                code, error = host.end()
                print(f"{path}:{exchange.first + 1}: gcad ended with code {code} at this form\n{error}")
                return False
            actual.append(got)
            wanted = [text for _, text in exchange.expected]
            if got != wanted and not accept:
                failures += 1
                print(f"{path}:{exchange.first + 1}: " + " ".join(exchange.form))
                print("  expected:\n" + "".join(f"    {line}\n" for line in wanted) +
                      "  got:\n" + "".join(f"    {line}\n" for line in got))
        code, error = host.end()
        if code != 0:
            failures += 1
            print(f"{path}: gcad ended with code {code}\n{error}")
    if accept:
        text = rewritten(lines, exchanges, actual)
        if text != "\n".join(lines):
            with open(path, "w", encoding="utf-8", newline="\n") as file:
                file.write(text)
            print(f"{path}: rewritten")
    if not exchanges:
        print(f"{path}: no form in it")
    return failures == 0 and bool(exchanges)


def main():
    arguments = sys.argv[1:]
    accept = "--accept" in arguments
    arguments = [a for a in arguments if a != "--accept"]
    words = os.environ.get("GC_ACCEPT", "").split()
    good = True
    for path in arguments[1:]:
        wanted = accept or (words and (words == ["all"] or any(word in path for word in words)))
        good = run(os.path.abspath(arguments[0]), path, wanted) and good
    sys.exit(0 if good else 1)


if __name__ == "__main__":
    main()
