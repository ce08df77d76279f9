"""What the message generator accepts, derives and refuses."""

import os
import re
import sys
import tempfile
import unittest
from collections import Counter

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..")
FOLDER = os.path.join(ROOT, "synth", "zelk", "messages")
sys.path.insert(0, FOLDER)
sys.dont_write_bytecode = True
import make_messages  # noqa: E402

GOOD = '''# A comment.
- error 10001 PLAIN
  "Nothing but \\"%1!s!\\""

VDB-1000 warning 10002 DRIVEN
  "net %s"
  "Net \\"%1!s!\\" at %2!s!"

VERI-1000 error 10003 BOTH
  "%d of %s"
  "now %d of %s"
  "at %3!s!: %2!s! has %1!d!"

VERI-1000 information debug-at
  "%d of %s"

SV-1000 warning none
  "net %s"

- warning 10009 withdrawn
'''

# What is wrong with a block that is added to the good ones, and how the refusal names it.
REFUSED = {
    "repeated id and severity": ('VERI-1000 error 10004 NEW\n  "x"\n  "x at %1!s!"', "same kernel id and severity"),
    "repeated number": ('SV-1001 error 10003 NEW\n  "x"\n  "x at %1!s!"', "same host number"),
    "repeated name": ('SV-1001 error 10004 BOTH\n  "x"\n  "x at %1!s!"', "same host name"),
    "format of another id": ('SV-1001 error 10004 NEW\n  "now %d of %s"\n  "%3!s! %2!s! %1!d!"', "belongs to VERI-1000"),
    "argument of another type": ('SV-1001 error 10004 NEW\n  "%s"\n  "%1!d! at %2!s!"', "does not give the arguments"),
    "argument left out": ('SV-1001 error 10004 NEW\n  "%s %s"\n  "%1!s! at %2!s!"', "does not give the arguments"),
    "no place for the location": ('SV-1001 error 10004 NEW\n  "%s"\n  "%1!s!"', "does not give the arguments"),
    "hole in the argument marks": ('SV-1001 error 10004 NEW\n  "x"\n  "at %2!s!"', "an argument mark is missing"),
    "argument mark of two types": ('SV-1001 error 10004 NEW\n  "x"\n  "%1!s! %1!d!"', "two types"),
    "unknown argument mark": ('SV-1001 error 10004 NEW\n  "x"\n  "at %1!f!"', "unknown argument mark"),
    "conversion with a modifier": ('SV-1001 error 10004 NEW\n  "%5d"\n  "%1!d! at %2!s!"', "has no argument mark"),
    "percent sign": ('SV-1001 error 10004 NEW\n  "5%%"\n  "at %1!s!"', "has no argument mark"),
    "number out of range": ('SV-1001 error 11001 NEW\n  "x"\n  "at %1!s!"', "out of range"),
    "unknown severity": ('SV-1001 fatal 10004 NEW\n  "x"\n  "at %1!s!"', "unknown severity"),
    "unknown family": ('HDL-1001 error 10004 NEW\n  "x"\n  "at %1!s!"', "unknown family"),
    "unknown mark": ('SV-1001 error quiet\n  "x"', "unknown mark"),
    "mark without id": ('- error debug\n  "x"', "needs a number"),
    "format without id": ('- error 10004 NEW\n  "x"\n  "x"', "has no format"),
    "id without format": ('SV-1001 error 10004 NEW\n  "x at %1!s!"', "has no format"),
    "block without text": ("SV-1001 error 10004 NEW", "without text"),
    "text of a withdrawn number": ('- error 10004 withdrawn\n  "x"', "has no format"),
    "withdrawn number of another": ("- error 10002 withdrawn", "same host number"),
    "not a string": ("SV-1001 error 10004 NEW\n  x", "not a string"),
    "not a head": ("SV-1001 error NEW", "not the first line"),
    "ids out of order": ('VDB-1001 error 10004 NEW\n  "x"\n  "at %1!s!"', "sorted"),
}


