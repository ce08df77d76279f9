// Any text through the scanner: the first byte chooses the dialect and how the parser behaves, the rest is the source,
// which may include itself as "me". Nothing may crash, hang or overrun, and the scanner must come to the end of the
// input.
#include "fuzz_input.h"
#include "verilog/veri_lex.h"
#include "verilog/veri_number.h"
#include "verilog/veri_pragma.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const FUZZ_FILE file(".v");
  static FUZZ_SERVICES services(file);
  if (!size) return 0;
  file.write(data + 1, size - 1);
  const auto dialect = static_cast<veri_dialect>(1 + data[0] % 3);
  const bool takes_pragmas = data[0] & 0x80;

  VeriMacroTable macros;
  VeriLex::StartFlex(file.path(), dialect, &macros, nullptr);
  veri_token token;
  std::string size_and_base;
  do {
    VeriLex::NextToken(&token);
    if (token.code == VERI_BASE) size_and_base = "12" + std::string(token.text, token.length);
    if (token.code == VERI_BASED_VALUE) veri_read_literal((size_and_base + token.text).c_str(), token.linefile);
    if (token.code == VERI_ILLEGAL) VeriLex::Error("");
    if (token.code == VERI_SEMICOLON && takes_pragmas) {
      VeriLex::ClearSemicolonFlag();
      VeriPragmas::Take();
    }
  } while (token.code != VERI_END_OF_INPUT);
  VeriLex::Error("");
  VeriLex::EndFlex();
  Message::ClearErrorCount();
  VeriLex::FreeStaticMemory();
  return 0;
}
