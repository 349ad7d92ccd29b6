#!/usr/bin/env python3
"""File names and scripts as users have them: Polish letters, spaces, both slashes, names beyond 260 characters, scripts
with the line ends of either system. Usage: paths_test.py GCAD"""
import os
import tempfile

from program import IS_WINDOWS, check, expect, finish

LINE = "(entmake '((0 . \"LINE\") (10 0.0 0.0 0.0) (11 1.0 2.0 0.0)))"
COUNT = '(princ (strcat "lines: " (itoa (sslength (ssget "X" \'((0 . "LINE")))))))'


def quoted(path):
    """As a LISP program writes a path: slashes."""
    return path.replace("\\", "/")


def try_folder(what, folder):
    """Everything that takes a file name, with files in `folder`."""
    at = lambda name: os.path.join(folder, name)
    os.makedirs(folder)
    drawing, script, copy = at("rysunek żółty.dxf"), at("skrypt ćma.lsp"), at("kopia ŁÓDŹ.dwg")
    with open(script, "w", encoding="utf-8") as file:
        file.write(f"{LINE}\n{COUNT}\n")
    expect(f"{what}: saved", 0, "run", script, "-s", drawing, says="lines: 1")
    check(f"{what}: the file is there", os.path.exists(drawing))
    expect(f"{what}: opened and saved in place", 0, "run", "-d", drawing, script, "--in-place", "--backup",
           says="lines: 2")
    check(f"{what}: the backup is there", os.path.exists(at("rysunek żółty.bak")))
    expect(f"{what}: told when it is there", 4, "run", script, "-s", drawing, told="rysunek żółty.dxf")
    expect(f"{what}: converted", 0, "convert", drawing, copy)
    expect(f"{what}: counted", 0, "run", "-d", copy, "-e", COUNT, says="lines: 2")
    expect(f"{what}: told about", 0, "info", copy, says="LINE")
    expect(f"{what}: audited", 0, "audit", drawing)
    expect(f"{what}: plotted", 0, "plot", drawing, "-o", at("wydruk ś.svg"))
    expect(f"{what}: missing", 3, "run", "-d", at("nie ma ń.dxf"), told="nie ma ń.dxf")
    expect(f"{what}: in batch", 0, "batch", script, folder, "--out-dir", os.path.join(folder, "wyniki ź"))
    results = os.listdir(at("wyniki ź")) if os.path.exists(at("wyniki ź")) else []
    check(f"{what}: results of the batch", sorted(results) == ["kopia ŁÓDŹ.dwg", "rysunek żółty.dxf"])
    expect(f"{what}: a pattern", 0, "batch", script, at("kopia*.dwg"), "--out-dir", at("wyniki wzoru"))
    log, screen = at("dziennik ł.log"), at("ekran ł.json")
    expect(f"{what}: logged", 0, "run", script, "--log", log, "--log-level", "2", "--screen-log", screen, "-e",
           "(kel_addline \"ModelSpace\" '(0 0) '(1 1))")
    check(f"{what}: the logs are there", os.path.exists(log) and os.path.getsize(log) > 0 and os.path.exists(screen))
    try_lisp_files(what, folder)


def try_lisp_files(what, folder):
    """The file functions of LISP."""
    program = f"""
(setq d "{quoted(folder)}/" f (strcat d "notatka ę.txt"))
(defun tell (name value) (princ (strcat name "=" (vl-princ-to-string value) ";")))
(setq h (open f "w"))
(write-line "zażółć" h)
(close h)
(tell "size" (vl-file-size f))
(tell "found" (= (findfile f) nil))
(tell "copy" (vl-file-copy f (strcat d "kopia ę.txt")))
(tell "renamed" (vl-file-rename (strcat d "kopia ę.txt") (strcat d "inna ę.txt")))
(tell "listed" (vl-directory-files d "*ę.txt" 1))
(tell "made" (vl-mkdir (strcat d "nowy ą")))
(tell "folders" (not (member "nowy ą" (vl-directory-files d nil -1))))
(tell "loaded" (load (strcat d "część.lsp")))
(tell "deleted" (vl-file-delete (strcat d "inna ę.txt")))
(setq h (open f "r"))
(tell "read" (read-line h))
(close h)
"""
    with open(os.path.join(folder, "część.lsp"), "w", encoding="utf-8") as file:
        file.write("(+ 40 2)\n")
    result = expect(f"{what}: LISP files", 0, "run", "-", input=program)
    written = os.path.join(folder, "notatka ę.txt")
    size = os.path.getsize(written) if os.path.exists(written) else None
    for wanted in ("found=nil;", f"copy={size};", "renamed=T;", "made=T;", "folders=nil;", "loaded=42;", "deleted=T;",
                   "read=zażółć;"):
        check(f"{what}: LISP {wanted}", wanted in result.stdout, result)
    listed = result.stdout.partition("listed=")[2].partition(";")[0]
    check(f"{what}: LISP listed both", "notatka ę.txt" in listed and "inna ę.txt" in listed, result)


