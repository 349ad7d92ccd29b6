"""gcad audit: what it finds, mends and answers. Usage: audit_test.py GCAD"""
import json
import os
import tempfile

from program import check, expect, finish


def main():
    folder = tempfile.mkdtemp()
    at = lambda name: os.path.join(folder, name)
    draw = '(entmake (list (cons 0 "CIRCLE") (cons 10 (list 1.0 2.0 0.0)) (cons 40 3.0)))'
    expect("a drawing to work with", 0, "run", "--no-module", "-e", draw, "-s", at("good.dxf"))
    expect("clean", 0, "audit", at("good.dxf"), says="0 errors in the file, 0 in the drawing")

    text = open(at("good.dxf")).read()
    bad = text.replace("\n 40\n3.0\n", "\n 40\n-3.0\n")
    assert bad != text
    with open(at("bad.dxf"), "w") as file:
        file.write(bad)
    expect("a size below zero", 5, "audit", at("bad.dxf"), says="A24 CIRCLE")
    found = json.loads(expect("as JSON", 5, "audit", at("bad.dxf"), "--json").stdout)
    check("what JSON says", [entry["code"] for entry in found["drawing"]] == ["A24"] and found["mended"] == 0)
    expect("mended", 0, "audit", at("bad.dxf"), "--fix", "-o", at("mended.dxf"), says="1 of these mended")
    expect("clean afterwards", 0, "audit", at("mended.dxf"))

    with open(at("cut.dxf"), "w") as file:
        file.write(text[: len(text) * 3 // 4])
    expect("cut off", 5, "audit", at("cut.dxf"), says="missing: the file ends without EOF")
    expect("cut off, mended", 0, "audit", at("cut.dxf"), "--fix", "-o", at("whole.dxf"))
    expect("whole again", 0, "audit", at("whole.dxf"))

    expect("--fix without -o", 2, "audit", at("bad.dxf"), "--fix")
    expect("-o without --fix", 2, "audit", at("bad.dxf"), "-o", at("x.dxf"))
    expect("onto itself", 2, "audit", at("bad.dxf"), "--fix", "-f", "-o", at("bad.dxf"))
    expect("no such file", 3, "audit", at("none.dxf"))
    expect("it exists", 4, "audit", at("bad.dxf"), "--fix", "-o", at("mended.dxf"), told="-f overwrites it")
    finish()


main()
