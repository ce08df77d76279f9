// The actions of the grammar: see the header. The state of a parse is one static object, since one file is parsed at a
// time. Names are declared as they are read and bound after the parse, so that a use may stand before its declaration.
#include "verilog/veri_actions.h"

#include <algorithm>
#include <cstring>
#include <sstream>
#include <unordered_map>
#include <unordered_set>

#include "util/message.h"
#include "util/services.h"
#include "verilog/veri_file.h"
#include "verilog/veri_message.h"
#include "verilog/veri_number.h"
#include "verilog/veri_recovery.h"
#include "verilog/veri_tokens.h"
#include "verilog/verivisitor.h"

namespace {

/// A package that an import made visible in a scope; a null name stands for all of its names.
struct Imported {
  const VeriScope* scope;
  const char* package;
  const char* name;
};

struct ParserState {
  VeriLibrary* work = nullptr;
  VeriScope* scope = nullptr;
  VeriScopeHead* block = nullptr;      // the innermost open block of statements
  VeriScopeHead* subprogram = nullptr; // the open function or task
  VeriScopeHead* unit = nullptr;       // the innermost open design unit
  std::vector<Imported> imports;
  std::unordered_map<const VeriScope*, unsigned> generate_constructs; // numbers used up in a scope
  unsigned port_direction = 0;                                        // that a port without direction takes over
  unsigned modport_direction = 0;                                     // likewise in a modport
  // Tokens: those that come before the scanner's, the next one last; the last one that the parser got.
  std::vector<veri_token> kept;
  veri_location former_place = 0; // of the token before the last one
  veri_location last_place = 0;
  int former_code = 0;               // likewise
  const char* former_text = nullptr; // likewise, of a name
  const char* item_text = nullptr;   // of the name that begins a declaration or statement
  const char* called_text = nullptr; // of the last name in front of a parenthesis
  veri_location refused_place = 0;   // of what an action refused, a construct of another dialect say
  veri_token last;
  // Syntax errors: the last one, and what was handed out since for it.
  VeriBreak broken;
  std::unordered_set<const char*> lost_types;    // names that are types, as it seems, of a definition that is missing
  std::unordered_set<const char*> lost_packages; // likewise
  std::unordered_set<std::string> refused_units; // design units of this file that the library does not have
  unsigned supplied = 0;                         // words that the source lacks, still to be handed out
  bool is_supplied = false;
  bool resumes_next = false;
  bool has_resumed = false; // the last token is the one behind what was skipped
  int last_code = 0;
  int head_code = 0; // of the word that begins a design unit, behind the unit's name
  int stray_unit = VERI_MODULE;
  const char* last_text = nullptr;
  const char* package = nullptr; // the name in front of the last "::"
};

ParserState parser;

/// Packages that were refused for their mistakes, with the names of their types: who uses them is read all the same.
std::unordered_map<std::string, std::vector<std::string>>& refused_packages() {
  static std::unordered_map<std::string, std::vector<std::string>> packages;
  return packages;
}

} // namespace

// Running the parser.

int VeriParser::Parse(VeriLibrary* work) {
  parser = ParserState();
  parser.work = work;
  parser.scope = work->GetScope();
  const int result = veriparse();
  parser = ParserState();
  return result;
}

void VeriParser::FreeStaticMemory() { refused_packages().clear(); }

VeriScope* VeriParser::PresentScope() { return parser.scope; }

VeriPatternParts::~VeriPatternParts() {
  for (const VeriAssignmentPattern::Part& part : parts) {
    delete part.key;
    delete part.value;
  }
}

// Tokens.

namespace {

VeriIdDef* find_in_package(const char* package, const char* name) {
  if (!std::strcmp(package, "$unit")) return parser.work->GetScope()->FindHere(name);
  const VeriPackage* unit = veri_file::FindPackage(package, parser.work);
  return unit ? unit->GetScope()->FindHere(name) : nullptr;
}

VeriIdDef* find_import(const VeriScope* scope, const char* name) {
  for (const Imported& import : parser.imports)
    if (import.scope == scope && (!import.name || !std::strcmp(import.name, name)))
      if (VeriIdDef* id = find_in_package(import.package, name)) return id;
  return nullptr;
}

/// What a simple name stands for at this point of the source; null when nothing is known of it.
VeriIdDef* find_visible(const char* name) {
  for (const VeriScope* scope = parser.scope; scope; scope = scope->Upper()) {
    if (VeriIdDef* id = scope->FindHere(name)) return id;
    if (VeriIdDef* id = find_import(scope, name)) return id;
  }
  return nullptr;
}

void scan(veri_token* token) {
  if (parser.kept.empty()) return VeriLex::NextToken(token);
  *token = parser.kept.back();
  parser.kept.pop_back();
}

void keep(const veri_token& token) { parser.kept.push_back(token); }

int name_code(const VeriIdDef* id) {
  if (id && id->IsDataType()) return VERI_TYPE_ID;
  return VERI_ID;
}

/// Of a name in a package that was not read: a type where a name follows.
int lost_name_code(const char* name) {
  const auto refused = refused_packages().find(parser.package);
  if (refused != refused_packages().end()) {
    const std::vector<std::string>& types = refused->second;
    if (std::find(types.begin(), types.end(), name) != types.end()) return VERI_TYPE_ID;
  } else if (parser.lost_types.contains(name)) {
    return VERI_TYPE_ID;
  } else if (parser.lost_packages.contains(parser.package)) {
    veri_token next;
    scan(&next);
    keep(next);
    if (next.code == VERI_ID) return VERI_TYPE_ID;
  }
  return VERI_ID;
}

/// SystemVerilog cannot be read without knowing which names are types and packages.
int classify_name(const veri_token& token) {
  if (parser.last_code == VERI_DOT) return VERI_ID;
  if (parser.last_code == VERI_SCOPE_OP) {
    const VeriIdDef* id = parser.package ? find_in_package(parser.package, token.text) : nullptr;
    return id || !parser.package ? name_code(id) : lost_name_code(token.text);
  }
  if (const VeriIdDef* id = find_visible(token.text)) return name_code(id);
  if (parser.lost_types.contains(token.text)) return VERI_TYPE_ID;
  const bool is_package = veri_file::FindPackage(token.text, parser.work) || refused_packages().contains(token.text) ||
                          parser.lost_packages.contains(token.text);
  if (!is_package) return VERI_ID;
  veri_token next;
  scan(&next);
  keep(next);
  if (next.code != VERI_SCOPE_OP) return VERI_ID;
  return VERI_PACKAGE_ID;
}

/// A word that begins a design unit where none can begin. Modules of SystemVerilog can be nested.
bool is_stray_unit(int code) {
  const bool can_nest = VeriNode::IsSystemVerilog();
  const bool begins_unit = code == VERI_PRIMITIVE || code == VERI_PACKAGE || code == VERI_CONFIG ||
                           (!can_nest && (code == VERI_MODULE || code == VERI_MACROMODULE));
  return begins_unit && parser.scope->ModuleScope();
}

} // namespace

namespace {

/// The ports of a head that are given as `(.*)` are those of its extern declaration, and so are its parameters.
void expand_extern_ports(veri_token* token) {
  const bool begins_ports = token->code == VERI_OPAREN && parser.head_code && parser.last_text;
  if (!begins_ports) return;
  const VeriDesignUnit* unit = parser.work->GetDefinition(parser.last_text);
  const auto* declared = unit && unit->IsModule() ? static_cast<const VeriModule*>(unit) : nullptr;
  if (!declared || !declared->IsExtern() || !declared->HasAnsiPorts()) return;
  veri_token next;
  scan(&next);
  if (next.code != VERI_DOT_STAR) return keep(next);
  std::ostringstream head;
  declared->PrintPorts(head, 0);
  const std::string text = head.str();
  VeriLex::PushBack(text.substr(0, text.rfind(')')).c_str());
  scan(token);
}

bool begins_head(int code) { return code == VERI_MODULE || code == VERI_MACROMODULE || code == VERI_INTERFACE; }

} // namespace

veri_token veri_next_token() {
  veri_token token;
  scan(&token);
  if (VeriNode::IsSystemVerilog()) expand_extern_ports(&token);
  if (!token.linefile) token.linefile = static_cast<veri_location>(VeriLex::GetLineFile());
  if (token.code == VERI_ID && VeriNode::IsSystemVerilog()) token.code = classify_name(token);
  if (token.code == VERI_SCOPE_OP) parser.package = parser.last_text;
  parser.head_code = begins_head(parser.last_code) && token.text ? parser.last_code : 0;
  parser.former_code = parser.last_code;
  parser.former_text = parser.last_code == VERI_ID ? parser.last_text : nullptr;
  if (parser.last_code == VERI_SEMICOLON) parser.item_text = token.code == VERI_ID ? token.text : nullptr;
  if (token.code == VERI_OPAREN) parser.called_text = parser.former_text;
  parser.former_place = parser.last_place;
  parser.last_code = token.code;
  parser.last_text = token.text;
  parser.last_place = token.linefile;
  if (is_stray_unit(token.code)) {
    parser.stray_unit = token.code;
    token.code = VERI_STRAY_UNIT;
  }
  parser.last = token;
  parser.is_supplied = parser.supplied != 0;
  parser.has_resumed = !parser.is_supplied && parser.resumes_next;
  if (parser.is_supplied)
    parser.supplied--;
  else
    parser.resumes_next = false;
  return token;
}

namespace {

bool is_same_line(veri_location a, veri_location b) {
  return LineFile::GetLineNo(a) == LineFile::GetLineNo(b) && LineFile::GetFileName(a) == LineFile::GetFileName(b);
}

/// The scanner's token behind the last one that the parser had from it.
struct RestOfSource : VeriTokenSource {
  explicit RestOfSource(veri_location place) : last(place) {}
  VeriReadToken Next() override {
    VeriReadToken next;
    scan(&next.token);
    if (!next.token.linefile) next.token.linefile = static_cast<veri_location>(VeriLex::GetLineFile());
    next.begins_line = !is_same_line(next.token.linefile, last);
    last = next.token.linefile;
    return next;
  }
  veri_location last;
};

int scanned_code(const veri_token& token) {
  if (token.code == VERI_TYPE_ID || token.code == VERI_PACKAGE_ID) return VERI_ID;
  return token.code == VERI_STRAY_UNIT ? parser.stray_unit : token.code;
}

veri_token supplied_token(int code, veri_location place) {
  veri_token token;
  token.code = code;
  token.linefile = place;
  token.text = veri_token_text(static_cast<unsigned>(code));
  return token;
}

} // namespace

