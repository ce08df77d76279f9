#!/usr/bin/env python3
"""Proves of each recipe of the register cookbook that its netlist does what its source says, at any time and not only at
the clock: clocks, gates and asynchronous terms are inputs like others, and what a latch or a register holds follows
from their values (yosys' clk2fflogic, and temporal induction).

recipes.py HOST [NAME...]             proves the recipes (all, or those named)
recipes.py HOST --self-test [NAME...] inverts the output of a cell in each netlist and demands that the proof fails

A recipe that yosys reads in another way, or not at all, stands once more in references.v, in words that it knows."""

import argparse
import json
import re
import sys
import tempfile
from pathlib import Path

from design import ROOT, run

COOKBOOK = ROOT / "tests/verilog/cookbook"
REFERENCES = Path(__file__).with_name("references.v")
MODULE = re.compile(r"^module (\w+).*?^endmodule$", re.MULTILINE | re.DOTALL)
# What equiv.py compares by simulation alone.
SIMULATED = {
    "tri_": "floats, which the proof does not know",
    "divided": "outputs tell nothing of the registers in front of them, so that induction does not start",
    "async_in_block": "likewise",
    "blocking_register": "likewise",
    "memory_registers": "likewise",
    "async_part": "yosys reads no reset of some bits only",
    "enable_disable": "yosys does not know the statement",
}
LOWER = "proc; flatten; memory; opt_clean; clk2fflogic; opt_clean"
MITER = ("miter -equiv -flatten -make_outputs -ignore_gold_x gold gate miter; hierarchy -top miter; "
         "sat -verify -timeout 100 -enable_undef -set-def-inputs -set-init-undef -prove trigger 0 "
         "-seq 1 -tempinduct -maxsteps 6 miter")


def modules_of(source):
    """Their texts by their names."""
    return {module[1]: module[0] for module in MODULE.finditer(source.read_text())}


def prove(text, name, netlist, directory, mutation=""):
    """The netlist is a file with the module, whose format its name tells."""
    gold = directory / "gold.v"
    gold.write_text(text)
    read = "read_json" if netlist.suffix == ".json" else "read_verilog"
    run(["yosys", "-q", "-p",
         f"read_verilog {gold}; hierarchy -top {name}; rename {name} gold; {LOWER}; design -stash gold; "
         f"{read} {netlist}; hierarchy -top {name}; rename {name} gate; {mutation} {LOWER}; design -stash gate; "
         f"design -copy-from gold -as gold gold; design -copy-from gate -as gate gate; {MITER}"], directory)


def prove_all_forms(text, name, netlist, directory):
    for path in (netlist, netlist.with_suffix(".v")):
        prove(text, name, path, directory)


def observed_cells(netlist, name):
    """Cells whose first output bit is a bit of a port, so that nothing can hide what is wrong with them."""
    module = json.loads(netlist.read_text())["modules"][name]
    seen = {bit for port in module["ports"].values() if port["direction"] == "output" for bit in port["bits"]}
    return [(cell, output) for cell, c in module["cells"].items() for output in ("Q", "Y")
            if c["connections"].get(output, [None])[0] in seen]


def self_test(text, name, netlist, directory):
    for cell, output in observed_cells(netlist, name)[:3]:
        try:
            prove(text, name, netlist, directory,
                  f"mutate -mode inv -module gate -cell {cell} -port {output} -portbit 0;")
        except RuntimeError as problem:
            if "proof did fail" in str(problem):
                return
            raise
    raise RuntimeError("no fault was caught")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("host", type=lambda p: Path(p).resolve())
    parser.add_argument("names", nargs="*")
    parser.add_argument("--self-test", action="store_true")
    arguments = parser.parse_intermixed_args()

    check = self_test if arguments.self_test else prove_all_forms
    references = modules_of(REFERENCES)
    failed = num_done = 0
    with tempfile.TemporaryDirectory() as scratch:
        directory = Path(scratch)
        for source in (COOKBOOK / "storage.v", COOKBOOK / "levels.v"):
            modules = modules_of(source)
            for top in (name for name in modules if name.startswith("all_")):
                netlist = directory / f"{top}.json"
                run([arguments.host, "--quiet", "--top", top, source, "-o", netlist, "-o", netlist.with_suffix(".v")],
                    directory)
                for name in json.loads(netlist.read_text())["modules"]:
                    if name == top or name.startswith(tuple(SIMULATED)) or arguments.names and name not in arguments.names:
                        continue
                    num_done += 1
                    try:
                        check(references.get(name, modules[name]), name, netlist, directory)
                    except RuntimeError as problem:
                        failed += 1
                        print(f"{name}: {problem}", flush=True)
    print(f"{num_done - failed} recipes {'have a fault that was caught' if arguments.self_test else 'proven'}, {failed} failed")
    sys.exit(failed > 0 or num_done == 0)


if __name__ == "__main__":
    main()
