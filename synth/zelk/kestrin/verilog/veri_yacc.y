/* The grammar of Verilog (IEEE 1364-2005 annex A) and of the synthesizable part of SystemVerilog, for all dialects:
   which words are keywords is the scanner's affair, and what only SystemVerilog permits but earlier keywords can spell
   is refused by the actions. Actions build the tree and declare names; what needs more than a line is in
   veri_actions.cpp. Bison reads the output of make_tokens.py, which puts the scanner's tokens in place of @TOKENS@. */

%require "3.8"
%define api.prefix {veri}
%define api.token.prefix {TOKEN_}
%define api.location.type {veri_place}
%define parse.error custom
%locations
%expect 0

%code top {
#include <algorithm>

#include "verilog/veri_actions.h"
#include "verilog/veri_recovery.h"

/* A location, as four numbers because the skeleton fills that many. */
struct veri_place {
  veri_location linefile;
  unsigned unused[3];
  operator veri_location() const { return linefile; }
};

#define VERILTYPE_IS_TRIVIAL 1
#define YYINITDEPTH 200
#define YYMAXDEPTH 10000

/* The place of a rule is that of its first token. An empty rule is counted: see yyreport_syntax_error. */
#define YYLLOC_DEFAULT(current, rhs, n)                                                                                \
  do {                                                                                                                 \
    empty_reductions = (n) ? 0 : empty_reductions + 1;                                                                 \
    (current) = (n) ? YYRHSLOC(rhs, 1) : YYRHSLOC(rhs, 0);                                                             \
  } while (0)
}

%code {
namespace {

/// What is open on the parser's stack up to this state, from the outside to the inside.
template <class State> std::vector<int> open_constructs(const State* top);

unsigned empty_reductions = 0; // since the last reduction of another rule

int verilex(VERISTYPE* value, veri_place* place) {
  const veri_token token = veri_next_token();
  place->linefile = token.linefile;
  if (token.code == VERI_NUMBER)
    value->number = token.number;
  else if (token.code == VERI_REAL_NUMBER)
    value->real = token.real;
  else
    value->text = token.text;
  return token.code;
}


void verierror(const veri_place* place, const char*) { veri_report_stack_overflow(*place); }

} // namespace
}

%define api.pure full

%union {
  const char* text; // of the scanner
  int number;
  double real;
  unsigned token;
  VeriExpression* expr;
  VeriExpressions* exprs;
  VeriName* name;
  VeriIndexedName* indexed;
  VeriRange* range;
  VeriRanges* ranges;
  VeriTypeDef* type;
  VeriPatternParts* parts;
  VeriIdDecl* id;
  VeriIdDecls* ids;
  VeriDataDecl* data;
  VeriNodes<VeriDataDecl>* datas;
  VeriModuleItem* item;
  VeriModuleItems* items;
  VeriInst* inst;
  VeriNodes<VeriInst>* insts;
  VeriStrength* strength;
  VeriNodes<VeriName>* names;
  VeriConfigRule* rule;
  VeriNodes<VeriConfigRule>* rules;
  VeriUseClause* use;
  VeriPath* path;
  std::vector<std::string>* strings;
  VeriModport* modport;
  VeriNodes<VeriModport>* modports;
  VeriModportPorts* modport_port;
  VeriNodes<VeriModportPorts>* modport_ports;
  VeriNetRegAssign* assign;
  VeriNodes<VeriNetRegAssign>* assigns;
  VeriDefParamAssign* defparam;
  VeriNodes<VeriDefParamAssign>* defparams;
  VeriGenerateCaseItem* gen_case_item;
  VeriNodes<VeriGenerateCaseItem>* gen_case_items;
  VeriStatement* stmt;
  VeriStatements* stmts;
  VeriCaseItem* case_item;
  VeriNodes<VeriCaseItem>* case_items;
  VeriDelayOrEventControl* control;
  VeriAssignmentOperator* assignment;
  VeriTable* table;
  VeriDesignUnit* unit;
  VeriBody* body;
  VeriScopeHead* scope;
  Map* attributes;
  std::string* string;
}

%destructor { veri_discard($$); } <expr> <exprs> <name> <indexed> <range> <ranges> <type> <parts> <id> <ids> <data>
  <datas> <item> <items> <inst> <insts> <modport> <modports> <modport_port> <modport_ports> <strength> <names> <rule>
  <rules> <use> <path> <strings> <assign> <assigns> <defparam> <defparams> <gen_case_item> <gen_case_items>
  <stmt> <stmts> <case_item> <case_items> <control> <assignment> <table> <unit> <body> <scope>
%destructor { VeriTreeNode::DeleteAttributes($$); } <attributes>
%destructor { delete $$; } <string>

@TOKENS@
/* A name that stands for a type where it is read. */
%token VERI_TYPE_ID 1001
/* The name of a package in front of "::". */
%token VERI_PACKAGE_ID 1002
/* The word that begins a design unit, where none can begin: the end of the one around is missing. */
%token VERI_STRAY_UNIT 1003
/* Behind a mistake: from here on the source is read again, where statements or items, or where declarations may stand. */
%token VERI_RESUMED 1004
%token VERI_RESUMED_DECLARATION 1005

%type <text> VERI_ID VERI_TYPE_ID VERI_PACKAGE_ID VERI_BASE VERI_BASED_VALUE VERI_UNSIZED_LITERAL
  VERI_STRING_LITERAL VERI_SYSTEM_ID VERI_EDGE_DESCRIPTOR VERI_UDP_EDGE VERI_UDP_WILDCARD_EDGE VERI_UDP_VALUE VERI_TIME_LITERAL
%type <number> VERI_NUMBER
%type <real> VERI_REAL_NUMBER
%type <text> any_id package_id label_opt closing_label edge_list foreach_name
%type <token> module_keyword direction net_type signing signing_opt vector_type atom_type gate_type case_keyword
  lifetime_opt packed_opt operator_assign increment always_keyword unique_priority unique_priority_opt join_keyword
  scalared_opt struct_keyword strength_word config_suffix path_edge path_arrow polarity data_polarity
  pulse_keyword timing_edge assert_keyword repetition tagged_opt
%type <attributes> attrs trailing_attrs inner_attrs attribute_instances attribute_specs operand_attrs
%type <expr> expr primary literal concat mintypmax lvalue index port_expr port_expr_opt port_reference connection
  ansi_port interface_port init_opt argument event_expr assignment_pattern param_value delay_value cast_type
  system_argument inside_range gen_step param_init_opt expr_opt braced_pattern paren_assignment timing_argument
  timing_event streaming specparam_value property_expr property_operator cycle_delay pattern predicate repetition_range
%type <exprs> exprs inside_ranges port_exprs ports ports_opt port_list ansi_ports connections call_arguments
  system_arguments event_control event_list param_assignment param_values delay_opt delay
  mintypmaxes ordered_params terminals path_delays timing_arguments assignment_list match_steps
%type <name> name plain_name config_cell config_path foreach_array
%type <names> config_cells config_libraries config_design
%type <rule> config_rule
%type <rules> config_rules
%type <use> config_use
%type <strength> strength strength_opt
%type <path> path pulse_path
%type <strings> foreach_names
%type <indexed> indexed_name
%type <range> dimension packed_dim
%type <ranges> dimensions dimensions_opt packed_dims packed_dims_opt
%type <type> data_type keyword_type data_type_or_implicit implicit_type shaped_type type_name void_or_data_type
  enum_base_opt type_value_opt
%type <parts> keyed_parts
%type <id> variable_id param_assign member_id genvar_id specparam
%type <ids> variable_ids param_assigns member_ids enum_elements genvar_ids specparams
%type <data> struct_member tf_port
%type <datas> struct_members
%type <item> package_item module_item plain_item declaration block_declaration net_decl data_decl param_decl
  type_decl port_decl function_decl task_decl generate_region gen_conditional gen_body gen_cond_body gen_begin_block
  gen_single instantiation gate_instantiation continuous_assign process defparam_item genvar_decl specify_block
  ignored_item tf_port_decl specparam_decl udp_item gen_if gen_case gen_for module_only_item
  param_port modport_decl timeunits import_item type_param specify_item property_decl property_port variable_item
  concurrent_assertion
%type <items> module_items param_ports_opt param_ports param_port_list tf_ports_opt tf_ports tf_port_list
  import_decl import_items unit_imports udp_items gen_items item_group type_params
  specify_items property_ports_opt property_ports property_variables
%type <modport> modport
%type <modports> modports
%type <modport_port> modport_port
%type <modport_ports> modport_ports
%type <inst> instance
%type <insts> instances
%type <assign> net_assign
%type <assigns> net_assigns
%type <defparam> defparam_assign
%type <defparams> defparam_assigns
%type <gen_case_item> gen_case_item
%type <gen_case_items> gen_case_items
%type <stmt> statement statement_item single_statement for_step blocking_assign jump_statement
  assert_statement property_assertion seq_block
  par_block case_statement
  conditional loop_statement timed_statement procedural_continuous for_init_assign
%type <stmts> for_steps for_inits
%type <case_item> case_item inside_item
%type <case_items> case_items inside_items
%type <control> intra_control_opt
%type <assignment> assignment_expr
%type <table> udp_table udp_rows
%type <string> udp_row udp_symbols
%type <unit> design_unit module_decl primitive_decl package_decl interface_decl module_end primitive_end package_end
  interface_end extern_module config_decl
%type <body> body body_decls body_stmts
%type <scope> unit_head block_head par_head function_head task_head gen_begin_head gen_single_head
  for_head gen_for_head primitive_head package_head interface_head modport_head specify_head property_head
  sequence_head foreach_head

/* Precedence of the operators: IEEE 1364-2005 table 5-4. */
%precedence LOWER_THAN_BASE
%precedence VERI_BASE
%precedence LOWER_THAN_ELSE
%precedence "else"
%right "?" ":"
%left "||"
%left "&&"
%left "|" "~|"
%left "^" "~^"
%left "&" "~&"
%left "==" "!=" "===" "!==" "==?" "!=?"
%left "<" "<=" ">" ">=" "inside"
%left "<<" ">>" "<<<" ">>>"
%left "+" "-"
%left "*" "/" "%"
%left "**"
%precedence UNARY
/* Of sequences and properties: IEEE 1800-2005 table 17-3. An operand in parentheses is one of the value first. */
%precedence PROPERTY
%precedence LOWER_THAN_PROPERTY_ELSE
%right "|->" "|=>"
%left "or"
%left "and"
%precedence "not"
%left "intersect"
%left "within"
%right "throughout"
%left "##"
%left "[*" "[=" "[->"

%start source

%%

/* Design units and global declarations. */

source
  : %empty
  | source description
  | source broken
  ;

/* What a syntax error spoils, as one part of the list where it stands. The parser drops what was read of it; the rest is
   skipped up to where reading can go on, and what is missing there to end the constructs that are still open is handed
   to the parser as if it had been written. So a mistake is told once, and what follows is read. */

broken
  : recovery VERI_RESUMED { yyerrok; }
  ;

broken_declaration
  : recovery VERI_RESUMED_DECLARATION { yyerrok; }
  ;

recovery
  : error
    {
      if (!veri_recover(open_constructs(yyssp - 1).size())) YYABORT;
      yyclearin;
    }
  ;

description
  : attrs design_unit { veri_finish_unit($2, $1); }
  | attrs package_item { veri_add_global($2, $1, @2); }
  | attrs item_group { veri_add_globals($2, $1, @2); }
  ;

design_unit
  : module_decl
  | primitive_decl
  | interface_decl
  | package_decl
  | extern_module
  | config_decl
  ;

module_keyword
  : "module" { $$ = VERI_MODULE; }
  | "macromodule" { $$ = VERI_MODULE; }
  ;

any_id
  : VERI_ID
  | VERI_TYPE_ID
  ;

closing_label
  : %empty { $$ = nullptr; }
  | ":" any_id { $$ = $2; }
  ;

module_decl
  : module_end closing_label { $$ = $1; veri_check_unit_label($$, $2); }
  ;

module_end
  : unit_head unit_imports param_ports_opt ports_opt trailing_attrs ";" module_items "endmodule"
    { $$ = veri_new_module($1, $2, $3, $4, $7, $5); }
  | unit_head broken module_items "endmodule" { $$ = veri_new_module($1, nullptr, nullptr, nullptr, $3, nullptr); }
  ;

unit_head
  : module_keyword lifetime_opt any_id { $$ = veri_open_unit($1, $3, @3, $2); }
  | module_keyword lifetime_opt broken { $$ = veri_open_unit($1, "", @1); }
  ;

extern_module
  : "extern" unit_head unit_imports param_ports_opt ports_opt trailing_attrs ";"
    { $$ = veri_new_extern_module($2, $3, $4, $5, $6); }
  ;

