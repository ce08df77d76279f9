// Module items as nodes: what they own, and their source text.
#include "verilog/verimoduleitem.h"

#include <ostream>

#include "util/strings.h"
#include "verilog/veriprint_util.h"
#include "verilog/veristatement.h"

namespace {

void PrintType(std::ostream& out, const VeriTypeDef* type, unsigned level) {
  if (!type) return;
  if (!type->Type() && !type->Signing() && !type->Ranges() && type->GetClassId() == ID_VeriPrimitiveTypeDef) return;
  type->PrettyPrint(out, level);
  out << ' ';
}

void PrintDelay(std::ostream& out, const VeriExpressions* delay) {
  if (!delay) return;
  out << "#(";
  veri_print_list(out, delay);
  out << ") ";
}

void PrintStrength(std::ostream& out, const VeriStrength* strength) {
  if (!strength) return;
  strength->PrettyPrint(out, 0);
  out << ' ';
}

/// A body of a generate construct, as it stands behind a condition.
void PrintBody(std::ostream& out, const VeriModuleItem* item, unsigned level) {
  if (item) return item->PrettyPrint(out, level + 1);
  VeriTreeNode::PrintLevel(out, level + 1);
  out << ";\n";
}

} // namespace

// Nets.

void VeriStrength::PrettyPrint(std::ostream& out, unsigned) const {
  out << '(' << PrintToken(_value0);
  if (_value1) out << ", " << PrintToken(_value1);
  out << ')';
}

VeriNetType::VeriNetType(unsigned token, VeriStrength* strength, unsigned scalared, VeriExpressions* delay,
                         unsigned long linefile)
    : VeriTreeNode(linefile), _token(token), _strength(Adopt(strength)), _scalared(scalared), _delay(Adopt(delay)) {}

VeriNetType::~VeriNetType() {
  delete _strength;
  delete _delay;
}

void VeriNetType::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _strength);
  veri_visit(visitor, _delay);
}

void VeriNetType::PrettyPrint(std::ostream& out, unsigned) const {
  out << PrintToken(_token) << ' ';
  PrintStrength(out, _strength);
  if (_scalared) out << PrintToken(_scalared) << ' ';
}

// Declarations.

VeriIdDecl::VeriIdDecl(std::unique_ptr<VeriIdDef> id, VeriNodes<VeriRange>* ranges, VeriExpression* value,
                       unsigned long linefile)
    : VeriTreeNode(linefile), _owned(std::move(id)), _id(_owned.get()), _ranges(Adopt(ranges)), _value(Adopt(value)) {}

VeriIdDecl::~VeriIdDecl() {
  delete _ranges;
  delete _value;
}

void VeriIdDecl::MergeInto(VeriIdDef* id) {
  _id = id;
  _owned.reset();
}

void VeriIdDecl::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _ranges);
  veri_visit(visitor, _value);
}

void VeriIdDecl::PrettyPrint(std::ostream& out, unsigned) const {
  if (_id) PrintName(out, _id->Name());
  for (const VeriRange* range : ItemsOf<VeriRange*>(_ranges)) {
    out << " [";
    range->PrettyPrint(out, 0);
    out << ']';
  }
  if (!_value) return;
  out << " = ";
  _value->PrettyPrint(out, 0);
}

VeriDataDecl::VeriDataDecl(unsigned direction, unsigned net_type, VeriTypeDef* type, VeriIdDecls* ids,
                           unsigned long linefile)
    : VeriModuleItem(linefile), _direction(direction), _net_type(net_type), _type(Adopt(type)), _ids(Adopt(ids)) {}

VeriDataDecl::~VeriDataDecl() {
  delete _net;
  delete _type;
  delete _ids;
}

void VeriDataDecl::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _net);
  veri_visit(visitor, _type);
  veri_visit(visitor, _ids);
}

void VeriDataDecl::PrintHead(std::ostream& out, unsigned level) const {
  PrintAttributes(out, level);
  if (_is_const) out << "const ";
  if (_lifetime) out << PrintToken(_lifetime) << ' ';
  if (_direction) out << PrintToken(_direction) << ' ';
  if (_net)
    _net->PrettyPrint(out, level);
  else if (_net_type)
    out << PrintToken(_net_type) << ' ';
  if (_is_var) out << "var ";
  PrintType(out, _type, level);
  if (_net) PrintDelay(out, _net->Delay());
  veri_print_list(out, _ids);
}

