// The identifiers: what a name stands for, how it is used, and all state that an elaboration changes. A declaration
// owns its identifiers; a scope only lists them. Inside a generate construct an identifier is a template, of which each
// round makes a clone; during an elaboration `Current` leads from the template to the clone of the present round.
#ifndef KESTRIN_VERILOG_VERIID_H
#define KESTRIN_VERILOG_VERIID_H

#include <memory>
#include <string>
#include <vector>

#include "verilog/veritreenode.h"

class Net;
class VeriConstraint;
class VeriDataDecl;
class VeriDataFlow;
class VeriDefParamAssign;
class VeriDesignUnit;
class VeriExpression;
class VeriIdDecl;
class VeriInterfaceTypeDef;
class VeriLibrary;
class VeriModport;
class VeriModule;
class VeriModuleItem;
class VeriRamInfo;
class VeriRange;
class VeriScope;
class VeriStateTable;
class VeriTypeDef;
class VeriValue;

/// A macro that the text of a design unit or of global declarations tested or expanded.
struct VeriMacroNode {
  std::string key; ///< name and formals joined
  std::string value;
  std::string location; ///< of the definition, "file:line"; empty for a macro of the host
};

/// What is known of an identifier, as bits of its flags word.
enum veri_id_flag : unsigned {
  IDF_ASSIGNED = 1U << 0,
  IDF_READ = 1U << 1,
  IDF_IN_GENERATE = 1U << 2,
  IDF_IN_SUBPROGRAM = 1U << 3,
  IDF_GLOBAL = 1U << 4,
  IDF_IN_ERROR = 1U << 5, ///< declared twice, in no scope
  IDF_MERGED_PORT = 1U << 6,
  IDF_RAM = 1U << 7,
  IDF_ONEHOT = 1U << 8,
  IDF_MULTI_ASSIGNED = 1U << 9,
  IDF_PORT = 1U << 10, ///< listed in the head of its module
  IDF_ANSI_PORT = 1U << 11,
  IDF_AUTOMATIC = 1U << 12,
  IDF_TYPED = 1U << 13, ///< a port whose declaration gives a net or variable type
  IDF_LOCAL_TO_PROCESS = 1U << 14,
  IDF_IMPLICIT = 1U << 15,
  IDF_ANONYMOUS = 1U << 16 ///< of a block that the source gives no name
};

enum veri_id_kind {
  VERI_ID_VARIABLE,
  VERI_ID_PARAM,
  VERI_ID_GENVAR,
  VERI_ID_FUNCTION,
  VERI_ID_TASK,
  VERI_ID_BLOCK,
  VERI_ID_INST,
  VERI_ID_DESIGN_UNIT,
  VERI_ID_TYPE,
  VERI_ID_ENUM,
  VERI_ID_MEMBER,
  VERI_ID_MODPORT,
  VERI_ID_PROPERTY,
  VERI_ID_SEQUENCE,
  VERI_ID_LIBRARY
};

class VeriIdDef : public VeriNode {
public:
  VeriIdDef(const char* name, unsigned long linefile);
  VeriIdDef(const VeriIdDef&) = delete;
  VeriIdDef& operator=(const VeriIdDef&) = delete;
  ~VeriIdDef() override;

  virtual veri_id_kind Kind() const = 0;
  const char* Name() const { return _name.c_str(); }
  /// For a block that the source gives no name; it must not stand in a scope under its former one.
  void SetName(const char* name) { _name = name; }
  unsigned long Linefile() const { return _linefile; }
  void SetLinefile(unsigned long linefile) { _linefile = static_cast<unsigned>(linefile); }
  /// The scope that the object opens; null for most.
  VeriScope* LocalScope() const { return _local_scope; }
  void SetLocalScope(VeriScope* scope) { _local_scope = scope; }
  /// The scope where the object is declared; null while it is in none.
  VeriScope* DeclaringScope() const { return _declaring_scope; }
  void SetDeclaringScope(VeriScope* scope) { _declaring_scope = scope; }
  VeriTreeNode* GetModuleItem() const { return _module_item; }
  void SetModuleItem(VeriTreeNode* item) { _module_item = item; }

