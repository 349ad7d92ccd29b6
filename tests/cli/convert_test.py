"""gcad convert: exit codes to the letter, versions, what is told. Usage: convert_test.py GCAD"""
import os
import tempfile

from program import check, expect, finish


def version_of(path):
    lines = open(path, encoding="utf-8", errors="replace").read().split("\n")
    return lines[lines.index("$ACADVER") + 2]


def main():
    folder = tempfile.mkdtemp()
    at = lambda name: os.path.join(folder, name)
    plan = at("plan.dxf")
    draw = '(entmake (list (cons 0 "CIRCLE") (cons 10 (list 1.0 2.0 0.0)) (cons 40 3.0)))'
    expect("a drawing to work with", 0, "run", "--no-module", "-e", draw, "-s", plan)

    # Versions and formats.
    for name, number in (("R12", "AC1009"), ("R2000", "AC1015"), ("R2004", "AC1018"), ("R2007", "AC1021"),
                         ("R2010", "AC1024"), ("R2013", "AC1027"), ("R2018", "AC1032")):
        out = at(name + ".dxf")
        expect("as " + name, 0, "convert", plan, out, "--as", name)
        check("as " + name + ": version", version_of(out) == number)
        expect("binary as " + name, 0, "convert", plan, at(name + "b.dxf"), "--as", name.lower(), "--binary")
        check("binary as " + name, open(at(name + "b.dxf"), "rb").read(22).endswith(b"Binary DXF\r\n\x1a\x00"))
        expect("back from binary " + name, 0, "convert", at(name + "b.dxf"), at(name + "c.dxf"))
        check("own version kept: " + name, version_of(at(name + "c.dxf")) == number)
    expect("into DWG", 0, "convert", plan, at("plan.dwg"))
    expect("out of DWG", 0, "convert", at("plan.dwg"), at("back.dxf"))
    check("same version through DWG", version_of(at("back.dxf")) == "AC1032")
    expect("DWG is not written as R2007: the next newer one", 0, "convert", at("R2007.dxf"), at("newer.dwg"))
    check("next newer", open(at("newer.dwg"), "rb").read(6) == b"AC1024")

    # 2: usage.
    expect("no output named", 2, "convert", plan)
    expect("a version nobody knows", 2, "convert", plan, at("x.dxf"), "--as", "R14")
    expect("DWG as R2007", 2, "convert", plan, at("x.dwg"), "--as", "R2007", told="but as R2000, R2004, R2010")
    expect("DWG as R12", 2, "convert", plan, at("x.dwg"), "--as", "R12")
    expect("an extension without a format", 2, "convert", plan, at("x.txt"), told="names no format")
    expect("onto itself", 2, "convert", plan, plan, "-f", told="is the drawing that is read")
    expect("binary DWG", 2, "convert", plan, at("x.dwg"), "--binary")
    check("nothing written", not os.path.exists(at("x.dwg")) and not os.path.exists(at("x.dxf")))

    # 3: a drawing that cannot be read.
    expect("no such file", 3, "convert", at("none.dxf"), at("x.dxf"), told="none.dxf")
    with open(at("text.dxf"), "w") as text:
        text.write("no drawing\n")
    expect("no drawing", 3, "convert", at("text.dxf"), at("x.dxf"))

    # 4: a file that cannot be written.
    expect("it exists", 4, "convert", plan, at("R12.dxf"), told="-f overwrites it")
    expect("forced", 0, "convert", plan, at("R12.dxf"), "-f", "--as", "R12")
    expect("no such folder", 4, "convert", plan, os.path.join(folder, "none", "x.dxf"))

    # What the version cannot say is told on standard error, nothing on standard output.
    mtext = '(entmake (list (cons 0 "MTEXT") (cons 10 (list 0.0 0.0 0.0)) (cons 40 2.5) (cons 1 "a")))'
    noted = at("noted.dxf")
    expect("a drawing with paragraphs", 0, "run", "--no-module", "-e", mtext, "-s", noted)
    result = expect("told by object", 0, "convert", noted, at("old.dxf"), "--as", "R12",
                    told="mapped: R12 has no such entity: written as TEXT")
    check("standard output stays empty", result.stdout == "", result)
    result = expect("run --as takes the same way", 0, "run", "--no-module", "-d", noted, "-s", at("run.dxf"), "--as", "R12",
                    told="mapped: R12 has no such entity: written as TEXT")
    check("the same file", open(at("run.dxf")).read() == open(at("old.dxf")).read())
    result = expect("nothing to tell", 0, "convert", plan, at("same.dxf"))
    check("silent", result.stderr == "", result)
    finish()


main()
