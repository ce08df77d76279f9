// The scanner's comments, and what users say in them: pragmas, switched-off text, directives for messages and dialect,
// annotations of modules and ports.
#include <algorithm>
#include <cstring>

#include "util/services.h"
#include "verilog/veri_pragma.h"
#include "verilog/veri_scanner.h"

namespace {

/// The words that make a comment a pragma.
constexpr std::string_view triggers[] = {"norvel", "synthesis", "synopsys", "exemplar", "pragma"};

constexpr const char* module_annotation_key = "module";

enum class PragmaKind : uint8_t {
  CaseProperty,
  TranslateOff,
  TranslateOn,
  TranslateWord, // and "on" or "off" behind it
  InputVersion,
  MessageOn,
  MessageOff,
  MessageLevel,
  BuilderInfoBegin,
  BuilderInfoEnd,
  ReadComments
};

struct PragmaWord {
  std::string_view text;
  PragmaKind kind;
};

constexpr PragmaWord pragma_words[] = {
    {"parallel_case", PragmaKind::CaseProperty},
    {"full_case", PragmaKind::CaseProperty},
    {"translate_off", PragmaKind::TranslateOff},
    {"synthesis_off", PragmaKind::TranslateOff},
    {"translate_on", PragmaKind::TranslateOn},
    {"synthesis_on", PragmaKind::TranslateOn},
    {"translate", PragmaKind::TranslateWord},
    {"synthesis", PragmaKind::TranslateWord},
    {"VERILOG_INPUT_VERSION", PragmaKind::InputVersion},
    {"message_on", PragmaKind::MessageOn},
    {"message_off", PragmaKind::MessageOff},
    {"message_level", PragmaKind::MessageLevel},
    {"fabr_builder_info_begin", PragmaKind::BuilderInfoBegin},
    {"fabr_builder_info_end", PragmaKind::BuilderInfoEnd},
    {"read_comments_as_HDL", PragmaKind::ReadComments},
};

const PragmaWord* find_pragma_word(std::string_view text) {
  const auto* found = std::find_if(std::begin(pragma_words), std::end(pragma_words),
                                   [text](const PragmaWord& word) { return word.text == text; });
  return found == std::end(pragma_words) ? nullptr : found;
}

std::string_view stripped(std::string_view text) {
  constexpr const char* space = " \t\r\f\v";
  const size_t start = text.find_first_not_of(space);
  if (start == std::string_view::npos) return {};
  return text.substr(start, text.find_last_not_of(space) - start + 1);
}

std::string_view word_at_start(std::string_view text) {
  size_t to = 0;
  while (to < text.size() && veri_is(text[to], VERI_CHAR_WORD)) to++;
  return text.substr(0, to);
}

std::string_view between(const char* from, const char* to) { return {from, static_cast<size_t>(to - from)}; }

bool ends_comment(const char* at) { return at[0] == '*' && at[1] == '/'; }

/// Behind text without white space, as far as the comment goes.
char* skip_plain(char* at, const char* end) {
  while (at != end && *at != '\n' && !veri_is(*at, VERI_CHAR_SPACE) && !ends_comment(at)) at++;
  return at;
}

/// Behind the value of an attribute: a string, or text up to white space or a separator.
char* skip_pragma_value(char* at, const char* end) {
  if (*at == '"') {
    char* to = at + 1;
    while (*to != '"' && *to != '\n' && *to != '\0') to += *to == '\\' && to[1] != '\n' && to[1] != '\0' ? 2 : 1;
    if (*to == '"') return to + 1;
  }
  char* limit = skip_plain(at, end);
  return std::find_if(at, limit, [](char c) { return c == ',' || c == ';'; });
}

/// Behind a list of decimal numbers with white space before each; the start when there is none.
char* skip_numbers(char* at) {
  for (char* to = at;;) {
    char* digits = veri_skip(to, VERI_CHAR_SPACE);
    char* behind = veri_skip(digits, VERI_CHAR_DIGIT);
    if (digits == to || behind == digits) return to;
    to = behind;
  }
}

/// "on" or "off" behind white space; 0 for neither. `behind` is moved on.
enum class Switch : uint8_t { None, On, Off };
Switch read_switch(char*& behind) {
  char* from = veri_skip(behind, VERI_CHAR_SPACE);
  char* to = veri_skip(from, VERI_CHAR_WORD);
  const std::string_view word = between(from, to);
  if (from == behind || (word != "on" && word != "off")) return Switch::None;
  behind = to;
  return word == "on" ? Switch::On : Switch::Off;
}

/// Which translate pragma a word is, with a second word or without. `behind` is moved over the second word.
Switch translate_switch(std::string_view word, char*& behind) {
  const PragmaWord* known = find_pragma_word(word);
  if (!known) return Switch::None;
  if (known->kind == PragmaKind::TranslateOff) return Switch::Off;
  if (known->kind == PragmaKind::TranslateOn) return Switch::On;
  return known->kind == PragmaKind::TranslateWord ? read_switch(behind) : Switch::None;
}

} // namespace

