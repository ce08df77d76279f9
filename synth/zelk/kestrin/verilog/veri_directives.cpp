// The preprocessor's half of the scanner: compiler directives, conditional text, includes, and macros from their
// definition to the push-back of their expansion.
#include <algorithm>
#include <cstring>

#include "verilog/veri_scanner.h"

namespace {

/// Conditionals may nest this deep before it is an error.
constexpr unsigned max_if_depth = 50;
/// Formals and actuals of a macro.
constexpr size_t max_macro_arguments = 128;
/// Macros that paste their own name or double at each level escape the test for recursion. They end at this depth, and
/// when expansions come to this many characters beside what the size of the source allows for.
constexpr size_t max_expansion_depth = 1000;
constexpr size_t free_expansion_work = size_t{1} << 25;
constexpr size_t expansion_work_per_byte = 256;
constexpr size_t work_of_a_use = 16;

/// The argument of a directive: white space, then the place where the argument begins; null without white space.
char* argument_of(char* at) { return veri_is(*at, VERI_CHAR_SPACE) ? veri_skip(at, VERI_CHAR_SPACE) : nullptr; }

/// Behind a word, null when none begins here.
char* skip_word(char* at) { return veri_is(*at, VERI_CHAR_LETTER) ? veri_skip(at, VERI_CHAR_WORD) : nullptr; }

/// Behind a number and a unit of time, null when there are none.
char* skip_time(char* at) {
  char* to = veri_skip(at, VERI_CHAR_DIGIT);
  if (to == at) return nullptr;
  to = veri_skip(to, VERI_CHAR_SPACE);
  if (*to && std::strchr("munpf", *to) && to[1] == 's') return to + 2;
  return *to == 's' ? to + 1 : nullptr;
}

std::string_view without_leading_space(std::string_view text) {
  const size_t start = text.find_first_not_of(" \t\r\f\v\n");
  return start == std::string_view::npos ? std::string_view() : text.substr(start);
}

/// The parts of a list of formals. False when there are too many.
bool split_formals(std::string_view list, std::vector<std::string_view>* formals) {
  for (;;) {
    const size_t comma = list.find(',');
    formals->push_back(list.substr(0, comma));
    if (comma == std::string_view::npos) return true;
    if (formals->size() + 1 == max_macro_arguments) return false;
    list.remove_prefix(comma + 1);
  }
}

/// The parts of a list of actuals: commas inside quotes, parentheses and braces divide nothing.
bool split_actuals(std::string_view list, std::vector<std::string_view>* actuals) {
  unsigned depth = 0;
  bool in_string = false;
  size_t start = 0;
  for (size_t at = 0; at <= list.size(); at++) {
    const char c = at < list.size() ? list[at] : ',';
    if (at < list.size()) {
      if (in_string && c == '\\') at++;
      if (c == '"') in_string = !in_string;
      if (in_string) continue;
      if (c == '(' || c == '{') depth++;
      if ((c == ')' || c == '}') && depth) depth--;
      if (c != ',' || depth) continue;
    }
    actuals->push_back(without_leading_space(list.substr(start, at - start)));
    start = at + 1;
    if (at < list.size() && actuals->size() + 1 == max_macro_arguments) return false;
  }
  return true;
}

/// The most that a body grows when its formals are replaced: a formal takes its own length and a character between two.
size_t bound_on_growth(std::string_view body, const std::vector<std::string_view>& formals,
                       const std::vector<std::string_view>& actuals) {
  size_t growth = 0;
  for (size_t i = 0; i < formals.size() && i < actuals.size(); i++)
    if (actuals[i].size() > formals[i].size())
      growth = std::max(growth, (actuals[i].size() - formals[i].size()) * (body.size() + 1) / (formals[i].size() + 1));
  return growth;
}

/// A body with its formals replaced, inside of strings too. SystemVerilog has backquotes that quote and paste.
std::string substitute(std::string_view body, const std::vector<std::string_view>& formals,
                       const std::vector<std::string_view>& actuals, bool is_system_verilog) {
  std::string text;
  text.reserve(body.size() + bound_on_growth(body, formals, actuals));
  for (size_t at = 0; at < body.size();) {
    if (is_system_verilog && body[at] == '`' && at + 1 < body.size()) {
      if (body[at + 1] == '`') {
        at += 2;
        continue;
      }
      if (body[at + 1] == '"' || body[at + 1] == '\\') {
        text += body[at + 1];
        at += 2;
        continue;
      }
    }
    size_t to = at;
    while (to < body.size() && veri_is(body[to], VERI_CHAR_WORD)) to++;
    if (to == at) {
      text += body[at++];
      continue;
    }
    const std::string_view word = body.substr(at, to - at);
    const auto formal = std::find(formals.begin(), formals.end(), word);
    text += formal == formals.end() ? word : actuals[static_cast<size_t>(formal - formals.begin())];
    at = to;
  }
  return text;
}

} // namespace