namespace {

bool is_unknown(const char* name) {
  return !find_visible(name) && !parser.work->GetDefinition(name) && !parser.refused_units.contains(name);
}

/// Whether the error comes from a name whose definition is missing: the next time it is read as what it seems to be.
void remember_lost_name(const std::vector<int>& open) {
  if (!VeriNode::IsSystemVerilog()) return;
  // package::type, where a type must stand
  if (parser.last.code == VERI_ID && parser.former_code == VERI_SCOPE_OP) parser.lost_types.insert(parser.last.text);
  const char* name = parser.former_text;
  if (!name) return;
  if (parser.last.code == VERI_SCOPE_OP) {
    parser.lost_packages.insert(name);
    return;
  }
  // Where a declaration begins: `type name`, `type [`, and in front of what cannot follow an instance: `type name;`
  const bool begins_object = parser.last.code == VERI_ID || parser.last.code == VERI_OBRACKET;
  if (begins_object && name == parser.item_text && is_unknown(name)) parser.lost_types.insert(name);
  const bool ends_name =
      parser.last.code == VERI_SEMICOLON || parser.last.code == VERI_COMMA || parser.last.code == VERI_ASSIGN_OP;
  const bool has_type = parser.item_text && parser.item_text != name && is_unknown(parser.item_text);
  const bool is_instance =
      std::find(open.end() - std::min<ptrdiff_t>(4, std::ssize(open)), open.end(), VERI_ID) != open.end();
  if (ends_name && has_type && is_instance) parser.lost_types.insert(parser.item_text);
}

} // namespace

bool veri_broken(std::vector<int> open, bool wants_semicolon) {
  remember_lost_name(open);
  VeriBreak& broken = parser.broken;
  broken.open = std::move(open);
  broken.wants_semicolon = wants_semicolon;
  broken.is_second = parser.has_resumed || parser.is_supplied;
  broken.token.token = parser.last;
  broken.token.token.code = scanned_code(parser.last);
  broken.token.begins_line = !is_same_line(parser.last.linefile, parser.former_place);
  broken.before = parser.former_text;
  broken.called = parser.called_text;
  // A word of another dialect was told already.
  const bool is_refused = parser.refused_place && is_same_line(parser.refused_place, parser.last.linefile);
  return !broken.is_second && !is_refused;
}

bool veri_recover(size_t kept) {
  VeriBreak& broken = parser.broken;
  VeriLex::SetQuiet(true);
  RestOfSource source(broken.token.token.linefile);
  if (parser.is_supplied) {
    parser.kept.erase(parser.kept.end() - parser.supplied, parser.kept.end());
    broken.token = source.Next();
  }
  VeriResumption resumption = veri_resume(broken, kept, source);
  VeriLex::SetQuiet(false);
  while (resumption.next.token.code == VERI_END && !resumption.begins) {
    VeriLex::ReportSurplusEnd();
    resumption.next = source.Next();
    resumption.is_at_end = resumption.next.token.code == VERI_END_OF_INPUT;
  }
  if (resumption.is_at_end) return false;
  if (resumption.type_name && VeriNode::IsSystemVerilog()) parser.lost_types.insert(resumption.type_name);
  const veri_token& next = resumption.next.token;
  VeriLex::SetOpenBlocks(resumption.begins + (next.code == VERI_BEGIN) - (next.code == VERI_END && resumption.begins));
  keep(next);
  for (auto closing = resumption.closing.rbegin(); closing != resumption.closing.rend(); ++closing)
    keep(supplied_token(*closing, next.linefile));
  keep(supplied_token(resumption.is_declaration ? VERI_RESUMED_DECLARATION : VERI_RESUMED, next.linefile));
  parser.supplied = static_cast<unsigned>(resumption.closing.size()) + 1;
  parser.resumes_next = true;
  return true;
}

void veri_skip_to(int code, int opening) {
  veri_token token;
  unsigned depth = 0;
  for (;;) {
    scan(&token);
    if (token.code == VERI_END_OF_INPUT || (token.code == code && !depth)) break;
    if (token.code == code) depth--;
    if (token.code == opening && parser.last_code != VERI_TYPEDEF) depth++;
    parser.last_code = token.code;
  }
  keep(token);
}

// Messages.

void veri_report_stack_overflow(veri_location place) { veri_error(place, "parser stack overflow"); }

void veri_need_systemverilog(veri_location place, const char* feature) {
  if (VeriNode::IsSystemVerilog()) return;
  veri_error(place, "%s is a SystemVerilog feature", feature);
  parser.refused_place = place;
}

namespace {

bool is_strength_of_one(unsigned token) {
  switch (token) {
  case VERI_SUPPLY1:
  case VERI_STRONG1:
  case VERI_PULL1:
  case VERI_WEAK1:
  case VERI_HIGHZ1: return true;
  default: return false;
  }
}

} // namespace

void veri_check_strengths(unsigned first, unsigned second, veri_location place) {
  const char* words[] = {VeriTreeNode::PrintToken(first), VeriTreeNode::PrintToken(second)};
  if (is_strength_of_one(first) == is_strength_of_one(second))
    veri_error(place, "strengths %s and %s are for the same value", words[0], words[1]);
  else if ((first == VERI_HIGHZ0 || first == VERI_HIGHZ1) && (second == VERI_HIGHZ0 || second == VERI_HIGHZ1))
    veri_error(place, "strengths %s and %s drive nothing", words[0], words[1]);
}

void veri_check_delays(const VeriExpressions& delays, veri_location place) {
  constexpr unsigned max_delays = 3; // rise, fall, turn-off
  if (delays.Size() > max_delays)
    veri_error(place, "a delay has at most %d values, not %d", static_cast<int>(max_delays),
               static_cast<int>(delays.Size()));
}

void veri_need_verilog_2001(veri_location place, const char* feature) {
  if (VeriNode::Dialect() == VERI_95)
    veri_error(place, "no support for %s", (std::string(feature) + " before Verilog 2001").c_str());
}

void veri_unsupported(veri_location place, const char* feature) {
  veri_error(place, "no support for %s (SystemVerilog)", feature);
}

namespace {

/// Tokens that stand for a class of tokens in a hint, and end it; null words: the token itself.
struct TokenClass {
  int token;
  const char* words;
};

constexpr TokenClass token_classes[] = {
    {VERI_END, nullptr},
    {VERI_ENDCASE, nullptr},
    {VERI_ENDFUNCTION, nullptr},
    {VERI_ENDGENERATE, nullptr},
    {VERI_ENDMODULE, nullptr},
    {VERI_ENDPRIMITIVE, nullptr},
    {VERI_ENDINTERFACE, nullptr},
    {VERI_ENDPACKAGE, nullptr},
    {VERI_SEMICOLON, nullptr},
    {VERI_CPAREN, nullptr},
    {VERI_CBRACE, nullptr},
    {VERI_CBRACKET, nullptr},
    {VERI_OPAREN, nullptr},
    {VERI_ALWAYS, "a module item"},
    {VERI_MODULE, "a description"},
    {VERI_INPUT, "a direction"},
    {VERI_IF, "a sequential statement"},
    {VERI_BANG, "an operand"},
    {VERI_LOG_AND, "binary operator"},
    {VERI_ID, "an identifier"},
};

const TokenClass* class_of(unsigned token) {
  for (const TokenClass& entry : token_classes)
    if (entry.token == static_cast<int>(token)) return &entry;
  return nullptr;
}

std::string quoted(unsigned token) { return std::string("\"") + VeriTreeNode::PrintToken(token) + "\""; }

/// The words of a token that is no class.
std::string single_token(unsigned token) {
  return veri_type_of_token(token) == VERI_TOKEN_VALUE ? VeriTreeNode::PrintErrorToken(token) : quoted(token);
}

} // namespace

std::string veri_expected_hint(std::vector<unsigned> tokens) {
  if (tokens.empty()) return {};
  std::stable_sort(tokens.begin(), tokens.end(), [](unsigned a, unsigned b) {
    return VeriTreeNode::TokenPriority(a) < VeriTreeNode::TokenPriority(b);
  });
  std::string hint = "; ";
  hint += " expecting ";
  for (const unsigned token : tokens) {
    if (token != tokens.front()) hint += ", or ";
    const TokenClass* token_class = class_of(token);
    if (!token_class) {
      hint += single_token(token);
      continue;
    }
    hint += token_class->words ? token_class->words : quoted(token);
    if (token == VERI_ID && veri_type_of_token(static_cast<unsigned>(parser.last_code)) == VERI_TOKEN_KEYWORD)
      hint += " (" + quoted(static_cast<unsigned>(parser.last_code)) + " is a reserved keyword )";
    break;
  }
  return hint;
}

// Lists.

VeriModuleItems* veri_join(VeriModuleItems* items, VeriModuleItems* more) {
  if (!items) return more;
  if (!more) return items;
  items->Append(more);
  more->Reset();
  delete more;
  return items;
}

// Attributes.

Map* veri_add_attribute(Map* attributes, const char* name, VeriExpression* value, veri_location place) {
  const char* file = LineFile::GetFileName(place);
  const unsigned line = LineFile::GetLineNo(place);
  KernelServices::Get().CheckAttributeOrDirective(name, file, line, /*is_attribute=*/true, nullptr);
  if (!veri_is_language_attribute(name) && !KernelServices::Get().CheckAttributeName(name, file, line)) {
    delete value;
    return attributes;
  }
  if (!attributes) attributes = new Map(HASH_STRING);
  if (MapItem* former = attributes->GetItem(name)) {
    veri_warning(place, "overriding existing value for attribute %s", name);
    delete FromWord<VeriExpression*>(former->Value());
    former->SetValue(value);
  } else {
    attributes->Insert(Strings::save(name), value);
  }
  return attributes;
}

Map* veri_join_attributes(Map* attributes, Map* more, veri_location place) {
  if (!attributes || !more) return attributes ? attributes : more;
  VeriNullStatement both(place);
  both.AddAttributes(attributes);
  both.AddAttributes(more);
  return both.TakeAttributes();
}

namespace {

/// A pragma's value as the node that the same text in an attribute instance would give.
VeriExpression* pragma_expression(const char* value, veri_location place) {
  if (std::strchr(value, '\'')) {
    if (OwnedValue number = VeriValue::FromLiteral(value))
      return new VeriVectorLiteral(value, std::move(number), place);
  } else if (*value >= '0' && *value <= '9') {
    const std::string number = std::to_string(Strings::atoi(value));
    return new VeriIntLiteral(number.c_str(), place);
  }
  std::string text = value;
  if (text.size() >= 2 && text.front() == '"' && text.back() == '"') text = text.substr(1, text.size() - 2);
  return veri_string_literal(text.c_str(), place);
}

} // namespace

Map* veri_take_pragmas(Map* attributes) {
  const std::unique_ptr<VeriPragmas> pragmas = VeriPragmas::Take();
  if (!pragmas) return attributes;
  VeriLex::ClearSemicolonFlag();
  const auto place = static_cast<veri_location>(VeriLex::GetLineFile());
  Map* more = new Map(HASH_STRING);
  for (auto [name, value] : pragmas->All()) more->Insert(Strings::save(name), pragma_expression(value, place));
  return veri_join_attributes(attributes, more, place);
}

// Scopes.

