// Identifiers: their messages, clones, and the state that is set aside while another parameter set is elaborated.
#include "verilog/veriid.h"

#include <cstdarg>

#include "util/linefile.h"
#include "util/message.h"
#include "verilog/veri_tokens.h"
#include "verilog/vericonstraint.h"
#include "verilog/veriexpression.h"
#include "verilog/veriscope.h"
#include "verilog/verivalue.h"

VeriIdDef::VeriIdDef(const char* name, unsigned long linefile)
    : _name(name ? name : ""), _linefile(static_cast<unsigned>(linefile)) {
  if (_name.empty()) Set(IDF_ANONYMOUS);
}

// A syntax error may delete what is declared already, so the table and the scope forget the identifier.
VeriIdDef::~VeriIdDef() {
  if (_declaring_scope) _declaring_scope->Undeclare(this);
  if (_local_scope && _local_scope->GetOwner() == this) _local_scope->SetOwner(nullptr);
}

void VeriIdDef::Error(const char* format, ...) const {
  va_list args;
  va_start(args, format);
  Message::MsgVaList(MSG_ERROR, GetMessageId(format), _linefile, format, args);
  va_end(args);
}

void VeriIdDef::Warning(const char* format, ...) const {
  va_list args;
  va_start(args, format);
  Message::MsgVaList(MSG_WARNING, GetMessageId(format), _linefile, format, args);
  va_end(args);
}

void VeriIdDef::Info(const char* format, ...) const {
  va_list args;
  va_start(args, format);
  Message::MsgVaList(MSG_INFO, GetMessageId(format), _linefile, format, args);
  va_end(args);
}

void VeriIdDef::SetValue(std::unique_ptr<VeriValue>) { KESTRIN_ASSERT_TEXT(false, "identifier has no value"); }

std::unique_ptr<VeriIdDef> VeriIdDef::SaveMutable() {
  std::unique_ptr<VeriIdDef> saved = Generate();
  SwapMutable(*saved);
  return saved;
}

void VeriIdDef::SwapMutable(VeriIdDef& other) {
  std::swap(_current, other._current);
  std::swap(_flags, other._flags);
}

void VeriIdDef::AddMacro(const char* name, const char* args, const char* value, unsigned long linefile) {
  std::vector<VeriMacroNode>* macros = MacroSequence();
  if (!macros) {
    KESTRIN_REPORT_INTERNAL("The used identifier does not support the functioanlity to create a macro sequence.");
    return;
  }
  auto text = [](const char* string) { return std::string(string ? string : ""); };
  const char* file = LineFile::GetFileName(linefile);
  macros->push_back({text(name) + text(args), text(value),
                     file ? std::string(file) + ":" + std::to_string(LineFile::GetLineNo(linefile)) : std::string()});
}

void VeriIdDef::CopyTo(VeriIdDef& clone) const {
  clone._flags = _flags;
  clone._local_scope = _local_scope;
  clone._module_item = _module_item;
  clone._template = Template();
}

// Design units and libraries.

void VeriDesignUnitId::CollectDependents(VeriDesignUnitId* id, class Set& out) {
  out.Insert(id);
  for (VeriDesignUnitId* next : KeysOf<VeriDesignUnitId*>(&out)) // grows during the walk
    for (VeriDesignUnitId* package : KeysOf<VeriDesignUnitId*>(&next->Dependents())) out.Insert(package);
}

// Clones.

std::unique_ptr<VeriIdDef> VeriDesignUnitId::Generate() const {
  auto clone = std::make_unique<VeriDesignUnitId>(Name(), _token, Linefile());
  CopyTo(*clone);
  clone->_unit = _unit;
  clone->_library = _library;
  return clone;
}

std::unique_ptr<VeriIdDef> VeriLibraryId::Generate() const {
  auto clone = std::make_unique<VeriLibraryId>(Name(), _library);
  CopyTo(*clone);
  return clone;
}

