#!/usr/bin/env python3
"""Small sources with the diagnostics that they cause written beside the line: each of them must come, and no other.

source_test.py HOST [--accept] [--table] [PATH...]     files or folders; the folder of this script by default

Comments of a source say what is expected. They work in any kind of comment:

    // run: --std=vlog95 --top m             options of zelk-host; none without such a line; paths are relative to the file
    // run sv: --std=sv2005                  one of several runs, by a name of its own
    // run each: --std=sv2005                a run with each module as the top; what is expected comes in one of them
    // expect: error VERI-1128 10161 "object \\"b\\" is not declared"     at this line, in each run
    // expect@+2: warning ... ; error ...    two lines further down; several, separated by " ; "
    // expect sv: ...                        in this run only
    // expect@part.vh:3: ...                 at a line of another file
    // expect@none: ...                      without a place
    // ignore: information                   a severity, or the number of a message, that this file is not about

An expectation is severity, kernel id (none for messages of the adapter itself), host number, and a piece of the host's
text. Severity "debug" is for the kernel's debug output, which has no number; a run shows it with --set msg_debug=on.
The kernel id behind a number is known from the message catalogue.

Files that end in .v, .sv, .vhd are tests, except in folders named "lib". --accept writes what came unexpected into the
sources, to be read before it is kept. --table prints each kernel id of the catalogue with a test that causes it."""

import argparse
import json
import os
import re
import shlex
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor
from dataclasses import dataclass
from pathlib import Path

HERE = Path(__file__).resolve().parent
CATALOGUE = HERE.parents[1] / "synth" / "zelk" / "messages"
sys.path.insert(0, str(CATALOGUE))
sys.dont_write_bytecode = True
import make_messages  # noqa: E402

SECONDS = 60
FIRST_OF_HOST = 20000  # numbers of the host's own messages, which are in no catalogue
SUFFIXES = (".v", ".sv", ".vhd")
SEVERITIES = {"error": "error", "warning": "warning", "info": "information"}

RUN = re.compile(r"(?://|/\*|--) run(?: (?P<tag>\w+))?:(?P<options>.*?)(?:\*/)?$", re.M)
IGNORE = re.compile(r"(?://|/\*|--) ignore: *(?P<words>.*?)(?:\*/)?$", re.M)
EXPECT = re.compile(r"(?://|/\*|--) expect(?: (?P<tag>\w+))?(?:@(?P<place>[\w./+-]+(?::\d+)?))?: *(?P<items>.*?)(?=(?://|/\*|--) expect|$)")
ITEM = re.compile(
    r'(?P<severity>\w+)(?: (?P<id>[A-Z]+-\d+))?(?: (?P<number>\d+))? "(?P<piece>(?:[^"\\]|\\.)*)"(?P<rest> ; |.*)'
)
DEBUG_PLACE = re.compile(r" at (?P<file>[\w.$-]+)\((?P<line>\d+)\)$")


class TestError(Exception):
    pass


@dataclass
class Diagnostic:
    """What was expected, or what came. The text is a piece or the whole; file and line are None without a place."""

    file: str
    line: int
    severity: str
    id: str
    number: str
    text: str

    def words(self):
        quoted = self.text.replace("\\", "\\\\").replace('"', '\\"')
        return " ".join(part for part in (self.severity, self.id, self.number, f'"{quoted}"') if part)

    def is_met_by(self, came):
        return self.kind() == came.kind() and self.text in came.text

    def kind(self):
        return self.file, self.line, self.severity, self.id, self.number


class Catalogue:
    def __init__(self):
        self.messages = make_messages.read_catalogue(str(CATALOGUE / "catalogue.txt"))
        self.ids = {str(message.number): message.id for message in self.messages if not message.mark}
        self.debug = [
            (re.compile(re.sub(r"%[sdc]", ".*", re.escape(unescape(form)).replace("\\%", "%")) + r"(?: at .*)?$"),
             message.id)
            for message in self.messages if message.mark for form in message.formats
        ]

    def debug_id(self, text):
        return next((id for form, id in self.debug if form.match(text)), None)


def unescape(text):
    return re.sub(r"\\(.)", r"\1", text)