interface_decl
  : interface_end closing_label { $$ = $1; veri_check_unit_label($$, $2); }
  ;

interface_end
  : interface_head unit_imports param_ports_opt ports_opt trailing_attrs ";" module_items "endinterface"
    { $$ = veri_new_module($1, $2, $3, $4, $7, $5); }
  | interface_head broken module_items "endinterface"
    { $$ = veri_new_module($1, nullptr, nullptr, nullptr, $3, nullptr); }
  ;

interface_head
  : "interface" lifetime_opt any_id { $$ = veri_open_unit(VERI_INTERFACE, $3, @3, $2); }
  ;

package_decl
  : package_end closing_label { $$ = $1; veri_check_unit_label($$, $2); }
  ;

package_end
  : package_head trailing_attrs ";" module_items "endpackage" { $$ = veri_new_package($1, $4, $2); }
  | package_head broken module_items "endpackage" { $$ = veri_new_package($1, $3, nullptr); }
  ;

package_head
  : "package" lifetime_opt any_id { $$ = veri_open_unit(VERI_PACKAGE, $3, @3, $2); }
  ;

lifetime_opt
  : %empty { $$ = 0; }
  | "automatic" { $$ = VERI_AUTOMATIC; }
  | "static" { $$ = VERI_STATIC; }
  ;

/* Declarations that make several items. */
item_group
  : import_decl
  | "parameter" "type" type_params ";" { $$ = veri_close_type_params($3, VERI_PARAMETER); }
  | "localparam" "type" type_params ";" { $$ = veri_close_type_params($3, VERI_LOCALPARAM); }
  ;

type_params
  : type_param { $$ = veri_list<VeriModuleItem>($1); }
  | type_params "," type_param { $$ = veri_append($1, $3); }
  ;

type_param
  : any_id type_value_opt { $$ = veri_type_decl($2, $1, nullptr, @1, VERI_PARAMETER); }
  ;

type_value_opt
  : %empty { $$ = nullptr; }
  | "=" data_type { $$ = $2; }
  ;

unit_imports
  : %empty { $$ = nullptr; }
  | unit_imports import_decl { $$ = veri_join($1, $2); }
  ;

/* Configurations. */

config_decl
  : "config" any_id ";" config_design config_rules "endconfig" closing_label
    { $$ = veri_new_config($2, $4, $5, @2); veri_check_unit_label($$, $7); }
  | "config" any_id broken "endconfig" closing_label { $$ = nullptr; }
  ;

config_design
  : "design" config_cells ";" { $$ = $2; }
  ;

config_cells
  : %empty { $$ = new VeriNodes<VeriName>; }
  | config_cells config_cell { $$ = veri_append($1, $2); }
  ;

config_cell
  : any_id { $$ = new VeriIdRef($1, @1); }
  | any_id "." any_id { $$ = veri_selected(new VeriIdRef($1, @1), $3, @1); }
  ;

config_rules
  : %empty { $$ = new VeriNodes<VeriConfigRule>; }
  | config_rules config_rule ";" { $$ = veri_append($1, $2); }
  ;

config_rule
  : "default" "liblist" config_libraries { $$ = new VeriDefaultConfig($3, @1); }
  | "instance" config_path "liblist" config_libraries { $$ = new VeriInstanceConfig($2, $4, nullptr, @1); }
  | "instance" config_path config_use { $$ = new VeriInstanceConfig($2, nullptr, $3, @1); }
  | "cell" config_cell "liblist" config_libraries { $$ = new VeriCellConfig($2, $4, nullptr, @1); }
  | "cell" config_cell config_use { $$ = new VeriCellConfig($2, nullptr, $3, @1); }
  ;

config_use
  : "use" config_cell config_suffix { $$ = new VeriUseClause($2, $3 != 0, @1); }
  ;

config_path
  : any_id { $$ = new VeriIdRef($1, @1); }
  | config_path "." any_id { $$ = veri_selected($1, $3, @1); }
  ;

config_libraries
  : %empty { $$ = new VeriNodes<VeriName>; }
  | config_libraries any_id { VeriName* library = new VeriIdRef($2, @2); $$ = veri_append($1, library); }
  ;

config_suffix
  : %empty { $$ = 0; }
  | ":" "config" { $$ = VERI_CONFIG; }
  ;

/* Attributes. Every list takes over the pragmas that comments left, so it always looks at the next token. */

attrs
  : %empty { $$ = veri_take_pragmas(nullptr); }
  | attribute_instances { $$ = veri_take_pragmas($1); }
  ;

trailing_attrs
  : %empty { $$ = veri_take_pragmas(nullptr); }
  | attribute_instances { $$ = veri_take_pragmas($1); }
  ;

attribute_instances
  : "(*" attribute_specs "*)" { $$ = $2; }
  | attribute_instances "(*" attribute_specs "*)" { $$ = veri_join_attributes($1, $3, @2); }
  ;

attribute_specs
  : any_id { $$ = veri_add_attribute(nullptr, $1, nullptr, @1); }
  | any_id "=" expr { $$ = veri_add_attribute(nullptr, $1, $3, @1); }
  | attribute_specs "," any_id { $$ = veri_add_attribute($1, $3, nullptr, @3); }
  | attribute_specs "," any_id "=" expr { $$ = veri_add_attribute($1, $3, $5, @3); }
  ;

/* Inside of an item, whose pragmas these are not. */
inner_attrs
  : %empty { $$ = nullptr; }
  | attribute_instances
  ;

operand_attrs
  : %empty { $$ = nullptr; }
  | operand_attrs "(*" attribute_specs "*)" { $$ = veri_join_attributes($1, $3, @2); }
  ;

/* Parameters and ports of a head. */

param_ports_opt
  : %empty { $$ = nullptr; }
  | "#" "(" param_ports ")" { $$ = $3; }
  ;

param_ports
  : %empty { $$ = nullptr; }
  | param_port_list
  ;

param_port_list
  : param_port { $$ = veri_list<VeriModuleItem>($1); }
  | param_assign
    {
      veri_need_systemverilog(@1, "a parameter without keyword");
      $$ = veri_list<VeriModuleItem>(veri_param_port(VERI_PARAMETER, nullptr, $1, @1));
    }
  | param_port_list "," param_port { $$ = veri_append($1, $3); }
  | param_port_list "," param_assign { $$ = veri_append_param_port($1, $3); }
  | param_port_list "," VERI_ID dimensions_opt "=" data_type { $$ = veri_append_type_port($1, $3, $4, $6, @3); }
  ;

param_port
  : "parameter" data_type_or_implicit param_assign { $$ = veri_param_port(VERI_PARAMETER, $2, $3, @1); }
  | "localparam" data_type_or_implicit param_assign { $$ = veri_param_port(VERI_LOCALPARAM, $2, $3, @1); }
  | data_type param_assign { $$ = veri_param_port(VERI_PARAMETER, $1, $2, @1); }
  | "parameter" "type" type_param { $$ = $3; }
  | "localparam" "type" type_param { $$ = veri_local_type($3); }
  | "type" type_param { $$ = $2; }
  ;

ports_opt
  : %empty { $$ = nullptr; }
  | "(" port_list ")" { $$ = $2; }
  ;

port_list
  : ports { $$ = veri_port_list($1); }
  | ansi_ports
  ;

ports
  : port_expr_opt { $$ = veri_list<VeriExpression>($1); }
  | ports "," port_expr_opt { $$ = veri_append($1, $3); }
  ;

port_expr_opt
  : %empty { $$ = new VeriPortOpen(@$); }
  | port_expr
  | "." any_id "(" ")" { $$ = new VeriPortConnect($2, nullptr, false, @1); }
  | "." any_id "(" port_expr ")" { $$ = new VeriPortConnect($2, $4, false, @1); }
  ;

port_expr
  : port_reference
  | "{" port_exprs "}" { $$ = new VeriConcat(nullptr, $2, @1); }
  ;

port_exprs
  : port_reference { $$ = veri_list<VeriExpression>($1); }
  | port_exprs "," port_reference { $$ = veri_append($1, $3); }
  ;

port_reference
  : VERI_ID { $$ = new VeriIdRef($1, @1); }
  | VERI_ID "[" index "]" { $$ = veri_index(new VeriIdRef($1, @1), $3); }
  ;

ansi_ports
  : ansi_port { $$ = veri_list<VeriExpression>($1); }
  | interface_port { $$ = veri_list<VeriExpression>($1); }
  | attribute_instances interface_port { $$ = veri_list<VeriExpression>(veri_with_port_attributes($2, $1)); }
  | attribute_instances ansi_port { $$ = veri_list<VeriExpression>(veri_with_port_attributes($2, $1)); }
  | ansi_ports "," attrs ansi_port { $$ = veri_append($1, veri_with_port_attributes($4, $3)); }
  | ansi_ports "," attrs interface_port { $$ = veri_append($1, veri_with_port_attributes($4, $3)); }
  | ansi_ports "," attrs variable_id { $$ = veri_continue_ansi_port($1, $4, $3); }
  ;

ansi_port
  : direction variable_id { $$ = veri_ansi_port($1, 0, nullptr, $2, @1); }
  | direction shaped_type variable_id { $$ = veri_ansi_port($1, 0, $2, $3, @1); }
  | direction data_type variable_id { $$ = veri_ansi_port($1, 0, $2, $3, @1); }
  | direction net_type data_type_or_implicit variable_id { $$ = veri_ansi_port($1, $2, $3, $4, @1); }
  | direction "var" data_type_or_implicit variable_id { $$ = veri_ansi_port($1, VERI_VAR, $3, $4, @1); }
  | net_type data_type_or_implicit variable_id { $$ = veri_ansi_port(0, $1, $2, $3, @1); }
  | "var" data_type_or_implicit variable_id { $$ = veri_ansi_port(0, VERI_VAR, $2, $3, @1); }
  | data_type variable_id { $$ = veri_ansi_port(0, 0, $1, $2, @1); }
  ;

interface_port
  : VERI_ID variable_id { $$ = veri_interface_port($1, nullptr, $2, @1); }
  | VERI_ID "." any_id variable_id { $$ = veri_interface_port($1, $3, $4, @1); }
  | "interface" variable_id { $$ = veri_interface_port(nullptr, nullptr, $2, @1); }
  | "interface" "." any_id variable_id { $$ = veri_interface_port(nullptr, $3, $4, @1); }
  | direction VERI_ID variable_id
    {
      veri_error(@1, "can't declare interface port with a direction");
      $$ = veri_interface_port($2, nullptr, $3, @2);
    }
  ;

direction
  : "input" { $$ = VERI_INPUT; }
  | "output" { $$ = VERI_OUTPUT; }
  | "inout" { $$ = VERI_INOUT; }
  | "ref" { $$ = VERI_REF; }
  ;

/* Module items. */

module_items
  : %empty { $$ = new VeriModuleItems; }
  | module_items attrs module_item { $$ = veri_append_item($1, $3, $2); }
  | module_items attrs item_group { $$ = veri_append_items($1, $3, $2); }
  | module_items attrs module_decl { $$ = veri_append_item($1, veri_nested_module($3, @3), $2); }
  | module_items attrs interface_decl { $$ = veri_append_item($1, veri_nested_module($3, @3), $2); }
  | module_items attrs ";" { $$ = veri_null_item($1, $2, @3); }
  | module_items broken { $$ = $1; }
  ;

module_item
  : plain_item
  | gen_conditional
  ;

/* What stands alone in a generate construct opens a scope; a conditional construct does not (clause 12.4.2). */
plain_item
  : package_item
  | module_only_item
  ;

package_item
  : declaration
  | net_decl
  | function_decl
  | task_decl
  | property_decl
  | ignored_item
  | timeunits
  ;

module_only_item
  : port_decl
  | genvar_decl
  | specparam_decl
  | generate_region
  | gen_for
  | instantiation
  | gate_instantiation
  | continuous_assign
  | process
  | defparam_item
  | specify_block
  | modport_decl
  | concurrent_assertion
  ;

/* Of modules and of blocks alike. */
declaration
  : data_decl
  | param_decl
  | type_decl
  ;

port_decl
  : direction data_type_or_implicit variable_ids ";" { $$ = veri_closed(veri_port_decl($1, 0, $2, $3, @1)); }
  | direction net_type data_type_or_implicit variable_ids ";" { $$ = veri_closed(veri_port_decl($1, $2, $3, $4, @1)); }
  | direction "var" data_type_or_implicit variable_ids ";"
    { $$ = veri_closed(veri_port_decl($1, VERI_VAR, $3, $4, @1)); }
  ;

net_decl
  : net_type strength_opt scalared_opt data_type_or_implicit delay_opt variable_ids ";"
    { $$ = veri_closed(veri_net_decl(veri_net_type($1, $2, $3, $5, @1), $4, $6, @1)); }
  ;