namespace {

/// The scope that a declaration goes to. An unnamed block gets its scope with its first declaration.
VeriScope* declaring_scope() {
  VeriScopeHead* block = parser.block;
  if (block && !block->scope && block->base == parser.scope) {
    veri_need_systemverilog(block->place, "a declaration in an unnamed block");
    block->scope = std::make_unique<VeriScope>(SCOPE_BLOCK, parser.scope, nullptr);
    parser.scope = block->scope.get();
  }
  return parser.scope;
}

void push_scope(VeriScopeHead* head, veri_scope_kind kind, VeriIdDef* owner) {
  head->scope = std::make_unique<VeriScope>(kind, parser.scope, owner);
  if (owner) owner->SetLocalScope(head->scope.get());
  parser.scope = head->scope.get();
}

const char* owner_name(const VeriScope* scope) { return scope->GetOwner() ? scope->GetOwner()->Name() : "<unnamed>"; }

/// Leaves the scope of a head, which the caller gets.
std::unique_ptr<VeriScope> pop_scope(VeriScopeHead* head) {
  if (!head->scope) return nullptr;
  VeriScope* scope = head->scope.get();
  for (; parser.scope && parser.scope != scope; parser.scope = parser.scope->Upper()) {
    kestrin_debug("pop_scope(%s) - Found incorrect scope belonging to %s", owner_name(scope), owner_name(parser.scope));
    if (!Message::ErrorCount()) KESTRIN_REPORT_INTERNAL("the parser scope stack was mismanaged");
  }
  scope->Check();
  parser.scope = scope->Upper();
  return std::move(head->scope);
}

} // namespace

VeriScopeHead::~VeriScopeHead() {
  if (parser.block == this) parser.block = outer;
  if (parser.subprogram == this) parser.subprogram = nullptr;
  if (parser.unit == this) parser.unit = outer;
  if (!scope) return;
  for (const VeriScope* inner = parser.scope; inner; inner = inner->Upper())
    if (inner == scope.get()) {
      parser.scope = scope->Upper();
      break;
    }
}

// Declarations.

namespace {

/// A name that a later dialect took for a word of its own.
void check_for_keyword(const VeriIdDef* id) {
  const unsigned token = veri_token_by_text(id->Name());
  if (!token) return;
  const veri_dialect dialect = veri_dialect_of_token(token);
  if (dialect <= VeriNode::Dialect()) return;
  if (dialect == VERI_SV)
    id->Warning("%s is a SystemVerilog-2005 keyword", id->Name());
  else
    id->Warning("%s is a Verilog-2001 keyword", id->Name());
}

void refuse(VeriIdDef* id) { id->Set(IDF_IN_ERROR); }

void declare_in(VeriScope* scope, VeriIdDef* id) {
  check_for_keyword(id);
  if (scope->Declare(id)) return;
  id->Error("%s is already declared", id->Name());
  if (const VeriIdDef* former = scope->FindHere(id->Name())) former->Info("see declaration of %s", former->Name());
  refuse(id);
}

void declare_id(VeriIdDef* id) { declare_in(declaring_scope(), id); }

/// Where two declarations of a port tell its type, the one with dimensions says more, then the one with a sign.
VeriTypeDef* richer_type(VeriTypeDef* first, VeriTypeDef* second) {
  if (!first || !second) return first ? first : second;
  if (!second->IsImplicit() && second->Type() != VERI_REG && second->Type() != VERI_LOGIC) return second;
  if (first->Ranges() && !second->Ranges()) return first;
  if (second->Ranges() && !first->Ranges()) return second;
  return first->Signing() == VERI_SIGNED ? first : second;
}

/// Written numbers that differ. What parameters decide is not known here.
bool have_other_bounds(const VeriTypeDef* first, const VeriTypeDef* second) {
  const VeriRanges* a = first ? first->Ranges() : nullptr;
  const VeriRanges* b = second ? second->Ranges() : nullptr;
  if (!a || !b || a->Size() != 1 || b->Size() != 1) return false;
  auto is_other = [](const VeriExpression* left, const VeriExpression* right) {
    return left && right && left->GetClassId() == ID_VeriIntLiteral && right->GetClassId() == ID_VeriIntLiteral &&
           left->Image() != right->Image();
  };
  return is_other(a->At(0)->GetLeft(), b->At(0)->GetLeft()) || is_other(a->At(0)->GetRight(), b->At(0)->GetRight());
}

void merge(VeriIdDecl* declaration, VeriVariable* existing) {
  auto* fresh = declaration->IdAs<VeriVariable>();
  if (have_other_bounds(existing->Type(), fresh->Type()))
    fresh->Error("range of %s differs from the one in its port declaration", fresh->Name());
  existing->SetType(richer_type(existing->Type(), fresh->Type()));
  if (declaration->Ranges()) existing->SetUnpackedRanges(declaration->Ranges());
  if (declaration->Value()) existing->SetInitialValue(declaration->Value());
  existing->Set(IDF_MERGED_PORT);
  existing->Set(IDF_TYPED);
  declaration->MergeInto(existing);
}

VeriVariable* variable_here(const char* name) {
  VeriIdDef* id = declaring_scope()->FindHere(name);
  return id && id->IsVar() ? static_cast<VeriVariable*>(id) : nullptr;
}

void declare_port(VeriIdDecl* declaration) {
  auto* id = declaration->IdAs<VeriVariable>();
  VeriVariable* existing = variable_here(id->Name());
  if (existing && !existing->Dir()) {
    existing->SetDir(id->Dir());
    return merge(declaration, existing);
  }
  if (!existing) return declare_id(id);
  id->Error("port %s is already declared", id->Name());
  refuse(id);
}

void declare_net_reg(VeriIdDecl* declaration) {
  auto* id = declaration->IdAs<VeriVariable>();
  VeriVariable* existing = variable_here(id->Name());
  if (!existing || !existing->Dir()) return declare_id(id);
  if (existing->Is(IDF_ANSI_PORT)) {
    id->Error("object %s declared in a list of port declarations cannot be redeclared within the module body",
              id->Name());
    return refuse(id);
  }
  if (existing->Is(IDF_TYPED)) {
    id->Error("cannot redeclare object \"%s\" because the port declaration for \"%s\" already specifies net or "
              "variable type",
              id->Name(), id->Name());
    return refuse(id);
  }
  existing->SetNetType(id->NetType());
  merge(declaration, existing);
}

bool is_explicit(const VeriTypeDef* type) { return type && !type->IsImplicit(); }

/// The net type of an object of a port declaration; 0 for a variable.
unsigned net_type_of_port(const VeriDataDecl* decl, bool of_subprogram) {
  if (decl->NetType()) return decl->NetType();
  if (of_subprogram || decl->IsVar() || decl->Direction() == VERI_REF) return 0;
  if (is_explicit(decl->DataType()) && decl->Direction() == VERI_OUTPUT) return 0;
  const unsigned nettype = VeriLex::GetDefaultNettype();
  return nettype == VeriLex::VERI_NONE_NETTYPE ? static_cast<unsigned>(VERI_WIRE) : nettype;
}

/// What all declared objects take from their declaration.
void complete(VeriDataDecl* decl, VeriIdDecl* declaration, unsigned net_type) {
  auto* id = declaration->IdAs<VeriVariable>();
  id->SetType(decl->DataType());
  id->SetUnpackedRanges(declaration->Ranges());
  id->SetInitialValue(declaration->Value());
  id->SetModuleItem(decl);
  id->SetNetType(net_type);
  id->SetDir(decl->Direction());
  if (parser.subprogram && parser.subprogram->is_automatic) id->Set(IDF_AUTOMATIC);
}

void complete_port(VeriDataDecl* decl, VeriIdDecl* declaration, bool of_subprogram) {
  if (declaration->Ranges())
    veri_need_systemverilog(static_cast<veri_location>(declaration->Linefile()), "an array port");
  complete(decl, declaration, net_type_of_port(decl, of_subprogram));
  VeriIdDef* id = declaration->GetId();
  if (decl->HasExplicitType()) id->Set(IDF_TYPED);
}

const char* type_text(const VeriTypeDef* type) {
  const char* text = VeriTreeNode::PrintToken(type->Type());
  return text ? text : "user-defined";
}

/// The types of Verilog for a port, net or parameter; SystemVerilog takes all.
void check_type(const VeriTypeDef* type, std::initializer_list<int> legal, unsigned object, veri_location place) {
  if (VeriNode::IsSystemVerilog() || !is_explicit(type)) return;
  for (const int token : legal)
    if (static_cast<unsigned>(token) == type->Type()) return;
  veri_error(place, "objects with type %s cannot be declared as %s", type_text(type), VeriTreeNode::PrintToken(object));
}

void check_port_type(unsigned direction, const VeriTypeDef* type, bool of_subprogram, veri_location place) {
  if (!is_explicit(type)) return;
  const unsigned token = type->Type();
  if (direction == VERI_INPUT && (token == VERI_EVENT || token == VERI_CHANDLE || token == VERI_VOID)) {
    veri_error(place, "cannot declare \"%s\" port(s) with type \"%s\"", VeriTreeNode::PrintToken(direction),
               type_text(type));
  } else if (of_subprogram) {
    check_type(type, {VERI_REG, VERI_INTEGER, VERI_TIME, VERI_REAL, VERI_REALTIME}, direction, place);
  } else if (direction == VERI_OUTPUT) {
    check_type(type, {VERI_REG, VERI_INTEGER, VERI_TIME}, direction, place);
  } else {
    check_type(type, {}, direction, place);
  }
}

VeriDataDecl* new_decl(unsigned direction, unsigned net_type, VeriTypeDef* type, VeriIdDecls* ids,
                       veri_location place) {
  const bool is_var = net_type == VERI_VAR;
  auto* decl = new VeriDataDecl(direction, is_var ? 0 : net_type, type, ids, place);
  if (is_var) decl->SetIsVar();
  return decl;
}

} // namespace

VeriIdDecl* veri_new_variable(const char* name, VeriRanges* ranges, VeriExpression* value, veri_location place) {
  if (ranges && ranges->Size() > 1) veri_need_verilog_2001(place, "an array of several dimensions");
  return new VeriIdDecl(std::make_unique<VeriVariable>(name, 0, place), ranges, value, place);
}

VeriIdDecl* veri_new_param(const char* name, VeriRanges* ranges, VeriExpression* value, veri_location place) {
  return new VeriIdDecl(std::make_unique<VeriParamId>(name, VERI_PARAMETER, place), ranges, value, place);
}

VeriNetType* veri_net_type(unsigned token, VeriStrength* strength, unsigned scalared, VeriExpressions* delay,
                           veri_location place) {
  return new VeriNetType(token, strength, scalared, delay, place);
}

VeriIdDecl* veri_new_member(const char* name, VeriRanges* ranges, veri_location place) {
  return new VeriIdDecl(std::make_unique<VeriStructUnionMemberId>(name, place), ranges, nullptr, place);
}

VeriIdDecl* veri_new_enum_element(const char* name, VeriExpression* value, veri_location place) {
  return new VeriEnumElementDecl(std::make_unique<VeriEnumId>(name, place), value, place);
}

VeriIdDecls* veri_append_enum_elements(VeriIdDecls* elements, const char* name, int first, int last,
                                       VeriExpression* value, veri_location place) {
  if (!elements) elements = new VeriIdDecls;
  const int step = first <= last ? 1 : -1;
  constexpr int most = 1 << 16;
  if (std::abs(static_cast<int64_t>(last) - first) > most) {
    veri_unsupported(place, "an enumeration of this size");
    last = first;
  }
  for (int number = first;; number += step) {
    const std::string full_name = name + std::to_string(number);
    elements->Insert(veri_new_enum_element(full_name.c_str(), std::exchange(value, nullptr), place));
    if (number == last) return elements;
  }
}

