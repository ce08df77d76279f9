// Splitting, unique making and escaping of names.
#include "signal_names.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <iterator>
#include <string_view>

INDEXED_NAME split_index(const std::string& text) {
  constexpr size_t MAX_DIGITS = 9;
  INDEXED_NAME name{text, 0, false};
  size_t close = text.rfind(']');
  size_t open = close == std::string::npos ? close : text.rfind('[', close);
  if (open == std::string::npos || open == 0) return name;
  // Behind the index of a bit there can be a suffix of the front end, but no further part of a user's name.
  bool is_last = close + 1 == text.size() || text[close + 1] == '~' || text[close + 1] == '$';
  if (!is_last) return name;
  size_t first = open + 1 + (text[open + 1] == '-');
  bool is_number = first < close && close - first <= MAX_DIGITS && text.find_first_not_of("0123456789", first) == close;
  if (!is_number) return name;
  name.index = std::atoi(text.c_str() + open + 1);
  name.base = text.substr(0, open) + text.substr(close + 1);
  name.has_index = true;
  return name;
}

std::string SIGNAL_NAMES::make_unique(const std::string& wanted) {
  std::string base = wanted.empty() ? "n" : wanted;
  if (m_taken.insert(base).second) return base;
  unsigned& next = m_next[base];
  for (;;) {
    std::string name = base + "_" + std::to_string(next++);
    if (m_taken.insert(name).second) return name;
  }
}

namespace {

/// Reserved words of IEEE 1364-2001 and, so that the output is safe to read as SystemVerilog, of IEEE 1800; sorted.
constexpr std::string_view keywords[] = {
    "always",
    "always_comb",
    "always_ff",
    "always_latch",
    "and",
    "assert",
    "assign",
    "assume",
    "automatic",
    "before",
    "begin",
    "bind",
    "bins",
    "binsof",
    "bit",
    "break",
    "buf",
    "bufif0",
    "bufif1",
    "byte",
    "case",
    "casex",
    "casez",
    "cell",
    "chandle",
    "class",
    "clocking",
    "cmos",
    "config",
    "const",
    "constraint",
    "context",
    "continue",
    "cover",
    "covergroup",
    "coverpoint",
    "cross",
    "deassign",
    "default",
    "defparam",
    "design",
    "disable",
    "dist",
    "do",
    "edge",
    "else",
    "end",
    "endcase",
    "endclass",
    "endclocking",
    "endconfig",
    "endfunction",
    "endgenerate",
    "endgroup",
    "endinterface",
    "endmodule",
    "endpackage",
    "endprimitive",
    "endprogram",
    "endproperty",
    "endsequence",
    "endspecify",
    "endtable",
    "endtask",
    "enum",
    "event",
    "expect",
    "export",
    "extends",
    "extern",
    "final",
    "first_match",
    "for",
    "force",
    "foreach",
    "forever",
    "fork",
    "forkjoin",
    "function",
    "generate",
    "genvar",
    "highz0",
    "highz1",
    "if",
    "iff",
    "ifnone",
    "ignore_bins",
    "illegal_bins",
    "import",
    "incdir",
    "include",
    "initial",
    "inout",
    "input",
    "inside",
    "instance",
    "int",
    "integer",
    "interface",
    "intersect",
    "join",
    "join_any",
    "join_none",
    "large",
    "liblist",
    "library",
    "local",
    "localparam",
    "logic",
    "longint",
    "macromodule",
    "matches",
    "medium",
    "modport",
    "module",
    "nand",
    "negedge",
    "new",
    "nmos",
    "nor",
    "noshowcancelled",
    "not",
    "notif0",
    "notif1",
    "null",
    "or",
    "output",
    "package",
    "packed",
    "parameter",
    "pmos",
    "posedge",
    "primitive",
    "priority",
    "program",
    "property",
    "protected",
    "pull0",
    "pull1",
    "pulldown",
    "pullup",
    "pulsestyle_ondetect",
    "pulsestyle_onevent",
    "pure",
    "rand",
    "randc",
    "randcase",
    "randsequence",
    "rcmos",
    "real",
    "realtime",
    "ref",
    "reg",
    "release",
    "repeat",
    "return",
    "rnmos",
    "rpmos",
    "rtran",
    "rtranif0",
    "rtranif1",
    "scalared",
    "sequence",
    "shortint",
    "shortreal",
    "showcancelled",
    "signed",
    "small",
    "solve",
    "specify",
    "specparam",
    "static",
    "string",
    "strong0",
    "strong1",
    "struct",
    "super",
    "supply0",
    "supply1",
    "table",
    "tagged",
    "task",
    "this",
    "throughout",
    "time",
    "timeprecision",
    "timeunit",
    "tran",
    "tranif0",
    "tranif1",
    "tri",
    "tri0",
    "tri1",
    "triand",
    "trior",
    "trireg",
    "type",
    "typedef",
    "union",
    "unique",
    "unsigned",
    "use",
    "uwire",
    "var",
    "vectored",
    "virtual",
    "void",
    "wait",
    "wait_order",
    "wand",
    "weak0",
    "weak1",
    "while",
    "wildcard",
    "wire",
    "with",
    "within",
    "wor",
    "xnor",
    "xor",
};

bool is_letter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; }
bool is_digit(char c) { return c >= '0' && c <= '9'; }

bool is_plain(const std::string& name) {
  if (name.empty() || !is_letter(name[0])) return false;
  if (!std::all_of(name.begin(), name.end(), [](char c) { return is_letter(c) || is_digit(c) || c == '$'; }))
    return false;
  return !std::binary_search(std::begin(keywords), std::end(keywords), std::string_view(name));
}

} // namespace

std::string verilog_identifier(const std::string& name) {
  if (is_plain(name)) return name;
  std::string escaped = "\\";
  for (char c : name) escaped += static_cast<unsigned char>(c) <= ' ' || c == '\x7f' ? '_' : c;
  return escaped + ' ';
}
