"""Compares netlists before and after each pass of polishing that changes them, with independent tools.

usage: prove_passes.py PASS_PROVER (random FIRST LAST | sources FILE...) [--self-test] [--keep FOLDER]

All pairs are simulated with iverilog, with one input that changes at each step; what is unknown before a pass may become
anything. Those of netlists with two states are also proven with yosys, by induction over all such sequences, when the
netlists are random ones: all that they store is seen. With --self-test one side has its outputs inverted, which must be
noticed in each pair.
"""
import collections
import json
import pathlib
import re
import subprocess
import sys
import tempfile

STEPS = 400


def escaped(name):
    return f"\\{name} "


def instance(module, name, inputs, outputs, step, inputs_of):
    ports = [f".step({step})"]
    ports += [f".{escaped(port)}({inputs_of[port]})" for port in inputs]
    ports += [f".{escaped(port)}({name}_out[{at}])" for port, at in outputs.items()]
    return f"  {module} {name} ({', '.join(ports)});\n"


def both_sides(pair, step, invert):
    """The two instances over common inputs `in`, and a wire for the outputs of each."""
    inputs = sorted({*pair["gold"]["inputs"], *pair["gate"]["inputs"]})
    common = [port for port in pair["gold"]["outputs"] if port in pair["gate"]["outputs"]]
    at = {port: number for number, port in enumerate(common)}
    inputs_of = {port: f"in[{number}]" for number, port in enumerate(inputs)}
    text = f"  wire [{len(common)}:0] gold_out, raw_out;\n  wire [{len(common)}:0] gate_out = "
    text += f"{'~' if invert else ''}raw_out;\n"
    for side, name in (("gold", "gold"), ("gate", "raw")):
        outputs = {port: at[port] for port in pair[side]["outputs"] if port in at}
        text += instance(pair[side]["module"], name, pair[side]["inputs"], outputs, step, inputs_of)
    text += f"  assign gold_out[{len(common)}] = 1'b0;\n  assign raw_out[{len(common)}] = {1 if invert else 0};\n"
    return inputs, common, text


def bench(number, pair, invert):
    inputs, common, text = both_sides(pair, "step", invert)
    floating = {*pair["gold"]["bidirectional"], *pair["gate"]["bidirectional"]}
    values = "".join(f"      {at}: in[{at}] = " + ("$urandom(seed) % 2 ? 1'bz : $urandom(seed);\n" if name in floating
                                                  else "~in[%d];\n" % at) for at, name in enumerate(inputs))
    checks = "".join(f"    if (gold_out[{at}] !== 1'bx && gate_out[{at}] !== gold_out[{at}]) fail({at});\n"
                     for at in range(len(common)))
    start = f"{len(inputs) + 1}'b0" + "".join("1" if name == "reset<" else "0" for name in reversed(inputs))
    return (f"module bench{number}(input step, input check);\n  reg [{len(inputs)}:0] in = {start};\n"
            f"  integer seed = {number};\n  integer failed = 0;\n{text}"
            f"  task fail(input integer at);\n    if (!failed) begin\n      failed = 1;\n"
            f"      $display(\"DIFFERS {number} %0d at %0t\", at, $time);\n    end\n  endtask\n"
            f"  always @(negedge step) case ($urandom(seed) % {max(len(inputs), 1)})\n{values}      default: ;\n  endcase\n"
            f"  always @(posedge check) begin\n{checks}  end\nendmodule\n")


def simulate(folder, pairs, invert):
    """Numbers of the pairs that differ, with the number of the output."""
    text = "".join(bench(number, pair, invert) for number, pair in enumerate(pairs))
    text += "module top;\n  reg step = 0;\n  reg check = 0;\n"
    text += "".join(f"  bench{number} b{number}(step, check);\n" for number in range(len(pairs)))
    # A reset is active at first, since latches have no initial values. Inputs change at the falling edge; what follows from them is seen before the next step takes over.
    text += f"  initial begin\n    #1 step = 1;\n    repeat ({STEPS}) begin\n      #1 step = 0;\n      #1 check = 1;\n"
    text += "      #1 check = 0; step = 1;\n    end\n  end\nendmodule\n"
    (folder / "bench.v").write_text(text)
    subprocess.run(["iverilog", "-g2005-sv", "-s", "top", "-o", "bench.vvp", "stages.v", "bench.v"], cwd=folder, check=True)
    run = subprocess.run(["vvp", "-n", "bench.vvp"], cwd=folder, check=True, capture_output=True, text=True)
    return {int(number): f"simulated: {pairs[int(number)]['gold']['outputs'][:1] and output} {rest}"
            for number, output, rest in re.findall(r"DIFFERS (\d+) (\d+) (.*)", run.stdout)}


