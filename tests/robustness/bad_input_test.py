#!/usr/bin/env python3
"""Sources with mistakes, cut files and absurd sizes: zelk-host must end with status 1 and a located message, write no
output, and never crash or hang.

bad_input_test.py HOST"""

import random
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

HOST = None
ROOT = Path(__file__).resolve().parents[2]
SECONDS = 120


def ended_by_fault(status):
    """A signal, or the host's own report of an internal error."""
    return status < 0 or status == 3 or status > 128


class BadInput(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.directory = Path(scratch.name)

    def run_host(self, *arguments):
        return subprocess.run([HOST, "-o", "out.v", "-o", "out.json", *arguments], cwd=self.directory, text=True,
                              errors="replace", stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=SECONDS)

    def refuse(self, source, *texts, name="bad.v"):
        """The source is refused with messages that hold the texts."""
        if source is not None:
            (self.directory / name).write_text(source)
        done = self.run_host(name)
        self.assertEqual(done.returncode, 1, done.stdout[-2000:])
        for text in texts:
            self.assertIn(text, done.stdout)
        self.assertFalse((self.directory / "out.v").exists() or (self.directory / "out.json").exists())

    def survive(self, source, *arguments):
        """Whatever comes out, the program ends by itself."""
        (self.directory / "any.v").write_bytes(source if isinstance(source, bytes) else source.encode())
        done = self.run_host("any.v", *arguments)
        self.assertFalse(ended_by_fault(done.returncode), done.stdout[-2000:])
        return done

    def test_files_and_includes(self):
        self.refuse(None, "missing.v", name="missing.v")
        self.refuse('`include "nowhere.vh"\nmodule m; endmodule\n', "bad.v(1)", "nowhere.vh")
        self.refuse('module m; endmodule\n`include "bad.v"\n', "bad.v(")

    def test_unclosed_text(self):
        self.refuse("module m;\n/* no end\nendmodule\n", "bad.v(")
        self.refuse("module m;\n`ifdef A\nendmodule\n", "bad.v(")
        self.refuse("module m;\nwire w = 8'd1;\n", "bad.v(")
        self.refuse('module m;\ninitial $display("no end\n;\nendmodule\n', "bad.v(")

    def test_macros_that_never_end(self):
        self.refuse("`define A `B\n`define B `A\nmodule m; wire w = `A; endmodule\n", "bad.v(", "A")
        self.refuse("`define F(x) `F(`F(x))\nmodule m; wire w = `F(1); endmodule\n", "bad.v(")

    def test_names(self):
        self.refuse("module m(output y);\nassign y = nothing;\nendmodule\n", "bad.v(2)", '"nothing"')
        self.refuse("module s(input a); endmodule\nmodule m;\nwire w;\ns u(.b(w));\nendmodule\n", "bad.v(4)", '"b"')
        self.refuse("module m(input a, a);\nendmodule\n", "bad.v(1)", '"a"')
        self.refuse("module m;\nparameter P = Q;\nlocalparam Q = P;\nwire [P:0] w;\nendmodule\n", "bad.v(", "P")

    def test_absurd_sizes(self):
        self.refuse("module m(output [2147483647:0] y);\nassign y = 1;\nendmodule\n", "bad.v(1)")
        self.refuse("module m(input [40:0] a, output y);\nreg [63:0] r [0:2147483647];\n"
                    "assign y = r[a][0];\nendmodule\n", "bad.v(")
        self.refuse("module m(output y);\nassign y = ^{2147483647{1'b1}};\nendmodule\n", "bad.v(2)")
        self.survive("module m(input [7:0] a, output [7:0] y);\nassign y = a << 4000000000;\nendmodule\n")

    def test_deep_nesting(self):
        for text in ("(" * 100_000 + "a" + ")" * 100_000, "~" * 100_000 + "a", "{" * 100_000 + "a" + "}" * 100_000,
                     "a ? " * 50_000 + "a" + " : a" * 50_000, "a + " * 100_000 + "a", "f(" * 50_000 + "a" + ")" * 50_000):
            self.survive(f"module m(input a, output y);\nassign y = {text};\nendmodule\n")
        self.survive("module m(input a, output reg y);\nalways @*\n" + "if (a) begin " * 50_000 + "y = a;" +
                     " end" * 50_000 + "\nendmodule\n")
        self.survive("module m(input a, output reg y);\nalways @*\n" + "if (a) y = 0; else " * 20_000 + "y = a;\nendmodule\n")
        self.survive("module m;\n" + "generate if (1) begin " * 20_000 + "end endgenerate " * 20_000 + "endmodule\n")

    def test_cycles(self):
        self.survive("module m(output y);\nm u(y);\nendmodule\n")
        self.survive("module m #(parameter N = 4) (output y);\nm #(N + 1) u(y);\nendmodule\n", "--lint")
        self.survive("module m(output y);\nwire a, b;\nassign a = ~b;\nassign b = ~a;\nassign y = a;\nendmodule\n")
        self.survive("module m(input [3:0] n, output [7:0] y);\nfunction automatic [7:0] f(input [3:0] n);\n"
                     "f = n ? f(n - 1) + 1 : 0;\nendfunction\nassign y = f(n);\nendmodule\n")
        self.survive("module m(output reg [3:0] y);\nalways @* begin y = 0; while (1) y = y + 1; end\nendmodule\n")

    def test_every_cut_of_a_design(self):
        source = (ROOT / "examples/uart/rtl/uart_tx.v").read_bytes()
        for size in range(0, len(source), max(1, len(source) // 60)):
            self.survive(source[:size], "--lint")

    def test_random_damage(self):
        source = (ROOT / "tests/equivalence/rtl/structure.v").read_bytes()
        dice = random.Random(7)
        words = [b"begin", b"end", b"(", b")", b";", b"`", b"[", b"endmodule", b"'", b"4'", b"\\", b"\0", b"module", b"#"]
        for _ in range(60):
            damaged = bytearray(source)
            for _ in range(dice.randint(1, 6)):
                at = dice.randrange(len(damaged))
                if dice.random() < 0.5:
                    del damaged[at:at + dice.randint(1, 40)]
                else:
                    damaged[at:at] = dice.choice(words)
            self.survive(bytes(damaged), "--top", "hierarchy")


if __name__ == "__main__":
    HOST = str(Path(sys.argv.pop(1)).resolve())
    unittest.main()
