// Assertions, and the sequences and properties that they state. They make no logic; the tree keeps them as they were
// read (IEEE 1800-2005 clause 17).
#ifndef KESTRIN_VERILOG_VERIASSERTION_H
#define KESTRIN_VERILOG_VERIASSERTION_H

#include <memory>

#include "verilog/verimoduleitem.h"
#include "verilog/veristatement.h"

/// `assert (expression) then else`, or with a property `assert property (...)`.
class VeriAssertion : public VeriStatement {
public:
  /// `token`: VERI_ASSERT, VERI_ASSUME, VERI_COVER or VERI_EXPECT. The statements may be null.
  VeriAssertion(unsigned token, bool is_of_property, VeriExpression* expression, VeriStatement* then_statement,
                VeriStatement* else_statement, unsigned long linefile = 0);
  ~VeriAssertion() override;
  VERI_STATEMENT_CLASS(VeriAssertion)
  bool TakesElse() const override { return !_else || _else->TakesElse(); }
  /// The name in front; empty without.
  void SetLabel(const char* label) { _label = label; }

private:
  unsigned _token;
  bool _is_of_property;
  std::string _label;
  VeriExpression* _expression;
  VeriStatement* _then;
  VeriStatement* _else;
};

/// An assertion that stands among the items of a module.
class VeriConcurrentAssertion : public VeriModuleItem {
public:
  explicit VeriConcurrentAssertion(VeriStatement* assertion, unsigned long linefile = 0);
  ~VeriConcurrentAssertion() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriConcurrentAssertion; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  void Resolve(VeriScope* scope) override;

private:
  VeriStatement* _assertion;
};

/// What properties and sequences have in common.
class VeriPropertyBase : public VeriModuleItem {
public:
  /// `ports` and `declarations` are null without.
  VeriPropertyBase(VeriIdDecl* id, VeriModuleItems* ports, VeriModuleItems* declarations, VeriExpression* body,
                   std::unique_ptr<VeriScope> scope, unsigned long linefile = 0);
  ~VeriPropertyBase() override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  VeriScope* GetScope() const override { return _scope.get(); }
  void Resolve(VeriScope* scope) override;
  unsigned IsDeclaration() const override { return 1; }
  VeriIdDef* GetId() const { return _id->GetId(); }

protected:
  virtual unsigned Token() const = 0;

private:
  VeriIdDecl* _id;
  VeriModuleItems* _ports;
  VeriModuleItems* _declarations;
  VeriExpression* _body;
  std::unique_ptr<VeriScope> _scope;
};

class VeriPropertyDecl : public VeriPropertyBase {
public:
  using VeriPropertyBase::VeriPropertyBase;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriPropertyDecl; }
  void Accept(VeriVisitor& visitor) override;

protected:
  unsigned Token() const override { return VERI_PROPERTY; }
};

class VeriSequenceDecl : public VeriPropertyBase {
public:
  using VeriPropertyBase::VeriPropertyBase;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriSequenceDecl; }
  void Accept(VeriVisitor& visitor) override;

protected:
  unsigned Token() const override { return VERI_SEQUENCE; }
};

/// The operators that only sequences and properties have, by their token:
///   VERI_CYCLE_DELAY        left ##control right, the left may be null
///   VERI_REPEAT_...         left [* control], [= control], [-> control]
///   VERI_AT                 @(events) right
///   VERI_DISABLE            disable iff (control) right
///   VERI_FIRST_MATCH        first_match(right, steps)
///   VERI_IF                 if (control) left else right, the right may be null
///   VERI_COMMA              (left, steps)
/// and those of two operands: and, or, intersect, within, throughout, |->, |=>; and `not`, of the right one.
class VeriSequenceOperator : public VeriExpression {
public:
  VeriSequenceOperator(unsigned token, VeriExpression* left, VeriExpression* control, VeriExpression* right,
                       unsigned long linefile = 0);
  ~VeriSequenceOperator() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriSequenceOperator; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  void Resolve(VeriScope* scope, const VeriEnv& env) override;
  VeriTypeInfo TypeInfer(VeriDataFlow*) override { return {}; }
  OwnedValue EvaluateIn(VeriDataFlow*, const VeriTypeInfo&) override { return nullptr; }
  unsigned OperType() const { return _token; }
  /// Clocking events, and the assignments that go with a match; taken over.
  void SetList(VeriExpressions* list) { _list = Adopt(list); }

private:
  void PrintRepetition(std::ostream& out) const;
  unsigned _token;
  VeriExpression* _left;
  VeriExpression* _control;
  VeriExpression* _right;
  VeriExpressions* _list = nullptr;
};

#endif
