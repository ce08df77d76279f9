"""Proves with yosys that each node kind, as the writers write it, does what it means.

prove_kinds.py WRITE_KINDS
"""

import re
import subprocess
import sys
import tempfile
from pathlib import Path

# Flip-flops with asynchronous controls and latches are compared as they behave between clock edges too.
PREPARE = "proc; flatten; opt_clean; async2sync; opt_clean"
TRISTATE = ("bidirectional_pad", "shared_bus")


def script(gold, gate, name):
    read_gate = f"read_json {gate}" if gate.suffix == ".json" else f"read_verilog {gate}"
    prepare = PREPARE.replace("flatten", "flatten; tribuf -logic") if name == "shared_bus" else PREPARE
    return (f"read_verilog {gold}; {prepare}; design -stash gold; "
            f"{read_gate}; hierarchy -check -auto-top; {prepare}; design -stash gate; "
            "design -copy-from gold -as gold gold; design -copy-from gate -as gate gate; "
            "miter -equiv -flatten -ignore_gold_x gold gate miter; hierarchy -top miter; "
            "sat -verify -prove trigger 0 -tempinduct -set-init-undef -set-def-inputs -seq 1 -maxsteps 12 -show-ports miter")


def compare_text(gold, gate, name):
    """Tristate ports are beyond a proof; both must become the same cells."""
    counts = []
    for path in (gold, gate):
        read = f"read_json {path}" if path.suffix == ".json" else f"read_verilog {path}"
        done = run(f"{read}; proc; opt_clean; tribuf; opt; stat")
        cells = [line.split() for line in done.stdout.splitlines() if line.strip().startswith("$")]
        counts.append(sorted((cell[0], cell[1]) for cell in cells))
    return None if counts[0] == counts[1] else f"cells differ: {counts}"


def ports_of(gold):
    """Names and widths of the inputs and the outputs of a reference module."""
    header = re.search(r"\((.*?)\);", gold.read_text()).group(1)
    ports, direction, width = {"input": [], "output": []}, None, 1
    for item in header.split(","):
        words = item.split()
        if words[0] in ports:
            direction, width, words = words[0], 1, words[1:]
        if words[0].startswith("["):
            width, words = int(words[0][1:-1].split(":")[0]) + 1, words[1:]
        ports[direction].append((words[0], width))
    return ports["input"], ports["output"]


def simulate(gold, gate):
    """Memories that write while the enable is 1 are compared by simulation; addresses change while it is 0."""
    inputs, outputs = ports_of(gold)
    enables = [name for name, _ in inputs if name.startswith("we")]
    lines = ["module bench; integer i, bad;"]
    lines += [f"reg [{width - 1}:0] {name};" for name, width in inputs]
    for side in ("gold", "gate"):
        lines += [f"wire [{width - 1}:0] {side}_{name};" for name, width in outputs]
        actuals = [f".{name}({name})" for name, _ in inputs] + [f".{name}({side}_{name})" for name, _ in outputs]
        lines.append(f"{side} u_{side}({', '.join(actuals)});")
    lines.append("initial begin bad = 0; for (i = 0; i < 2000; i = i + 1) begin")
    lines += [f"{name} = 0;" for name in enables] + ["#1"]
    lines += [f"{name} = $random;" for name, _ in inputs if name not in enables] + ["#1"]
    for name in enables:
        lines += [f"{name} = $random;", f"#1 {name} = 0;", "#1"]
    lines += [f"if (gold_{name} !== gate_{name}) bad = bad + 1;" for name, _ in outputs]
    lines += ['end if (bad) $display("%0d differences", bad); $finish; end endmodule']
    bench = gold.with_suffix(".bench.v")
    bench.write_text("\n".join(lines))
    program = gold.with_suffix(".vvp")
    done = subprocess.run(["iverilog", "-o", program, bench, gold, gate], stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, text=True)
    if done.returncode == 0:
        done = subprocess.run(["vvp", "-n", program], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    return done.stdout


def read_memory(gate):
    """A memory in JSON must be read as one, which writes its Verilog for the simulation."""
    verilog = gate.with_suffix(".json.v")
    done = run(f"read_json {gate}; hierarchy -check -auto-top; check -assert; select -assert-count 1 t:$mem_v2; "
               f"memory_unpack; opt_clean; write_verilog {verilog}; stat")
    return verilog if done.returncode == 0 else done.stdout[-2000:]


def run(commands):
    return subprocess.run(["yosys", "-q", "-p", commands] if "stat" not in commands else ["yosys", "-p", commands],
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, timeout=120)


def check(gold, gate, name):
    if name.startswith("ram"):
        if gate.suffix == ".json":
            gate = read_memory(gate)
            if not isinstance(gate, Path):
                return gate
        return simulate(gold, gate)
    if name == "bidirectional_pad":
        return compare_text(gold, gate, name)
    done = run(script(gold, gate, name))
    return None if done.returncode == 0 else done.stdout[-2000:]


def main():
    failed = 0
    with tempfile.TemporaryDirectory() as scratch:
        directory = Path(scratch)
        names = subprocess.run([sys.argv[1], scratch], stdout=subprocess.PIPE, text=True, check=True).stdout.split()
        for name in names:
            for kind in ("v", "json"):
                gate = directory / f"{name}.gate.{kind}"
                problem = check(directory / f"{name}.gold.v", gate, name)
                if problem:
                    failed += 1
                    print(f"{name} as {kind}: {problem}\n{gate.read_text()[:3000] if kind == 'v' else ''}")
    print(f"{len(names)} kinds, {failed} failures")
    sys.exit(failed != 0)


if __name__ == "__main__":
    main()