VeriIdDecl* veri_declare_genvar(const char* name, veri_location place) {
  auto* declaration = new VeriIdDecl(std::make_unique<VeriGenVarId>(name, place), nullptr, nullptr, place);
  declare_id(declaration->GetId());
  return declaration;
}

VeriModuleItem* veri_port_decl(unsigned direction, unsigned net_type, VeriTypeDef* type, VeriIdDecls* ids,
                               veri_location place) {
  check_port_type(direction, type, /*of_subprogram=*/false, place);
  VeriDataDecl* decl = new_decl(direction, net_type, type, ids, place);
  for (VeriIdDecl* id : *ids) {
    complete_port(decl, id, /*of_subprogram=*/false);
    declare_port(id);
  }
  return decl;
}

VeriModuleItem* veri_tf_port_decl(unsigned direction, VeriTypeDef* type, VeriIdDecls* ids, veri_location place) {
  check_port_type(direction, type, /*of_subprogram=*/true, place);
  VeriDataDecl* decl = new_decl(direction, 0, type, ids, place);
  for (VeriIdDecl* id : *ids) {
    complete_port(decl, id, /*of_subprogram=*/true);
    declare_port(id);
  }
  return decl;
}

VeriModuleItem* veri_net_decl(VeriNetType* net_type, VeriTypeDef* type, VeriIdDecls* ids, veri_location place) {
  const unsigned token = net_type->Token();
  check_type(type, {}, token, place);
  VeriDataDecl* decl = new_decl(0, token, type, ids, place);
  if (net_type->IsPlain())
    delete net_type;
  else
    decl->SetNetType(net_type);
  for (VeriIdDecl* id : *ids) {
    if (id->Ranges()) veri_need_verilog_2001(static_cast<veri_location>(id->Linefile()), "an array of nets");
    complete(decl, id, token);
    declare_net_reg(id);
  }
  return decl;
}

VeriModuleItem* veri_const_decl(VeriTypeDef* type, VeriIdDecls* ids, veri_location place) {
  VeriModuleItem* item = veri_data_decl(type, ids, place);
  static_cast<VeriDataDecl*>(item)->SetIsConst();
  return item;
}

VeriModuleItem* veri_data_decl(VeriTypeDef* type, VeriIdDecls* ids, veri_location place) {
  VeriDataDecl* decl = new_decl(0, 0, type, ids, place);
  for (VeriIdDecl* id : *ids) {
    if (id->Value())
      veri_need_verilog_2001(static_cast<veri_location>(id->Linefile()), "a value in the declaration of a variable");
    complete(decl, id, 0);
    declare_net_reg(id);
  }
  return decl;
}

VeriModuleItem* veri_lifetime_decl(unsigned lifetime, VeriTypeDef* type, VeriIdDecls* ids, veri_location place) {
  VeriModuleItem* item = veri_data_decl(type, ids, place);
  static_cast<VeriDataDecl*>(item)->SetLifetime(lifetime);
  for (VeriIdDecl* id : *ids) {
    if (lifetime == VERI_AUTOMATIC)
      id->GetId()->Set(IDF_AUTOMATIC);
    else
      id->GetId()->Clear(IDF_AUTOMATIC);
  }
  return item;
}

namespace {

VeriParamDecl* new_param_decl(unsigned token, VeriTypeDef* type, VeriIdDecls* ids, veri_location place) {
  check_type(type, {VERI_INTEGER, VERI_TIME, VERI_REAL, VERI_REALTIME}, token, place);
  return new VeriParamDecl(token, type, ids, place);
}

void declare_param(const VeriParamDecl* decl, VeriTypeDef* type, VeriIdDecl* declaration) {
  auto* id = declaration->IdAs<VeriParamId>();
  if (!declaration->Value())
    veri_need_systemverilog(static_cast<veri_location>(id->Linefile()), "a parameter without value");
  id->SetParamToken(decl->Token());
  id->SetType(type);
  id->SetUnpackedRanges(declaration->Ranges());
  id->SetInitialValue(declaration->Value());
  id->SetModuleItem(const_cast<VeriParamDecl*>(decl));
  declare_id(id);
}

} // namespace

VeriModuleItem* veri_param_decl(unsigned token, VeriTypeDef* type, VeriIdDecls* ids, veri_location place) {
  if (is_explicit(type)) veri_need_verilog_2001(place, "a parameter with a type");
  VeriParamDecl* decl = new_param_decl(token, type, ids, place);
  for (VeriIdDecl* id : *ids) declare_param(decl, type, id);
  return decl;
}

VeriModuleItem* veri_param_port(unsigned token, VeriTypeDef* type, VeriIdDecl* id, veri_location place) {
  if (token == VERI_LOCALPARAM) veri_need_systemverilog(place, "a local parameter in a parameter list");
  veri_need_verilog_2001(place, "a list of parameters in the head of a module");
  return veri_param_decl(token, type, veri_list<VeriIdDecl>(id), place);
}

VeriModuleItem* veri_local_type(VeriModuleItem* type) {
  veri_need_systemverilog(static_cast<veri_location>(type->Linefile()), "a local parameter in a parameter list");
  static_cast<VeriTypeDecl*>(type)->GetId()->SetParamToken(VERI_LOCALPARAM);
  return type;
}

VeriModuleItems* veri_append_type_port(VeriModuleItems* ports, const char* name, VeriRanges* ranges, VeriTypeDef* type,
                                       veri_location place) {
  const auto* former = dynamic_cast<const VeriTypeDecl*>(ports->GetLast());
  if (!former) veri_error(place, "syntax error near %s", "\"=\", expecting an operand");
  const unsigned token = former ? former->GetId()->ParamToken() : static_cast<unsigned>(VERI_PARAMETER);
  return veri_append(ports, veri_type_decl(type, name, ranges, place, token));
}

VeriModuleItems* veri_append_param_port(VeriModuleItems* ports, VeriIdDecl* id) {
  VeriModuleItem* last = ports->GetLast();
  auto* decl = dynamic_cast<VeriParamDecl*>(last);
  if (!decl) { // behind a type parameter
    return veri_append(ports, veri_param_port(VERI_PARAMETER, nullptr, id, static_cast<veri_location>(id->Linefile())));
  }
  decl->Ids()->Insert(id);
  id->SetParent(decl);
  declare_param(decl, decl->DataType(), id);
  return ports;
}

VeriModuleItem* veri_announce_type(const char* name, veri_location place) {
  return veri_closed(veri_type_decl(nullptr, name, nullptr, place));
}

namespace {

/// The definition of a type takes the place of its announcement.
void replace_announcement(const char* name) {
  VeriIdDef* former = parser.scope->FindHere(name);
  if (former && former->IsDataType() && static_cast<VeriDataType*>(former)->IsAnnouncement())
    parser.scope->Undeclare(former);
}

} // namespace

VeriModuleItem* veri_type_decl(VeriTypeDef* type, const char* name, VeriRanges* ranges, veri_location place,
                               unsigned param_token) {
  auto id = std::make_unique<VeriDataType>(name, place);
  id->SetType(type);
  id->SetParamToken(param_token);
  id->SetUnpackedRanges(ranges);
  VeriDataType* declared = id.get();
  auto* decl = new VeriTypeDecl(type, new VeriIdDecl(std::move(id), ranges, nullptr, place), place);
  declared->SetModuleItem(decl);
  if (!param_token) replace_announcement(name);
  declare_id(declared);
  return decl;
}

VeriModuleItems* veri_close_type_params(VeriModuleItems* params, unsigned token) {
  for (VeriModuleItem* item : *params) static_cast<VeriTypeDecl*>(item)->GetId()->SetParamToken(token);
  veri_closed(params->GetFirst());
  return params;
}

VeriModuleItem* veri_import(const char* package, const char* name, veri_location place) {
  parser.imports.push_back({declaring_scope(), package, name});
  const auto refused = refused_packages().find(package);
  if (refused != refused_packages().end())
    for (const std::string& type : refused->second)
      if (!name || type == name) parser.lost_types.insert(VeriLex::Intern(type.c_str()));
  return new VeriImport(package, name, place);
}

VeriIdDecls* veri_misplaced_value(VeriIdDecls* ids, VeriExpression* value, veri_location place) {
  veri_error(place, "syntax error near %s", "\"=\", expecting an identifier or \",\"");
  parser.refused_place = place;
  delete value;
  return ids ? ids : new VeriIdDecls;
}

VeriIdDecls* veri_surplus_comma(VeriIdDecls* ids, veri_location place) {
  veri_error(place, "syntax error near %s", "\",\", expecting \";\"");
  return ids;
}

// Types.

VeriTypeDef* veri_atom_type(unsigned token, unsigned signing, VeriRanges* ranges, veri_location place) {
  if (ranges) {
    veri_error(place, "objects with type %s cannot be declared with a range", VeriTreeNode::PrintToken(token));
    delete ranges;
  }
  return new VeriPrimitiveTypeDef(token, signing, nullptr, place);
}

namespace {

VeriTypeDef* with_dimensions(VeriTypeDef* type, VeriRanges* ranges, veri_location place) {
  return ranges ? new VeriArrayTypeDef(type, ranges, place) : type;
}

} // namespace

VeriTypeDef* veri_struct_type(unsigned token, bool is_tagged, unsigned packed, unsigned signing,
                              VeriNodes<VeriDataDecl>* members, VeriRanges* ranges, veri_location place) {
  auto* type = new VeriStructUnionTypeDef(token, packed != 0, signing, members, place);
  if (is_tagged) type->SetIsTagged();
  return with_dimensions(type, ranges, place);
}

VeriRange* veri_sized_dimension(VeriExpression* size, veri_location place) {
  veri_need_systemverilog(place, "dimension given by its size");
  if (!size->IsOpen()) return new VeriRange(size, nullptr, VERI_COLON, place);
  delete size;
  veri_error(place, "queues are not supported");
  return veri_refused_dimension(place);
}

VeriRange* veri_refused_dimension(veri_location place) {
  return new VeriRange(veri_refused_operand(place), nullptr, VERI_COLON, place);
}

VeriDataDecl* veri_struct_member(VeriTypeDef* type, VeriIdDecls* ids, veri_location place) {
  auto* decl = new VeriStructUnionMemberDecl(type, ids, place);
  for (VeriIdDecl* declaration : *ids) {
    auto* id = declaration->IdAs<VeriStructUnionMemberId>();
    id->SetType(type);
    id->SetUnpackedRanges(declaration->Ranges());
    id->SetModuleItem(decl);
  }
  return decl;
}

VeriTypeDef* veri_enum_type(VeriTypeDef* base, VeriIdDecls* elements, VeriRanges* ranges, veri_location place) {
  auto* type = new VeriEnumTypeDef(base, elements, place);
  for (VeriIdDecl* element : *elements) {
    auto* id = element->IdAs<VeriEnumId>();
    id->SetEnumType(type);
    id->SetType(type);
    declare_id(id);
  }
  return with_dimensions(type, ranges, place);
}