// A comment where tokens are read: its text counts when a trigger opens it, or when comments are read as source.
VeriScanner::Step VeriScanner::ScanComment() {
  if (char* body = SkipPragmaTrigger()) {
    Push(_in.pos[1] == '*' ? State::LongComment : State::LineComment);
    Push(State::Pragma);
    _in.pos = body;
    return Step::Again;
  }
  if (!_read_comments) return SkipComment();
  _in.pos += 2;
  return Step::Again;
}

VeriScanner::Step VeriScanner::SkipComment() {
  Push(_in.pos[1] == '*' ? State::LongComment : State::LineComment);
  _in.pos += 2;
  return Step::Again;
}

// Where the pragma begins when a trigger opens the comment at the position, else null.
char* VeriScanner::SkipPragmaTrigger() {
  char* from = veri_skip(_in.pos + 2, VERI_CHAR_SPACE);
  char* to = veri_skip(from, VERI_CHAR_WORD);
  if (!veri_is(*to, VERI_CHAR_SPACE)) return nullptr;
  const std::string_view word = between(from, to);
  if (std::find(std::begin(triggers), std::end(triggers), word) == std::end(triggers)) return nullptr;
  _pragma_trigger = word;
  return veri_skip(to, VERI_CHAR_SPACE);
}

VeriScanner::Step VeriScanner::ReadLongComment() {
  char* at = _in.pos;
  for (;; at++) {
    switch (*at) {
    case '\n': NewLine(); break;
    case '*':
      if (at[1] != '/') break;
      _in.pos = at + 2;
      Pop();
      return Step::Again;
    case '/':
      if (at[1] == '*') veri_warning(_in.linefile, "/* in comment");
      break;
    case '\0':
      if (at != _in.end) break;
      _in.pos = at;
      if (Wrap() == Step::Again) return Step::Again;
      veri_error(_in.linefile, "long comment was not closed");
      return Step::End;
    default: break;
    }
  }
}

VeriScanner::Step VeriScanner::ReadLineComment() {
  auto* newline = static_cast<char*>(std::memchr(_in.pos, '\n', static_cast<size_t>(_in.end - _in.pos)));
  if (!newline) {
    _in.pos = _in.end;
    return Wrap();
  }
  NewLine();
  _in.pos = newline + 1;
  Pop();
  return Step::Again;
}

// Pragmas at the start of a comment; with the first thing that is none the rest is plain comment.
VeriScanner::Step VeriScanner::ReadPragma() {
  const bool is_long = _states.back() == State::LongComment;
  while (_state == State::Pragma) {
    _in.pos = veri_skip(_in.pos, VERI_CHAR_SPACE);
    if (*_in.pos == '\n' && is_long) {
      NewLine();
      _in.pos++;
      continue;
    }
    char* behind = veri_is(*_in.pos, VERI_CHAR_LETTER) ? veri_skip(_in.pos, VERI_CHAR_WORD) : _in.pos;
    if (behind == _in.pos) {
      Pop();
      break;
    }
    const std::string_view word = between(_in.pos, behind);
    _in.pos = behind;
    if (!ReadPragmaAttribute(word, behind) && !ReadPragmaWord(word, behind)) SetAttributePragma(word, "1");
  }
  return Step::Again;
}

// NAME = VALUE, whatever the name.
bool VeriScanner::ReadPragmaAttribute(std::string_view word, char* behind) {
  char* equals = veri_skip(behind, VERI_CHAR_SPACE);
  if (*equals != '=') return false;
  char* value = veri_skip(equals + 1, VERI_CHAR_SPACE);
  char* to = skip_pragma_value(value, _in.end);
  if (to == value) return false;
  _in.pos = to;
  SetAttributePragma(word, between(value, to));
  return true;
}

void VeriScanner::SetAttributePragma(std::string_view name, std::string_view value) {
  const std::string attribute(name);
  const bool is_known = veri_is_language_attribute(attribute.c_str()) ||
                        KernelServices::Get().CheckAttributeName(attribute.c_str(), File(), Line());
  CheckPragma(name);
  if (is_known) VeriPragmas::Set(attribute.c_str(), std::string(value).c_str(), _in.linefile);
}

void VeriScanner::CheckPragma(std::string_view word) {
  KernelServices::Get().CheckAttributeOrDirective(std::string(word).c_str(), File(), Line(), /*is_attribute=*/false,
                                                  _pragma_trigger.c_str());
}