void VeriDataDecl::PrettyPrint(std::ostream& out, unsigned level) const {
  PrintLevel(out, level);
  PrintHead(out, level);
  out << ";\n";
}

VeriParamDecl::VeriParamDecl(unsigned token, VeriTypeDef* type, VeriIdDecls* ids, unsigned long linefile)
    : VeriModuleItem(linefile), _token(token), _type(Adopt(type)), _ids(Adopt(ids)) {}

VeriParamDecl::~VeriParamDecl() {
  delete _type;
  delete _ids;
}

void VeriParamDecl::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _type);
  veri_visit(visitor, _ids);
}

void VeriParamDecl::MakeLocal() {
  _token = VERI_LOCALPARAM;
  for (VeriIdDecl* id : *_ids)
    if (auto* param = id->IdAs<VeriParamId>()) param->SetParamToken(VERI_LOCALPARAM);
}

void VeriParamDecl::PrintHead(std::ostream& out, unsigned level) const {
  PrintAttributes(out, level);
  out << PrintToken(_token) << ' ';
  PrintType(out, _type, level);
  veri_print_list(out, _ids);
}

void VeriParamDecl::PrettyPrint(std::ostream& out, unsigned level) const {
  PrintLevel(out, level);
  PrintHead(out, level);
  out << ";\n";
}

VeriTypeDecl::VeriTypeDecl(VeriTypeDef* type, VeriIdDecl* id, unsigned long linefile)
    : VeriModuleItem(linefile), _type(Adopt(type)), _id(Adopt(id)) {}

VeriTypeDecl::~VeriTypeDecl() {
  delete _type;
  delete _id;
}

void VeriTypeDecl::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _type);
  veri_visit(visitor, _id);
}

void VeriTypeDecl::PrettyPrint(std::ostream& out, unsigned level) const {
  PrintLevel(out, level);
  if (GetId()->ParamToken()) {
    PrintHead(out, level);
  } else {
    PrintAttributes(out, level);
    out << "typedef ";
    PrintType(out, _type, level);
    _id->PrettyPrint(out, 0);
  }
  out << ";\n";
}

void VeriTypeDecl::PrintHead(std::ostream& out, unsigned level) const {
  PrintAttributes(out, level);
  out << PrintToken(GetId()->ParamToken()) << " type ";
  _id->PrettyPrint(out, 0);
  if (!_type) return;
  out << " = ";
  _type->PrettyPrint(out, level);
}

VeriGenVarDecl::VeriGenVarDecl(VeriIdDecls* ids, unsigned long linefile) : VeriModuleItem(linefile), _ids(Adopt(ids)) {}

VeriGenVarDecl::~VeriGenVarDecl() { delete _ids; }

void VeriGenVarDecl::VisitChildren(VeriVisitor& visitor) { veri_visit(visitor, _ids); }

void VeriGenVarDecl::PrettyPrint(std::ostream& out, unsigned level) const {
  PrintFront(out, level);
  out << "genvar ";
  veri_print_list(out, _ids);
  out << ";\n";
}

// Subprograms.

VeriSubprogram::VeriSubprogram(VeriIdDecl* id, VeriModuleItems* declarations, VeriNodes<VeriStatement>* statements,
                               std::unique_ptr<VeriScope> scope, bool is_automatic, unsigned long linefile)
    : VeriModuleItem(linefile), _id(Adopt(id)), _declarations(Adopt(declarations)), _statements(Adopt(statements)),
      _scope(std::move(scope)), _is_automatic(is_automatic) {
  if (_id->GetId()) _id->GetId()->SetModuleItem(this);
  for (VeriModuleItem* item : ItemsOf<VeriModuleItem*>(_declarations)) {
    auto* decl = dynamic_cast<VeriDataDecl*>(item);
    if (!decl || !decl->Direction()) continue;
    for (VeriIdDecl* formal : *decl->Ids())
      if (auto* variable = formal->IdAs<VeriVariable>()) _formals.push_back(variable);
  }
}

VeriSubprogram::~VeriSubprogram() {
  delete _statements;
  delete _declarations;
  delete _id;
}

void VeriSubprogram::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _id);
  veri_visit(visitor, _declarations);
  veri_visit(visitor, _statements);
}

void VeriSubprogram::PrintBody(std::ostream& out, unsigned level) const {
  veri_print_lines(out, _declarations, level + 1);
  const bool needs_block = _statements && _statements->Size() != 1;
  if (needs_block) {
    PrintLevel(out, level + 1);
    out << "begin\n";
  }
  veri_print_lines(out, _statements, needs_block ? level + 2 : level + 1);
  if (needs_block) {
    PrintLevel(out, level + 1);
    out << "end\n";
  }
}

