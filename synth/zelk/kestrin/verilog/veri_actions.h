// What the actions of the grammar do: nodes that take more than a constructor, declarations, scopes while they are
// open, and the parser's own messages. Only the grammar includes this file, and whoever runs the parser for VeriParser.
//
// Everything that an action is handed is consumed. Texts are the scanner's. `place` is a location, never 0.
#ifndef KESTRIN_VERILOG_VERI_ACTIONS_H
#define KESTRIN_VERILOG_VERI_ACTIONS_H

#include <memory>
#include <string>
#include <vector>

#include "util/message.h"
#include "verilog/veri_lex.h"
#include "verilog/veri_message.h"
#include "verilog/veriassertion.h"
#include "verilog/vericonfiguration.h"
#include "verilog/verilibrary.h"
#include "verilog/verimodule.h"
#include "verilog/verimoduleitem.h"
#include "verilog/verispecify.h"
#include "verilog/veristatement.h"

using veri_location = unsigned;
using VeriRanges = VeriNodes<VeriRange>;

/// Codes of names that the parser tells apart, above those of the scanner.
enum veri_name_code : int { VERI_TYPE_ID = 1001, VERI_PACKAGE_ID = 1002, VERI_STRAY_UNIT = 1003 };
/// What the parser gets behind a syntax error.
enum veri_resume_code : int { VERI_RESUMED = 1004, VERI_RESUMED_DECLARATION = 1005 };

class VeriParser {
public:
  /// Parses what the scanner has open into the library. 0, 1 after an abort, 2 after an overflow of the parser's stack.
  static int Parse(VeriLibrary* work);
  /// The scope that declarations go to now: that of the library between design units; null outside of a parse.
  static VeriScope* PresentScope();
  /// Forgets which packages were refused.
  static void FreeStaticMemory();
};

/// A pattern of keys and values on its way.
struct VeriPatternParts {
  std::vector<VeriAssignmentPattern::Part> parts;
  VeriPatternParts() = default;
  VeriPatternParts(const VeriPatternParts&) = delete;
  VeriPatternParts& operator=(const VeriPatternParts&) = delete;
  ~VeriPatternParts();
};

/// Declarations and statements of a block or subprogram.
struct VeriBody {
  std::unique_ptr<VeriModuleItems> declarations; // null without
  std::unique_ptr<VeriStatements> statements;    // null without
};

/// A construct with a scope of its own whose end is not read yet. Deleting it closes the scope.
struct VeriScopeHead {
  explicit VeriScopeHead(unsigned token_, veri_location place_) : token(token_), place(place_) {}
  VeriScopeHead(const VeriScopeHead&) = delete;
  VeriScopeHead& operator=(const VeriScopeHead&) = delete;
  ~VeriScopeHead();

  unsigned token;
  veri_location place;
  std::unique_ptr<VeriDesignUnitId> unit_id;  // of a design unit
  std::unique_ptr<VeriIdDecl> id;             // of anything else that has a name
  std::unique_ptr<VeriScope> scope;           // null while an unnamed block has no declarations
  std::unique_ptr<VeriTypeDef> type;          // of a function
  std::unique_ptr<VeriDataDecl> declaration;  // of a loop
  std::unique_ptr<VeriScopeHead> around;      // of a loop over an array: the loop over the dimension before
  std::unique_ptr<VeriTimeLiteral> time_unit; // of a design unit
  std::unique_ptr<VeriTimeLiteral> time_precision;
  std::unique_ptr<VeriExpression> condition; // of a loop over an array
  std::unique_ptr<VeriStatement> step;
  VeriScopeHead* outer = nullptr;          // the block or unit around
  VeriScope* base = nullptr;               // where the scope of a block hangs
  unsigned errors = Message::ErrorCount(); // when it was opened
  unsigned celldefine = 0;
  unsigned default_nettype = 0;
  unsigned join_token = VERI_JOIN; // of a parallel block
  bool is_automatic = false;
};

