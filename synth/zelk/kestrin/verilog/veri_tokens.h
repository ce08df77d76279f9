// The tokens of the Verilog scanner: their codes, and what is known of each from the token list.
#ifndef KESTRIN_VERILOG_VERI_TOKENS_H
#define KESTRIN_VERILOG_VERI_TOKENS_H

#include "verilog/verinode.h"

/// Token codes, VERI_<symbol>. They start where the parser's own codes end; 0 is the end of the input.
enum veri_token_code : int {
  VERI_END_OF_INPUT = 0,
  VERI_FIRST_TOKEN = 258,
  VERI_BEFORE_FIRST_TOKEN = VERI_FIRST_TOKEN - 1,
#define VERI_TOKEN(symbol, text, type, dialect) VERI_##symbol,
#include "verilog/veri_tokens.def"
  VERI_AFTER_LAST_TOKEN
};

enum veri_token_type { VERI_TOKEN_NONE = 0, VERI_TOKEN_OPERATOR = 1, VERI_TOKEN_KEYWORD = 2, VERI_TOKEN_VALUE = 3 };

/// The source text of an operator or word, what messages call a token with a value; null when a token has no words, and
/// for what is no token.
const char* veri_token_text(unsigned token);
veri_token_type veri_type_of_token(unsigned token);
/// The dialect that introduced the token; a code that is no token counts as Verilog 95.
veri_dialect veri_dialect_of_token(unsigned token);
/// The operator or word with this text, of any dialect; 0 for none.
unsigned veri_token_by_text(const char* text);

#endif