def try_slashes(folder):
    """Both separators in arguments of LISP functions on every platform, and of the program on Windows."""
    os.makedirs(os.path.join(folder, "w głąb"))
    name = quoted(os.path.join(folder, "w głąb", "x.txt"))
    back = name.replace("/", "\\\\")
    result = expect("slashes: LISP", 0, "run", "-e", f'(setq h (open "{back}" "w"))', "-e", '(write-line "a" h)', "-e",
                    "(close h)", "-e", f'(princ (list (vl-file-size "{back}") (vl-file-size "{name}")))')
    size = os.path.getsize(os.path.join(folder, "w głąb", "x.txt"))
    check("slashes: the same file", f"({size} {size})" in result.stdout, result)
    if IS_WINDOWS:
        path = os.path.join(folder, "w głąb", "y.dxf")
        windows = "Z:" + path.replace("/", "\\")
        expect("slashes: saved by a backslash path", 0, "run", "-e", LINE, "-s", windows)
        expect("slashes: opened by a mixed path", 0, "run", "-d", windows.replace("\\w", "/w"), "-e", COUNT,
               says="lines: 1")
        check("slashes: where it belongs", os.path.exists(path))


def try_line_ends(folder):
    """A program of several lines, a text that goes on over a line end, answers, with CR LF and with LF."""
    program = ['(setq text "one', 'two") ; a remark', "(princ (vl-string->list text))", '(princ (getint "N: "))',
               '(princ (getstring T "S: "))', ";| a remark", "of two lines |;", "(princ 'end)", ""]
    os.makedirs(folder)
    for name, end in (("lf", "\n"), ("crlf", "\r\n")):
        script, answers = (os.path.join(folder, f"{name}.{kind}") for kind in ("lsp", "txt"))
        with open(script, "w", newline="") as file:
            file.write(end.join(program))
        with open(answers, "w", newline="") as file:
            file.write(end.join(["12", "word by word", ""]))
        result = expect(f"line ends {name}", 0, "run", script, "-i", answers)
        for wanted in ("(111 110 101 10 116 119 111)", "12", "word by word", "END"):
            check(f"line ends {name}: {wanted}", wanted in result.stdout, result)
        drawing = os.path.join(folder, f"{name}.dxf")
        expect(f"line ends {name}: a drawing", 0, "run", "-e", LINE, "-s", drawing)
        with open(drawing, newline="") as file:
            text = file.read().replace("\r\n", "\n").replace("\n", end)
        with open(drawing, "w", newline="") as file:
            file.write(text)
        expect(f"line ends {name}: the drawing is read", 0, "run", "-d", drawing, "-e", COUNT, says="lines: 1")


def try_refused_target(folder):
    """A folder stands where the file should go: said so, nothing is left beside it."""
    os.makedirs(os.path.join(folder, "out.dxf"))
    expect("a folder in the way", 4, "run", "-e", LINE, "-s", os.path.join(folder, "out.dxf"), "-f", told="out.dxf")
    check("nothing is left", os.listdir(folder) == ["out.dxf"])


def main():
    with tempfile.TemporaryDirectory() as scratch:
        folder = os.path.join(scratch, "Zażółć gęślą jaźń")
        try_folder("Polish letters", folder)
        # Windows' own limit is 260 for a whole path and 248 for a folder's.
        try_folder("long path", os.path.join(scratch, *["bardzo długa nazwa folderu z odstępami i z ogonkami"] * 6))
        try_slashes(os.path.join(scratch, "slashes"))
        try_line_ends(os.path.join(scratch, "ends"))
        try_refused_target(os.path.join(scratch, "refused"))
    finish()


if __name__ == "__main__":
    main()
