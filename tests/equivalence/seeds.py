#!/usr/bin/env python3
"""Generated designs: each seed is written as a design, goes through zelk-host, and source and netlist run side by side
on the same random inputs.

seeds.py HOST --count 300 --constructs  seeds 0 to 299 of each dialect, with the report of constructs
seeds.py HOST --seed 17 --dialect v     one seed
seeds.py HOST --reduce 2 --write DIR    reduces two failing seeds of each kind and writes the cases as files
seeds.py HOST --self-test               faults seeded into the netlists; each kind must be noticed

A run fails on every difference, refusal or crash, and on constructs that never occurred. Seeds that the independent tool
cannot run, or whose source turned out to compute with unknown bits, are counted; more than one in twenty is a failure, too.

Dialects: v Verilog 2001 and s SystemVerilog, both simulated by iverilog; w SystemVerilog that only verilator reads."""

import argparse
import random
import re
import resource
import subprocess
import sys
import tempfile
import time
from collections import Counter
from pathlib import Path

from gendesign import CONTROLS, make_design
from gentree import reduce_tree

CYCLES = 40
DATA = 160
SUFFIX = {"v": "v", "s": "sv", "w": "sv"}


def bounded():
    """Keeps a tool that runs away within bounds: seconds of processor time, and memory."""
    resource.setrlimit(resource.RLIMIT_CPU, (30, 30))
    resource.setrlimit(resource.RLIMIT_AS, (3 << 30, 3 << 30))


def run(command, directory):
    done = subprocess.run([str(word) for word in command], cwd=directory, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, text=True, errors="replace", preexec_fn=bounded)
    return done.returncode, done.stdout


# The bench: source and netlist of every design of a batch, side by side.

def data_slices(design):
    """Where the inputs of a design lie in the random data."""
    at, slices = 0, {}
    for port in design.ports:
        if port.direction == "input" and port.name not in CONTROLS or port.direction == "inout":
            slices[port.name] = f"data[{at + port.width - 1}:{at}]"
            at += port.width
    assert at <= DATA
    return slices


def instances(design, prefix):
    """One side of a design and the vector of its outputs."""
    slices = data_slices(design)
    lines, connections, outputs = [], [], []
    for port in design.ports:
        if port.name in CONTROLS:
            actual = port.name
        elif port.direction == "input":
            actual = slices[port.name]
        else:
            actual = f"{prefix}{design.seed}_{port.name}"
            lines.append(f"wire [{port.width - 1}:0] {actual};")
            outputs.append(actual)
            if port.direction == "inout":
                lines.append(f"assign {actual} = {slices[port.name + '_oe']} ? {port.width}'bz : {slices[port.name]};")
        connections.append(f".{port.name}({actual})")
    width = sum(p.width for p in design.ports if p.direction != "input")
    lines.append(f"{prefix}{design.seed}_top {prefix}{design.seed}_i({', '.join(connections)});")
    lines.append(f"wire [{width - 1}:0] {prefix}{design.seed} = {{{', '.join(outputs)}}};")
    return "\n".join(lines), width


def checks(designs):
    """The comparison after each step: an unknown bit of the source may be anything, a floating one must float."""
    lines = []
    for d in designs:
        lines.append(f"    if (m{d.seed} !== g{d.seed} || ^m{d.seed} === 1'bx) compare_{d.seed};")
    return "\n".join(lines)


def comparison(design, width):
    return f"""  reg told_{design.seed} = 0, unknown_{design.seed} = 0;
  task compare_{design.seed}; integer i; begin
    if ({'started' if design.is_initialised else 'ready'}) for (i = 0; i < {width}; i = i + 1) begin
      if (m{design.seed}[i] === 1'bx) begin
        if (!unknown_{design.seed} && ready) $display("unknown {design.seed}");
        unknown_{design.seed} = unknown_{design.seed} | ready;
      end else if (m{design.seed}[i] !== g{design.seed}[i] && !told_{design.seed}) begin
        told_{design.seed} = 1;
        $display("differs {design.seed} cycle %0d %s bit %0d: source %b netlist %b", cycle, step, i, m{design.seed}, g{design.seed});
      end
    end
  end endtask"""


