// The scanner's tokens, its states in which tokens are read, and the face that the rest of the front end sees.
#include "verilog/veri_lex.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstring>

#include "verilog/veri_pragma.h"
#include "verilog/veri_scanner.h"

namespace {

/// An operator as it stands in memory: it matches where the masked load of four characters is equal.
struct Operator {
  uint32_t mask = 0;
  uint32_t chars = 0;
  uint16_t token = 0;
  uint8_t length = 0;
  uint8_t dialect = 0;
};

constexpr size_t max_operator_length = 4;

constexpr Operator make_operator(std::string_view text, unsigned token, unsigned dialect) {
  static_assert(std::endian::native == std::endian::little);
  Operator made;
  for (size_t at = 0; at < text.size(); at++) {
    made.mask |= 0xFFU << (8 * at);
    made.chars |= static_cast<uint32_t>(static_cast<unsigned char>(text[at])) << (8 * at);
  }
  made.token = static_cast<uint16_t>(token);
  made.length = static_cast<uint8_t>(text.size());
  made.dialect = static_cast<uint8_t>(dialect);
  return made;
}

struct OperatorRow {
  std::string_view text;
  unsigned token;
  veri_token_type type;
  unsigned dialect;
};

constexpr OperatorRow operator_rows[] = {
#define VERI_TOKEN(symbol, text, type, dialect) {text, VERI_##symbol, type, dialect},
#include "verilog/veri_tokens.def"
    {"^~", VERI_XNOR_OP, VERI_TOKEN_OPERATOR, VERI_95},
};

/// The operators, longest first among those that begin with the same character, and where each first character's begin.
struct OperatorTable {
  std::array<Operator, std::size(operator_rows)> operators{};
  std::array<uint16_t, 257> first{};
};

constexpr OperatorTable operator_table = [] {
  OperatorTable table;
  size_t size = 0;
  for (size_t c = 0; c < 256; c++) {
    table.first[c] = static_cast<uint16_t>(size);
    for (size_t length = max_operator_length; length > 0; length--)
      for (const OperatorRow& row : operator_rows)
        if (row.type == VERI_TOKEN_OPERATOR && row.text.size() == length &&
            static_cast<unsigned char>(row.text[0]) == c)
          table.operators[size++] = make_operator(row.text, row.token, row.dialect);
  }
  table.first[256] = static_cast<uint16_t>(size);
  return table;
}();

/// A time unit at this place: its length, or 0.
size_t time_unit_length(const char* at) {
  if (std::strncmp(at, "step", 4) == 0) return 4;
  if (*at && std::strchr("munpf", *at) && at[1] == 's') return 2;
  return *at == 's' ? 1 : 0;
}

std::string without_underscores(const char* from, const char* to) {
  std::string digits;
  for (; from != to; from++)
    if (*from != '_') digits += *from;
  return digits;
}

/// What a level symbol of a table is, the wildcards being one: '0', '1', '*', or 0 for none.
char udp_level_class(char c) {
  if (c == '0' || c == '1') return c;
  return c && std::strchr("xX?bB", c) ? '*' : '\0';
}

/// The letter of an edge in parentheses, from the classes of its two levels.
char udp_edge_letter(char from, char to) {
  if (from == '1' && to == '0') return 'f';
  if (from == '0' && to == '1') return 'r';
  if (to == '0' || from == '1') return to == '1' ? 'p' : 'n';
  if (from == '0' || to == '1') return 'p';
  return '*';
}

} // namespace

VeriScanner::VeriScanner(VeriLexSettings& settings, veri_dialect dialect, VeriMacroTable* macros,
                         VeriScanClient* client)
    : _settings(settings), _macros(*macros), _client(*client), _dialect(dialect),
      _keep_escapes(kestrin_flag("zelk_preserve_escaped_verilog_ids") != 0) {}

bool VeriScanner::Open(const char* file) {
  const FoundFile found = KernelServices::Get().FindFile(file, nullptr, nullptr);
  if (!found.full) return false;
  return _in.OpenFile(found.full.get(), found.reported ? found.reported.get() : file);
}