// A directive with what it needs behind it, else the use of a macro.
VeriScanner::Step VeriScanner::ScanBackquote() {
  char* use = _in.pos;
  char* behind = skip_word(use + 1);
  if (!behind) {
    _in.pos++;
    veri_error(_in.linefile, "missing compiler directive");
    return Step::Again;
  }
  const VeriWord* name = Intern({use + 1, behind});
  _in.pos = behind;
  if (!name->directive || !ReadDirective(name->directive, behind)) UseMacro(name, use);
  return Step::Again;
}

// The position is behind the directive's name; what reads an argument moves it on. False when the argument is not
// there.
bool VeriScanner::ReadDirective(veri_directive directive, char* behind) {
  VeriDirectiveState& state = _settings.directives;
  char* argument = argument_of(behind);
  switch (directive) {
  case VERI_NO_DIRECTIVE: return false;
  case VERI_DIRECTIVE_ifdef: return argument && ReadConditional(Conditional::Defined, argument);
  case VERI_DIRECTIVE_ifndef: return argument && ReadConditional(Conditional::Undefined, argument);
  case VERI_DIRECTIVE_elsif: return argument && ReadElsif(argument);
  case VERI_DIRECTIVE_else: ReadElse(); return true;
  case VERI_DIRECTIVE_endif: ReadEndif(); return true;
  case VERI_DIRECTIVE_define: return argument && ReadDefine(argument);
  case VERI_DIRECTIVE_undef: return argument && ReadUndef(argument);
  case VERI_DIRECTIVE_include: Push(State::IncludeName); return true;
  case VERI_DIRECTIVE_line: return argument && ReadLine(argument);
  case VERI_DIRECTIVE_timescale: return argument && ReadTimescale(argument);
  case VERI_DIRECTIVE_default_nettype: return argument && ReadDefaultNettype(argument);
  case VERI_DIRECTIVE_unconnected_drive: return argument && ReadUnconnectedDrive(argument);
  case VERI_DIRECTIVE_default_decay_time: return argument && ReadIgnoredArgument(argument, /*may_be_infinite=*/true);
  case VERI_DIRECTIVE_default_trireg_strength:
    return argument && ReadIgnoredArgument(argument, /*may_be_infinite=*/false);
  case VERI_DIRECTIVE_nounconnected_drive: state.unconnected_drive = 0; return true;
  case VERI_DIRECTIVE_celldefine: state.celldefine = 1; return true;
  case VERI_DIRECTIVE_endcelldefine: state.celldefine = 0; return true;
  case VERI_DIRECTIVE_resetall: state = VeriDirectiveState(); return true;
  case VERI_DIRECTIVE_delay_mode_distributed:
  case VERI_DIRECTIVE_delay_mode_path:
  case VERI_DIRECTIVE_delay_mode_unit:
  case VERI_DIRECTIVE_delay_mode_zero: return true;
  }
  return false;
}

bool VeriScanner::IsDefined(const VeriWord* name) {
  const VeriMacroDef* macro = _macros.Find(name->Text());
  if (macro) RecordUse(*macro);
  return macro != nullptr;
}

// What shapes a design unit is remembered, and the file that defines it.
void VeriScanner::RecordUse(const VeriMacroDef& macro) {
  const auto text = [](const char* string) { return string ? string : ""; };
  _client.AddToMacroSeq(macro.Name(), text(macro.Args()), text(macro.Value()), macro.Linefile());
  if (const char* file = LineFile::GetFileName(macro.Linefile())) _client.AddDependentFile(file);
}

