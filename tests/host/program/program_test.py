#!/usr/bin/env python3
"""What a person or a script sees of zelk-host: messages in each form, colours and progress, exit status, outputs.

program_test.py HOST [unittest arguments]"""

import json
import os
import pty
import re
import signal
import subprocess
import sys
import tempfile
import time
import unittest
import xml.etree.ElementTree
from pathlib import Path

import jsonschema

HOST = None
HERE = Path(__file__).resolve().parent
ROOT = HERE.parents[2]
OWN_SCHEMA = ROOT / "host" / "output" / "diagnostics.schema.json"
SARIF_SCHEMA = HERE / "sarif_subset.schema.json"

GOOD = """module top(input clk, input [3:0] d, output reg [3:0] q);
  always @(posedge clk) q <= d;
endmodule
"""
WARNED = GOOD.replace("q <= d", "q <= d + 1")
TYPO = GOOD.replace("q <= d", "q <= dd")


def validate(document, schema):
    checker = jsonschema.validators.validator_for(json.loads(schema.read_text()))
    checker.check_schema(json.loads(schema.read_text()))
    jsonschema.validate(document, json.loads(schema.read_text()), cls=checker)


class Program(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.directory = Path(scratch.name)

    def write(self, text, name="top.v"):
        path = self.directory / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text)
        return name

    def run_host(self, *arguments, status=0):
        done = subprocess.run([HOST, *arguments], cwd=self.directory, text=True, stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE, timeout=120)
        if status is not None:
            self.assertEqual(done.returncode, status, done.stdout + done.stderr)
        return done

    def run_on_terminal(self, *arguments):
        """What a terminal gets when it is the standard error stream."""
        master, slave = pty.openpty()
        process = subprocess.Popen([HOST, *arguments], cwd=self.directory, stdout=subprocess.DEVNULL, stderr=slave,
                                   env={**os.environ, "NO_COLOR": ""} | {"TERM": "xterm"})
        os.close(slave)
        seen = b""
        while True:
            try:
                block = os.read(master, 4096)
            except OSError:  # the program has ended
                break
            if not block:
                break
            seen += block
        process.wait(60)
        os.close(master)
        return seen.decode()