class Generator(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)

    def messages(self, text):
        path = os.path.join(self.folder.name, "catalogue.txt")
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)
        messages = make_messages.read_catalogue(path)
        make_messages.check(messages)
        return messages

    def test_functions_take_their_arguments_in_the_order_of_the_argument_marks(self):
        header = make_messages.adapter_header(self.messages(GOOD))
        self.assertIn("MSG_E* BOTH(int a1, char const* a2, char const* a3);", header)
        self.assertIn("MSG_W* DRIVEN(char const* a1, char const* a2);", header)

    def test_texts_end_in_their_name(self):
        functions = make_messages.adapter_functions(self.messages(GOOD))
        self.assertIn('10003, "at %3!s!: %2!s! has %1!d!/EZELK_BOTH", a1, a2, a3', functions)

    def test_number_tables_hold_numbers_and_marks(self):
        translation = make_messages.adapter_translation(self.messages(GOOD))
        self.assertIn('hash.insert("VERI-1000", 10003);', translation)
        self.assertIn('hash.insert("VERI-1000", -2);', translation)
        self.assertIn('hash.insert("SV-1000", -3);', translation)
        self.assertNotIn("case 10001", translation)

    def test_withdrawn_numbers_are_registered_and_make_no_message(self):
        functions = make_messages.adapter_functions(self.messages(GOOD))
        self.assertIn("    10003,\n    10009,\n", functions)
        self.assertNotIn("10009, \"", functions)

    def test_a_format_has_one_row_per_language(self):
        rows = make_messages.kernel_rows(self.messages(GOOD))
        self.assertEqual(rows.count('"net %s"'), 2)
        self.assertEqual(rows.count('"%d of %s"'), 1)
        self.assertIn('{MESSAGE_VERILOG, "now %d of %s", VERI_1000}', rows)

    def test_faults_are_refused(self):
        for name, (block, reason) in REFUSED.items():
            with self.subTest(name):
                with self.assertRaisesRegex(make_messages.CatalogueError, reason):
                    self.messages(GOOD + "\n" + block + "\n")

    def test_the_catalogue_is_good(self):
        self.assertEqual(make_messages.main(["--check", os.path.join(FOLDER, "catalogue.txt")]), 0)

    def test_the_catalogue_has_the_ids_that_hosts_know(self):
        wanted, family, severity = set(), None, None
        with open(os.path.join(os.path.dirname(os.path.abspath(__file__)), "kernel_ids.txt"), encoding="utf-8") as file:
            for words in map(str.split, file):
                if words and words[0].isdigit():
                    wanted |= {(f"{family}-{number}", severity) for number in words}
                elif words and words[0] != "#":
                    family, severity = words
        found = {(message.id, message.severity)
                 for message in make_messages.read_catalogue(os.path.join(FOLDER, "catalogue.txt"))
                 if message.id}
        self.assertEqual(sorted(wanted - found), [], "ids without a row")
        self.assertEqual(sorted(found - wanted), [], "rows of other ids")

    def test_the_tables_have_the_sizes_that_hosts_know(self):
        messages = make_messages.read_catalogue(os.path.join(FOLDER, "catalogue.txt"))
        make_messages.check(messages)
        functions = make_messages.numbered(messages)

        def count(key, of):
            return dict(Counter(filter(None, map(key, of))))

        def kinds_of_arguments(message):
            return "".join(sorted(set(message.arguments))) or "none"

        self.assertEqual(count(kinds_of_arguments, functions), {"s": 850, "ds": 74, "cs": 8, "d": 2, "none": 1})
        self.assertEqual(count(lambda m: m.severity, make_messages.registered(messages)),
                         {"error": 757, "information": 25, "warning": 157})
        self.assertEqual(count(lambda m: m.id and m.severity, messages), {"error": 725, "information": 36, "warning": 165})
        self.assertEqual(count(lambda m: m.id and m.family, messages), {"VERI": 337, "VHDL": 438, "SV": 124, "VDB": 27})
        self.assertEqual(count(lambda m: m.mark == "debug-at" and m.severity, messages), {"information": 13, "warning": 3})
        self.assertEqual(count(lambda m: m.name.endswith("_UNCONVERTED"), functions), {True: 180})
        self.assertEqual(len({message.id for message in messages if message.id}), 907)

    def test_the_levels_are_those_of_the_names(self):
        """What the lower message levels switch off is named so."""
        with open(os.path.join(FOLDER, "..", "zelk_msg_levels.def"), encoding="utf-8") as file:
            text = file.read()
        prefixes = {number: prefix for kind, prefix in (("MEDIUM", "L2_"), ("HIGH", "L3_"))
                    for number in re.findall(rf"^ZELK_{kind}_LEVEL_MESSAGE\((\d+)\)", text, re.M)}
        messages = make_messages.read_catalogue(os.path.join(FOLDER, "catalogue.txt"))
        for message in make_messages.numbered(messages):
            prefix = message.name[:3] if message.name[:3] in ("L2_", "L3_") else None
            self.assertEqual(prefixes.get(str(message.number)), prefix, message.name)
        # A level switches nothing but warnings and information, and each of them comes back with it.
        levelled = {int(number) for number in re.findall(r"^ZELK_\w*LEVEL_MESSAGE\((\d+)\)", text, re.M)}
        shown = {message.number for message in make_messages.registered(messages) if message.severity != "error"}
        self.assertEqual(levelled, shown)


if __name__ == "__main__":
    unittest.main()
