// The second pass over a design unit: binds names to identifiers, notes how each identifier is used and which other
// units and files the unit depends on. Errors do not stop it, so that one run tells all undeclared names.
#include "verilog/veriresolve.h"

#include <string_view>

#include "util/linefile.h"
#include "verilog/veri_file.h"
#include "verilog/veri_tokens.h"
#include "verilog/veriassertion.h"
#include "verilog/veriexpression.h"
#include "verilog/verilibrary.h"
#include "verilog/verimodule.h"
#include "verilog/verimoduleitem.h"
#include "verilog/veriscope.h"
#include "verilog/verispecify.h"
#include "verilog/veristatement.h"

const VeriTreeNode* VeriProcessScope::_present = nullptr;

namespace {

VeriEnv constant(VERI_ENV_E kind) { return VeriEnv(kind, 0, /*constant=*/true); }

/// How the operands of an expression are used when its value is used like this.
VeriEnv operand_env(const VeriEnv& env) {
  switch (env.Kind()) {
  case ENV_STATEMENT:
  case ENV_SUBROUTINE_ARG:
  case ENV_TARGET:
  case ENV_PORT_CONNECTION:
  case ENV_PORT_EXPRESSION:
  case ENV_FORCED_TARGET:
  case ENV_READ_WRITE: return env.With(ENV_READ);
  case ENV_DECLARATION:
  case ENV_READ:
  case ENV_INDEX:
  case ENV_RANGE_BOUND:
  case ENV_CONDITION:
  case ENV_EVENT:
  case ENV_SYSTEM_TASK_ARG:
  case ENV_LOOP_CONDITION:
  case ENV_INITIAL_VALUE:
  case ENV_MAYBE_UNDECLARED:
  case ENV_NO_DYNAMIC: return env;
  }
  return env;
}

bool may_be_undeclared(const VeriEnv& env) {
  return env.Kind() == ENV_MAYBE_UNDECLARED || env.Kind() == ENV_SYSTEM_TASK_ARG;
}

void resolve(VeriExpression* expression, VeriScope* scope, const VeriEnv& env) {
  if (expression) expression->Resolve(scope, env);
}

template <class T> void resolve_all(const VeriNodes<T>* expressions, VeriScope* scope, const VeriEnv& env) {
  for (T* expression : ItemsOf<T*>(expressions)) resolve(expression, scope, env);
}

/// Declared dimensions.
void resolve_ranges(const VeriNodes<VeriRange>* ranges, VeriScope* scope) {
  resolve_all(ranges, scope, constant(ENV_RANGE_BOUND));
}

/// Items or statements.
template <class T> void resolve_all(const VeriNodes<T>* nodes, VeriScope* scope) {
  for (T* node : ItemsOf<T*>(nodes))
    if (node) node->Resolve(scope);
}

template <class T> void resolve(T* node, VeriScope* scope) {
  if (node) node->Resolve(scope);
}

// The use of an identifier.

bool is_in_initial_construct() {
  const VeriTreeNode* process = VeriProcessScope::Present();
  return process && process->GetClassId() == ID_VeriInitialConstruct;
}

void note_assignment(VeriIdDef* id) {
  if (id->Is(IDF_ASSIGNED) && !is_in_initial_construct()) id->Set(IDF_MULTI_ASSIGNED);
  id->Set(IDF_ASSIGNED);
}

veri_use use_of(const VeriEnv& env) {
  switch (env.Kind()) {
  case ENV_EVENT: return VERI_USE_EVENT;
  case ENV_TARGET: return VERI_USE_WRITE;
  case ENV_READ_WRITE: return VERI_USE_READ_WRITE;
  default: return env.IsRead() && !env.IsWrite() ? VERI_USE_READ : VERI_USE_OTHER;
  }
}

bool is_target(const VeriEnv& env) {
  return env.Kind() == ENV_TARGET || env.Kind() == ENV_FORCED_TARGET || env.Kind() == ENV_READ_WRITE;
}

/// A function assigns to its name.
bool is_own_result(const VeriIdDef* id) {
  return id->IsFunction() && VeriProcessScope::Present() && id->GetModuleItem() == VeriProcessScope::Present();
}

void analyze_reference(VeriIdDef* id, const VeriEnv& env, const VeriTreeNode* from) {
  if (env.IsWrite()) {
    if (id->IsGenVar())
      from->Error("cannot assign to generate variable %s here", id->Name());
    else if (is_target(env) && !id->IsVar() && !is_own_result(id))
      from->Error("cannot assign to non-variable %s", id->Name());
    note_assignment(id);
  }
  if (env.IsRead()) id->Set(IDF_READ);
  if (env.Kind() == ENV_PORT_EXPRESSION && id->IsVar()) id->Set(IDF_PORT);
  if (!id->IsVar()) return;
  auto* variable = static_cast<VeriVariable*>(id);
  variable->NoteReference(VeriProcessScope::Present());
  if (variable->NumUnpacked() || variable->IsReg())
    variable->AddReference({from, VeriProcessScope::Present(), use_of(env)});
}

/// What lies in another file makes the unit depend on that; what lies in a package, on the package as well.
void register_dependency(VeriIdDef* id, const VeriScope* scope, const VeriTreeNode* from) {
  auto* unit_id = id->IsDesignUnit() ? static_cast<VeriDesignUnitId*>(id) : nullptr;
  const bool is_interface = unit_id && unit_id->GetDesignUnitToken() == VERI_INTERFACE;
  if (!id->Is(IDF_GLOBAL) && !is_interface) return;
  const char* file = LineFile::GetFileName(id->Linefile());
  if (file != LineFile::GetFileName(from->Linefile())) VeriTreeNode::AddImplicitDependency(file);
  VeriDesignUnit* package = id->DeclaringScope() ? id->DeclaringScope()->GetContainingDesignUnit() : nullptr;
  VeriDesignUnit* user = scope->GetContainingDesignUnit();
  if (!package || package == user || !package->IsPackage()) return;
  if (user) user->GetId()->AddDependent(package->GetId());
  package->Resolve();
}

// Types.

/// Chains of type names that come back to themselves end somewhere.
constexpr unsigned max_type_names = 100;

/// The identifier that a name of a type stands for; null for what is no name of a type.
const VeriDataType* named_type(const VeriTypeDef* type) {
  if (!type || type->GetClassId() != ID_VeriTypeName) return nullptr;
  const VeriIdDef* id = static_cast<const VeriTypeName*>(type)->Name()->GetId();
  return id && id->IsDataType() ? static_cast<const VeriDataType*>(id) : nullptr;
}

} // namespace

const VeriTypeDef* veri_real_type(const VeriTypeDef* type) {
  for (unsigned i = 0; i < max_type_names; i++) {
    if (type && type->GetClassId() == ID_VeriArrayTypeDef) {
      type = static_cast<const VeriArrayTypeDef*>(type)->Element();
      continue;
    }
    if (!type || type->GetClassId() != ID_VeriTypeName) return type;
    const VeriDataType* id = named_type(type);
    type = id ? id->Type() : nullptr;
  }
  return nullptr;
}