bool VeriScanner::ReadConditional(Conditional wanted, char* argument) {
  char* to = skip_word(argument);
  if (!to) return false;
  _in.pos = to;
  const bool is_defined = IsDefined(Intern({argument, to}));
  if (is_defined != (wanted == Conditional::Defined)) {
    _levels.push_back(branch_skipped);
    Push(State::SkipIfdef);
    return true;
  }
  _levels.push_back(branch_taken);
  if (_levels.size() - 1 > max_if_depth)
    veri_error(_in.linefile, "'ifdef/'ifndef block exceeds nesting limit of %d", static_cast<int>(max_if_depth));
  return true;
}

// The branch that was being read was taken, so all that follow are skipped.
bool VeriScanner::ReadElsif(char* argument) {
  char* to = skip_word(argument);
  if (!to) return false;
  _in.pos = to;
  if (_levels.size() == 1)
    veri_error(_in.linefile, "`elsif without `if");
  else
    LeaveBranch();
  return true;
}

void VeriScanner::ReadElse() {
  if (_levels.size() == 1) return veri_error(_in.linefile, "`else without `if");
  LeaveBranch();
}

void VeriScanner::LeaveBranch() {
  _levels.back() |= branch_skipped;
  Push(State::SkipIfdef);
}

void VeriScanner::ReadEndif() {
  if (_levels.size() == 1) return veri_error(_in.linefile, "`endif without `if");
  _levels.pop_back();
}

// Only conditional directives and comments count in a branch that is skipped.
VeriScanner::Step VeriScanner::ReadSkippedText() {
  for (;;) {
    switch (*_in.pos) {
    case '\n':
      NewLine();
      _in.pos++;
      break;
    case '`':
      SkipConditionalDirective();
      if (_state != State::SkipIfdef) return Step::Again;
      break;
    case '/':
      if (_in.pos[1] == '/' || _in.pos[1] == '*') return SkipComment();
      _in.pos++;
      break;
    case '\0':
      if (AtEnd()) return Wrap();
      _in.pos++;
      break;
    default: _in.pos++;
    }
  }
}

// A conditional that begins in skipped text is skipped with all its branches: it counts as taken from the start.
void VeriScanner::SkipConditionalDirective() {
  char* behind = skip_word(_in.pos + 1);
  if (!behind) {
    _in.pos++;
    return;
  }
  const veri_directive directive = Intern({_in.pos + 1, behind})->directive;
  char* argument = argument_of(behind);
  char* to = argument ? skip_word(argument) : nullptr;
  _in.pos = behind;
  uint8_t& level = _levels.back();
  switch (directive) {
  case VERI_DIRECTIVE_ifdef:
  case VERI_DIRECTIVE_ifndef:
    if (!to) return;
    _in.pos = to;
    _levels.push_back(branch_taken | branch_skipped);
    return;
  case VERI_DIRECTIVE_elsif:
    if (!to) return;
    _in.pos = to;
    if (!(level & branch_taken) && IsDefined(Intern({argument, to}))) EnterBranch();
    return;
  case VERI_DIRECTIVE_else:
    if (!(level & branch_taken)) EnterBranch();
    return;
  case VERI_DIRECTIVE_endif:
    _levels.pop_back();
    if (!(_levels.back() & branch_skipped)) Pop();
    return;
  default: return;
  }
}

void VeriScanner::EnterBranch() {
  _levels.back() = branch_taken;
  Pop();
}

// `define NAME, directly followed by its formals, and the body as far as the line goes.
bool VeriScanner::ReadDefine(char* argument) {
  char* name_end = skip_word(argument);
  if (!name_end) return false;
  _define_name.assign(argument, name_end);
  _define_args.reset();
  _define_linefile = _in.linefile;
  _define_refused = _macros.IsPredefinedMacro(_define_name.c_str());
  _macro_text.clear();
  _macro_piece.clear();
  _is_first_piece = true;
  _in.pos = name_end;
  if (_define_refused) veri_error(_in.linefile, "cannot re-define predefined macro %s", _define_name.c_str());
  Push(State::MacroText);
  if (*name_end != '(') return true;
  char* close = std::find(name_end, _in.end, ')');
  if (close == _in.end) return true;
  std::string formals(name_end, close + 1);
  for (char& c : formals) {
    if (c == '\n') NewLine();
    if (c == '\\' && (&c)[1] == '\n') c = ' '; // a list may be continued like the body
  }
  if (!_define_refused) _define_args = veri_check_formal_args(formals.c_str(), _define_linefile);
  if (_define_args)
    if (const std::string repeated = veri_repeated_formal(_define_args.get()); !repeated.empty())
      veri_error(_define_linefile, "formal argument %s of macro %s is repeated", repeated.c_str(),
                 _define_name.c_str());
  _in.pos = close + 1;
  return true;
}

