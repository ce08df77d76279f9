#!/usr/bin/env python3
"""Takes JSON netlists of zelk-host through the mapping flow of yosys: it must read, check and map each without error.

mapping.py HOST NAME...     designs of designs.txt"""

import sys
import tempfile
from pathlib import Path

from design import read_designs, run, synthesize


def map_netlist(design, host, directory):
    for netlist in (synthesize(design, host, directory, ["gate.json"]),
                    synthesize(design, host, directory, ["flat.json"], ["--flatten"])):
        out = run(["yosys", "-q", "-p", f"read_json {netlist}; hierarchy -check -auto-top; synth -noabc; stat"], directory)
        if "logic loop" in out and design.name not in ("gates", "generated"):  # whose vectors feed their own bits
            raise RuntimeError(out[-1000:])


def main():
    host, names = Path(sys.argv[1]).resolve(), sys.argv[2:]
    designs = {design.name: design for design in read_designs(Path(__file__).with_name("designs.txt"))}
    failed = 0
    for name in names:
        with tempfile.TemporaryDirectory() as scratch:
            try:
                map_netlist(designs[name], host, Path(scratch))
            except Exception as problem:  # every failure of a tool is the verdict on the design
                failed += 1
                print(f"{name}: {problem}")
    print(f"{len(names) - failed} mapped, {failed} failed")
    return failed != 0


if __name__ == "__main__":
    sys.exit(main())