data_decl
  : data_type variable_ids ";" { $$ = veri_closed(veri_data_decl($1, $2, @1)); }
  | "var" data_type_or_implicit variable_ids ";" { $$ = veri_closed(veri_data_decl($2, $3, @1)); }
  | "const" data_type_or_implicit variable_ids ";" { $$ = veri_closed(veri_const_decl($2, $3, @1)); }
  | "automatic" data_type variable_ids ";" { $$ = veri_closed(veri_lifetime_decl(VERI_AUTOMATIC, $2, $3, @1)); }
  | "static" data_type variable_ids ";" { $$ = veri_closed(veri_lifetime_decl(VERI_STATIC, $2, $3, @1)); }
  ;

param_decl
  : "parameter" data_type_or_implicit param_assigns ";"
    { $$ = veri_closed(veri_param_decl(VERI_PARAMETER, $2, $3, @1)); }
  | "localparam" data_type_or_implicit param_assigns ";"
    { $$ = veri_closed(veri_param_decl(VERI_LOCALPARAM, $2, $3, @1)); }
  ;

specparam_decl
  : "specparam" data_type_or_implicit param_assigns ";"
    { $$ = veri_closed(veri_param_decl(VERI_SPECPARAM, $2, $3, @1)); }
  ;

type_decl
  : "typedef" data_type any_id dimensions_opt ";" { $$ = veri_closed(veri_type_decl($2, $3, $4, @3)); }
  | "typedef" VERI_ID ";" { $$ = veri_announce_type($2, @2); }
  | "typedef" struct_keyword VERI_ID ";" { $$ = veri_announce_type($3, @3); }
  | "typedef" "enum" VERI_ID ";" { $$ = veri_announce_type($3, @3); }
  ;

genvar_decl
  : "genvar" genvar_ids ";" { $$ = new VeriGenVarDecl($2, @1); }
  ;

genvar_ids
  : genvar_id { $$ = veri_list<VeriIdDecl>($1); }
  | genvar_ids "," genvar_id { $$ = veri_append($1, $3); }
  ;

genvar_id
  : any_id { $$ = veri_declare_genvar($1, @1); }
  ;

variable_ids
  : variable_id { $$ = veri_list<VeriIdDecl>($1); }
  | variable_ids "," variable_id { $$ = veri_append($1, $3); }
  | variable_ids "," "=" expr { $$ = veri_misplaced_value($1, $4, @3); }
  | "=" expr { $$ = veri_misplaced_value(nullptr, $2, @1); }
  | variable_ids "," { $$ = veri_surplus_comma($1, @2); }
  ;

variable_id
  : VERI_ID dimensions_opt init_opt { $$ = veri_new_variable($1, $2, $3, @1); }
  ;

init_opt
  : %empty { $$ = nullptr; }
  | "=" expr { $$ = $2; }
  ;

param_assigns
  : param_assign { $$ = veri_list<VeriIdDecl>($1); }
  | param_assigns "," param_assign { $$ = veri_append($1, $3); }
  ;

param_assign
  : VERI_ID dimensions_opt param_init_opt { $$ = veri_new_param($1, $2, $3, @1); }
  ;

param_init_opt
  : %empty { $$ = nullptr; }
  | "=" mintypmax { $$ = $2; }
  ;

import_decl
  : "import" import_items ";" { $$ = $2; }
  ;

import_items
  : import_item { $$ = veri_list<VeriModuleItem>($1); }
  | import_items "," import_item { $$ = veri_append($1, $3); }
  ;

import_item
  : package_id "::" any_id { $$ = veri_import($1, $3, @1); }
  | package_id "::" "*" { $$ = veri_import($1, nullptr, @1); }
  ;

package_id
  : VERI_PACKAGE_ID
  | any_id
  ;

timeunits
  : "timeunit" VERI_TIME_LITERAL ";" { veri_time_unit($2, nullptr); $$ = nullptr; }
  | "timeunit" VERI_TIME_LITERAL "/" VERI_TIME_LITERAL ";" { veri_time_unit($2, $4); $$ = nullptr; }
  | "timeprecision" VERI_TIME_LITERAL ";" { veri_time_unit(nullptr, $2); $$ = nullptr; }
  ;

/* Types. */

net_type
  : "supply0" { $$ = VERI_SUPPLY0; }
  | "supply1" { $$ = VERI_SUPPLY1; }
  | "tri" { $$ = VERI_TRI; }
  | "triand" { $$ = VERI_TRIAND; }
  | "trior" { $$ = VERI_TRIOR; }
  | "tri0" { $$ = VERI_TRI0; }
  | "tri1" { $$ = VERI_TRI1; }
  | "trireg" { $$ = VERI_TRIREG; }
  | "wire" { $$ = VERI_WIRE; }
  | "wand" { $$ = VERI_WAND; }
  | "wor" { $$ = VERI_WOR; }
  ;

scalared_opt
  : %empty { $$ = 0; }
  | "scalared" { $$ = VERI_SCALARED; }
  | "vectored" { $$ = VERI_VECTORED; }
  ;

signing
  : "signed" { $$ = VERI_SIGNED; }
  | "unsigned" { $$ = VERI_UNSIGNED; }
  ;

signing_opt
  : %empty { $$ = 0; }
  | signing
  ;

vector_type
  : "reg" { $$ = VERI_REG; }
  | "logic" { $$ = VERI_LOGIC; }
  | "bit" { $$ = VERI_BIT; }
  ;

atom_type
  : "integer" { $$ = VERI_INTEGER; }
  | "time" { $$ = VERI_TIME; }
  | "byte" { $$ = VERI_BYTE; }
  | "shortint" { $$ = VERI_SHORTINT; }
  | "int" { $$ = VERI_INT; }
  | "longint" { $$ = VERI_LONGINT; }
  | "real" { $$ = VERI_REAL; }
  | "realtime" { $$ = VERI_REALTIME; }
  | "shortreal" { $$ = VERI_SHORTREAL; }
  | "event" { $$ = VERI_EVENT; }
  | "string" { $$ = VERI_STRING; }
  | "chandle" { $$ = VERI_CHANDLE; }
  ;

data_type_or_implicit
  : data_type
  | implicit_type
  ;

implicit_type
  : %empty { $$ = nullptr; }
  | shaped_type
  ;

shaped_type
  : signing packed_dims_opt { $$ = new VeriImplicitTypeDef($1, $2, @1); }
  | packed_dims { $$ = new VeriImplicitTypeDef(0, $1, @1); }
  ;

data_type
  : keyword_type
  | type_name
  ;

keyword_type
  : vector_type signing_opt packed_dims_opt { $$ = new VeriPrimitiveTypeDef($1, $2, $3, @1); }
  | atom_type signing_opt packed_dims_opt { $$ = veri_atom_type($1, $2, $3, @1); }
  | struct_keyword tagged_opt packed_opt signing_opt "{" struct_members "}" packed_dims_opt
    { $$ = veri_struct_type($1, $2 != 0, $3, $4, $6, $8, @1); }
  | "enum" enum_base_opt "{" enum_elements "}" packed_dims_opt { $$ = veri_enum_type($2, $4, $6, @1); }
  ;

type_name
  : VERI_TYPE_ID packed_dims_opt { $$ = new VeriTypeName(new VeriIdRef($1, @1), $2, @1); }
  | VERI_PACKAGE_ID "::" VERI_TYPE_ID packed_dims_opt
    { $$ = new VeriTypeName(new VeriScopedIdRef($1, $3, @1), $4, @1); }
  | VERI_SYSTEM_ID "::" VERI_TYPE_ID packed_dims_opt
    { $$ = new VeriTypeName(new VeriScopedIdRef($1, $3, @1), $4, @1); }
  ;

struct_keyword
  : "struct" { $$ = VERI_STRUCT; }
  | "union" { $$ = VERI_UNION; }
  ;

tagged_opt
  : %empty { $$ = 0; }
  | "tagged" { $$ = VERI_TAGGED; }
  ;

packed_opt
  : %empty { $$ = 0; }
  | "packed" { $$ = VERI_PACKED; }
  ;

struct_members
  : struct_member { $$ = veri_list<VeriDataDecl>($1); }
  | struct_members struct_member { $$ = veri_append($1, $2); }
  ;

struct_member
  : data_type member_ids ";" { $$ = veri_struct_member($1, $2, @1); }
  | "void" member_ids ";"
    { $$ = veri_struct_member(new VeriPrimitiveTypeDef(VERI_VOID, 0, nullptr, @1), $2, @1); }
  ;

member_ids
  : member_id { $$ = veri_list<VeriIdDecl>($1); }
  | member_ids "," member_id { $$ = veri_append($1, $3); }
  ;

member_id
  : any_id dimensions_opt { $$ = veri_new_member($1, $2, @1); }
  ;

enum_base_opt
  : %empty { $$ = nullptr; }
  | vector_type signing_opt packed_dims_opt { $$ = new VeriPrimitiveTypeDef($1, $2, $3, @1); }
  | atom_type signing_opt { $$ = new VeriPrimitiveTypeDef($1, $2, nullptr, @1); }
  | type_name
  ;

enum_elements
  : any_id init_opt { $$ = veri_list<VeriIdDecl>(veri_new_enum_element($1, $2, @1)); }
  | any_id "[" VERI_NUMBER "]" init_opt { $$ = veri_append_enum_elements(nullptr, $1, 0, $3 - 1, $5, @1); }
  | any_id "[" VERI_NUMBER ":" VERI_NUMBER "]" init_opt
    { $$ = veri_append_enum_elements(nullptr, $1, $3, $5, $7, @1); }
  | enum_elements "," any_id init_opt { $$ = veri_append($1, veri_new_enum_element($3, $4, @3)); }
  | enum_elements "," any_id "[" VERI_NUMBER "]" init_opt
    { $$ = veri_append_enum_elements($1, $3, 0, $5 - 1, $7, @3); }
  | enum_elements "," any_id "[" VERI_NUMBER ":" VERI_NUMBER "]" init_opt
    { $$ = veri_append_enum_elements($1, $3, $5, $7, $9, @3); }
  ;

packed_dims_opt
  : %empty { $$ = nullptr; }
  | packed_dims
  ;

packed_dims
  : packed_dim { $$ = veri_list<VeriRange>($1); }
  | packed_dims packed_dim { veri_need_systemverilog(@2, "multiple packed dimensions"); $$ = veri_append($1, $2); }
  ;

packed_dim
  : "[" expr ":" expr "]" { $$ = new VeriRange($2, $4, VERI_COLON, @1); }
  ;

dimensions_opt
  : %empty { $$ = nullptr; }
  | dimensions
  ;

dimensions
  : dimension { $$ = veri_list<VeriRange>($1); }
  | dimensions dimension { $$ = veri_append($1, $2); }
  ;

dimension
  : packed_dim
  | "[" expr "]"
    { $$ = veri_sized_dimension($2, @1); }
  | "[" "]" { veri_error(@1, "dynamic arrays are not supported"); $$ = veri_refused_dimension(@1); }
  | "[*" "]" { veri_error(@1, "associative arrays are not supported"); $$ = veri_refused_dimension(@1); }
  | "[" data_type "]" { veri_discard($2); veri_error(@1, "associative arrays are not supported"); $$ = veri_refused_dimension(@1); }
  ;

/* Strengths and delays, which have no effect in hardware. */

strength_opt
  : %empty { $$ = nullptr; }
  | strength
  ;

strength
  : "(" strength_word "," strength_word ")"
    { veri_check_strengths($2, $4, @2); $$ = new VeriStrength($2, $4, @1); }
  | "(" strength_word ")" { $$ = new VeriStrength($2, 0, @1); }
  ;

strength_word
  : "supply0" { $$ = VERI_SUPPLY0; }
  | "supply1" { $$ = VERI_SUPPLY1; }
  | "strong0" { $$ = VERI_STRONG0; }
  | "strong1" { $$ = VERI_STRONG1; }
  | "pull0" { $$ = VERI_PULL0; }
  | "pull1" { $$ = VERI_PULL1; }
  | "weak0" { $$ = VERI_WEAK0; }
  | "weak1" { $$ = VERI_WEAK1; }
  | "highz0" { $$ = VERI_HIGHZ0; }
  | "highz1" { $$ = VERI_HIGHZ1; }
  | "small" { $$ = VERI_SMALL; }
  | "medium" { $$ = VERI_MEDIUM; }
  | "large" { $$ = VERI_LARGE; }
  ;

delay_opt
  : %empty { $$ = nullptr; }
  | delay
  ;

delay
  : "#" delay_value { $$ = veri_list<VeriExpression>($2); }
  | "#" "(" mintypmaxes ")" { veri_check_delays(*$3, @1); $$ = $3; }
  ;

delay_value
  : literal
  | name { $$ = $1; }
  ;

