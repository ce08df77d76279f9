#!/usr/bin/env python3
"""Compares what zelk-host makes of a design with the source as independent tools read it.

equiv.py HOST [NAME...]             runs the designs of designs.txt (all, or those named)
equiv.py HOST --forms [NAME...]     checks the JSON and the flattened netlists of them, too
equiv.py HOST --self-test           seeds a fault for each kind of cell of all netlists and demands that it is caught
equiv.py HOST --self-test NAME...   the same for each of these designs
"""

import argparse
import sys
import tempfile
import time
from pathlib import Path

import faults
from design import ports_of, read_designs, synthesize
from forms import check_forms
from prove import prove
from simulate import simulate

METHODS = {"prove": prove, "simulate": simulate, "verilate": simulate}


def check(design, host, directory, with_forms):
    netlist = synthesize(design, host, directory)
    ports = ports_of(design, netlist, directory)
    verdict = METHODS[design.method](design, netlist, ports, directory)
    return f"{verdict}; {check_forms(design, host, ports, directory)}" if with_forms else verdict


def report(name, action):
    """Runs one check and prints its line; true when it passed."""
    start = time.time()
    try:
        verdict, passed = action(), True
    except Exception as problem:  # every failure of a tool is the verdict on the design
        verdict, passed = f"FAILED: {problem}", False
    print(f"{name:16} {time.time() - start:7.1f} s  {verdict}", flush=True)
    return passed


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("host", type=lambda p: Path(p).resolve())
    parser.add_argument("names", nargs="*")
    parser.add_argument("--designs", default=Path(__file__).with_name("designs.txt"))
    parser.add_argument("--self-test", action="store_true")
    parser.add_argument("--forms", action="store_true", help="check JSON and flattened netlists, too")
    parser.add_argument("--keep", type=Path, help="keep the working files in this folder")
    arguments = parser.parse_intermixed_args()

    designs = [d for d in read_designs(arguments.designs) if not arguments.names or d.name in arguments.names]
    if not designs:
        sys.exit("no design has that name")
    if arguments.self_test and not arguments.names:
        with tempfile.TemporaryDirectory() as scratch:
            every_kind = lambda: faults.self_test_every_kind(designs, arguments.host, Path(scratch))
            sys.exit(not report("every kind", every_kind))
    passed = 0
    for design in designs:
        with tempfile.TemporaryDirectory() as scratch:
            directory = (arguments.keep / design.name).resolve() if arguments.keep else Path(scratch)
            directory.mkdir(parents=True, exist_ok=True)
            if arguments.self_test:
                passed += report(design.name, lambda: faults.self_test(design, arguments.host, directory))
            else:
                passed += report(design.name, lambda: check(design, arguments.host, directory, arguments.forms))
    print(f"{passed} passed, {len(designs) - passed} failed")
    sys.exit(passed != len(designs))


if __name__ == "__main__":
    main()
