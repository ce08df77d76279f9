"""Equivalence by simulation with iverilog: the source runs under random or scripted stimulus and its inputs and
outputs are written down; the netlist then runs on the same inputs, and every output is compared at every sample.
An unknown output of the source may be anything in the netlist; a floating one must float."""

from pathlib import Path

from design import ROOT, run, top_module_name

CLOCKS = ("clk", "clock", "c")
RESETS = {"rst": 1, "reset": 1, "rst_n": 0, "reset_n": 0, "rstn": 0}
# What a simulator without unknown values starts with: zeros, ones, and random bits. A bit of the source that these runs
# do not agree on depends on what no reset has reached yet, so it is unknown.
FIRST_VALUES = ["+verilator+rand+reset+0", "+verilator+rand+reset+1"] + \
    [f"+verilator+rand+reset+2 +verilator+seed+{seed}" for seed in range(1, 25)]
HERE = Path(__file__).resolve().parent


def vector(port):
    return f"[{port.width - 1}:0]"


def escaped(name):
    return "\\" + name + " "


def declarations(ports):
    kinds = {"input": "reg", "output": "wire", "inout": "wire"}
    return "\n".join(f"  {kinds[p.direction]} {vector(p)} {escaped(p.name)};" for p in ports)


def instance(module, parameters, ports, name="dut", actuals=None):
    values = ", ".join(f".{k}({v})" for k, v in parameters.items())
    nets = actuals or {p.name: p.name for p in ports}
    connections = ", ".join(f".{escaped(p.name)}({escaped(nets[p.name])})" for p in ports)
    return f"  {escaped(module)} {'#(' + values + ')' if values else ''} {name} ({connections});"


