#!/usr/bin/env python3
"""Every function of `gcad functions` is called in a transcript. every_function_test.py GCAD"""
import glob
import os
import re
import shlex
import subprocess
import sys

FOLDER = os.path.join(os.path.dirname(os.path.dirname(os.path.abspath(__file__))), "transcripts")

words = set()
for path in glob.glob(os.path.join(FOLDER, "**", "*.txt"), recursive=True):
    with open(path, encoding="utf-8") as file:
        for line in file:
            if line.startswith(">"):
                words |= set(re.findall(r"[^\s()'\"]+", line[1:].lower()))

command = shlex.split(os.environ.get("GC_EMULATOR", "")) + [sys.argv[1], "functions"]
listed = subprocess.run(command, capture_output=True, encoding="utf-8", check=True).stdout
names = re.findall(r"^\(([^\s()]+)", listed, re.MULTILINE)
absent = [name for name in names if name.lower() not in words]
if len(names) < 400 or absent:
    sys.exit(f"{len(names)} functions, not called in any transcript: {' '.join(absent)}")