std::unique_ptr<VeriIdDef> VeriBlockId::Generate() const {
  auto clone = std::make_unique<VeriBlockId>(Name(), Linefile());
  CopyTo(*clone);
  return clone;
}

std::unique_ptr<VeriIdDef> VeriTaskId::Generate() const {
  auto clone = std::make_unique<VeriTaskId>(Name(), Linefile());
  CopyTo(*clone);
  return clone;
}

std::unique_ptr<VeriIdDef> VeriPropertyId::Generate() const {
  auto clone = std::make_unique<VeriPropertyId>(Name(), Linefile());
  CopyTo(*clone);
  return clone;
}

std::unique_ptr<VeriIdDef> VeriSequenceId::Generate() const {
  auto clone = std::make_unique<VeriSequenceId>(Name(), Linefile());
  CopyTo(*clone);
  return clone;
}

std::unique_ptr<VeriIdDef> VeriVariable::Generate() const {
  auto clone = std::make_unique<VeriVariable>(Name(), _net_type, Linefile());
  CopyTo(*clone);
  return clone;
}

std::unique_ptr<VeriIdDef> VeriFunctionId::Generate() const {
  auto clone = std::make_unique<VeriFunctionId>(Name(), Linefile());
  CopyTo(*clone);
  return clone;
}

std::unique_ptr<VeriIdDef> VeriParamId::Generate() const {
  auto clone = std::make_unique<VeriParamId>(Name(), _token, Linefile());
  CopyTo(*clone);
  clone->_initial = _initial;
  clone->_actual = _actual;
  return clone;
}

std::unique_ptr<VeriIdDef> VeriGenVarId::Generate() const {
  auto clone = std::make_unique<VeriGenVarId>(Name(), Linefile());
  CopyTo(*clone);
  return clone;
}

std::unique_ptr<VeriIdDef> VeriInstId::Generate() const {
  auto clone = std::make_unique<VeriInstId>(Name(), Linefile());
  CopyTo(*clone);
  clone->_defparams = _defparams;
  clone->_module_reference = _module_reference;
  return clone;
}

std::unique_ptr<VeriIdDef> VeriDataType::Generate() const {
  auto clone = std::make_unique<VeriDataType>(Name(), Linefile());
  CopyTo(*clone);
  clone->_param_token = _param_token;
  return clone;
}

std::unique_ptr<VeriIdDef> VeriEnumId::Generate() const {
  auto clone = std::make_unique<VeriEnumId>(Name(), Linefile());
  CopyTo(*clone);
  clone->_enum_type = _enum_type;
  return clone;
}

std::unique_ptr<VeriIdDef> VeriStructUnionMemberId::Generate() const {
  auto clone = std::make_unique<VeriStructUnionMemberId>(Name(), Linefile());
  CopyTo(*clone);
  return clone;
}

std::unique_ptr<VeriIdDef> VeriModportId::Generate() const {
  auto clone = std::make_unique<VeriModportId>(Name(), Linefile());
  CopyTo(*clone);
  clone->_modport = _modport;
  return clone;
}

// Identifiers with a value.

VeriValuedId::VeriValuedId(const char* name, unsigned long linefile) : VeriIdDef(name, linefile) {}

VeriValuedId::~VeriValuedId() = default;

void VeriValuedId::Reset() {
  _value.reset();
  _constraint.reset();
}

void VeriValuedId::SetValue(std::unique_ptr<VeriValue> value) { _value = std::move(value); }

std::unique_ptr<VeriValue> VeriValuedId::TakeValue() { return std::move(_value); }

void VeriValuedId::SetConstraint(std::unique_ptr<VeriConstraint> constraint) { _constraint = std::move(constraint); }

void VeriValuedId::SwapMutable(VeriIdDef& other) {
  VeriIdDef::SwapMutable(other);
  auto& valued = static_cast<VeriValuedId&>(other);
  std::swap(_value, valued._value);
  std::swap(_constraint, valued._constraint);
}

