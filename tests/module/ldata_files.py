#!/usr/bin/env python3
"""Named values through drawing files: ldata_files.py GCAD

Texts of every awkward kind are put into a dictionary and on an entity, saved in every version of both formats, and
must come back the same: read by a gcad with the module, after a gcad without the module has read and saved them (its
objects are zombies then), and, where ezdxf is installed, after that has loaded, changed and saved the drawing.
"""
import os
import shlex
import subprocess
import sys
import tempfile

VERSIONS = {"dxf": ["R2000", "R2004", "R2007", "R2010", "R2013", "R2018"],
            "dwg": ["R2000", "R2004", "R2010", "R2013", "R2018"]}
TEXTS = [
    "plain", " leading and trailing blanks  ", 'quotes " and \\ backslashes \\\\', "line\nfeeds\r\nand\treturns",
    "carets ^ ^J ^^ ^", "%%d %%c %%%", "\\U+00B2 \\U+005CU+00B2 \\M+1907D \\P {\\fArial;x}", "(&VLO-R . 0)",
    "zażółć gęślą jaźń", "m² Ø20 日本 한 😀", "\x01\x02\x1b\x1f", "0", "  0", "ENDSEC", "x" * 5000, "ż" * 3000,
    "-1.0e-300", "(1 . 2)", "\ufffd\ufeff", "ends in a caret^", "ends in a backslash\\",
]
LARGE = 1 << 20


def literal(text):
    """A LISP expression for a text."""
    codes = []
    for unit in memoryview(text.encode("utf-16-le")).cast("H"):
        codes.append(str(unit))
    return "(vl-list->string '(" + " ".join(codes) + "))"


PUT = "\n".join(['(setq e (kel_addline "ModelSpace" (list 0 0 0) (list 1 0 0)))'] + [
    f'(kel_ldata_put "TEXTS" "{i}" {literal(t)})\n(kel_ldata_put e "{i}" {literal(t)})' for i, t in enumerate(TEXTS)] +
    ['(setq s "y") (repeat 20 (setq s (strcat s s))) (kel_ldata_put "TEXTS" "large" s)', "(princ)"])
CHECK = "\n".join([
    "(setq e (entnext) bad 0)",
    "(defun same (place key wanted) (if (/= (kel_ldata_get place key) wanted)"
    " (progn (setq bad (1+ bad)) (princ (list key (kel_ldata_get place key))))))"] + [
    f'(same "TEXTS" "{i}" {literal(t)})\n(same e "{i}" {literal(t)})' for i, t in enumerate(TEXTS)] + [
    f'(if (/= (strlen (kel_ldata_get "TEXTS" "large")) {LARGE}) (setq bad (1+ bad)))',
    f'(if (/= (length (kel_ldata_list "TEXTS")) {len(TEXTS) + 1}) (setq bad (1+ bad)))',
    f'(if (/= (length (kel_ldata_list e)) {len(TEXTS)}) (setq bad (1+ bad)))',
    f'(if (/= (length (kel_search_dict_kel)) {len(TEXTS) + 2}) (setq bad (1+ bad)))',
    '(if (member "TEXTS" (kel_search_dict_vlax)) (setq bad (1+ bad)))',
    "(exit (if (= bad 0) 0 3))"])
# Without the module the values are objects of a class nobody knows.
ABSENT = """(setq d (dictsearch (namedobjdict) "TEXTS"))
(exit (if (and d (null (vl-catch-all-error-p (vl-catch-all-apply 'kel_ldata_get '("TEXTS" "0"))))) 3 0))"""


class Checks:
    def __init__(self, gcad, folder):
        self.command = shlex.split(os.environ.get("GC_EMULATOR", "")) + [gcad, "run"]
        self.folder = folder
        self.failures = 0
        self.count = 0

    def path(self, name):
        return os.path.join(self.folder, name)

    def script(self, name, text):
        with open(self.path(name), "w", encoding="utf-8") as file:
            file.write(text)
        return self.path(name)

    def run(self, what, *arguments):
        self.count += 1
        done = subprocess.run(self.command + list(arguments), cwd=self.folder, capture_output=True, text=True)
        if done.returncode != 0:
            self.failures += 1
            print(f"{what}: gcad ended with {done.returncode}\n{done.stdout}\n{done.stderr[-2000:]}")
        return done.returncode == 0


