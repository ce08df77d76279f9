// How the tree writes itself: indentation, names, and the texts and ranks of tokens. What each class writes is in its
// own file.
#include <algorithm>
#include <cstring>
#include <ostream>

#include "verilog/veri_tokens.h"
#include "verilog/veriexpression.h"
#include "verilog/veritreenode.h"

void VeriTreeNode::PrintLevel(std::ostream& out, unsigned level) {
  static constexpr char blanks[] = "                                                                                ";
  constexpr unsigned max_length = sizeof blanks - 1;
  out.write(blanks, std::min(4 * std::min(level, max_length), max_length));
}

unsigned VeriTreeNode::IsEscapedIdentifier(const char* name) {
  const auto is_letter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; };
  const auto is_legal = [&](char c) { return is_letter(c) || (c >= '0' && c <= '9') || c == '$'; };
  if (!is_letter(*name)) return 1;
  return !std::all_of(name, name + std::strlen(name), is_legal);
}

void VeriTreeNode::PrintName(std::ostream& out, const char* name) {
  if (*name == '\\') { // the flag that keeps the backslash in the name is on
    out << name << ' ';
    return;
  }
  const unsigned word = veri_token_by_text(name);
  const bool is_word = word && veri_dialect_of_token(word) <= Dialect();
  if (IsEscapedIdentifier(name) || is_word)
    out << '\\' << name << ' ';
  else
    out << name;
}

void VeriTreeNode::PrintAttributes(std::ostream& out, unsigned) const {
  if (!_attributes || !_attributes->Size()) return;
  const char* before = "(* ";
  for (auto [name, value] : Entries<const char*, const VeriExpression*>(_attributes)) {
    out << before;
    before = ", ";
    PrintName(out, name);
    if (!value) continue;
    out << " = ";
    value->PrettyPrint(out, 0);
  }
  out << " *) ";
}

// Tokens.

const char* VeriTreeNode::PrintToken(unsigned token) {
  return veri_type_of_token(token) == VERI_TOKEN_VALUE ? nullptr : veri_token_text(token);
}

const char* VeriTreeNode::PrintErrorToken(unsigned token) { return veri_token_text(token); }

unsigned VeriTreeNode::IsLegalToken(unsigned token) { return veri_dialect_of_token(token) <= Dialect(); }

unsigned VeriTreeNode::TokenPriority(unsigned token) {
  switch (token) {
  case VERI_END: return 1;
  case VERI_ENDCASE: return 2;
  case VERI_ENDFUNCTION: return 3;
  case VERI_ENDGENERATE: return 4;
  case VERI_ENDMODULE: return 5;
  case VERI_ENDPRIMITIVE: return 6;
  case VERI_ENDINTERFACE: return 7;
  case VERI_ENDPACKAGE: return 8;
  case VERI_SEMICOLON: return 9;
  case VERI_CPAREN: return 10;
  case VERI_CBRACE: return 11;
  case VERI_CBRACKET: return 12;
  case VERI_COLON: return 13;
  case VERI_QUESTION: return 14;
  case VERI_COMMA: return 15;
  case VERI_DOT: return 16;
  case VERI_AT: return 17;
  case VERI_BANG: return 18;
  case VERI_LOG_AND: return 19;
  case VERI_OPAREN: return 20;
  case VERI_ALWAYS: return 21;
  case VERI_MODULE: return 22;
  case VERI_INPUT: return 40;
  case VERI_ELSE: return 102;
  case VERI_ID: return 201;
  case VERI_NUMBER:
  case VERI_BASED_VALUE: return 202;
  case VERI_SYSTEM_ID: return 205;
  case VERI_OBRACE: return 207;
  case VERI_IF: return 401;
  default: return 9999;
  }
}