mintypmaxes
  : mintypmax { $$ = veri_list<VeriExpression>($1); }
  | mintypmaxes "," mintypmax { $$ = veri_append($1, $3); }
  ;

/* Subprograms. */

function_decl
  : function_head tf_ports_opt ";" body "endfunction" closing_label { $$ = veri_end_subprogram($1, $2, $4, $6, @6); }
  ;

function_head
  : "function" lifetime_opt void_or_data_type VERI_ID { $$ = veri_open_function($2, $3, $4, @4); }
  ;

void_or_data_type
  : data_type_or_implicit
  | "void" { $$ = new VeriPrimitiveTypeDef(VERI_VOID, 0, nullptr, @1); }
  ;

task_decl
  : task_head tf_ports_opt ";" body "endtask" closing_label { $$ = veri_end_subprogram($1, $2, $4, $6, @6); }
  ;

task_head
  : "task" lifetime_opt VERI_ID { $$ = veri_open_task($2, $3, @3); }
  ;

tf_ports_opt
  : %empty { $$ = nullptr; }
  | "(" tf_ports ")" { $$ = $2; }
  ;

tf_ports
  : %empty { $$ = nullptr; }
  | tf_port_list
  ;

tf_port_list
  : attrs tf_port { $$ = veri_list<VeriModuleItem>(veri_with($2, $1)); }
  | attrs variable_id { $$ = veri_continue_tf_port(nullptr, $2, $1); }
  | tf_port_list "," attrs tf_port { $$ = veri_append_tf_port($1, veri_with($4, $3)); }
  | tf_port_list "," attrs variable_id { $$ = veri_continue_tf_port($1, $4, $3); }
  ;

tf_port
  : direction data_type_or_implicit variable_id { $$ = veri_tf_port($1, $2, $3, @1); }
  | direction "var" data_type_or_implicit variable_id { $$ = veri_tf_port($1, $3, $4, @1); }
  | data_type variable_id { $$ = veri_tf_port(0, $1, $2, @1); }
  ;

/* Declarations, then statements: of subprograms and blocks. */

body
  : %empty { $$ = nullptr; }
  | body_decls
  | body_stmts
  ;

body_decls
  : attrs block_declaration { $$ = veri_add_declaration(nullptr, $2, $1); }
  | attrs item_group { $$ = veri_add_imports(nullptr, $2, $1); }
  | broken_declaration { $$ = nullptr; }
  | body_decls broken_declaration { $$ = $1; }
  | body_decls attrs block_declaration { $$ = veri_add_declaration($1, $3, $2); }
  | body_decls attrs item_group { $$ = veri_add_imports($1, $3, $2); }
  ;

body_stmts
  : statement { $$ = veri_add_statement(nullptr, $1); }
  | body_decls statement { $$ = veri_add_statement($1, $2); }
  | body_stmts statement { $$ = veri_add_statement($1, $2); }
  ;

block_declaration
  : declaration
  | tf_port_decl
  ;

tf_port_decl
  : direction data_type_or_implicit variable_ids ";" { $$ = veri_closed(veri_tf_port_decl($1, $2, $3, @1)); }
  ;

/* Continuous assignments, processes, instances. */

continuous_assign
  : "assign" strength_opt delay_opt net_assigns ";"
    { $$ = veri_closed(new VeriContinuousAssign($2, $3, $4, @1)); }
  ;

net_assigns
  : net_assign { $$ = veri_list<VeriNetRegAssign>($1); }
  | net_assigns "," net_assign { $$ = veri_append($1, $3); }
  ;

net_assign
  : lvalue "=" expr { $$ = veri_net_assign($1, $3, @1); }
  ;

process
  : "initial" statement { $$ = new VeriInitialConstruct($2, @1); }
  | always_keyword statement { $$ = new VeriAlwaysConstruct($1, $2, @1); }
  | "final" statement { veri_discard($2); $$ = new VeriIgnoredItem(VERI_FINAL, @1); }
  ;

always_keyword
  : "always" { $$ = VERI_ALWAYS; }
  | "always_comb" { $$ = VERI_ALWAYS_COMB; }
  | "always_ff" { $$ = VERI_ALWAYS_FF; }
  | "always_latch" { $$ = VERI_ALWAYS_LATCH; }
  ;

defparam_item
  : "defparam" defparam_assigns ";" { $$ = new VeriDefParam($2, @1); }
  ;

defparam_assigns
  : defparam_assign { $$ = veri_list<VeriDefParamAssign>($1); }
  | defparam_assigns "," defparam_assign { $$ = veri_append($1, $3); }
  ;

defparam_assign
  : name "=" mintypmax { $$ = new VeriDefParamAssign($1, $3, @1); }
  ;

instantiation
  : VERI_ID instances ";" { $$ = veri_closed(veri_instantiation($1, nullptr, nullptr, $2, @1)); }
  | VERI_ID param_assignment instances ";" { $$ = veri_closed(veri_instantiation($1, nullptr, $2, $3, @1)); }
  | VERI_ID strength delay_opt instances ";" { $$ = veri_closed(veri_instantiation($1, $2, $3, $4, @1)); }
  ;

param_assignment
  : "#" "(" param_values ")" { $$ = $3; }
  | "#" delay_value { $$ = veri_list<VeriExpression>(new VeriPortConnect(nullptr, $2, false, @2)); }
  ;

param_values
  : %empty { $$ = nullptr; }
  | ordered_params
  ;

ordered_params
  : param_value { $$ = veri_list<VeriExpression>($1); }
  | ordered_params "," param_value { $$ = veri_append($1, $3); }
  ;

param_value
  : mintypmax { $$ = new VeriPortConnect(nullptr, $1, false, @1); }
  | data_type { $$ = new VeriPortConnect(nullptr, $1, false, @1); }
  | "." any_id "(" ")" { $$ = new VeriPortConnect($2, nullptr, false, @1); }
  | "." any_id "(" mintypmax ")" { $$ = new VeriPortConnect($2, $4, false, @1); }
  | "." any_id "(" data_type ")" { $$ = new VeriPortConnect($2, $4, false, @1); }
  ;

instances
  : instance { $$ = veri_list<VeriInst>($1); }
  | instances "," instance { $$ = veri_append($1, $3); }
  ;

instance
  : any_id dimensions_opt "(" connections ")" { $$ = veri_new_instance($1, $2, $4, @1); }
  | "(" connections ")" { $$ = veri_new_instance(nullptr, nullptr, $2, @1); }
  ;

connections
  : inner_attrs connection { $$ = veri_list<VeriExpression>(veri_with($2, $1)); }
  | connections "," inner_attrs connection { $$ = veri_append($1, veri_with($4, $3)); }
  ;

connection
  : %empty { $$ = new VeriPortConnect(nullptr, nullptr, false, @$); }
  | expr { $$ = new VeriPortConnect(nullptr, $1, false, @1); }
  | "." any_id { $$ = veri_implicit_connection($2, @1); }
  | "." any_id "(" ")" { $$ = new VeriPortConnect($2, nullptr, false, @1); }
  | "." any_id "(" expr ")" { $$ = new VeriPortConnect($2, $4, false, @1); }
  | ".*" { $$ = new VeriPortConnect("*", nullptr, true, @1); }
  ;

gate_instantiation
  : gate_type instances ";" { $$ = veri_closed(veri_gate_instantiation($1, nullptr, nullptr, $2, @1)); }
  | gate_type delay instances ";" { $$ = veri_closed(veri_gate_instantiation($1, nullptr, $2, $3, @1)); }
  | gate_type strength delay_opt instances ";" { $$ = veri_closed(veri_gate_instantiation($1, $2, $3, $4, @1)); }
  ;

gate_type
  : "and" { $$ = VERI_AND; }
  | "nand" { $$ = VERI_NAND; }
  | "or" { $$ = VERI_OR; }
  | "nor" { $$ = VERI_NOR; }
  | "xor" { $$ = VERI_XOR; }
  | "xnor" { $$ = VERI_XNOR; }
  | "buf" { $$ = VERI_BUF; }
  | "not" { $$ = VERI_NOT; }
  | "bufif0" { $$ = VERI_BUFIF0; }
  | "bufif1" { $$ = VERI_BUFIF1; }
  | "notif0" { $$ = VERI_NOTIF0; }
  | "notif1" { $$ = VERI_NOTIF1; }
  | "nmos" { $$ = VERI_NMOS; }
  | "pmos" { $$ = VERI_PMOS; }
  | "cmos" { $$ = VERI_CMOS; }
  | "rnmos" { $$ = VERI_RNMOS; }
  | "rpmos" { $$ = VERI_RPMOS; }
  | "rcmos" { $$ = VERI_RCMOS; }
  | "tran" { $$ = VERI_TRAN; }
  | "tranif0" { $$ = VERI_TRANIF0; }
  | "tranif1" { $$ = VERI_TRANIF1; }
  | "rtran" { $$ = VERI_RTRAN; }
  | "rtranif0" { $$ = VERI_RTRANIF0; }
  | "rtranif1" { $$ = VERI_RTRANIF1; }
  | "pullup" { $$ = VERI_PULLUP; }
  | "pulldown" { $$ = VERI_PULLDOWN; }
  ;

/* Generate constructs. */

generate_region
  : "generate" gen_items "endgenerate" { $$ = new VeriGenerateConstruct($2, @1); }
  ;

gen_items
  : %empty { $$ = new VeriModuleItems; }
  | gen_items attrs gen_begin_block { $$ = veri_append_item($1, $3, $2); }
  | gen_items attrs module_item { $$ = veri_append_item($1, $3, $2); }
  | gen_items attrs item_group { $$ = veri_append_items($1, $3, $2); }
  | gen_items attrs ";" { $$ = veri_null_item($1, $2, @3); }
  | gen_items broken { $$ = $1; }
  ;

gen_conditional
  : gen_if { veri_need_generate(@1); $$ = $1; }
  | gen_case { veri_need_generate(@1); $$ = $1; }
  ;

gen_if
  : "if" "(" expr ")" gen_cond_body %prec LOWER_THAN_ELSE { $$ = new VeriGenerateConditional($3, $5, nullptr, @1); }
  | "if" "(" expr ")" gen_cond_body "else" gen_cond_body { $$ = new VeriGenerateConditional($3, $5, $7, @1); }
  ;

gen_cond_body
  : gen_begin_block
  | gen_conditional
  | gen_single
  | ";" { $$ = nullptr; }
  ;

gen_case
  : case_keyword "(" expr ")" gen_case_items "endcase" { $$ = new VeriGenerateCase($1, $3, $5, @1); }
  ;

gen_case_items
  : gen_case_item { $$ = veri_list<VeriGenerateCaseItem>($1); }
  | broken { $$ = new VeriNodes<VeriGenerateCaseItem>; }
  | gen_case_items gen_case_item { $$ = veri_append($1, $2); }
  | gen_case_items broken { $$ = $1; }
  ;

gen_case_item
  : exprs ":" gen_cond_body { $$ = new VeriGenerateCaseItem($1, $3, @1); }
  | "default" gen_cond_body { $$ = new VeriGenerateCaseItem(nullptr, $2, @1); }
  | "default" ":" gen_cond_body { $$ = new VeriGenerateCaseItem(nullptr, $3, @1); }
  ;

gen_for
  : "for" "(" any_id "=" expr ";" expr ";" gen_step ")" gen_body
    { veri_need_generate(@1); $$ = veri_generate_for($3, $5, $7, $9, $11, nullptr, @1); }
  | "for" "(" "genvar" gen_for_head "=" expr ";" expr ";" gen_step ")" gen_body
    { $$ = veri_generate_for(nullptr, $6, $8, $10, $12, $4, @1); }
  ;

gen_for_head
  : any_id { $$ = veri_open_generate_for($1, @1); }
  ;

gen_step
  : assignment_expr { $$ = $1; }
  ;

gen_body
  : gen_begin_block
  | gen_single
  | gen_single_head gen_conditional { $$ = veri_end_single_generate($1, $2); }
  ;

gen_begin_block
  : gen_begin_head gen_items "end" closing_label { $$ = veri_end_generate_block($1, $2, $4, @4); }
  ;

gen_begin_head
  : "begin" label_opt { $$ = veri_open_generate_block($2, @1); }
  ;

gen_single
  : gen_single_head plain_item { $$ = veri_end_single_generate($1, $2); }
  ;

gen_single_head
  : %empty { $$ = veri_open_generate_block(nullptr, @$); }
  ;

label_opt
  : %empty { $$ = nullptr; }
  | ":" any_id { $$ = $2; }
  ;

/* User-defined primitives. */

primitive_decl
  : primitive_end closing_label { $$ = $1; veri_check_unit_label($$, $2); }
  ;

primitive_end
  : primitive_head ports_opt trailing_attrs ";" udp_items udp_table "endprimitive"
    { $$ = veri_new_module($1, nullptr, nullptr, $2, veri_append_item($5, $6, nullptr), $3); }
  | primitive_head broken "endprimitive" { veri_discard($1); $$ = nullptr; }
  ;