DRIVE = """
  reg [8*8:1] step;
  integer cycle, seed, part;
  reg started, ready;
  // The step of a clock from unknown to 0 is an edge, too: it comes when everything else has its value.
  reg clk0, clk1;
  reg arst = 0, arst_n = 1, srst = 0, srst_n = 1, le0 = 0, le1 = 0;
  reg [DATA-1:0] data = 0;
  task drive; begin
    for (part = 0; part < DATA / 32; part = part + 1)
      case ($urandom(seed) % 12)
        0: data[32*part +: 32] = 0;
        1: data[32*part +: 32] = ~0;
        2: data[32*part +: 32] = $urandom(seed) & $urandom(seed) & $urandom(seed);
        3: ;
        default: data[32*part +: 32] = $urandom(seed);
      endcase
    step = "data"; settle;
  end endtask
  task pulse; begin
    step = "clk0"; clk0 = 1; settle; clk0 = 0; settle;
    step = "clk1"; clk1 = 1; settle; clk1 = 0; settle;
  end endtask
  task latch; begin
    step = "le0"; le0 = $urandom(seed); settle;
    step = "le1"; le1 = $urandom(seed); settle;
  end endtask
  task reset; begin
    step = "arst";
    if ($urandom(seed) & 1) begin arst = 1; settle; drive; arst = 0; settle; end
    else begin arst_n = 0; settle; drive; arst_n = 1; settle; end
  end endtask
  initial begin
    seed = 32'h1badcafe; started = 0; ready = 0; cycle = 0;
    #1 step = "start"; data = ~0; settle; data = 0; settle;
    step = "clk0"; clk0 = 0; settle; step = "clk1"; clk1 = 0; settle; started = 1;
    drive;
    // Three rounds, so that what a register or latch takes from others before their reset is overwritten.
    repeat (3) begin
      arst = 1; settle; arst = 0; settle; arst_n = 0; settle; arst_n = 1; settle;
      srst = 1; srst_n = 0; settle; pulse; pulse; srst = 0; srst_n = 1; settle;
      le0 = 1; settle; drive; le0 = 0; settle; le1 = 1; settle; drive; le1 = 0; settle;
    end
    ready = 1;
    for (cycle = 1; cycle <= CYCLES; cycle = cycle + 1) begin
      drive; drive;
      if ($urandom(seed) % 4 == 0) latch;
      if ($urandom(seed) % 10 == 0) reset;
      step = "srst"; srst = $urandom(seed) % 10 == 0; settle; srst_n = $urandom(seed) % 10 != 0; settle;
      pulse;
    end
    $finish;
  end
"""


def bench(designs):
    sides, tasks = [], []
    for design in designs:
        for prefix in "mg":
            text, width = instances(design, prefix)
            sides.append(text)
        tasks.append(comparison(design, width))
    drive = DRIVE.replace("DATA", str(DATA)).replace("CYCLES", str(CYCLES))
    return (f"`timescale 1ns/1ns\nmodule bench;\n{drive}\n" + "\n".join(sides + tasks) +
            f"\n  task settle; begin\n    #1;\n{checks(designs)}\n  end endtask\nendmodule\n")


def wrapper(designs):
    """A module around all designs of a batch, so that one run of the host takes them all."""
    ports, lines = list(CONTROLS), []
    for design in designs:
        connections = []
        for port in design.ports:
            name = port.name if port.name in CONTROLS else f"p{design.seed}_{port.name}"
            if port.name not in CONTROLS:
                lines.append(f"{port.direction} [{port.width - 1}:0] {name};")
                ports.append(name)
            connections.append(f".{port.name}({name})")
        lines.append(f"m{design.seed}_top i{design.seed}({', '.join(connections)});")
    declared = "".join(f"input {name};\n" for name in CONTROLS)
    return f"module batch({', '.join(ports)});\n{declared}" + "\n".join(lines) + "\nendmodule\n"