namespace {

struct Dimensions {
  unsigned unpacked = 0;
  unsigned packed = 0;
  bool is_known = true;
};

unsigned size_of(const VeriNodes<VeriRange>* ranges) { return ranges ? ranges->Size() : 0; }

/// The dimensions that a keyword has by itself.
void add_keyword(unsigned token, Dimensions& out) {
  switch (token) {
  case VERI_INTEGER:
  case VERI_TIME:
  case VERI_BYTE:
  case VERI_SHORTINT:
  case VERI_INT:
  case VERI_LONGINT: out.packed++; break;
  case VERI_STRING: out.is_known = false; break;
  default: break;
  }
}

Dimensions dimensions_of(const VeriValuedId* id) {
  Dimensions out;
  out.unpacked = id->NumUnpacked();
  const VeriTypeDef* type = id->Type();
  for (unsigned i = 0; type; i++) {
    out.packed += size_of(type->Ranges());
    if (type->GetClassId() == ID_VeriArrayTypeDef) type = static_cast<const VeriArrayTypeDef*>(type)->Element();
    if (type->GetClassId() != ID_VeriTypeName) break;
    const VeriDataType* name = named_type(type);
    if (!name || i == max_type_names) {
      out.is_known = false;
      return out;
    }
    out.unpacked += name->NumUnpacked();
    type = name->Type();
  }
  if (!type) return out;
  if (type->GetClassId() == ID_VeriPrimitiveTypeDef || type->IsImplicit())
    add_keyword(type->Type(), out);
  else
    out.is_known = false; // of enumerations and structs
  return out;
}

const VeriStructUnionTypeDef* to_struct(const VeriTypeDef* type) {
  const VeriTypeDef* real = veri_real_type(type);
  return real && real->GetClassId() == ID_VeriStructUnionTypeDef ? static_cast<const VeriStructUnionTypeDef*>(real)
                                                                 : nullptr;
}

const VeriTypeDef* type_of(const VeriIdDef* id) {
  const auto* valued = dynamic_cast<const VeriValuedId*>(id);
  return valued ? valued->Type() : nullptr;
}

/// The struct that a name stands for; null for anything else.
const VeriStructUnionTypeDef* struct_of(const VeriName* name) {
  switch (name->GetClassId()) {
  case ID_VeriIndexedName: return struct_of(static_cast<const VeriIndexedName*>(name)->GetPrefix());
  case ID_VeriSelectedName: {
    const auto* selected = static_cast<const VeriSelectedName*>(name);
    if (selected->GetId()) return to_struct(type_of(selected->GetId()));
    const VeriStructUnionTypeDef* prefix = struct_of(selected->GetPrefix());
    return prefix ? to_struct(type_of(prefix->FindMember(selected->GetSuffix().c_str()))) : nullptr;
  }
  default: return name->GetId() ? to_struct(type_of(name->GetId())) : nullptr;
  }
}

// Subprograms.

const VeriSubprogram* to_subprogram(const VeriIdDef* id) {
  return id ? dynamic_cast<const VeriSubprogram*>(id->GetModuleItem()) : nullptr;
}

/// The formal that an argument names; null for one by order.
const char* named_argument(const VeriExpression* actual) {
  return actual && actual->GetClassId() == ID_VeriPortConnect
             ? static_cast<const VeriPortConnect*>(actual)->NamedFormal()
             : nullptr;
}

const VeriVariable* find_formal(const std::vector<VeriVariable*>& formals, const VeriExpression* actual,
                                unsigned position) {
  const char* name = named_argument(actual);
  if (!name) return position < formals.size() ? formals[position] : nullptr;
  for (const VeriVariable* formal : formals)
    if (Strings::compare(formal->Name(), name)) return formal;
  return nullptr;
}

/// What an argument can be that a value is handed back to.
bool is_target_expression(const VeriExpression* actual) {
  if (actual->GetClassId() == ID_VeriPortConnect) actual = static_cast<const VeriPortConnect*>(actual)->Connection();
  return !actual || actual->AsName() || actual->IsConcat();
}

/// The arguments of a call, by the directions of the formals.
void resolve_arguments(const VeriExpressions* args, const VeriSubprogram* subprogram, VeriScope* scope,
                       const VeriEnv& env) {
  unsigned position = 0;
  class Set given(HASH_STRING);
  bool has_names = false;
  for (VeriExpression* arg : ItemsOf<VeriExpression*>(args)) {
    const char* name = named_argument(arg);
    has_names = has_names || name;
    if (name && subprogram && !find_formal(subprogram->Formals(), arg, position))
      arg->Error("%s has no argument named %s", subprogram->GetId()->Name(), name);
    if (name && !given.Insert(name)) arg->Error("argument %s is given more than once", name);
    if (arg && !name && has_names) arg->Error("arguments by order must come before those by name");
    const VeriVariable* formal = subprogram && arg ? find_formal(subprogram->Formals(), arg, position) : nullptr;
    const unsigned direction = formal ? formal->Dir() : static_cast<unsigned>(VERI_INPUT);
    resolve(arg, scope, VeriEnv(ENV_SUBROUTINE_ARG, direction, env.IsConstant()));
    if (direction != VERI_INPUT && !is_target_expression(arg)) arg->Error("illegal expression in target");
    position++;
  }
}

} // namespace

void VeriTreeNode::ResolveAttributes(VeriScope* scope) const {
  for (VeriExpression* value : ValuesOf<VeriExpression*>(_attributes)) resolve(value, scope, constant(ENV_READ));
}

// Names.

namespace {

/// Verilog knows no value of a whole memory (IEEE 1364-2005 clause 4.9).
void check_whole_array(const VeriIdDef* id, const VeriEnv& env, const VeriTreeNode& name) {
  if (VeriNode::IsSystemVerilog() || !id->IsVar() || (!env.IsRead() && !env.IsWrite())) return;
  const auto* variable = static_cast<const VeriVariable*>(id);
  const bool is_prefix = name.Parent() && name.Parent()->GetClassId() == ID_VeriIndexedName;
  if (!variable->NumUnpacked() || is_prefix || may_be_undeclared(env)) return;
  name.Error("array %s should be indexed by %d dimensions", id->Name(), static_cast<int>(variable->NumUnpacked()));
}

bool is_real(const VeriExpression* expression) {
  if (expression->GetClassId() == ID_VeriRealLiteral) return true;
  const VeriName* name = expression->AsName();
  const VeriIdDef* id = name && name->GetClassId() == ID_VeriIdRef ? name->GetId() : nullptr;
  if (!id || !id->IsVar()) return false;
  const VeriTypeDef* type = veri_real_type(static_cast<const VeriVariable*>(id)->Type());
  return type && (type->Type() == VERI_REAL || type->Type() == VERI_REALTIME || type->Type() == VERI_SHORTREAL);
}

} // namespace

void VeriName::AnalyzeReference(VeriIdDef* id, const VeriEnv& env) const { analyze_reference(id, env, this); }

void VeriIdRef::Resolve(VeriScope* scope, const VeriEnv& env) {
  if (!_id) _id = scope->Find(GetName());
  // A design unit is no value.
  if (_id && _id->IsDesignUnit() && (env.IsRead() || env.IsWrite())) _id = nullptr;
  if (!_id) {
    if (!may_be_undeclared(env)) Error("%s is not declared", GetName());
    return;
  }
  register_dependency(_id, scope, this);
  AnalyzeReference(_id, env);
  check_whole_array(_id, env, *this);
}

void VeriScopedIdRef::Resolve(VeriScope* scope, const VeriEnv& env) {
  if (!_id) {
    const VeriScope* source = nullptr;
    VeriLibrary* library = scope->GetLibrary();
    if (_package == "$unit") {
      source = library ? library->GetScope() : nullptr;
    } else if (VeriPackage* package = veri_file::FindPackage(_package.c_str(), library)) {
      source = package->GetScope();
    }
    if (!source) {
      Error("package %s is not declared", _package.c_str());
      return;
    }
    _id = source->FindLocal(_name.c_str());
  }
  if (!_id) {
    Error("%s is not declared in package %s", _name.c_str(), _package.c_str());
    return;
  }
  register_dependency(_id, scope, this);
  AnalyzeReference(_id, env);
}

