// The table of macros: definition, removal, the test for recursion, and the check of formals.
#include "verilog/veri_macro.h"

#include <cstring>
#include <sstream>
#include <string>
#include <unordered_set>
#include <vector>

#include "verilog/veri_message.h"

namespace {

struct Predefined {
  const char* name;
  const char* usage;
};

constexpr Predefined predefined[] = {
#define VERI_DIRECTIVE(name, usage) {#name, usage},
#define VERI_RESERVED_MACRO(name, usage) {#name, usage},
#include "verilog/veri_directives.def"
};

bool is_letter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool is_digit(char c) { return c >= '0' && c <= '9'; }
bool is_space(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

/// The names behind the backquotes of a macro's body, comments aside.
std::vector<std::string> used_macros(const char* value) {
  std::vector<std::string> names;
  for (const char* at = value; *at;) {
    if (at[0] == '/' && at[1] == '/') break;
    if (at[0] == '/' && at[1] == '*') {
      for (at += 2; *at && !(at[0] == '*' && at[1] == '/'); at++) {}
      if (*at) at += 2;
      continue;
    }
    if (*at++ != '`') continue;
    const char* start = at;
    while (is_letter(*at) || is_digit(*at) || *at == '_') at++;
    names.emplace_back(start, at);
  }
  return names;
}

} // namespace

VeriMacroDef::VeriMacroDef(const char* name, const char* value, const char* args, linefile_type linefile,
                           unsigned is_predefined)
    : _name(Strings::save(name)), _args(Strings::save(args)), _value(Strings::save(value)), _linefile(linefile),
      _is_predefined(is_predefined) {}

void VeriMacroDef::Redefine(const char* value, const char* args, linefile_type linefile) {
  if (_is_predefined) return veri_error(linefile, "cannot re-define predefined macro %s", Name());
  if (Strings::compare(Args(), args) && Strings::compare(Value(), value)) return;
  if (const char* file = LineFile::GetFileName(_linefile))
    veri_warning(linefile, "redefinition of macro %s, which was defined in %s, line %d.", Name(), file,
                 static_cast<int>(LineFile::GetLineNo(_linefile)));
  else
    veri_warning(linefile,
                 "redefinition of macro %s, which was defined in the Tesmark II Settings File (.pjs) or on the command "
                 "line",
                 Name());
  OwnedString new_args(Strings::save(args)); // the texts may be this macro's own
  _value.reset(Strings::save(value));
  _args = std::move(new_args);
}

VeriMacroTable::VeriMacroTable() : _macros(HASH_STRING, 64) {
  for (const Predefined& macro : predefined) {
    auto* def = new VeriMacroDef(macro.name, macro.usage, nullptr, 0, 1);
    _macros.Insert(def->Name(), def);
  }
}

VeriMacroTable::~VeriMacroTable() {
  for (const VeriMacroDef* def : ValuesOf<const VeriMacroDef*>(&_macros)) delete def;
}

void VeriMacroTable::DefineMacro(const char* name, const char* value, const char* args, linefile_type linefile) {
  if (!name) return;
  _state++;
  if (auto* known = FromWord<VeriMacroDef*>(_macros.GetValue(name))) return known->Redefine(value, args, linefile);
  auto* def = new VeriMacroDef(name, value, args, linefile, 0);
  _macros.Insert(def->Name(), def);
}

void VeriMacroTable::UndefineMacro(const char* name, linefile_type linefile) {
  const VeriMacroDef* def = Find(name);
  if (!def) return;
  if (def->IsPredefined()) return veri_error(linefile, "cannot undefine predefined macro %s", def->Name());
  _state++;
  _macros.Remove(name);
  delete def;
}

void VeriMacroTable::UndefineAllMacros() {
  _state++;
  for (auto [name, def] : All()) {
    if (def->IsPredefined()) continue;
    _macros.Remove(name);
    delete def;
  }
}

const VeriMacroDef* VeriMacroTable::Find(const char* name) const {
  return name ? FromWord<const VeriMacroDef*>(_macros.GetValue(name)) : nullptr;
}

unsigned VeriMacroTable::IsPredefinedMacro(const char* name) const {
  const VeriMacroDef* def = Find(name);
  return def && def->IsPredefined();
}

const char* VeriMacroTable::MacroKey(const char* name) const {
  const VeriMacroDef* def = Find(name);
  return def ? def->Name() : nullptr;
}

const char* VeriMacroTable::MacroValue(const char* name) const {
  const VeriMacroDef* def = Find(name);
  return def ? def->Value() : nullptr;
}

const char* VeriMacroTable::MacroArgs(const char* name) const {
  const VeriMacroDef* def = Find(name);
  return def ? def->Args() : nullptr;
}

linefile_type VeriMacroTable::MacroLinefile(const char* name) const {
  const VeriMacroDef* def = Find(name);
  return def ? def->Linefile() : 0;
}

const char* VeriMacroTable::MacroFilename(const char* name) const { return LineFile::GetFileName(MacroLinefile(name)); }

unsigned VeriMacroTable::VerifyMacro(const char* name, const char* value, linefile_type linefile) const {
  if (!value || !std::strchr(value, '`')) return 1;
  std::unordered_set<std::string> seen; // each body is walked once, whatever the cycles among others
  std::vector<const char*> bodies{value};
  while (!bodies.empty()) {
    const char* body = bodies.back();
    bodies.pop_back();
    for (const std::string& used : used_macros(body)) {
      if (used == name) {
        veri_error(linefile, "macro %s causes infinite loop", name);
        return 0;
      }
      const char* next = MacroValue(used.c_str());
      if (next && seen.insert(used).second) bodies.push_back(next);
    }
  }
  return 1;
}

unsigned VeriMacroTable::VerifyMacro(const VeriMacroDef& macro, linefile_type linefile) const {
  if (macro._verified_in == _state) return 1;
  if (!VerifyMacro(macro.Name(), macro.Value(), linefile)) return 0;
  macro._verified_in = _state;
  return 1;
}

OwnedString veri_check_formal_args(const char* text, linefile_type linefile) {
  std::string formals;
  bool in_formal = false; // behind its first character
  bool ended = false;     // white space stood behind the formal
  const char* at = text && *text == '(' ? text + 1 : text;
  for (; at && *at; at++) {
    const bool is_last = !at[1];
    if (is_space(*at)) {
      ended = in_formal;
    } else if (!in_formal) {
      if (!is_letter(*at) && *at != '_' && *at != '$') {
        veri_error(linefile, "near %s : illegal macro parameter", at);
        return nullptr;
      }
      in_formal = true;
      formals += *at;
    } else if (*at == ',') {
      in_formal = ended = false;
      formals += *at;
    } else if (*at == ')' && is_last) {
      return OwnedString(Strings::save(formals.c_str()));
    } else if (!ended && (is_letter(*at) || is_digit(*at) || *at == '_' || *at == '$')) {
      formals += *at;
    } else {
      veri_error(linefile, "near %s : illegal character in macro parameter", at);
      return nullptr;
    }
  }
  veri_error(linefile, "near %s : illegal macro parameter", text ? text : "");
  return nullptr;
}

std::string veri_repeated_formal(const char* formals) {
  std::unordered_set<std::string> seen;
  std::istringstream names(formals);
  for (std::string name; std::getline(names, name, ',');)
    if (!seen.insert(name).second) return name;
  return {};
}