  unsigned Is(veri_id_flag flag) const { return (_flags & flag) != 0; }
  void Set(veri_id_flag flag) { _flags |= flag; }
  void Clear(veri_id_flag flag) { _flags &= ~static_cast<unsigned>(flag); }
  unsigned InDynamicScope() const { return (_flags & (IDF_IN_GENERATE | IDF_IN_SUBPROGRAM)) != 0; }

  virtual unsigned IsNet() const { return 0; }
  /// A parameter, of a value or of a type, that an instance may give.
  virtual unsigned IsOverridable() const { return 0; }
  virtual unsigned IsReg() const { return 0; }
  unsigned IsVar() const { return Kind() == VERI_ID_VARIABLE; }
  unsigned IsParam() const { return Kind() == VERI_ID_PARAM; }
  unsigned IsGenVar() const { return Kind() == VERI_ID_GENVAR; }
  unsigned IsFunction() const { return Kind() == VERI_ID_FUNCTION; }
  unsigned IsTask() const { return Kind() == VERI_ID_TASK; }
  unsigned IsBlock() const { return Kind() == VERI_ID_BLOCK; }
  unsigned IsInst() const { return Kind() == VERI_ID_INST; }
  unsigned IsDesignUnit() const { return Kind() == VERI_ID_DESIGN_UNIT; }
  unsigned IsDataType() const { return Kind() == VERI_ID_TYPE; }
  unsigned IsModport() const { return Kind() == VERI_ID_MODPORT; }
  unsigned IsProperty() const { return Kind() == VERI_ID_PROPERTY; }
  unsigned IsSequence() const { return Kind() == VERI_ID_SEQUENCE; }
  unsigned IsPort() const { return Is(IDF_PORT); }
  /// The token of the direction; 0 without.
  virtual unsigned Dir() const { return 0; }

  // Messages at the declaration.
  [[gnu::format(printf, 2, 3)]] void Error(const char* format, ...) const;
  [[gnu::format(printf, 2, 3)]] void Warning(const char* format, ...) const;
  [[gnu::format(printf, 2, 3)]] void Info(const char* format, ...) const;

  // Elaboration.
  /// Reports an object that the source declares and does not use, or uses in one way only.
  virtual void Check() const {}
  /// Forgets the state of a former run.
  virtual void Reset() {}
  /// Makes the value or the nets of the object.
  virtual void Initialize() {}
  /// The value of the object itself, borrowed: nets of a variable, the constant of a parameter; null without.
  virtual VeriValue* GetValue() { return nullptr; }
  virtual void SetValue(std::unique_ptr<VeriValue> /*value*/);
  /// The type as it stands in this run, borrowed; null without.
  virtual VeriConstraint* GetConstraint() { return nullptr; }
  /// A clone for one round of a generate construct.
  virtual std::unique_ptr<VeriIdDef> Generate() const = 0;
  /// The mutable state in a new object of the same class; the identifier starts with none, but for what is known from
  /// its use, which stays and whose changes RestoreMutable undoes.
  virtual std::unique_ptr<VeriIdDef> SaveMutable();
  /// Takes the state back that SaveMutable gave; the present one is lost.
  void RestoreMutable(std::unique_ptr<VeriIdDef> saved) { SwapMutable(*saved); }
  /// Exchanges the mutable state with an identifier of the same class.
  virtual void SwapMutable(VeriIdDef& other);
  /// The identifier that stands for this one in the present round of a generate construct.
  VeriIdDef* Current() { return _current ? _current : this; }
  void SetCurrent(VeriIdDef* clone) { _current = clone; }
  /// What a clone was made from; the identifier itself otherwise.
  const VeriIdDef* Template() const { return _template ? _template : this; }

  // The sequence of macros that decided the text; an internal error for what is neither a design unit nor a library.
  void AddMacro(const char* name, const char* args, const char* value, unsigned long linefile);
  /// Null for what bears no macros.
  virtual const std::vector<VeriMacroNode>* GetMacros() const { return nullptr; }

protected:
  virtual std::vector<VeriMacroNode>* MacroSequence() { return nullptr; }
  /// What all clones take over.
  void CopyTo(VeriIdDef& clone) const;

private:
  std::string _name;
  unsigned _linefile;
  unsigned _flags = 0;
  VeriScope* _local_scope = nullptr;
  VeriScope* _declaring_scope = nullptr;
  VeriTreeNode* _module_item = nullptr;
  VeriIdDef* _current = nullptr;
  const VeriIdDef* _template = nullptr;
};

