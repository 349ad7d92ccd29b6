"""Every layout is plotted into a file of its own, viewports at their scales, layers frozen in one of them left out; measured
in the pictures. Usage: plot_layouts_test.py GCAD"""
import os
import re
import subprocess
import sys
import tempfile

from program import GCAD

DRAW = """
(entmake '((0 . "LAYER") (100 . "AcDbSymbolTableRecord") (100 . "AcDbLayerTableRecord") (2 . "GRID") (70 . 0) (62 . 1) (6 . "Continuous")))
(entmake '((0 . "LINE") (10 0.0 0.0) (11 300.0 0.0) (62 . 5)))
(entmake '((0 . "LINE") (8 . "GRID") (10 0.0 20.0) (11 300.0 20.0)))
(kel_addlayout "Plan")
(foreach each '(("Layout1" 2) ("Plan" 5))
  (setq v (kel_addviewport (car each) '(150 100 0) 320.0 160.0))
  (kel_put_standardscale v (cadr each)))
(command "_.VPLAYER" "_F" "GRID" "_S" v "" "")
(kel_put_activelayout "Model")
"""


def segments(path):
    """Lengths of the straight lines of a picture, by stroke colour."""
    found = {}
    text = open(path, encoding="utf-8").read()
    for colour, data in re.findall(r'stroke="(#[0-9a-f]{6})"[^>]* d="([^"]*)"', text) + [
        (c, d) for d, c in re.findall(r' d="([^"]*)"[^>]* stroke="(#[0-9a-f]{6})"', text)
    ]:
        for x0, y0, x1, y1 in re.findall(r"M(-?[\d.]+) (-?[\d.]+)L(-?[\d.]+) (-?[\d.]+)", data):
            found.setdefault(colour, []).append(((float(x0) - float(x1)) ** 2 + (float(y0) - float(y1)) ** 2) ** 0.5)
    return found


def check(what, condition):
    if not condition:
        print("FAILED:", what)
    return condition


def main():
    folder = tempfile.mkdtemp()
    drawing = os.path.join(folder, "plan.dxf")
    script = os.path.join(folder, "draw.lsp")
    with open(script, "w", encoding="utf-8") as file:
        file.write(DRAW)
    subprocess.run(GCAD + ["run", script, "-s", drawing], check=True, capture_output=True)
    subprocess.run(GCAD + ["plot", drawing, "-o", os.path.join(folder, "out.svg"), "--all-layouts"], check=True,
                   capture_output=True)
    pictures = sorted(name for name in os.listdir(folder) if name.endswith(".svg"))
    good = check(f"a file for each layout: {pictures}",
                 pictures == ["out-Layout1.svg", "out-Layout2.svg", "out-Model.svg", "out-Plan.svg"])
    one = segments(os.path.join(folder, "out-Layout1.svg"))
    five = segments(os.path.join(folder, "out-Plan.svg"))
    good &= check(f"1:1, the line is 300 mm long: {one}", one.get("#0000ff") == [300.0])
    good &= check(f"1:1, the other layer is seen: {one}", one.get("#ff0000") == [300.0])
    good &= check(f"1:5, the line is 60 mm long: {five}", five.get("#0000ff") == [60.0])
    good &= check(f"the layer frozen in the viewport is not: {five}", "#ff0000" not in five)
    return 0 if good else 1


sys.exit(main())