class Messages(Program):
    def test_a_text_message_shows_its_source_line_and_the_last_line_counts(self):
        self.write(TYPO)
        lines = self.run_host("top.v", status=1).stderr.splitlines()
        self.assertRegex(lines[0], r"^error \d+: .*top\.v\(2\).*\"dd\"")
        self.assertEqual(lines[1], "     2 |   always @(posedge clk) q <= dd;")
        self.assertEqual(lines[-1], "1 error, 0 warnings")

    def test_notes_are_indented_under_their_message(self):
        self.write("module top;\n  wire a;\n  wire a;\nendmodule\n")
        text = self.run_host("top.v", status=1).stderr
        self.assertRegex(text, r"(?m)^error \d+: .*top\.v\(3\)")
        self.assertRegex(text, r"(?m)^  note \d+: .*top\.v\(2\).*\n +2 \|   wire a;$")

    def test_json_follows_its_schema_and_tells_everything(self):
        self.write("module top;\n  wire a;\n  wire a;\n  wire [1:0] b = 3'd7;\nendmodule\n", "my top.v")
        document = json.loads(self.run_host("--diagnostics=json", "my top.v", "none.v", status=1).stderr)
        validate(document, OWN_SCHEMA)
        by_name = {message["name"]: message for message in document["diagnostics"]}
        declared = by_name["EZELK_VERI_ALREADY_DECLARED"]
        self.assertEqual((declared["severity"], declared["kernel_id"], declared["file"], declared["line"],
                          declared["source"]), ("error", "VERI-1116", "my top.v", 3, "  wire a;"))
        self.assertEqual([note["line"] for note in declared["notes"]], [2])
        missing = by_name["EHOST_CANT_READ_FILE"]
        self.assertEqual((missing["kernel_id"], missing["file"], missing["line"]), (None, None, None))
        self.assertEqual(document["summary"]["errors"],
                         sum(message["severity"] == "error" for message in document["diagnostics"]))
        self.assertEqual(document["summary"]["status"], 1)

    def test_sarif_follows_its_schema_and_tells_everything(self):
        self.write("module top;\n  wire a;\n  wire a;\nendmodule\n", "my top.v")
        document = json.loads(self.run_host("--diagnostics=sarif", "my top.v", status=1).stderr)
        validate(document, SARIF_SCHEMA)
        run = document["runs"][0]
        rules = {rule["id"]: rule for rule in run["tool"]["driver"]["rules"]}
        result = next(r for r in run["results"] if rules[r["ruleId"]]["properties"]["kernelId"] == "VERI-1116")
        place = result["locations"][0]["physicalLocation"]
        self.assertEqual((place["artifactLocation"]["uri"], place["region"]["startLine"]), ("my%20top.v", 3))
        self.assertEqual(result["relatedLocations"][0]["physicalLocation"]["region"]["startLine"], 2)
        self.assertTrue(all(r["ruleId"] in rules for r in run["results"]))
        self.assertEqual(run["invocations"], [{"executionSuccessful": False, "exitCode": 1}])

    def test_sources_of_any_bytes_give_documents_that_read(self):
        (self.directory / "top.v").write_bytes(b"module top;\n wire \xff\xc3\x28 \x01 bad;\nendmodule\n")
        for form, schema in (("json", OWN_SCHEMA), ("sarif", SARIF_SCHEMA)):
            validate(json.loads(self.run_host(f"--diagnostics={form}", "top.v", status=1).stderr), schema)

    def test_a_good_run_gives_documents_without_messages(self):
        self.write(GOOD)
        for form, schema in (("json", OWN_SCHEMA), ("sarif", SARIF_SCHEMA)):
            document = json.loads(self.run_host(f"--diagnostics={form}", "top.v").stderr)
            validate(document, schema)
        self.assertEqual(document["runs"][0]["results"], [])

    def test_quiet_leaves_out_infos(self):
        self.write(GOOD + "module other(input a); reg unused; endmodule\n")
        def kinds(*more):
            text = self.run_host("--diagnostics=json", "--top", "other", "--message-level=high", *more, "top.v").stderr
            return {message["severity"] for message in json.loads(text)["diagnostics"]}
        self.assertIn("info", kinds())
        self.assertNotIn("info", kinds("--quiet"))


class Settings(Program):
    """Levels and lists of messages: 10230 is of the second level, 10035 of the third."""

    def numbers(self, *arguments):
        self.write("module top(input [3:0] a, output [1:0] q);\n  reg unused;\n  assign q = a;\nendmodule\n")
        text = self.run_host("--diagnostics=json", *arguments, "top.v").stderr
        return {message["number"] for message in json.loads(text)["diagnostics"]} & {10230, 10035}

    def test_levels(self):
        for level, expected in (("low", set()), ("medium", {10230}), ("high", {10230, 10035})):
            self.assertEqual(self.numbers(f"--message-level={level}"), expected, level)
        self.assertEqual(self.numbers(), {10230})

    def test_lists_win_over_levels(self):
        self.assertEqual(self.numbers("--message-level=low", "--message-on=10035"), {10035})
        self.assertEqual(self.numbers("--message-level=high", "--message-off=10230"), {10035})
        self.assertEqual(self.numbers("--message-on=10035", "--message-off=10230"), {10035})

    def test_a_number_that_is_on_and_off_or_unknown_is_an_error(self):
        self.write(GOOD)
        self.assertIn("both", self.run_host("--message-on=10035", "--message-off=10035", "top.v", status=1).stderr)
        self.assertIn("9000", self.run_host("--message-off=9000", "top.v", status=1).stderr)



    def test_the_host_minds_its_own_numbers(self):
        self.write("module top(input a, output y); box u(.a(a), .y(y)); endmodule\n")
        self.assertIn("20011", self.run_host("top.v").stderr)
        self.assertNotIn("20011", self.run_host("--message-off=20011", "top.v").stderr)

    def test_names_of_a_source_do_not_command_the_terminal(self):
        self.write("module top(output y); assign y = \\a\033[2J ; endmodule\n")
        self.assertNotIn("\033", self.run_host("top.v", status=None).stderr)

    def test_an_enumeration_may_end_with_its_last_value(self):
        self.write("module top(output logic [1:0] y); typedef enum logic [1:0] {A, B = 2'd3} t; assign y = B; endmodule\n",
                   "top.sv")
        self.assertNotIn("10259", self.run_host("top.sv").stderr)