def edited_by_ezdxf(path):
    """True when ezdxf has loaded the drawing, added to it and saved it."""
    code = ("import sys, ezdxf\nd = ezdxf.readfile(sys.argv[1])\nd.layers.add('EZ')\n"
            "d.modelspace().add_point((9, 9), dxfattribs={'layer': 'EZ'})\nd.saveas(sys.argv[1])\n")
    for python in (sys.executable, "/usr/bin/python3"):
        if subprocess.run([python, "-c", "import ezdxf"], capture_output=True).returncode == 0:
            done = subprocess.run([python, "-c", code, path], capture_output=True, text=True)
            if done.returncode != 0:
                print(done.stderr[-1000:])
                sys.exit("ezdxf does not load what was saved")
            return True
    return False


FOREIGN = """(setq d (entmakex '((0 . "DICTIONARY") (100 . "AcDbDictionary"))))
(dictadd (namedobjdict) "THEIRS" d)
(dictadd d "k" (entmakex '((0 . "VLO-VL") (100 . "vlo_VL") (40 . 2.5) (300 . "(&VLO-R . 0)"))))"""
# The first form gives the value of another application, the second finds its zombie; nil when all is well.
FOREIGN_READ = '(exit (if (and (= (kel_ldata_get "THEIRS" "k") "2.500000") (member "THEIRS" (kel_search_dict_vlax))) 0 3))'
FOREIGN_LEFT_OUT = '(exit (if (and (null (kel_ldata_get "THEIRS" "k")) (member "THEIRS" (kel_search_dict_vlax))) 0 3))'


def foreign(checks):
    """Values of another application, also where their class is left out: zombies, kept as they are."""
    for name in ("foreign.dxf", "foreign.dwg"):
        first, second = checks.path(name), checks.path("again-" + name)
        checks.run(f"{name} made", "-e", FOREIGN, "-s", first)
        checks.run(f"{name} read", "-d", first, "-e", FOREIGN_READ)
        checks.run(f"{name} class left out", "--without-class", "vlo_VL", "-d", first, "-e", FOREIGN_LEFT_OUT)
        checks.run(f"{name} saved without its class", "--without-class", "vlo_VL", "-d", first, "-e", "(princ)", "-s",
                   second)
        checks.run(f"{name} read after that", "-d", second, "-e", FOREIGN_READ)


# Values of LISP programs, kept by the host's own functions; each script ends with 0 when all is well.
KEPT = """(setq value '(1 0.1 -1.0e-300 "za\\"\\\\ó\\n" (x . 2.5) nil T (((3.0)))))
(vlax-ldata-put "KEPT" "k" value)
(vlax-ldata-put (entmakex '((0 . "POINT") (10 1.0 2.0 0.0))) "of point" (list value (entmakex '((0 . "LINE") (10 0 0 0) (11 1 1 0)))))"""
KEPT_READ = """(setq value '(1 0.1 -1.0e-300 "za\\"\\\\ó\\n" (x . 2.5) nil T (((3.0)))))
(setq point (ssname (ssget "_X" '((0 . "POINT"))) 0) line (ssname (ssget "_X" '((0 . "LINE"))) 0))
(exit (if (and (equal (vlax-ldata-get "KEPT" "k") value 0.0) (equal (vlax-ldata-get point "of point") (list value line))) 0 3))"""


def kept(checks, kind, version):
    name = checks.path(f"kept-{version}.{kind}")
    put, read = checks.script("kept.lsp", KEPT), checks.script("kept_read.lsp", KEPT_READ)
    if checks.run(f"{kind} {version} values kept", put, "-s", name, "--as", version):
        checks.run(f"{kind} {version} kept values read", "-d", name, read)


def bits_of(data):
    return "".join(f"{byte:08b}" for byte in data)


def value_bits(version, text):
    """The fields of a value in a record of R2000: a version, then a counted text (version 1), or a size and the text's units."""
    if version == 1:
        data = text.encode("ascii")
        return f"01{version:08b}01{len(data):08b}{bits_of(data)}"
    data = text.encode("utf-16-le")
    return f"01{version:08b}01{len(data):08b}{bits_of(data)}"


