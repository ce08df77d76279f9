// Running the scanner over a text and writing down what comes out.
#include "verilog/scan.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <string_view>
#include <utility>

namespace {

std::vector<std::string> messages;

/// What tells how far the run is, never what is wrong.
bool is_progress(const char* id) {
  static constexpr std::string_view ids[] = {"VERI-1018", "VERI-1108", "VERI-1109"};
  return id && std::find(std::begin(ids), std::end(ids), id) != std::end(ids);
}

void record(msg_type_t type, const char* id, linefile_type linefile, const char* format, va_list args) {
  if (is_progress(id)) return;
  char text[4096];
  std::vsnprintf(text, sizeof text, format, args);
  const char* severity = type == MSG_ERROR ? "error" : type == MSG_WARNING ? "warning" : "info";
  messages.push_back(std::to_string(LineFile::GetLineNo(linefile)) + ": " + severity + ": " + text +
                     (id ? "" : " (no id)"));
}

std::string word(const veri_token& token) {
  const std::string text(token.text ? token.text : "", token.length);
  switch (token.code) {
  case VERI_ID: return "ID:" + text;
  case VERI_NUMBER: return "NUM:" + std::to_string(token.number);
  case VERI_BASE: return "BASE:" + text;
  case VERI_BASED_VALUE: return "VALUE:" + text;
  case VERI_UNSIZED_LITERAL: return "FILL:" + text;
  case VERI_REAL_NUMBER: return "REAL:" + text;
  case VERI_STRING_LITERAL: return "\"" + text + "\"";
  case VERI_SYSTEM_ID: return "SYS:" + text;
  case VERI_TIME_LITERAL: return "TIME:" + text;
  case VERI_EDGE_DESCRIPTOR: return "EDGES:" + text;
  case VERI_UDP_EDGE: return "EDGE:" + text;
  case VERI_UDP_WILDCARD_EDGE: return "ANY:" + text;
  case VERI_UDP_VALUE: return "LEVEL:" + text;
  case VERI_ILLEGAL: return "ILLEGAL";
  default: return veri_token_text(static_cast<unsigned>(token.code));
  }
}

} // namespace

MessageLog::MessageLog() {
  messages.clear();
  Message::ClearErrorCount();
  Message::SetConsoleOutput(0);
  Message::RegisterCallBackMsg(record);
}

MessageLog::~MessageLog() {
  Message::RegisterCallBackMsg(nullptr);
  Message::SetConsoleOutput(1);
  Message::ClearErrorCount();
}

std::vector<std::string> MessageLog::Take() {
  Message::ClearErrorCount();
  return std::exchange(messages, {});
}

std::string Scan::Tokens(const std::string& text) { return Read(text, /*with_lines=*/false); }

std::string Scan::TokensAndLines(const std::string& text) { return Read(text, /*with_lines=*/true); }

std::string Scan::Read(const std::string& text, bool with_lines) {
  const std::string path = AddFile("main.v", text);
  if (!VeriLex::StartFlex(path.c_str(), _dialect, &macros, &client)) return "(no file)";
  std::string tokens;
  veri_token token;
  for (VeriLex::NextToken(&token); token.code != VERI_END_OF_INPUT; VeriLex::NextToken(&token)) {
    if (!tokens.empty()) tokens += ' ';
    if (with_lines) tokens += std::to_string(LineFile::GetLineNo(token.linefile)) + ":";
    tokens += word(token);
    _last = token;
  }
  VeriLex::EndFlex();
  return tokens;
}