void VeriScanner::Next(veri_token* token) {
  _is_reported = false;
  Step step = Step::Again;
  while (!_ended && step == Step::Again) step = Read(token);
  if (step != Step::Token) {
    _ended = true;
    token->code = VERI_END_OF_INPUT;
    token->text = nullptr;
    token->length = 0;
  }
  token->linefile = static_cast<unsigned>(_in.linefile);
}

VeriScanner::Step VeriScanner::Read(veri_token* token) {
  switch (_state) {
  case State::Source: return ReadSource(token);
  case State::LongComment: return ReadLongComment();
  case State::LineComment: return ReadLineComment();
  case State::Pragma: return ReadPragma();
  case State::SkipIfdef: return ReadSkippedText();
  case State::MacroText: return ReadMacroText();
  case State::MacroActuals: return ReadMacroActuals();
  case State::UdpTable: return ReadUdpTable(token);
  case State::TranslateOff: return ReadTranslateOff();
  case State::BasedValue: return ReadBasedValue(token);
  case State::EdgeDescriptors: return ReadEdgeDescriptors(token);
  case State::ModuleAnnotation:
  case State::PortAnnotation: return ReadAnnotation();
  case State::IncludeName: return ReadIncludeName();
  }
  return Step::End;
}

VeriScanner::Step VeriScanner::ReadSource(veri_token* token) {
  for (;;) {
    switch (*_in.pos) {
    case ' ':
    case '\t':
    case '\r':
    case '\f':
    case '\v': _in.pos = veri_skip(_in.pos + 1, VERI_CHAR_SPACE); continue;
    case '\n':
      NewLine();
      _in.pos++;
      continue;
    case '\0': return AtEnd() ? Wrap() : TakeIllegal(token);
    case '"': return ScanString(token);
    case '$': return ScanSystemWord(token);
    case '\'': return ScanApostrophe(token);
    case '\\': return ScanEscapedWord(token);
    case '`': return ScanBackquote();
    case '*': return ScanStar(token);
    case '/':
      if (_in.pos[1] == '/' || _in.pos[1] == '*') return ScanComment();
      return ScanOperator(token);
    case ';': _after_semicolon = true; return Take(token, VERI_SEMICOLON, _in.pos + 1);
    default:
      if (veri_is(*_in.pos, VERI_CHAR_LETTER)) return ScanWord(token);
      if (veri_is(*_in.pos, VERI_CHAR_DIGIT)) return ScanNumber(token);
      return ScanOperator(token);
    }
  }
}

VeriScanner::Step VeriScanner::Take(veri_token* token, int code, char* to) {
  token->code = code;
  token->text = nullptr;
  token->length = 0;
  _text = _in.pos;
  _text_length = static_cast<size_t>(to - _in.pos);
  _in.pos = to;
  return Step::Token;
}

VeriScanner::Step VeriScanner::TakeText(veri_token* token, int code, std::string_view text, char* to) {
  const VeriWord* word = Intern(text);
  Take(token, code, to);
  token->text = word->Text();
  token->length = word->length;
  return Step::Token;
}

VeriScanner::Step VeriScanner::TakeIllegal(veri_token* token) {
  Take(token, VERI_ILLEGAL, _in.pos + 1);
  Error("");
  _is_reported = true;
  return Step::Token;
}

VeriScanner::Step VeriScanner::TakeReported(veri_token* token) {
  _is_reported = true;
  return Take(token, VERI_ILLEGAL, _in.pos + 1);
}

VeriScanner::Step VeriScanner::ScanWord(veri_token* token) {
  char* to = veri_skip(_in.pos + 1, VERI_CHAR_WORD);
  const VeriWord* word = Intern({_in.pos, to});
  if (word->keyword && word->dialect <= _dialect) return TakeKeyword(token, word, to);
  if (_settings.upper_case_ids) {
    std::string upper(_in.pos, to);
    for (char& c : upper)
      if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    return TakeText(token, VERI_ID, upper, to);
  }
  Take(token, VERI_ID, to);
  token->text = word->Text();
  token->length = word->length;
  return Step::Token;
}

