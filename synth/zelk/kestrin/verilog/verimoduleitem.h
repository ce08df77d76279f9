// Module items: declarations, assignments, processes, instances and generate constructs, and the small nodes that they
// are made of.
#ifndef KESTRIN_VERILOG_VERIMODULEITEM_H
#define KESTRIN_VERILOG_VERIMODULEITEM_H

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "verilog/veriexpression.h"
#include "verilog/veriid.h"
#include "verilog/veriscope.h"
#include "verilog/veritreenode.h"

class VeriGenVarAssign;
class VeriModule;
class VeriStatement;
class VeriTable;
class Instance;
class Netlist;

/// The strengths of a driver, or of a charge; of no effect in hardware.
class VeriStrength : public VeriTreeNode {
public:
  /// Tokens in source order; the second is 0 for a single one.
  VeriStrength(unsigned value0, unsigned value1, unsigned long linefile = 0)
      : VeriTreeNode(linefile), _value0(value0), _value1(value1) {}
  VERI_CLASS_ID GetClassId() const override { return ID_VeriStrength; }
  void Accept(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;

private:
  unsigned _value0;
  unsigned _value1;
};

/// What a net declaration says beside the type of the values.
class VeriNetType : public VeriTreeNode {
public:
  /// `scalared`: VERI_SCALARED, VERI_VECTORED or 0. Strength and delay are null without.
  VeriNetType(unsigned token, VeriStrength* strength, unsigned scalared, VeriExpressions* delay,
              unsigned long linefile = 0);
  ~VeriNetType() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriNetType; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  /// Without the delay, which stands behind the type of the values.
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  unsigned Token() const { return _token; }
  /// Nothing but the token.
  bool IsPlain() const { return !_strength && !_scalared && !_delay; }
  const VeriExpressions* Delay() const { return _delay; }

private:
  unsigned _token;
  VeriStrength* _strength;
  unsigned _scalared;
  VeriExpressions* _delay;
};

class VeriModuleItem : public VeriTreeNode {
public:
  using VeriTreeNode::VeriTreeNode;
  virtual void Resolve(VeriScope* scope) = 0;
  virtual unsigned IsPortDeclaration() const { return 0; }
  /// A declaration, of which the identifiers are initialised before the logic of any item is made.
  virtual unsigned IsDeclaration() const { return 0; }

  // Elaboration, in this order.
  /// Picks the branches and runs the rounds of generate constructs, and declares what is in them.
  virtual void GenerateObjects() {}
  /// Collects the variables that may be encoded by their states.
  virtual void Prepare() {}
  /// Makes the values and nets of what the item declares.
  virtual void Initialize() {}
  virtual void Elaborate() {}
};

using VeriModuleItems = VeriNodes<VeriModuleItem>;

/// One declared name with its unpacked dimensions and value. It owns the identifier, unless that was merged into an
/// earlier one.
class VeriIdDecl : public VeriTreeNode {
public:
  VeriIdDecl(std::unique_ptr<VeriIdDef> id, VeriNodes<VeriRange>* ranges, VeriExpression* value,
             unsigned long linefile = 0);
  ~VeriIdDecl() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriIdDecl; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  void Resolve(VeriScope* scope, VERI_ENV_E value_kind);

