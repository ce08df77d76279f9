#!/usr/bin/env python3
"""compare_elaboration.py HOST [NAME...]: how long elaborating and polishing takes beside `proc; opt` of yosys.

  operators_N   N operators of 16 bits over each other's results, for N of 2,000, 20,000 and 200,000
  loop          a constant loop of 5,000 rounds over a vector of 1,024 bits
  case          a case of 512 ways over a bus of 64 bits
  dma, mac, rv32  the largest examples

All in processor time, each tool without the reading of the source; `faster` is the ratio to HOST, `growth` the exponent
from the size before (1 is linear)."""

import argparse
import math
import random
import tempfile
from pathlib import Path

from compare_analysis import measure

EXAMPLES = Path(__file__).resolve().parent.parent / "examples"


def operators(count):
    choice = random.Random(count)
    lines = ["module operators(input clk, input [15:0] a, input [15:0] b, output reg [15:0] y);",
             "  wire [15:0] w0 = a; wire [15:0] w1 = b;"]
    for number in range(2, count + 2):
        # Most operands are near, as in a data path; one in eight comes from further away.
        near = f"w{number - 1 - choice.randrange(min(number, 8))}"
        far = f"w{number - 1 - choice.randrange(min(number, 8 if choice.randrange(8) else 1000))}"
        lines.append(f"  wire [15:0] w{number} = {near} {choice.choice('+-&|^')} {far};")
    lines.append(f"  always @(posedge clk) y <= w{count + 1};\nendmodule")
    return "\n".join(lines) + "\n"


def loop():
    return """module loop(input [1023:0] a, input [9:0] n, output reg [1023:0] y);
  integer i;
  always @* begin
    y = a;
    for (i = 0; i < 5000; i = i + 1) y[i % 1024] = y[i % 1024] ^ a[(i * 7 + 3) % 1024];
  end
endmodule
"""


def wide_case():
    choice = random.Random(512)
    items = "".join(f"      9'd{value}: y = a {choice.choice('+-&|^')} 64'd{choice.getrandbits(62)};\n" for value in range(512))
    return ("module wide_case(input [8:0] s, input [63:0] a, output reg [63:0] y);\n  always @*\n    case (s)\n" +
            items + "    endcase\nendmodule\n")


GENERATED = {f"operators_{count}": (lambda count=count: operators(count)) for count in (2000, 20000, 200000)}
GENERATED.update({"loop": loop, "case": wide_case})
LISTED = {name: EXAMPLES / name / "files.f" for name in ("dma", "mac", "rv32")}


def elaboration(read, elaborate):
    return max(measure(elaborate)[0] - measure(read)[0], 0.01)


def sources_of(listing):
    """The files that a list of them names."""
    words = listing.read_text(encoding="utf-8").split()
    return [str(listing.parent / word) for word in words if word.endswith((".v", ".sv"))]


def times(host, name, directory):
    """Seconds of HOST and of yosys."""
    if name in GENERATED:
        source = directory / f"{name}.v"
        source.write_text(GENERATED[name]())
        sources, arguments = [str(source)], [str(source)]
    else:
        sources, arguments = sources_of(LISTED[name]), ["-f", str(LISTED[name])]
    ours = elaboration([host, "--lint", "--quiet", *arguments], [host, "--quiet", *arguments])
    read = f"read_verilog -sv {' '.join(sources)}; hierarchy -auto-top"
    theirs = elaboration(["yosys", "-q", "-p", read], ["yosys", "-q", "-p", f"{read}; proc; opt"])
    return ours, theirs


def main():
    arguments = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    arguments.add_argument("host")
    arguments.add_argument("names", nargs="*", default=[*GENERATED, *LISTED])
    options = arguments.parse_args()
    print(f"{'design':18} {'HOST s':>8} {'yosys s':>8} {'faster':>8} {'growth':>7}")
    before = None
    with tempfile.TemporaryDirectory() as scratch:
        for name in options.names:
            ours, theirs = times(options.host, name, Path(scratch))
            stem, _, size = name.partition("_")
            growth = ""
            if before and before[0] == stem:
                growth = f"{math.log(ours / before[2]) / math.log(int(size) / before[1]):7.2f}"
            print(f"{name:18} {ours:8.2f} {theirs:8.2f} {theirs / ours:7.1f}x {growth}", flush=True)
            before = (stem, int(size), ours) if size else None


if __name__ == "__main__":
    main()
