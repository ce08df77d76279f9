"""Seeded faults: for each kind of cell of a netlist one output bit is inverted, and the comparison must notice.
A comparison that lets such a mutant pass proves nothing about the netlists that it accepts. A single cell may drive a bit
that nothing observes, so up to three cells of a kind are tried, and one of them must be caught."""

import json
from dataclasses import dataclass
from pathlib import Path

from design import Design, ports_of, run, synthesize, yosys_read_gate
from prove import prove, prove_at_once
from simulate import compare, simulate_gate, simulate_gold

PORTS = ("Y", "Q", "DATA")  # of the last, that of a memory's write port is what is written


def cells_by_kind(netlist, directory):
    """The cells with a port that a fault can invert, by kind in order of the kinds."""
    run(["yosys", "-q", "-p", f"{yosys_read_gate(netlist)}; proc; flatten; opt_clean; write_json cells.json"], directory)
    cells = json.loads((directory / "cells.json").read_text())["modules"]["gate"]["cells"]
    kinds = {}
    for name, cell in cells.items():
        output = next((o for o in PORTS if o in cell["connections"]), None)
        if output and not cell["type"].startswith("$meminit"):  # its data have to be constant
            kinds.setdefault(cell["type"], []).append((name, output))
    return dict(sorted(kinds.items()))


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


def simulate_beside_gold(design, mutant, ports, directory):
    simulate_gate(design, mutant, ports, directory)
    compare(ports, directory)


def is_caught(design, mutant, ports, directory):
    """A proof over one step that fails on a mutant whose outputs differ, too, needs no search for longer ones."""
    if design.method == "simulate":
        return fails(simulate_beside_gold, design, mutant, ports, directory)
    if not fails(prove_at_once, design, mutant, directory):
        return False
    return (fails(simulate_beside_gold, design, mutant, ports, directory) or
            fails(prove, design, mutant, ports, directory))


def catches_one_of(members, design, netlist, ports, directory):
    tried = {members[0], members[len(members) // 2], members[-1]}
    return any(is_caught(design, mutate(netlist, cell, output, directory), ports, directory)
               for cell, output in sorted(tried))


def missed_kinds(design, netlist, kinds, directory):
    """The kinds of which no fault in the netlist of the design is noticed."""
    ports = ports_of(design, netlist, directory)
    simulate_gold(design, ports, directory)
    if is_caught(design, netlist, ports, directory):
        raise RuntimeError(f"{design.name}: the comparison fails without any fault")
    return [kind for kind, members in kinds.items()
            if not catches_one_of(members, design, netlist, ports, directory)]


def verdict_on(kinds, missed):
    if missed or not kinds:
        raise RuntimeError(f"faults not caught in {len(missed)} of {len(kinds)} kinds: {' '.join(missed)}")
    return f"{len(kinds)} of {len(kinds)} kinds of fault caught: {' '.join(kinds)}"


def self_test(design, host, directory):
    netlist = synthesize(design, host, directory)
    kinds = cells_by_kind(netlist, directory)
    return verdict_on(kinds, missed_kinds(design, netlist, kinds, directory))


@dataclass
class Sample:
    """The netlist of a design, its cells by kind, and how many they are."""
    design: Design
    netlist: Path
    kinds: dict
    size: int


def sample(design, host, directory):
    directory.mkdir()
    netlist = synthesize(design, host, directory)
    kinds = cells_by_kind(netlist, directory)
    return Sample(design, netlist, kinds, sum(len(members) for members in kinds.values()))


def self_test_every_kind(designs, host, directory):
    """One fault for each kind of cell that occurs in any of the designs, seeded where the fewest other cells are. A kind
    whose fault goes unnoticed there gets a second chance in the next larger netlist that has it."""
    samples = sorted((sample(design, host, directory / design.name) for design in designs
                      if design.method != "verilate"), key=lambda sample: sample.size)
    kinds = sorted({kind for sample in samples for kind in sample.kinds})
    missed = kinds
    for chance in range(2):
        wanted = {}
        for kind in missed:
            holders = [s for s in samples if kind in s.kinds]
            if chance < len(holders):
                wanted.setdefault(holders[chance].design.name, set()).add(kind)
        missed = []
        for one in samples:
            chosen = {kind: members for kind, members in one.kinds.items() if kind in wanted.get(one.design.name, ())}
            if chosen:
                missed += missed_kinds(one.design, one.netlist, chosen, directory / one.design.name)
        if not missed:
            break
    return verdict_on(kinds, missed)