class VeriDesignUnitId : public VeriIdDef {
public:
  VeriDesignUnitId(const char* name, unsigned token, unsigned long linefile)
      : VeriIdDef(name, linefile), _token(token) {}
  veri_id_kind Kind() const override { return VERI_ID_DESIGN_UNIT; }
  std::unique_ptr<VeriIdDef> Generate() const override;
  unsigned GetDesignUnitToken() const { return _token; }
  VeriDesignUnit* GetDesignUnit() const { return _unit; }
  void SetDesignUnit(VeriDesignUnit* unit) { _unit = unit; }
  VeriLibrary* GetLibrary() const { return _library; }
  void SetLibrary(VeriLibrary* library) { _library = library; }
  const std::vector<VeriMacroNode>* GetMacros() const override { return &_macros; }

  /// The packages that the unit uses, as VeriDesignUnitId, in the order of first use; known after its resolve.
  const class Set& Dependents() const { return _dependents; }
  void AddDependent(VeriDesignUnitId* package) { _dependents.Insert(package); }
  void RemoveDependent(VeriDesignUnitId* package) { _dependents.Remove(package); }
  /// Adds the identifier and all that it depends on, directly or not.
  static void CollectDependents(VeriDesignUnitId* id, class Set& out);

protected:
  std::vector<VeriMacroNode>* MacroSequence() override { return &_macros; }

private:
  unsigned _token;
  VeriDesignUnit* _unit = nullptr;
  VeriLibrary* _library = nullptr;
  class Set _dependents;
  std::vector<VeriMacroNode> _macros;
};

class VeriLibraryId : public VeriIdDef {
public:
  VeriLibraryId(const char* name, VeriLibrary* library) : VeriIdDef(name, 0), _library(library) {}
  veri_id_kind Kind() const override { return VERI_ID_LIBRARY; }
  std::unique_ptr<VeriIdDef> Generate() const override;
  VeriLibrary* GetLibrary() const { return _library; }
  const std::vector<VeriMacroNode>* GetMacros() const override { return &_macros; }

protected:
  std::vector<VeriMacroNode>* MacroSequence() override { return &_macros; }

private:
  VeriLibrary* _library;
  std::vector<VeriMacroNode> _macros;
};

class VeriBlockId : public VeriIdDef {
public:
  using VeriIdDef::VeriIdDef;
  veri_id_kind Kind() const override { return VERI_ID_BLOCK; }
  std::unique_ptr<VeriIdDef> Generate() const override;
};

/// An identifier with a type and a value.
class VeriValuedId : public VeriIdDef {
public:
  VeriValuedId(const char* name, unsigned long linefile);
  ~VeriValuedId() override;

  /// The type, with the packed dimensions; borrowed from the declaration; null is a scalar without sign.
  VeriTypeDef* Type() const { return _type; }
  void SetType(VeriTypeDef* type) { _type = type; }
  /// The unpacked dimensions, left to right; borrowed; null without.
  const VeriNodes<VeriRange>* UnpackedRanges() const { return _unpacked; }
  void SetUnpackedRanges(const VeriNodes<VeriRange>* ranges) { _unpacked = ranges; }
  unsigned NumUnpacked() const { return _unpacked ? _unpacked->Size() : 0; }

  void Reset() override;
  VeriValue* GetValue() override { return _value.get(); }
  void SetValue(std::unique_ptr<VeriValue> value) override;
  std::unique_ptr<VeriValue> TakeValue();
  /// Made from the type at the first question in a run.
  VeriConstraint* GetConstraint() override;
  void SetConstraint(std::unique_ptr<VeriConstraint> constraint);
  void SwapMutable(VeriIdDef& other) override;

protected:
  void CopyTo(VeriValuedId& clone) const;

private:
  VeriTypeDef* _type = nullptr;
  const VeriNodes<VeriRange>* _unpacked = nullptr;
  std::unique_ptr<VeriValue> _value;
  std::unique_ptr<VeriConstraint> _constraint;
};

/// How a name uses a variable. The operand of an event expression is of no interest to the value.
enum veri_use { VERI_USE_READ, VERI_USE_WRITE, VERI_USE_READ_WRITE, VERI_USE_EVENT, VERI_USE_OTHER };