VeriFunctionDecl::VeriFunctionDecl(bool is_automatic, VeriTypeDef* type, VeriIdDecl* id, VeriModuleItems* declarations,
                                   VeriNodes<VeriStatement>* statements, std::unique_ptr<VeriScope> scope,
                                   unsigned long linefile)
    : VeriSubprogram(id, declarations, statements, std::move(scope), is_automatic, linefile), _type(Adopt(type)) {}

VeriFunctionDecl::~VeriFunctionDecl() { delete _type; }

void VeriFunctionDecl::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _type);
  VeriSubprogram::VisitChildren(visitor);
}

void VeriFunctionDecl::PrettyPrint(std::ostream& out, unsigned level) const {
  PrintFront(out, level);
  out << (_is_automatic ? "function automatic " : "function ");
  PrintType(out, _type, level);
  PrintName(out, GetId()->Name());
  out << ";\n";
  PrintBody(out, level);
  PrintLevel(out, level);
  out << "endfunction\n";
}

void VeriTaskDecl::PrettyPrint(std::ostream& out, unsigned level) const {
  PrintFront(out, level);
  out << (_is_automatic ? "task automatic " : "task ");
  PrintName(out, GetId()->Name());
  out << ";\n";
  PrintBody(out, level);
  PrintLevel(out, level);
  out << "endtask\n";
}

// Assignments and processes.

VeriNetRegAssign::VeriNetRegAssign(VeriExpression* target, VeriExpression* value, unsigned long linefile)
    : VeriTreeNode(linefile), _target(Adopt(target)), _value(Adopt(value)) {}

VeriNetRegAssign::~VeriNetRegAssign() {
  delete _target;
  delete _value;
}

void VeriNetRegAssign::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _target);
  veri_visit(visitor, _value);
}

void VeriNetRegAssign::PrettyPrint(std::ostream& out, unsigned) const {
  _target->PrettyPrint(out, 0);
  out << " = ";
  _value->PrettyPrint(out, 0);
}

VeriContinuousAssign::VeriContinuousAssign(VeriStrength* strength, VeriExpressions* delay,
                                           VeriNodes<VeriNetRegAssign>* assigns, unsigned long linefile)
    : VeriModuleItem(linefile), _strength(Adopt(strength)), _delay(Adopt(delay)), _assigns(Adopt(assigns)) {}

VeriContinuousAssign::~VeriContinuousAssign() {
  delete _strength;
  delete _delay;
  delete _assigns;
}

void VeriContinuousAssign::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _strength);
  veri_visit(visitor, _delay);
  veri_visit(visitor, _assigns);
}

void VeriContinuousAssign::PrettyPrint(std::ostream& out, unsigned level) const {
  PrintFront(out, level);
  out << "assign ";
  PrintStrength(out, _strength);
  PrintDelay(out, _delay);
  veri_print_list(out, _assigns);
  out << ";\n";
}

VeriAlwaysConstruct::VeriAlwaysConstruct(unsigned token, VeriStatement* statement, unsigned long linefile)
    : VeriModuleItem(linefile), _token(token), _statement(Adopt(statement)) {}

VeriAlwaysConstruct::~VeriAlwaysConstruct() { delete _statement; }

void VeriAlwaysConstruct::VisitChildren(VeriVisitor& visitor) { veri_visit(visitor, _statement); }

void VeriAlwaysConstruct::PrettyPrint(std::ostream& out, unsigned level) const {
  PrintFront(out, level);
  out << PrintToken(_token) << '\n';
  if (_statement) _statement->PrettyPrint(out, level + 1);
}

VeriInitialConstruct::VeriInitialConstruct(VeriStatement* statement, unsigned long linefile)
    : VeriModuleItem(linefile), _statement(Adopt(statement)) {}

VeriInitialConstruct::~VeriInitialConstruct() { delete _statement; }

void VeriInitialConstruct::VisitChildren(VeriVisitor& visitor) { veri_visit(visitor, _statement); }

void VeriInitialConstruct::PrettyPrint(std::ostream& out, unsigned level) const {
  PrintFront(out, level);
  out << "initial\n";
  if (_statement) _statement->PrettyPrint(out, level + 1);
}

// Instances.

