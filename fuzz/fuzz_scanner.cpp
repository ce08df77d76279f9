// Any text through the scanner: the first byte chooses the dialect and how the parser behaves, the rest is the source,
// which may include itself. Nothing may crash, hang or overrun, and the scanner must come to the end of the input.
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>

#include <unistd.h>

#include "util/message.h"
#include "verilog/veri_lex.h"
#include "verilog/veri_number.h"
#include "verilog/veri_pragma.h"

namespace {

std::string source_path() {
  // In memory where there is such a folder.
  const char* folder = std::filesystem::is_directory("/dev/shm") ? "/dev/shm" : ".";
  return std::string(folder) + "/fuzz_scanner_" + std::to_string(::getpid()) + ".v";
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const std::string path = source_path();
  if (!size) return 0;
  std::ofstream(path, std::ios::binary).write(reinterpret_cast<const char*>(data + 1), static_cast<long>(size - 1));
  const auto dialect = static_cast<veri_dialect>(1 + data[0] % 3);
  const bool takes_pragmas = data[0] & 0x80;

  Message::SetConsoleOutput(0);
  VeriMacroTable macros;
  VeriLex::StartFlex(path.c_str(), dialect, &macros, nullptr);
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
  std::filesystem::remove(path);
  return 0;
}