VeriScanner::Step VeriScanner::TakeKeyword(veri_token* token, const VeriWord* word, char* to) {
  Take(token, word->keyword, to);
  token->text = word->Text();
  token->length = word->length;
  switch (word->keyword) {
  case VERI_BEGIN: _begins++; break;
  case VERI_END:
    if (!_begins && !_is_quiet) {
      ReportSurplusEnd();
      return Step::Again;
    }
    if (_begins) _begins--;
    break;
  case VERI_EDGE: Push(State::EdgeDescriptors); break;
  case VERI_TABLE: Push(State::UdpTable); break;
  default: break;
  }
  return Step::Token;
}

/// The name goes as far as the white space that ends it, whatever its characters.
VeriScanner::Step VeriScanner::ScanEscapedWord(veri_token* token) {
  char* to = _in.pos + 1;
  while (to != _in.end && *to != '\n' && !veri_is(*to, VERI_CHAR_SPACE)) to++;
  if (to == _in.pos + 1) return TakeIllegal(token);
  const char* name = _keep_escapes ? _in.pos : _in.pos + 1;
  return TakeText(token, VERI_ID, {name, static_cast<size_t>(to - name)}, to);
}

VeriScanner::Step VeriScanner::ScanSystemWord(veri_token* token) {
  char* to = veri_skip(_in.pos + 1, VERI_CHAR_WORD);
  if (to == _in.pos + 1) return ScanOperator(token);
  return TakeText(token, VERI_SYSTEM_ID, {_in.pos, to}, to);
}

VeriScanner::Step VeriScanner::ScanNumber(veri_token* token) {
  char* to = veri_skip(_in.pos, VERI_CHAR_DECIMAL);
  bool is_real = false;
  if (*to == '.' && veri_is(to[1], VERI_CHAR_DIGIT)) {
    is_real = true;
    to = veri_skip(to + 1, VERI_CHAR_DECIMAL);
  }
  if (_dialect == VERI_SV)
    if (const size_t unit = time_unit_length(to))
      return TakeText(token, VERI_TIME_LITERAL, {_in.pos, to + unit}, to + unit);
  if (*to == 'e' || *to == 'E') {
    char* exponent = to + 1;
    if (*exponent == '+' || *exponent == '-') exponent++;
    if (veri_is(*exponent, VERI_CHAR_DIGIT)) {
      is_real = true;
      to = veri_skip(exponent, VERI_CHAR_DECIMAL);
    }
  }
  if (is_real) {
    token->real = Strings::atof(without_underscores(_in.pos, to).c_str());
    if (!std::isfinite(token->real)) veri_warning(_in.linefile, "constant value overflow");
    return TakeText(token, VERI_REAL_NUMBER, {_in.pos, to}, to);
  }
  uint64_t value = 0;
  bool overflows = false;
  for (const char* at = _in.pos; at != to; at++) {
    if (*at == '_') continue;
    value = 10 * value + static_cast<uint64_t>(*at - '0');
    overflows |= value > INT32_MAX;
    value &= UINT32_MAX;
  }
  if (overflows) veri_warning(_in.linefile, "constant value overflow");
  Take(token, VERI_NUMBER, to);
  token->number = static_cast<int>(static_cast<uint32_t>(value));
  return Step::Token;
}

