#!/usr/bin/env python3
"""usage: check_leaks.py HOST VALGRIND EXAMPLES

Holds that a run leaves no memory behind and reads none that it must not, whether the design is good, breaks off in the
middle of a file or fails while it is elaborated.
"""

import os
import subprocess
import sys
import tempfile

FAULT = 99  # no exit status of the host

BROKEN = {
    "syntax": "module m(input a, output y);\n  always @(posedge a) if (a) begin y <= 1; endmodule\nmodule n(; endmodule\n",
    "names": "`define M(x) x+\nmodule m(input [3:0] a, output reg y);\n  wire w = absent.inner;\n"
    "  always @(posedge a[0]) y <= `M(a[1]) undeclared;\n  sub #(.NONE(1)) u(.p(a));\nendmodule\n"
    "module sub(input p); endmodule\n",
    "loops": "module m(input [3:0] a, output reg y);\n  integer i;\n  reg [3:0] ram [0:15];\n  always @*\n"
    "    for (i = 0; i >= 0; i = i + 1) y = ram[i][a];\n  tran t(a[0], a[1]);\nendmodule\n",
}


def run(host, valgrind, arguments, expected):
    command = [valgrind, "--quiet", "--leak-check=full", "--errors-for-leak-kinds=definite,indirect"]
    command += [f"--error-exitcode={FAULT}", "--num-callers=20", host, *arguments]
    result = subprocess.run(command, capture_output=True, text=True)
    if result.returncode == expected:
        return True
    print(f"{' '.join(arguments)}: status {result.returncode} in place of {expected}\n{result.stderr}")
    return False


def main():
    host, valgrind, examples = sys.argv[1:4]
    is_good = run(host, valgrind, ["-f", os.path.join(examples, "uart", "files.f"), "--top", "uart"], 0)
    with tempfile.TemporaryDirectory() as folder:
        for name, text in BROKEN.items():
            path = os.path.join(folder, name + ".v")
            with open(path, "w") as file:
                file.write(text)
            is_good &= run(host, valgrind, [path, "--top", "m"], 1)
    return 0 if is_good else 1


if __name__ == "__main__":
    sys.exit(main())
