#!/usr/bin/env python3
"""System variables are what the table in data/variables.txt says: type, value in a new drawing, range, read-only, and
whether a value is still there when the drawing has been saved and opened again. variables_test.py GCAD"""
import os
import shlex
import subprocess
import sys
import tempfile

TABLE = os.path.join(os.path.dirname(os.path.abspath(__file__)), "data", "variables.txt")
# Set to what must exist in the drawing, or set by other means than a free choice of value.
PROBES = {"CECOLOR": '"3"', "CELTYPE": '"ByBlock"', "CLAYER": '"Probe"', "CTAB": '"Layout1"', "TEXTSTYLE": '"Probe"',
          "CELWEIGHT": "50", "TILEMODE": None, "CVPORT": None, "HPNAME": '"ANSI37"', "HPCOLOR": '"3"',
          "CTABLESTYLE": None, "LASTPOINT": "'(1.0 2.0 3.0)", "DIMDSEP": '"."'}
PROLOGUE = """
(defun check (name what holds) (if (not holds) (progn (print (list name what (getvar name))) (setq wrong T))))
(defun kind (value) (if (listp value) (read (strcat "POINT" (itoa (length value)))) (type value)))
(defun refused (name value) (vl-catch-all-error-p (vl-catch-all-apply 'setvar (list name value))))
(entmake '((0 . "LAYER") (100 . "AcDbSymbolTableRecord") (100 . "AcDbLayerTableRecord") (2 . "Probe") (70 . 0)))
(entmake '((0 . "STYLE") (100 . "AcDbSymbolTableRecord") (100 . "AcDbTextStyleTableRecord") (2 . "Probe") (70 . 0)
           (40 . 0.0) (41 . 1.0) (50 . 0.0) (71 . 0) (42 . 2.5) (3 . "txt") (4 . "")))
"""
EPILOGUE = "(exit (if wrong 3 0))"


class Variable:
    def __init__(self, line):
        name, self.kind, self.kept, default, span, settable = line.split()
        self.name = f'"{name}"'
        self.default = None if default == "-" else self.literal(default)
        self.least, self.most = (None, None) if span == "-" else (float(end) for end in span.split(".."))
        self.settable = settable == "settable"
        self.probe = PROBES[name] if name in PROBES else self.free_value()

    def literal(self, text):
        if self.kind == "STR":
            return text
        if self.kind.startswith("POINT"):
            return "'(" + " ".join(repr(float(part)) for part in text.split(",")) + ")"
        return str(int(text)) if self.kind == "INT" else repr(float(text))

    def number(self, value):
        return str(int(value)) if self.kind == "INT" else repr(float(value))

    # A value in range that is not the default.
    def free_value(self):
        if self.kind == "STR":
            return '"probe"'
        if self.kind.startswith("POINT"):
            return "'(" + " ".join(["1.5", "2.5", "3.5"][:int(self.kind[-1])]) + ")"
        if self.least is None:
            return self.number(7)
        for value in (self.least, self.most, 0.25, 7):
            if self.least <= value <= self.most and self.number(value) != self.default:
                return self.number(value)
        return None

    def is_value(self, value):
        return f"(check {self.name} '(should be {value}) (equal (getvar {self.name}) {value} 1e-12))"

    def is_refused(self, value):
        return f"(check {self.name} '(should refuse {value}) (refused {self.name} {value}))"

    # In a new drawing; then what it takes, and the value it keeps.
    def first_run(self):
        forms = [f"(check {self.name} 'type (= (kind (getvar {self.name})) '{self.kind}))"]
        if self.default is not None:
            forms.append(self.is_value(self.default))
        if not self.settable:
            return forms + [self.is_refused(f"(getvar {self.name})")]
        forms.append(self.is_refused("5" if self.kind in ("STR", "POINT2", "POINT3") else '"x"'))
        forms.append(self.is_refused("nil"))
        if self.kind == "INT":
            forms.append(self.is_refused("1.5"))
        if self.least is not None:
            step = 1 if self.kind == "INT" else 0.5
            forms.append(self.is_refused(self.number(self.least - step)))
            if self.most < 1e299:
                forms.append(self.is_refused(self.number(self.most + step)))
        return forms

    def set_run(self):
        if not self.settable or self.probe is None:
            return []
        return [f"(vl-catch-all-apply 'setvar (list {self.name} {self.probe}))", self.is_value(self.probe)]

    def second_run(self):
        if not self.settable or self.probe is None:
            return []
        if self.kept == "drawing":
            return [self.is_value(self.probe)]
        return [self.is_value(self.default)] if self.kept == "session" and self.default is not None else []


def run(folder, what, forms, *options):
    script = os.path.join(folder, "script.lsp")
    with open(script, "w", encoding="utf-8") as file:
        file.write("\n".join([PROLOGUE, *forms, EPILOGUE]))
    command = shlex.split(os.environ.get("GC_EMULATOR", "")) + [sys.argv[1], "run", "--no-module", *options]
    done = subprocess.run(command, capture_output=True, encoding="utf-8", timeout=300)
    if done.returncode != 0:
        sys.exit(f"{what}: code {done.returncode}\n{done.stdout}\n{done.stderr}")


def main():
    with open(TABLE, encoding="utf-8") as file:
        variables = [Variable(line) for line in file if line.strip() and not line.startswith("#")]
    assert len(variables) > 150
    with tempfile.TemporaryDirectory() as folder:
        script = os.path.join(folder, "script.lsp")
        run(folder, "a new drawing", sum((v.first_run() for v in variables), []), script)
        for kind in ("dxf", "dwg"):
            drawing = os.path.join(folder, "kept." + kind)
            run(folder, "set", sum((v.set_run() for v in variables), []), script, "-s", drawing)
            run(folder, "opened again", sum((v.second_run() for v in variables), []), "-d", drawing, script)


main()