// One of the words with a meaning of their own, with what must stand behind it; false for all else. The position is
// behind the word.
bool VeriScanner::ReadPragmaWord(std::string_view word, char* behind) {
  const PragmaWord* known = find_pragma_word(word);
  if (!known) return false;
  char* argument = veri_skip(behind, VERI_CHAR_SPACE);
  char* argument_end = argument == behind ? argument : skip_plain(argument, _in.end);
  switch (known->kind) {
  case PragmaKind::CaseProperty:
    CheckPragma(word);
    VeriPragmas::Set(std::string(word).c_str(), "1", _in.linefile);
    return true;
  case PragmaKind::TranslateOff:
  case PragmaKind::TranslateOn:
  case PragmaKind::TranslateWord: {
    const Switch to = translate_switch(word, behind);
    if (to == Switch::None) return false;
    CheckPragma({word.data(), static_cast<size_t>(behind - word.data())});
    _in.pos = behind;
    if (to == Switch::Off)
      EnterTranslateOff();
    else if (_translate_off_nesting)
      _translate_off_nesting--;
    return true;
  }
  case PragmaKind::InputVersion:
    if (argument == argument_end) return false;
    _in.pos = argument_end;
    ChangeDialect(between(argument, argument_end));
    return true;
  case PragmaKind::MessageOn:
  case PragmaKind::MessageOff:
    _in.pos = skip_numbers(behind);
    if (_in.pos == behind) return false;
    SwitchMessages(between(behind, _in.pos), known->kind == PragmaKind::MessageOn);
    return true;
  case PragmaKind::MessageLevel:
    if (argument == argument_end) return false;
    _in.pos = argument_end;
    SetMessageLevel(between(argument, argument_end));
    return true;
  case PragmaKind::BuilderInfoBegin: BeginAnnotations(); return true;
  case PragmaKind::BuilderInfoEnd: AnnotationError("unmatched fabr_builder_info_end pragma"); return true;
  case PragmaKind::ReadComments: {
    const Switch to = read_switch(behind);
    if (to == Switch::None) return false;
    CheckPragma(word);
    _in.pos = behind;
    _read_comments = to == Switch::On;
    return true;
  }
  }
  return false;
}

// Pragmas that wait when a line ends on which the grammar closed nothing that takes them.
void VeriScanner::ReportLatePragmas() {
  _after_semicolon = false;
  const std::unique_ptr<VeriPragmas> late = VeriPragmas::Take();
  if (!late) return;
  for (auto [name, value] : late->All()) {
    const OwnedString image = _client.PragmaImage(value);
    veri_warning(_in.linefile, "misplaced attribute %s with value %s", name, image ? image.get() : "");
  }
}

void VeriScanner::EnterTranslateOff() {
  _translate_off_nesting++;
  if (_settings.ignore_translate_off) return Pop();
  Pop();
  Pop();
  Push(State::TranslateOff);
}

// Text that is switched off. Only comments count, and of these only the pragmas that switch.
VeriScanner::Step VeriScanner::ReadTranslateOff() {
  for (;; _in.pos++) {
    switch (*_in.pos) {
    case '\n': NewLine(); continue;
    case '\0':
      if (!AtEnd()) continue;
      if (Wrap() == Step::Again) return Step::Again;
      veri_error(_in.linefile, "unmatched translate/synthesis off pragma");
      return Step::End;
    case '/':
      if (_in.pos[1] == '/' || _in.pos[1] == '*') break;
      continue;
    default: continue;
    }
    char* word = SkipPragmaTrigger();
    if (!word) return SkipComment();
    char* behind = veri_skip(word, VERI_CHAR_WORD);
    const Switch to = translate_switch(between(word, behind), behind);
    if (to == Switch::None) return SkipComment();
    CheckPragma(between(word, behind));
    const State rest = _in.pos[1] == '*' ? State::LongComment : State::LineComment;
    _in.pos = behind;
    if (to == Switch::Off)
      _translate_off_nesting++;
    else if (_translate_off_nesting <= 1 || --_translate_off_nesting == 0)
      LeaveTranslateOff();
    Push(rest);
    return Step::Again;
  }
}

void VeriScanner::LeaveTranslateOff() {
  _translate_off_nesting = 0;
  Pop();
}

void VeriScanner::ChangeDialect(std::string_view value) {
  static constexpr const char* second_name_of_system_verilog = "System_Verilog_2005";
  if (!_client.IsBetweenDesignUnits())
    return veri_error(_in.linefile, "can't switch VERILOG_INPUT_VERSION inside a scope");
  const std::string version(value);
  for (const veri_dialect dialect : {VERI_SV, VERI_2K, VERI_95}) {
    const bool is_meant =
        Strings::compare_nocase(version.c_str(), KernelServices::Get().VerilogVersionName(dialect)) ||
        (dialect == VERI_SV && Strings::compare_nocase(version.c_str(), second_name_of_system_verilog));
    if (!is_meant) continue;
    _dialect = dialect;
    _client.SetDialect(dialect);
    kestrin_debug("synthesis directive changed dialect to %s", version.c_str());
    return;
  }
  veri_error(_in.linefile, "%s is an illegal value for the VERILOG_INPUT_VERSION synthesis directive", version.c_str());
}