VeriInst::VeriInst(VeriIdDecl* id, VeriExpressions* connects, unsigned long linefile)
    : VeriTreeNode(linefile), _id(Adopt(id)), _connects(Adopt(connects)) {}

VeriInst::~VeriInst() {
  delete _id;
  delete _connects;
}

void VeriInst::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _id);
  veri_visit(visitor, _connects);
}

VeriInstId* VeriInst::GetInstId() const { return dynamic_cast<VeriInstId*>(GetId()); }

void VeriInst::PrettyPrint(std::ostream& out, unsigned) const {
  if (_id && *Name()) _id->PrettyPrint(out, 0);
  out << " (";
  veri_print_list(out, _connects);
  out << ')';
}

VeriGateInstantiation::VeriGateInstantiation(unsigned token, VeriStrength* strength, VeriExpressions* delay,
                                             VeriNodes<VeriInst>* insts, unsigned long linefile)
    : VeriModuleItem(linefile), _token(token), _strength(Adopt(strength)), _delay(Adopt(delay)), _insts(Adopt(insts)) {}

VeriGateInstantiation::~VeriGateInstantiation() {
  delete _strength;
  delete _delay;
  delete _insts;
}

void VeriGateInstantiation::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _strength);
  veri_visit(visitor, _delay);
  veri_visit(visitor, _insts);
}

void VeriGateInstantiation::PrettyPrint(std::ostream& out, unsigned level) const {
  PrintFront(out, level);
  out << PrintToken(_token) << ' ';
  PrintStrength(out, _strength);
  PrintDelay(out, _delay);
  veri_print_list(out, _insts);
  out << ";\n";
}

VeriModuleInstantiation::VeriModuleInstantiation(VeriName* module, VeriStrength* strength, VeriExpressions* parameters,
                                                 VeriNodes<VeriInst>* insts, unsigned long linefile)
    : VeriModuleItem(linefile), _module(Adopt(module)), _strength(Adopt(strength)), _parameters(Adopt(parameters)),
      _insts(Adopt(insts)) {}

VeriModuleInstantiation::~VeriModuleInstantiation() {
  delete _module;
  delete _strength;
  delete _parameters;
  delete _insts;
}

void VeriModuleInstantiation::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _module);
  veri_visit(visitor, _strength);
  veri_visit(visitor, _parameters);
  veri_visit(visitor, _insts);
}

void VeriModuleInstantiation::PrettyPrint(std::ostream& out, unsigned level) const {
  PrintFront(out, level);
  _module->PrettyPrint(out, 0);
  if (_strength) {
    out << ' ';
    _strength->PrettyPrint(out, 0);
  }
  if (_parameters && _parameters->Size()) {
    out << " #(";
    veri_print_list(out, _parameters);
    out << ')';
  }
  out << ' ';
  veri_print_list(out, _insts);
  out << ";\n";
}

VeriDefParamAssign::VeriDefParamAssign(VeriName* name, VeriExpression* value, unsigned long linefile)
    : VeriTreeNode(linefile), _name(Adopt(name)), _value(Adopt(value)) {}

VeriDefParamAssign::~VeriDefParamAssign() {
  delete _name;
  delete _value;
}

void VeriDefParamAssign::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _name);
  veri_visit(visitor, _value);
}

void VeriDefParamAssign::PrettyPrint(std::ostream& out, unsigned) const {
  _name->PrettyPrint(out, 0);
  out << " = ";
  _value->PrettyPrint(out, 0);
}

VeriDefParam::VeriDefParam(VeriNodes<VeriDefParamAssign>* assigns, unsigned long linefile)
    : VeriModuleItem(linefile), _assigns(Adopt(assigns)) {}

VeriDefParam::~VeriDefParam() { delete _assigns; }

void VeriDefParam::VisitChildren(VeriVisitor& visitor) { veri_visit(visitor, _assigns); }

void VeriDefParam::PrettyPrint(std::ostream& out, unsigned level) const {
  PrintFront(out, level);
  out << "defparam ";
  veri_print_list(out, _assigns);
  out << ";\n";
}

// Generate constructs.

VeriGenerateConstruct::VeriGenerateConstruct(VeriModuleItems* items, unsigned long linefile)
    : VeriGenerateItem(linefile), _items(Adopt(items)) {}

VeriGenerateConstruct::~VeriGenerateConstruct() { delete _items; }

void VeriGenerateConstruct::VisitChildren(VeriVisitor& visitor) { veri_visit(visitor, _items); }