VeriScanner::Step VeriScanner::ScanString(veri_token* token) {
  _string_value.clear();
  char* from = _in.pos + 1;
  char* at = from;
  for (;;) {
    while (*at != '"' && *at != '\\' && *at != '\n' && *at != '\0') at++;
    if (*at == '"' && _string_value.empty()) return TakeText(token, VERI_STRING_LITERAL, {from, at}, at + 1);
    if (*at == '\0' && at != _in.end) {
      at++;
      continue;
    }
    _string_value.append(from, at);
    if (*at == '"') return TakeText(token, VERI_STRING_LITERAL, _string_value, at + 1);
    if (*at != '\\' || at + 1 == _in.end || at[1] == '\n') break;
    switch (at[1]) {
    case 'r': _string_value += '\r'; break;
    case 't': _string_value += '\t'; break;
    case 'n': _string_value += '\n'; break;
    default: _string_value += at[1];
    }
    from = at += 2;
  }
  // The line of a newline inside a string is not counted.
  while (at != _in.end && *at != '\n') at++;
  TakeText(token, VERI_STRING_LITERAL, "", at == _in.end ? at : at + 1);
  Error(" end of line inside a string");
  return Step::Token;
}

VeriScanner::Step VeriScanner::ScanApostrophe(veri_token* token) {
  const char next = _in.pos[1];
  if (next && std::strchr("01xXzZ", next)) return TakeText(token, VERI_UNSIZED_LITERAL, {_in.pos, 2}, _in.pos + 2);
  char* base = _in.pos + (next == 's' || next == 'S' ? 2 : 1);
  if (!*base || !std::strchr("dDbBoOhH", *base)) return ScanOperator(token);
  TakeText(token, VERI_BASE, {_in.pos, base + 1}, base + 1);
  Push(State::BasedValue);
  return Step::Token;
}

/// The digits behind a base; white space may stand in between, anything else means that there are none.
VeriScanner::Step VeriScanner::ReadBasedValue(veri_token* token) {
  _in.pos = veri_skip(_in.pos, VERI_CHAR_SPACE);
  if (*_in.pos == '\n') {
    NewLine();
    _in.pos++;
    return Step::Again;
  }
  if (*_in.pos == '\0' && AtEnd()) return Wrap();
  if (*_in.pos == '`') return ScanBackquote();
  Pop();
  char* to = veri_skip(_in.pos, VERI_CHAR_BASED_DIGIT);
  if (to == _in.pos) return Step::Again;
  return TakeText(token, VERI_BASED_VALUE, {_in.pos, to}, to);
}

VeriScanner::Step VeriScanner::ScanStar(veri_token* token) {
  if (_in.pos[1] == '/') {
    if (_in.pos[2] == '/') return Take(token, VERI_STAR, _in.pos + 1);
    _in.pos += 2;
    if (!_read_comments) veri_error(_in.linefile, "*/ outside comment");
    return Step::Again;
  }
  return ScanOperator(token);
}

VeriScanner::Step VeriScanner::ScanOperator(veri_token* token) {
  uint32_t chars;
  std::memcpy(&chars, _in.pos, sizeof chars);
  const auto c = static_cast<unsigned char>(*_in.pos);
  const Operator* candidate = &operator_table.operators[operator_table.first[c]];
  const Operator* last = &operator_table.operators[operator_table.first[c + 1U]];
  while (candidate != last && ((chars & candidate->mask) != candidate->chars || candidate->dialect > _dialect))
    candidate++;
  if (candidate == last) return TakeIllegal(token);
  Take(token, candidate->token, _in.pos + candidate->length);
  if (candidate->token == VERI_OPAREN) {
    _parentheses++;
  } else if (candidate->token == VERI_CPAREN) {
    if (_parentheses) {
      _parentheses--;
    } else if (!_is_quiet) {
      Error("; mismatched closing parenthesis ");
      _is_reported = true;
    }
  }
  return Step::Token;
}

