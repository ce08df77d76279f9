"""Every message that the kernel raises has a row of its severity in the catalogue, and so a host number of its own."""

import os
import re
import sys
import unittest

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "synth", "zelk")
sys.path.insert(0, os.path.join(ROOT, "messages"))
sys.dont_write_bytecode = True
import make_messages  # noqa: E402

LITERAL = r'"(?:[^"\\]|\\.)*"'
# Operations that take a format of the catalogue first, or behind a location.
RAISED = re.compile(
    r"(?P<owner>\w+::|->|\.)?\b(?P<function>Error|Warning|Info|veri_error|veri_warning|veri_info)\(\s*"
    rf"(?:[\w.>()-]+,\s*)?(?P<format>{LITERAL}(?:\s*{LITERAL})*)"
)
SEVERITIES = {"error": "error", "warning": "warning", "info": "information"}
EXTENSIONS = (".cpp", ".h", ".l", ".y", ".ll", ".yy", ".lpp", ".ypp")


def raised_formats():
    for folder in ("database", "verilog"):
        for path, _, names in os.walk(os.path.join(ROOT, "kestrin", folder)):
            for name in sorted(names):
                if not name.endswith(EXTENSIONS):
                    continue
                with open(os.path.join(path, name), encoding="utf-8") as file:
                    text = file.read()
                for match in RAISED.finditer(text):
                    # Message itself takes pieces of text, and the scanner's own Error the tail of a syntax error.
                    is_scanners = name.startswith("veri_lex") and match["function"] == "Error" and not match["owner"]
                    if match["owner"] == "Message::" or is_scanners:
                        continue
                    form = "".join(literal[1:-1] for literal in re.findall(LITERAL, match["format"]))
                    line = text.count("\n", 0, match.start()) + 1
                    severity = SEVERITIES[match["function"].removeprefix("veri_").lower()]
                    yield folder, f"{name}:{line}", severity, form


class Sources(unittest.TestCase):
    def test_raised_messages_are_in_the_catalogue(self):
        messages = make_messages.read_catalogue(os.path.join(ROOT, "messages", "catalogue.txt"))
        known = {
            ("database" if message.family == "VDB" else "verilog", message.severity, form)
            for message in messages
            if message.id and message.family != "VHDL"
            for form in message.formats
        }
        missing = [
            f"{place}: {severity}: {form}"
            for folder, place, severity, form in raised_formats()
            if (folder, severity, form) not in known
        ]
        self.assertEqual(missing, [])

    def test_raised_messages_are_found(self):
        self.assertIn(("error", "cannot open file %s"), [raised[2:] for raised in raised_formats()])


if __name__ == "__main__":
    unittest.main()