/// What is read or written through a prefix is the object that the whole name begins with, if it begins with one.
void VeriSelectedName::ResolvePrefix(VeriScope* scope, const VeriEnv& env) {
  if (_prefix->GetClassId() != ID_VeriIdRef) {
    _prefix->Resolve(scope, env);
    return;
  }
  _prefix->Resolve(scope, may_be_undeclared(env) ? env : env.With(ENV_NO_DYNAMIC));
  VeriIdDef* id = _prefix->GetId();
  if (id && (id->IsVar() || (is_own_result(id) && struct_of(_prefix)))) AnalyzeReference(id, env);
}

void VeriSelectedName::BindIn(const VeriScope* scope, const VeriEnv& env) {
  _id = scope->FindLocal(_suffix.c_str());
  if (_id)
    AnalyzeReference(_id, env);
  else
    Error("%s is not declared under this prefix", _suffix.c_str());
}

/// Elaboration finds the object of the round or branch that exists; until then the use counts for all of them.
void VeriSelectedName::AnalyzeInGenerated(const VeriIdDef* block, const VeriEnv& env) const {
  if (!block->DeclaringScope()) return;
  for (const VeriScope* body : KeysOf<const VeriScope*>(&block->DeclaringScope()->Children())) {
    const VeriIdDef* owner = body->Kind() == SCOPE_GENERATE ? body->GetOwner() : nullptr;
    if (!owner || !Strings::compare(owner->Name(), block->Name())) continue;
    if (VeriIdDef* id = body->FindLocal(_suffix.c_str())) AnalyzeReference(id, env);
  }
}

namespace {

veri_method method_of(std::string_view name) {
  constexpr std::pair<std::string_view, veri_method> methods[] = {
      {"first", METHOD_FIRST}, {"last", METHOD_LAST}, {"next", METHOD_NEXT},
      {"prev", METHOD_PREV},   {"num", METHOD_NUM},   {"name", METHOD_NAME},
  };
  for (const auto& [text, method] : methods)
    if (name == text) return method;
  return METHOD_NONE;
}

/// The type of a port that is an interface, or of an array of such; null for anything else.
const VeriInterfaceTypeDef* interface_type_of(const VeriIdDef* id) {
  return id->IsVar() ? static_cast<const VeriVariable*>(id)->InterfaceType() : nullptr;
}

} // namespace

// What the port stands for is known to elaboration only; here it must be one of the names that the interface offers.
void VeriSelectedName::ResolveInInterface(const VeriInterfaceTypeDef& type, const VeriEnv& env) const {
  const VeriModule* interface = type.GetInterface();
  if (!interface) return;
  const VeriModport* modport = type.GetModport();
  const VeriModportPorts* port = modport ? modport->FindPort(_suffix.c_str()) : nullptr;
  VeriIdDef* object = port ? port->Object() : interface->GetScope()->FindLocal(_suffix.c_str());
  const bool is_hidden = modport && !port && object && (object->IsVar() || object->IsFunction() || object->IsTask());
  if (is_hidden || (!port && !object)) {
    if (!may_be_undeclared(env)) Error("%s is not declared under this prefix", _suffix.c_str());
    return;
  }
  if (port && env.IsWrite() && port->Direction() == VERI_INPUT)
    Error("%s cannot be written through modport %s", _suffix.c_str(), modport->Name());
  if (object) AnalyzeReference(object, env);
}

/// The methods that the language gives to every enumeration, IEEE 1800-2005 clause 4.10.4.
bool VeriSelectedName::BindMethod(const VeriIdDef* prefix, const VeriEnv& env) {
  const VeriTypeDef* type = IsSystemVerilog() ? veri_real_type(type_of(prefix)) : nullptr;
  if (!type || type->GetClassId() != ID_VeriEnumTypeDef) return false;
  _method = method_of(_suffix);
  if (_method == METHOD_NONE) return false;
  _enum = static_cast<const VeriEnumTypeDef*>(type);
  if (env.IsWrite()) Error("cannot assign to non-variable %s", _suffix.c_str());
  return true;
}

void VeriSelectedName::Resolve(VeriScope* scope, const VeriEnv& env) {
  ResolvePrefix(scope, env);
  if (const VeriStructUnionTypeDef* type = struct_of(_prefix)) {
    _is_member = true;
    if (!type->FindMember(_suffix.c_str())) Error("%s is not declared under this prefix", _suffix.c_str());
    return;
  }
  if (env.IsConstant()) {
    Error("constant expression cannot contain a hierarchical identifier");
    return;
  }
  if (_id) {
    AnalyzeReference(_id, env);
    return;
  }
  VeriIdDef* prefix = _prefix->GetId();
  if (!prefix) return; // reported, or found by elaboration
  const VeriScope* inner = prefix->LocalScope();
  switch (prefix->Kind()) {
  case VERI_ID_INST: return;
  case VERI_ID_DESIGN_UNIT:
    if (inner && inner == scope->ModuleScope()) BindIn(inner, env);
    return;
  case VERI_ID_BLOCK:
    if (!inner) return;
    if (inner->Kind() != SCOPE_GENERATE)
      BindIn(inner, env);
    else
      AnalyzeInGenerated(prefix, env);
    return;
  case VERI_ID_FUNCTION:
  case VERI_ID_TASK:
    if (inner) BindIn(inner, env);
    return;
  case VERI_ID_VARIABLE:
  case VERI_ID_PARAM:
  case VERI_ID_GENVAR:
  case VERI_ID_TYPE:
  case VERI_ID_ENUM:
  case VERI_ID_MEMBER:
  case VERI_ID_MODPORT:
  case VERI_ID_PROPERTY:
  case VERI_ID_SEQUENCE:
  case VERI_ID_LIBRARY:
    if (const VeriInterfaceTypeDef* type = interface_type_of(prefix)) return ResolveInInterface(*type, env);
    if (BindMethod(prefix, env)) return;
    if (!may_be_undeclared(env)) Error("%s is not declared under this prefix", _suffix.c_str());
    return;
  }
}

void VeriIndexedName::Resolve(VeriScope* scope, const VeriEnv& env) {
  _prefix->Resolve(scope, env);
  for (VeriExpression* index : _indices) {
    resolve(index, scope, may_be_undeclared(env) ? env : env.Index());
    if (index && is_real(index)) index->Error("index %s cannot be a real value", index->Image().c_str());
  }
  const VeriIdDef* id = _prefix->GetId();
  if (id && !IsPathElement()) CheckIndices(id, env);
}

/// One round of a loop or one of several instances, with a name behind it.
bool VeriIndexedName::IsPathElement() const { return Parent() && Parent()->GetClassId() == ID_VeriSelectedName; }

namespace {

/// Whether a whole array makes no sense as the value.
bool needs_vector(const VeriEnv& env) {
  switch (env.Kind()) {
  case ENV_INDEX:
  case ENV_RANGE_BOUND:
  case ENV_CONDITION:
  case ENV_EVENT:
  case ENV_LOOP_CONDITION: return true;
  default: return false;
  }
}

} // namespace

