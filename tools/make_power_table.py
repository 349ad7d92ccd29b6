#!/usr/bin/env python3
"""Writes host/rx/text/powers_of_ten.inc: 10^k for k = -292..324 as 128-bit numbers with the highest bit set, rounded up.

    python3 tools/make_power_table.py > host/rx/text/powers_of_ten.inc
"""

FIRST, LAST = -292, 324


def scaled(k):
    """ceil(10^k * 2^s) with 2^127 <= result < 2^128."""
    top, bottom = (10**k, 1) if k >= 0 else (1, 10**-k)
    shift = 128 - (top.bit_length() - bottom.bit_length())
    for s in (shift - 1, shift, shift + 1):
        value = -((-top << s) // bottom) if s >= 0 else -(-top // (bottom << -s))
        if 2**127 <= value < 2**128:
            return value
    raise ValueError(k)


def main():
    print(f"// Made by tools/make_power_table.py: 10^k for k = {FIRST}..{LAST}, the 128 highest bits, rounded up.")
    for k in range(FIRST, LAST + 1):
        value = scaled(k)
        print(f"{{0x{value >> 64:016X}, 0x{value & (2**64 - 1):016X}}},")


main()