primitive_head
  : "primitive" any_id { $$ = veri_open_unit(VERI_PRIMITIVE, $2, @2); }
  ;

udp_items
  : %empty { $$ = new VeriModuleItems; }
  | udp_items attrs udp_item { $$ = veri_append_item($1, $3, $2); }
  ;

udp_item
  : port_decl
  | data_decl
  | "initial" statement { $$ = new VeriInitialConstruct($2, @1); }
  ;

udp_table
  : attrs "table" udp_rows "endtable" { $$ = veri_with($3, $1); }
  | attrs "table" "endtable" { $$ = veri_with(new VeriTable(@2), $1); }
  ;

udp_rows
  : udp_row ";" { $$ = veri_add_row(new VeriTable(@1), $1); }
  | udp_rows udp_row ";" { $$ = veri_add_row($1, $2); }
  ;

udp_row
  : udp_symbols
  | udp_row ":" udp_symbols { $$ = veri_join_row($1, $3); }
  ;

udp_symbols
  : VERI_UDP_VALUE { $$ = new std::string($1); }
  | VERI_UDP_EDGE { $$ = new std::string($1); }
  | VERI_UDP_WILDCARD_EDGE { $$ = new std::string($1); }
  | udp_symbols VERI_UDP_VALUE { $$ = $1; *$$ += $2; }
  | udp_symbols VERI_UDP_EDGE { $$ = $1; *$$ += $2; }
  | udp_symbols VERI_UDP_WILDCARD_EDGE { $$ = $1; *$$ += $2; }
  ;

/* Specify blocks. */

specify_block
  : specify_head specify_items "endspecify" { $$ = veri_end_specify($1, $2); }
  ;

specify_head
  : "specify" { $$ = veri_open_specify(@1); }
  ;

specify_items
  : %empty { $$ = new VeriModuleItems; }
  | specify_items specify_item { $$ = veri_append($1, $2); }
  | specify_items broken { $$ = $1; }
  ;

specify_item
  : "specparam" implicit_type specparams ";" { $$ = veri_param_decl(VERI_SPECPARAM, $2, $3, @1); }
  | pulse_keyword pulse_path ";" { $$ = new VeriPathDecl($1, nullptr, $2, nullptr, @1); }
  | path "=" path_delays ";" { $$ = new VeriPathDecl(0, nullptr, $1, $3, @1); }
  | "if" "(" expr ")" path "=" path_delays ";" { $$ = new VeriPathDecl(VERI_IF, $3, $5, $7, @1); }
  | "ifnone" path "=" path_delays ";" { $$ = new VeriPathDecl(VERI_IFNONE, nullptr, $2, $4, @1); }
  | VERI_SYSTEM_ID "(" timing_arguments ")" ";" { $$ = new VeriSystemTimingCheck($1, $3, @1); }
  ;

pulse_keyword
  : "pulsestyle_onevent" { $$ = VERI_PULSESTYLE_ONEVENT; }
  | "pulsestyle_ondetect" { $$ = VERI_PULSESTYLE_ONDETECT; }
  | "showcancelled" { $$ = VERI_SHOWCANCELLED; }
  | "noshowcancelled" { $$ = VERI_NOSHOWCANCELLED; }
  ;

pulse_path
  : terminals { $$ = new VeriPath({}, $1, nullptr, nullptr, @1); }
  ;

specparams
  : specparam { $$ = veri_list<VeriIdDecl>($1); }
  | specparams "," specparam { $$ = veri_append($1, $3); }
  ;

specparam
  : VERI_ID "=" specparam_value { $$ = veri_new_param($1, nullptr, $3, @1); }
  ;

specparam_value
  : mintypmax
  | "(" mintypmax "," mintypmax ")" { $$ = veri_bounded(new VeriMinTypMaxExpr($2, nullptr, $4, @1)); }
  ;

path
  : "(" path_edge terminals polarity path_arrow terminals ")"
    { $$ = new VeriPath({$2, $4, $5, 0}, $3, $6, nullptr, @1); }
  | "(" path_edge terminals polarity path_arrow "(" terminals data_polarity expr ")" ")"
    { $$ = new VeriPath({$2, $4, $5, $8}, $3, $7, $9, @1); }
  ;

path_edge
  : %empty { $$ = 0; }
  | timing_edge
  ;

timing_edge
  : "posedge" { $$ = VERI_POSEDGE; }
  | "negedge" { $$ = VERI_NEGEDGE; }
  | "edge" { $$ = VERI_EDGE; }
  ;

path_arrow
  : "=>" { $$ = VERI_PARALLEL_PATH; }
  | "*>" { $$ = VERI_FULL_PATH; }
  ;

polarity
  : %empty { $$ = 0; }
  | "+" { $$ = VERI_PLUS; }
  | "-" { $$ = VERI_MINUS; }
  ;

/* The sign and the colon may be one token, or stand apart in Verilog 95. */
data_polarity
  : ":" { $$ = VERI_COLON; }
  | "+:" { $$ = VERI_PLUS_COLON; }
  | "-:" { $$ = VERI_MINUS_COLON; }
  | "+" ":" { $$ = VERI_PLUS_COLON; }
  | "-" ":" { $$ = VERI_MINUS_COLON; }
  ;

terminals
  : name { $$ = veri_list<VeriExpression>($1); }
  | terminals "," name { $$ = veri_append($1, $3); }
  ;

path_delays
  : mintypmaxes
  | "(" mintypmax "," mintypmaxes ")" { $4->InsertBefore(0, $2); $$ = $4; }
  ;

timing_arguments
  : timing_argument { $$ = veri_list<VeriExpression>($1); }
  | timing_arguments "," timing_argument { $$ = veri_append($1, $3); }
  ;

timing_argument
  : %empty { $$ = new VeriPortOpen(@$); }
  | mintypmax
  | mintypmax "&&&" expr { $$ = new VeriTimingCheckEvent(0, nullptr, $1, $3, @1); }
  | timing_event
  ;

timing_event
  : "posedge" expr { $$ = new VeriTimingCheckEvent(VERI_POSEDGE, nullptr, $2, nullptr, @1); }
  | "negedge" expr { $$ = new VeriTimingCheckEvent(VERI_NEGEDGE, nullptr, $2, nullptr, @1); }
  | "edge" edge_list expr { $$ = new VeriTimingCheckEvent(VERI_EDGE, $2, $3, nullptr, @1); }
  | "posedge" expr "&&&" expr { $$ = new VeriTimingCheckEvent(VERI_POSEDGE, nullptr, $2, $4, @1); }
  | "negedge" expr "&&&" expr { $$ = new VeriTimingCheckEvent(VERI_NEGEDGE, nullptr, $2, $4, @1); }
  | "edge" edge_list expr "&&&" expr { $$ = new VeriTimingCheckEvent(VERI_EDGE, $2, $3, $5, @1); }
  ;

edge_list
  : %empty { $$ = nullptr; }
  | "[" VERI_EDGE_DESCRIPTOR "]" { $$ = $2; }
  ;

/* Interfaces, assertions, coverage. */

modport_decl
  : "modport" modports ";" { $$ = new VeriModportDecl($2, @1); }
  ;

modports
  : modport { $$ = veri_list<VeriModport>($1); }
  | modports "," modport { $$ = veri_append($1, $3); }
  ;

modport
  : modport_head "(" modport_ports ")" { $$ = veri_end_modport($1, $3); }
  ;

modport_head
  : any_id { $$ = veri_open_modport($1, @1); }
  ;

modport_ports
  : inner_attrs modport_port { $$ = veri_list<VeriModportPorts>(veri_with($2, $1)); }
  | modport_ports "," inner_attrs modport_port { $$ = veri_append($1, veri_with($4, $3)); }
  ;

modport_port
  : modport_direction any_id { $$ = veri_modport_port($2, nullptr, @2); }
  | modport_direction "." any_id "(" expr_opt ")" { $$ = veri_modport_port($3, $5, @3); }
  | any_id { $$ = veri_modport_port($1, nullptr, @1); }
  | "." any_id "(" expr_opt ")" { $$ = veri_modport_port($2, $4, @2); }
  | modport_direction function_head tf_ports_opt { $$ = veri_modport_prototype($2, $3); }
  | modport_direction task_head tf_ports_opt { $$ = veri_modport_prototype($2, $3); }
  ;

modport_direction
  : direction { veri_modport_direction($1); }
  | "import" { veri_modport_direction(VERI_IMPORT); }
  | "export" { veri_modport_direction(VERI_EXPORT); }
  ;

/* What has no place in the tree is read past and refused: most of it here, the rest by elaboration. */
ignored_item
  : "covergroup" { veri_skip_to(VERI_ENDGROUP); } "endgroup" closing_label
    { $$ = new VeriIgnoredItem(VERI_COVERGROUP, @1); }
  | clocking_keyword { veri_skip_to(VERI_ENDCLOCKING); } "endclocking" closing_label
    { $$ = new VeriIgnoredItem(VERI_CLOCKING, @1); }
  | class_keyword { veri_skip_to(VERI_ENDCLASS, VERI_CLASS); } "endclass" closing_label
    { veri_error(@1, "classes are not supported"); $$ = nullptr; }
  | "program" { veri_skip_to(VERI_ENDPROGRAM); } "endprogram" closing_label
    { veri_error(@1, "programs are not supported"); $$ = nullptr; }
  | "bind" { veri_skip_to(VERI_SEMICOLON); } ";" { veri_error(@1, "bind directives are not supported"); $$ = nullptr; }
  | "alias" { veri_skip_to(VERI_SEMICOLON); } ";" { veri_error(@1, "net aliases are not supported"); $$ = nullptr; }
  | "import" VERI_STRING_LITERAL { veri_skip_to(VERI_SEMICOLON); } ";"
    { veri_error(@1, "functions of another language are not supported"); $$ = nullptr; }
  | "export" { veri_skip_to(VERI_SEMICOLON); } ";"
    { veri_error(@1, "functions of another language are not supported"); $$ = nullptr; }
  | "virtual" "interface" { veri_skip_to(VERI_SEMICOLON); } ";"
    { veri_error(@1, "virtual interfaces are not supported"); $$ = nullptr; }
  | "extern" "function" { veri_skip_to(VERI_SEMICOLON); } ";"
    { veri_error(@1, "extern subprograms are not supported"); $$ = nullptr; }
  | "extern" "task" { veri_skip_to(VERI_SEMICOLON); } ";"
    { veri_error(@1, "extern subprograms are not supported"); $$ = nullptr; }
  ;

class_keyword
  : "class"
  | "virtual" "class"
  ;

clocking_keyword
  : "clocking"
  | "default" "clocking"
  ;

/* Assertions, properties, sequences. */

assert_keyword
  : "assert" { $$ = VERI_ASSERT; }
  | "assume" { $$ = VERI_ASSUME; }
  | "cover" { $$ = VERI_COVER; }
  ;

assert_statement
  : assert_keyword "(" expr ")" statement %prec LOWER_THAN_ELSE
    { $$ = new VeriAssertion($1, false, $3, $5, nullptr, @1); }
  | assert_keyword "(" expr ")" statement "else" statement
    { $$ = new VeriAssertion($1, false, $3, $5, $7, @1); }
  | assert_keyword "(" expr ")" "else" statement { $$ = new VeriAssertion($1, false, $3, nullptr, $6, @1); }
  | property_assertion
  ;

property_assertion
  : assert_keyword "property" "(" property_expr ")" statement %prec LOWER_THAN_ELSE
    { $$ = new VeriAssertion($1, true, $4, $6, nullptr, @1); }
  | assert_keyword "property" "(" property_expr ")" statement "else" statement
    { $$ = new VeriAssertion($1, true, $4, $6, $8, @1); }
  | assert_keyword "property" "(" property_expr ")" "else" statement
    { $$ = new VeriAssertion($1, true, $4, nullptr, $7, @1); }
  ;

concurrent_assertion
  : property_assertion { $$ = new VeriConcurrentAssertion($1, @1); }
  | VERI_ID ":" property_assertion
    { static_cast<VeriAssertion*>($3)->SetLabel($1); $$ = new VeriConcurrentAssertion($3, @1); }
  ;

property_decl
  : property_head property_ports_opt ";" property_variables property_expr semicolon_opt "endproperty" closing_label
    { $$ = veri_end_property($1, $2, $4, $5, $8, @8); }
  | sequence_head property_ports_opt ";" property_variables property_expr semicolon_opt "endsequence" closing_label
    { $$ = veri_end_property($1, $2, $4, $5, $8, @8); }
  ;

property_head
  : "property" any_id { $$ = veri_open_property(VERI_PROPERTY, $2, @2); }
  ;