// The scanner's side.
/// With the code of the name that an identifier is.
veri_token veri_next_token();
/// A syntax error at the last token, with what the parser has open. Whether it is news: at a token where reading went
/// on after another error it is not.
bool veri_broken(std::vector<int> open, bool wants_semicolon);
/// Skips what the error spoils, when the parser keeps so many of the open parts; the tokens that follow begin with
/// VERI_RESUMED or VERI_RESUMED_DECLARATION. False at the end of the input.
bool veri_recover(size_t kept);
/// Drops tokens up to this one, which comes next; pairs of `opening` and this one in between are skipped as a whole.
void veri_skip_to(int code, int opening = 0);

// Messages.
void veri_report_stack_overflow(veri_location place);
/// What would have been legal, for the end of a syntax error: "; expecting ...".
std::string veri_expected_hint(std::vector<unsigned> tokens);
void veri_need_systemverilog(veri_location place, const char* feature);
void veri_need_verilog_2001(veri_location place, const char* feature);
void veri_unsupported(veri_location place, const char* feature);
/// The two words of a strength: one for each value, not both of them none (IEEE 1364-2005 clause 6.1.4).
void veri_check_strengths(unsigned first, unsigned second, veri_location place);
void veri_check_delays(const VeriExpressions& delays, veri_location place);

// Lists.
template <class T> void veri_discard(T* node) { delete node; }
template <class T> VeriNodes<T>* veri_list(T* first) {
  auto* list = new VeriNodes<T>;
  list->Insert(first);
  return list;
}
template <class T, class U> VeriNodes<T>* veri_append(VeriNodes<T>* list, U* next) {
  list->Insert(next);
  return list;
}
VeriModuleItems* veri_join(VeriModuleItems* items, VeriModuleItems* more);

// Attributes. Null maps are empty.
Map* veri_add_attribute(Map* attributes, const char* name, VeriExpression* value, veri_location place);
Map* veri_join_attributes(Map* attributes, Map* more, veri_location place);
/// Adds the pending pragmas.
Map* veri_take_pragmas(Map* attributes);
/// What a semicolon just closed has the pragmas in front of that.
template <class T> T* veri_closed(T* node) {
  node->AddAttributes(veri_take_pragmas(nullptr));
  return node;
}
template <class T, class U> T* veri_with(U* node, Map* attributes) {
  node->AddAttributes(attributes);
  return node;
}
template <class T> T* veri_with(T* node, Map* attributes) { return veri_with<T, T>(node, attributes); }

// Design units.
VeriScopeHead* veri_open_unit(unsigned token, const char* name, veri_location place, unsigned lifetime = 0);
VeriDesignUnit* veri_new_module(VeriScopeHead* head, VeriModuleItems* imports, VeriModuleItems* parameters,
                                VeriExpressions* ports, VeriModuleItems* items, Map* attributes);
VeriDesignUnit* veri_new_extern_module(VeriScopeHead* head, VeriModuleItems* imports, VeriModuleItems* parameters,
                                       VeriExpressions* ports, Map* attributes);
VeriDesignUnit* veri_new_config(const char* name, VeriNodes<VeriName>* design, VeriNodes<VeriConfigRule>* rules,
                                veri_location place);
VeriDesignUnit* veri_new_package(VeriScopeHead* head, VeriModuleItems* items, Map* attributes);
/// Hands the unit over to the library.
void veri_finish_unit(VeriDesignUnit* unit, Map* attributes);
void veri_add_global(VeriModuleItem* item, Map* attributes, veri_location place);
void veri_add_globals(VeriModuleItems* items, Map* attributes, veri_location place);
void veri_check_closing_label(const char* name, const char* label, veri_location place);
void veri_check_unit_label(const VeriDesignUnit* unit, const char* label);
void veri_time_unit(const char* unit, const char* precision);

// Ports and parameters of a head.
VeriModuleItem* veri_param_port(unsigned token, VeriTypeDef* type, VeriIdDecl* id, veri_location place);
VeriModuleItem* veri_local_type(VeriModuleItem* type);
/// `name = type` without a keyword, behind a parameter that stands for a type.
VeriModuleItems* veri_append_type_port(VeriModuleItems* ports, const char* name, VeriRanges* ranges, VeriTypeDef* type,
                                       veri_location place);