// Ports of a head.

VeriExpressions* veri_port_list(VeriExpressions* ports) {
  const bool is_empty = ports->Size() == 1 && ports->GetFirst()->GetClassId() == ID_VeriPortOpen;
  if (!is_empty) return ports;
  delete ports;
  return nullptr;
}

namespace {

/// A port without direction has that of the one before it.
unsigned direction_of_port(unsigned direction, veri_location place) {
  if (!direction) veri_need_systemverilog(place, "Implicit port direction");
  if (direction) parser.port_direction = direction;
  return parser.port_direction;
}

/// Pragmas that stand behind the name, in front of the comma, are the port's.
void declare_ansi_port(VeriDataDecl* decl, VeriIdDecl* id) {
  decl->AddAttributes(veri_take_pragmas(nullptr));
  complete_port(decl, id, /*of_subprogram=*/false);
  if (!decl->Direction()) id->IdAs<VeriVariable>()->SetDir(VERI_INOUT); // of an interface
  id->GetId()->Set(IDF_ANSI_PORT);
  declare_port(id);
}

} // namespace

VeriExpression* veri_ansi_port(unsigned direction, unsigned net_type, VeriTypeDef* type, VeriIdDecl* id,
                               veri_location place) {
  veri_need_verilog_2001(place, "a list of port declarations");
  direction = direction_of_port(direction, place);
  check_port_type(direction, type, /*of_subprogram=*/false, place);
  VeriDataDecl* decl = new_decl(direction, net_type, type, veri_list<VeriIdDecl>(id), place);
  declare_ansi_port(decl, id);
  return new VeriAnsiPortDecl(decl, place);
}

VeriExpression* veri_with_port_attributes(VeriExpression* port, Map* attributes) {
  static_cast<VeriAnsiPortDecl*>(port)->Decl()->AddAttributes(attributes);
  return port;
}

VeriExpression* veri_interface_port(const char* interface, const char* modport, VeriIdDecl* id, veri_location place) {
  veri_need_systemverilog(place, "an interface port");
  VeriName* type = interface ? new VeriIdRef(interface, place) : nullptr;
  if (id->Value()) {
    veri_error(place, "interface ports can't have initial values");
    delete id->TakeValue();
  }
  auto* decl = new VeriDataDecl(0, 0, new VeriInterfaceTypeDef(type, modport, place), veri_list<VeriIdDecl>(id), place);
  declare_ansi_port(decl, id);
  return new VeriAnsiPortDecl(decl, place);
}

VeriExpressions* veri_continue_ansi_port(VeriExpressions* ports, VeriIdDecl* id, Map* attributes) {
  VeriDataDecl* decl = static_cast<VeriAnsiPortDecl*>(ports->GetLast())->Decl();
  decl->AddAttributes(attributes);
  decl->Ids()->Insert(id);
  id->SetParent(decl);
  declare_ansi_port(decl, id);
  return ports;
}

VeriDataDecl* veri_tf_port(unsigned direction, VeriTypeDef* type, VeriIdDecl* id, veri_location place) {
  veri_need_verilog_2001(place, "a list of port declarations");
  VeriModuleItem* decl = veri_tf_port_decl(direction_of_port(direction, place), type, veri_list<VeriIdDecl>(id), place);
  return static_cast<VeriDataDecl*>(decl);
}

VeriModuleItems* veri_append_tf_port(VeriModuleItems* ports, VeriDataDecl* port) { return veri_append(ports, port); }

VeriModuleItems* veri_continue_tf_port(VeriModuleItems* ports, VeriIdDecl* id, Map* attributes) {
  if (!ports) {
    VeriDataDecl* port = veri_tf_port(0, nullptr, id, static_cast<veri_location>(id->Linefile()));
    return veri_list<VeriModuleItem>(veri_with(port, attributes));
  }
  auto* decl = static_cast<VeriDataDecl*>(ports->GetLast());
  decl->AddAttributes(attributes);
  decl->Ids()->Insert(id);
  id->SetParent(decl);
  complete_port(decl, id, /*of_subprogram=*/true);
  declare_port(id);
  return ports;
}

// Design units.

VeriScopeHead* veri_open_unit(unsigned token, const char* name, veri_location place, unsigned lifetime) {
  auto* head = new VeriScopeHead(token, place);
  if (lifetime) veri_need_systemverilog(place, "the lifetime of a design unit");
  head->is_automatic = lifetime == VERI_AUTOMATIC;
  head->outer = std::exchange(parser.unit, head);
  head->unit_id = std::make_unique<VeriDesignUnitId>(name, token, place);
  check_for_keyword(head->unit_id.get());
  head->celldefine = VeriLex::GetCelldefine();
  head->default_nettype = VeriLex::GetDefaultNettype();
  push_scope(head, SCOPE_UNIT, head->unit_id.get());
  parser.port_direction = VERI_INOUT;
  return head;
}

VeriDesignUnit* veri_new_module(VeriScopeHead* head, VeriModuleItems* imports, VeriModuleItems* parameters,
                                VeriExpressions* ports, VeriModuleItems* items, Map* attributes) {
  const std::unique_ptr<VeriScopeHead> owned(head);
  if (imports) items = veri_join(veri_append_items(new VeriModuleItems, imports, nullptr), items);
  std::unique_ptr<VeriScope> scope = pop_scope(head);
  VeriModule* module = nullptr;
  switch (head->token) {
  case VERI_PRIMITIVE:
    module = new VeriPrimitive(std::move(head->unit_id), parameters, ports, items, std::move(scope), head->place);
    break;
  case VERI_INTERFACE:
    module = new VeriInterface(std::move(head->unit_id), parameters, ports, items, std::move(scope), head->place);
    break;
  default:
    module = new VeriModule(std::move(head->unit_id), parameters, ports, items, std::move(scope), head->place);
    break;
  }
  module->AddAttributes(attributes);
  module->SetDirectives(head->celldefine, head->default_nettype);
  module->SetTimes(std::move(head->time_unit), std::move(head->time_precision));
  module->SetAnnotations(VeriAnnotations::Take());
  return module;
}

VeriDesignUnit* veri_new_extern_module(VeriScopeHead* head, VeriModuleItems* imports, VeriModuleItems* parameters,
                                       VeriExpressions* ports, Map* attributes) {
  VeriDesignUnit* unit = veri_new_module(head, imports, parameters, ports, new VeriModuleItems, attributes);
  static_cast<VeriModule*>(unit)->SetExtern();
  return unit;
}

VeriDesignUnit* veri_new_package(VeriScopeHead* head, VeriModuleItems* items, Map* attributes) {
  const std::unique_ptr<VeriScopeHead> owned(head);
  std::unique_ptr<VeriScope> scope = pop_scope(head);
  auto* package = new VeriPackage(std::move(head->unit_id), items, std::move(scope), head->place);
  package->AddAttributes(attributes);
  package->SetAnnotations(VeriAnnotations::Take());
  return package;
}

VeriDesignUnit* veri_new_config(const char* name, VeriNodes<VeriName>* design, VeriNodes<VeriConfigRule>* rules,
                                veri_location place) {
  auto id = std::make_unique<VeriDesignUnitId>(name, VERI_CONFIG, place);
  check_for_keyword(id.get());
  return new VeriConfiguration(std::move(id), design, rules, place);
}

namespace {

std::vector<std::string> type_names(const VeriScope* scope) {
  std::vector<std::string> names(parser.lost_types.begin(), parser.lost_types.end());
  for (const VeriIdDef* id : ValuesOf<VeriIdDef*>(&scope->Ids()))
    if (id->IsDataType()) names.emplace_back(id->Name());
  return names;
}

} // namespace

void veri_finish_unit(VeriDesignUnit* unit, Map* attributes) {
  if (!unit) return VeriTreeNode::DeleteAttributes(attributes);
  unit->AddAttributes(attributes);
  if (!*unit->Name()) { // of a head that cannot be read
    delete unit;
    return;
  }
  // The host knows of no configurations.
  if (!unit->IsConfiguration()) veri_file::NewlyFound().Insert(unit->GetId());
  if (unit->IsPackage()) refused_packages().erase(unit->Name());
  if (parser.work->AddDesignUnit(unit)) return;
  if (unit->IsPackage()) refused_packages()[unit->Name()] = type_names(unit->GetScope());
  parser.refused_units.insert(unit->Name());
  veri_file::NewlyFound().Remove(unit->GetId());
  delete unit;
}

void veri_add_global(VeriModuleItem* item, Map* attributes, veri_location place) {
  if (!item) return VeriTreeNode::DeleteAttributes(attributes);
  veri_need_systemverilog(place, "declaring global objects");
  item->AddAttributes(attributes);
  parser.work->AddItem(item);
}

void veri_add_globals(VeriModuleItems* items, Map* attributes, veri_location place) {
  for (VeriModuleItem* item : *items) veri_add_global(item, std::exchange(attributes, nullptr), place);
  items->Reset();
  delete items;
}

void veri_check_closing_label(const char* name, const char* label, veri_location place) {
  if (!label) return;
  if (!VeriNode::IsSystemVerilog())
    return veri_error(place, "%s is a SystemVerilog feature", "using a closing label on a design unit");
  if (!name || std::strcmp(name, label) != 0)
    veri_error(place, "closing label %s must match the original label %s", label, name ? name : "<unnamed>");
}

void veri_check_unit_label(const VeriDesignUnit* unit, const char* label) {
  veri_check_closing_label(unit ? unit->Name() : nullptr, label, static_cast<veri_location>(VeriLex::GetLineFile()));
}

namespace {

/// A time as a power of ten in femtoseconds, which is enough to compare; the number must be 1, 10 or 100.
int check_time_unit_value(const char* text) {
  const int value = Strings::atoi(text);
  if (value != 1 && value != 10 && value != 100) kestrin_debug("Timeunit must be 1, 10 or 1000");
  const char* unit = text + std::strspn(text, "0123456789._");
  int power = value >= 100 ? 2 : value >= 10 ? 1 : 0;
  for (const char* name : {"fs", "ps", "ns", "us", "ms", "s"}) {
    if (!std::strcmp(unit, name)) break;
    power += 3;
  }
  return power;
}

} // namespace

void veri_time_unit(const char* unit, const char* precision) {
  const int unit_power = unit ? check_time_unit_value(unit) : 0;
  const int precision_power = precision ? check_time_unit_value(precision) : 0;
  if (unit && precision && precision_power > unit_power) kestrin_debug("Precision must be less than unit");
  if (parser.unit) {
    const auto place = static_cast<veri_location>(VeriLex::GetLineFile());
    auto literal = [place](const char* text) { return static_cast<VeriTimeLiteral*>(veri_time_literal(text, place)); };
    if (unit) parser.unit->time_unit.reset(literal(unit));
    if (precision) parser.unit->time_precision.reset(literal(precision));
    return;
  }
  if (!unit) return;
  parser.work->SetTimeScale(precision ? (std::string(unit) + "/" + precision).c_str() : unit);
}

// Module items.