class Source:
    """A test file: its runs, its expectations, what it ignores."""

    def __init__(self, path, catalogue):
        self.path = path
        self.lines = path.read_text(encoding="utf-8", errors="replace").split("\n")
        text = "\n".join(self.lines)
        self.runs = {match["tag"]: shlex.split(match["options"]) for match in RUN.finditer(text)} or {None: []}
        self.ignored = set(word for match in IGNORE.finditer(text) for word in match["words"].split())
        self.expectations = []  # (tag or None, diagnostic)
        for number, line in enumerate(self.lines, 1):
            for match in EXPECT.finditer(line):
                self.add(number, match, catalogue)

    def add(self, line, match, catalogue):
        tag, items = match["tag"], match["items"]
        if tag is not None and tag not in self.runs:
            raise TestError(f"{self.path}:{line}: no run is named {tag}")
        file, place = self.place(line, match["place"])
        while items is not None:
            item = ITEM.match(items)
            if not item:
                raise TestError(f"{self.path}:{line}: not an expectation: {items}")
            self.check_item(line, item, catalogue)
            self.expectations.append((tag, Diagnostic(file, place, item["severity"], item["id"], item["number"],
                                                      unescape(item["piece"]))))
            items = items[item.end():] if item["rest"] == " ; " else None

    def modules(self):
        return re.findall(r"^module (\w+)", "\n".join(self.lines), re.M)

    def place(self, line, place):
        if place is None:
            return self.path.name, line
        if place == "none":
            return None, None
        if re.fullmatch(r"[+-]\d+", place):
            return self.path.name, line + int(place)
        file, _, number = place.partition(":")
        return file, int(number) if number else None

    def check_item(self, line, item, catalogue):
        if item["severity"] not in ("error", "warning", "information", "debug"):
            raise TestError(f"{self.path}:{line}: unknown severity {item['severity']}")
        is_of_host = item["severity"] == "debug" or int(item["number"] or 0) >= FIRST_OF_HOST
        known = catalogue.ids.get(item["number"], item["id"] if is_of_host else "no message at all")
        if known != item["id"]:
            raise TestError(f"{self.path}:{line}: number {item['number']} belongs to {known}, not to {item['id']}")


def diagnostics_of(shown, catalogue):
    """The diagnostics in the document that zelk-host writes; notes count like others."""
    for one in shown["diagnostics"]:
        yield from messages_of(one)
    for line in shown["debug"]:
        place = DEBUG_PLACE.search(line["text"])
        id = catalogue.debug_id(line["text"])
        if id:
            yield Diagnostic(place and place["file"], place and int(place["line"]), "debug", id, None, line["text"])


def messages_of(one):
    file = one["file"] and os.path.basename(one["file"])
    yield Diagnostic(file, one["line"], SEVERITIES[one["severity"]], one["kernel_id"], str(one["number"]), one["text"])
    for note in one["notes"]:
        yield from messages_of(note)


@dataclass
class Result:
    source: Source
    report: list  # lines that tell what is wrong
    unexpected: list  # (tag, diagnostic)
    came: list  # diagnostics


class Runner:
    def __init__(self, host, catalogue):
        self.host = host
        self.catalogue = catalogue

    def test(self, path):
        try:
            source = Source(path, self.catalogue)
        except TestError as error:
            return Result(None, [str(error)], [], [])
        result = Result(source, [], [], [])
        for tag, options in source.runs.items():
            self.run(source, tag, options, result)
        return result

    def run(self, source, tag, options, result):
        """One run, or one for each top; what came in several of these counts once."""
        tops = source.modules() if tag == "each" else [None]
        came, report = {}, []
        for top in tops:
            arguments = [*options, *(["--top", top] if top else []), source.path.name]
            status, found, failure = self.call(source, arguments)
            report += [f"  {line}" for line in failure]
            for one in found:
                came[(one.words(), one.file, one.line) if tag == "each" else id(one)] = one
        came = list(came.values())
        expected = [one for wanted, one in source.expectations if wanted in (None, tag)]
        missing, unexpected = compare(expected, came)
        wanted = int(any(one.severity == "error" for one in expected))
        if tag != "each" and not report and not missing and not unexpected and status != wanted:
            report.append(f"  ended with status {status}, not {wanted}")
        report += difference(source, missing, unexpected)
        if report:
            result.report += [f"{source.path}{f' ({tag})' if tag else ''}: {shlex.join(options)}"] + report
        result.unexpected += [(tag, one) for one in unexpected]
        result.came += came

    def call(self, source, arguments):
        """The status, the diagnostics, and lines that tell a failure of zelk-host itself."""
        try:
            done = subprocess.run([self.host, "--diagnostics=json", *arguments], cwd=source.path.parent, text=True,
                                  errors="replace", stdin=subprocess.DEVNULL, capture_output=True, timeout=SECONDS)
            shown = json.loads(done.stderr)
        except subprocess.TimeoutExpired:
            return None, [], [f"no end after {SECONDS} s: {shlex.join(arguments)}"]
        except ValueError:
            return None, [], [f"ended with status {done.returncode}: {shlex.join(arguments)}",
                              *(done.stdout + done.stderr).split("\n")]
        failure = []
        if done.returncode not in (0, 1):
            failure = [f"ended with status {done.returncode}: {shlex.join(arguments)}", *map(str, shown["internal_errors"])]
        found = [one for one in diagnostics_of(shown, self.catalogue)
                 if not source.ignored & {one.severity, one.number}]
        return done.returncode, found, failure


