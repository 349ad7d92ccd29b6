#!/usr/bin/env python3
"""What the Windows plug-in gives to and takes from the process, read from the file: windows_exports.py MODULE OBJDUMP

Out: two functions (one of them forwarded to the database library) and the members of the class of named values. In:
the host's program and libraries, the system, the C++ run time. Nothing else.
"""
import re
import subprocess
import sys

HOST = {"gcad.exe", "gcdb.dll", "gcbase.dll", "gccore.dll"}
LANGUAGE = {"libstdc++-6.dll", "libgcc_s_seh-1.dll", "libwinpthread-1.dll"}
SYSTEM = {"kernel32.dll", "user32.dll", "msvcrt.dll"}
FUNCTIONS = {"gcrxEntryPoint", "gcrxGetApiVersion"}
# Members, tables and type of CKel_VL as the compiler spells them.
OF_CLASS = re.compile(r"_Z(N|NK|TV|TI|TS|ThN?\d*_N|TC)?K?7CKel_VL")


def read(objdump, module):
    return subprocess.run([objdump, "-p", module], capture_output=True, text=True, check=True).stdout


def main():
    module, objdump = sys.argv[1:3]
    text = read(objdump, module)
    imported = {name.lower() for name in re.findall(r"^\s*DLL Name: (\S+)", text, re.M)}
    table = text[text.index("[Ordinal/Name Pointer] Table"):]
    exported = set(re.findall(r"^\s*\[\s*\d+\](?:\s*\+base\[\s*\d+\])?\s+(?:[0-9a-f]+\s+)?(\S+)$", table, re.M))
    wrong = []
    for name in sorted(imported - HOST - LANGUAGE - SYSTEM):
        wrong.append(f"imports from {name}")
    for name in sorted(HOST - {"gccore.dll"} - imported):
        wrong.append(f"imports nothing from {name}")
    for name in sorted(exported - FUNCTIONS):
        if not OF_CLASS.match(name):
            wrong.append(f"exports {name}")
    for name in sorted(FUNCTIONS - exported):
        wrong.append(f"does not export {name}")
    if not any("rxInitEv" in name and OF_CLASS.match(name) for name in exported):
        wrong.append("does not export CKel_VL::rxInit()")
    if not re.search(r"gcdb\.gcrxGetApiVersion", text):
        wrong.append("does not forward gcrxGetApiVersion to gcdb.dll")
    print(f"{len(imported)} libraries imported from, {len(exported)} names exported")
    print("\n".join(wrong))
    sys.exit(1 if wrong else 0)


if __name__ == "__main__":
    main()
