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
# What a quotation mark can stand in, and neighbouring literals.
TEXTS = re.compile(rf"//[^\n]*|/\*.*?\*/|'(?:[^'\\\n]|\\.)+'|(?P<text>{LITERAL}(?:\s*{LITERAL})*)", re.S)
# Operations that take a format of the catalogue first, or behind a location.
RAISED = re.compile(
    r"(?P<owner>\w+::|->|\.)?\b(?P<function>Error|Warning|Info|veri_error|veri_warning|veri_info)\(\s*"
    rf"(?:[\w.>()-]+,\s*)?(?P<format>{LITERAL}(?:\s*{LITERAL})*)"
)
# Rows that no code raises: why, and which.
NOT_RAISED = {
    "a scanner that a tool makes fails so; this one is written by hand":
        "VERI-1043 VERI-1044 VERI-1045 VERI-1046 VERI-1047 VERI-1048 VERI-1049 VERI-1050 VERI-1051",
    "the construct is refused with SV-1008, whose argument names it":
        "SV-1092 "
        "SV-1117 VERI-1244",
    "the parser has no rule for it and tells a syntax error": "SV-1050 SV-1115 SV-1116 VERI-2100",
    "another message is tied to the case":
        "SV-1095 SV-1100 VERI-1021 VERI-1032 VERI-1033 VERI-1036 VERI-2003 VERI-2077 VERI-2099 VERI-2073 VERI-2074",
    "what it is about makes no hardware and is taken silently":
        "SV-1126 VERI-1170 VERI-1190 VERI-2096 VERI-2101 VERI-2102 VERI-2103 VERI-2121 VERI-2105 VERI-2110",
    "arrays of interface ports and parameters of types are not elaborated":
        "SV-1025 SV-1030 SV-1031 SV-1032 SV-1088 SV-1089 SV-1109 "
        "SV-1110",
    "memories that no RAM can be stay registers": "VERI-2112 VERI-2113 VERI-2114 VERI-2115 VERI-2117",
    "tables that no ROM can be stay logic": "VERI-2122 VERI-2123 VERI-2124",
    "registers are merged without telling each": "VDB-2001",
    "hints of style: they would come for good code as well, and an engineer would turn them off":
        "SV-1098 SV-1099 VERI-2027 VERI-2037 VERI-2048 VERI-2054",
    "an attribute whose value is not constant is of no effect": "VERI-1098",
}
# Rows that hosts know already, of languages whose reader does not stand yet.
FAMILIES_WITHOUT_READER = {"VHDL"}
SEVERITIES = {"error": "error", "warning": "warning", "info": "information"}
EXTENSIONS = (".cpp", ".h", ".l", ".y", ".ll", ".yy", ".lpp", ".ypp")


def sources():
    for folder in ("database", "verilog"):
        for path, _, names in os.walk(os.path.join(ROOT, "kestrin", folder)):
            for name in sorted(names):
                if name.endswith(EXTENSIONS):
                    with open(os.path.join(path, name), encoding="utf-8") as file:
                        yield folder, name, file.read()


def joined(literals):
    return "".join(literal[1:-1] for literal in re.findall(LITERAL, literals))


def raised_formats():
    for folder, name, text in sources():
        for match in RAISED.finditer(text):
            # Message itself takes pieces of text, and the scanner's own Error the tail of a syntax error.
            is_scanners = name.startswith("veri_lex") and match["function"] == "Error" and not match["owner"]
            if match["owner"] == "Message::" or is_scanners:
                continue
            line = text.count("\n", 0, match.start()) + 1
            severity = SEVERITIES[match["function"].removeprefix("veri_").lower()]
            yield folder, f"{name}:{line}", severity, joined(match["format"])


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

    def test_rows_are_raised(self):
        """A literal of the code is a format, wherever it is handed over."""
        literals = {joined(match["text"]) for _, _, text in sources() for match in TEXTS.finditer(text) if match["text"]}
        messages = make_messages.read_catalogue(os.path.join(ROOT, "messages", "catalogue.txt"))
        known = [id for ids in NOT_RAISED.values() for id in ids.split()]
        unraised = {message.id for message in messages if message.id and message.family not in FAMILIES_WITHOUT_READER
                    and not any(form in literals for form in message.formats)}
        self.assertEqual(sorted(unraised - set(known)), [], "no code raises these")
        self.assertEqual(sorted(set(known) - unraised), [], "these are raised or have no row")

    def test_raised_messages_are_found(self):
        self.assertIn(("error", "cannot open file %s"), [raised[2:] for raised in raised_formats()])


if __name__ == "__main__":
    unittest.main()
