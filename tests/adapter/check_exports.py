#!/usr/bin/env python3
"""usage: check_exports.py LIBRARY NM

Holds that a library exports its entry point and the two classes that the host meets, and nothing else.
"""

import re
import subprocess
import sys

ENTRY_POINT = "zelk_dyn_create_analyzer"
CLASSES = ("ZELK_ANALYZER", "ZELK_ELABORATOR")
OF_A_CLASS = re.compile(r"^(?:(?:vtable|typeinfo|typeinfo name) for )?(?:%s)(?:::.*)?$" % "|".join(CLASSES))


def exported_symbols(library, nm):
    output = subprocess.run(
        [nm, "-D", "--defined-only", "-C", library], check=True, capture_output=True, text=True
    ).stdout
    return [line.split(" ", 2)[2] for line in output.splitlines()]


def main():
    symbols = exported_symbols(*sys.argv[1:3])
    surplus = [symbol for symbol in symbols if symbol != ENTRY_POINT and not OF_A_CLASS.match(symbol)]
    missing = [name for name in (ENTRY_POINT, *(f"vtable for {c}" for c in CLASSES)) if name not in symbols]
    for symbol in surplus:
        print(f"exported without need: {symbol}")
    for symbol in missing:
        print(f"not exported: {symbol}")
    return 1 if surplus or missing else 0


if __name__ == "__main__":
    sys.exit(main())
