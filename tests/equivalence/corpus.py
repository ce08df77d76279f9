#!/usr/bin/env python3
"""Runs the corpus of small modules: each holds one idea, and what zelk-host makes of it is compared with the source.

corpus.py HOST [FILE...]             runs the files of corpus/ (all, or those named)
corpus.py HOST --self-test [FILE...] seeds faults into each netlist and demands that one of them is caught

A case is a module with a line above it that says how it is compared, and what it is about:
    // prove: IDEA       by SAT over one clock step (yosys), and by simulation
    // simulate: IDEA    by simulation with iverilog, where yosys reads the source in another way or not at all
    // verilate: IDEA    by simulation with verilator, which knows more of SystemVerilog but no unknown values
All cases of a file share each run of a tool: starting one costs more than a small module does."""

import argparse
import json
import re
import subprocess
import sys
import tempfile
import time
from dataclasses import dataclass, field
from pathlib import Path

from design import Port, run
from prove import ADFF_MAP
from simulate import compare, gate_bench, gold_bench, run_verilator, simulate_one

CORPUS = Path(__file__).with_name("corpus")
CASE = re.compile(r"^// (prove|simulate|verilate): (.*)\n(?:\(\*.*\*\)\n)?module (\w+)", re.MULTILINE)
CYCLES = 200
FAULTS_PER_CASE = 6


@dataclass
class Case:
    """What the benches need of a design, for one module of a file."""
    name: str
    method: str
    idea: str
    ports: list = field(default_factory=list)
    cycles: int = CYCLES
    parameters: dict = field(default_factory=dict)
    options: dict = field(default_factory=lambda: {"apart": True})

    @property
    def top(self):
        return self.name

    @property
    def tag(self):
        return self.name + "_"


def read_cases(source):
    cases = [Case(name, method, idea) for method, idea, name in CASE.findall(source.read_text())]
    if not cases:
        sys.exit(f"{source} holds no case")
    return cases


def synthesize_all(source, cases, host, directory):
    """One netlist with all cases: a module that does nothing but instantiate them."""
    wrapper = directory / f"all{source.suffix}"
    instances = "\n".join(f"  {case.name} u_{case.name} ();" for case in cases)
    wrapper.write_text(f"module all_cases;\n{instances}\nendmodule\n")
    netlist = directory / "gate.v"
    run([host, "--quiet", "--top", "all_cases", source, wrapper, "-o", netlist], directory)
    return netlist


def read_ports(netlist, cases, directory):
    run(["yosys", "-q", "-p", f"read_verilog {netlist}; proc; write_json ports.json"], directory)
    modules = json.loads((directory / "ports.json").read_text())["modules"]
    for case in cases:
        case.ports = [Port(name, len(p["bits"]), p["direction"])
                      for name, p in modules[case.name]["ports"].items()]


def check_widths(source, cases, directory):
    """The ports that the benches connect have the widths of the source: a simulator would silently extend them."""
    read = "read_verilog -sv" if source.suffix == ".sv" else "read_verilog"
    run(["yosys", "-q", "-p", f"{read} {source}; proc; write_json source.json"], directory)
    modules = json.loads((directory / "source.json").read_text())["modules"]
    for case in cases:
        ports = [Port(name, len(p["bits"]), p["direction"]) for name, p in modules[case.name]["ports"].items()]
        if ports != case.ports:
            raise RuntimeError(f"{case.name} has the ports {case.ports} instead of {ports}")


# Proof.

def proof_script(case):
    lower = f"proc; flatten; memory -nordff; techmap -map {ADFF_MAP}; dffunmap; opt_clean"
    sides = "".join(f"design -load {side}_all; hierarchy -check -top {case.name}; rename -top {side}; {lower}; "
                    f"design -stash {side}; " for side in ("gold", "gate"))
    return (f"log case {case.name}\n{sides}design -reset; design -copy-from gold -as gold gold; "
            "design -copy-from gate -as gate gate; expose -dff -evert-dff -shared gold gate; "
            "miter -equiv -flatten -make_outputs -ignore_gold_x gold gate miter; hierarchy -top miter; "
            "select -assert-none t:$*ff* t:$*latch*; "
            "sat -verify -timeout 60 -enable_undef -set-def-inputs -prove trigger 0 -show-ports miter\n")


def prove_all(source, netlist, cases, directory):
    """The failures of the cases that are to be proven, by name. A failed proof ends the run of the tool, so another
    one goes on with the cases behind it."""
    failures = {}
    to_prove = [case for case in cases if case.method == "prove"]
    read = "read_verilog -sv" if source.suffix == ".sv" else "read_verilog"
    while to_prove:
        script = directory / "prove.ys"
        script.write_text(f"{read} {source}\ndesign -save gold_all\ndesign -reset\n"
                          f"read_verilog {netlist}\ndesign -save gate_all\n" + "".join(map(proof_script, to_prove)))
        done = subprocess.run(["yosys", "-s", str(script)], cwd=directory, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, text=True, timeout=600)
        if done.returncode == 0:
            break
        reached = re.findall(r"^case (\w+)$", done.stdout, re.MULTILINE)
        if not reached:
            raise RuntimeError(done.stdout[-2000:])
        failures[reached[-1]] = f"not proven:\n{done.stdout[-3000:]}"
        to_prove = to_prove[[case.name for case in to_prove].index(reached[-1]) + 1:]
    return failures


