// VeriScanner: the machine behind VeriLex. It is in one of several states, and what it meets is read by the state's
// rules; states nest on a stack. Tokens are in veri_lex.cpp, directives and macros in veri_directives.cpp, comments,
// pragmas and annotations in veri_comments.cpp. Only these include this file.
#ifndef KESTRIN_VERILOG_VERI_SCANNER_H
#define KESTRIN_VERILOG_VERI_SCANNER_H

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "util/services.h"
#include "verilog/veri_chars.h"
#include "verilog/veri_input.h"
#include "verilog/veri_lex.h"
#include "verilog/veri_message.h"
#include "verilog/veri_words.h"

/// Directives in force.
struct VeriDirectiveState {
  unsigned celldefine = 0;
  unsigned default_nettype = VERI_WIRE;
  unsigned unconnected_drive = 0;
  OwnedString timescale;
};

/// What outlives a file.
struct VeriLexSettings {
  VeriWords words;
  VeriDirectiveState directives;
  unsigned ignore_translate_off = 0;
  unsigned upper_case_ids = 0;
  std::unique_ptr<MessageDirectives> msg_directives;
};

class VeriScanner {
public:
  VeriScanner(VeriLexSettings& settings, veri_dialect dialect, VeriMacroTable* macros, VeriScanClient* client);

  bool Open(const char* file);
  void Next(veri_token* token);
  void ReportEnd();
  void Error(const char* text);
  /// The present token has had its syntax error; the parser, which cannot take it either, need not tell again.
  bool IsReported() const { return _is_reported; }
  void ReportSurplusEnd();
  void SetQuiet(bool is_quiet) { _is_quiet = is_quiet; }
  void SetOpenBlocks(unsigned count) { _begins = count; }

  linefile_type Linefile() const { return _in.linefile; }
  veri_dialect Dialect() const { return _dialect; }
  unsigned TranslateOffNesting() const { return _translate_off_nesting; }
  void ClearSemicolonFlag() { _after_semicolon = false; }
  void PushBack(std::string_view text) { _in.PushBack(text.data(), text.size()); }

private:
  enum class State : uint8_t {
    Source,
    LongComment,
    LineComment,
    Pragma,
    SkipIfdef,
    MacroText,
    MacroActuals,
    UdpTable,
    TranslateOff,
    BasedValue,
    EdgeDescriptors,
    ModuleAnnotation,
    PortAnnotation,
    IncludeName
  };
  /// What reading by the rules of a state came to: a token; no token, so read on in the present state; the end.
  enum class Step : uint8_t { Token, Again, End };
  enum class Conditional : uint8_t { Defined, Undefined };

  // Steps of the states.
  Step Read(veri_token* token);
  Step ReadSource(veri_token* token);
  Step ReadUdpTable(veri_token* token);
  Step ReadBasedValue(veri_token* token);
  Step ReadEdgeDescriptors(veri_token* token);
  Step ReadLongComment();
  Step ReadLineComment();
  Step ReadPragma();
  Step ReadTranslateOff();
  Step ReadAnnotation();
  Step ReadSkippedText();
  Step ReadMacroText();
  Step ReadMacroActuals();
  Step ReadIncludeName();

  // Tokens.
  Step TakeIllegal(veri_token* token);
  Step Take(veri_token* token, int code, char* to);
  Step TakeText(veri_token* token, int code, std::string_view text, char* to);
  /// What was reported already.
  Step TakeReported(veri_token* token);
  Step ScanWord(veri_token* token);
  Step ScanEscapedWord(veri_token* token);
  Step ScanSystemWord(veri_token* token);
  Step ScanNumber(veri_token* token);
  Step ScanString(veri_token* token);
  Step ScanApostrophe(veri_token* token);
  Step ScanOperator(veri_token* token);
  Step ScanStar(veri_token* token);
  Step ScanUdpEdge(veri_token* token);
  Step TakeKeyword(veri_token* token, const VeriWord* word, char* to);