void VeriGenerateConstruct::PrettyPrint(std::ostream& out, unsigned level) const {
  PrintFront(out, level);
  out << "generate\n";
  veri_print_lines(out, _items, level + 1);
  PrintLevel(out, level);
  out << "endgenerate\n";
}

VeriGenerateBlock::VeriGenerateBlock(VeriIdDecl* id, VeriModuleItems* items, std::unique_ptr<VeriScope> scope,
                                     unsigned long linefile)
    : VeriGenerateItem(linefile), _id(Adopt(id)), _items(Adopt(items)), _scope(std::move(scope)) {}

VeriGenerateBlock::~VeriGenerateBlock() {
  delete _items;
  _scope.reset();
  delete _id;
}

void VeriGenerateBlock::VisitChildren(VeriVisitor& visitor) { veri_visit(visitor, _items); }

void VeriGenerateBlock::PrettyPrint(std::ostream& out, unsigned level) const {
  PrintFront(out, level);
  out << "begin : ";
  PrintName(out, Label());
  out << '\n';
  veri_print_lines(out, _items, level + 1);
  PrintLevel(out, level);
  out << "end\n";
}

VeriGenerateConditional::VeriGenerateConditional(VeriExpression* condition, VeriModuleItem* then_item,
                                                 VeriModuleItem* else_item, unsigned long linefile)
    : VeriGenerateItem(linefile), _condition(Adopt(condition)), _then(Adopt(then_item)), _else(Adopt(else_item)) {}

VeriGenerateConditional::~VeriGenerateConditional() {
  delete _condition;
  delete _then;
  delete _else;
}

void VeriGenerateConditional::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _condition);
  veri_visit(visitor, _then);
  veri_visit(visitor, _else);
}

unsigned VeriGenerateConditional::MutuallyExclusive(const VeriTreeNode* a, const VeriTreeNode* b) const {
  return (a == _then && b == _else) || (a == _else && b == _then);
}

void VeriGenerateConditional::PrettyPrint(std::ostream& out, unsigned level) const {
  PrintFront(out, level);
  out << "if (";
  _condition->PrettyPrint(out, 0);
  out << ")\n";
  PrintBody(out, _then, level);
  if (!_else) return;
  PrintLevel(out, level);
  out << "else\n";
  PrintBody(out, _else, level);
}

VeriGenerateCaseItem::VeriGenerateCaseItem(VeriExpressions* conditions, VeriModuleItem* item, unsigned long linefile)
    : VeriTreeNode(linefile), _conditions(Adopt(conditions)), _item(Adopt(item)) {}

VeriGenerateCaseItem::~VeriGenerateCaseItem() {
  delete _conditions;
  delete _item;
}

void VeriGenerateCaseItem::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _conditions);
  veri_visit(visitor, _item);
}

void VeriGenerateCaseItem::PrettyPrint(std::ostream& out, unsigned level) const {
  PrintLevel(out, level);
  if (_conditions)
    veri_print_list(out, _conditions);
  else
    out << "default";
  out << " :\n";
  PrintBody(out, _item, level);
}

VeriGenerateCase::VeriGenerateCase(unsigned token, VeriExpression* expression, VeriNodes<VeriGenerateCaseItem>* items,
                                   unsigned long linefile)
    : VeriGenerateItem(linefile), _token(token), _expression(Adopt(expression)), _items(Adopt(items)) {}

VeriGenerateCase::~VeriGenerateCase() {
  delete _expression;
  delete _items;
}

void VeriGenerateCase::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _expression);
  veri_visit(visitor, _items);
}

unsigned VeriGenerateCase::MutuallyExclusive(const VeriTreeNode* a, const VeriTreeNode* b) const {
  return a != b && a != _expression && b != _expression;
}

void VeriGenerateCase::PrettyPrint(std::ostream& out, unsigned level) const {
  PrintFront(out, level);
  out << PrintToken(_token) << " (";
  _expression->PrettyPrint(out, 0);
  out << ")\n";
  veri_print_lines(out, _items, level + 1);
  PrintLevel(out, level);
  out << "endcase\n";
}

VeriGenerateFor::VeriGenerateFor(VeriGenVarAssign* initial, VeriExpression* condition, VeriExpression* repetition,
                                 VeriModuleItem* body, VeriIdDecl* declared, std::unique_ptr<VeriScope> scope,
                                 unsigned long linefile)
    : VeriGenerateItem(linefile), _initial(Adopt(initial)), _condition(Adopt(condition)),
      _repetition(Adopt(repetition)), _body(Adopt(body)), _declared(Adopt(declared)), _scope(std::move(scope)) {}