def proof(number, pair, invert):
    inputs, common, text = both_sides(pair, "step", invert)
    width = max(len(inputs).bit_length(), 1)
    return (f"module proof{number}(input step, input [{width - 1}:0] which, output differs);\n"
            f"  reg [{len(inputs)}:0] in = 0;\n  always @(posedge step) in[which] <= ~in[which];\n{text}"
            f"  assign differs = |(gold_out ^ gate_out);\nendmodule\n")


def prove(folder, pairs, invert):
    """Numbers of the pairs that yosys does not find equal."""
    chosen = {number: pair for number, pair in enumerate(pairs) if pair["two_states"]}
    if not chosen:
        return {}, 0
    (folder / "proofs.v").write_text("".join(proof(number, pair, invert) for number, pair in chosen.items()))
    script = "read_verilog stages.v proofs.v\nproc\nflatten\nopt_clean\n"
    script += "".join(f"log PROOF {number}\nsat -tempinduct -maxsteps 3 -prove differs 0 proof{number}\n" for number in chosen)
    (folder / "prove.ys").write_text(script)
    run = subprocess.run(["yosys", "-s", "prove.ys"], cwd=folder, capture_output=True, text=True)
    if run.returncode:
        sys.exit(run.stdout[-2000:] + run.stderr[-2000:])
    differ = {}
    for part in run.stdout.split("\nPROOF ")[1:]:
        if "Induction step proven: SUCCESS!" not in part:
            differ[int(part.split()[0])] = "not proven"
    return differ, len(chosen)


def check(prover, what, folder, self_test):
    run = subprocess.run([prover, str(folder), *what])
    if run.returncode not in (0, 1):
        return [f"{prover} ended with {run.returncode}"]
    faults = ["a netlist is inconsistent, or changes when it is polished again"] if run.returncode else []
    pairs = [json.loads(line) for line in (folder / "pairs.json").read_text().splitlines()]
    unwritten = collections.Counter(pair["fault"] for pair in pairs if pair["fault"])
    pairs = [pair for pair in pairs if not pair["fault"]]
    differ = simulate(folder, pairs, self_test)
    proven = 0
    if what[0] == "random":
        unproven, proven = prove(folder, pairs, self_test)
        if self_test:
            faults += [f"an inverted output was proven: {pairs[number]['pass']}" for number, pair in enumerate(pairs)
                       if pair["two_states"] and number not in unproven]
        else:
            differ.update(unproven)
    by_pass = collections.Counter(pair["pass"] for pair in pairs)
    print(f"{len(pairs)} pairs simulated, {proven} proven; without a form as Verilog: {dict(unwritten)}")
    print(", ".join(f"{name} {count}" for name, count in by_pass.most_common()))
    if self_test:
        return faults + [f"an inverted output was not noticed: {pair['netlist']}, {pair['pass']}"
                         for number, pair in enumerate(pairs) if number not in differ]
    return faults + [f"{pairs[number]['netlist']}, {pairs[number]['pass']} ({pairs[number]['gold']['module']} and "
                     f"{pairs[number]['gate']['module']}): {how}" for number, how in sorted(differ.items())]


def main():
    arguments = sys.argv[1:]
    self_test = "--self-test" in arguments
    keep = None
    if "--keep" in arguments:
        at = arguments.index("--keep")
        keep = pathlib.Path(arguments[at + 1])
        keep.mkdir(parents=True, exist_ok=True)
        del arguments[at:at + 2]
    prover, *what = [argument for argument in arguments if argument != "--self-test"]
    with tempfile.TemporaryDirectory() as scratch:
        faults = check(prover, what, keep or pathlib.Path(scratch), self_test)
    print("\n".join(faults))
    return 1 if faults else 0


sys.exit(main())