void VeriValuedId::CopyTo(VeriValuedId& clone) const {
  VeriIdDef::CopyTo(clone);
  clone._type = _type;
  clone._unpacked = _unpacked;
}

// Variables.

void VeriVariable::CopyTo(VeriVariable& clone) const {
  VeriValuedId::CopyTo(clone);
  clone._dir = _dir;
  clone._initial = _initial;
}

void VeriVariable::Reset() {
  VeriValuedId::Reset();
  _state_table = nullptr;
}

void VeriVariable::SwapMutable(VeriIdDef& other) {
  VeriValuedId::SwapMutable(other);
  std::swap(_state_table, static_cast<VeriVariable&>(other)._state_table);
}

const void* VeriVariable::nowhere() {
  static const char place = 0;
  return &place;
}

void VeriVariable::NoteLoopVariable(const VeriTreeNode* process) {
  if (process) _loop_processes.Insert(process);
}

const std::vector<VeriVariable::Reference>& VeriVariable::References() const {
  return static_cast<const VeriVariable*>(Template())->_references;
}

unsigned VeriVariable::IsCounterOnly() const {
  const auto* noted = static_cast<const VeriVariable*>(Template());
  if (IsPort() || noted->_ref_processes.Size() == 0) return 0;
  for (const void* process : KeysOf<const void*>(&noted->_ref_processes))
    if (!noted->_loop_processes.Contains(process)) return 0;
  return 1;
}

/// Ports and formal arguments are used from outside.
void VeriVariable::Check() const {
  const bool is_supply = _net_type == VERI_SUPPLY0 || _net_type == VERI_SUPPLY1;
  if (IsPort() || _dir || is_supply || Is(IDF_IN_ERROR) || *Name() == ' ') return;
  if (!Is(IDF_ASSIGNED) && !Is(IDF_READ))
    Info("object %s declared but not used", Name());
  else if (!Is(IDF_READ))
    Warning("object %s assigned a value but never read", Name());
  else if (!Is(IDF_ASSIGNED))
    Warning("object %s used but never assigned", Name());
}

// Interface ports.

const VeriInterfaceTypeDef* VeriVariable::InterfaceType() const {
  const VeriTypeDef* type = Type();
  return type && type->GetClassId() == ID_VeriInterfaceTypeDef ? static_cast<const VeriInterfaceTypeDef*>(type)
                                                               : nullptr;
}

unsigned VeriVariable::IsGenericInterfacePort() const {
  const VeriInterfaceTypeDef* type = InterfaceType();
  return type && !type->Name();
}

VeriModule* VeriVariable::GetInterface() const {
  const VeriInterfaceTypeDef* type = InterfaceType();
  return type ? type->GetInterface() : nullptr;
}

VeriModport* VeriVariable::GetModport() const {
  const VeriInterfaceTypeDef* type = InterfaceType();
  return type ? type->GetModport() : nullptr;
}

// Parameters.

unsigned VeriDataType::IsOverridable() const { return _param_token == VERI_PARAMETER; }

void VeriDataType::SwapMutable(VeriIdDef& other) {
  VeriValuedId::SwapMutable(other);
  VeriTypeDef* type = static_cast<VeriDataType&>(other).Type();
  static_cast<VeriDataType&>(other).SetType(Type());
  SetType(type);
}

VeriParamId::~VeriParamId() = default;

// The actual stays: it is set before the identifiers of a module are reset.
void VeriParamId::Reset() {
  VeriValuedId::Reset();
  _in_progress = 0;
}

std::unique_ptr<VeriIdDef> VeriParamId::SaveMutable() {
  std::unique_ptr<VeriIdDef> saved = VeriIdDef::SaveMutable();
  _actual = nullptr; // the copy had it, too
  return saved;
}

void VeriParamId::SwapMutable(VeriIdDef& other) {
  VeriValuedId::SwapMutable(other);
  std::swap(_actual, static_cast<VeriParamId&>(other)._actual);
}