# One batch

def write_sources(designs, directory):
    for design in designs:
        text = "`default_nettype none\n" + str(design.root) + "`default_nettype wire\n"
        (directory / source_name(design)).write_text(text)
        if design.dialect == "s":
            # iverilog takes minutes for the loops of an always_comb, and none for those of an always @*.
            text = re.sub(r"\balways_(comb|latch)\b", "always @*", text)
        (directory / oracle_name(design)).write_text(text)


def oracle_name(design):
    return f"oracle{design.seed}.{SUFFIX[design.dialect]}"


def source_name(design):
    return f"seed{design.seed}.{SUFFIX[design.dialect]}"


def host_run(designs, host, directory, top, extra=()):
    sources = [source_name(d) for d in designs]
    return run([host, "--quiet", "--color=never", *sources, *extra, "--top", top, "-o", "gate.v"], directory)


def host_verdict(status, output):
    """What kind of failure a run of the host is; the numbers of its messages make it comparable."""
    if status == 1:
        errors = re.findall(r"^error .*\n.*", output, re.M)
        return "refused " + " ".join(sorted({error.split()[1].rstrip(":") for error in errors})), "\n".join(errors)
    return f"crash {status}", output


def renamed_netlist(designs, directory):
    text = re.sub(r"(?<![A-Za-z0-9_])m(\d+_(?:top|[subt]\d+))", r"g\1", (directory / "gate.v").read_text())
    if designs[0].dialect != "w":
        # iverilog lets a latch see its enable and its data in an order that depends on the gates in front of them: here
        # it looks at them when they have settled, as the process of the source does.
        text = re.sub(r"^( *always @\*)$", r"\1 #0", text, flags=re.M)
    (directory / "gate.v").write_text(text)


def synthesize(designs, host, directory):
    """Runs the host on all designs, or one by one when it refuses the batch: (accepted designs, verdicts)."""
    (directory / "batch.v").write_text(wrapper(designs))
    status, _ = host_run(designs, host, directory, "batch", ["batch.v"])
    if status == 0:
        renamed_netlist(designs, directory)
        return designs, {}
    verdicts, accepted = {}, []
    for design in designs:
        status, output = host_run([design], host, directory, design.top)
        if status:
            verdicts[design.seed] = host_verdict(status, output)
        else:
            accepted.append(design)
    if len(accepted) == len(designs):
        return [], {d.seed: ("refused together", "") for d in designs}
    return synthesize(accepted, host, directory)[0] if accepted else [], verdicts


def compile_iverilog(designs, directory):
    (directory / "bench.v").write_text(bench(designs))
    standard = "-g2005" if designs[0].dialect == "v" else "-g2012"
    sources = [oracle_name(d) for d in designs]
    return run(["iverilog", standard, "-o", "bench.vvp", "-s", "bench", "bench.v", "gate.v", *sources], directory)


def simulate_iverilog(designs, directory):
    status, output = compile_iverilog(designs, directory)
    if status:
        return status, output
    return run(["vvp", "-n", "bench.vvp"], directory)


def simulate_verilator(designs, directory):
    (directory / "bench.sv").write_text(bench(designs))
    sources = [source_name(d) for d in designs]
    status, output = run(["verilator", "--binary", "--top", "bench", "-O1", "--x-initial", "unique", "-Wno-fatal", "-Wno-lint", "-Wno-style",
                          "-Wno-MULTIDRIVEN", "-Wno-UNOPTFLAT", "-CFLAGS", "-O0", "-MAKEFLAGS", "OBJCACHE=ccache OPT_FAST=-O0 OPT_SLOW=-O0 OPT_GLOBAL=-O0",
                          "bench.sv", "gate.v", *sources], directory)
    if status:
        return status, output
    return run(["obj_dir/Vbench"], directory)


