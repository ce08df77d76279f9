// The operators that values know, apart from the tokens of the grammar.
#ifndef KESTRIN_VERILOG_VERIOPER_H
#define KESTRIN_VERILOG_VERIOPER_H

enum veri_oper {
#define VERI_OPER(symbol, text, kind) symbol,
#include "verilog/verioper.def"
  VERI_OPER_COUNT
};

enum class VeriOperClass {
  ARITHMETIC,
  POWER,
  RELATIONAL,
  EQUALITY,
  LOGICAL,
  BITWISE,
  SHIFT,
  CONCATENATION,
  UNARY,
  REDUCTION
};

VeriOperClass veri_oper_class(veri_oper oper);
/// The operator as it stands in the source.
const char* veri_oper_text(veri_oper oper);

#endif