sequence_head
  : "sequence" any_id { $$ = veri_open_property(VERI_SEQUENCE, $2, @2); }
  ;

property_ports_opt
  : %empty { $$ = nullptr; }
  | "(" ")" { $$ = nullptr; }
  | "(" property_ports ")" { $$ = $2; }
  ;

property_ports
  : property_port { $$ = veri_list<VeriModuleItem>($1); }
  | property_ports "," property_port { $$ = veri_append($1, $3); }
  ;

property_port
  : variable_id { $$ = veri_property_port(nullptr, $1); }
  | data_type variable_id { $$ = veri_property_port($1, $2); }
  ;

property_variables
  : %empty { $$ = nullptr; }
  | property_variables variable_item { $$ = veri_join($1, veri_list<VeriModuleItem>($2)); }
  ;

variable_item
  : data_type variable_ids ";" { $$ = veri_data_decl($1, $2, @1); }
  ;

semicolon_opt
  : %empty
  | ";"
  ;

property_expr
  : expr %prec PROPERTY
  | property_operator
  ;

property_operator
  : "(" property_operator ")" { $$ = $2; }
  | "(" property_expr "," assignment_list ")" { $$ = veri_sequence(VERI_COMMA, nullptr, nullptr, $2, @1, $4); }
  | "first_match" "(" property_expr match_steps ")"
    { $$ = veri_sequence(VERI_FIRST_MATCH, nullptr, nullptr, $3, @1, $4); }
  | "##" cycle_delay property_expr %prec "##" { $$ = veri_sequence(VERI_CYCLE_DELAY, nullptr, $2, $3, @1); }
  | property_expr "##" cycle_delay property_expr %prec "##" { $$ = veri_sequence(VERI_CYCLE_DELAY, $1, $3, $4, @1); }
  | property_expr repetition repetition_range "]" %prec "[*" { $$ = veri_sequence($2, $1, $3, nullptr, @1); }
  | property_expr "and" property_expr { $$ = veri_sequence(VERI_AND, $1, nullptr, $3, @1); }
  | property_expr "or" property_expr { $$ = veri_sequence(VERI_OR, $1, nullptr, $3, @1); }
  | property_expr "intersect" property_expr { $$ = veri_sequence(VERI_INTERSECT, $1, nullptr, $3, @1); }
  | property_expr "within" property_expr { $$ = veri_sequence(VERI_WITHIN, $1, nullptr, $3, @1); }
  | property_expr "throughout" property_expr { $$ = veri_sequence(VERI_THROUGHOUT, $1, nullptr, $3, @1); }
  | property_expr "|->" property_expr { $$ = veri_sequence(VERI_IMPLIES_OVERLAPPED, $1, nullptr, $3, @1); }
  | property_expr "|=>" property_expr { $$ = veri_sequence(VERI_IMPLIES_NEXT, $1, nullptr, $3, @1); }
  | "not" property_expr { $$ = veri_sequence(VERI_NOT, nullptr, nullptr, $2, @1); }
  | event_control property_expr %prec LOWER_THAN_PROPERTY_ELSE
    { $$ = veri_sequence(VERI_AT, nullptr, nullptr, $2, @1, $1); }
  | "disable" "iff" "(" expr ")" property_expr %prec LOWER_THAN_PROPERTY_ELSE
    { $$ = veri_sequence(VERI_DISABLE, nullptr, $4, $6, @1); }
  | "if" "(" expr ")" property_expr %prec LOWER_THAN_ELSE { $$ = veri_sequence(VERI_IF, $5, $3, nullptr, @1); }
  | "if" "(" expr ")" property_expr "else" property_expr { $$ = veri_sequence(VERI_IF, $5, $3, $7, @1); }
  ;

cycle_delay
  : VERI_NUMBER { $$ = veri_number_literal($1, @1); }
  | name { $$ = $1; }
  | "(" expr ")" { $$ = $2; }
  | "[" expr ":" expr "]" { $$ = new VeriRange($2, $4, VERI_COLON, @1); }
  ;

repetition
  : "[*" { $$ = VERI_REPEAT_CONSECUTIVE; }
  | "[=" { $$ = VERI_REPEAT_NON_CONSECUTIVE; }
  | "[->" { $$ = VERI_REPEAT_GOTO; }
  ;

repetition_range
  : %empty { $$ = nullptr; }
  | expr
  | expr ":" expr { $$ = new VeriRange($1, $3, VERI_COLON, @1); }
  ;

match_steps
  : %empty { $$ = nullptr; }
  | "," assignment_list { $$ = $2; }
  ;

assignment_list
  : assignment_expr { $$ = veri_list<VeriExpression>($1); }
  | assignment_list "," assignment_expr { $$ = veri_append($1, $3); }
  ;

/* Statements. */

statement
  : attrs statement_item { $$ = veri_with($2, $1); }
  | broken { $$ = new VeriNullStatement(@1); }
  ;

statement_item
  : single_statement
  | seq_block
  | par_block
  | VERI_ID ":" single_statement
    {
      veri_need_systemverilog(@2, "statement label");
      if (auto* assertion = dynamic_cast<VeriAssertion*>($3)) assertion->SetLabel($1);
      $$ = $3;
    }
  ;

single_statement
  : ";" { $$ = new VeriNullStatement(@1); }
  | blocking_assign ";" { $$ = veri_closed($1); }
  | lvalue "<=" intra_control_opt expr ";"
    { $$ = veri_closed(new VeriNonBlockingAssign(veri_assignment($1, VERI_LESS_EQ, $4, @1), $3, @1)); }
  | procedural_continuous ";"
  | case_statement
  | conditional
  | loop_statement
  | timed_statement
  | jump_statement ";"
  | assert_statement
  | "expect" "(" property_expr ")" { veri_discard($3); veri_error(@1, "expect statements are not supported"); } statement
    { $$ = $6; }
  | "randcase" { veri_skip_to(VERI_ENDCASE, VERI_CASE); } "endcase"
    { veri_error(@1, "random choices of statements are not supported"); $$ = new VeriNullStatement(@1); }
  | "randsequence" { veri_skip_to(VERI_ENDSEQUENCE); } "endsequence"
    { veri_error(@1, "random choices of statements are not supported"); $$ = new VeriNullStatement(@1); }
  | "wait_order" { veri_skip_to(VERI_SEMICOLON); } ";"
    { veri_error(@1, "wait_order statements are not supported"); $$ = new VeriNullStatement(@1); }
  | "->" name ";" { $$ = new VeriEventTrigger($2, @1); }
  | "disable" name ";" { $$ = new VeriDisable($2, @1); }
  | "disable" "fork" ";" { veri_error(@1, "disable fork is not supported"); $$ = new VeriNullStatement(@1); }
  | name ";" { $$ = veri_closed(new VeriTaskEnable($1, nullptr, @1)); }
  | name "(" call_arguments ")" ";" { $$ = veri_closed(new VeriTaskEnable($1, $3, @1)); }
  | VERI_SYSTEM_ID ";" { $$ = veri_closed(new VeriSystemTaskEnable($1, nullptr, @1)); }
  | VERI_SYSTEM_ID "(" system_arguments ")" ";" { $$ = veri_closed(new VeriSystemTaskEnable($1, $3, @1)); }
  | "void" "'" "(" name "(" call_arguments ")" ")" ";" { $$ = veri_closed(new VeriTaskEnable($4, $6, @1)); }
  ;

lvalue
  : name { $$ = $1; }
  | concat
  | streaming
  | assignment_pattern
  ;

blocking_assign
  : lvalue "=" intra_control_opt expr
    { $$ = new VeriBlockingAssign(veri_assignment($1, VERI_ASSIGN_OP, $4, @1), $3, @1); }
  | lvalue operator_assign expr { $$ = new VeriBlockingAssign(veri_assignment($1, $2, $3, @1), nullptr, @1); }
  | lvalue increment { $$ = new VeriBlockingAssign(veri_assignment($1, $2, nullptr, @1), nullptr, @1); }
  | increment lvalue { $$ = new VeriBlockingAssign(veri_assignment($2, $1, nullptr, @1), nullptr, @1); }
  ;

/* The steps of generate loops. */
assignment_expr
  : name "=" expr { $$ = veri_assignment($1, VERI_ASSIGN_OP, $3, @1); }
  | name operator_assign expr { $$ = veri_assignment($1, $2, $3, @1); }
  | name increment { $$ = veri_assignment($1, $2, nullptr, @1); }
  | increment name { $$ = veri_assignment($2, $1, nullptr, @1); }
  ;

operator_assign
  : "+=" { $$ = VERI_PLUS_ASSIGN; }
  | "-=" { $$ = VERI_MINUS_ASSIGN; }
  | "*=" { $$ = VERI_STAR_ASSIGN; }
  | "/=" { $$ = VERI_SLASH_ASSIGN; }
  | "%=" { $$ = VERI_MODULO_ASSIGN; }
  | "&=" { $$ = VERI_AND_ASSIGN; }
  | "|=" { $$ = VERI_OR_ASSIGN; }
  | "^=" { $$ = VERI_XOR_ASSIGN; }
  | "<<=" { $$ = VERI_SHIFT_LEFT_ASSIGN; }
  | ">>=" { $$ = VERI_SHIFT_RIGHT_ASSIGN; }
  | "<<<=" { $$ = VERI_ARITH_SHIFT_LEFT_ASSIGN; }
  | ">>>=" { $$ = VERI_ARITH_SHIFT_RIGHT_ASSIGN; }
  ;

increment
  : "++" { $$ = VERI_INCREMENT; }
  | "--" { $$ = VERI_DECREMENT; }
  ;

intra_control_opt
  : %empty { $$ = nullptr; }
  | delay { $$ = veri_delay_control($1, @1); }
  | event_control { $$ = new VeriDelayOrEventControl(nullptr, nullptr, $1, @1); }
  | "repeat" "(" expr ")" event_control { $$ = new VeriDelayOrEventControl(nullptr, $3, $5, @1); }
  ;

event_control
  : "@" name { $$ = veri_list<VeriExpression>($2); }
  | "@" "(" event_list ")" { $$ = $3; }
  | "@" "*" { veri_need_verilog_2001(@1, "an event list of all that is read"); $$ = new VeriExpressions; }
  | "@" "(*)" { $$ = new VeriExpressions; }
  | "@" "(" "*" ")" { veri_need_verilog_2001(@1, "an event list of all that is read"); $$ = new VeriExpressions; }
  | "@" "(" "*)" { $$ = new VeriExpressions; }
  | "@" "(*" ")" { $$ = new VeriExpressions; }
  ;

event_list
  : event_expr { $$ = veri_list<VeriExpression>($1); }
  | event_list "or" event_expr { $$ = veri_append($1, $3); }
  | event_list "," event_expr
    { veri_need_verilog_2001(@2, "a comma in an event list"); $$ = veri_append($1, $3); }
  ;

event_expr
  : expr { $$ = new VeriEventExpression(0, $1, @1); }
  | "posedge" expr { $$ = new VeriEventExpression(VERI_POSEDGE, $2, @1); }
  | "negedge" expr { $$ = new VeriEventExpression(VERI_NEGEDGE, $2, @1); }
  | event_expr "iff" expr { static_cast<VeriEventExpression*>($1)->SetCondition($3); $$ = $1; }
  ;

timed_statement
  : delay statement { $$ = veri_delayed_statement($1, $2, @1); }
  | event_control statement { $$ = veri_event_statement($1, $2, @1); }
  | "wait" "(" expr ")" statement { $$ = new VeriWait($3, $5, @1); }
  | "wait" "fork" ";" { veri_error(@1, "wait fork is not supported"); $$ = new VeriNullStatement(@1); }
  ;

procedural_continuous
  : "assign" lvalue "=" expr { $$ = new VeriAssign($2, $4, @1); }
  | "deassign" lvalue { $$ = new VeriDeAssign($2, nullptr, @1); }
  | "force" lvalue "=" expr { $$ = new VeriForce($2, $4, @1); }
  | "release" lvalue { $$ = new VeriRelease($2, nullptr, @1); }
  ;

jump_statement
  : "return" expr_opt { $$ = new VeriJumpStatement(VERI_RETURN, $2, @1); }
  | "break" { $$ = new VeriJumpStatement(VERI_BREAK, nullptr, @1); }
  | "continue" { $$ = new VeriJumpStatement(VERI_CONTINUE, nullptr, @1); }
  ;

expr_opt
  : %empty { $$ = nullptr; }
  | expr
  ;

unique_priority
  : "unique" { $$ = VERI_UNIQUE; }
  | "priority" { $$ = VERI_PRIORITY; }
  ;

unique_priority_opt
  : %empty { $$ = 0; }
  | unique_priority
  ;

/* Patterns. */