void VeriIndexedName::CheckIndices(const VeriIdDef* id, const VeriEnv& env) const {
  if (id->IsInst() && env.Kind() == ENV_PORT_CONNECTION) return; // one of an array of interfaces
  const auto* valued = dynamic_cast<const VeriValuedId*>(id);
  if (!valued || id->IsDataType()) {
    Error("cannot index into non-array %s", id->Name());
    return;
  }
  if (!id->IsVar() && !id->IsFunction()) return; // the type of a parameter may come with its value
  const Dimensions dimensions = dimensions_of(valued);
  if (env.Kind() == ENV_PORT_EXPRESSION && (dimensions.unpacked != 0 || to_struct(valued->Type()))) {
    Error("no support for indexing unpacked array or struct port %s in a list of ports", id->Name());
    return;
  }
  if (!dimensions.is_known || may_be_undeclared(env)) return;
  const unsigned given = _indices.Size();
  const bool is_slice = given != 0 && _indices.GetLast() && _indices.GetLast()->AsRange();
  const bool is_aggregate = given < dimensions.unpacked || (is_slice && given == dimensions.unpacked);
  if (dimensions.unpacked + dimensions.packed == 0)
    Error("cannot index into non-array %s", id->Name());
  else if (given > dimensions.unpacked + dimensions.packed)
    Error("indexed name specifies too many indices for array %s", id->Name());
  else if (is_aggregate && needs_vector(env))
    Error("indexing %s returns an aggregate value", id->Name());
  else if (is_aggregate && !IsSystemVerilog() && is_slice)
    Error("part-select of memory %s is not allowed", id->Name());
  else if (is_aggregate && !IsSystemVerilog())
    Error("indexed name does not fully index array %s", id->Name());
}

// Expressions.

namespace {

bool is_comparison(unsigned token) {
  switch (token) {
  case VERI_EQ:
  case VERI_NEQ:
  case VERI_CASE_EQ:
  case VERI_CASE_NEQ:
  case VERI_LESS:
  case VERI_LESS_EQ:
  case VERI_GREATER:
  case VERI_GREATER_EQ: return true;
  default: return false;
  }
}

} // namespace

void VeriBinaryOperator::Resolve(VeriScope* scope, const VeriEnv& env) {
  resolve(_left, scope, operand_env(env));
  resolve(_right, scope, operand_env(env));
  const bool are_names = _left->GetClassId() == ID_VeriIdRef && _right->GetClassId() == ID_VeriIdRef;
  if (are_names && is_comparison(_token) && _left->AsName()->GetId() &&
      _left->AsName()->GetId() == _right->AsName()->GetId())
    Warning("comparison of %s with itself", _left->GetName());
}

void VeriUnaryOperator::Resolve(VeriScope* scope, const VeriEnv& env) { resolve(_operand, scope, operand_env(env)); }

void VeriQuestionColon::Resolve(VeriScope* scope, const VeriEnv& env) {
  resolve(_condition, scope, operand_env(env));
  resolve(_one, scope, operand_env(env));
  resolve(_zero, scope, operand_env(env));
}

void VeriConcat::Resolve(VeriScope* scope, const VeriEnv& env) {
  resolve(_count, scope, constant(ENV_READ));
  resolve_all(_parts, scope, env);
  // IEEE 1364-2005 clause 5.1.14: the size of each part must be known.
  if (_count && is_real(_count)) _count->Error("replication count %s cannot be a real value", _count->Image().c_str());
  for (VeriExpression* part : *_parts)
    if (part && is_real(part)) part->Error("part %s of a concatenation cannot be a real value", part->Image().c_str());
  for (VeriExpression* part : *_parts)
    if (part && part->GetClassId() == ID_VeriIntLiteral)
      part->Warning("unsized constant %s in concatenation is taken as %d bits", part->Image().c_str(),
                    static_cast<int>(part->TypeInfer(nullptr).size));
}

// What matches a member of a union is no name of the scope.
void VeriPattern::Resolve(VeriScope* scope, const VeriEnv& env) {
  const bool is_member = _token == VERI_TAGGED || _token == VERI_DOT;
  if (!is_member) resolve(_left, scope, operand_env(env));
  resolve(_right, scope, _token == VERI_TRIPLE_AND ? operand_env(env) : VeriEnv(ENV_MAYBE_UNDECLARED));
}

void VeriMinTypMaxExpr::Resolve(VeriScope* scope, const VeriEnv& env) {
  resolve(_min, scope, operand_env(env));
  resolve(_typ, scope, operand_env(env));
  resolve(_max, scope, operand_env(env));
}

// Of a part-select only the base of [base+:width] may vary.
void VeriRange::Resolve(VeriScope* scope, const VeriEnv& env) {
  const bool is_in_concat = Parent() && Parent()->IsExpr() && static_cast<VeriExpression*>(Parent())->IsConcat();
  if (is_in_concat || (Parent() && Parent()->GetClassId() == ID_VeriCaseItem)) { // among values
    resolve(_left, scope, env);
    resolve(_right, scope, env);
    return;
  }
  if (may_be_undeclared(env)) {
    resolve(_left, scope, env);
    resolve(_right, scope, env);
    return;
  }
  const bool is_variable_base = _token != VERI_COLON && env.Kind() == ENV_INDEX && !env.IsConstant();
  resolve(_left, scope, is_variable_base ? env : constant(ENV_RANGE_BOUND));
  resolve(_right, scope, constant(ENV_RANGE_BOUND));
  for (const VeriExpression* bound : {_left, _right})
    if (bound && is_real(bound)) bound->Error("bound %s of a range cannot be a real value", bound->Image().c_str());
}

namespace {

/// A name of a method; null for any other name.
const VeriSelectedName* to_method(const VeriName* name) {
  if (name->GetClassId() != ID_VeriSelectedName) return nullptr;
  const auto* selected = static_cast<const VeriSelectedName*>(name);
  return selected->GetMethodType() != METHOD_NONE ? selected : nullptr;
}

} // namespace

void VeriFunctionCall::Resolve(VeriScope* scope, const VeriEnv& env) {
  _name->Resolve(scope, VeriEnv(ENV_MAYBE_UNDECLARED));
  if (const VeriSelectedName* method = to_method(_name)) {
    method->GetPrefix()->Resolve(scope, env.With(ENV_READ));
    resolve_arguments(_args, nullptr, scope, env);
    return;
  }
  VeriIdDef* id = _name->GetId();
  const bool is_simple = _name->GetClassId() == ID_VeriIdRef;
  if (id && id->IsTask())
    Error("task %s cannot be called like a function", id->Name());
  else if (id && (id->IsProperty() || id->IsSequence()))
    ; // an instance of it
  else if ((!id && is_simple && !may_be_undeclared(env)) || (id && !id->IsFunction()))
    Error("function %s is not declared", _name->Image().c_str());
  else if (id && static_cast<VeriFunctionId*>(id)->Type() &&
           static_cast<VeriFunctionId*>(id)->Type()->Type() == VERI_VOID)
    Error("function %s has no value", id->Name());
  if (id) id->Set(IDF_READ);
  resolve_arguments(_args, to_subprogram(id), scope, env);
}

namespace {

/// Has no result, IEEE 1364-2005 clause 17.
bool is_system_task(std::string_view name) {
  constexpr std::string_view names[] = {"$display",  "$write",    "$strobe",   "$monitor", "$finish",   "$stop",
                                        "$readmemb", "$readmemh", "$fdisplay", "$fwrite",  "$dumpfile", "$dumpvars",
                                        "$error",    "$warning",  "$info",     "$fatal"};
  return std::find(std::begin(names), std::end(names), name) != std::end(names);
}

} // namespace

void VeriSystemFunctionCall::Resolve(VeriScope* scope, const VeriEnv& env) {
  if (is_system_task(_name)) Error("system task %s cannot be called like a function", _name.c_str());
  resolve_all(_args, scope, may_be_undeclared(env) ? env : env.With(ENV_READ));
}

namespace {

/// += and its like, ++ and --.
bool reads_its_target(unsigned token) {
  switch (token) {
  case VERI_PLUS_ASSIGN:
  case VERI_MINUS_ASSIGN:
  case VERI_STAR_ASSIGN:
  case VERI_SLASH_ASSIGN:
  case VERI_MODULO_ASSIGN:
  case VERI_AND_ASSIGN:
  case VERI_OR_ASSIGN:
  case VERI_XOR_ASSIGN:
  case VERI_SHIFT_LEFT_ASSIGN:
  case VERI_SHIFT_RIGHT_ASSIGN:
  case VERI_ARITH_SHIFT_LEFT_ASSIGN:
  case VERI_ARITH_SHIFT_RIGHT_ASSIGN:
  case VERI_INCREMENT:
  case VERI_DECREMENT: return true;
  default: return false;
  }
}

} // namespace