# Simulation.

def bench_of_all(benches, cases):
    instances = "".join(f"  bench_{case.name} {case.name} ();\n" for case in cases)
    return "\n".join(benches) + f"\nmodule bench;\n{instances}endmodule\n"


def simulate_gold_all(source, cases, directory):
    for method in ("simulate", "verilate"):
        chosen = [case for case in cases if (case.method == "verilate") == (method == "verilate")]
        if not chosen:
            continue
        bench = bench_of_all([gold_bench(case, case.ports, f"bench_{case.name}", case.tag) for case in chosen], chosen)
        if method == "verilate":
            run_verilator(bench, [source], directory, [f"{case.tag}gold.txt" for case in chosen])
        else:
            dialect = "2012" if source.suffix == ".sv" else "2005"
            simulate_one(bench, [source], [], directory, "gold", dialect)


def simulate_gate_all(netlist, cases, directory):
    """The netlist's modules carry the names of the source's; each run sees only one of the two."""
    bench = bench_of_all([gate_bench({"gate": case.name}, case.ports, None, f"bench_{case.name}", case.tag, apart=True)
                          for case in cases], cases)
    simulate_one(bench, [netlist], [], directory, "gate")


def differences(cases, directory):
    failures = {}
    for case in cases:
        try:
            compare(case.ports, directory, tag=case.tag)
        except RuntimeError as problem:
            failures[case.name] = str(problem)
    return failures


# The whole.

def check_file(source, host, directory):
    cases = read_cases(source)
    netlist = synthesize_all(source, cases, host, directory)
    read_ports(netlist, cases, directory)
    proven = [case for case in cases if case.method == "prove"]
    failures = {}
    if proven:
        check_widths(source, proven, directory)
        failures = prove_all(source, netlist, cases, directory)
    simulate_gold_all(source, cases, directory)
    simulate_gate_all(netlist, cases, directory)
    for name, problem in differences(cases, directory).items():
        failures[name] = failures.get(name, "") + problem
    if failures:
        raise RuntimeError("\n".join(f"{name}: {problem}" for name, problem in failures.items()))
    return f"{len(cases)} cases, {len(proven)} of them proven"


def mutate_all(netlist, cases, seed, directory):
    """The netlist with one cell of each case inverted at its output; all of them in one file."""
    script = [f"read_verilog {netlist}", "proc", "opt_clean", "design -save gate_all"]
    parts = []
    buffer = directory / "buffer.v"  # the writer has no text of its own for the cells of insbuf
    buffer.write_text("module \\$_BUF_ (input A, output Y); assign Y = A; endmodule\n")
    for case in cases:
        choice, part = directory / f"{case.tag}fault.ys", directory / f"{case.tag}mutant.v"
        choice.unlink(missing_ok=True)
        parts.append(part)
        script += ["design -load gate_all", f"hierarchy -top {case.name}", "flatten", "opt_clean", "insbuf",
                   f"mutate -list 1 -mode inv -seed {seed} -o {choice}", f"script {choice}",
                   f"techmap -map {buffer}", f"write_verilog -noattr {part}"]
    path = directory / "mutate.ys"
    path.write_text("\n".join(script) + "\n")
    run(["yosys", "-q", "-s", path], directory)
    mutant = directory / "mutant.v"
    mutant.write_text("\n".join(part.read_text() for part in parts))
    return mutant


def self_test(source, host, directory):
    """A single fault may sit in logic that nothing observes; of several in each module one must be noticed."""
    cases = read_cases(source)
    netlist = synthesize_all(source, cases, host, directory)
    read_ports(netlist, cases, directory)
    simulate_gold_all(source, cases, directory)
    left = cases
    for seed in range(1, FAULTS_PER_CASE + 1):
        mutant = mutate_all(netlist, left, seed, directory)
        simulate_gate_all(mutant, left, directory)
        caught = differences(left, directory)
        unproven = prove_all(source, mutant, left, directory)
        left = [case for case in left if case.name not in caught or
                (case.method == "prove" and case.name not in unproven)]
        if not left:
            return f"faults in all of {len(cases)} cases were caught"
    raise RuntimeError("no fault was caught in " + " ".join(case.name for case in left))


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("host", type=lambda p: Path(p).resolve())
    parser.add_argument("files", nargs="*")
    parser.add_argument("--self-test", action="store_true")
    parser.add_argument("--keep", type=Path, help="keep the working files in this folder")
    arguments = parser.parse_intermixed_args()

    action = self_test if arguments.self_test else check_file
    sources = [path for path in sorted(CORPUS.iterdir()) if not arguments.files or path.name in arguments.files]
    failed = 0
    for source in sources:
        with tempfile.TemporaryDirectory() as scratch:
            directory = (arguments.keep / source.name).resolve() if arguments.keep else Path(scratch)
            directory.mkdir(parents=True, exist_ok=True)
            start = time.time()
            try:
                verdict = action(source, arguments.host, directory)
            except RuntimeError as problem:
                verdict = f"FAILED\n{problem}"
                failed += 1
            print(f"{source.name:20} {time.time() - start:6.1f} s  {verdict}", flush=True)
    sys.exit(failed != 0 or not sources)


if __name__ == "__main__":
    main()