def other_record_versions(checks):
    """Records of the first version are read; those of a later one are kept as they are, whatever is done to the drawing."""
    made = checks.path("versions.dwg")
    if not checks.run("dwg value put", "-e", '(kel_ldata_put "V" "k" "plain")', "-s", made, "--as", "R2000"):
        return
    with open(made, "rb") as file:
        bits = bits_of(file.read())
    now = value_bits(2, "plain")
    checks.count += 1
    if bits.count(now) != 1:
        checks.failures += 1
        print(f"the record of a value stands {bits.count(now)} times in the file")
        return

    def write(name, fields):
        changed = bits.replace(now, fields)
        with open(checks.path(name), "wb") as file:
            file.write(int(changed, 2).to_bytes(len(changed) // 8, "big"))
        return checks.path(name)

    first = write("first.dwg", value_bits(1, "0123456789"))
    checks.run("record of version 1", "-d", first, "-e", '(exit (if (= (kel_ldata_get "V" "k") "0123456789") 0 3))')
    later = value_bits(3, "plain")
    drawing = write("later.dwg", later)
    for options in ([], ["--no-module"]):
        checks.run("record of version 3", *options, "-d", drawing, "-e",
                   "(exit (if (dictsearch (namedobjdict) \"V\") 0 3))")
        for between in ("R2000", "R2004", "R2010", "R2018"):
            far, back = checks.path(f"later-{between}.dwg"), checks.path("later-back.dwg")
            checks.run(f"version 3 saved as {between}", *options, "-d", drawing, "-e",
                       '(entmake (list (cons 0 "POINT") (list 10 1.0 2.0 0.0)))', "-s", far, "--as", between, "-f")
            checks.run(f"version 3 back from {between}", *options, "-d", far, "-e", "(princ)", "-s", back, "--as", "R2000",
                       "-f")
            checks.count += 1
            with open(back, "rb") as file:
                if later not in bits_of(file.read()):
                    checks.failures += 1
                    print(f"a record of version 3 is lost by way of {between} {options}")


def across_versions(checks, check):
    """Values saved in another version by a gcad that does not know them."""
    for made, then in (("R2000", "R2018"), ("R2018", "R2000"), ("R2010", "R2004"), ("R2004", "R2013")):
        name, again = checks.path(f"{made}.dwg"), checks.path(f"{made}-as-{then}.dwg")
        checks.run(f"dwg {made} as {then} without the module", "--no-module", "-d", name, "-e", "(princ)", "-s", again,
                   "--as", then)
        checks.run(f"dwg {made} as {then} read after that", "-d", again, check)


def dry_run(checks):
    """A script that puts a value and then fails leaves the drawing's file as it was."""
    drawing = checks.path("dry.dxf")
    checks.run("dry run made", "-e", '(kel_ldata_put "D" "k" "1")', "-s", drawing)
    with open(drawing, "rb") as file:
        before = file.read()
    for last in ("(princ)", "(car 5)"):
        subprocess.run(checks.command + ["-d", drawing, "-e", '(kel_ldata_put "D" "k" "2")', "-e", last, "--in-place",
                                         "--dry-run"], cwd=checks.folder, capture_output=True)
        checks.count += 1
        with open(drawing, "rb") as file:
            if file.read() != before:
                checks.failures += 1
                print(f"a dry run that ends with {last} has changed the drawing")


def main():
    with tempfile.TemporaryDirectory() as folder:
        checks = Checks(os.path.abspath(sys.argv[1]), folder)
        put, check = checks.script("put.lsp", PUT), checks.script("check.lsp", CHECK)
        absent = checks.script("absent.lsp", ABSENT)
        edited = 0
        for kind, versions in VERSIONS.items():
            for version in versions:
                name, again = checks.path(f"{version}.{kind}"), checks.path(f"{version}-again.{kind}")
                if not checks.run(f"{kind} {version} put", put, "-s", name, "--as", version):
                    continue
                checks.run(f"{kind} {version} read", "-d", name, check)
                kept(checks, kind, version)
                checks.run(f"{kind} {version} without the module", "--no-module", "-d", name, absent)
                checks.run(f"{kind} {version} saved without the module", "--no-module", "-d", name, "-e", "(princ)",
                           "-s", again, "--as", version)
                checks.run(f"{kind} {version} read after that", "-d", again, check)
                if kind == "dxf" and edited_by_ezdxf(again):
                    edited += 1
                    checks.run(f"{kind} {version} edited elsewhere", "-d", again, check)
        across_versions(checks, check)
        other_record_versions(checks)
        foreign(checks)
        dry_run(checks)
        print(f"{checks.count} runs, {edited} drawings edited by another program, {checks.failures} failures")
        sys.exit(1 if checks.failures or checks.count == 0 else 0)


if __name__ == "__main__":
    main()