def random_stimulus(ports, apart=False):
    """Inputs of one cycle: random words, with runs of all zeros and all ones mixed in, and a rare reset. Apart, the
    inputs change one after the other, so that latches do not depend on which of two changes a simulator sees first."""
    lines = []
    pause = " #1;" if apart else ""
    for p in ports:
        if p.direction != "input" or p.name in CLOCKS:
            continue
        if p.name in RESETS:
            active = RESETS[p.name]
            lines.append(f"    {p.name} = (cycle < 3 || ($urandom(seed) % 500) == 0) ? {active} : {1 - active};{pause}")
            continue
        words = ", ".join(["$urandom(seed)"] * ((p.width + 31) // 32))
        lines.append(f"    case ($urandom(seed) % 16) 0: {escaped(p.name)} = 0; 1: {escaped(p.name)} = ~0; "
                     f"default: {escaped(p.name)} = {{{words}}}; endcase{pause}")
    return "\n".join(lines)


def clock_edges(ports, sample):
    clocks = [p.name for p in ports if p.direction == "input" and p.name in CLOCKS]
    lines = [f"      #5; {sample}"]
    for clock in clocks:
        lines += [f"      {clock} = 1; #5; {sample}", f"      {clock} = 0; #5;"]
    # The step from unknown to 0 is an edge, too: it comes before the first inputs.
    initial = " ".join(f"{c} = 0;" for c in clocks) + " #5;"
    return initial, "\n".join(lines)


def is_apart(design):
    return "apart" in design.options


def inputs_from_word(inputs, apart):
    if not apart:
        return "{" + ", ".join(escaped(p.name) for p in inputs) + "} = word;" if inputs else ""
    lines, high = [], sum(p.width for p in inputs)
    for p in inputs:
        lines.append(f"{escaped(p.name)} = word[{high - 1}:{high - p.width}]; #1;")
        high -= p.width
    return "\n      ".join(lines)


def gold_bench(design, ports, bench="bench", tag=""):
    """A bench that runs the source and records. Several benches can run side by side when each has its own name and
    tags its files."""
    inputs = [p for p in ports if p.direction == "input" and p.name not in CLOCKS]
    outputs = [p for p in ports if p.direction != "input"]
    driven = "{" + ", ".join(escaped(p.name) for p in inputs) + "}"
    seen = "{" + ", ".join(escaped(p.name) for p in outputs) + "}"
    initial, edges = clock_edges(ports, f'$fdisplay(out_file, "%b", {seen});')
    if "stimulus" in design.options:
        extra = f'  `include "{HERE / "stimulus" / design.options["stimulus"]}.v"'
        drive = "    stimulus;"
    else:
        extra = ""
        drive = random_stimulus(ports, is_apart(design))
    return f"""`timescale 1ns/1ps
module {bench};
  integer in_file, out_file, cycle, seed;
{declarations(ports)}
{instance(design.top, design.parameters, ports)}
{extra}
  task drive; begin
{drive}
  end endtask
  initial begin
    seed = 32'h1badcafe;
    in_file = $fopen("{tag}inputs.txt", "w"); out_file = $fopen("{tag}gold.txt", "w");
    {initial}
    for (cycle = 0; cycle < {design.cycles}; cycle = cycle + 1) begin
      drive;
      $fdisplay(in_file, "%b", {driven if inputs else "1'b0"});
{edges}
    end
  end
endmodule
"""


def gate_bench(duts, ports, cycles=None, bench="bench", tag="", apart=False):
    """A bench that drives the recorded inputs, or the first cycles of them, into several modules and records the outputs
    of each. Modules by the name of their recording."""
    inputs = [p for p in ports if p.direction == "input" and p.name not in CLOCKS]
    outputs = [p for p in ports if p.direction != "input"]
    width = sum(p.width for p in inputs)
    opened, samples, wires, instances = [], [], [], []
    for name, module in duts.items():
        opened.append(f'{name}_file = $fopen("{tag}{name}.txt", "w");')
        seen = "{" + ", ".join(escaped(f"{name}.{p.name}") for p in outputs) + "}"
        samples.append(f'$fdisplay({name}_file, "%b", {seen});')
        wires += [f"  wire {vector(p)} {escaped(f'{name}.{p.name}')};" for p in outputs]
        actuals = {p.name: p.name if p.direction == "input" else f"{name}.{p.name}" for p in ports}
        instances.append(instance(module, {}, ports, f"dut_{name}", actuals))
    initial, edges = clock_edges(ports, " ".join(samples))
    newline = chr(10)
    limit = f"cycle < {cycles} && " if cycles else ""
    return f"""`timescale 1ns/1ps
module {bench};
  integer in_file, cycle, {", ".join(f"{name}_file" for name in duts)};
  reg [{max(width, 1) - 1}:0] word;
{declarations([p for p in ports if p.direction == "input"])}
{newline.join(wires + instances)}
  initial begin
    in_file = $fopen("{tag}inputs.txt", "r"); {" ".join(opened)}
    {initial}
    cycle = 0;
    while ({limit}$fscanf(in_file, "%b\\n", word) == 1) begin
      {inputs_from_word(inputs, apart)}
      cycle = cycle + 1;
{edges}
    end
  end
endmodule
"""


def simulate_one(bench, sources, include_dirs, directory, name, dialect="2005"):
    path = directory / f"{name}_bench.v"
    path.write_text(bench)
    includes = [word for d in include_dirs for word in ("-I", d)]
    run(["iverilog", f"-g{dialect}", "-o", directory / f"{name}.vvp", "-s", "bench", *includes, path, *sources], directory)
    run(["vvp", "-n", directory / f"{name}.vvp"], directory)


def differs(gold, gate):
    return any(a != "x" and a != b for a, b in zip(gold, gate)) or len(gold) != len(gate)


def named_difference(ports, gold, gate):
    at, names = 0, []
    for p in ports:
        if p.direction == "input":
            continue
        a, b = gold[at:at + p.width], gate[at:at + p.width]
        at += p.width
        if differs(a, b):
            names.append(f"{p.name}: source {a}, netlist {b}")
    return "; ".join(names)


def compare(ports, directory, name="gate", cycles=None, tag=""):
    """Compares the recording of a netlist, of all or the first cycles, with that of the source; the answer tells how much
    of it was defined, so that an empty run is seen."""
    clocks = sum(p.direction == "input" and p.name in CLOCKS for p in ports)
    gold = (directory / f"{tag}gold.txt").read_text().split()[:cycles and cycles * (1 + clocks)]
    gate = (directory / f"{tag}{name}.txt").read_text().split()
    if len(gold) != len(gate) or not gold:
        raise RuntimeError(f"the recordings have {len(gold)} and {len(gate)} samples")
    for number, (a, b) in enumerate(zip(gold, gate)):
        if differs(a, b):
            raise RuntimeError(f"sample {number} differs: {named_difference(ports, a, b)}")
    known = sum(1 for line in gold for bit in line if bit in "01")
    total = sum(len(line) for line in gold)
    if known * 4 < total:
        raise RuntimeError(f"only {known} of {total} output bits of the source were defined; the stimulus says too little")
    return f"simulated, {len(gold)} samples, {100 * known // total} % of the output bits defined"


def agreed(recordings):
    """One recording of several: a bit that they do not agree on is unknown."""
    lines = zip(*[text.split() for text in recordings])
    return "\n".join("".join(bits[0] if len(set(bits)) == 1 else "x" for bits in zip(*line)) for line in lines)


def run_verilator(bench, sources, directory, names):
    """The same with verilator, which knows more of SystemVerilog, but no unknown values; names of the recordings."""
    path = directory / "verilated_bench.sv"
    path.write_text(bench)
    run(["verilator", "--binary", "--timing", "--top-module", "bench", "--x-initial", "unique", "-Wno-lint", "-Wno-style",
         "-Wno-fatal", "-CFLAGS", "-O0", "-MAKEFLAGS", "OBJCACHE=ccache OPT_FAST=-O0 OPT_SLOW=-O0 OPT_GLOBAL=-O0", "-o", "sim", path, *sources],
        directory)
    recordings = {name: [] for name in names}
    for values in FIRST_VALUES:
        run([directory / "obj_dir" / "sim", *values.split()], directory)
        for name, texts in recordings.items():
            texts.append((directory / name).read_text())
    for name, texts in recordings.items():
        (directory / name).write_text(agreed(texts))


def simulate_gold(design, ports, directory):
    bench = gold_bench(design, ports)
    if design.method == "verilate":
        return run_verilator(bench, design.sources, directory, ["gold.txt"])
    dialect = "2012" if design.is_systemverilog else "2005"
    return simulate_one(bench, design.sources, design.include_dirs, directory, "gold", dialect)


def simulate_gate(design, netlist, ports, directory):
    """In the simulator of the source: what is known there in spite of unknown bits is so here, too."""
    bench = gate_bench({"gate": top_module_name(netlist, directory)}, ports)
    if design.method == "verilate":
        return run_verilator(bench, [netlist], directory, ["gate.txt"])
    return simulate_one(bench, [netlist], [], directory, "gate")


def simulate(design, netlist, ports, directory):
    simulate_gold(design, ports, directory)
    simulate_gate(design, netlist, ports, directory)
    return compare(ports, directory)
