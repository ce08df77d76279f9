#!/usr/bin/env python3
"""compare.py HOST [SIZE...]: one table of how long each stage takes, and in how much memory, beside other tools.

The designs are pipelines of SIZE registered case stages of 32 bits (40, 400 and 4,000 by default). Each stage of the road
is the difference between two runs that differ by it, in processor time; the peak memory is that of the longer run.

  analyse    HOST --lint              iverilog -t null, yosys read_verilog, verilator --lint-only
  elaborate  HOST without an output   yosys proc; opt
  write      HOST -o .json            yosys write_json

`faster` and `memory` are ratios to HOST; `growth` is the exponent from the size before (1 is linear)."""

import argparse
import math
import shutil
import tempfile
from pathlib import Path

from compare_analysis import measure

BRANCHES = """  reg [31:0] q{this};
  always @(posedge clk or posedge rst)
    if (rst) q{this} <= 32'd{this};
    else case (s)
      2'd0: q{this} <= q{last} + 32'd{this};
      2'd1: q{this} <= q{last} ^ {{q{last}[15:0], q{last}[31:16]}};
      2'd2: q{this} <= q{last} - a;
      default: q{this} <= q{this};
    endcase
"""


def write_pipeline(path, stages):
    with open(path, "w", encoding="ascii") as out:
        out.write("module pipeline(input clk, input rst, input [31:0] a, input [1:0] s, output [31:0] y);\n"
                  "  wire [31:0] q0 = a;\n")
        out.writelines(BRANCHES.format(this=i, last=i - 1) for i in range(1, stages + 1))
        out.write(f"  assign y = q{stages};\nendmodule\n")


def roads(host, source, directory):
    """By tool its stages, each with the command that ends with it."""
    def yosys(*commands):
        return ["yosys", "-q", "-p", "; ".join((f"read_verilog {source}",) + commands)]
    return {
        "zelk-host": {"analyse": [host, "--lint", "--quiet", source],
                      "elaborate": [host, "--quiet", source],
                      "write": [host, "--quiet", source, "-o", str(directory / "host.json")]},
        "yosys": {"analyse": yosys(),
                  "elaborate": yosys("proc", "opt"),
                  "write": yosys("proc", "opt", f"write_json {directory / 'yosys.json'}")},
        "iverilog": {"analyse": ["iverilog", "-t", "null", source]},
        "verilator": {"analyse": ["verilator", "--lint-only", "-Wno-fatal", "-Wno-lint", source]},
    }


def run(host, stages, directory):
    """Seconds and bytes by tool and stage."""
    source = str(directory / f"pipeline_{stages}.v")
    write_pipeline(source, stages)
    results = {}
    for tool, road in roads(host, source, directory).items():
        if tool != "zelk-host" and not shutil.which(tool):
            continue
        before = 0.0
        for stage, command in road.items():
            seconds, memory = measure(command)
            results[tool, stage] = (max(seconds - before, 0.01), memory)
            before = seconds
    return results


def main():
    arguments = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    arguments.add_argument("host")
    arguments.add_argument("sizes", nargs="*", type=int, default=[40, 400, 4000])
    options = arguments.parse_args()
    print(f"{'stages':>7} {'stage':10} {'tool':10} {'seconds':>8} {'peak MB':>8} {'faster':>8} {'memory':>7} {'growth':>7}")
    smaller, smaller_size = {}, 0
    with tempfile.TemporaryDirectory() as scratch:
        for size in options.sizes:
            results = run(options.host, size, Path(scratch))
            for (tool, stage), (seconds, memory) in sorted(results.items(), key=lambda entry: entry[0][1]):
                ours, our_memory = results["zelk-host", stage]
                growth = (f"{math.log(seconds / smaller[tool, stage][0]) / math.log(size / smaller_size):7.2f}"
                          if smaller else "")
                print(f"{size:7} {stage:10} {tool:10} {seconds:8.2f} {memory / 1e6:8.1f} {seconds / ours:7.1f}x "
                      f"{our_memory / memory:6.2f}x {growth}", flush=True)
            smaller, smaller_size = results, size


if __name__ == "__main__":
    main()