namespace {

/// Gives the unnamed blocks of one generate construct their name: clause 12.4.3.
class BlockNamer : public VeriVisitor {
public:
  explicit BlockNamer(std::string name) : _name(std::move(name)) {}
  void Visit(VeriGenerateBlock& block) override {
    if (!*block.Label()) block.GetId()->SetName(_name.c_str());
  }

private:
  std::string _name;
};

/// The constructs of a scope are numbered in source order, whether their blocks are named or not.
void number_generate_construct(VeriModuleItem* item) {
  switch (item->GetClassId()) {
  case ID_VeriGenerateConditional:
  case ID_VeriGenerateCase:
  case ID_VeriGenerateFor:
  case ID_VeriGenerateBlock: break;
  default: return;
  }
  const std::string number = std::to_string(++parser.generate_constructs[parser.scope]);
  std::string name = "genblk" + number;
  for (std::string zeros = "0"; parser.scope->FindHere(name.c_str()); zeros += "0") name = "genblk" + zeros + number;
  BlockNamer namer(name);
  namer.TraverseNode(item);
}

} // namespace

VeriModuleItems* veri_append_item(VeriModuleItems* items, VeriModuleItem* item, Map* attributes) {
  if (!item) {
    VeriTreeNode::DeleteAttributes(attributes);
    return items;
  }
  item->AddAttributes(attributes);
  number_generate_construct(item);
  return veri_append(items, item);
}

VeriModuleItems* veri_append_items(VeriModuleItems* items, VeriModuleItems* more, Map* attributes) {
  if (more->Size())
    more->GetFirst()->AddAttributes(attributes);
  else
    VeriTreeNode::DeleteAttributes(attributes);
  return veri_join(items, more);
}

VeriModuleItems* veri_null_item(VeriModuleItems* items, Map* attributes, veri_location place) {
  veri_need_systemverilog(place, "null module item");
  VeriTreeNode::DeleteAttributes(attributes);
  return items;
}

namespace {

VeriScopeHead* open_subprogram(unsigned token, unsigned lifetime, std::unique_ptr<VeriIdDef> id, veri_location place) {
  auto* head = new VeriScopeHead(token, place);
  head->is_automatic = lifetime ? lifetime == VERI_AUTOMATIC : parser.unit && parser.unit->is_automatic;
  declare_id(id.get());
  push_scope(head, SCOPE_SUBPROGRAM, id.get());
  head->id = std::make_unique<VeriIdDecl>(std::move(id), nullptr, nullptr, place);
  parser.port_direction = VERI_INPUT;
  parser.subprogram = head;
  return head;
}

} // namespace

VeriScopeHead* veri_open_function(unsigned lifetime, VeriTypeDef* type, const char* name, veri_location place) {
  auto id = std::make_unique<VeriFunctionId>(name, place);
  id->SetType(type);
  VeriScopeHead* head = open_subprogram(VERI_FUNCTION, lifetime, std::move(id), place);
  head->type.reset(type);
  return head;
}

VeriScopeHead* veri_open_task(unsigned lifetime, const char* name, veri_location place) {
  return open_subprogram(VERI_TASK, lifetime, std::make_unique<VeriTaskId>(name, place), place);
}

namespace {

/// Variables that begin anew with each run of a body are given their values by statements at its start.
void assign_initial_values(VeriBody* body) {
  if (!body || !body->declarations) return;
  unsigned pos = 0;
  for (VeriModuleItem* item : *body->declarations) {
    if (item->GetClassId() != ID_VeriDataDecl) continue;
    auto* decl = static_cast<VeriDataDecl*>(item);
    const bool is_automatic = decl->Lifetime() ? decl->Lifetime() == VERI_AUTOMATIC : parser.subprogram != nullptr;
    if (!is_automatic || decl->Direction()) continue;
    for (VeriIdDecl* declaration : *decl->Ids()) {
      VeriExpression* value = declaration->TakeValue();
      if (!value) continue;
      if (decl->Lifetime() == 0 && parser.subprogram && !parser.subprogram->is_automatic && !decl->IsConstant())
        declaration->Warning("static variable %s gets its initial value at each call", declaration->GetId()->Name());
      declaration->IdAs<VeriVariable>()->SetInitialValue(nullptr);
      const auto place = static_cast<veri_location>(declaration->Linefile());
      auto* target = new VeriIdRef(VeriLex::Intern(declaration->GetId()->Name()), place);
      VeriAssignmentOperator* assignment = veri_assignment(target, VERI_ASSIGN_OP, value, place);
      if (!body->statements) body->statements = std::make_unique<VeriStatements>();
      VeriStatement* statement = new VeriBlockingAssign(assignment, nullptr, place);
      body->statements->InsertBefore(pos++, statement);
    }
  }
}

} // namespace

VeriModuleItem* veri_end_subprogram(VeriScopeHead* head, VeriModuleItems* ports, VeriBody* body, const char* label,
                                    veri_location label_place) {
  const std::unique_ptr<VeriScopeHead> owned_head(head);
  const std::unique_ptr<VeriBody> owned_body(body);
  veri_check_closing_label(head->id->GetId()->Name(), label, label_place);
  assign_initial_values(body);
  VeriModuleItems* declarations = veri_join(ports, body ? body->declarations.release() : nullptr);
  VeriStatements* statements = body ? body->statements.release() : nullptr;
  const bool is_broken = Message::ErrorCount() != head->errors; // of which that was told
  if (!statements && !is_broken) veri_need_systemverilog(head->place, "a subprogram without statements");
  if (statements && statements->Size() > 1 && !is_broken)
    veri_need_systemverilog(head->place, "a subprogram with several statements");
  VeriIdDef* id = head->id->GetId();
  std::unique_ptr<VeriScope> scope = pop_scope(head);
  VeriModuleItem* item = nullptr;
  if (head->token == VERI_FUNCTION)
    item = new VeriFunctionDecl(head->is_automatic, head->type.release(), head->id.release(), declarations, statements,
                                std::move(scope), head->place);
  else
    item = new VeriTaskDecl(head->id.release(), declarations, statements, std::move(scope), head->is_automatic,
                            head->place);
  id->SetModuleItem(item);
  return item;
}

namespace {

/// Registers the simple names in a connection or target as nets that a declaration may lack.
class ImplicitNets : public VeriVisitor {
public:
  void Visit(VeriIdRef& name) override { parser.scope->RegisterPotentialImplicitNet(&name); }
  void Visit(VeriSelectedName&) override {}
  void Visit(VeriFunctionCall& call) override {
    for (VeriExpression* argument : ItemsOf<VeriExpression*>(call.Args())) TraverseNode(argument);
  }
  void Visit(VeriPortConnect& connection) override {
    if (!connection.IsImplicit()) TraverseNode(connection.Connection());
  }
  void Visit(VeriIdDecl&) override {}
};

} // namespace

VeriNetRegAssign* veri_net_assign(VeriExpression* target, VeriExpression* value, veri_location place) {
  if (VeriNode::Dialect() != VERI_95) ImplicitNets().TraverseNode(target);
  return new VeriNetRegAssign(target, value, place);
}

VeriInst* veri_new_instance(const char* name, VeriRanges* ranges, VeriExpressions* connections, veri_location place) {
  const bool is_empty = connections->Size() == 1 && [&] {
    const auto* only = static_cast<const VeriPortConnect*>(connections->GetFirst());
    return !only->NamedFormal() && !only->Connection();
  }();
  if (is_empty) {
    delete connections;
    connections = new VeriExpressions;
  }
  VeriIdDecl* declaration = nullptr;
  if (name) {
    declaration = new VeriIdDecl(std::make_unique<VeriInstId>(name, place), ranges, nullptr, place);
    declare_id(declaration->GetId());
  }
  auto* inst = new VeriInst(declaration, connections, place);
  ImplicitNets().TraverseNode(inst);
  return inst;
}

VeriExpression* veri_implicit_connection(const char* formal, veri_location place) {
  veri_need_systemverilog(place, "an implicit port connection");
  return new VeriPortConnect(formal, new VeriIdRef(formal, place), true, place);
}

VeriModuleItem* veri_instantiation(const char* module, VeriStrength* strength, VeriExpressions* parameters,
                                   VeriNodes<VeriInst>* insts, veri_location place) {
  for (const VeriExpression* value : ItemsOf<const VeriExpression*>(parameters)) {
    const auto* named = dynamic_cast<const VeriPortConnect*>(value);
    if (named && named->NamedFormal()) veri_need_verilog_2001(place, "a parameter given by its name");
  }
  auto* item = new VeriModuleInstantiation(new VeriIdRef(module, place), strength, parameters, insts, place);
  for (VeriInst* inst : *insts) {
    VeriInstId* id = inst->GetInstId();
    if (!id) continue;
    id->SetModuleReference(module);
    id->SetModuleItem(item);
  }
  return item;
}

VeriModuleItem* veri_gate_instantiation(unsigned token, VeriStrength* strength, VeriExpressions* delay,
                                        VeriNodes<VeriInst>* insts, veri_location place) {
  auto* item = new VeriGateInstantiation(token, strength, delay, insts, place);
  for (VeriInst* inst : *insts)
    if (inst->GetId()) inst->GetId()->SetModuleItem(item);
  return item;
}

VeriScopeHead* veri_open_generate_for(const char* genvar, veri_location place) {
  veri_need_systemverilog(place, "a genvar declared in a loop");
  auto* head = new VeriScopeHead(VERI_FOR, place);
  push_scope(head, SCOPE_GENERATE, nullptr);
  head->id.reset(veri_declare_genvar(genvar, place));
  return head;
}

VeriModuleItem* veri_generate_for(const char* genvar, VeriExpression* initial, VeriExpression* condition,
                                  VeriExpression* step, VeriModuleItem* body, VeriScopeHead* own_genvar,
                                  veri_location place) {
  const std::unique_ptr<VeriScopeHead> head(own_genvar);
  std::unique_ptr<VeriScope> scope = head ? pop_scope(head.get()) : nullptr;
  auto* name = new VeriIdRef(head ? VeriLex::Intern(head->id->GetId()->Name()) : genvar, place);
  auto* assign = new VeriGenVarAssign(name, initial, place);
  VeriIdDecl* declared = head ? head->id.release() : nullptr;
  return new VeriGenerateFor(assign, condition, step, body, declared, std::move(scope), place);
}

VeriScopeHead* veri_open_generate_block(const char* label, veri_location place) {
  auto* head = new VeriScopeHead(VERI_GENERATE, place);
  auto id = std::make_unique<VeriBlockId>(label ? label : "", place);
  if (!label) id->Set(IDF_ANONYMOUS);
  if (label) {
    // Blocks of the branches of one construct may share a name; one at most comes to exist (clause 12.4.3).
    const VeriIdDef* former = parser.scope->FindHere(label);
    const bool is_branch =
        former && former->IsBlock() && former->LocalScope() && former->LocalScope()->Kind() == SCOPE_GENERATE;
    if (!is_branch) declare_id(id.get());
  }
  push_scope(head, SCOPE_GENERATE, id.get());
  head->id = std::make_unique<VeriIdDecl>(std::move(id), nullptr, nullptr, place);
  return head;
}

