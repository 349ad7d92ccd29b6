#!/usr/bin/env python3
"""The Windows program saves the same bytes as this machine's own: both_platforms_test.py GCAD.exe

Programs draw, edit and save in every format; drawings are converted. The native program is that of the release build;
without it, or for a native GCAD, the test is skipped.
"""
import os
import pathlib
import shlex
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
NATIVE = ROOT / "build" / "bin" / "gcad"
SKIPPED = 77

VERSIONS = {"dxf": ["R12", "R2000", "R2004", "R2007", "R2010", "R2013", "R2018"],
            "dwg": ["R2000", "R2004", "R2010", "R2013", "R2018"]}
# Numbers that come out of sines, roots and iterations, texts of every kind, names with Polish letters.
DRAW = """
(setq l (kel_addline "ModelSpace" '(0 0 0) '(10 5 0)) c (kel_addcircle "ModelSpace" '(3 4) 2.5)
      p (kel_addpolyline "ModelSpace" '(0 0) '(10 0) '(10 10) '(0 10)) t1 (kel_addtext "ModelSpace" "zażółć m² Ø20 %%d" '(1 2) 2.5))
(kel_addmtext "ModelSpace" '(5 5) 40.0 "ąęł\\\\P{\\\\fArial|b1;日本}")
(entmake '((0 . "ELLIPSE") (100 . "AcDbEntity") (100 . "AcDbEllipse") (10 1 2 0) (11 5 1 0) (40 . 0.3) (41 . 0.1) (42 . 4.0)))
(entmake '((0 . "ARC") (10 7 7 0) (40 . 3.3) (50 . 0.7) (51 . 2.9)))
(entmake '((0 . "SPLINE") (100 . "AcDbEntity") (100 . "AcDbSpline") (70 . 8) (71 . 3) (72 . 8) (73 . 4) (40 . 0.0) (40 . 0.0)
  (40 . 0.0) (40 . 0.0) (40 . 1.0) (40 . 1.0) (40 . 1.0) (40 . 1.0) (10 0 0 0) (10 3 7 0) (10 8 -2 0) (10 11 4 0)))
(foreach angle '(0.1 0.785398163397448 1.5707963267949 3.14159265358979 5)
  (foreach e (list l c p t1)
    (command "_.COPY" e "" '(0 0) (list (* 20 angle) 1) "")
    (command "_.ROTATE" (entlast) "" '(1 1) (angtos angle 0 12))
    (command "_.MIRROR" (entlast) "" '(0 0) (list (cos angle) (sin angle)) "_N")
    (command "_.SCALE" (entlast) "" '(2 3) 1.37)))
(setq h (kel_addhatch "ModelSpace" 0 "ANSI31" 1))
(kel_appendouterloop h p)
(kel_evaluate h)
(command "_.OFFSET" 0.7 p '(5 5) "")
(command "_.LAYER" "_M" "Ściany" "")
(command "_.REGION" c "")
(kel_ldata_put "APP" "klucz" "wartość \\\\U+00B2 \\n x")
(princ)
"""


def output(command, *arguments):
    return subprocess.run(command + list(arguments), capture_output=True)


class Both:
    def __init__(self, windows, folder):
        self.commands = {"native": [str(NATIVE)], "windows": windows}
        self.folder = folder
        self.compared = 0
        self.failures = []

    def compare(self, what, name, arguments):
        """Runs both with `{out}` for the file they write, and compares these."""
        files = []
        for platform, command in self.commands.items():
            out = os.path.join(self.folder, f"{platform}-{name}")
            done = output(command, *[a.replace("{out}", out) for a in arguments])
            if done.returncode != 0 or not os.path.exists(out):
                self.failures.append(f"{what} {name}: {platform} ends with {done.returncode}: {done.stderr[-300:]}")
                return
            with open(out, "rb") as file:
                data = file.read()
            files.append(data if name.endswith("dwg") else data.replace(b"\r\n", b"\n"))
        self.compared += 1
        if files[0] != files[1]:
            self.failures.append(f"{what} {name}: {difference(*files)}")


def difference(first, second):
    lines, others = first.split(b"\n"), second.split(b"\n")
    for number, (line, other) in enumerate(zip(lines, others), 1):
        if line != other:
            return f"line {number}: native {line[:60]!r}, windows {other[:60]!r}"
    return f"{len(first)} and {len(second)} bytes"


def main():
    emulator = os.environ.get("GC_EMULATOR")
    if not emulator or not NATIVE.exists():
        print("skipped: compares a Windows build with the release build beside it")
        sys.exit(SKIPPED)
    with tempfile.TemporaryDirectory() as folder:
        both = Both(shlex.split(emulator) + [os.path.abspath(sys.argv[1])], folder)
        script = os.path.join(folder, "draw.lsp")
        with open(script, "w", encoding="utf-8") as file:
            file.write(DRAW)
        plan = str(ROOT / "examples" / "plan.dxf")
        for kind, versions in VERSIONS.items():
            for version in versions:
                name = f"{version}.{kind}"
                # Drawn into one drawing, so that nothing depends on when a new one was made.
                both.compare("drawn", name, ["run", "-d", plan, script, "-f", "-s", "{out}", "--as", version])
                both.compare("converted", name, ["convert", plan, "{out}", "-f", "--as", version])
        both.compare("plotted", "plan.svg", ["plot", plan, "-o", "{out}"])
        print(f"{both.compared} files compared, {len(both.failures)} differ")
        print("\n".join(both.failures))
        sys.exit(1 if both.failures or both.compared == 0 else 0)


if __name__ == "__main__":
    main()
