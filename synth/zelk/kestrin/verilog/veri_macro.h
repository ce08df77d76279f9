// Macros of Verilog: a definition and the table of them. A table outlives a source file, so that macros carry over from
// one analysed file to the next. The scanner reads definitions and expands uses; this file knows no input.
#ifndef KESTRIN_VERILOG_VERI_MACRO_H
#define KESTRIN_VERILOG_VERI_MACRO_H

#include "containers/views.h"
#include "util/linefile.h"
#include "util/strings.h"

class VeriMacroDef {
public:
  /// Copies the texts, of which all but the name may be null.
  VeriMacroDef(const char* name, const char* value, const char* args, linefile_type linefile, unsigned is_predefined);

  const char* Name() const { return _name.get(); }
  /// The formals as a comma list; null for a macro without formals.
  const char* Args() const { return _args.get(); }
  /// The body, null when there is none.
  const char* Value() const { return _value.get(); }
  /// The name of a directive; its value tells how the directive is written.
  unsigned IsPredefined() const { return _is_predefined; }
  /// 0 for a macro of the host.
  linefile_type Linefile() const { return _linefile; }

  /// Takes a second definition: refused for a predefined macro, silent when nothing changes, else with a warning at
  /// `linefile`. The place of the first definition stays.
  void Redefine(const char* value, const char* args, linefile_type linefile);

private:
  friend class VeriMacroTable;
  OwnedString _name;
  OwnedString _args;
  OwnedString _value;
  linefile_type _linefile;
  unsigned _is_predefined;
  mutable unsigned long _verified_in = 0; // state of the table in which the macro was found not to be recursive
};

class VeriMacroTable {
public:
  /// Holds the names of the directives.
  VeriMacroTable();
  VeriMacroTable(const VeriMacroTable&) = delete;
  VeriMacroTable& operator=(const VeriMacroTable&) = delete;
  ~VeriMacroTable();

  /// Copies the texts, of which value and args may be null. A location of 0 says that the host defines the macro.
  void DefineMacro(const char* name, const char* value, const char* args, linefile_type linefile);
  /// A predefined macro is refused with an error at `linefile`; an unknown name is no mistake.
  void UndefineMacro(const char* name, linefile_type linefile);
  /// All but the predefined ones.
  void UndefineAllMacros();

  /// Null when there is none.
  const VeriMacroDef* Find(const char* name) const;
  unsigned IsDefinedMacro(const char* name) const { return Find(name) != nullptr; }
  unsigned IsPredefinedMacro(const char* name) const;
  const char* MacroKey(const char* name) const;
  const char* MacroValue(const char* name) const;
  const char* MacroArgs(const char* name) const;
  linefile_type MacroLinefile(const char* name) const;
  /// The file of the definition; null for a macro of the host, and when there is none.
  const char* MacroFilename(const char* name) const;

  /// Whether the expansion of `value` never comes back to the macro `name`; an error at `linefile` when it does.
  unsigned VerifyMacro(const char* name, const char* value, linefile_type linefile) const;
  /// The same for a macro of the table, which is walked only when the table changed since the last time.
  unsigned VerifyMacro(const VeriMacroDef& macro, linefile_type linefile) const;

  /// All entries, predefined ones too, in the order of the table: pairs of name and definition.
  Entries<const char*, const VeriMacroDef*> All() const { return Entries<const char*, const VeriMacroDef*>(_macros); }

private:
  Map _macros;              // name of the definition -> VeriMacroDef
  unsigned long _state = 1; // grows with each change
};

/// The first formal that stands twice in a checked list; empty for none.
std::string veri_repeated_formal(const char* formals);
/// Checks a list of formals, opening parenthesis included, and compacts it to names and commas. Null after a mistake,
/// which is an error at `linefile`.
OwnedString veri_check_formal_args(const char* text, linefile_type linefile);

#endif
