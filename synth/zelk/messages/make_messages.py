#!/usr/bin/env python3
"""Derives the message code from the catalogue.

usage: make_messages.py CATALOGUE OUTPUT_FOLDER     writes kernel/, adapter/ and host/ below the folder
       make_messages.py --check CATALOGUE           only checks

A catalogue is blocks of lines with blank lines between them; lines that begin with "#" are comments. A block is

    KERNEL_ID SEVERITY HOST_NUMBER HOST_NAME
      "kernel format"            any number of them; all take the same arguments
      "host text"                the last line

The kernel id is "-" for a message that only the adapter raises: it has a host text and no format. In place of number
and name there may be a mark: "debug-at" (debug output with the location), "debug" (debug output), "none" (dropped);
such a block has formats and no host text. The host text takes the kernel's arguments in their order and then the
location. A number with the name "withdrawn" and no lines below it stays registered, so that projects which switch it keep
working, but no message has it any more.
"""

import os
import re
import sys

SEVERITIES = ("error", "information", "warning")  # in the numbering of the registrar's types
LETTERS = {"error": "E", "information": "I", "warning": "W"}
MARKS = {"debug": -1, "debug-at": -2, "none": -3}
FAMILIES = {"VDB": "MESSAGE_DATABASE", "VERI": "MESSAGE_VERILOG", "SV": "MESSAGE_VERILOG", "VHDL": "MESSAGE_VHDL"}
NUMBERS = range(10000, 11001)
WITHDRAWN = "withdrawn"
TYPES = {"s": "char const*", "d": "int", "c": "char"}

KERNEL_CONVERSION = re.compile(r"%([^a-zA-Z%]*)([a-zA-Z%]|$)")
PLACEHOLDER = re.compile(r"%(\d+)!(.)!")
STRING = re.compile(r'^\s+"((?:[^"\\]|\\.)*)"$')
HEAD = re.compile(r"^(?P<id>-|[A-Z]+-\d{4}) (?P<severity>\w+) (?:(?P<number>\d+) (?P<name>\w+)|(?P<mark>[a-z-]+))$")


class CatalogueError(Exception):
    pass


class Message:
    def __init__(self, line, head, strings):
        self.line = line
        self.id = None if head["id"] == "-" else head["id"]
        self.severity = head["severity"]
        self.mark = head["mark"]
        self.number = int(head["number"]) if head["number"] else None
        self.name = head["name"]
        self.is_withdrawn = self.name == WITHDRAWN
        has_text = not self.mark and not self.is_withdrawn
        self.formats = strings[:-1] if has_text else strings
        self.text = strings[-1] if has_text else None
        self.arguments = ""

    def fail(self, reason):
        raise CatalogueError(f"line {self.line}: {self.id or self.name}: {reason}")

    @property
    def family(self):
        return self.id.split("-")[0]

    @property
    def function(self):
        return f"{LETTERS[self.severity]}::{self.name}"

    def check(self):
        if self.severity not in SEVERITIES:
            self.fail(f"unknown severity {self.severity}")
        if self.mark and self.mark not in MARKS:
            self.fail(f"unknown mark {self.mark}")
        if self.id and self.family not in FAMILIES:
            self.fail("unknown family")
        if self.mark and not self.id:
            self.fail("a message without kernel id needs a number")
        if self.number is not None and self.number not in NUMBERS:
            self.fail(f"number {self.number} is out of range")
        if self.id and not self.formats:
            self.fail("has no format")
        if not self.id and self.formats:
            self.fail("a message without kernel id has no format")
        if self.text is not None:
            self.check_arguments()

    def check_arguments(self):
        argument_marks = {}
        for position, kind in PLACEHOLDER.findall(self.text):
            if kind not in TYPES:
                self.fail(f"unknown argument mark %{position}!{kind}!")
            if argument_marks.setdefault(int(position), kind) != kind:
                self.fail(f"two types of argument mark {position}")
        if sorted(argument_marks) != list(range(1, len(argument_marks) + 1)):
            self.fail("an argument mark is missing in between")
        self.arguments = "".join(argument_marks[position] for position in sorted(argument_marks))
        for form in self.formats:
            if conversions(self, form) + "s" != self.arguments:
                self.fail(f'"{form}" does not give the arguments of "{self.text}"')