VeriModuleItems* veri_append_param_port(VeriModuleItems* ports, VeriIdDecl* id);
VeriExpressions* veri_port_list(VeriExpressions* ports);
VeriExpression* veri_ansi_port(unsigned direction, unsigned net_type, VeriTypeDef* type, VeriIdDecl* id,
                               veri_location place);
VeriExpression* veri_interface_port(const char* interface, const char* modport, VeriIdDecl* id, veri_location place);
/// Attributes of a port are those of its declaration.
VeriExpression* veri_with_port_attributes(VeriExpression* port, Map* attributes);
VeriExpressions* veri_continue_ansi_port(VeriExpressions* ports, VeriIdDecl* id, Map* attributes);
VeriDataDecl* veri_tf_port(unsigned direction, VeriTypeDef* type, VeriIdDecl* id, veri_location place);
VeriModuleItems* veri_append_tf_port(VeriModuleItems* ports, VeriDataDecl* port);
VeriModuleItems* veri_continue_tf_port(VeriModuleItems* ports, VeriIdDecl* id, Map* attributes);

// Declarations.
VeriIdDecl* veri_new_variable(const char* name, VeriRanges* ranges, VeriExpression* value, veri_location place);
VeriIdDecl* veri_new_param(const char* name, VeriRanges* ranges, VeriExpression* value, veri_location place);
VeriIdDecl* veri_new_member(const char* name, VeriRanges* ranges, veri_location place);
VeriIdDecl* veri_new_enum_element(const char* name, VeriExpression* value, veri_location place);
/// name[first:last] of an enumeration: a name for each number. The value is that of the first one.
VeriIdDecls* veri_append_enum_elements(VeriIdDecls* elements, const char* name, int first, int last,
                                       VeriExpression* value, veri_location place);
VeriIdDecl* veri_declare_genvar(const char* name, veri_location place);
VeriModuleItem* veri_port_decl(unsigned direction, unsigned net_type, VeriTypeDef* type, VeriIdDecls* ids,
                               veri_location place);
VeriModuleItem* veri_tf_port_decl(unsigned direction, VeriTypeDef* type, VeriIdDecls* ids, veri_location place);
/// Strength, `scalared` and delay are kept in a node when there are any.
VeriNetType* veri_net_type(unsigned token, VeriStrength* strength, unsigned scalared, VeriExpressions* delay,
                           veri_location place);
VeriModuleItem* veri_net_decl(VeriNetType* net_type, VeriTypeDef* type, VeriIdDecls* ids, veri_location place);
VeriModuleItem* veri_const_decl(VeriTypeDef* type, VeriIdDecls* ids, veri_location place);
VeriModuleItem* veri_data_decl(VeriTypeDef* type, VeriIdDecls* ids, veri_location place);
VeriModuleItem* veri_lifetime_decl(unsigned lifetime, VeriTypeDef* type, VeriIdDecls* ids, veri_location place);
VeriModuleItem* veri_param_decl(unsigned token, VeriTypeDef* type, VeriIdDecls* ids, veri_location place);
/// `param_token`: 0 for a typedef; the type of a parameter may be null.
VeriModuleItem* veri_type_decl(VeriTypeDef* type, const char* name, VeriRanges* ranges, veri_location place,
                               unsigned param_token = 0);
/// The parameters of one declaration get its token.
/// A type whose definition comes later, IEEE 1800-2005 clause 4.9.
VeriModuleItem* veri_announce_type(const char* name, veri_location place);
VeriModuleItems* veri_close_type_params(VeriModuleItems* params, unsigned token);
VeriModuleItem* veri_import(const char* package, const char* name, veri_location place);
/// Typing errors in a list of declared names.
VeriIdDecls* veri_misplaced_value(VeriIdDecls* ids, VeriExpression* value, veri_location place);
VeriIdDecls* veri_surplus_comma(VeriIdDecls* ids, veri_location place);

// Types.
VeriTypeDef* veri_atom_type(unsigned token, unsigned signing, VeriRanges* ranges, veri_location place);
VeriTypeDef* veri_struct_type(unsigned token, bool is_tagged, unsigned packed, unsigned signing,
                              VeriNodes<VeriDataDecl>* members, VeriRanges* ranges, veri_location place);