/// Nets, variables and ports; also the result of a function.
class VeriVariable : public VeriValuedId {
public:
  /// `net_type` is the token of the net type; 0 for a variable, and for a port without one.
  VeriVariable(const char* name, unsigned net_type, unsigned long linefile)
      : VeriValuedId(name, linefile), _net_type(net_type) {}
  veri_id_kind Kind() const override { return VERI_ID_VARIABLE; }
  std::unique_ptr<VeriIdDef> Generate() const override;

  unsigned IsNet() const override { return _net_type != 0; }
  unsigned IsReg() const override { return _net_type == 0; }
  unsigned NetType() const { return _net_type; }
  void SetNetType(unsigned token) { _net_type = token; }
  unsigned Dir() const override { return _dir; }
  void SetDir(unsigned token) { _dir = token; }
  /// Value of the declaration, borrowed; null without.
  VeriExpression* InitialValue() const { return _initial; }
  void SetInitialValue(VeriExpression* value) { _initial = value; }
  /// The type of an interface port; null for anything else.
  const VeriInterfaceTypeDef* InterfaceType() const;
  /// A port that takes whatever interface is connected to it.
  unsigned IsGenericInterfacePort() const;
  /// The interface that a port names; null for a generic one, and for an interface that is not known.
  VeriModule* GetInterface() const;
  /// The modport that an interface port is limited to; null without.
  VeriModport* GetModport() const;

  // Use, noted by resolve: which processes and subprograms name the variable, null for what stands in none, and in
  // which of them it is the variable of a loop.
  void NoteReference(const VeriTreeNode* process) { _ref_processes.Insert(process ? process : nowhere()); }
  void NoteLoopVariable(const VeriTreeNode* process);
  struct Reference {
    const VeriTreeNode* name;
    const VeriTreeNode* process; ///< null outside of processes and subprograms
    veri_use use;
  };
  /// Of arrays, which may become memories, and of variables, which may hold states.
  void AddReference(const Reference& reference) { _references.push_back(reference); }
  const std::vector<Reference>& References() const;
  /// A variable that is named only in processes that use it to count: nothing reads its nets.
  unsigned IsCounterOnly() const;
  /// Whether no other process or subprogram names the variable.
  bool IsNamedOnlyIn(const VeriTreeNode* process) const {
    return _ref_processes.Size() == 1 && _ref_processes.Contains(process);
  }

  void Check() const override;
  void Reset() override;
  /// Makes the nets, named by the path, and the power-up value of the declaration.
  void Initialize() override;
  void SwapMutable(VeriIdDef& other) override;

  /// The encoding by states, borrowed; null for a variable that is a plain number.
  const VeriStateTable* FsmStateTable() const { return _state_table; }
  void SetFsmStateTable(const VeriStateTable* table) { _state_table = table; }

private:
  static const void* nowhere();
  void CopyTo(VeriVariable& clone) const;
  friend class VeriFunctionId;
  unsigned _net_type;
  unsigned _dir = 0;
  VeriExpression* _initial = nullptr;
  class Set _ref_processes;
  class Set _loop_processes;
  std::vector<Reference> _references;
  const VeriStateTable* _state_table = nullptr;
};

class VeriFunctionId : public VeriVariable {
public:
  VeriFunctionId(const char* name, unsigned long linefile) : VeriVariable(name, 0, linefile) {}
  veri_id_kind Kind() const override { return VERI_ID_FUNCTION; }
  std::unique_ptr<VeriIdDef> Generate() const override;
  void Check() const override {}
  /// Nets are of no use: the result lives in the flow of a call.
  void Initialize() override {}
};

class VeriTaskId : public VeriIdDef {
public:
  using VeriIdDef::VeriIdDef;
  veri_id_kind Kind() const override { return VERI_ID_TASK; }
  std::unique_ptr<VeriIdDef> Generate() const override;
};

class VeriPropertyId : public VeriIdDef {
public:
  using VeriIdDef::VeriIdDef;
  veri_id_kind Kind() const override { return VERI_ID_PROPERTY; }
  std::unique_ptr<VeriIdDef> Generate() const override;
};

class VeriSequenceId : public VeriIdDef {
public:
  using VeriIdDef::VeriIdDef;
  veri_id_kind Kind() const override { return VERI_ID_SEQUENCE; }
  std::unique_ptr<VeriIdDef> Generate() const override;
};