  VeriIdDef* GetId() const { return _id; }
  template <class T> T* IdAs() const { return dynamic_cast<T*>(_id); }
  /// The declaration is another one of this identifier; the own one is deleted.
  void MergeInto(VeriIdDef* id);
  const VeriNodes<VeriRange>* Ranges() const { return _ranges; }
  void SetRanges(VeriNodes<VeriRange>* ranges) { _ranges = Adopt(ranges); }
  VeriExpression* Value() const { return _value; }
  /// The value, which is the caller's then.
  VeriExpression* TakeValue() {
    if (_value) _value->ClearParent();
    return std::exchange(_value, nullptr);
  }
  void SetValue(VeriExpression* value) { _value = Adopt(value); }

private:
  std::unique_ptr<VeriIdDef> _owned;
  VeriIdDef* _id;
  VeriNodes<VeriRange>* _ranges;
  VeriExpression* _value;
};

/// A name of an enumeration with its value.
class VeriEnumElementDecl : public VeriIdDecl {
public:
  VeriEnumElementDecl(std::unique_ptr<VeriIdDef> id, VeriExpression* value, unsigned long linefile = 0)
      : VeriIdDecl(std::move(id), nullptr, value, linefile) {}
  VERI_CLASS_ID GetClassId() const override { return ID_VeriEnumElementDecl; }
  void Accept(VeriVisitor& visitor) override;
};

using VeriIdDecls = VeriNodes<VeriIdDecl>;

/// Nets, variables, ports, members of structs.
class VeriDataDecl : public VeriModuleItem {
public:
  /// `direction` and `net_type` are tokens, 0 without. A null type is the implicit one.
  VeriDataDecl(unsigned direction, unsigned net_type, VeriTypeDef* type, VeriIdDecls* ids, unsigned long linefile = 0);
  ~VeriDataDecl() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriDataDecl; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  /// Without the indentation and the semicolon.
  void PrintHead(std::ostream& out, unsigned level) const;
  void Resolve(VeriScope* scope) override;
  unsigned IsPortDeclaration() const override { return _direction != 0; }
  unsigned IsDeclaration() const override { return 1; }
  void Prepare() override;
  void Initialize() override;
  void Elaborate() override;
  unsigned Direction() const { return _direction; }
  unsigned NetType() const { return _net_type; }
  VeriTypeDef* DataType() const { return _type; }
  VeriIdDecls* Ids() const { return _ids; }
  /// Whether the type says more than the direction: `input [3:0] a` does not, `output reg a` does.
  bool HasExplicitType() const { return _net_type != 0 || (_type && !_type->IsImplicit()) || _is_var; }
  /// Strength, `scalared` and delay of a net; taken over. Null for most nets, of which NetType tells all.
  void SetNetType(VeriNetType* net_type) { _net = Adopt(net_type); }
  const VeriNetType* NetTypeNode() const { return _net; }
  void SetIsConst() { _is_const = true; }
  bool IsConstant() const { return _is_const; }
  void SetIsVar() { _is_var = true; }
  bool IsVar() const { return _is_var; }
  /// VERI_AUTOMATIC, VERI_STATIC or 0, as the declaration says.
  unsigned Lifetime() const { return _lifetime; }
  void SetLifetime(unsigned token) { _lifetime = token; }

private:
  void ApplyAttributesTo(const VeriValue& nets) const;
  unsigned _direction;
  unsigned _net_type;
  bool _is_var = false;
  bool _is_const = false;
  unsigned _lifetime = 0;
  VeriNetType* _net = nullptr;
  VeriTypeDef* _type;
  VeriIdDecls* _ids;
};

/// Members of a struct or union that share a type.
class VeriStructUnionMemberDecl : public VeriDataDecl {
public:
  VeriStructUnionMemberDecl(VeriTypeDef* type, VeriIdDecls* ids, unsigned long linefile = 0)
      : VeriDataDecl(0, 0, type, ids, linefile) {}
  VERI_CLASS_ID GetClassId() const override { return ID_VeriStructUnionMemberDecl; }
  void Accept(VeriVisitor& visitor) override;
};

class VeriParamDecl : public VeriModuleItem {
public:
  VeriParamDecl(unsigned token, VeriTypeDef* type, VeriIdDecls* ids, unsigned long linefile = 0);
  ~VeriParamDecl() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriParamDecl; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  /// Without the indentation and the semicolon.
  void PrintHead(std::ostream& out, unsigned level) const;
  void Resolve(VeriScope* scope) override;
  unsigned IsDeclaration() const override { return 1; }
  void Initialize() override;
  unsigned Token() const { return _token; }
  void MakeLocal();
  VeriTypeDef* DataType() const { return _type; }
  VeriIdDecls* Ids() const { return _ids; }

private:
  unsigned _token;
  VeriTypeDef* _type;
  VeriIdDecls* _ids;
};

/// A typedef, or the declaration of a parameter that stands for a type.
class VeriTypeDecl : public VeriModuleItem {
public:
  /// The type of a parameter may be null.
  VeriTypeDecl(VeriTypeDef* type, VeriIdDecl* id, unsigned long linefile = 0);
  ~VeriTypeDecl() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriTypeDecl; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  void Resolve(VeriScope* scope) override;
  unsigned IsDeclaration() const override { return 1; }
  /// A parameter without the indentation and the semicolon.
  void PrintHead(std::ostream& out, unsigned level) const;
  VeriDataType* GetId() const { return static_cast<VeriDataType*>(_id->GetId()); }
  VeriTypeDef* DataType() const { return _type; }

private:
  VeriTypeDef* _type;
  VeriIdDecl* _id;
};

class VeriGenVarDecl : public VeriModuleItem {
public:
  explicit VeriGenVarDecl(VeriIdDecls* ids, unsigned long linefile = 0);
  ~VeriGenVarDecl() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriGenVarDecl; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  void Resolve(VeriScope*) override {}
  unsigned IsDeclaration() const override { return 1; }

private:
  VeriIdDecls* _ids;
};

/// What functions and tasks have in common.
class VeriSubprogram : public VeriModuleItem {
public:
  VeriSubprogram(VeriIdDecl* id, VeriModuleItems* declarations, VeriNodes<VeriStatement>* statements,
                 std::unique_ptr<VeriScope> scope, bool is_automatic, unsigned long linefile);
  ~VeriSubprogram() override;
  void VisitChildren(VeriVisitor& visitor) override;
  VeriScope* GetScope() const override { return _scope.get(); }
  unsigned IsDeclaration() const override { return 1; }
  void Resolve(VeriScope* scope) override;
  /// The formal arguments in order; valid after the parse.
  const std::vector<VeriVariable*>& Formals() const { return _formals; }
  VeriIdDef* GetId() const { return _id->GetId(); }
  unsigned IsAutomatic() const { return _is_automatic; }
  const VeriNodes<VeriStatement>* Statements() const { return _statements; }
  /// Runs the body: binds the actuals, executes, and hands outputs back to the actuals. The result of a function, null
  /// for a task and after an error. `from` is the call.
  OwnedValue Call(const VeriExpressions* args, VeriDataFlow* flow, const VeriTreeNode* from);

protected:
  void PrintBody(std::ostream& out, unsigned level) const;
  VeriIdDecl* _id;
  VeriModuleItems* _declarations; // ANSI ports first
  VeriNodes<VeriStatement>* _statements;
  std::unique_ptr<VeriScope> _scope;
  bool _is_automatic;
  std::vector<VeriVariable*> _formals;

private:
  std::vector<VeriExpression*> MatchArguments(const VeriExpressions* args, const VeriTreeNode* from) const;
  bool BindInputs(const std::vector<VeriExpression*>& actuals, VeriDataFlow* caller, VeriDataFlow* callee,
                  const VeriTreeNode* from);
  static constexpr unsigned max_call_depth = 500;
};

class VeriFunctionDecl : public VeriSubprogram {
public:
  VeriFunctionDecl(bool is_automatic, VeriTypeDef* type, VeriIdDecl* id, VeriModuleItems* declarations,
                   VeriNodes<VeriStatement>* statements, std::unique_ptr<VeriScope> scope, unsigned long linefile = 0);
  ~VeriFunctionDecl() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriFunctionDecl; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  void Resolve(VeriScope* scope) override;
  /// Of the result; null is a scalar.
  VeriTypeDef* DataType() const { return _type; }

private:
  VeriTypeDef* _type;
};

class VeriTaskDecl : public VeriSubprogram {
public:
  using VeriSubprogram::VeriSubprogram;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriTaskDecl; }
  void Accept(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
};

/// One `target = value` of a continuous or procedural continuous assignment.
class VeriNetRegAssign : public VeriTreeNode {
public:
  VeriNetRegAssign(VeriExpression* target, VeriExpression* value, unsigned long linefile = 0);
  ~VeriNetRegAssign() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriNetRegAssign; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  void Resolve(VeriScope* scope, VERI_ENV_E target_kind);
  void Elaborate();
  VeriExpression* Target() const { return _target; }
  VeriExpression* Value() const { return _value; }

private:
  VeriExpression* _target;
  VeriExpression* _value;
};

class VeriContinuousAssign : public VeriModuleItem {
public:
  /// Strength and delay are null without.
  VeriContinuousAssign(VeriStrength* strength, VeriExpressions* delay, VeriNodes<VeriNetRegAssign>* assigns,
                       unsigned long linefile = 0);
  ~VeriContinuousAssign() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriContinuousAssign; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  void Resolve(VeriScope* scope) override;
  void Elaborate() override;

private:
  VeriStrength* _strength;
  VeriExpressions* _delay;
  VeriNodes<VeriNetRegAssign>* _assigns;
};

/// One instance of a gate, module or primitive.
class VeriInst : public VeriTreeNode {
public:
  /// `id` may hold a nameless identifier for gates. `ranges`: array of instances.
  VeriInst(VeriIdDecl* id, VeriExpressions* connects, unsigned long linefile = 0);
  ~VeriInst() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriInst; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  /// The module tells the directions of the connections; null when it is not known.
  void Resolve(VeriScope* scope, const VeriModule* module);
  VeriIdDef* GetId() const { return _id ? _id->GetId() : nullptr; }
  VeriInstId* GetInstId() const;
  const char* Name() const { return GetId() ? GetId()->Name() : ""; }
  const VeriExpressions* Connects() const { return _connects; }
  const VeriNodes<VeriRange>* Ranges() const { return _id ? _id->Ranges() : nullptr; }

