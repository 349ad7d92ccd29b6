#!/usr/bin/env python3
"""Every function of the module that takes an entity, with an entity of every kind: it answers or refuses with one of
its texts, and leaves nothing open. every_kind_test.py GCAD"""
import os
import re
import tempfile

from program import check, finish, gcad

PROGRAM = os.path.join(os.path.dirname(os.path.dirname(os.path.abspath(__file__))), "lisp", "every_kind.lsp")
LEAST_KINDS = 32
REFUSALS = ("Błędny typ argumentu", "Nie można ustawić punktu załącznika dla obiektu AcDbLeader")

with tempfile.TemporaryDirectory() as folder:
    result = gcad("run", PROGRAM, "--time-limit", "300", cwd=folder, input="")
check("the calls end", result.returncode == 0, result)
check("nothing stays open", "OPEN" not in result.stdout, result)
check("no call is an error", "-> ERROR" not in result.stdout, result)
kinds = re.split(r"^== ", result.stdout, flags=re.MULTILINE)[1:]
check("every kind is there", len(kinds) >= LEAST_KINDS)
answering, called = set(), set()
for kind in kinds:
    name = kind.partition("\n")[0]
    check(f"{name} is still there", re.search(r"^still there$", kind, re.MULTILINE))
    for said, function, value in re.findall(r"^# (.*?)^@ (\S+) -> (.*?)$", kind, re.MULTILINE | re.DOTALL):
        text = said.strip()
        check(f"{name}, {function}: a text of its own: {text}", not text or text in REFUSALS)
        check(f"{name}, {function}: a refused call yields nothing", not text or value == "nil")
        called.add(function)
        if not text:
            answering.add(function)
check(f"a kind for {sorted(called - answering)}", called == answering)
check("calls", len(called) > 55)
print(f"{len(called)} functions, {len(kinds)} kinds")
finish()