class Terminal(Program):
    ESCAPE = "\033"

    def test_colours_and_progress_only_on_a_terminal(self):
        self.write(TYPO)
        piped = self.run_host("--progress", "top.v", status=1).stderr
        self.assertNotIn(self.ESCAPE, piped)
        self.assertNotIn("Analysing", piped)
        seen = self.run_on_terminal("top.v")
        self.assertIn(self.ESCAPE + "[1;31merror", seen)
        self.assertIn("Analysing top.v\r\033[K", seen)
        self.assertRegex(self.run_on_terminal("--progress", "top.v"), r"\[ +\d+\.\d s\] Analysing top\.v\r\n")

    def test_colours_as_asked(self):
        self.write(TYPO)
        self.assertIn(self.ESCAPE, self.run_host("--color=always", "top.v", status=1).stderr)
        self.assertNotIn(self.ESCAPE + "[1;31m", self.run_on_terminal("--color=never", "top.v"))


class Names(Program):
    def test_escaped_names_are_no_bits_of_vectors(self):
        self.write(r"""module top(input p, input \p[0] , input [1:0] v, output \y[1] , output y, output [1:0] w);
          assign \y[1] = \p[0] ; assign y = p; assign w = v;
        endmodule
        """)
        self.run_host("top.v", "-o", "out.json", "-o", "out.v")
        ports = json.loads((self.directory / "out.json").read_text())["modules"]["top"]["ports"]
        self.assertEqual({name: len(port["bits"]) for name, port in ports.items()},
                         {"p": 1, "p[0]": 1, "v": 2, "y[1]": 1, "y": 1, "w": 2})
        self.assertIn(r"input \p[0] ;", (self.directory / "out.v").read_text())

    def test_undeclared_modules_keep_places_values_and_all_ports(self):
        self.write(r"""module top(input a, b, c, output y, z, w);
          one #(.P(10), .N(-3), .S("a\"b\\n"), .Q(8'h0a), .T("10")) u1(a, , y);
          one u2(a, b, z);
          two m1(.a(a), .y(w));
          two m2(.a(b), .extra(c));
        endmodule
        """)
        self.run_host("top.v", "-o", "out.json", "-o", "out.v")
        text = (self.directory / "out.v").read_text()
        self.assertRegex(text, r'\.S\("a\\"b\\\\n"\).* u1\(\\a~ , , \\y~ \);')
        modules = json.loads((self.directory / "out.json").read_text())["modules"]
        self.assertEqual(set(modules["two"]["ports"]), {"a", "y", "extra"})
        self.assertEqual(set(modules["one"]["ports"]), {"$1", "$2", "$3"})
        self.assertEqual(set(modules["top"]["cells"]["u1"]["connections"]), {"$1", "$3"})
        self.assertEqual(modules["top"]["cells"]["u1"]["parameters"],
                         {"P": f"{10:032b}", "N": "1" * 30 + "01", "S": 'a"b\\n', "Q": "00001010", "T": "10 "})

    def test_the_top_is_found_by_exact_case(self):
        self.write(GOOD)
        self.assertIn("20004", self.run_host("top.v", "--top", "TOP", status=1).stderr)

    def test_paths_of_lists_may_hold_blanks_and_slashes(self):
        self.write(GOOD, "some where/top.v")
        self.write('"some where//top.v" // the only one\n', "all.f")
        self.run_host("-f", "all.f")