  /// An instance of this module name; `parameters` are the values of the instantiation.
  void InstantiateModule(const char* module_name, const VeriExpressions* parameters);
  /// The objects of an interface, one set for each instance of an array; and their logic and connections.
  void GenerateInterface(const char* interface_name, const VeriExpressions* parameters);
  void InitializeInterface(const VeriModule* interface);
  void ElaborateInterface(const char* interface_name, VeriModule* interface);
  void InstantiateGate(unsigned token);

private:
  friend class VeriInstantiation;
  friend class VeriGateBuilder;

  VeriIdDecl* _id;
  VeriExpressions* _connects;
};

class VeriGateInstantiation : public VeriModuleItem {
public:
  /// Strength and delay are null without.
  VeriGateInstantiation(unsigned token, VeriStrength* strength, VeriExpressions* delay, VeriNodes<VeriInst>* insts,
                        unsigned long linefile = 0);
  ~VeriGateInstantiation() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriGateInstantiation; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  void Resolve(VeriScope* scope) override;
  void Elaborate() override;

private:
  unsigned _token;
  VeriStrength* _strength;
  VeriExpressions* _delay;
  VeriNodes<VeriInst>* _insts;
};

class VeriModuleInstantiation : public VeriModuleItem {
public:
  /// The strength is that of a primitive's instances, null without; a delay is a parameter.
  VeriModuleInstantiation(VeriName* module, VeriStrength* strength, VeriExpressions* parameters,
                          VeriNodes<VeriInst>* insts, unsigned long linefile = 0);
  ~VeriModuleInstantiation() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriModuleInstantiation; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  void Resolve(VeriScope* scope) override;
  void GenerateObjects() override;
  void Initialize() override;
  void Elaborate() override;
  /// The module in the present library, when it is known.
  VeriModule* FindModule() const;
  const char* ModuleName() const { return _module->GetName(); }
  const VeriNodes<VeriInst>* Insts() const { return _insts; }
  /// The module of this name that is nested in a unit around; null before Resolve and for modules of a library.
  VeriModule* NestedModule() const { return _nested; }
  /// Values of parameters, by order or VeriPortConnect by name; null without.
  const VeriExpressions* Parameters() const { return _parameters; }

private:
  VeriModule* _nested = nullptr;
  VeriName* _module;
  VeriStrength* _strength;
  VeriExpressions* _parameters;
  VeriNodes<VeriInst>* _insts;
};

class VeriAlwaysConstruct : public VeriModuleItem {
public:
  VeriAlwaysConstruct(unsigned token, VeriStatement* statement, unsigned long linefile = 0);
  ~VeriAlwaysConstruct() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriAlwaysConstruct; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  void Resolve(VeriScope* scope) override;
  void Initialize() override;
  void Elaborate() override;
  unsigned Token() const { return _token; }
  VeriStatement* Statement() const { return _statement; }

private:
  void Connect(VeriDataFlow& flow);
  unsigned _token;
  VeriStatement* _statement;
};

class VeriInitialConstruct : public VeriModuleItem {
public:
  explicit VeriInitialConstruct(VeriStatement* statement, unsigned long linefile = 0);
  ~VeriInitialConstruct() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriInitialConstruct; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  void Resolve(VeriScope* scope) override;
  void Initialize() override;
  void Elaborate() override;
  VeriStatement* Statement() const { return _statement; }

private:
  VeriStatement* _statement;
};

class VeriDefParamAssign : public VeriTreeNode {
public:
  VeriDefParamAssign(VeriName* name, VeriExpression* value, unsigned long linefile = 0);
  ~VeriDefParamAssign() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriDefParamAssign; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  void Resolve(VeriScope* scope);
  /// The path names an instance whose identifier is known, which has the assignment in its list.
  bool IsBound() const { return _is_bound; }
  /// The name of the parameter when the path names this instance in the present module: u1.W or block.u1.W; else null.
  const char* MatchesInstance(const VeriIdDef* instance) const;
  VeriExpression* Value() const { return _value; }
  VeriName* Name() const { return _name; }
  /// Reports an assignment that no instance of the present module took.
  void ReportUnresolved() const;

private:
  VeriName* _name;
  VeriExpression* _value;
  bool _is_bound = false;
};

class VeriDefParam : public VeriModuleItem {
public:
  explicit VeriDefParam(VeriNodes<VeriDefParamAssign>* assigns, unsigned long linefile = 0);
  ~VeriDefParam() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriDefParam; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  void Resolve(VeriScope* scope) override;
  /// Puts the assignments among those that wait for their instance.
  void GenerateObjects() override;

private:
  VeriNodes<VeriDefParamAssign>* _assigns;
};

// Generate constructs.

class VeriGenerateBlock;

/// What several constructs share: each picks bodies, which are scopes with items, and runs passes over them.
class VeriGenerateItem : public VeriModuleItem {
public:
  using VeriModuleItem::VeriModuleItem;
  unsigned IsGenerate() const { return 1; }
  void GenerateObjects() override = 0;
  void Prepare() override;
  void Initialize() override;
  void Elaborate() override;

protected:
  /// Makes the generated scope of a body and the objects in it.
  void AddRound(VeriGenerateBlock* body, VeriIdDef* genvar, int value);
  /// The one item that stands for the construct in this run; null for none.
  void AddPicked(VeriModuleItem* item);
  void ForEachRound(const std::function<void(VeriModuleItem*)>& pass);
};

class VeriGenerateConstruct : public VeriGenerateItem {
public:
  explicit VeriGenerateConstruct(VeriModuleItems* items, unsigned long linefile = 0);
  ~VeriGenerateConstruct() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriGenerateConstruct; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  void Resolve(VeriScope* scope) override;
  void GenerateObjects() override;
  void Prepare() override;
  void Initialize() override;
  void Elaborate() override;

private:
  VeriModuleItems* _items;
};

/// A body of a generate construct: `begin : label ... end`, or a single item, in a scope of its own.
class VeriGenerateBlock : public VeriGenerateItem {
public:
  /// `id` is the block's identifier, made up for unnamed blocks.
  VeriGenerateBlock(VeriIdDecl* id, VeriModuleItems* items, std::unique_ptr<VeriScope> scope,
                    unsigned long linefile = 0);
  ~VeriGenerateBlock() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriGenerateBlock; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  VeriScope* GetScope() const override { return _scope.get(); }
  void Resolve(VeriScope* scope) override;
  void GenerateObjects() override;
  const char* Label() const { return _id->GetId()->Name(); }
  VeriIdDef* GetId() const { return _id->GetId(); }
  VeriModuleItems* Items() const { return _items; }

private:
  VeriIdDecl* _id;
  VeriModuleItems* _items;
  std::unique_ptr<VeriScope> _scope;
};

class VeriGenerateConditional : public VeriGenerateItem {
public:
  VeriGenerateConditional(VeriExpression* condition, VeriModuleItem* then_item, VeriModuleItem* else_item,
                          unsigned long linefile = 0);
  ~VeriGenerateConditional() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriGenerateConditional; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  void Resolve(VeriScope* scope) override;
  void GenerateObjects() override;
  unsigned MutuallyExclusive(const VeriTreeNode* a, const VeriTreeNode* b) const override;

private:
  VeriModuleItem* PickBranch() const;
  VeriExpression* _condition;
  VeriModuleItem* _then;
  VeriModuleItem* _else;
};

class VeriGenerateCaseItem : public VeriTreeNode {
public:
  /// Null conditions: the default.
  VeriGenerateCaseItem(VeriExpressions* conditions, VeriModuleItem* item, unsigned long linefile = 0);
  ~VeriGenerateCaseItem() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriGenerateCaseItem; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  const VeriExpressions* Conditions() const { return _conditions; }
  VeriModuleItem* Item() const { return _item; }

private:
  VeriExpressions* _conditions;
  VeriModuleItem* _item;
};

class VeriGenerateCase : public VeriGenerateItem {
public:
  VeriGenerateCase(unsigned token, VeriExpression* expression, VeriNodes<VeriGenerateCaseItem>* items,
                   unsigned long linefile = 0);
  ~VeriGenerateCase() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriGenerateCase; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  void Resolve(VeriScope* scope) override;
  void GenerateObjects() override;
  unsigned MutuallyExclusive(const VeriTreeNode* a, const VeriTreeNode* b) const override;

private:
  VeriModuleItem* PickBranch() const;
  unsigned _token;
  VeriExpression* _expression;
  VeriNodes<VeriGenerateCaseItem>* _items;
};

class VeriGenerateFor : public VeriGenerateItem {
public:
  /// `declared` is the declaration of the genvar when that stands in the loop itself, and `scope` is around the loop
  /// then.
  VeriGenerateFor(VeriGenVarAssign* initial, VeriExpression* condition, VeriExpression* repetition,
                  VeriModuleItem* body, VeriIdDecl* declared, std::unique_ptr<VeriScope> scope,
                  unsigned long linefile = 0);
  ~VeriGenerateFor() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriGenerateFor; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  VeriScope* GetScope() const override { return _scope.get(); }
  void Resolve(VeriScope* scope) override;
  void GenerateObjects() override;
  VeriName* Genvar() const;

private:
  VeriGenVarAssign* _initial;
  VeriExpression* _condition;
  VeriExpression* _repetition; // a VeriAssignmentOperator
  VeriModuleItem* _body;
  VeriIdDecl* _declared;
  std::unique_ptr<VeriScope> _scope;
};

/// Items that are read past: final blocks, which make no logic, and what elaboration refuses.
class VeriIgnoredItem : public VeriModuleItem {
public:
  explicit VeriIgnoredItem(unsigned token, unsigned long linefile = 0) : VeriModuleItem(linefile), _token(token) {}
  VERI_CLASS_ID GetClassId() const override { return ID_VeriIgnoredItem; }
  void Accept(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  void Resolve(VeriScope*) override {}
  void Elaborate() override;

private:
  unsigned _token;
};

/// package::name or package::* of an import declaration.
class VeriImport : public VeriModuleItem {
public:
  /// A null name is the wildcard.
  VeriImport(const char* package, const char* name, unsigned long linefile = 0);
  VERI_CLASS_ID GetClassId() const override { return ID_VeriImport; }
  void Accept(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  void Resolve(VeriScope* scope) override;
  unsigned IsDeclaration() const override { return 1; }
  /// The declaration without indentation and line end.
  void PrintHead(std::ostream& out) const;

private:
  std::string _package;
  std::string _name;
};

/// One port of a modport: an object of the interface, seen from outside with a direction.
class VeriModportPorts : public VeriTreeNode {
public:
  /// `direction`: the token of a direction, or VERI_IMPORT or VERI_EXPORT for a subprogram. The value of the
  /// declaration is the expression of `.name(expression)`; null for an object of the port's own name.
  VeriModportPorts(unsigned direction, VeriIdDecl* id, unsigned long linefile = 0);
  ~VeriModportPorts() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriModportPorts; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  /// `scope` is that of the interface.
  void Resolve(VeriScope* scope);
  unsigned Direction() const { return _direction; }
  unsigned IsSubprogram() const { return _direction == VERI_IMPORT || _direction == VERI_EXPORT; }
  VeriIdDef* GetId() const { return _id->GetId(); }
  VeriExpression* Expression() const { return _id->Value(); }
  /// The object of the interface; null for an expression, before Resolve and after an error.
  VeriIdDef* Object() const { return _object; }

private:
  unsigned _direction;
  VeriIdDecl* _id;
  VeriIdDef* _object = nullptr;
};

/// A named set of ports of an interface.
class VeriModport : public VeriTreeNode {
public:
  VeriModport(VeriIdDecl* id, VeriNodes<VeriModportPorts>* ports, std::unique_ptr<VeriScope> scope,
              unsigned long linefile = 0);
  ~VeriModport() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriModport; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  VeriScope* GetScope() const override { return _scope.get(); }
  void Resolve(VeriScope* scope);
  VeriIdDef* GetId() const { return _id->GetId(); }
  const char* Name() const { return GetId()->Name(); }
  const VeriNodes<VeriModportPorts>* Ports() const { return _ports; }
  /// Null when the modport does not list the name.
  VeriModportPorts* FindPort(const char* name) const;

private:
  VeriIdDecl* _id;
  VeriNodes<VeriModportPorts>* _ports;
  std::unique_ptr<VeriScope> _scope; // of the ports' names
};

class VeriModportDecl : public VeriModuleItem {
public:
  explicit VeriModportDecl(VeriNodes<VeriModport>* modports, unsigned long linefile = 0);
  ~VeriModportDecl() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriModportDecl; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  void Resolve(VeriScope* scope) override;
  unsigned IsDeclaration() const override { return 1; }

private:
  VeriNodes<VeriModport>* _modports;
};

/// The rows of a user-defined primitive: letters with `:` between the fields, in source order.
class VeriTable : public VeriModuleItem {
public:
  using VeriModuleItem::VeriModuleItem;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriTable; }
  void Accept(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  void Resolve(VeriScope*) override {}
  void AddRow(std::string row) { _rows.push_back(std::move(row)); }
  const std::vector<std::string>& Rows() const { return _rows; }

private:
  std::vector<std::string> _rows;
};

#endif
