"""gcad info: what is in a drawing, for people and as JSON. Usage: info_test.py GCAD"""
import json
import os
import subprocess
import sys
import tempfile

from program import GCAD

DRAWING = """0
SECTION
2
HEADER
9
$ACADVER
1
AC1015
9
$DWGCODEPAGE
3
ANSI_1250
9
$LTSCALE
40
2.5
9
$EXTMIN
10
1.0
20
2.0
30
3.0
0
ENDSEC
0
SECTION
2
CLASSES
0
CLASS
1
THING
2
TheThing
3
Its application
90
0
280
0
281
1
0
ENDSEC
0
SECTION
2
ENTITIES
0
THING
5
100
100
AcDbEntity
8
walls
100
TheThing
40
1.0
0
CIRCLE
5
101
100
AcDbEntity
8
0
100
AcDbCircle
10
0.0
20
0.0
30
0.0
40
nonsense
0
ENDSEC
0
EOF
"""


def main():
    path = os.path.join(tempfile.mkdtemp(), "a.dxf")
    with open(path, "w") as file:
        file.write(DRAWING)
    run = lambda *extra: subprocess.run(GCAD + ["info", *extra], capture_output=True, text=True, encoding="utf-8")
    result = run(path, "--json")
    found = json.loads(result.stdout)
    wanted = {
        "exit": (result.returncode, 0),
        "nothing on standard error": (result.stderr, ""),
        "version": (found["version"], "R2000"),
        "code page": (found["codePage"], "ANSI_1250"),
        "model": (found["entities"]["model"], {"THING": 1, "CIRCLE": 1}),
        "unknown": (found["unknown"], {"THING": 1}),
        "classes": (found["classes"], [{"name": "THING", "class": "TheThing", "application": "Its application",
                                        "entity": True, "unknownObjects": 1}]),
        "a real": (found["header"]["$LTSCALE"], 2.5),
        "a point": (found["header"]["$EXTMIN"], [1.0, 2.0, 3.0]),
        "layers": (sorted(found["layers"]), ["0", "walls"]),
        "the repaired number": ([r["handle"] for r in found["remarks"] if "nonsense" in r["text"]], ["101"]),
        "its line": ([r["line"] for r in found["remarks"] if "nonsense" in r["text"]], [DRAWING[:DRAWING.index("40\nnonsense")].count("\n") + 1]),
        "all remarks": (found["remarkCount"], len(found["remarks"])),
        "for people": ("unknown:     THING 1" in run(path).stdout, True),
        "no such file": (run(path + "x").returncode, 3),
        "no file": (run().returncode, 2),
    }
    bad = {name: pair for name, pair in wanted.items() if pair[0] != pair[1]}
    for name, (is_, should) in bad.items():
        print("FAILED", name, "\n  is    ", is_, "\n  should", should)
    print("ok" if not bad else f"{len(bad)} failed")
    return 1 if bad else 0


sys.exit(main())