def simulate(designs, directory):
    return (simulate_verilator if designs[0].dialect == "w" else simulate_iverilog)(designs, directory)


def check_batch(designs, host, directory):
    """Verdicts by seed: (kind, text); a seed that is not among them has passed."""
    write_sources(designs, directory)
    accepted, verdicts = synthesize(designs, host, directory)
    if accepted:
        verdicts.update(compare(accepted, host, directory))
    return verdicts


def verdicts_of(output):
    found = {}
    for line in output.splitlines():
        words = line.split()
        if words and words[0] in ("differs", "unknown") and found.get(int(words[1]), ("",))[0] != "differs":
            found[int(words[1])] = (words[0], line)
    return found


def simulate_verdicts(designs, directory):
    status, output = simulate(designs, directory)
    if status:
        raise RuntimeError(output[-2000:])
    return verdicts_of(output)


def compare(designs, host, directory):
    status, output = simulate(designs, directory)
    if status == 0:
        return verdicts_of(output)
    if len(designs) == 1:
        return {designs[0].seed: ("oracle", output[-1500:])}
    verdicts = {}
    half = len(designs) // 2
    for part in (designs[:half], designs[half:]):
        verdicts.update(check_batch(part, host, directory))
    return verdicts


# Reduction

def source_bits(text):
    return re.search(r"source ([01xz]+)", text).group(1)


def reduce_design(design, kind, text, host, directory):
    """Shrinks a failing design; the text stays one that both tools accept and that fails in the same way."""
    seen = {}

    def fails_now():
        found, text = check_batch([design], host, directory).get(design.seed, ("passed", ""))
        if found != kind:
            return False
        # A source that has become undefined is another matter.
        if kind == "differs":
            return not set(source_bits(text)) & set("xz") or not is_defined
        return kind == "oracle" or oracle_accepts(design, directory)

    def fails():
        text = str(design.root)
        if text not in seen:
            seen[text] = fails_now()
        return seen[text]

    is_defined = kind != "differs" or not set(source_bits(text)) & set("xz")
    if fails():
        reduce_tree(design.root, fails)
    return str(design.root)


def oracle_accepts(design, directory):
    command = ["verilator", "--lint-only", "-Wno-fatal"] if design.dialect == "w" else \
        ["iverilog", "-g2005" if design.dialect == "v" else "-g2012", "-o", "/dev/null", "-s", design.top]
    return run([*command, oracle_name(design)], directory)[0] == 0


# Seeded faults

FAULTS = [("and", r" & ", " | "), ("or", r" \| ", " & "), ("not", r"= ~\((?=\S+\s*\);)", "= ("), ("plus", r" \+ ", " - "),
          ("equal", r" == ", " != "), ("less", r" < ", " > "), ("selection", r" \? ([^:;?]+) : ([^:;?]+);", r" ? \2 : \1;"),
          ("clock", r"@\(posedge clk", "@(negedge clk"), ("register", r" <= \{", " <= ~{"), ("constant", r"'b0", "'b1")]


def seed_fault(text, design, pattern, replacement):
    """A netlist with one fault in the modules of a design, or null when there is no place for it."""
    start = text.find(f"module g{design.seed}_top(")
    end = text.find("endmodule", start)
    body, number = re.subn(pattern, replacement, text[start:end], count=1)
    return text[:start] + body + text[end:] if number else None


def self_test(designs, host, directory):
    """Seeds one kind of fault into each design; every kind must be noticed in some design."""
    write_sources(designs, directory)
    accepted, _ = synthesize(designs, host, directory)
    clean = simulate_verdicts(accepted, directory)
    text = (directory / "gate.v").read_text()
    seeded, caught = Counter(), Counter()
    for shift in range(3):
        mutant, kinds = text, {}
        for number, design in enumerate(d for d in accepted if d.seed not in clean):
            kind, pattern, replacement = FAULTS[(number + shift) % len(FAULTS)]
            changed = seed_fault(mutant, design, pattern, replacement)
            if changed:
                mutant, kinds[design.seed] = changed, kind
        (directory / "gate.v").write_text(mutant)
        found = simulate_verdicts(accepted, directory)
        for seed, kind in kinds.items():
            seeded[kind] += 1
            caught[kind] += found.get(seed, ("",))[0] == "differs"
    for kind, _, _ in FAULTS:
        print(f"{kind:10} {caught[kind]} of {seeded[kind]} noticed")
    return all(caught[kind] for kind, _, _ in FAULTS)