void VeriAssignmentOperator::Resolve(VeriScope* scope, const VeriEnv&) {
  resolve(_target, scope, VeriEnv(reads_its_target(_token) ? ENV_READ_WRITE : ENV_TARGET));
  resolve(_value, scope, VeriEnv(ENV_READ));
}

// IEEE 1800-2005 clauses 8.13.1 and 8.13.2: all elements by position or all by key, and each key once.
void VeriAssignmentPattern::CheckKeys() const {
  unsigned by_position = 0;
  unsigned defaults = 0;
  class Set keys(HASH_STRING);
  for (const Part& part : _parts) {
    if (part.is_default && ++defaults > 1) Error("assignment pattern has more than one default");
    if (!part.is_default && !part.key) by_position++;
    const char* name = part.key ? part.key->GetName() : nullptr;
    if (name && !keys.Insert(name))
      part.key->Error("element %s of the assignment pattern is given more than once", name);
  }
  if (by_position && by_position != _parts.size()) Error("assignment pattern mixes elements by position and by key");
}

// A key may name a member of the target's type, which is no name of the scope.
void VeriAssignmentPattern::Resolve(VeriScope* scope, const VeriEnv& env) {
  CheckKeys();
  for (const Part& part : _parts) {
    resolve(part.key, scope, VeriEnv(ENV_MAYBE_UNDECLARED));
    resolve(part.value, scope, env.Kind() == ENV_TARGET ? env : operand_env(env));
  }
}

void VeriTypeCast::Resolve(VeriScope* scope, const VeriEnv& env) {
  resolve(_type, scope, constant(ENV_DECLARATION));
  resolve(_operand, scope, operand_env(env));
}

void VeriEventExpression::Resolve(VeriScope* scope, const VeriEnv&) {
  resolve(_operand, scope, VeriEnv(ENV_EVENT));
  if (_edge && is_real(_operand)) Error("edge of real value %s", _operand->Image().c_str());
  const VeriName* name = _operand->AsName();
  if (_operand->IsConst() || (name && name->GetId() && name->GetId()->IsParam()))
    Warning("event expression %s is constant and never changes", _operand->Image().c_str());
  resolve(_condition, scope, VeriEnv(ENV_CONDITION));
}

// `.name` stands for the object of that name in the scope of the instance.
void VeriPortConnect::Resolve(VeriScope* scope, const VeriEnv& env) {
  if (_connection) {
    _connection->Resolve(scope, env);
    return;
  }
  if (!_is_implicit || IsDotStar()) return;
  VeriIdDef* id = scope->Find(_formal);
  if (id)
    analyze_reference(id, env, this);
  else
    Error("%s is not declared", _formal);
}

void VeriAnsiPortDecl::Resolve(VeriScope* scope, const VeriEnv&) { _decl->Resolve(scope); }

// Types.

void VeriPrimitiveTypeDef::Resolve(VeriScope* scope, const VeriEnv&) { resolve_ranges(_ranges, scope); }

void VeriArrayTypeDef::Resolve(VeriScope* scope, const VeriEnv& env) {
  _element->Resolve(scope, env);
  resolve_ranges(_ranges, scope);
}

void VeriTypeName::Resolve(VeriScope* scope, const VeriEnv&) {
  _name->Resolve(scope, VeriEnv(ENV_DECLARATION));
  const VeriIdDef* id = _name->GetId();
  if (id && !id->IsDataType() && !id->IsDesignUnit()) Error("%s is not declared", _name->Image().c_str());
  resolve_ranges(_ranges, scope);
}

// The ports of a module are resolved before its items, and an interface may be analysed after the module.
void VeriInterfaceTypeDef::Resolve(VeriScope* scope, const VeriEnv&) {
  if (!_name) return;
  if (!_name->GetId())
    if (VeriModule* nested = scope->FindNestedModule(_name->GetName()))
      static_cast<VeriIdRef*>(_name)->SetId(nested->GetId());
  _name->Resolve(scope, VeriEnv(ENV_DECLARATION));
  VeriModule* interface = GetInterface();
  if (!interface) {
    if (_name->GetId()) Error("%s is not declared", _name->GetName());
    return;
  }
  interface->Resolve();
  if (ModportName() && !GetModport()) Error("interface %s has no modport %s", interface->Name(), ModportName());
}

VeriModule* VeriInterfaceTypeDef::GetInterface() const {
  VeriIdDef* id = _name ? _name->GetId() : nullptr;
  VeriDesignUnit* unit = id && id->IsDesignUnit() ? static_cast<VeriDesignUnitId*>(id)->GetDesignUnit() : nullptr;
  return unit && unit->IsInterface() ? static_cast<VeriModule*>(unit) : nullptr;
}

VeriModport* VeriInterfaceTypeDef::GetModport() const {
  const VeriModule* interface = ModportName() ? GetInterface() : nullptr;
  return interface ? interface->GetModport(ModportName()) : nullptr;
}

void VeriEnumTypeDef::Resolve(VeriScope* scope, const VeriEnv&) {
  resolve(_base, scope, constant(ENV_DECLARATION));
  for (VeriIdDecl* element : ItemsOf<VeriIdDecl*>(_elements)) element->Resolve(scope, ENV_READ);
}

// IEEE 1800-2005 clause 4.11.
void VeriStructUnionTypeDef::Resolve(VeriScope* scope, const VeriEnv&) {
  resolve_all(_members, scope);
  class Set names(HASH_STRING);
  for (const VeriDataDecl* declaration : *_members) {
    const VeriTypeDef* type = veri_real_type(declaration->DataType());
    const auto* composite = dynamic_cast<const VeriStructUnionTypeDef*>(type);
    const unsigned token = type ? type->Type() : 0;
    const bool is_unpacked = token == VERI_REAL || token == VERI_REALTIME || token == VERI_SHORTREAL ||
                             token == VERI_STRING || token == VERI_EVENT || token == VERI_CHANDLE ||
                             (composite && !composite->_packed);
    for (const VeriIdDecl* member : *declaration->Ids()) {
      const char* name = member->GetId()->Name();
      if (!names.Insert(name)) member->Error("member %s is already declared", name);
      if (_packed && (is_unpacked || (member->Ranges() && member->Ranges()->Size())))
        member->Error("packed %s cannot have the unpacked member %s", PrintToken(_token), name);
    }
  }
}

VeriIdDef* VeriStructUnionTypeDef::FindMember(const char* name) const {
  for (const VeriDataDecl* member : ItemsOf<const VeriDataDecl*>(_members))
    for (const VeriIdDecl* decl : ItemsOf<const VeriIdDecl*>(member->Ids()))
      if (Strings::compare(decl->GetId()->Name(), name)) return decl->GetId();
  return nullptr;
}

// Declarations.

void VeriIdDecl::Resolve(VeriScope* scope, VERI_ENV_E value_kind) {
  ResolveAttributes(scope);
  resolve_ranges(_ranges, scope);
  const bool is_constant = GetId()->Kind() == VERI_ID_PARAM || GetId()->Kind() == VERI_ID_ENUM;
  resolve(_value, scope, VeriEnv(value_kind, 0, is_constant));
}

