"""The runner notices what is missing, what came besides, and expectations that no message can meet."""

import os
import sys
import tempfile
import unittest
from pathlib import Path

sys.dont_write_bytecode = True
import source_test  # noqa: E402

# Stands in for zelk-host: prints what the comments behind "says" tell, and ends with their status.
HOST = r"""#!/usr/bin/env python3
import json, re, sys
says = re.findall(r"//says (\w*): (.*)", open(sys.argv[-1]).read())
shown = [json.JSONDecoder().raw_decode(text)[0] for tag, text in says if tag in ("", *sys.argv)]
print(json.dumps({"diagnostics": shown, "debug": [], "internal_errors": []}), file=sys.stderr)
sys.exit(int(any(one["severity"] == "error" for one in shown)))
"""
SAYS = ('//says : {"severity": "error", "number": 10161, "kernel_id": "VERI-1128", "file": "/a/t.v", "line": 2, "notes": [], '
        '"text": "Verilog HDL error at t.v(2): object \\"b\\" is not declared"}\n')
NOTE = ('//says : {"severity": "info", "number": 10648, "kernel_id": "VERI-2060", "file": "/a/t.v", "line": 1, "notes": [], '
        '"text": "Verilog HDL Display System Task info at t.v(1): x"}\n')
GOOD = 'error VERI-1128 10161 "object \\"b\\" is not"'


class Runner(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.catalogue = source_test.Catalogue()

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.host = Path(folder.name) / "host"
        self.host.write_text(HOST)
        os.chmod(self.host, 0o755)
        self.path = Path(folder.name) / "t.v"

    def report(self, text):
        self.path.write_text(text)
        result = source_test.Runner(str(self.host), self.catalogue).test(self.path)
        return result, "\n".join(result.report)

    def test_a_met_expectation_passes_at_its_line(self):
        for text in (SAYS + f"// expect: {GOOD}\n", f"{SAYS}\n\n// expect@-2: {GOOD}\n", f"// expect@+1: {GOOD}\n{SAYS}",
                     f"{SAYS}/* expect: {GOOD} */\n", f"{SAYS}\n// expect@t.v:2: {GOOD}\n"):
            self.assertEqual(self.report(text)[1], "", text)

    def test_what_is_missing_or_too_much_is_told(self):
        for text, told in (
            (SAYS, '+ error VERI-1128 10161 "Verilog'),
            (f"\n// expect: {GOOD}\n", f"- {GOOD}"),
            (f"{SAYS}// expect: {GOOD} ; {GOOD}\n", f"- {GOOD}"),
            (f"{SAYS}{SAYS}", "+ error VERI-1128"),
            (f"{SAYS}\n// expect: {GOOD}\n", f"t.v:3: \n    - {GOOD}"),
            (f'{SAYS}// expect: error VERI-1128 10161 "other"\n', '- error VERI-1128 10161 "other"'),
            (f'{SAYS}// expect: warning VERI-1128 10161 "object"\n', "- warning VERI-1128"),
        ):
            self.assertIn(told, self.report(text)[1])

    def test_expectations_that_nothing_can_meet_are_refused(self):
        for item, told in (('error VERI-1127 10161 "x"', "belongs to VERI-1128"), ('error 10161 "x"', "belongs to"),
                           ('error VERI-1128 10161 x', "not an expectation"), ('fatal - "x"', "not an expectation"),
                           ('error VERI-1128 9 "x"', "belongs to no message"), ('error "x"', "no message at all")):
            self.assertIn(told, self.report(f"// expect: {item}\n")[1])
        self.assertIn("no run is named b", self.report(f"// run a: a\n// expect b: {GOOD}\n")[1])

    def test_runs_have_expectations_of_their_own(self):
        says = SAYS.replace("says ", "says two")
        runs = f"\n{says}\n// run one: one\n// run two: two\n"
        place = "@t.v:2"
        self.assertEqual(self.report(f"{runs}// expect two{place}: {GOOD}\n")[1], "")
        self.assertIn("(one)", self.report(f"{runs}// expect{place}: {GOOD}\n")[1])
        self.assertIn("(two)", self.report(f"{runs}// expect one{place}: {GOOD}\n")[1])

    def test_ignored_messages_are_neither_here_nor_there(self):
        self.assertEqual(self.report(NOTE + "// ignore: information\n")[1], "")
        self.assertNotEqual(self.report(NOTE + "// ignore: warning\n")[1], "")

    def test_what_comes_with_several_tops_counts_once(self):
        modules = "\nmodule a;\nendmodule\nmodule b;\nendmodule\n// run each: --lint\n"
        self.assertEqual(self.report(f"{SAYS}{modules}// expect@t.v:2: {GOOD}\n")[1], "")
        self.assertIn(f"- {GOOD}", self.report(f"{SAYS}{modules}// expect@t.v:2: {GOOD} ; {GOOD}\n")[1])

    def test_a_crash_is_told(self):
        self.host.write_text("#!/bin/sh\necho internal error: here; exit 3\n")
        self.assertIn("status 3", self.report("\n")[1])

    def test_accepted_messages_pass_afterwards(self):
        result, _ = self.report(f"// top\n{SAYS}")
        source_test.accept(result.source, result.unexpected)
        self.assertEqual(self.report(self.path.read_text())[1], "")


if __name__ == "__main__":
    unittest.main()