// One line of a macro's body; a backslash at its end continues the body on the next line.
VeriScanner::Step VeriScanner::ReadMacroText() {
  const auto rest = static_cast<size_t>(_in.end - _in.pos);
  char* newline = static_cast<char*>(std::memchr(_in.pos, '\n', rest));
  if (!newline) {
    _macro_piece.append(_in.pos, rest);
    _in.pos = _in.end;
    if (_in.Pop()) return Step::Again;
    if (!_define_refused) _macros.DefineMacro(_define_name.c_str(), "", _define_args.get(), _define_linefile);
    return Step::End;
  }
  _macro_piece.append(_in.pos, newline + 1);
  _in.pos = newline + 1;
  NewLine();
  const bool is_continued = _macro_piece.ends_with("\\\n") || _macro_piece.ends_with("\\\r\n");
  AppendMacroText(_macro_piece);
  _macro_piece.clear();
  if (is_continued) return Step::Again;
  if (!_define_refused)
    _macros.DefineMacro(_define_name.c_str(), _macro_text.c_str(), _define_args.get(), _define_linefile);
  Pop();
  return Step::Again;
}

// The body ends at a line comment, wherever that stands, and at the backslash or newline that ends the line.
void VeriScanner::AppendMacroText(std::string_view piece) {
  if (_is_first_piece) piece.remove_prefix(std::min(piece.find_first_not_of(" \t\r\f\v"), piece.size()));
  _is_first_piece = false;
  size_t from = _macro_text.empty() ? 0 : _macro_text.size() - 1;
  _macro_text += piece;
  for (; from < _macro_text.size(); from++) {
    const char c = _macro_text[from];
    const char next = from + 1 < _macro_text.size() ? _macro_text[from + 1] : '\0';
    if ((c == '/' && next == '/') || (c == '\\' && (next == '\n' || next == '\r')) || (c == '\n' && !next)) break;
  }
  _macro_text.resize(std::min(from, _macro_text.size()));
}

bool VeriScanner::ReadUndef(char* argument) {
  char* to = skip_word(argument);
  if (!to) return false;
  _in.pos = to;
  _macros.UndefineMacro(std::string(argument, to).c_str(), _in.linefile);
  return true;
}

// `line NUMBER "FILE" LEVEL: the newline behind it makes the line right.
bool VeriScanner::ReadLine(char* argument) {
  char* number_end = veri_skip(argument, VERI_CHAR_DIGIT);
  char* quote = number_end != argument ? argument_of(number_end) : nullptr;
  if (!quote || *quote != '"') return false;
  char* close = quote + 1;
  while (*close != '"' && *close != '\n' && *close != '\0') close++;
  if (*close != '"') return false;
  char* level = argument_of(close + 1);
  char* to = level ? veri_skip(level, VERI_CHAR_DIGIT) : level;
  if (to == level) return false;
  const char* name_end = quote + 1;
  while (name_end != close + 1 && !veri_is(*name_end, VERI_CHAR_SPACE)) name_end++;
  const std::string name(static_cast<const char*>(quote + 1), std::max<const char*>(quote + 1, name_end - 1));
  const auto line = static_cast<unsigned>(Strings::atoi(std::string(argument, number_end).c_str()));
  _in.linefile = LineFile::EncodeLineFile(name.c_str(), std::min(line ? line - 1 : 0, LineFile::max_line));
  _in.pos = to;
  return true;
}

namespace {

/// The exponent of ten of a time such as "10 ns" in seconds; the number must be 1, 10 or 100 (IEEE 1364-2005 clause
/// 19.8). False for other numbers.
bool read_time(std::string_view text, int* exponent) {
  const size_t digits = text.find_first_not_of("0123456789");
  const std::string_view number = text.substr(0, digits);
  const size_t unit = text.find_first_not_of(" \t", digits);
  static constexpr std::string_view prefixes = " munpf"; // in steps of a thousand
  const size_t step = unit == std::string_view::npos || text[unit] == 's' ? 0 : prefixes.find(text[unit]);
  *exponent = static_cast<int>(number.size()) - 1 - 3 * static_cast<int>(step);
  return number == "1" || number == "10" || number == "100";
}

} // namespace

