// Where reading goes on behind a syntax error. The grammar drops the construct that the error spoils, as far as it was
// read; this decides how far the source is skipped, and which words are missing to end what is still open. A mistake is
// to be told once: a begin with its end, a case with its endcase and the else of a skipped if are skipped as a whole, a
// word that begins an item ends the statements in front of it, and a misspelt word counts as what it was meant to be.
#ifndef KESTRIN_VERILOG_VERI_RECOVERY_H
#define KESTRIN_VERILOG_VERI_RECOVERY_H

#include <vector>

#include "verilog/veri_lex.h"

/// What the parser has open is told by tokens, from the outside to the inside: a construct whose head is read is the
/// word that begins it, an unfinished part is its tokens. Two codes stand for what is no token.
enum veri_open_part : int {
  VERI_OPEN_OTHER = -1, // an expression, a name, a declaration
  VERI_OPEN_LIST = -2,  // items or statements, behind which others may follow
  VERI_OPEN_BODY = -3,  // likewise, where declarations may still stand
};

/// A token with its place among others.
struct VeriReadToken {
  veri_token token;
  bool begins_line = false;
};

/// A syntax error as the parser met it.
struct VeriBreak {
  std::vector<int> open;
  bool wants_semicolon = false; // which would have been legal
  bool is_second = false;       // the token is the one at which reading went on after the last error
  VeriReadToken token;          // the one that was not legal
  const char* before = nullptr; // the text of the identifier in front of it; null for anything else
  const char* called = nullptr; // of the one in front of the last parentheses
};

/// Where the rest of the source comes from.
class VeriTokenSource {
public:
  virtual ~VeriTokenSource() = default;
  virtual VeriReadToken Next() = 0;
};

struct VeriResumption {
  bool is_at_end = false;          // of the input: nothing can follow
  bool is_declaration = false;     // what is dropped stands where declarations may follow
  std::vector<int> closing;        // words that are missing in front of the next token, in order
  const char* type_name = nullptr; // of a type definition that was skipped
  VeriReadToken next;
  unsigned begins = 0; // blocks that are open in front of the next token
};

/// False for a word that ends another construct than the innermost one.
bool veri_can_close(int code, const std::vector<int>& open);
/// `kept`: how many of the open parts the parser kept.
VeriResumption veri_resume(const VeriBreak& at, size_t kept, VeriTokenSource& source);

#endif