VeriModuleItem* veri_end_generate_block(VeriScopeHead* head, VeriModuleItems* items, const char* label,
                                        veri_location label_place) {
  const std::unique_ptr<VeriScopeHead> owned(head);
  const char* name = head->id->GetId()->Name();
  veri_check_closing_label(*name ? name : nullptr, label, label_place);
  std::unique_ptr<VeriScope> scope = pop_scope(head);
  VeriIdDef* id = head->id->GetId();
  auto* block = new VeriGenerateBlock(head->id.release(), items, std::move(scope), head->place);
  id->SetModuleItem(block);
  return block;
}

VeriModuleItem* veri_end_single_generate(VeriScopeHead* head, VeriModuleItem* item) {
  if (item) head->place = static_cast<veri_location>(item->Linefile());
  return veri_end_generate_block(head, veri_append_item(new VeriModuleItems, item, nullptr), nullptr, 0);
}

void veri_need_generate(veri_location place) { veri_need_verilog_2001(place, "a generate construct"); }

VeriScopeHead* veri_open_specify(veri_location place) {
  auto* head = new VeriScopeHead(VERI_SPECIFY, place);
  push_scope(head, SCOPE_BLOCK, nullptr);
  return head;
}

VeriModuleItem* veri_end_specify(VeriScopeHead* head, VeriModuleItems* items) {
  const std::unique_ptr<VeriScopeHead> owned(head);
  std::unique_ptr<VeriScope> scope = pop_scope(head);
  return new VeriSpecifyBlock(items, std::move(scope), head->place);
}

VeriScopeHead* veri_open_property(unsigned token, const char* name, veri_location place) {
  auto* head = new VeriScopeHead(token, place);
  std::unique_ptr<VeriIdDef> id;
  if (token == VERI_PROPERTY)
    id = std::make_unique<VeriPropertyId>(name, place);
  else
    id = std::make_unique<VeriSequenceId>(name, place);
  declare_id(id.get());
  push_scope(head, SCOPE_SUBPROGRAM, id.get());
  head->id = std::make_unique<VeriIdDecl>(std::move(id), nullptr, nullptr, place);
  return head;
}

VeriModuleItem* veri_property_port(VeriTypeDef* type, VeriIdDecl* id) {
  const auto place = static_cast<veri_location>(id->Linefile());
  VeriDataDecl* decl = new_decl(0, 0, type, veri_list<VeriIdDecl>(id), place);
  complete(decl, id, 0);
  id->IdAs<VeriVariable>()->SetDir(VERI_INPUT);
  declare_id(id->GetId());
  return decl;
}

VeriModuleItem* veri_end_property(VeriScopeHead* head, VeriModuleItems* ports, VeriModuleItems* declarations,
                                  VeriExpression* body, const char* label, veri_location label_place) {
  const std::unique_ptr<VeriScopeHead> owned(head);
  veri_check_closing_label(head->id->GetId()->Name(), label, label_place);
  std::unique_ptr<VeriScope> scope = pop_scope(head);
  VeriIdDef* id = head->id->GetId();
  VeriModuleItem* item = nullptr;
  if (head->token == VERI_PROPERTY)
    item = new VeriPropertyDecl(head->id.release(), ports, declarations, body, std::move(scope), head->place);
  else
    item = new VeriSequenceDecl(head->id.release(), ports, declarations, body, std::move(scope), head->place);
  id->SetModuleItem(item);
  return item;
}

VeriExpression* veri_sequence(unsigned token, VeriExpression* left, VeriExpression* control, VeriExpression* right,
                              veri_location place, VeriExpressions* list) {
  auto* sequence = new VeriSequenceOperator(token, left, control, right, place);
  if (list) sequence->SetList(list);
  return veri_bounded(sequence);
}

VeriModuleItem* veri_nested_module(VeriDesignUnit* unit, veri_location place) {
  if (!unit) return nullptr;
  auto* module = static_cast<VeriModule*>(unit);
  module->GetId()->SetLibrary(parser.work);
  if (*module->Name()) {
    declare_id(module->GetId());
    veri_file::NewlyFound().Insert(module->GetId());
  }
  return new VeriNestedModule(module, place);
}

VeriScopeHead* veri_open_modport(const char* name, veri_location place) {
  auto* head = new VeriScopeHead(VERI_MODPORT, place);
  auto id = std::make_unique<VeriModportId>(name, place);
  declare_id(id.get());
  push_scope(head, SCOPE_BLOCK, id.get());
  head->id = std::make_unique<VeriIdDecl>(std::move(id), nullptr, nullptr, place);
  parser.modport_direction = VERI_INOUT;
  return head;
}

VeriModport* veri_end_modport(VeriScopeHead* head, VeriNodes<VeriModportPorts>* ports) {
  const std::unique_ptr<VeriScopeHead> owned(head);
  std::unique_ptr<VeriScope> scope = pop_scope(head);
  return new VeriModport(head->id.release(), ports, std::move(scope), head->place);
}

void veri_modport_direction(unsigned direction) { parser.modport_direction = direction; }

VeriModportPorts* veri_modport_port(const char* name, VeriExpression* expression, veri_location place) {
  VeriIdDecl* declaration = veri_new_variable(name, nullptr, expression, place);
  declaration->IdAs<VeriVariable>()->SetDir(parser.modport_direction);
  declare_id(declaration->GetId());
  return new VeriModportPorts(parser.modport_direction, declaration, place);
}

VeriModportPorts* veri_modport_prototype(VeriScopeHead* head, VeriModuleItems* ports) {
  const std::unique_ptr<VeriScopeHead> owned(head);
  const std::unique_ptr<VeriModuleItems> owned_ports(ports);
  const std::unique_ptr<VeriScope> scope = pop_scope(head);
  const std::string name = head->id->GetId()->Name();
  head->id.reset();
  return veri_modport_port(name.c_str(), nullptr, head->place);
}

VeriTable* veri_add_row(VeriTable* table, std::string* row) {
  table->AddRow(std::move(*row));
  delete row;
  return table;
}

std::string* veri_join_row(std::string* row, std::string* symbols) {
  *row += ":" + *symbols;
  delete symbols;
  return row;
}

// Statements.

VeriBody* veri_add_declaration(VeriBody* body, VeriModuleItem* item, Map* attributes) {
  if (!body) body = new VeriBody;
  if (!body->declarations) body->declarations = std::make_unique<VeriModuleItems>();
  veri_append_item(body->declarations.get(), item, attributes);
  return body;
}

VeriBody* veri_add_imports(VeriBody* body, VeriModuleItems* imports, Map* attributes) {
  if (!body) body = new VeriBody;
  if (!body->declarations) body->declarations = std::make_unique<VeriModuleItems>();
  veri_append_items(body->declarations.get(), imports, attributes);
  return body;
}

VeriBody* veri_add_statement(VeriBody* body, VeriStatement* statement) {
  if (!body) body = new VeriBody;
  if (!body->statements) body->statements = std::make_unique<VeriStatements>();
  body->statements->Insert(statement);
  return body;
}

VeriScopeHead* veri_open_block(unsigned token, const char* label, veri_location place) {
  auto* head = new VeriScopeHead(token, place);
  head->outer = parser.block;
  head->base = parser.scope;
  if (label) {
    // The name of a block is no declaration of the unnamed block around it.
    auto id = std::make_unique<VeriBlockId>(label, place);
    declare_in(parser.scope, id.get());
    push_scope(head, SCOPE_BLOCK, id.get());
    head->id = std::make_unique<VeriIdDecl>(std::move(id), nullptr, nullptr, place);
  }
  parser.block = head;
  return head;
}

VeriStatement* veri_end_block(VeriScopeHead* head, VeriBody* body, const char* label, veri_location label_place) {
  const std::unique_ptr<VeriScopeHead> owned_head(head);
  const std::unique_ptr<VeriBody> owned_body(body);
  veri_check_closing_label(head->id ? head->id->GetId()->Name() : nullptr, label, label_place);
  assign_initial_values(body);
  std::unique_ptr<VeriScope> scope = pop_scope(head);
  VeriModuleItems* declarations = body ? body->declarations.release() : nullptr;
  VeriStatements* statements = body && body->statements ? body->statements.release() : new VeriStatements;
  VeriIdDef* id = head->id ? head->id->GetId() : nullptr;
  VeriStatement* block = nullptr;
  if (head->token == VERI_FORK)
    block =
        new VeriParBlock(head->id.release(), declarations, statements, std::move(scope), head->join_token, head->place);
  else
    block = new VeriSeqBlock(head->id.release(), declarations, statements, std::move(scope), head->place);
  if (id) id->SetModuleItem(block);
  return block;
}

VeriScopeHead* veri_open_for(VeriTypeDef* type, VeriIdDecl* id, veri_location place) {
  veri_need_systemverilog(place, "a declaration in a for statement");
  auto* head = new VeriScopeHead(VERI_FOR, place);
  push_scope(head, SCOPE_BLOCK, nullptr);
  head->declaration.reset(static_cast<VeriDataDecl*>(veri_data_decl(type, veri_list<VeriIdDecl>(id), place)));
  id->GetId()->Set(IDF_AUTOMATIC);
  return head;
}

VeriScopeHead* veri_continue_for(VeriScopeHead* head, VeriIdDecl* id) {
  VeriDataDecl* decl = head->declaration.get();
  decl->Ids()->Insert(id);
  id->SetParent(decl);
  complete(decl, id, 0);
  id->GetId()->Set(IDF_AUTOMATIC);
  declare_net_reg(id);
  return head;
}

VeriScopeHead* veri_continue_for(VeriScopeHead* head, VeriTypeDef* type, VeriIdDecl* id, veri_location place) {
  const std::unique_ptr<VeriTypeDef> owned(type);
  const VeriTypeDef* first = head->declaration->DataType();
  if (!first || first->Image() != type->Image())
    veri_unsupported(place, "variables of several types in a for statement");
  return veri_continue_for(head, id);
}

namespace {

/// $left and its like, of one dimension of an array.
VeriExpression* array_query(const char* function, const VeriName* array, unsigned dimension, veri_location place) {
  auto* args = veri_list<VeriExpression>(array->Copy());
  args->Insert(veri_number_literal(static_cast<int>(dimension), place));
  return new VeriSystemFunctionCall(function, args, place);
}

} // namespace

VeriScopeHead* veri_open_foreach(VeriName* array, std::vector<std::string>* names, veri_location place) {
  const std::unique_ptr<VeriName> owned_array(array);
  const std::unique_ptr<std::vector<std::string>> owned_names(names);
  std::unique_ptr<VeriScopeHead> head;
  unsigned dimension = 0;
  for (const std::string& name : *names) {
    dimension++;
    if (name.empty()) continue;
    VeriExpression* first = array_query("$left", array, dimension, place);
    VeriIdDecl* variable = veri_new_variable(name.c_str(), nullptr, first, place);
    std::unique_ptr<VeriScopeHead> loop(
        veri_open_for(new VeriPrimitiveTypeDef(VERI_INT, 0, nullptr, place), variable, place));
    auto in_order = [&](VeriExpression* value) {
      return veri_binary(VERI_STAR, value, array_query("$increment", array, dimension, place), place);
    };
    auto reference = [&] { return new VeriIdRef(VeriLex::Intern(name.c_str()), place); };
    loop->condition.reset(veri_binary(VERI_GREATER_EQ, in_order(reference()),
                                      in_order(array_query("$right", array, dimension, place)), place));
    VeriExpression* step = array_query("$increment", array, dimension, place);
    loop->step.reset(
        new VeriBlockingAssign(veri_assignment(reference(), VERI_MINUS_ASSIGN, step, place), nullptr, place));
    loop->around = std::move(head);
    head = std::move(loop);
  }
  if (!head) { // no name at all: the body runs for nothing
    veri_unsupported(place, "a foreach loop without variables");
    head = std::make_unique<VeriScopeHead>(VERI_FOREACH, place);
  }
  return head.release();
}