// The value of a net is its driver, that of a variable what it starts with.
void VeriDataDecl::Resolve(VeriScope* scope) {
  ResolveAttributes(scope);
  resolve(_type, scope, VeriEnv(ENV_DECLARATION));
  if (_net) resolve_all(_net->Delay(), scope, VeriEnv(ENV_READ));
  for (VeriIdDecl* decl : ItemsOf<VeriIdDecl*>(_ids)) {
    decl->Resolve(scope, _net_type ? ENV_READ : ENV_INITIAL_VALUE);
    if (!decl->Value()) continue;
    note_assignment(decl->GetId());
    if (_net_type && decl->GetId()->IsVar()) static_cast<VeriVariable*>(decl->GetId())->NoteReference(nullptr);
  }
}

void VeriParamDecl::Resolve(VeriScope* scope) {
  ResolveAttributes(scope);
  resolve(_type, scope, constant(ENV_DECLARATION));
  for (VeriIdDecl* decl : ItemsOf<VeriIdDecl*>(_ids)) decl->Resolve(scope, ENV_READ);
}

void VeriTypeDecl::Resolve(VeriScope* scope) {
  ResolveAttributes(scope);
  resolve(_type, scope, VeriEnv(ENV_DECLARATION));
  _id->Resolve(scope, ENV_READ);
  if (GetId()->IsAnnouncement() && scope->FindHere(GetId()->Name()) == GetId())
    Error("type %s is announced and never defined", GetId()->Name());
}

void VeriSubprogram::Resolve(VeriScope* scope) {
  ResolveAttributes(scope);
  VeriProcessScope process(this);
  VeriScope* inner = _scope ? _scope.get() : scope;
  resolve_all(_declarations, inner);
  resolve_all(_statements, inner);
}

void VeriFunctionDecl::Resolve(VeriScope* scope) {
  resolve(_type, scope, constant(ENV_DECLARATION));
  VeriSubprogram::Resolve(scope);
}

void VeriImport::Resolve(VeriScope* scope) {
  VeriPackage* package = veri_file::FindPackage(_package.c_str(), scope->GetLibrary());
  if (!package) {
    Error("package %s is not declared", _package.c_str());
    return;
  }
  const char* file = LineFile::GetFileName(package->GetId()->Linefile());
  if (file != LineFile::GetFileName(Linefile())) AddImplicitDependency(file);
  VeriDesignUnit* user = scope->GetContainingDesignUnit();
  if (user && user != package) user->GetId()->AddDependent(package->GetId());
  package->Resolve();
  if (_name.empty()) {
    scope->ImportAll(package->GetScope());
  } else if (VeriIdDef* id = package->GetScope()->FindHere(_name.c_str())) {
    scope->Import(id, this);
  } else {
    Error("%s is not declared in package %s", _name.c_str(), _package.c_str());
  }
}

// Modports.

void VeriModportPorts::Resolve(VeriScope* scope) {
  ResolveAttributes(scope);
  auto* id = static_cast<VeriVariable*>(GetId());
  if (Expression()) return _id->Resolve(scope, ENV_READ);
  _object = scope->FindLocal(id->Name());
  const bool is_object = _object && (IsSubprogram() ? _object->IsFunction() || _object->IsTask() : _object->IsVar());
  if (!is_object) {
    _object = nullptr;
    Error("modport port %s does not correspond to an object in the enclosing interface", id->Name());
    return;
  }
  if (IsSubprogram()) return;
  const auto* variable = static_cast<const VeriVariable*>(_object);
  id->SetType(variable->Type());
  id->SetUnpackedRanges(variable->UnpackedRanges());
  id->SetNetType(variable->NetType());
}

void VeriModport::Resolve(VeriScope* scope) {
  ResolveAttributes(scope);
  resolve_all(_ports, scope);
}

void VeriModportDecl::Resolve(VeriScope* scope) {
  ResolveAttributes(scope);
  resolve_all(_modports, scope);
}

// Assignments and processes.

void VeriNetRegAssign::Resolve(VeriScope* scope, VERI_ENV_E target_kind) {
  resolve(_target, scope, VeriEnv(target_kind));
  resolve(_value, scope, VeriEnv(ENV_READ));
}

void VeriContinuousAssign::Resolve(VeriScope* scope) {
  ResolveAttributes(scope);
  resolve_all(_delay, scope, VeriEnv(ENV_READ));
  for (VeriNetRegAssign* assign : ItemsOf<VeriNetRegAssign*>(_assigns)) assign->Resolve(scope, ENV_TARGET);
}

void VeriAlwaysConstruct::Resolve(VeriScope* scope) {
  ResolveAttributes(scope);
  VeriProcessScope process(this);
  resolve(_statement, scope);
}

void VeriInitialConstruct::Resolve(VeriScope* scope) {
  ResolveAttributes(scope);
  VeriProcessScope process(this);
  resolve(_statement, scope);
}

// Instances.

namespace {

/// The ports of a module as far as its head tells them; null for expressions.
std::vector<VeriVariable*> ports_of_head(const VeriModule* module) {
  std::vector<VeriVariable*> ports;
  auto add = [&ports](VeriIdDef* id) { ports.push_back(id && id->IsVar() ? static_cast<VeriVariable*>(id) : nullptr); };
  for (VeriExpression* port : ItemsOf<VeriExpression*>(module->PortExpressions())) {
    if (port && port->GetClassId() == ID_VeriAnsiPortDecl) {
      for (VeriIdDecl* decl : *static_cast<VeriAnsiPortDecl*>(port)->Decl()->Ids()) add(decl->GetId());
    } else {
      add(port && port->GetName() ? module->GetScope()->FindHere(port->GetName()) : nullptr);
    }
  }
  return ports;
}

unsigned direction_of(const VeriVariable* port) { return port ? port->Dir() : 0; }

/// `.*` connects each port that is not named to the object of its name.
void note_implicit_connections(const VeriExpressions& connects, const std::vector<VeriVariable*>& ports,
                               VeriScope* scope, const VeriTreeNode* from) {
  Set named(HASH_STRING);
  for (const VeriExpression* connect : connects)
    if (connect && connect->GetClassId() == ID_VeriPortConnect)
      named.Insert(static_cast<const VeriPortConnect*>(connect)->NamedFormal());
  for (const VeriVariable* port : ports) {
    if (!port || named.Contains(port->Name())) continue;
    VeriIdDef* id = scope->Find(port->Name());
    if (id && !id->IsDesignUnit()) analyze_reference(id, VeriEnv(ENV_PORT_CONNECTION, port->Dir()), from);
  }
}

} // namespace

void VeriInst::Resolve(VeriScope* scope, const VeriModule* module) {
  ResolveAttributes(scope);
  resolve_ranges(Ranges(), scope);
  const std::vector<VeriVariable*> ports = module ? ports_of_head(module) : std::vector<VeriVariable*>();
  unsigned position = 0;
  for (VeriExpression* connect : ItemsOf<VeriExpression*>(_connects)) {
    const bool is_connect = connect && connect->GetClassId() == ID_VeriPortConnect;
    const auto* port_connect = is_connect ? static_cast<const VeriPortConnect*>(connect) : nullptr;
    if (port_connect && port_connect->IsDotStar()) note_implicit_connections(*_connects, ports, scope, this);
    const VeriVariable* formal = nullptr;
    if (port_connect && port_connect->NamedFormal() && module) {
      VeriIdDef* id = module->GetScope()->FindHere(port_connect->NamedFormal());
      if (id && id->IsVar()) formal = static_cast<VeriVariable*>(id);
    } else if (position < ports.size()) {
      formal = ports[position];
    }
    resolve(connect, scope, VeriEnv(ENV_PORT_CONNECTION, direction_of(formal)));
    position++;
  }
}