/// `[size]`, and `[$]`, which is refused.
VeriRange* veri_sized_dimension(VeriExpression* size, veri_location place);
/// A dimension whose form is refused.
VeriRange* veri_refused_dimension(veri_location place);
VeriDataDecl* veri_struct_member(VeriTypeDef* type, VeriIdDecls* ids, veri_location place);
VeriTypeDef* veri_enum_type(VeriTypeDef* base, VeriIdDecls* elements, VeriRanges* ranges, veri_location place);

// Module items. A null item is none.
VeriModuleItems* veri_append_item(VeriModuleItems* items, VeriModuleItem* item, Map* attributes);
VeriModuleItems* veri_append_items(VeriModuleItems* items, VeriModuleItems* more, Map* attributes);
VeriModuleItems* veri_null_item(VeriModuleItems* items, Map* attributes, veri_location place);
VeriScopeHead* veri_open_function(unsigned lifetime, VeriTypeDef* type, const char* name, veri_location place);
VeriScopeHead* veri_open_task(unsigned lifetime, const char* name, veri_location place);
VeriModuleItem* veri_end_subprogram(VeriScopeHead* head, VeriModuleItems* ports, VeriBody* body, const char* label,
                                    veri_location label_place);
VeriNetRegAssign* veri_net_assign(VeriExpression* target, VeriExpression* value, veri_location place);
VeriInst* veri_new_instance(const char* name, VeriRanges* ranges, VeriExpressions* connections, veri_location place);
VeriExpression* veri_implicit_connection(const char* formal, veri_location place);
VeriModuleItem* veri_instantiation(const char* module, VeriStrength* strength, VeriExpressions* parameters,
                                   VeriNodes<VeriInst>* insts, veri_location place);
VeriModuleItem* veri_gate_instantiation(unsigned token, VeriStrength* strength, VeriExpressions* delay,
                                        VeriNodes<VeriInst>* insts, veri_location place);
/// A construct of Verilog 2001 that stands in a generate region or, in later editions, among the items.
void veri_need_generate(veri_location place);
/// A loop with a genvar of its own, which has a scope around the body.
VeriScopeHead* veri_open_generate_for(const char* genvar, veri_location place);
VeriModuleItem* veri_generate_for(const char* genvar, VeriExpression* initial, VeriExpression* condition,
                                  VeriExpression* step, VeriModuleItem* body, VeriScopeHead* own_genvar,
                                  veri_location place);
VeriScopeHead* veri_open_generate_block(const char* label, veri_location place);
VeriModuleItem* veri_end_generate_block(VeriScopeHead* head, VeriModuleItems* items, const char* label,
                                        veri_location label_place);
VeriModuleItem* veri_end_single_generate(VeriScopeHead* head, VeriModuleItem* item);
VeriModuleItem* veri_nested_module(VeriDesignUnit* module, veri_location place);
VeriScopeHead* veri_open_specify(veri_location place);
VeriModuleItem* veri_end_specify(VeriScopeHead* head, VeriModuleItems* items);
// Properties and sequences.
VeriScopeHead* veri_open_property(unsigned token, const char* name, veri_location place);
VeriModuleItem* veri_property_port(VeriTypeDef* type, VeriIdDecl* id);
VeriModuleItem* veri_end_property(VeriScopeHead* head, VeriModuleItems* ports, VeriModuleItems* declarations,
                                  VeriExpression* body, const char* label, veri_location label_place);
VeriExpression* veri_sequence(unsigned token, VeriExpression* left, VeriExpression* control, VeriExpression* right,
                              veri_location place, VeriExpressions* list = nullptr);
// Modports. A port without direction has that of the one before it.
VeriScopeHead* veri_open_modport(const char* name, veri_location place);
VeriModport* veri_end_modport(VeriScopeHead* head, VeriNodes<VeriModportPorts>* ports);
void veri_modport_direction(unsigned direction);
VeriModportPorts* veri_modport_port(const char* name, VeriExpression* expression, veri_location place);
/// The prototype of a subprogram, of which the name is kept.
VeriModportPorts* veri_modport_prototype(VeriScopeHead* head, VeriModuleItems* ports);
VeriTable* veri_add_row(VeriTable* table, std::string* row);
std::string* veri_join_row(std::string* row, std::string* symbols);

