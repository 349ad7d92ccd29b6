#!/usr/bin/env python3
"""Writes host/rx/text/single_byte_tables.inc: the upper halves (0x80..0xFF) of the single-byte code pages.

A byte without a character is written as 0. Run by hand when a page is added:
    python3 tools/make_codepage_tables.py > host/rx/text/single_byte_tables.inc
"""

PAGES = [(n, f"cp{n}") for n in (437, 737, 775, 850, 852, 855, 857, 858, 860, 861, 862, 863, 864, 865, 866, 869, 874)]
PAGES += [(n, f"cp{n}") for n in range(1250, 1259)]
PAGES += [(10000, "mac_roman")]
PAGES += [(28590 + n, f"iso8859_{n}") for n in range(1, 10)]


def upper_half(codec):
    for byte in range(0x80, 0x100):
        try:
            yield ord(bytes([byte]).decode(codec))
        except UnicodeDecodeError:
            yield 0


def main():
    print("// Made by tools/make_codepage_tables.py; characters of bytes 0x80..0xFF, 0 where there is none.")
    for number, codec in PAGES:
        values = list(upper_half(codec))
        print(f"{{{number}, {{")
        for start in range(0, 128, 16):
            print("  " + ",".join(f"0x{v:X}" if v else "0" for v in values[start:start + 16]) + ",")
        print("}},")


main()