void VeriModuleInstantiation::Resolve(VeriScope* scope) {
  ResolveAttributes(scope);
  resolve_all(_parameters, scope, constant(ENV_READ));
  // Modules have names of their own: an instance may be called like its module.
  const VeriLibrary* library = scope->GetLibrary();
  _nested = scope->FindNestedModule(ModuleName());
  VeriDesignUnit* unit = !_nested && library ? library->GetDefinition(ModuleName()) : nullptr;
  const VeriModule* module = unit && unit->IsModule() ? static_cast<VeriModule*>(unit) : _nested;
  for (VeriInst* inst : ItemsOf<VeriInst*>(_insts)) inst->Resolve(scope, module);
}

namespace {

/// The direction of a terminal, IEEE 1364-2005 clauses 7.2 to 7.8.
unsigned terminal_direction(unsigned gate, unsigned position, unsigned count) {
  switch (gate) {
  case VERI_BUF:
  case VERI_NOT: return position + 1 < count ? VERI_OUTPUT : VERI_INPUT;
  case VERI_PULLUP:
  case VERI_PULLDOWN: return VERI_OUTPUT;
  case VERI_TRAN:
  case VERI_RTRAN:
  case VERI_TRANIF0:
  case VERI_TRANIF1:
  case VERI_RTRANIF0:
  case VERI_RTRANIF1: return position < 2 ? VERI_INOUT : VERI_INPUT;
  default: return position == 0 ? VERI_OUTPUT : VERI_INPUT;
  }
}

} // namespace

void VeriGateInstantiation::Resolve(VeriScope* scope) {
  ResolveAttributes(scope);
  resolve_all(_delay, scope, VeriEnv(ENV_READ));
  for (VeriInst* inst : ItemsOf<VeriInst*>(_insts)) {
    resolve_ranges(inst->Ranges(), scope);
    const unsigned count = inst->Connects() ? inst->Connects()->Size() : 0;
    unsigned position = 0;
    for (VeriExpression* terminal : ItemsOf<VeriExpression*>(inst->Connects()))
      resolve(terminal, scope, VeriEnv(ENV_PORT_CONNECTION, terminal_direction(_token, position++, count)));
  }
}

// Defparams.

namespace {

/// The first name of a hierarchical path that is an instance; null when there is none.
VeriInstId* first_instance(const VeriName* name) {
  VeriInstId* first = nullptr;
  while (name) {
    VeriIdDef* id = name->GetId();
    if (id && id->IsInst()) first = static_cast<VeriInstId*>(id);
    if (name->GetClassId() == ID_VeriSelectedName)
      name = static_cast<const VeriSelectedName*>(name)->GetPrefix();
    else if (name->GetClassId() == ID_VeriIndexedName)
      name = static_cast<const VeriIndexedName*>(name)->GetPrefix();
    else
      break;
  }
  return first;
}

bool encloses(const VeriScope* outer, const VeriScope* inner) {
  while (inner && inner != outer) inner = inner->Upper();
  return inner != nullptr;
}

} // namespace

void VeriDefParamAssign::Resolve(VeriScope* scope) {
  resolve(_value, scope, constant(ENV_READ));
  _name->Resolve(scope, VeriEnv(ENV_NO_DYNAMIC));
  const VeriIdDef* id = _name->GetId();
  if (id && !id->IsParam()) {
    Error("%s is not a parameter", id->Name());
    return;
  }
  VeriInstId* instance = first_instance(_name);
  // IEEE 1364-2005 clause 12.2.1: from within a generate block only what lies in it can be changed.
  if (instance && scope->Kind() == SCOPE_GENERATE && !encloses(scope, instance->DeclaringScope())) {
    Error("defparam under generate scope cannot change parameter value outside of hierarchy");
    return;
  }
  _is_bound = instance != nullptr;
  if (instance) instance->Defparams().push_back(this);
}

void VeriDefParam::Resolve(VeriScope* scope) { resolve_all(_assigns, scope); }

// Timing. The terminals may be nets that only the timing model has.

void VeriSpecifyBlock::Resolve(VeriScope*) { resolve_all(_items, _scope.get()); }

void VeriPath::Resolve(VeriScope* scope) {
  resolve_all(_inputs, scope, VeriEnv(ENV_NO_DYNAMIC));
  resolve_all(_outputs, scope, VeriEnv(ENV_NO_DYNAMIC));
  resolve(_data_source, scope, VeriEnv(ENV_NO_DYNAMIC));
}

void VeriPathDecl::Resolve(VeriScope* scope) {
  resolve(_condition, scope, VeriEnv(ENV_NO_DYNAMIC));
  resolve(_path, scope);
  resolve_all(_delays, scope, constant(ENV_READ));
}

void VeriSystemTimingCheck::Resolve(VeriScope* scope) { resolve_all(_args, scope, VeriEnv(ENV_MAYBE_UNDECLARED)); }

void VeriTimingCheckEvent::Resolve(VeriScope* scope, const VeriEnv& env) {
  resolve(_terminal, scope, env);
  resolve(_condition, scope, env);
}

// Assertions.

void VeriAssertion::Resolve(VeriScope* scope) {
  ResolveAttributes(scope);
  resolve(_expression, scope, VeriEnv(ENV_CONDITION));
  resolve(_then, scope);
  resolve(_else, scope);
}

void VeriConcurrentAssertion::Resolve(VeriScope* scope) {
  ResolveAttributes(scope);
  VeriProcessScope process(this);
  resolve(_assertion, scope);
}

void VeriPropertyBase::Resolve(VeriScope* scope) {
  ResolveAttributes(scope);
  VeriProcessScope process(this);
  VeriScope* inner = _scope ? _scope.get() : scope;
  resolve_all(_ports, inner);
  resolve_all(_declarations, inner);
  resolve(_body, inner, VeriEnv(ENV_READ));
}

void VeriSequenceOperator::Resolve(VeriScope* scope, const VeriEnv&) {
  resolve_all(_list, scope, VeriEnv(ENV_STATEMENT));
  resolve(_left, scope, VeriEnv(ENV_READ));
  resolve(_control, scope, VeriEnv(ENV_READ));
  resolve(_right, scope, VeriEnv(ENV_READ));
}

// Generate constructs.

void VeriGenerateConstruct::Resolve(VeriScope* scope) { resolve_all(_items, scope); }

void VeriGenerateBlock::Resolve(VeriScope* scope) { resolve_all(_items, _scope ? _scope.get() : scope); }

void VeriGenerateConditional::Resolve(VeriScope* scope) {
  ResolveAttributes(scope);
  resolve(_condition, scope, constant(ENV_CONDITION));
  resolve(_then, scope);
  resolve(_else, scope);
}

void VeriGenerateCase::Resolve(VeriScope* scope) {
  ResolveAttributes(scope);
  resolve(_expression, scope, constant(ENV_CONDITION));
  for (VeriGenerateCaseItem* item : ItemsOf<VeriGenerateCaseItem*>(_items)) {
    resolve_all(item->Conditions(), scope, constant(ENV_CONDITION));
    resolve(item->Item(), scope);
  }
}

// The loop itself is the one place that may assign to its genvar.
void VeriGenerateFor::Resolve(VeriScope* scope) {
  ResolveAttributes(scope);
  if (_scope) scope = _scope.get();
  resolve(_initial, scope);
  resolve(_condition, scope, constant(ENV_LOOP_CONDITION));
  if (_repetition && _repetition->GetClassId() == ID_VeriAssignmentOperator) {
    const auto* repetition = static_cast<VeriAssignmentOperator*>(_repetition);
    resolve(repetition->Target(), scope, VeriEnv(ENV_STATEMENT));
    resolve(repetition->Value(), scope, constant(ENV_READ));
  } else {
    resolve(_repetition, scope, constant(ENV_READ));
  }
  resolve(_body, scope);
}

// Statements.

