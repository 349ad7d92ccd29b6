"""gcad batch: inputs, results, shards, resuming, exit codes, interruption. Usage: batch_test.py GCAD"""
import json
import os
import signal
import subprocess
import tempfile
import time

from program import GCAD, check, finish, gcad


def main():
    with tempfile.TemporaryDirectory() as folder:
        run_all(folder)
    finish()


def run_all(folder):
    at = lambda *names: os.path.join(folder, *names)
    os.makedirs(at("in", "łąka"))
    line = '(entmake (list (cons 0 "LINE") (list 10 0.0 0.0 0.0) (list 11 1.0 2.0 0.0)))'
    for name in ("in/a.dxf", "in/b.dxf", "in/łąka/c.dwg"):
        gcad("run", "--no-module", "-e", line, "-s", at(name))
    open(at("in", "no drawing.txt"), "w").close()
    script = at("count.lsp")
    with open(script, "w", encoding="utf-8") as f:
        f.write('(setq s (ssget "_X"))\n(princ (strcat (getvar "DWGNAME") " " (itoa (sslength s))'
                ' (if *ARGV* (car *ARGV*) "")))\n(entmake (entget (ssname s 0)))\n(princ)\n')

    result = gcad("batch", script, at("in"), "--no-module", "-j", "2", "--", "!")
    check("a folder", result.returncode == 0 and "3 drawings: 3 done, 0 failed" in result.stderr, result)
    check("its texts", result.stdout.count(" 1!") == 3 and "a.dxf 1!" in result.stdout, result)

    out = at("out")
    result = gcad("batch", script, at("in"), "--no-module", "--out-dir", out, "--format", "dxf", "--as", "R2010", "--json")
    lines = [json.loads(text) for text in result.stdout.splitlines()]
    check("results", result.returncode == 0 and len(lines) == 3, result)
    check("their structure", os.path.exists(os.path.join(out, "łąka", "c.dxf")), result)
    check("records", all(l["exitCode"] == 0 and l["meaning"] == "done" and os.path.exists(l["output"]) for l in lines), result)
    counted = gcad("batch", script, out, "--no-module")
    check("what was drawn is saved", counted.stdout.count(".dxf 2") == 3, counted)

    result = gcad("batch", script, at("in"), "--no-module", "--out-dir", out, "--format", "dxf")
    check("results are not overwritten", result.returncode == 8 and "exit code 4" in result.stderr, result)
    result = gcad("batch", script, at("in"), "--no-module", "--out-dir", out, "--format", "dxf", "--resume")
    check("resumed", result.returncode == 0 and "3 up to date" in result.stderr, result)
    os.utime(at("in", "a.dxf"), (time.time() + 5, time.time() + 5))
    result = gcad("batch", script, at("in"), "--no-module", "--out-dir", out, "--format", "dxf", "--resume")
    check("a newer drawing is done again", "1 done, 0 failed, 2 up to date" in result.stderr, result)

    shards = [gcad("batch", script, at("in"), "--no-module", "--shard", f"{i}/2").stdout.count("== ") for i in (1, 2)]
    check("shards", shards == [2, 1])
    check("patterns", gcad("batch", script, at("in", "?.dxf"), "--no-module").stdout.count("== ") == 2)

    with open(at("broken.lsp"), "w", encoding="utf-8") as f:
        f.write('(if (wcmatch (getvar "DWGNAME") "b*") (car 5))\n')
    result = gcad("batch", at("broken.lsp"), at("in"), "--no-module")
    check("one fails", result.returncode == 8 and "2 done, 1 failed" in result.stderr
          and "LISP error (exit code 1)" in result.stderr, result)
    check("no such input", gcad("batch", script, at("nowhere")).returncode == 3)
    check("wrong shard", gcad("batch", script, at("in"), "--shard", "3/2").returncode == 2)
    check("resume without results", gcad("batch", script, at("in"), "--resume").returncode == 2)
    os.makedirs(at("twin"))
    gcad("run", "--no-module", "-s", at("twin", "a.dxf"))
    result = gcad("batch", script, at("in", "a.dxf"), at("twin", "a.dxf"), "--out-dir", out)
    check("two results of one name", result.returncode == 2 and "both be saved" in result.stderr, result)

    with open(at("long.lsp"), "w", encoding="utf-8") as f:
        f.write("(while T (setq a 1))\n")
    result = gcad("batch", at("long.lsp"), at("in", "a.dxf"), "--no-module", "--time-limit", "1")
    check("time limit", result.returncode == 8 and "time limit (exit code 6)" in result.stderr, result)
    if os.name == "posix" and not os.environ.get("GC_EMULATOR"):
        process = subprocess.Popen(GCAD + ["batch", at("long.lsp"), at("in"), "--no-module", "-j", "2"],
                                   stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        time.sleep(1.5)
        process.send_signal(signal.SIGINT)
        _, told = process.communicate(timeout=60)
        check("interrupted", process.returncode == 130 and "not begun" in told)


if __name__ == "__main__":
    main()