pattern
  : expr
  | "." any_id { $$ = new VeriPattern(new VeriIdRef($2, @2), nullptr, VERI_DOT, @1); }
  | ".*" { $$ = new VeriPattern(nullptr, nullptr, VERI_DOT_STAR, @1); }
  | "tagged" any_id { $$ = new VeriPattern(new VeriIdRef($2, @2), nullptr, VERI_TAGGED, @1); }
  | "tagged" any_id pattern { $$ = veri_bounded(new VeriPattern(new VeriIdRef($2, @2), $3, VERI_TAGGED, @1)); }
  ;

predicate
  : expr
  | expr "matches" pattern { $$ = veri_bounded(new VeriPattern($1, $3, VERI_MATCHES, @1)); }
  | predicate "&&&" expr { $$ = veri_bounded(new VeriPattern($1, $3, VERI_TRIPLE_AND, @1)); }
  | predicate "&&&" expr "matches" pattern
    { $$ = veri_bounded(new VeriPattern($1, new VeriPattern($3, $5, VERI_MATCHES, @3), VERI_TRIPLE_AND, @1)); }
  ;

conditional
  : unique_priority_opt "if" "(" predicate ")" statement %prec LOWER_THAN_ELSE
    { $$ = new VeriConditionalStatement($4, $6, nullptr, $1, @2); }
  | unique_priority_opt "if" "(" predicate ")" statement "else" statement
    { $$ = new VeriConditionalStatement($4, $6, $8, $1, @2); }
  ;

/* A pragma at the end of the line is the case statement's, whatever stands in front of it on that line. */
case_keyword
  : "case" { VeriLex::ClearSemicolonFlag(); $$ = VERI_CASE; }
  | "casex" { VeriLex::ClearSemicolonFlag(); $$ = VERI_CASEX; }
  | "casez" { VeriLex::ClearSemicolonFlag(); $$ = VERI_CASEZ; }
  ;

case_statement
  : unique_priority_opt case_keyword "(" expr ")" trailing_attrs case_items "endcase"
    { $$ = veri_with<VeriStatement>(new VeriCaseStatement($2, $1, $4, $7, @2), $6); }
  | unique_priority_opt case_keyword "(" expr ")" "inside" trailing_attrs inside_items "endcase"
    {
      auto* statement = new VeriCaseStatement($2, $1, $4, $8, @2);
      statement->SetIsInside();
      $$ = veri_with<VeriStatement>(statement, $7);
    }
  ;

inside_items
  : inside_item { $$ = veri_list<VeriCaseItem>($1); }
  | broken { $$ = new VeriNodes<VeriCaseItem>; }
  | inside_items inside_item { $$ = veri_append($1, $2); }
  | inside_items broken { $$ = $1; }
  ;

inside_item
  : inside_ranges ":" statement { $$ = new VeriCaseItem($1, $3, @1); }
  | "default" statement { $$ = new VeriCaseItem(nullptr, $2, @1); }
  | "default" ":" statement { $$ = new VeriCaseItem(nullptr, $3, @1); }
  ;

case_items
  : case_item { $$ = veri_list<VeriCaseItem>($1); }
  | broken { $$ = new VeriNodes<VeriCaseItem>; }
  | case_items case_item { $$ = veri_append($1, $2); }
  | case_items broken { $$ = $1; }
  ;

case_item
  : exprs ":" statement { $$ = new VeriCaseItem($1, $3, @1); }
  | "default" statement { $$ = new VeriCaseItem(nullptr, $2, @1); }
  | "default" ":" statement { $$ = new VeriCaseItem(nullptr, $3, @1); }
  ;

loop_statement
  : "forever" statement { $$ = new VeriForever($2, nullptr, @1); }
  | "repeat" "(" expr ")" statement { $$ = new VeriRepeat($3, $5, nullptr, @1); }
  | "while" "(" expr ")" statement { $$ = new VeriWhile($3, $5, nullptr, false, @1); }
  | "do" statement "while" "(" expr ")" ";" { $$ = new VeriWhile($5, $2, nullptr, true, @1); }
  | "for" "(" for_inits ";" expr_opt ";" for_steps ")" statement { $$ = veri_for(nullptr, $3, $5, $7, $9, @1); }
  | "for" "(" for_head ";" expr_opt ";" for_steps ")" statement { $$ = veri_for($3, nullptr, $5, $7, $9, @1); }
  | foreach_head statement { $$ = veri_foreach($1, $2); }
  ;

foreach_head
  : "foreach" "(" foreach_array "[" foreach_names "]" ")" { $$ = veri_open_foreach($3, $5, @1); }
  ;

foreach_array
  : VERI_ID { $$ = new VeriIdRef($1, @1); }
  | VERI_PACKAGE_ID "::" VERI_ID { $$ = new VeriScopedIdRef($1, $3, @1); }
  | foreach_array "." any_id { $$ = veri_selected($1, $3, @1); }
  ;

foreach_names
  : foreach_name { $$ = new std::vector<std::string>(1, $1); }
  | foreach_names "," foreach_name { $1->push_back($3); $$ = $1; }
  ;

foreach_name
  : %empty { $$ = ""; }
  | any_id
  ;

for_head
  : data_type variable_id { $$ = veri_open_for($1, $2, @1); }
  | "var" data_type variable_id { $$ = veri_open_for($2, $3, @1); }
  | for_head "," variable_id { $$ = veri_continue_for($1, $3); }
  | for_head "," data_type variable_id { $$ = veri_continue_for($1, $3, $4, @3); }
  ;

for_inits
  : for_init_assign { $$ = veri_list<VeriStatement>($1); }
  | for_inits "," for_init_assign { $$ = veri_append($1, $3); }
  ;

for_init_assign
  : lvalue "=" expr { $$ = new VeriBlockingAssign(veri_assignment($1, VERI_ASSIGN_OP, $3, @1), nullptr, @1); }
  ;

for_steps
  : %empty { $$ = nullptr; }
  | for_step { $$ = veri_list<VeriStatement>($1); }
  | for_steps "," for_step { $$ = veri_append($1, $3); }
  ;

for_step
  : blocking_assign
  ;

seq_block
  : block_head body "end" closing_label { $$ = veri_end_block($1, $2, $4, @4); }
  ;

block_head
  : "begin" label_opt { $$ = veri_open_block(VERI_BEGIN, $2, @1); }
  | VERI_ID ":" "begin" { veri_need_systemverilog(@2, "statement label"); $$ = veri_open_block(VERI_BEGIN, $1, @3); }
  ;

par_block
  : par_head body join_keyword closing_label { $1->join_token = $3; $$ = veri_end_block($1, $2, $4, @4); }
  ;

par_head
  : "fork" label_opt { $$ = veri_open_block(VERI_FORK, $2, @1); }
  | VERI_ID ":" "fork" { veri_need_systemverilog(@2, "statement label"); $$ = veri_open_block(VERI_FORK, $1, @3); }
  ;

join_keyword
  : "join" { $$ = VERI_JOIN; }
  | "join_any" { $$ = VERI_JOIN_ANY; }
  | "join_none" { $$ = VERI_JOIN_NONE; }
  ;

/* Expressions. */

exprs
  : expr { $$ = veri_list<VeriExpression>($1); }
  | exprs "," expr { $$ = veri_append($1, $3); }
  ;

mintypmax
  : expr
  | expr ":" expr ":" expr { $$ = veri_bounded(new VeriMinTypMaxExpr($1, $3, $5, @1)); }
  ;

expr
  : primary
  | "+" operand_attrs expr %prec UNARY { $$ = veri_unary(VERI_PLUS, $3, @1, $2); }
  | "-" operand_attrs expr %prec UNARY { $$ = veri_unary(VERI_MINUS, $3, @1, $2); }
  | "!" operand_attrs expr %prec UNARY { $$ = veri_unary(VERI_BANG, $3, @1, $2); }
  | "~" operand_attrs expr %prec UNARY { $$ = veri_unary(VERI_TILDE, $3, @1, $2); }
  | "&" operand_attrs expr %prec UNARY { $$ = veri_unary(VERI_AMPERSAND, $3, @1, $2); }
  | "~&" operand_attrs expr %prec UNARY { $$ = veri_unary(VERI_NAND_OP, $3, @1, $2); }
  | "|" operand_attrs expr %prec UNARY { $$ = veri_unary(VERI_BAR, $3, @1, $2); }
  | "~|" operand_attrs expr %prec UNARY { $$ = veri_unary(VERI_NOR_OP, $3, @1, $2); }
  | "^" operand_attrs expr %prec UNARY { $$ = veri_unary(VERI_CARET, $3, @1, $2); }
  | "~^" operand_attrs expr %prec UNARY { $$ = veri_unary(VERI_XNOR_OP, $3, @1, $2); }
  | expr "+" operand_attrs expr { $$ = veri_binary(VERI_PLUS, $1, $4, @1, $3); }
  | expr "-" operand_attrs expr { $$ = veri_binary(VERI_MINUS, $1, $4, @1, $3); }
  | expr "*" operand_attrs expr { $$ = veri_binary(VERI_STAR, $1, $4, @1, $3); }
  | expr "/" operand_attrs expr { $$ = veri_binary(VERI_SLASH, $1, $4, @1, $3); }
  | expr "%" operand_attrs expr { $$ = veri_binary(VERI_MODULO, $1, $4, @1, $3); }
  | expr "**" operand_attrs expr { $$ = veri_binary(VERI_POWER, $1, $4, @1, $3); }
  | expr "==" operand_attrs expr { $$ = veri_binary(VERI_EQ, $1, $4, @1, $3); }
  | expr "!=" operand_attrs expr { $$ = veri_binary(VERI_NEQ, $1, $4, @1, $3); }
  | expr "===" operand_attrs expr { $$ = veri_binary(VERI_CASE_EQ, $1, $4, @1, $3); }
  | expr "!==" operand_attrs expr { $$ = veri_binary(VERI_CASE_NEQ, $1, $4, @1, $3); }
  | expr "==?" operand_attrs expr { $$ = veri_binary(VERI_WILD_EQ, $1, $4, @1, $3); }
  | expr "!=?" operand_attrs expr { $$ = veri_binary(VERI_WILD_NEQ, $1, $4, @1, $3); }
  | expr "&&" operand_attrs expr { $$ = veri_binary(VERI_LOG_AND, $1, $4, @1, $3); }
  | expr "||" operand_attrs expr { $$ = veri_binary(VERI_LOG_OR, $1, $4, @1, $3); }
  | expr "<" operand_attrs expr { $$ = veri_binary(VERI_LESS, $1, $4, @1, $3); }
  | expr "<=" operand_attrs expr { $$ = veri_binary(VERI_LESS_EQ, $1, $4, @1, $3); }
  | expr ">" operand_attrs expr { $$ = veri_binary(VERI_GREATER, $1, $4, @1, $3); }
  | expr ">=" operand_attrs expr { $$ = veri_binary(VERI_GREATER_EQ, $1, $4, @1, $3); }
  | expr "&" operand_attrs expr { $$ = veri_binary(VERI_AMPERSAND, $1, $4, @1, $3); }
  | expr "|" operand_attrs expr { $$ = veri_binary(VERI_BAR, $1, $4, @1, $3); }
  | expr "^" operand_attrs expr { $$ = veri_binary(VERI_CARET, $1, $4, @1, $3); }
  | expr "~^" operand_attrs expr { $$ = veri_binary(VERI_XNOR_OP, $1, $4, @1, $3); }
  | expr "<<" operand_attrs expr { $$ = veri_binary(VERI_SHIFT_LEFT, $1, $4, @1, $3); }
  | expr ">>" operand_attrs expr { $$ = veri_binary(VERI_SHIFT_RIGHT, $1, $4, @1, $3); }
  | expr "<<<" operand_attrs expr { $$ = veri_binary(VERI_ARITH_SHIFT_LEFT, $1, $4, @1, $3); }
  | expr ">>>" operand_attrs expr { $$ = veri_binary(VERI_ARITH_SHIFT_RIGHT, $1, $4, @1, $3); }
  | expr "inside" "{" inside_ranges "}"
    { $$ = veri_binary(VERI_INSIDE, $1, new VeriConcat(nullptr, $4, @3), @1); }
  | expr "?" operand_attrs expr ":" expr %prec "?" { $$ = veri_bounded(veri_with(new VeriQuestionColon($1, $4, $6, @1), $3)); }
  ;

inside_ranges
  : inside_range { $$ = veri_list<VeriExpression>($1); }
  | inside_ranges "," inside_range { $$ = veri_append($1, $3); }
  ;

inside_range
  : expr
  | "[" expr ":" expr "]" { $$ = new VeriRange($2, $4, VERI_COLON, @1); }
  ;