def conversions(message, form):
    found = ""
    for modifiers, letter in KERNEL_CONVERSION.findall(form):
        if modifiers or letter not in TYPES:
            message.fail(f'conversion "%{modifiers}{letter}" of "{form}" has no argument mark')
        found += letter
    return found


def read_catalogue(path):
    messages = []
    with open(path, encoding="utf-8") as file:
        lines = [line.rstrip("\n") for line in file] + [""]
    head, strings, start = None, [], 0
    for number, line in enumerate(lines, 1):
        if line.startswith("#"):
            continue
        if not line.strip():
            if head:
                if not strings and head["name"] != WITHDRAWN:
                    raise CatalogueError(f"line {start}: a block without text")
                messages.append(Message(start, head, strings))
            head, strings = None, []
        elif head is None:
            match = HEAD.match(line)
            if not match:
                raise CatalogueError(f"line {number}: not the first line of a message")
            head, start = match.groupdict(), number
        else:
            match = STRING.match(line)
            if not match:
                raise CatalogueError(f"line {number}: not a string")
            strings.append(match.group(1))
    return messages


def check(messages):
    seen = {}

    def unique(message, *key):
        other = seen.setdefault(key, message)
        if other is not message:
            message.fail(f"same {key[0]} as in line {other.line}")

    for message in messages:
        message.check()
        if message.id:
            unique(message, "kernel id and severity", message.id, message.severity)
            for form in message.formats:
                key = ("format", FAMILIES[message.family], form)
                if seen.setdefault(key, message).id != message.id:
                    message.fail(f'"{form}" belongs to {seen[key].id}')
        if message.number is not None:
            unique(message, "host number", message.number)
        if message.text is not None:
            unique(message, "host name", message.severity, message.name)
    ids = [(message.family, message.id) for message in messages if message.id]
    families = sorted(set(family for family, _ in ids), key=[family for family, _ in ids].index)
    for before, after in zip(ids, ids[1:]):
        if (families.index(before[0]), before[1]) > (families.index(after[0]), after[1]):
            raise CatalogueError(f"{after[1]} stands behind {before[1]}: ids are sorted within their family")


BANNER = "// Made from the message catalogue by make_messages.py.\n"


def kernel_rows(messages):
    ids = list(dict.fromkeys(message.id for message in messages if message.id))
    out = [BANNER, '#include "util/messagetable.h"\n\n', "namespace {\n\n"]
    out.append("// Each id once, so that it has one address.\n")
    out += [f'constexpr char {kernel_id.replace("-", "_")}[] = "{kernel_id}";\n' for kernel_id in ids]
    out.append("\n} // namespace\n\nconst message_row kestrin_message_rows[] = {\n")
    rows = {}
    for message in messages:
        for form in message.formats:
            rows[FAMILIES[message.family], form] = message.id.replace("-", "_")
    out += [f'    {{{language}, "{form}", {name}}},\n' for (language, form), name in rows.items()]
    out.append(f"}};\n\nconst unsigned kestrin_num_of_message_rows = {len(rows)};\n")
    return "".join(out)


def parameters(message):
    return [f"{TYPES[kind]} a{index}" for index, kind in enumerate(message.arguments, 1)]


def numbered(messages):
    return [message for message in messages if message.text is not None]


def registered(messages):
    return sorted((message for message in messages if message.number is not None), key=lambda message: message.number)


def adapter_header(messages):
    out = [BANNER, "// The host messages of the library. Each function returns a new message of the caller.\n"]
    out.append("#ifndef ZELK_MSGS_H\n#define ZELK_MSGS_H\n\n#include \"msg.h\"\n\nnamespace MSG_ZELK {\n")
    for severity in SEVERITIES:
        letter = LETTERS[severity]
        out.append(f"\nnamespace {letter} {{\n")
        for message in numbered(messages):
            if message.severity == severity:
                out.append(f"/// {message.number}: {message.text}\n")
                out.append(f"MSG_{letter}* {message.name}({', '.join(parameters(message))});\n")
        out.append(f"}} // namespace {letter}\n")
    out.append("\n} // namespace MSG_ZELK\n\n#endif\n")
    return "".join(out)