/// `edge` may be followed by a list of transitions in brackets, which is one token between the brackets.
VeriScanner::Step VeriScanner::ReadEdgeDescriptors(veri_token* token) {
  _in.pos = veri_skip(_in.pos, VERI_CHAR_SPACE);
  if (*_in.pos == '\n') {
    NewLine();
    _in.pos++;
    return Step::Again;
  }
  if (*_in.pos == '\0' && AtEnd()) return Wrap();
  if (*_in.pos == '/' && (_in.pos[1] == '/' || _in.pos[1] == '*')) return ScanComment();
  if (*_in.pos == '`') return ScanBackquote();
  if (*_in.pos == '[') return Take(token, VERI_OBRACKET, _in.pos + 1);
  Pop();
  std::string list;
  char* to = _in.pos;
  unsigned newlines = 0;
  const auto is_level = [](char c) { return c && std::strchr("01xXzZ", c); };
  for (char* at = to;; at++) {
    if (is_level(at[0]) && is_level(at[1])) {
      list.append(at, 2);
      to = ++at + 1;
      for (; newlines; newlines--) NewLine();
    } else if (*at == '\n') {
      newlines++;
    } else if (*at != ',' && !veri_is(*at, VERI_CHAR_SPACE)) {
      break;
    }
  }
  if (list.empty()) return Step::Again;
  return TakeText(token, VERI_EDGE_DESCRIPTOR, list, to);
}

VeriScanner::Step VeriScanner::ReadUdpTable(veri_token* token) {
  for (;;) {
    const char c = *_in.pos;
    switch (c) {
    case ' ':
    case '\t':
    case '\r':
    case '\f':
    case '\v': _in.pos = veri_skip(_in.pos + 1, VERI_CHAR_SPACE); continue;
    case '\n':
      NewLine();
      _in.pos++;
      continue;
    case ':': return Take(token, VERI_COLON, _in.pos + 1);
    case ';': return Take(token, VERI_SEMICOLON, _in.pos + 1);
    case '(': return ScanUdpEdge(token);
    case '`': return ScanBackquote();
    default: break;
    }
    if (c == '\0' && AtEnd()) return Wrap();
    if (c == '/' && (_in.pos[1] == '/' || _in.pos[1] == '*')) return ScanComment();
    if (c == '-' || udp_level_class(c)) return TakeText(token, VERI_UDP_VALUE, {_in.pos, 1}, _in.pos + 1);
    if (c == '*') return TakeText(token, VERI_UDP_WILDCARD_EDGE, {_in.pos, 1}, _in.pos + 1);
    if (c && std::strchr("rRfFpPnN", c)) return TakeText(token, VERI_UDP_EDGE, {_in.pos, 1}, _in.pos + 1);
    char* to = veri_skip(_in.pos, VERI_CHAR_WORD);
    const VeriWord* word = Intern({_in.pos, to});
    if (word->keyword == VERI_ENDTABLE) {
      Pop();
      return TakeKeyword(token, word, to);
    }
    const char text[] = {c, '\0'};
    veri_error(_in.linefile, "illegal character %s in UDP table", text);
    return TakeReported(token);
  }
}

/// A pair of levels in parentheses, as the letter that stands for it.
VeriScanner::Step VeriScanner::ScanUdpEdge(veri_token* token) {
  char* from = veri_skip(_in.pos + 1, VERI_CHAR_SPACE);
  const char from_class = udp_level_class(*from);
  char* to = from_class ? veri_skip(from + 1, VERI_CHAR_SPACE) : from;
  const char to_class = from_class ? udp_level_class(*to) : '\0';
  char* close = to_class ? veri_skip(to + 1, VERI_CHAR_SPACE) : to;
  if (*close != ')') {
    veri_error(_in.linefile, "illegal character %s in UDP table", "(");
    return TakeReported(token);
  }
  const char letter = udp_edge_letter(from_class, to_class);
  return TakeText(token, letter == '*' ? VERI_UDP_WILDCARD_EDGE : VERI_UDP_EDGE, {&letter, 1}, close + 1);
}

void VeriScanner::ReportEnd() {
  if (_levels.size() > 1) veri_error(_in.linefile, "unexpected EOF : missing `endif");
}

void VeriScanner::ReportSurplusEnd() { Error("; \"end\" without \"begin\" "); }