  // Directives and macros; the position is at the backquote.
  Step ScanBackquote();
  bool ReadDirective(veri_directive directive, char* argument);
  bool ReadConditional(Conditional wanted, char* argument);
  bool ReadElsif(char* argument);
  void ReadElse();
  void ReadEndif();
  void LeaveBranch();
  void EnterBranch();
  bool ReadDefine(char* argument);
  bool ReadUndef(char* argument);
  bool ReadLine(char* argument);
  bool ReadTimescale(char* argument);
  bool ReadDefaultNettype(char* argument);
  bool ReadUnconnectedDrive(char* argument);
  bool ReadIgnoredArgument(char* argument, bool may_be_infinite);
  bool IsDefined(const VeriWord* name);
  void SkipConditionalDirective();
  void AppendMacroText(std::string_view piece);
  void UseMacro(const VeriWord* name, const char* use);
  void ExpandWithActuals();
  void Expand(const VeriMacroDef& macro, std::string_view text, const char* use);
  void RecordUse(const VeriMacroDef& macro);
  void Include(const std::string& name);

  // Comments; the position is at the slash.
  Step ScanComment();
  Step SkipComment();
  char* SkipPragmaTrigger();
  void ReportLatePragmas();
  bool ReadPragmaWord(std::string_view word, char* behind);
  bool ReadPragmaAttribute(std::string_view word, char* behind);
  void SetAttributePragma(std::string_view name, std::string_view value);
  void EnterTranslateOff();
  void LeaveTranslateOff();
  void ChangeDialect(std::string_view value);
  void SwitchMessages(std::string_view ids, bool on);
  void SetMessageLevel(std::string_view value);
  void BeginAnnotations();
  void EndAnnotations();
  void ReadAnnotationLine(std::string_view text);
  void AnnotationError(const char* problem);
  void CheckPragma(std::string_view word);

  /// A newline was read.
  void NewLine() {
    if (_after_semicolon) ReportLatePragmas();
    if ((_in.linefile & LineFile::max_line) != LineFile::max_line) _in.linefile++;
  }
  /// The end of an input: reading goes on in the one around it.
  Step Wrap() { return _in.Pop() ? Step::Again : Step::End; }
  bool AtEnd() const { return _in.pos == _in.end; }
  void Push(State state) {
    _states.push_back(_state);
    _state = state;
  }
  void Pop() {
    _state = _states.back();
    _states.pop_back();
  }
  const VeriWord* Intern(std::string_view text) { return _settings.words.Intern(text.data(), text.size()); }
  const char* File() const { return LineFile::GetFileName(_in.linefile); }
  unsigned Line() const { return LineFile::GetLineNo(_in.linefile); }

  VeriLexSettings& _settings;
  VeriMacroTable& _macros;
  VeriScanClient& _client;
  VeriInputs _in;
  State _state = State::Source;
  std::vector<State> _states;
  veri_dialect _dialect;
  bool _ended = false;
  bool _is_reported = false;
  bool _is_quiet = false;
  bool _after_semicolon = false;
  bool _read_comments = false; // as source
  bool _keep_escapes;
  unsigned _parentheses = 0;
  unsigned _begins = 0;
  unsigned _translate_off_nesting = 0;

  // The text of the last token, for syntax errors.
  const char* _text = "";
  size_t _text_length = 0;

  // Conditional text: what is known of each level, the outermost being no conditional at all.
  static constexpr uint8_t branch_taken = 1;
  static constexpr uint8_t branch_skipped = 2;
  std::vector<uint8_t> _levels{0};

  // The macro being defined.
  std::string _define_name;
  OwnedString _define_args;
  linefile_type _define_linefile = 0;
  bool _define_refused = false;
  std::string _macro_text;
  std::string _macro_piece; // of a line that began in an included file
  bool _is_first_piece = true;

  // The macro whose actuals are being read.
  const VeriWord* _used_macro = nullptr;
  const char* _use_start = nullptr;
  size_t _use_depth = 0;
  unsigned _paren_count = 0;
  std::string _actuals;

  // Expansions that are still being read, outermost first, against those that would never end.
  struct Expansion {
    size_t depth;
    const char* end;
  };
  std::vector<Expansion> _expansions;
  size_t _expansion_work = 0; // characters expanded so far

  std::string _pragma_trigger;
  std::string _string_value;
};

#endif