def compare(expected, came):
    """What is missing and what came unexpected. The expectation with the longest text is met first."""
    unexpected, missing = list(came), []
    for wanted in sorted(expected, key=lambda one: -len(one.text)):
        met = next((one for one in unexpected if wanted.is_met_by(one)), None)
        if met:
            unexpected.remove(met)
        else:
            missing.append(wanted)
    return missing, unexpected


def difference(source, missing, unexpected):
    """Line by line what is missing (-) and what came instead or besides (+), under the source's text."""
    def key(one):
        return one.file != source.path.name, one.file or "", one.line or 0

    rows = sorted([("-", one) for one in missing] + [("+", one) for one in unexpected],
                  key=lambda row: (key(row[1]), row[0] == "+"))
    out, place = [], None
    for sign, one in rows:
        if place != key(one):
            place = key(one)
            is_here = one.file == source.path.name and one.line and one.line <= len(source.lines)
            text = source.lines[one.line - 1] if is_here else ""
            out.append(f"  {one.file or 'no file'}:{one.line or ''}: {EXPECT.sub('', text).strip()}")
        out.append(f"    {sign} {one.words()}")
    return out


def accept(source, unexpected):
    """Writes what came into the source, where the message's text tells its place once."""
    tags = set(source.runs)
    for tag, one in unexpected:
        everywhere = tags == {"each"} or all((other, one) in unexpected for other in tags)
        if everywhere and tag != next(iter(source.runs)):
            continue
        name = "" if everywhere else f" {tag}"
        piece = Diagnostic(one.file, one.line, one.severity, one.id, one.number, piece_of(one.text))
        if one.file == source.path.name and one.line:
            line = source.lines[one.line - 1]
            beside = re.search(rf"// expect{name}: ", line)
            source.lines[one.line - 1] = f"{line} ; {piece.words()}" if beside else (
                f"{line} // expect{name}: {piece.words()}")
        else:
            place = f"{one.file}:{one.line}" if one.line else one.file or "none"
            source.lines.insert(len(source.lines) - 1, f"// expect{name}@{place}: {piece.words()}")
    source.path.write_text("\n".join(source.lines), encoding="utf-8")


def piece_of(text):
    """What a message tells behind its place."""
    _, colon, rest = text.partition("): ")
    return rest if colon else text


def table(catalogue, results):
    causes = {}
    for result in results:
        for one in result.came:
            if one.id:
                causes.setdefault((one.id, one.severity), result.source.path.relative_to(HERE))
    out = []
    for message in catalogue.messages:
        if message.id and message.family != "VHDL":
            severity = "debug" if message.mark in ("debug", "debug-at") else message.severity
            out.append(f"{message.id:9} {severity:12} {causes.get((message.id, severity), '-')}")
    return out


def find_sources(paths):
    for path in paths:
        if path.is_dir():
            yield from sorted(found for found in path.rglob("*")
                              if found.suffix in SUFFIXES and "lib" not in found.relative_to(path).parts[:-1])
        else:
            yield path


def main():
    parser = argparse.ArgumentParser(description="Runs zelk-host on sources that tell the diagnostics they cause.")
    parser.add_argument("host")
    parser.add_argument("--accept", action="store_true", help="write what came unexpected into the sources")
    parser.add_argument("--table", action="store_true", help="print each kernel id with a test that causes it")
    parser.add_argument("paths", nargs="*", type=Path, default=[HERE])
    arguments = parser.parse_args()
    catalogue = Catalogue()
    runner = Runner(os.path.abspath(arguments.host), catalogue)
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        results = list(pool.map(runner.test, find_sources([path.resolve() for path in arguments.paths])))
    for result in results:
        if result.report:
            print("\n".join(result.report))
        if arguments.accept and result.unexpected:
            accept(result.source, result.unexpected)
    if arguments.table:
        print("\n".join(table(catalogue, results)))
    failed = sum(bool(result.report) for result in results)
    print(f"{len(results) - failed} passed, {failed} failed")
    return 1 if failed or not results else 0


if __name__ == "__main__":
    sys.exit(main())