void VeriScanner::Error(const char* text) {
  if (_in.IsEmpty()) return veri_error(_in.linefile, "syntax near EOF %s", text);
  std::string_view near(_text, _text_length);
  if (near.ends_with('\n')) near.remove_suffix(1);
  const std::string place = "\"" + std::string(near) + "\"" + text;
  veri_error(_in.linefile, "syntax error near %s", place.c_str());
  if (_dialect != VERI_95 && near == "(*")
    veri_error(_in.linefile, "previous syntax error may be due to incorrect attribute placement");
}

// The face of the scanner.

namespace {

std::unique_ptr<VeriLexSettings> kept_settings;
std::unique_ptr<VeriScanner> scanner;

VeriLexSettings& settings() {
  if (!kept_settings) kept_settings = std::make_unique<VeriLexSettings>();
  return *kept_settings;
}

} // namespace

unsigned VeriLex::StartFlex(const char* file, veri_dialect dialect, VeriMacroTable* macros, VeriScanClient* client) {
  static VeriScanClient nobody;
  EndFlex();
  if (!settings().msg_directives) settings().msg_directives = KernelServices::Get().NewMessageDirectives();
  scanner = std::make_unique<VeriScanner>(settings(), dialect, macros, client ? client : &nobody);
  if (scanner->Open(file)) return 1;
  scanner.reset();
  return 0;
}

void VeriLex::NextToken(veri_token* token) {
  if (scanner)
    scanner->Next(token);
  else
    *token = veri_token();
}

void VeriLex::PushBack(const char* text) {
  if (scanner) scanner->PushBack(text);
}

void VeriLex::EndFlex() {
  if (!scanner) return;
  scanner->ReportEnd();
  scanner.reset();
  VeriAnnotations::SetKey(nullptr);
  settings().directives.timescale.reset();
}

const char* VeriLex::Intern(const char* text) { return settings().words.Intern(text, std::strlen(text))->Text(); }

void VeriLex::FreeStaticMemory() {
  scanner.reset();
  kept_settings.reset();
  VeriPragmas::Take();
  VeriAnnotations::Take();
  VeriAnnotations::SetKey(nullptr);
  veri_free_message_table();
}

void VeriLex::Error(const char* text) {
  if (scanner && !scanner->IsReported()) scanner->Error(text);
}

void VeriLex::SetQuiet(bool is_quiet) {
  if (scanner) scanner->SetQuiet(is_quiet);
}

void VeriLex::ReportSurplusEnd() {
  if (scanner) scanner->ReportSurplusEnd();
}

void VeriLex::SetOpenBlocks(unsigned count) {
  if (scanner) scanner->SetOpenBlocks(count);
}

linefile_type VeriLex::GetLineFile() { return scanner ? scanner->Linefile() : 0; }

veri_dialect VeriLex::Dialect() { return scanner ? scanner->Dialect() : VERI_2K; }

unsigned VeriLex::GetTranslateOffNesting() { return scanner ? scanner->TranslateOffNesting() : 0; }

void VeriLex::ClearSemicolonFlag() {
  if (scanner) scanner->ClearSemicolonFlag();
}

unsigned VeriLex::GetCelldefine() { return settings().directives.celldefine; }
unsigned VeriLex::GetDefaultNettype() { return settings().directives.default_nettype; }
unsigned VeriLex::GetUnconnectedDrive() { return settings().directives.unconnected_drive; }
const char* VeriLex::GetTimeScale() { return settings().directives.timescale.get(); }

void VeriLex::SetIgnoreTranslateOff(unsigned on) { settings().ignore_translate_off = on; }
unsigned VeriLex::IgnoreTranslateOff() { return settings().ignore_translate_off; }
void VeriLex::SetUpperCaseIds(unsigned on) { settings().upper_case_ids = on; }

void VeriLex::RegisterMsgDirectives(MessageDirectives* directives) { settings().msg_directives.reset(directives); }
MessageDirectives* VeriLex::MsgDirectives() { return settings().msg_directives.get(); }