class Status(Program):
    def test_outputs_appear_together_or_not_at_all(self):
        self.write(GOOD)
        self.run_host("top.v", "-o", "out.v", "-o", "none/out.json", status=1)
        self.assertEqual([path.name for path in self.directory.iterdir()], ["top.v"])

    def test_status_tells_errors_of_the_design_from_wrong_usage(self):
        self.write(GOOD)
        self.write(TYPO, "typo.v")
        self.run_host("top.v")
        self.run_host("typo.v", status=1)
        for wrong in (["--sideways", "top.v"], [], ["top.v", "+libext+.v"], ["top.v", "--option", "INFER_RAMS=maybe"],
                      ["top.v", "--option", "HDL_MESSAGE_LEVEL=bogus"], ["top.v", "--option", "CONSTANT_LOOP_LIMIT=abc"], ["top.v", "-o", "top.xyz"], ["top.v", "-f", "none.f"]):
            self.assertIn("zelk-host: ", self.run_host(*wrong, status=2).stderr)

    def test_warnings_count_as_errors_when_asked(self):
        self.write(WARNED)
        self.run_host("top.v", "-o", "out.v")
        (self.directory / "out.v").unlink()
        text = self.run_host("--werror", "top.v", "-o", "out.v", status=1).stderr
        self.assertTrue(text.endswith("0 errors, 1 warning that count as errors\n") or "counts as" in text, text)
        self.assertFalse((self.directory / "out.v").exists())

    def test_an_internal_error_has_its_own_status_and_its_place(self):
        self.write(GOOD)
        text = self.run_host("--option", "CONSTANT_LOOP_LIMIT=-1", "top.v", "-o", "out.v", status=3).stderr
        self.assertRegex(text, r"(?m)^internal error: Verilog loop limit must be non-negative \(ZELK, .*\.cpp:\d+\)$")
        self.assertFalse((self.directory / "out.v").exists())

    def test_a_fault_loses_no_message(self):
        """The run waits for the reader of a pipe when the fault comes."""
        self.write(WARNED.replace("q <= d + 1", "q <= {d, d}"))
        os.mkfifo(self.directory / "out.v")
        for form, schema in (("text", None), ("json", OWN_SCHEMA), ("sarif", SARIF_SCHEMA)):
            former = self.directory / f"{form}.json"
            process = subprocess.Popen([HOST, f"--diagnostics={form}", "top.v", "-o", former.name, "-o", "out.v"],
                                       cwd=self.directory, text=True, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
            deadline = time.monotonic() + 60
            while not former.exists() and time.monotonic() < deadline:
                time.sleep(0.02)
            process.send_signal(signal.SIGSEGV)
            text = process.communicate(timeout=60)[1]
            if process.returncode != 3:  # a sanitizer keeps its own handlers
                self.assertIn("Sanitizer", text)
                return
            self.assertIn("10230", text)
            self.assertIn("invalid memory access or stack overflow (Elaborating top)", text)
            if schema:
                validate(json.loads(text), schema)

    def test_an_output_does_not_replace_a_source(self):
        self.write(GOOD)
        self.assertIn("one of the sources", self.run_host("top.v", "-o", "./top.v", status=2).stderr)
        self.assertEqual((self.directory / "top.v").read_text(), GOOD)

    def test_outputs_of_former_runs_stay_on_errors_and_nothing_unfinished_remains(self):
        self.write(TYPO)
        self.write("former", "out.v")
        self.run_host("top.v", "-o", "out.v", "-o", "out.json", status=1)
        self.assertEqual(sorted(path.name for path in self.directory.iterdir()), ["out.v", "top.v"])
        self.assertEqual((self.directory / "out.v").read_text(), "former")
        self.write(GOOD)
        self.run_host("top.v", "-o", "out.v", "-o", "out.json")
        self.assertEqual(sorted(path.name for path in self.directory.iterdir()), ["out.json", "out.v", "top.v"])
        self.assertIn("module top", (self.directory / "out.v").read_text())

    def test_an_output_that_cannot_be_written_is_an_error(self):
        self.write(GOOD)
        self.assertIn("nowhere", self.run_host("top.v", "-o", "nowhere/out.v", status=1).stderr)


class Top(Program):
    INTERFACES = """interface bus; logic d; endinterface
module part(bus b, output y); assign y = b.d; endmodule
module whole(input a, output y); bus b(); assign b.d = a; part p(b, y); endmodule
primitive cell_of_none(o, a); output o; input a; table 0 : 1; 1 : 0; endtable endprimitive
"""

    def test_only_modules_are_tops_by_themselves(self):
        self.write(self.INTERFACES, "top.sv")
        self.run_host("--quiet", "top.sv", "-o", "out.json")
        modules = json.loads((self.directory / "out.json").read_text())["modules"]
        self.assertEqual(next(iter(modules)), "whole")
        self.assertIn("is an interface", self.run_host("--top", "bus", "top.sv", status=1).stderr)
        self.run_host("--top", "cell_of_none", "top.sv")


class Parameters(Program):
    SOURCE = """module top #(parameter W = 4, parameter [7:0] M = 8'h0F, parameter S = "slow", parameter R = 1.5, parameter signed N = 0)
    (input [31:0] a, output [31:0] w, output [7:0] m, output s, output r, output [31:0] n);
  assign w = W; assign m = M; assign s = S == "fast"; assign r = R > 2.0; assign n = N + a[0];
endmodule
"""

    def values(self, *arguments):
        self.write(self.SOURCE)
        self.run_host("--quiet", *arguments, "top.v", "-o", "out.json")
        values = json.loads((self.directory / "out.json").read_text())["modules"]["top"]["parameter_default_values"]
        return {name: str(int(text, 2)) if set(text) <= {"0", "1"} else text for name, text in values.items()}

    def constants(self, port):
        """The value of an output that is constant."""
        module = json.loads((self.directory / "out.json").read_text())["modules"]["top"]
        return int("".join(module["ports"][port]["bits"][::-1]), 2)

    def test_defaults_are_registered_with_the_values_used(self):
        self.assertEqual(self.values(), {"W": "4", "M": "15", "S": "slow", "R": "1.5", "N": "0"})

    def test_values_in_every_notation_act_and_are_registered(self):
        for text, expected in (("8", 8), ("-1", 0xFFFFFFFF), ("4'hA", 10), ("'o17", 15), ("8'sb1111_1111", 0xFFFFFFFF),
                               ("1_000", 1000), ("6'd33", 33)):
            self.values("-G", f"W={text}")
            self.assertEqual(self.constants("w"), expected, text)
        self.assertEqual(self.values("-G", "M=8'hA5")["M"], "165")
        self.assertEqual(self.constants("m"), 0xA5)
        self.assertEqual(self.values("-G", "S=fast", "-G", "R=2.5")["S"], "fast")
        self.assertEqual((self.constants("s"), self.constants("r")), (1, 1))
        self.values("-G", 'S="fast"', "-G", "R=1e1")
        self.assertEqual((self.constants("s"), self.constants("r")), (1, 1))

    def test_a_name_that_the_top_does_not_have_is_an_error(self):
        self.write(self.SOURCE)
        self.assertIn("NONE", self.run_host("-G", "NONE=1", "top.v", status=1).stderr)

    def test_equal_values_share_a_module_and_different_ones_do_not(self):
        self.write("""module leaf #(parameter W = 2) (input [W-1:0] a, output y); assign y = ^a; endmodule
module top(input [7:0] a, output [4:0] y);
  leaf u0(.a(a[1:0]), .y(y[0]));
  leaf #(2) u1(.a(a[3:2]), .y(y[1]));
  leaf #(.W(1 + 2)) u2(.a(a[2:0]), .y(y[2]));
  leaf #(.W(3)) u3(.a(a[2:0]), .y(y[3]));
  leaf #(.W(8)) u4(.a(a), .y(y[4]));
endmodule
""")
        self.run_host("top.v", "-o", "out.json")
        modules = json.loads((self.directory / "out.json").read_text())["modules"]
        types = {name: cell["type"] for name, cell in modules["top"]["cells"].items() if name.startswith("u")}
        self.assertEqual(types["u2"], types["u3"])
        self.assertEqual(len({types["u0"], types["u2"], types["u4"]}), 3)
        self.assertEqual(types["u0"], types["u1"])
        self.assertEqual(len(modules), 4)

    def test_an_unknown_module_is_a_black_box_told_once(self):
        self.write("""module mid(input a, output y); vendor #(.MODE("x")) u(.i(a), .o(y)); endmodule
module top(input [1:0] a, output [2:0] y);
  mid m(a[0], y[0]);
  vendor v0(.i(a[0]), .o(y[1]));
  vendor v1(.i(a[1]), .o(y[2]));
endmodule
""")
        done = self.run_host("--diagnostics=json", "top.v", "-o", "out.v", "-o", "out.json")
        told = [m for m in json.loads(done.stderr)["diagnostics"] if m["name"] == "WHOST_BLACK_BOX"]
        self.assertEqual(len(told), 1)
        self.assertIn('"vendor"', told[0]["text"])
        self.assertEqual((self.directory / "out.v").read_text().count("vendor "), 3)
        modules = json.loads((self.directory / "out.json").read_text())["modules"]
        self.assertEqual(set(modules["vendor"]["ports"]), {"i", "o"})


class Outputs(Program):
    def test_equal_inputs_give_equal_bytes(self):
        self.write(GOOD)
        names = ["out.v", "out.json", "out.dot", "out.svg", "out.txt"]
        written = []
        for _ in range(2):
            self.run_host("top.v", *(word for name in names for word in ("-o", name)))
            written.append([(self.directory / name).read_bytes() for name in names])
        self.assertEqual(*written)
        texts = [element.text for element in xml.etree.ElementTree.parse(self.directory / "out.svg").iter()]
        self.assertTrue({"clk", "d[3:0]", "q[3:0]"} <= set(texts), texts)

    def test_time_and_memory_of_each_stage_are_shown_when_asked(self):
        self.write(GOOD)
        text = self.run_host("--time", "top.v", "-o", "out.v").stdout
        for stage in ("analyse", "resolve", "elaborate", "write out.v", "in all"):
            self.assertRegex(text, rf"(?m)^ +\d+\.\d+ s +\d+\.\d MB  {stage}$")

    def test_the_report_tells_what_modules_hold(self):
        self.write(GOOD)
        text = self.run_host("--stats", "top.v").stdout
        self.assertRegex(text, r"(?m)^ +4  registers$")

    def test_a_project_file_is_enough(self):
        self.write(GOOD, "rtl/top.v")
        self.write('sources = "rtl/top.v"\noutputs = ["top.v", "top.json"]\n', "p.toml")
        self.run_host("--project", "p.toml")
        self.assertTrue((self.directory / "top.v").exists())
        self.assertTrue((self.directory / "top.json").exists())

    def test_files_for_other_tools_have_one_text_for_each_module(self):
        self.write("module part #(parameter W = 8, N = W / 2) (input clk, input [W-1:0] d, output reg [3:0] q, inout z);\n"
                   "endmodule\nmodule plain(input a); endmodule\n")
        self.run_host("--lint", "top.v", *(word for kind in ("symbol", "include", "component", "instantiation")
                                          for word in ("--set", f"create_{kind}_files=on")))
        texts = {path.name: path.read_text() for path in self.directory.iterdir()}
        self.assertEqual(set(texts), {"top.v", *(name + end for name in ("part", "plain")
                                                 for end in (".sym", ".inc", ".cmp", "_inst.v"))})
        self.assertIn('(pin "d[W-1:0]" input (side left))', texts["part.sym"].replace(" - ", "-"))
        self.assertIn("output [3:0] q", texts["part.inc"])
        self.assertIn("W : integer := 8", texts["part.cmp"])
        self.assertIn("q : out std_logic_vector(3 downto 0)", texts["part.cmp"])
        self.assertIn(".z(z_sig)", texts["part_inst.v"])

    def test_files_for_other_tools_of_names_that_differ_in_case_only(self):
        self.write("module part(input a); endmodule\nmodule PART(input b); endmodule\n")
        done = self.run_host("--lint", "--diagnostics=json", "--set", "create_symbol_files=on", "top.v", status=1)
        self.assertEqual([m["name"] for m in json.loads(done.stderr)["diagnostics"]],
                         ["EZELK_MODULE_NAMES_DIF_ONLY_IN_CASE"])
        self.assertTrue((self.directory / "PART.sym").exists())

    def test_xml_describes_each_source(self):
        self.write(GOOD)
        self.run_host("--xml", "--lint", "top.v")
        self.assertIn('<PORT name="q" direction="output"', (self.directory / "top.xml").read_text())


if __name__ == "__main__":
    HOST = str(Path(sys.argv.pop(1)).resolve())
    unittest.main()