void VeriScanner::SwitchMessages(std::string_view ids, bool on) {
  if (!_client.IsBetweenDesignUnits())
    return veri_error(_in.linefile, "message directive is not allowed inside a scope.");
  MessageDirectives& directives = *_settings.msg_directives;
  for (ids = stripped(ids); !ids.empty(); ids = stripped(ids)) {
    const std::string text(word_at_start(ids));
    ids.remove_prefix(text.size());
    unsigned overflow = 0;
    const int number = Strings::atoi(text.c_str(), &overflow);
    const unsigned id = overflow ? 0 : static_cast<unsigned>(number);
    if (!directives.CheckMsgId(id, overflow ? text.c_str() : nullptr, File(), Line())) continue;
    if (directives.IsErrorMessage(id)) {
      veri_error(_in.linefile, "can't disable/enable error message id %d with a message_on/message_off directive",
                 static_cast<int>(id));
      continue;
    }
    if (on)
      directives.MessageOn(id);
    else
      directives.MessageOff(id);
    kestrin_debug(on ? "message_on %d" : "message_off %d", static_cast<int>(id));
  }
  directives.RefreshMessageStatus();
}

void VeriScanner::SetMessageLevel(std::string_view value) {
  static constexpr const char* level_names[] = {"low", "medium", "high"};
  constexpr unsigned default_level = 1;
  if (!_client.IsBetweenDesignUnits())
    return veri_error(_in.linefile, "message directive is not allowed inside a scope.");
  const std::string word(value);
  unsigned level = 0;
  while (level < std::size(level_names) && !Strings::compare_nocase(word.c_str(), level_names[level]) &&
         !Strings::compare_nocase(word.c_str(), KernelServices::Get().MessageLevelName(level)))
    level++;
  if (level == std::size(level_names)) {
    veri_error(_in.linefile, "unrecognized message directive: \"%s\".", word.c_str());
    level = default_level;
  }
  _settings.msg_directives->SetMessageLevel(level, _in.linefile);
  _settings.msg_directives->RefreshMessageStatus();
}

void VeriScanner::AnnotationError(const char* problem) {
  veri_error(_in.linefile, "fabr builder annotation format error: %s", problem);
}

void VeriScanner::BeginAnnotations() {
  if (!_client.IsBetweenDesignUnits()) return AnnotationError("annotation is not allowed inside a scope");
  Pop();
  Pop();
  Push(State::ModuleAnnotation);
  VeriAnnotations::SetKey(module_annotation_key);
}

// Between the pragmas that open and close annotations there are line comments and nothing else.
VeriScanner::Step VeriScanner::ReadAnnotation() {
  _in.pos = veri_skip(_in.pos, VERI_CHAR_SPACE);
  if (*_in.pos == '\n') {
    NewLine();
    _in.pos++;
    return Step::Again;
  }
  if (*_in.pos == '\0' && AtEnd()) return Wrap();
  const char* from = _in.pos;
  char* to = std::find(_in.pos, _in.end, '\n');
  _in.pos = to;
  if (from[0] == '/' && from[1] == '/')
    ReadAnnotationLine(stripped(between(from + 2, to)));
  else
    AnnotationError("expecting annotations");
  return Step::Again;
}

void VeriScanner::ReadAnnotationLine(std::string_view text) {
  const std::string_view first = word_at_start(text);
  const std::string_view rest = stripped(text.substr(first.size()));
  if (std::find(std::begin(triggers), std::end(triggers), first) != std::end(triggers)) {
    const std::string_view pragma = word_at_start(rest);
    if (pragma == "fabr_builder_info_begin") return AnnotationError("unmatched fabr_builder_info_begin pragma");
    if (pragma == "fabr_builder_info_end") return EndAnnotations();
  }
  if (first == "port_info" && !rest.empty()) {
    if (_state == State::PortAnnotation) return AnnotationError("unmatched port_info annotation");
    Push(State::PortAnnotation);
    return VeriAnnotations::SetKey(std::string(rest).c_str());
  }
  if (first == "port_info_end") {
    if (_state != State::PortAnnotation) return AnnotationError("unmatched port_info_end annotation");
    Pop();
    return VeriAnnotations::SetKey(module_annotation_key);
  }
  VeriAnnotations::Add(std::string(text).c_str(), _in.linefile);
}

void VeriScanner::EndAnnotations() {
  if (_state == State::PortAnnotation) {
    AnnotationError("unmatched port_info annotation");
    Pop();
  }
  Pop();
  VeriAnnotations::SetKey(nullptr);
}