def adapter_functions(messages):
    out = [BANNER, '#include "zelk_msgs.h"\n\n#include <iterator>\n\nnamespace {\n\n']
    out.append("template <class MESSAGE, class... ARGUMENTS>\n"
               "MESSAGE* make(unsigned number, const char* text, ARGUMENTS... arguments) {\n"
               "  auto* message = new MESSAGE;\n  message->fill_args(text, arguments...);\n"
               "  message->set_id(number);\n  return message;\n}\n\n")
    out.append("const unsigned zelk_msg_ids[] = {\n")
    out += [f"    {message.number},\n" for message in registered(messages)]
    out.append("};\n\nconst int zelk_msg_id_types[] = {\n")
    out += [f"    {SEVERITIES.index(message.severity)},\n" for message in registered(messages)]
    out.append("};\n\nconst MSG_ID_REGISTRAR registrar(zelk_msg_ids, zelk_msg_id_types, std::size(zelk_msg_ids));\n")
    out.append("\n} // namespace\n\nnamespace MSG_ZELK {\n")
    for message in sorted(numbered(messages), key=lambda message: message.number):
        letter = LETTERS[message.severity]
        arguments = "".join(f", a{index}" for index in range(1, len(message.arguments) + 1))
        out.append(f"\nMSG_{letter}* {message.function}({', '.join(parameters(message))}) {{\n"
                   f'  return make<MSG_{letter}>({message.number}, "{message.text}/{letter}ZELK_{message.name}"'
                   f"{arguments});\n}}\n")
    out.append("\n} // namespace MSG_ZELK\n")
    return "".join(out)


def adapter_translation(messages):
    out = [BANNER, '#include "zelk_msg_handler.h"\n\n#include "gen_string_hash.h"\n#include "zelk_kernel_arguments.h"\n'
                   '#include "zelk_msgs.h"\n']
    words = {"error": "error", "warning": "warning", "information": "info"}
    for severity, word in words.items():
        out.append(f"\nvoid zelk_init_{word}_msg_id_hash(GEN_STRING_HASH& hash) {{\n")
        for message in messages:
            if message.id and message.severity == severity:
                value = MARKS[message.mark] if message.mark else message.number
                out.append(f'  hash.insert("{message.id}", {value});\n')
        out.append("}\n")
    out.append("\nMSG_BASE* zelk_make_kernel_message(int number, ZELK_KERNEL_ARGUMENTS& arguments, "
               "const char* location) {\n  switch (number) {\n")
    for message in sorted(numbered(messages), key=lambda message: message.number):
        if message.id:
            out.append(f"  case {message.number}: return arguments.make(MSG_ZELK::{message.function}, location);\n")
    out.append("  default: return nullptr;\n  }\n}\n")
    return "".join(out)


def host_ids(messages):
    rows = sorted((message.number, message.id) for message in numbered(messages) if message.id)
    out = [BANNER, "// KERNEL_ID(host number, id of the front end's message behind it), in the order of the numbers.\n"]
    out += [f'KERNEL_ID({number}, "{kernel_id}")\n' for number, kernel_id in rows]
    return "".join(out)


def write(folder, name, text):
    path = os.path.join(folder, name)
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "w", encoding="utf-8") as file:
        file.write(text)


def main(arguments):
    if len(arguments) != 2:
        print(__doc__, file=sys.stderr)
        return 2
    only_check = arguments[0] == "--check"
    catalogue = arguments[1] if only_check else arguments[0]
    try:
        messages = read_catalogue(catalogue)
        check(messages)
    except (CatalogueError, OSError) as error:
        print(f"{catalogue}: {error}", file=sys.stderr)
        return 1
    if not only_check:
        write(arguments[1], "kernel/messagerows.cpp", kernel_rows(messages))
        write(arguments[1], "adapter/zelk_msgs.h", adapter_header(messages))
        write(arguments[1], "adapter/zelk_msgs.cpp", adapter_functions(messages))
        write(arguments[1], "adapter/zelk_msg_handler_auto.cpp", adapter_translation(messages))
        write(arguments[1], "host/kernel_ids.def", host_ids(messages))
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