class VeriParamId : public VeriValuedId {
public:
  /// `token`: VERI_PARAMETER, VERI_LOCALPARAM or VERI_SPECPARAM.
  VeriParamId(const char* name, unsigned token, unsigned long linefile) : VeriValuedId(name, linefile), _token(token) {}
  ~VeriParamId() override;
  veri_id_kind Kind() const override { return VERI_ID_PARAM; }
  std::unique_ptr<VeriIdDef> Generate() const override;
  unsigned ParamToken() const { return _token; }
  void SetParamToken(unsigned token) { _token = token; }
  unsigned IsOverridable() const override;
  VeriExpression* InitialValue() const { return _initial; }
  void SetInitialValue(VeriExpression* value) { _initial = value; }
  /// The value that an instance or the host gives, borrowed, for this run.
  void SetActual(VeriExpression* actual) { _actual = actual; }
  VeriExpression* Actual() const { return _actual; }

  void Reset() override;
  /// The actual, or the initial value, fitted to the declared type.
  void Initialize() override;
  VeriValue* GetValue() override;
  VeriConstraint* GetConstraint() override;
  std::unique_ptr<VeriIdDef> SaveMutable() override;
  void SwapMutable(VeriIdDef& other) override;

private:
  unsigned _token;
  VeriExpression* _initial = nullptr;
  VeriExpression* _actual = nullptr;
  unsigned _in_progress = 0;
};

class VeriGenVarId : public VeriValuedId {
public:
  using VeriValuedId::VeriValuedId;
  veri_id_kind Kind() const override { return VERI_ID_GENVAR; }
  std::unique_ptr<VeriIdDef> Generate() const override;
};

class VeriInstId : public VeriIdDef {
public:
  using VeriIdDef::VeriIdDef;
  veri_id_kind Kind() const override { return VERI_ID_INST; }
  std::unique_ptr<VeriIdDef> Generate() const override;
  /// The defparams that name this instance first.
  std::vector<VeriDefParamAssign*>& Defparams() { return _defparams; }
  /// The name of the module or primitive.
  const std::string& ModuleReference() const { return _module_reference; }
  void SetModuleReference(const char* name) { _module_reference = name; }

private:
  std::vector<VeriDefParamAssign*> _defparams;
  std::string _module_reference;
};

/// A name given to a type by typedef, or a parameter that stands for a type.
class VeriDataType : public VeriValuedId {
public:
  using VeriValuedId::VeriValuedId;
  veri_id_kind Kind() const override { return VERI_ID_TYPE; }
  std::unique_ptr<VeriIdDef> Generate() const override;
  /// VERI_PARAMETER or VERI_LOCALPARAM; 0 for a typedef.
  unsigned ParamToken() const { return _param_token; }
  void SetParamToken(unsigned token) { _param_token = token; }
  /// A name whose definition comes later.
  bool IsAnnouncement() const { return !Type() && !_param_token; }
  unsigned IsOverridable() const override;
  /// The definition is part of the mutable state: an instance may give a parameter another type.
  void SwapMutable(VeriIdDef& other) override;

private:
  unsigned _param_token = 0;
};

/// A name of an enumeration.
class VeriEnumId : public VeriValuedId {
public:
  using VeriValuedId::VeriValuedId;
  veri_id_kind Kind() const override { return VERI_ID_ENUM; }
  std::unique_ptr<VeriIdDef> Generate() const override;
  void Initialize() override;
  VeriValue* GetValue() override;
  VeriTreeNode* EnumType() const { return _enum_type; }
  void SetEnumType(VeriTreeNode* type) { _enum_type = type; }

private:
  VeriTreeNode* _enum_type = nullptr;
};

class VeriStructUnionMemberId : public VeriValuedId {
public:
  using VeriValuedId::VeriValuedId;
  veri_id_kind Kind() const override { return VERI_ID_MEMBER; }
  std::unique_ptr<VeriIdDef> Generate() const override;
};

/// The name of a modport.
class VeriModportId : public VeriValuedId {
public:
  using VeriValuedId::VeriValuedId;
  veri_id_kind Kind() const override { return VERI_ID_MODPORT; }
  std::unique_ptr<VeriIdDef> Generate() const override;
  VeriModport* GetModport() const { return _modport; }
  void SetModport(VeriModport* modport) { _modport = modport; }

private:
  VeriModport* _modport = nullptr;
};

#endif