// Statements.
VeriBody* veri_add_declaration(VeriBody* body, VeriModuleItem* item, Map* attributes);
VeriBody* veri_add_imports(VeriBody* body, VeriModuleItems* imports, Map* attributes);
VeriBody* veri_add_statement(VeriBody* body, VeriStatement* statement);
VeriScopeHead* veri_open_block(unsigned token, const char* label, veri_location place);
VeriStatement* veri_end_block(VeriScopeHead* head, VeriBody* body, const char* label, veri_location label_place);
VeriScopeHead* veri_open_for(VeriTypeDef* type, VeriIdDecl* id, veri_location place);
VeriScopeHead* veri_continue_for(VeriScopeHead* head, VeriIdDecl* id);
/// Another declaration in the head of a loop, which must have the type of the first one.
VeriScopeHead* veri_continue_for(VeriScopeHead* head, VeriTypeDef* type, VeriIdDecl* id, veri_location place);
/// `foreach (array[names]) body`, which becomes a loop for each name; an empty name is none.
VeriScopeHead* veri_open_foreach(VeriName* array, std::vector<std::string>* names, veri_location place);
VeriStatement* veri_foreach(VeriScopeHead* head, VeriStatement* body);
/// `@(events) statement`.
VeriStatement* veri_event_statement(VeriExpressions* events, VeriStatement* statement, veri_location place);
VeriStatement* veri_for(VeriScopeHead* head, VeriStatements* initials, VeriExpression* condition, VeriStatements* steps,
                        VeriStatement* body, veri_location place);
VeriAssignmentOperator* veri_assignment(VeriExpression* target, unsigned token, VeriExpression* value,
                                        veri_location place);
VeriDelayOrEventControl* veri_delay_control(VeriExpressions* delay, veri_location place);
VeriStatement* veri_delayed_statement(VeriExpressions* delay, VeriStatement* statement, veri_location place);

// Expressions.
/// What is nested too deep becomes a literal, with a message.
VeriExpression* veri_bounded(VeriExpression* expression);
VeriExpression* veri_unary(unsigned token, VeriExpression* operand, veri_location place, Map* attributes = nullptr);
VeriExpression* veri_binary(unsigned token, VeriExpression* left, VeriExpression* right, veri_location place,
                            Map* attributes = nullptr);
/// An assignment that is an operand.
VeriExpression* veri_operand(VeriAssignmentOperator* assignment, veri_location place,
                             veri_operand_value value = VERI_NEW_VALUE);
/// What stands for an operand that was refused.
VeriExpression* veri_refused_operand(veri_location place);
VeriIndexedName* veri_index(VeriName* prefix, VeriExpression* index);
VeriIndexedName* veri_add_index(VeriIndexedName* name, VeriExpression* index);
VeriName* veri_selected(VeriName* prefix, const char* suffix, veri_location place);
VeriExpression* veri_pattern(VeriExpressions* values, veri_location place);
VeriExpression* veri_keyed_pattern(VeriPatternParts* parts, veri_location place);
VeriExpression* veri_replicated_pattern(VeriExpression* count, VeriExpressions* values, veri_location place);
/// A null key is the default.
VeriPatternParts* veri_add_part(VeriPatternParts* parts, VeriExpression* key, VeriExpression* value);
/// Arguments of calls; null stands for an empty place.
VeriExpressions* veri_argument_list(VeriExpression* first);
VeriExpressions* veri_append_argument(VeriExpressions* arguments, VeriExpression* next);
VeriExpression* veri_number_literal(int number, veri_location place);
VeriExpression* veri_real_literal(double number, veri_location place);
VeriExpression* veri_sized_literal(int size, const char* base, const char* digits, veri_location place);
VeriExpression* veri_based_literal(const char* base, const char* digits, veri_location place);
VeriExpression* veri_unsized_literal(const char* text, veri_location place);
VeriExpression* veri_time_literal(const char* text, veri_location place);
VeriExpression* veri_string_literal(const char* text, veri_location place);

int veriparse();

#endif