bool VeriScanner::ReadTimescale(char* argument) {
  char* slash = skip_time(argument);
  if (slash) slash = veri_skip(slash, VERI_CHAR_SPACE);
  if (!slash || *slash != '/') return false;
  char* to = skip_time(veri_skip(slash + 1, VERI_CHAR_SPACE));
  if (!to) return false;
  int unit = 0;
  int precision = 0;
  const char* second = veri_skip(slash + 1, VERI_CHAR_SPACE);
  const bool is_known = read_time({argument, static_cast<size_t>(slash - argument)}, &unit) &&
                        read_time({second, static_cast<size_t>(to - second)}, &precision);
  if (!is_known)
    veri_error(_in.linefile, "numbers of a time scale must be 1, 10 or 100");
  else if (precision > unit)
    veri_error(_in.linefile, "time precision must not be coarser than the time unit");
  _in.pos = to;
  _settings.directives.timescale.reset(Strings::save(std::string(argument, to).c_str()));
  _client.SetTimeScale(_settings.directives.timescale.get());
  return true;
}

bool VeriScanner::ReadDefaultNettype(char* argument) {
  static constexpr unsigned net_types[] = {VERI_WIRE, VERI_TRI, VERI_TRI0,  VERI_WAND,  VERI_TRIAND,
                                           VERI_TRI1, VERI_WOR, VERI_TRIOR, VERI_TRIREG};
  char* to = skip_word(argument);
  if (!to) return false;
  _in.pos = to;
  const VeriWord* word = Intern({argument, to});
  if (std::find(std::begin(net_types), std::end(net_types), word->keyword) != std::end(net_types))
    _settings.directives.default_nettype = word->keyword;
  else if (std::strcmp(word->Text(), "none") == 0)
    _settings.directives.default_nettype = VeriLex::VERI_NONE_NETTYPE;
  else
    veri_warning(_in.linefile, "unknown nettype %s ignored", word->Text());
  return true;
}

bool VeriScanner::ReadUnconnectedDrive(char* argument) {
  char* to = skip_word(argument);
  if (!to) return false;
  _in.pos = to;
  const VeriWord* word = Intern({argument, to});
  if (word->keyword == VERI_PULL0 || word->keyword == VERI_PULL1)
    _settings.directives.unconnected_drive = word->keyword;
  else
    veri_warning(_in.linefile, "unknown unconnected_drive %s ignored", word->Text());
  return true;
}

// A constant without blanks, or `infinite`.
bool VeriScanner::ReadIgnoredArgument(char* argument, bool may_be_infinite) {
  char* to = argument;
  while (to != _in.end && *to != '\n' && !veri_is(*to, VERI_CHAR_SPACE)) to++;
  const std::string_view text(argument, static_cast<size_t>(to - argument));
  if (!veri_is(*argument, VERI_CHAR_DIGIT) && !(may_be_infinite && text == "infinite")) return false;
  _in.pos = to;
  return true;
}

// The position is behind the name; the use begins at its backquote.
void VeriScanner::UseMacro(const VeriWord* name, const char* use) {
  const VeriMacroDef* macro = _macros.Find(name->Text());
  if (!macro) {
    veri_warning(_in.linefile, "use of undefined macro %s", name->Text());
    _macros.DefineMacro(name->Text(), "", nullptr, _in.linefile);
    return;
  }
  if (macro->IsPredefined())
    return veri_error(_in.linefile, "incorrect use of predefined macro %s. Expected %s", name->Text(),
                      macro->Value() ? macro->Value() : "");
  if (const char* file = LineFile::GetFileName(macro->Linefile())) _client.AddDependentFile(file);
  if (!_macros.VerifyMacro(*macro, _in.linefile)) return;
  if (macro->Args()) {
    _used_macro = name;
    _use_start = use;
    _use_depth = _in.Depth();
    _paren_count = 0;
    _actuals.clear();
    Push(State::MacroActuals);
    return;
  }
  const char* value = macro->Value() ? macro->Value() : "";
  if (_dialect == VERI_SV && std::strchr(value, '`'))
    Expand(*macro, substitute(value, {}, {}, /*is_system_verilog=*/true), use);
  else
    Expand(*macro, value, use);
}

