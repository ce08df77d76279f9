// The Verilog scanner, which is the whole preprocessor as well: directives, macros, conditional text, includes, pragma
// comments and annotations are handled in textual order while tokens are pulled, and expansions are pushed back into
// the input. All its state is static, for one analysis at a time. It knows no tree and no scope: what it finds for
// those goes to a VeriScanClient.
#ifndef KESTRIN_VERILOG_VERI_LEX_H
#define KESTRIN_VERILOG_VERI_LEX_H

#include <memory>

#include "util/services.h"
#include "verilog/veri_macro.h"
#include "verilog/veri_tokens.h"

/// One token as the parser takes it.
struct veri_token {
  int code = VERI_END_OF_INPUT;
  unsigned linefile = 0;
  /// The identifier, the word, or the text of the value; null for operators. Never to be freed: texts are interned and
  /// stay until VeriLex::FreeStaticMemory, equal texts at the same address.
  const char* text = nullptr;
  unsigned length = 0; // of the text, which of a string literal may hold any character but 0
  int number = 0;      // of VERI_NUMBER: the low 32 bits, with a warning when there were more
  double real = 0.0;   // of VERI_REAL_NUMBER
};

/// What the scanner tells the rest of the front end. Every operation may be called in the middle of a token request.
class VeriScanClient {
public:
  virtual ~VeriScanClient() = default;
  /// Whether the current scope is that of a library, so that directives between design units are legal.
  virtual bool IsBetweenDesignUnits() const { return true; }
  /// A macro was tested or expanded: the design unit of the current scope remembers it. No text is null.
  virtual void AddToMacroSeq(const char* /*name*/, const char* /*args*/, const char* /*value*/,
                             linefile_type /*linefile*/) {}
  /// The source depends on this file: an include, or the file that defines a macro.
  virtual void AddDependentFile(const char* /*name*/) {}
  /// A time scale directive, for the library of the current scope.
  virtual void SetTimeScale(const char* /*text*/) {}
  /// The dialect changed between design units.
  virtual void SetDialect(veri_dialect /*dialect*/) {}
  /// A pending pragma of a line whose declaration is over: how its value reads in a message.
  virtual OwnedString PragmaImage(const char* value) { return OwnedString(Strings::save(value)); }
};

class VeriLex {
public:
  // One file. Between the two calls tokens can be asked for.
  /// Finds and opens the file. The macros and the client (null for none) stay the caller's and are used until EndFlex.
  /// 0 when there is no such file.
  static unsigned StartFlex(const char* file, veri_dialect dialect, VeriMacroTable* macros, VeriScanClient* client);
  /// The next token; code 0 at the end of the input, and again after that.
  static void NextToken(veri_token* token);
  /// Reports an unclosed conditional and drops all inputs. Harmless without StartFlex.
  static void EndFlex();
  /// Text that is read next, as if it stood at this place of the source.
  static void PushBack(const char* text);
  /// The text as the scanner hands it out, where it was not read by the scanner.
  static const char* Intern(const char* text);
  /// Frees the texts of tokens too, and puts settings and directives back to what they were at the start.
  static void FreeStaticMemory();

  /// The parser's error routine: "syntax error near" the last token, or near EOF when the input is at its end, with
  /// `text` behind it.
  static void Error(const char* text);

  // While the parser skips what a syntax error spoils.
  /// Mistakes of nesting are not told, and an `end` without `begin` is a token like others.
  static void SetQuiet(bool is_quiet);
  /// The last token is an `end` that nothing opened.
  static void ReportSurplusEnd();
  /// So many blocks are open, whatever was read so far.
  static void SetOpenBlocks(unsigned count);

  // Where the scanner is.
  /// 0 when no file is open.
  static linefile_type GetLineFile();
  static veri_dialect Dialect();
  static unsigned GetTranslateOffNesting();
  /// The last token was a semicolon whose line may still hold pragmas for what it closed; reductions of declarations
  /// and statements that take trailing pragmas clear the mark. Pragmas pending at a newline with the mark set are
  /// misplaced.
  static void ClearSemicolonFlag();

  // Directives in force. They carry over from file to file.
  static unsigned GetCelldefine();
  /// The token of a net type, VERI_NONE_NETTYPE for `none`.
  static unsigned GetDefaultNettype();
  /// 0, VERI_PULL0 or VERI_PULL1.
  static unsigned GetUnconnectedDrive();
  /// Null without a time scale; of the scanner.
  static const char* GetTimeScale();
  static constexpr unsigned VERI_NONE_NETTYPE = 0;

  // Settings.
  static void SetIgnoreTranslateOff(unsigned on);
  static unsigned IgnoreTranslateOff();
  static void SetUpperCaseIds(unsigned on);
  /// Takes the directives over and deletes the former ones; null is allowed.
  static void RegisterMsgDirectives(MessageDirectives* directives);
  static MessageDirectives* MsgDirectives();
};

#endif