VeriStatement* veri_foreach(VeriScopeHead* head, VeriStatement* body) {
  std::unique_ptr<VeriScopeHead> loop(head);
  while (loop) {
    std::unique_ptr<VeriScopeHead> around = std::move(loop->around);
    VeriExpression* condition = loop->condition.release();
    auto* steps = veri_list<VeriStatement>(loop->step.release());
    const veri_location place = loop->place;
    if (!condition) {
      delete steps;
      return body;
    }
    body = veri_for(loop.release(), nullptr, condition, steps, body, place);
    loop = std::move(around);
  }
  return body;
}

namespace {

/// The event of a list that alone counts only while a condition holds; null for none or several.
VeriEventExpression* conditional_event(const VeriExpressions& events) {
  VeriEventExpression* found = nullptr;
  for (VeriExpression* expression : events) {
    auto* event = dynamic_cast<VeriEventExpression*>(expression);
    if (!event || !event->Condition()) continue;
    if (found) return nullptr;
    found = event;
  }
  return found;
}

/// The conditional statement whose last branch is what the clock does when each of the other events, which are resets
/// and their like, has a branch before it; null when the statement has no such form.
VeriConditionalStatement* clocked_branch(VeriStatement* statement, unsigned others) {
  if (auto* block = dynamic_cast<VeriSeqBlock*>(statement)) statement = block->OnlyStatement();
  auto* conditional = dynamic_cast<VeriConditionalStatement*>(statement);
  while (conditional && --others) conditional = dynamic_cast<VeriConditionalStatement*>(conditional->Else());
  return conditional;
}

} // namespace

// An event that counts while a condition holds is the statement under the condition; beside resets that is the
// statement behind their branches. In any other form the event keeps its condition.
VeriStatement* veri_event_statement(VeriExpressions* events, VeriStatement* statement, veri_location place) {
  VeriEventExpression* event = conditional_event(*events);
  const unsigned others = events->Size() - 1;
  if (event && !others) {
    statement = new VeriConditionalStatement(event->TakeCondition(), statement, nullptr, 0, place);
  } else if (event && event->IsEdge()) {
    VeriConditionalStatement* last = clocked_branch(statement, others);
    if (VeriStatement* branch = last ? last->TakeElse() : nullptr)
      last->SetElse(new VeriConditionalStatement(event->TakeCondition(), branch, nullptr, 0, place));
  }
  return new VeriEventControlStatement(events, statement, place);
}

VeriStatement* veri_for(VeriScopeHead* head, VeriStatements* initials, VeriExpression* condition, VeriStatements* steps,
                        VeriStatement* body, veri_location place) {
  const std::unique_ptr<VeriScopeHead> owned(head);
  std::unique_ptr<VeriScope> scope = head ? pop_scope(head) : nullptr;
  VeriDataDecl* declaration = head ? head->declaration.release() : nullptr;
  return new VeriFor(declaration, initials, condition, steps, body, std::move(scope), place);
}

VeriAssignmentOperator* veri_assignment(VeriExpression* target, unsigned token, VeriExpression* value,
                                        veri_location place) {
  return new VeriAssignmentOperator(target, token, value, place);
}

VeriDelayOrEventControl* veri_delay_control(VeriExpressions* delay, veri_location place) {
  const std::unique_ptr<VeriExpressions> owned(delay);
  return new VeriDelayOrEventControl(delay->RemoveLast(), nullptr, nullptr, place);
}

VeriStatement* veri_delayed_statement(VeriExpressions* delay, VeriStatement* statement, veri_location place) {
  const std::unique_ptr<VeriExpressions> owned(delay);
  return new VeriDelayControlStatement(delay->RemoveLast(), statement, place);
}

// Expressions.

namespace {

VeriExpression* zero(unsigned long place) { return new VeriIntLiteral("0", place); }

bool is_too_deep(const VeriExpression* expression, veri_location place) {
  if (expression->Depth() < VeriExpression::max_depth) return false;
  veri_report_stack_overflow(place);
  return true;
}

} // namespace

VeriExpression* veri_bounded(VeriExpression* expression) {
  const auto place = static_cast<veri_location>(expression->Linefile());
  if (!is_too_deep(expression, place)) return expression;
  delete expression;
  return zero(place);
}

VeriExpression* veri_unary(unsigned token, VeriExpression* operand, veri_location place, Map* attributes) {
  return veri_bounded(veri_with(new VeriUnaryOperator(token, operand, place), attributes));
}

VeriExpression* veri_binary(unsigned token, VeriExpression* left, VeriExpression* right, veri_location place,
                            Map* attributes) {
  return veri_bounded(veri_with(new VeriBinaryOperator(token, left, right, place), attributes));
}

VeriExpression* veri_operand(VeriAssignmentOperator* assignment, veri_location place, veri_operand_value value) {
  veri_need_systemverilog(place, "an assignment in an expression");
  assignment->SetIsOperand(value);
  return veri_bounded(assignment);
}

VeriExpression* veri_refused_operand(veri_location place) { return zero(place); }

VeriIndexedName* veri_index(VeriName* prefix, VeriExpression* index) {
  const auto place = static_cast<veri_location>(prefix->Linefile());
  return veri_add_index(new VeriIndexedName(prefix, place), index);
}

VeriIndexedName* veri_add_index(VeriIndexedName* name, VeriExpression* index) {
  const VeriExpressions& indices = name->Indices();
  if (indices.Size() && indices.GetLast()->AsRange()) name->Error("range must be the final index in the indexed name");
  if (indices.Size())
    veri_need_verilog_2001(static_cast<veri_location>(name->Linefile()), "an index into an element of an array");
  name->AddIndex(veri_bounded(index));
  return name;
}

VeriName* veri_selected(VeriName* prefix, const char* suffix, veri_location place) {
  if (is_too_deep(prefix, place)) return prefix;
  return new VeriSelectedName(prefix, suffix, place);
}

VeriExpression* veri_pattern(VeriExpressions* values, veri_location place) {
  const std::unique_ptr<VeriExpressions> owned(values);
  std::vector<VeriAssignmentPattern::Part> parts;
  for (VeriExpression* value : *values) parts.push_back({nullptr, false, value});
  values->Reset();
  return veri_bounded(new VeriAssignmentPattern(std::move(parts), place));
}

VeriExpression* veri_keyed_pattern(VeriPatternParts* parts, veri_location place) {
  const std::unique_ptr<VeriPatternParts> owned(parts);
  return veri_bounded(new VeriAssignmentPattern(std::exchange(parts->parts, {}), place));
}

/// '{4{x}} says of each element what '{default: x} says.
VeriExpression* veri_replicated_pattern(VeriExpression* count, VeriExpressions* values, veri_location place) {
  if (values->Size() != 1) veri_unsupported(place, "several values in a replicated assignment pattern");
  delete count;
  const std::unique_ptr<VeriExpressions> owned(values);
  VeriPatternParts* parts = veri_add_part(nullptr, nullptr, values->RemoveLast());
  return veri_keyed_pattern(parts, place);
}

VeriPatternParts* veri_add_part(VeriPatternParts* parts, VeriExpression* key, VeriExpression* value) {
  if (!parts) parts = new VeriPatternParts;
  parts->parts.push_back({key, !key, value});
  return parts;
}

VeriExpressions* veri_argument_list(VeriExpression* first) {
  auto* arguments = new VeriExpressions;
  if (first) arguments->Insert(first);
  return arguments;
}

VeriExpressions* veri_append_argument(VeriExpressions* arguments, VeriExpression* next) {
  const auto place = static_cast<veri_location>(VeriLex::GetLineFile());
  if (!arguments->Size()) arguments->Insert(new VeriPortOpen(place));
  arguments->Insert(next ? next : new VeriPortOpen(place));
  return arguments;
}

namespace {

VeriExpression* vector_literal(const std::string& text, unsigned size, veri_location place) {
  constexpr size_t short_text = 256; // tells a width within the limits by any base
  if (text.size() <= short_text && size <= veri_max_width) return new VeriVectorLiteral(text.c_str(), place);
  const VeriNullStatement here(place); // where messages are raised
  const VeriNodeScope scope(&here);
  OwnedValue value = VeriValue::FromLiteral(text);
  if (!value) value = VeriValue::FromNumber(0, 1, /*is_signed=*/false); // too wide, which was reported
  return new VeriVectorLiteral(text.c_str(), std::move(value), place);
}

} // namespace

/// The scanner warned when the number has more than 32 bits.
VeriExpression* veri_number_literal(int number, veri_location place) {
  const std::string text = std::to_string(static_cast<unsigned>(number));
  return new VeriIntLiteral(text.c_str(), place);
}

VeriExpression* veri_real_literal(double number, veri_location place) {
  std::string text = OwnedString(Strings::dtoa(number)).get();
  if (text.find_first_of(".e") == std::string::npos) text += ".0";
  return new VeriRealLiteral(text.c_str(), VeriValue::FromReal(number), place);
}

VeriExpression* veri_sized_literal(int size, const char* base, const char* digits, veri_location place) {
  if (!size) {
    veri_error(place, "sized number cannot have 0 size");
    size = 1;
  }
  const std::string text = std::to_string(static_cast<unsigned>(size)) + base + digits;
  if (!veri_literal_fits(static_cast<unsigned>(size), base, digits)) veri_read_literal(text.c_str(), place);
  return vector_literal(text, static_cast<unsigned>(size), place);
}

VeriExpression* veri_based_literal(const char* base, const char* digits, veri_location place) {
  const std::string text = std::string(base) + digits;
  veri_read_literal(text.c_str(), place);
  return vector_literal(text, 0, place);
}

VeriExpression* veri_unsized_literal(const char* text, veri_location place) {
  veri_need_systemverilog(place, text);
  return vector_literal(text, 0, place);
}

VeriExpression* veri_time_literal(const char* text, veri_location place) {
  const std::string number(text, std::strspn(text, "0123456789._"));
  return new VeriTimeLiteral(text, VeriValue::FromReal(Strings::atof(number.c_str())), place);
}

VeriExpression* veri_string_literal(const char* text, veri_location place) {
  std::string source = "\"";
  for (const char* c = text; *c; c++) {
    switch (*c) {
    case '\n': source += "\\n"; break;
    case '\t': source += "\\t"; break;
    case '\r': source += "\\r"; break;
    case '"':
    case '\\': source += '\\'; [[fallthrough]];
    default: source += *c; break;
    }
  }
  source += '"';
  return new VeriVectorLiteral(source.c_str(), VeriValue::FromString(text), place);
}