void VeriDelayOrEventControl::Resolve(VeriScope* scope) {
  resolve(_delay, scope, VeriEnv(ENV_READ));
  resolve(_repeat, scope, VeriEnv(ENV_READ));
  resolve_all(_events, scope, VeriEnv(ENV_EVENT));
}

void VeriBlockingAssign::Resolve(VeriScope* scope) {
  ResolveAttributes(scope);
  resolve(_control, scope);
  resolve(_assignment, scope, VeriEnv(ENV_STATEMENT));
}

void VeriNonBlockingAssign::Resolve(VeriScope* scope) {
  ResolveAttributes(scope);
  resolve(_control, scope);
  resolve(_assignment, scope, VeriEnv(ENV_STATEMENT));
}

void VeriConditionalStatement::Resolve(VeriScope* scope) {
  ResolveAttributes(scope);
  resolve(_condition, scope, VeriEnv(ENV_CONDITION));
  resolve(_then, scope);
  resolve(_else, scope);
}

void VeriCaseStatement::Resolve(VeriScope* scope) {
  ResolveAttributes(scope);
  resolve(_expression, scope, VeriEnv(ENV_CONDITION));
  if (is_real(_expression))
    _expression->Error("case expression %s cannot be a real value", _expression->Image().c_str());
  for (VeriCaseItem* item : ItemsOf<VeriCaseItem*>(_items)) {
    resolve_all(item->Conditions(), scope, VeriEnv(ENV_CONDITION));
    resolve(item->Statement(), scope);
  }
}

namespace {

/// The variable that a statement at the head of a loop assigns to; null for anything else.
VeriVariable* assigned_variable(const VeriStatement* statement) {
  if (!statement || statement->GetClassId() != ID_VeriBlockingAssign) return nullptr;
  const VeriAssignmentOperator* assignment = static_cast<const VeriBlockingAssign*>(statement)->Assignment();
  const VeriName* name = assignment && assignment->Target() ? assignment->Target()->AsName() : nullptr;
  VeriIdDef* id = name ? name->GetId() : nullptr;
  return id && id->IsVar() ? static_cast<VeriVariable*>(id) : nullptr;
}

} // namespace

void VeriFor::Resolve(VeriScope* scope) {
  ResolveAttributes(scope);
  VeriScope* inner = _scope ? _scope.get() : scope;
  resolve(_declaration, inner);
  if (_declaration)
    for (VeriIdDecl* decl : ItemsOf<VeriIdDecl*>(_declaration->Ids()))
      if (auto* variable = decl->IdAs<VeriVariable>()) variable->NoteLoopVariable(VeriProcessScope::Present());
  resolve_all(_initials, inner);
  for (VeriStatement* initial : ItemsOf<VeriStatement*>(_initials))
    if (VeriVariable* variable = assigned_variable(initial)) variable->NoteLoopVariable(VeriProcessScope::Present());
  resolve(_condition, inner, VeriEnv(ENV_LOOP_CONDITION));
  resolve_all(_repetitions, inner);
  resolve(_body, inner);
}

void VeriWhile::Resolve(VeriScope* scope) {
  ResolveAttributes(scope);
  VeriScope* inner = _scope ? _scope.get() : scope;
  resolve(_condition, inner, VeriEnv(ENV_LOOP_CONDITION));
  resolve(_body, inner);
}

void VeriRepeat::Resolve(VeriScope* scope) {
  ResolveAttributes(scope);
  VeriScope* inner = _scope ? _scope.get() : scope;
  resolve(_count, inner, VeriEnv(ENV_LOOP_CONDITION));
  resolve(_body, inner);
}

void VeriForever::Resolve(VeriScope* scope) {
  ResolveAttributes(scope);
  resolve(_body, _scope ? _scope.get() : scope);
}

void VeriSeqBlock::Resolve(VeriScope* scope) {
  ResolveAttributes(scope);
  VeriScope* inner = _scope ? _scope.get() : scope;
  resolve_all(_declarations, inner);
  resolve_all(_statements, inner);
}

void VeriParBlock::Resolve(VeriScope* scope) {
  ResolveAttributes(scope);
  VeriScope* inner = _scope ? _scope.get() : scope;
  resolve_all(_declarations, inner);
  resolve_all(_statements, inner);
}

void VeriEventControlStatement::Resolve(VeriScope* scope) {
  ResolveAttributes(scope);
  resolve_all(_events, scope, VeriEnv(ENV_EVENT));
  resolve(_statement, scope);
}

void VeriDelayControlStatement::Resolve(VeriScope* scope) {
  ResolveAttributes(scope);
  resolve(_delay, scope, VeriEnv(ENV_READ));
  resolve(_statement, scope);
}

void VeriTaskEnable::Resolve(VeriScope* scope) {
  ResolveAttributes(scope);
  _name->Resolve(scope, VeriEnv(ENV_MAYBE_UNDECLARED));
  VeriIdDef* id = _name->GetId();
  const bool is_simple = _name->GetClassId() == ID_VeriIdRef;
  if ((!id && is_simple) || (id && !id->IsTask() && !id->IsFunction()))
    Error("task %s is not declared", _name->Image().c_str());
  resolve_arguments(_args, to_subprogram(id), scope, VeriEnv(ENV_STATEMENT));
}

// The memory that a file is read into is written; other arguments count as no use.
void VeriSystemTaskEnable::Resolve(VeriScope* scope) {
  ResolveAttributes(scope);
  const bool reads_memory = _name == "$readmemb" || _name == "$readmemh";
  constexpr unsigned memory_argument = 1;
  unsigned position = 0;
  for (VeriExpression* arg : ItemsOf<VeriExpression*>(_args)) {
    const bool is_memory = reads_memory && position++ == memory_argument;
    resolve(arg, scope, VeriEnv(ENV_SYSTEM_TASK_ARG, is_memory ? VERI_OUTPUT : VERI_SYSTEM_ID));
  }
}

void VeriDisable::Resolve(VeriScope* scope) { resolve(_name, scope, VeriEnv(ENV_STATEMENT)); }

void VeriEventTrigger::Resolve(VeriScope* scope) { resolve(_name, scope, VeriEnv(ENV_FORCED_TARGET)); }

void VeriJumpStatement::Resolve(VeriScope* scope) {
  resolve(_value, scope, VeriEnv(ENV_READ));
  _subprogram = scope->GetSubprogram();
  for (VeriTreeNode* node = Parent(); node && !_loop; node = node->Parent()) _loop = dynamic_cast<VeriLoop*>(node);
}

void VeriNullStatement::Resolve(VeriScope*) {}

void VeriGenVarAssign::Resolve(VeriScope* scope) {
  _name->Resolve(scope, VeriEnv(ENV_STATEMENT));
  const VeriIdDef* id = _name->GetId();
  if (id && !id->IsGenVar()) _name->Error("%s is not a genvar", id->Name());
  resolve(_value, scope, constant(ENV_READ));
}

void VeriWait::Resolve(VeriScope* scope) {
  resolve(_condition, scope, VeriEnv(ENV_CONDITION));
  resolve(_statement, scope);
}

void VeriAssign::Resolve(VeriScope* scope) {
  resolve(_target, scope, VeriEnv(ENV_TARGET));
  resolve(_value, scope, VeriEnv(ENV_READ));
}

void VeriDeAssign::Resolve(VeriScope* scope) { resolve(_target, scope, VeriEnv(ENV_FORCED_TARGET)); }

void VeriForce::Resolve(VeriScope* scope) {
  resolve(_target, scope, VeriEnv(ENV_FORCED_TARGET));
  resolve(_value, scope, VeriEnv(ENV_READ));
}

void VeriRelease::Resolve(VeriScope* scope) { resolve(_target, scope, VeriEnv(ENV_FORCED_TARGET)); }