VeriName* VeriGenerateFor::Genvar() const { return _initial->Name(); }

VeriGenerateFor::~VeriGenerateFor() {
  delete _initial;
  delete _condition;
  delete _repetition;
  delete _body;
  delete _declared;
}

void VeriGenerateFor::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _declared);
  veri_visit(visitor, _initial);
  veri_visit(visitor, _condition);
  veri_visit(visitor, _repetition);
  veri_visit(visitor, _body);
}

void VeriGenerateFor::PrettyPrint(std::ostream& out, unsigned level) const {
  PrintFront(out, level);
  out << (_declared ? "for (genvar " : "for (");
  _initial->PrettyPrint(out, 0);
  out << "; ";
  _condition->PrettyPrint(out, 0);
  out << "; ";
  _repetition->PrettyPrint(out, 0);
  out << ")\n";
  PrintBody(out, _body, level);
}

// The rest.

void VeriIgnoredItem::PrettyPrint(std::ostream&, unsigned) const {}

VeriImport::VeriImport(const char* package, const char* name, unsigned long linefile)
    : VeriModuleItem(linefile), _package(package), _name(name ? name : "") {}

void VeriImport::PrettyPrint(std::ostream& out, unsigned level) const {
  PrintFront(out, level);
  PrintHead(out);
  out << '\n';
}

void VeriImport::PrintHead(std::ostream& out) const {
  out << "import ";
  PrintName(out, _package.c_str());
  out << "::";
  if (_name.empty())
    out << '*';
  else
    PrintName(out, _name.c_str());
  out << ';';
}

// Modports.

VeriModportPorts::VeriModportPorts(unsigned direction, VeriIdDecl* id, unsigned long linefile)
    : VeriTreeNode(linefile), _direction(direction), _id(Adopt(id)) {}

VeriModportPorts::~VeriModportPorts() { delete _id; }

void VeriModportPorts::VisitChildren(VeriVisitor& visitor) { veri_visit(visitor, _id); }

void VeriModportPorts::PrettyPrint(std::ostream& out, unsigned level) const {
  PrintAttributes(out, level);
  out << PrintToken(_direction) << ' ';
  if (Expression()) out << '.';
  PrintName(out, GetId()->Name());
  if (!Expression()) return;
  out << '(';
  Expression()->PrettyPrint(out, 0);
  out << ')';
}

VeriModport::VeriModport(VeriIdDecl* id, VeriNodes<VeriModportPorts>* ports, std::unique_ptr<VeriScope> scope,
                         unsigned long linefile)
    : VeriTreeNode(linefile), _id(Adopt(id)), _ports(Adopt(ports)), _scope(std::move(scope)) {
  if (auto* modport_id = _id->IdAs<VeriModportId>()) modport_id->SetModport(this);
}

VeriModport::~VeriModport() {
  delete _ports;
  _scope.reset();
  delete _id;
}

void VeriModport::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _id);
  veri_visit(visitor, _ports);
}

VeriModportPorts* VeriModport::FindPort(const char* name) const {
  for (VeriModportPorts* port : *_ports)
    if (Strings::compare(port->GetId()->Name(), name)) return port;
  return nullptr;
}

void VeriModport::PrettyPrint(std::ostream& out, unsigned) const {
  PrintName(out, Name());
  out << " (";
  veri_print_list(out, _ports);
  out << ')';
}

VeriModportDecl::VeriModportDecl(VeriNodes<VeriModport>* modports, unsigned long linefile)
    : VeriModuleItem(linefile), _modports(Adopt(modports)) {}

VeriModportDecl::~VeriModportDecl() { delete _modports; }

void VeriModportDecl::VisitChildren(VeriVisitor& visitor) { veri_visit(visitor, _modports); }

void VeriModportDecl::PrettyPrint(std::ostream& out, unsigned level) const {
  PrintFront(out, level);
  out << "modport ";
  veri_print_list(out, _modports);
  out << ";\n";
}

void VeriTable::PrettyPrint(std::ostream& out, unsigned level) const {
  PrintLevel(out, level);
  out << "table\n";
  for (const std::string& row : _rows) {
    PrintLevel(out, level + 1);
    for (char letter : row) out << letter << ' ';
    out << ";\n";
  }
  PrintLevel(out, level);
  out << "endtable\n";
}
