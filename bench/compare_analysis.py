#!/usr/bin/env python3
"""compare_analysis.py HOST [MEGABYTES...]: how fast and in how much memory sources are analysed and resolved.

Generates a Verilog source of each size (0.5, 5 and 50 MB by default) and runs `HOST --lint`, `iverilog -t null` and
`yosys read_verilog -defer` on it, one after the other. Prints processor time and peak memory of each run, as ratios
too: how many times faster than each tool, and which part of its memory. The source has chains of instances that are
40 modules deep, wide expressions, processes and large case tables."""

import argparse
import os
import random
import subprocess
import sys
import tempfile
from pathlib import Path

DEPTH = 40
TABLE_ROWS = 256


def expression(rng, names, operators):
    """A chain of operations on vectors of any length, in parentheses of random depth."""
    text = rng.choice(names)
    for _ in range(operators):
        name = rng.choice(names)
        operand = rng.choice((name, f"{name}[{rng.randrange(32)}:0]", f"~{name}", f"{{{name}, 4'b1010}}",
                              f"32'h{rng.getrandbits(32):08x}", f"({name} << {rng.randrange(31)})"))
        operator = rng.choice(("+", "-", "&", "|", "^", "*"))
        text = f"({text} {operator} {operand})" if rng.random() < 0.3 else f"{text} {operator} {operand}"
    return text


def table(rng, name):
    """A combinational look-up table."""
    rows = "\n".join(f"      8'd{row}: {name}_value = 32'h{rng.getrandbits(32):08x} ^ {{24'd0, {name}_index}};"
                     for row in range(TABLE_ROWS))
    return (f"  always @(*) begin\n    case ({name}_index)\n{rows}\n"
            f"      default: {name}_value = 32'hxxxxxxxx;\n    endcase\n  end\n")


def module(rng, number):
    """One module; all but the first of a chain contain an instance of the module before them."""
    names = [f"operand_{i}" for i in range(8)]
    text = [f"module stage_{number} #(parameter WIDTH = 32, parameter OFFSET = {number % 97}) (\n"
            f"    input wire clock, input wire reset, input wire [WIDTH-1:0] data_in,\n"
            f"    output reg [WIDTH-1:0] data_out, output wire valid_out);\n"]
    text += [f"  wire [WIDTH-1:0] {name} = data_in ^ {number * 31 + i}; // operand {i} of the stage\n"
             for i, name in enumerate(names)]
    text.append(f"  reg [WIDTH-1:0] state, lut_value;\n  wire [7:0] lut_index = state[7:0];\n"
                f"  wire [WIDTH-1:0] below_data;\n  wire below_valid;\n")
    for i in range(12):
        text.append(f"  wire [WIDTH-1:0] mixed_{i} =\n      {expression(rng, names, 24)};\n")
        names.append(f"mixed_{i}")
    text.append("  always @(posedge clock or posedge reset) begin\n    if (reset) begin\n"
                "      state <= {WIDTH{1'b0}};\n      data_out <= 0;\n    end else begin\n")
    for i in range(8):
        text.append(f"      if (mixed_{i}[{rng.randrange(32)}] && !operand_{i}[0])\n"
                    f"        state <= {expression(rng, names, 6)};\n"
                    f"      else if (mixed_{i} > operand_{i})\n        data_out <= state + lut_value;\n")
    text.append("    end\n  end\n")
    text.append(table(rng, "lut"))
    if number % DEPTH:
        text.append(f"  stage_{number - 1} #(.WIDTH(WIDTH), .OFFSET(OFFSET + 1)) below (.clock(clock), .reset(reset),\n"
                    f"      .data_in(mixed_11), .data_out(below_data), .valid_out(below_valid));\n")
    else:
        text.append("  assign below_data = mixed_11;\n  assign below_valid = ^mixed_10;\n")
    text.append("  assign valid_out = below_valid & (below_data != {WIDTH{1'b1}});\nendmodule\n\n")
    return "".join(text)


def write_source(path, size):
    rng = random.Random(1)
    written = number = 0
    with open(path, "w", encoding="ascii") as out:
        while written < size:
            written += out.write(module(rng, number))
            number += 1


def measure(command):
    """Processor seconds and peak bytes of a run that must succeed."""
    with subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True) as process:
        output = process.stdout.read()
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode:
        sys.exit(f"{' '.join(command)} ended with status {process.returncode}\n{output[-2000:]}")
    return usage.ru_utime + usage.ru_stime, usage.ru_maxrss * 1024


def main():
    arguments = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    arguments.add_argument("host")
    arguments.add_argument("megabytes", nargs="*", type=float, default=[0.5, 5, 50])
    arguments.add_argument("--keep", metavar="DIR", help="keep the sources there")
    arguments.add_argument("--repeat", type=int, default=3, help="runs of each tool; the fastest counts")
    options = arguments.parse_args()
    tools = {"zelk-host": lambda path: [options.host, "--lint", "--quiet", path],
             "iverilog": lambda path: ["iverilog", "-t", "null", path],
             "yosys": lambda path: ["yosys", "-q", "-p", f"read_verilog -defer {path}"]}
    scratch = tempfile.TemporaryDirectory()
    print(f"{'size':>8} {'tool':10} {'seconds':>8} {'MB/s':>7} {'peak MB':>8} {'bytes/byte':>10} {'faster':>7} {'memory':>7}")
    for megabytes in options.megabytes:
        path = str(Path(options.keep or scratch.name) / f"analysis_{megabytes:g}.v")
        write_source(path, megabytes * 1e6)
        size = os.path.getsize(path)
        results = {name: min(measure(command(path)) for _ in range(options.repeat)) for name, command in tools.items()}
        seconds, memory = results["zelk-host"]
        for name, (tool_seconds, tool_memory) in results.items():
            print(f"{size / 1e6:6.1f}MB {name:10} {tool_seconds:8.2f} {size / 1e6 / tool_seconds:7.2f} "
                  f"{tool_memory / 1e6:8.1f} {tool_memory / size:10.1f} {tool_seconds / seconds:6.1f}x "
                  f"{memory / tool_memory:6.2f}x", flush=True)


if __name__ == "__main__":
    main()