# Report

def required_constructs(dialects):
    lines = Path(__file__).with_name("constructs.txt").read_text().splitlines()
    rows = (line.split(maxsplit=1) for line in lines if line and not line.startswith("#"))
    return [construct for marks, construct in rows if set(marks) & set(dialects)]


def run_batch(designs, arguments, directory, reduced):
    verdicts = check_batch(designs, arguments.host, directory)
    for seed, (kind, text) in sorted(verdicts.items()):
        print(f"{designs[0].dialect}{seed}: {kind}: {text.strip()[:600]}", flush=True)
        if reduced[kind] < arguments.reduce and kind != "unknown":
            reduced[kind] += 1
            case = make_design(seed, designs[0].dialect, Counter())
            text = reduce_design(case, kind, text, arguments.host, directory)
            if arguments.write:
                (arguments.write / source_name(case)).write_text(text)
            print(text, flush=True)
    return verdicts


def batches(arguments, dialects, counts):
    first, count = (arguments.seed, 1) if arguments.seed is not None else (arguments.first, arguments.count)
    for dialect in dialects:
        for low in range(first, first + count, arguments.batch):
            yield [make_design(seed, dialect, counts) for seed in range(low, min(low + arguments.batch, first + count))]


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("host", type=lambda p: Path(p).resolve())
    parser.add_argument("--count", type=int, default=100, help="how many seeds of each dialect")
    parser.add_argument("--first", type=int, default=0)
    parser.add_argument("--seed", type=int)
    parser.add_argument("--dialect", default="vs", help="one or more of v, s and w")
    parser.add_argument("--batch", type=int, default=50, help="designs in one run of the tools")
    parser.add_argument("--reduce", type=int, default=0, help="how many failing seeds of each kind are reduced")
    parser.add_argument("--write", type=Path, help="where reduced cases go")
    parser.add_argument("--keep", type=Path, help="keep the working files of the last batch in this folder")
    parser.add_argument("--constructs", action="store_true", help="print how often each construct occurred")
    parser.add_argument("--self-test", action="store_true")
    arguments = parser.parse_args()

    start = time.time()
    counts, kinds, reduced, designs_run = Counter(), Counter(), Counter(), 0
    with tempfile.TemporaryDirectory() as scratch:
        directory = (arguments.keep or Path(scratch)).resolve()
        directory.mkdir(parents=True, exist_ok=True)
        for designs in batches(arguments, arguments.dialect, counts):
            if arguments.self_test:
                sys.exit(not self_test(designs, arguments.host, directory))
            verdicts = run_batch(designs, arguments, directory, reduced)
            kinds.update(kind.split()[0] for kind, _ in verdicts.values())
            designs_run += len(designs)
    missing = [c for c in required_constructs(arguments.dialect) if not counts[c]] if designs_run >= 100 else []
    if arguments.constructs:
        for construct, number in sorted(counts.items()):
            print(f"{number:8} {construct}")
    for construct in missing:
        print(f"never occurred: {construct}")
    compared = designs_run - sum(kinds.values())
    print(f"{designs_run} seeds in {time.time() - start:.1f} s, {compared} equivalent: {dict(kinds) or 'no difference'}")
    excused = kinds["unknown"] + kinds["oracle"]
    sys.exit(bool(missing or sum(kinds.values()) > excused or excused * 20 > designs_run + 19))


if __name__ == "__main__":
    main()