primary
  : literal
  | name { $$ = $1; }
  | name "(" call_arguments ")" { $$ = veri_bounded(new VeriFunctionCall($1, $3, @1)); }
  | VERI_SYSTEM_ID { $$ = new VeriSystemFunctionCall($1, nullptr, @1); }
  | VERI_SYSTEM_ID "(" system_arguments ")" { $$ = veri_bounded(new VeriSystemFunctionCall($1, $3, @1)); }
  | concat
  | name attribute_instances "(" call_arguments ")"
    { $$ = veri_bounded(veri_with(new VeriFunctionCall($1, $4, @1), $2)); }
  | "(" mintypmax ")" { $$ = $2; }
  | "(" paren_assignment ")" { $$ = $2; }
  | name increment { $$ = veri_operand(veri_assignment($1, $2, nullptr, @1), @1, VERI_OLD_VALUE); }
  | increment name { $$ = veri_operand(veri_assignment($2, $1, nullptr, @1), @1); }
  | VERI_DOLLAR { $$ = new VeriOpen(@1); }
  | streaming
  | "null" { veri_error(@1, "classes are not supported"); $$ = veri_refused_operand(@1); }
  | "this" { veri_error(@1, "classes are not supported"); $$ = veri_refused_operand(@1); }
  | "new" { veri_error(@1, "classes are not supported"); $$ = veri_refused_operand(@1); }
  | "new" "(" call_arguments ")" { veri_discard($3); veri_error(@1, "classes are not supported"); $$ = veri_refused_operand(@1); }
  | "new" "[" expr "]" { veri_discard($3); veri_error(@1, "dynamic arrays are not supported"); $$ = veri_refused_operand(@1); }
  | cast_type "'" "(" expr ")" { $$ = veri_bounded(new VeriTypeCast($1, $4, @1)); }
  | primary "'" "(" expr ")" { $$ = veri_bounded(new VeriTypeCast($1, $4, @1)); }
  | assignment_pattern
  | type_name "'" "(" expr ")" { $$ = veri_bounded(new VeriTypeCast($1, $4, @1)); }
  | type_name "'" braced_pattern { $$ = veri_bounded(new VeriTypeCast($1, $3, @1)); }
  ;

paren_assignment
  : name "=" expr { $$ = veri_operand(veri_assignment($1, VERI_ASSIGN_OP, $3, @1), @1); }
  | name operator_assign expr { $$ = veri_operand(veri_assignment($1, $2, $3, @1), @1); }
  ;

streaming
  : "{" "<<" stream_slice "{" exprs "}" "}"
    { veri_error(@1, "streaming concatenations are not supported"); $$ = new VeriConcat(nullptr, $5, @1); }
  | "{" ">>" stream_slice "{" exprs "}" "}"
    { veri_error(@1, "streaming concatenations are not supported"); $$ = new VeriConcat(nullptr, $5, @1); }
  ;

stream_slice
  : %empty
  | VERI_NUMBER
  | name { veri_discard($1); }
  | "(" expr ")" { veri_discard($2); }
  | keyword_type { veri_discard($1); }
  ;

cast_type
  : vector_type { $$ = new VeriPrimitiveTypeDef($1, 0, nullptr, @1); }
  | atom_type { $$ = new VeriPrimitiveTypeDef($1, 0, nullptr, @1); }
  | signing { $$ = new VeriPrimitiveTypeDef(0, $1, nullptr, @1); }
  ;

concat
  : "{" exprs "}" { $$ = veri_bounded(new VeriConcat(nullptr, $2, @1)); }
  | "{" expr "{" exprs "}" "}" { $$ = veri_bounded(new VeriConcat($2, $4, @1)); }
  ;

assignment_pattern
  : "'" braced_pattern { $$ = $2; }
  ;

braced_pattern
  : "{" exprs "}" { $$ = veri_pattern($2, @1); }
  | "{" keyed_parts "}" { $$ = veri_keyed_pattern($2, @1); }
  | "{" expr "{" exprs "}" "}" { $$ = veri_replicated_pattern($2, $4, @1); }
  ;

keyed_parts
  : expr ":" expr { $$ = veri_add_part(nullptr, $1, $3); }
  | "default" ":" expr { $$ = veri_add_part(nullptr, nullptr, $3); }
  | keyed_parts "," expr ":" expr { $$ = veri_add_part($1, $3, $5); }
  | keyed_parts "," "default" ":" expr { $$ = veri_add_part($1, nullptr, $5); }
  ;

call_arguments
  : argument { $$ = veri_argument_list($1); }
  | call_arguments "," argument { $$ = veri_append_argument($1, $3); }
  ;

argument
  : %empty { $$ = nullptr; }
  | expr
  | "." any_id "(" ")"
    { veri_need_systemverilog(@1, "an argument by name"); $$ = new VeriPortConnect($2, nullptr, false, @1); }
  | "." any_id "(" expr ")"
    { veri_need_systemverilog(@1, "an argument by name"); $$ = new VeriPortConnect($2, $4, false, @1); }
  ;

system_arguments
  : system_argument { $$ = veri_argument_list($1); }
  | system_arguments "," system_argument { $$ = veri_append_argument($1, $3); }
  ;

system_argument
  : %empty { $$ = nullptr; }
  | expr
  | keyword_type { $$ = $1; }
  | type_name { $$ = $1; }
  ;

name
  : plain_name
  | indexed_name { $$ = $1; }
  ;

plain_name
  : VERI_ID { $$ = new VeriIdRef($1, @1); }
  | VERI_PACKAGE_ID "::" VERI_ID { $$ = new VeriScopedIdRef($1, $3, @1); }
  | VERI_SYSTEM_ID "::" VERI_ID { $$ = new VeriScopedIdRef($1, $3, @1); }
  | name "." any_id { $$ = veri_selected($1, $3, @1); }
  ;

indexed_name
  : plain_name "[" index "]" { $$ = veri_index($1, $3); }
  | indexed_name "[" index "]" { $$ = veri_add_index($1, $3); }
  ;

index
  : expr
  | expr ":" expr { $$ = new VeriRange($1, $3, VERI_COLON, @1); }
  | expr "+:" expr { $$ = new VeriRange($1, $3, VERI_PLUS_COLON, @1); }
  | expr "-:" expr { $$ = new VeriRange($1, $3, VERI_MINUS_COLON, @1); }
  ;

literal
  : VERI_NUMBER %prec LOWER_THAN_BASE { $$ = veri_number_literal($1, @1); }
  | VERI_NUMBER VERI_BASE VERI_BASED_VALUE { $$ = veri_sized_literal($1, $2, $3, @1); }
  | VERI_BASE VERI_BASED_VALUE { $$ = veri_based_literal( $1, $2, @1); }
  | VERI_UNSIZED_LITERAL { $$ = veri_unsized_literal($1, @1); }
  | VERI_REAL_NUMBER { $$ = veri_real_literal($1, @1); }
  | VERI_TIME_LITERAL { $$ = veri_time_literal($1, @1); }
  | VERI_STRING_LITERAL { $$ = veri_string_literal($1, @1); }
  ;

%%

namespace {

/// What tells, of the symbols on the parser's stack, where it is.
struct OpenPart {
  yysymbol_kind_t symbol;
  int part;
};

constexpr OpenPart open_parts[] = {
    {YYSYMBOL_source, VERI_OPEN_LIST},
    {YYSYMBOL_module_items, VERI_OPEN_LIST},
    {YYSYMBOL_gen_items, VERI_OPEN_LIST},
    {YYSYMBOL_specify_items, VERI_OPEN_LIST},
    {YYSYMBOL_case_items, VERI_OPEN_LIST},
    {YYSYMBOL_inside_items, VERI_OPEN_LIST},
    {YYSYMBOL_gen_case_items, VERI_OPEN_LIST},
    {YYSYMBOL_body_stmts, VERI_OPEN_LIST},
    {YYSYMBOL_body_decls, VERI_OPEN_BODY},
    {YYSYMBOL_module_keyword, VERI_MODULE},
    {YYSYMBOL_unit_head, VERI_MODULE},
    {YYSYMBOL_interface_head, VERI_INTERFACE},
    {YYSYMBOL_package_head, VERI_PACKAGE},
    {YYSYMBOL_primitive_head, VERI_PRIMITIVE},
    {YYSYMBOL_function_head, VERI_FUNCTION},
    {YYSYMBOL_task_head, VERI_TASK},
    {YYSYMBOL_specify_head, VERI_SPECIFY},
    {YYSYMBOL_property_head, VERI_PROPERTY},
    {YYSYMBOL_sequence_head, VERI_SEQUENCE},
    {YYSYMBOL_gen_begin_head, VERI_BEGIN},
    {YYSYMBOL_block_head, VERI_BEGIN},
    {YYSYMBOL_par_head, VERI_FORK},
    {YYSYMBOL_case_keyword, VERI_CASE},
    {YYSYMBOL_struct_keyword, VERI_STRUCT},
    {YYSYMBOL_always_keyword, VERI_ALWAYS},
    {YYSYMBOL_assert_keyword, VERI_ASSERT},
    {YYSYMBOL_foreach_head, VERI_FOREACH},
    {YYSYMBOL_event_control, VERI_AT},
};

/// Tokens that tell it by themselves; those of operators and values do not.
constexpr int open_tokens[] = {
    VERI_CONFIG,  VERI_FUNCTION, VERI_TASK,  VERI_BEGIN,  VERI_FORK,   VERI_GENERATE, VERI_INITIAL,  VERI_FINAL,
    VERI_IF,      VERI_ELSE,     VERI_FOR,   VERI_WHILE,  VERI_REPEAT, VERI_FOREVER,  VERI_WAIT,     VERI_AT,
    VERI_OPAREN,  VERI_CPAREN,   VERI_OBRACE, VERI_CBRACE, VERI_OBRACKET, VERI_CBRACKET, VERI_MODPORT, VERI_IMPORT,
    VERI_EXTERN,  VERI_EXPORT,   VERI_PROPERTY, VERI_ID, VERI_TABLE, VERI_SEQUENCE, VERI_COLON, VERI_TYPEDEF,
};

/// 0 for parts that may be empty.
int open_part(yysymbol_kind_t symbol) {
  if (symbol == YYSYMBOL_attrs || symbol == YYSYMBOL_trailing_attrs || symbol == YYSYMBOL_lifetime_opt ||
      symbol == YYSYMBOL_gen_single_head)
    return 0;
  for (const OpenPart& entry : open_parts)
    if (entry.symbol == symbol) return entry.part;
  for (const int token : open_tokens)
    if (YYTRANSLATE(token) == symbol) return token;
  return VERI_OPEN_OTHER;
}

template <class State> std::vector<int> open_constructs(const State* top) {
  std::vector<int> parts;
  for (; *top; top--) {
    const auto symbol = YY_ACCESSING_SYMBOL(*top);
    const bool begins_body = symbol == YYSYMBOL_VERI_SEMICOLON && YY_ACCESSING_SYMBOL(top[-1]) == YYSYMBOL_tf_ports_opt;
    if (const int part = begins_body ? VERI_OPEN_BODY : open_part(symbol)) parts.push_back(part);
  }
  std::reverse(parts.begin(), parts.end());
  return parts;
}

} // namespace

/* A syntax error names what would have been legal. Default reductions of empty rules may have left states where more
   was legal, so those below are asked as well; a token that was shifted in between ends the search. */
static int yyreport_syntax_error(const yypcontext_t* context) {
  std::vector<bool> is_legal(VERI_AFTER_LAST_TOKEN, false);
  const yy_state_t* state = context->yyssp;
  for (unsigned left = empty_reductions;; left--, state--) {
    const int row = yypact[*state];
    for (int code = VERI_FIRST_TOKEN; code < VERI_AFTER_LAST_TOKEN; code++) {
      const int entry = row + YYTRANSLATE(code);
      if (code == VERI_COLON && YY_ACCESSING_SYMBOL(*state) == YYSYMBOL_VERI_ID && !VeriNode::IsSystemVerilog())
        continue; // the label of a statement
      if (yypact_value_is_default(row) || entry < 0 || entry > YYLAST || yycheck[entry] != YYTRANSLATE(code)) continue;
      if (!yytable_value_is_error(yytable[entry])) is_legal[static_cast<unsigned>(code)] = true;
    }
    if (!left || YY_ACCESSING_SYMBOL(*state) < YYNTOKENS) break;
  }
  std::vector<int> open = open_constructs(context->yyssp);
  std::vector<unsigned> expected;
  for (unsigned code = VERI_FIRST_TOKEN; code < VERI_AFTER_LAST_TOKEN; code++)
    if (is_legal[code] && VeriTreeNode::PrintErrorToken(code) && VeriTreeNode::IsLegalToken(code) &&
        veri_can_close(static_cast<int>(code), open))
      expected.push_back(code);
  if (veri_broken(std::move(open), is_legal[VERI_SEMICOLON]))
    VeriLex::Error(veri_expected_hint(std::move(expected)).c_str());
  return 0;
}
