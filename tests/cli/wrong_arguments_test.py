#!/usr/bin/env python3
"""Thousands of wrong calls of every function end in errors and nothing worse. wrong_arguments_test.py GCAD"""
import os
import re
import shlex
import subprocess
import sys
import tempfile

program = os.path.join(os.path.dirname(os.path.dirname(os.path.abspath(__file__))), "lisp", "wrong_arguments.lsp")
with tempfile.TemporaryDirectory() as folder:
    command = shlex.split(os.environ.get("GC_EMULATOR", "")) + [sys.argv[1], "run", program, "--time-limit", "300"]
    run = subprocess.run(command, capture_output=True, cwd=folder, stdin=subprocess.DEVNULL, timeout=500)
calls = re.search(rb"\n(\d+) calls$", run.stdout)
if run.returncode != 0 or calls is None or int(calls[1]) < 8000:
    print(f"code {run.returncode}\n{run.stdout[-2000:]!r}\n{run.stderr[-2000:]!r}")
    sys.exit(1)
