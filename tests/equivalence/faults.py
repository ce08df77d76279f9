"""Seeded faults: for each kind of cell of a netlist one output bit is inverted, and the comparison must notice.
A comparison that lets such a mutant pass proves nothing about the netlists that it accepts. A single cell may drive a bit
that nothing observes, so up to three cells of a kind are tried, and one of them must be caught."""

import json

from design import run, synthesize, top_ports, yosys_read_gate, yosys_read_gold
from prove import prove, prove_at_once
from simulate import compare, simulate_gate, simulate_gold

OUTPUTS = ("Y", "Q", "RD_DATA")


def cells_by_kind(netlist, directory):
    run(["yosys", "-q", "-p", f"{yosys_read_gate(netlist)}; proc; flatten; opt_clean; write_json cells.json"], directory)
    cells = json.loads((directory / "cells.json").read_text())["modules"]["gate"]["cells"]
    kinds = {}
    for name, cell in cells.items():
        output = next((o for o in OUTPUTS if o in cell["connections"]), None)
        if output:
            kinds.setdefault(cell["type"], []).append((name, output))
    return {kind: {members[0], members[len(members) // 2], members[-1]} for kind, members in sorted(kinds.items())}


def mutate(netlist, cell, output, directory):
    mutant = directory / "mutant.v"
    run(["yosys", "-q", "-p", f"{yosys_read_gate(netlist)}; proc; flatten; opt_clean; "
         f"mutate -mode inv -module gate -cell {cell} -port {output} -portbit 0; write_verilog -noattr {mutant}"],
        directory)
    return mutant


def fails(check, *arguments):
    try:
        check(*arguments)
    except RuntimeError:
        return True
    return False


def simulate_beside_gold(mutant, ports, directory):
    simulate_gate(mutant, ports, directory)
    compare(ports, directory)


def is_caught(design, mutant, ports, directory):
    """A proof over one step that fails on a mutant whose outputs differ, too, needs no search for longer ones."""
    if design.method == "simulate":
        return fails(simulate_beside_gold, mutant, ports, directory)
    if not fails(prove_at_once, design, mutant, directory):
        return False
    return (fails(simulate_beside_gold, mutant, ports, directory) or
            fails(prove, design, mutant, ports, directory))


def self_test(design, host, directory):
    netlist = synthesize(design, host, directory)
    ports = top_ports(yosys_read_gold(design), "gold", directory)
    simulate_gold(design, ports, directory)
    if is_caught(design, netlist, ports, directory):
        raise RuntimeError("the comparison fails without any fault")
    kinds = cells_by_kind(netlist, directory)
    missed = [kind for kind, members in kinds.items()
              if not any(is_caught(design, mutate(netlist, cell, output, directory), ports, directory)
                         for cell, output in sorted(members))]
    if missed or not kinds:
        raise RuntimeError(f"faults not caught in {len(missed)} of {len(kinds)} kinds: {' '.join(missed)}")
    return f"{len(kinds)} of {len(kinds)} kinds of fault caught: {' '.join(kinds)}"