// The actuals of a use. Comments and newlines do not belong to them.
VeriScanner::Step VeriScanner::ReadMacroActuals() {
  for (;;) {
    const char c = *_in.pos;
    if (c == '\0' && AtEnd()) return Wrap();
    if (c == '/' && (_in.pos[1] == '/' || _in.pos[1] == '*')) return SkipComment();
    if (c == '"') {
      char* to = _in.pos + 1;
      while (*to != '"' && *to != '\n' && *to != '\0') to += *to == '\\' && to[1] != '\n' && to[1] != '\0' ? 2 : 1;
      if (*to == '"') to++;
      _actuals.append(_in.pos, to);
      _in.pos = to;
      continue;
    }
    if (c == ')' && _paren_count == 0) {
      veri_error(_in.linefile, "missing arguments for macro %s", _used_macro->Text());
      Pop();
      return Step::Again;
    }
    _in.pos++;
    if (c == '\n') {
      NewLine();
      continue;
    }
    if (c == '(' && _paren_count++ == 0) continue;
    if (c == ')' && --_paren_count == 0) {
      Pop();
      ExpandWithActuals();
      return Step::Again;
    }
    _actuals += c;
  }
}

void VeriScanner::ExpandWithActuals() {
  const VeriMacroDef* macro = _macros.Find(_used_macro->Text());
  if (!macro || !macro->Args()) return;
  std::vector<std::string_view> formals;
  std::vector<std::string_view> actuals;
  if (!split_formals(macro->Args(), &formals) || !split_actuals(_actuals, &actuals))
    veri_error(_in.linefile, "too many macro arguments");
  if (formals.size() != actuals.size()) return veri_error(_in.linefile, "incorrect number of macro arguments");
  const char* use = _in.Depth() == _use_depth ? _use_start : _in.pos;
  Expand(*macro, substitute(macro->Value() ? macro->Value() : "", formals, actuals, _dialect == VERI_SV), use);
}

void VeriScanner::Expand(const VeriMacroDef& macro, std::string_view text, const char* use) {
  const size_t depth = _in.Depth();
  while (!_expansions.empty() &&
         (_expansions.back().depth > depth || (_expansions.back().depth == depth && _expansions.back().end <= use)))
    _expansions.pop_back();
  _expansion_work += text.size() + work_of_a_use;
  if (_expansions.size() >= max_expansion_depth ||
      _expansion_work > free_expansion_work + expansion_work_per_byte * _in.BytesRead())
    return veri_error(_in.linefile, "macro %s causes infinite loop", macro.Name());

  RecordUse(macro);
  const char* end = _in.pos;
  _in.PushBack(text.data(), text.size());
  if (_in.Depth() != depth) {
    kestrin_debug("using scan string for %d chars", static_cast<int>(text.size()));
    end = _in.end;
  }
  _expansions.push_back({_in.Depth(), end});
}

// The name of a file, in quotes or angle brackets, or a macro that gives it.
VeriScanner::Step VeriScanner::ReadIncludeName() {
  _in.pos = veri_skip(_in.pos, VERI_CHAR_SPACE);
  const char c = *_in.pos;
  if (c == '\n') {
    NewLine();
    _in.pos++;
    return Step::Again;
  }
  if (c == '\0' && AtEnd()) return Wrap();
  if (c == '`') return ScanBackquote();
  Pop();
  char* to = _in.pos + 1;
  if (c == '"' || c == '<') {
    const char closing = c == '<' ? '>' : '"';
    while (*to != closing && *to != '\n' && *to != '\0') to++;
    if (*to == closing) {
      const std::string name(_in.pos + 1, to);
      _in.pos = to + 1;
      Include(name);
      return Step::Again;
    }
  }
  veri_error(_in.linefile, "incorrect use of predefined macro %s. Expected %s", "include", "\"filename\"");
  return Step::Again;
}

void VeriScanner::Include(const std::string& name) {
  const linefile_type place = _in.linefile;
  const FoundFile found = KernelServices::Get().FindFile(name.c_str(), _in.AbsoluteName(), _in.RelativeName());
  const char* reported = found.reported ? found.reported.get() : name.c_str();
  if (!found.full || !_in.OpenFile(found.full.get(), reported))
    return veri_error(_in.linefile, "cannot open file %s", name.c_str());
  veri_info(place, "reading file %s", reported);
  _client.AddDependentFile(reported);
}
