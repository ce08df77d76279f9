"""The other forms of a netlist: JSON, and both formats flattened. All of them run on the inputs that were recorded from the
source, and each must give its outputs. JSON goes through yosys, which reads that format, and comes back as Verilog."""

from design import run, synthesize, top_module_name
from simulate import compare, gate_bench, run_verilator, simulate_gold, simulate_one

CYCLES = 2000  # the Verilog of the hierarchy has gone through the whole stimulus


def read_back(netlist, name, directory):
    """A JSON netlist as Verilog with a top module of the given name. Its hierarchy stays, since yosys makes one-way
    assignments of bidirectional ports when it flattens."""
    path = directory / f"{name}.v"
    run(["yosys", "-q", "-p", f"read_json {netlist}; hierarchy -check -auto-top; "
         f"techmap t:$alu; techmap t:$lcu; rename -top {name}; "
         f"write_verilog -noattr {path}"], directory)
    return path


def check_flat(netlist):
    """A flattened netlist has one module."""
    modules = [line for line in netlist.read_text().splitlines() if line.startswith("module ")]
    if len(modules) != 1:
        raise RuntimeError(f"{netlist.name} has {len(modules)} modules")


def check_forms(design, host, ports, directory):
    netlist = synthesize(design, host, directory, ["gate.json"])
    flat, flat_json = synthesize(design, host, directory, ["flat.v", "flat.json"], ["--flatten"])
    check_flat(flat)
    duts = {"flat": top_module_name(flat, directory), "json": "json", "flat_json": "flat_json"}
    sources = [flat, read_back(netlist, "json", directory), read_back(flat_json, "flat_json", directory)]
    if not (directory / "gold.txt").exists():
        simulate_gold(design, ports, directory)
    bench = gate_bench(duts, ports, CYCLES)
    if design.method == "verilate":
        run_verilator(bench, sources, directory, [f"{name}.txt" for name in duts])
    else:
        simulate_one(bench, sources, [], directory, "forms")
    for name in duts:
        try:
            compare(ports, directory, name, CYCLES)
        except RuntimeError as problem:
            raise RuntimeError(f"{name}: {problem}") from None
    return f"{', '.join(duts)} agree"
