#!/usr/bin/env python3
"""Completes the Verilog grammar with its tokens: make_tokens.py TOKENS.def GRAMMAR.y OUT.y

The line @TOKENS@ of the grammar becomes one %token line per row of the token list, with the code that the scanner
returns and, where the token has one text, that text as the token's alias. The grammar defines api.token.prefix, since
the codes are enumerators under these names already."""
import re
import sys

FIRST_TOKEN = 258
ROW = re.compile(r'^VERI_TOKEN\((\w+), "((?:[^"\\]|\\.)*)", VERI_TOKEN_\w+, VERI_\w+\)$')


def token_lines(list_path):
    rows = [ROW.match(line) for line in open(list_path) if line.startswith("VERI_TOKEN(")]
    if not all(rows):
        sys.exit(f"{list_path}: a row of the token list cannot be read")
    for code, row in enumerate(rows, FIRST_TOKEN):
        alias = f' "{row[2]}"' if row[2] else ""
        yield f"%token VERI_{row[1]} {code}{alias}"


def main():
    list_path, grammar_path, out_path = sys.argv[1:]
    with open(grammar_path) as grammar, open(out_path, "w") as out:
        found = False
        for line in grammar:
            if line.strip() == "@TOKENS@":
                found = True
                line = "\n".join(token_lines(list_path)) + "\n"
            out.write(line)
    if not found:
        sys.exit(f"{grammar_path}: no line @TOKENS@")


main()
