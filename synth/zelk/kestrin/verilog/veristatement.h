// Statements. `Elaborate` executes a statement symbolically: assignments change the table of values, branches are run
// in tables of their own and merged. `Initialize` makes what blocks declare.
#ifndef KESTRIN_VERILOG_VERISTATEMENT_H
#define KESTRIN_VERILOG_VERISTATEMENT_H

#include <memory>
#include <string>
#include <vector>

#include "verilog/veriexpression.h"
#include "verilog/verimoduleitem.h"

class VeriStatement : public VeriTreeNode {
public:
  using VeriTreeNode::VeriTreeNode;
  virtual void Resolve(VeriScope* scope) = 0;
  virtual void Initialize() {}
  /// Whether an `else` behind the statement's text would become part of it.
  virtual bool TakesElse() const { return false; }
  /// Runs the statement unless control cannot reach it or an error was counted.
  void Elaborate(VeriDataFlow* flow);

protected:
  virtual void Execute(VeriDataFlow* flow) = 0;
};

using VeriStatements = VeriNodes<VeriStatement>;

/// Prints a statement that is part of another one; null is a semicolon. In front of an `else` that is the outer one's a
/// statement that would take it is put into a block.
void veri_print_nested(std::ostream& out, const VeriStatement* statement, unsigned level, bool is_before_else = false);

/// The head of an assignment: `#3`, `@(...)`, `repeat (n) @(...)`: of no effect in hardware.
class VeriDelayOrEventControl : public VeriTreeNode {
public:
  /// One of the first and the last is null.
  VeriDelayOrEventControl(VeriExpression* delay, VeriExpression* repeat, VeriExpressions* events,
                          unsigned long linefile = 0);
  ~VeriDelayOrEventControl() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriDelayOrEventControl; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  void Resolve(VeriScope* scope);
  /// Null for a delay; empty for `@*`.
  const VeriExpressions* Events() const { return _events; }

private:
  VeriExpression* _delay;
  VeriExpression* _repeat;
  VeriExpressions* _events;
};

#define VERI_STATEMENT_CLASS(name)                                                                                     \
  VERI_CLASS_ID GetClassId() const override { return ID_##name; }                                                      \
  void Accept(VeriVisitor& visitor) override;                                                                          \
  void VisitChildren(VeriVisitor& visitor) override;                                                                   \
  void PrettyPrint(std::ostream& out, unsigned level) const override;                                                  \
  void Resolve(VeriScope* scope) override;                                                                             \
                                                                                                                       \
protected:                                                                                                             \
  void Execute(VeriDataFlow* flow) override;                                                                           \
                                                                                                                       \
public:

class VeriBlockingAssign : public VeriStatement {
public:
  VeriBlockingAssign(VeriAssignmentOperator* assignment, VeriDelayOrEventControl* control, unsigned long linefile = 0);
  ~VeriBlockingAssign() override;
  VERI_STATEMENT_CLASS(VeriBlockingAssign)
  VeriAssignmentOperator* Assignment() const { return _assignment; }

private:
  VeriAssignmentOperator* _assignment;
  VeriDelayOrEventControl* _control;
};

class VeriNonBlockingAssign : public VeriStatement {
public:
  VeriNonBlockingAssign(VeriAssignmentOperator* assignment, VeriDelayOrEventControl* control,
                        unsigned long linefile = 0);
  ~VeriNonBlockingAssign() override;
  VERI_STATEMENT_CLASS(VeriNonBlockingAssign)
  VeriAssignmentOperator* Assignment() const { return _assignment; }

private:
  VeriAssignmentOperator* _assignment;
  VeriDelayOrEventControl* _control;
};

class VeriConditionalStatement : public VeriStatement {
public:
  /// Both branches may be null. `qualifier`: VERI_UNIQUE, VERI_PRIORITY or 0.
  VeriConditionalStatement(VeriExpression* condition, VeriStatement* then_statement, VeriStatement* else_statement,
                           unsigned qualifier, unsigned long linefile = 0);
  ~VeriConditionalStatement() override;
  VERI_STATEMENT_CLASS(VeriConditionalStatement)
  VeriStatement* Then() const { return _then; }
  VeriStatement* Else() const { return _else; }
  /// The branch, which the caller gets.
  VeriStatement* TakeElse();
  /// Takes the branch over; there must be none.
  void SetElse(VeriStatement* branch) { _else = Adopt(branch); }
  bool TakesElse() const override;
  void Initialize() override;
  unsigned MutuallyExclusive(const VeriTreeNode* a, const VeriTreeNode* b) const override;

private:
  void RunBranch(VeriStatement* branch, VeriDataFlow* flow, bool value);
  VeriExpression* _condition;
  VeriStatement* _then;
  VeriStatement* _else;
  unsigned _qualifier;
};

class VeriCaseItem : public VeriTreeNode {
public:
  /// Null conditions: the default. The statement may be null.
  VeriCaseItem(VeriExpressions* conditions, VeriStatement* statement, unsigned long linefile = 0);
  ~VeriCaseItem() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriCaseItem; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  const VeriExpressions* Conditions() const { return _conditions; }
  VeriStatement* Statement() const { return _statement; }

private:
  VeriExpressions* _conditions;
  VeriStatement* _statement;
};

class VeriCaseStatement : public VeriStatement {
public:
  VeriCaseStatement(unsigned token, unsigned qualifier, VeriExpression* expression, VeriNodes<VeriCaseItem>* items,
                    unsigned long linefile = 0);
  ~VeriCaseStatement() override;
  VERI_STATEMENT_CLASS(VeriCaseStatement)
  const VeriNodes<VeriCaseItem>* Items() const { return _items; }
  VeriExpression* Expression() const { return _expression; }
  unsigned Qualifier() const { return _qualifier; }
  /// The conditions of the items are values and ranges that the expression is inside of.
  void SetIsInside() { _is_inside = true; }
  void Initialize() override;
  unsigned MutuallyExclusive(const VeriTreeNode* a, const VeriTreeNode* b) const override;

private:
  friend class VeriCaseAnalysis;
  bool _is_inside = false;
  unsigned _token;
  unsigned _qualifier;
  VeriExpression* _expression;
  VeriNodes<VeriCaseItem>* _items;
};

class VeriLoop : public VeriStatement {
public:
  VeriLoop(VeriStatement* body, std::unique_ptr<VeriScope> scope, unsigned long linefile);
  ~VeriLoop() override;
  bool TakesElse() const override;
  VeriScope* GetScope() const override { return _scope.get(); }
  void Initialize() override;
  /// Null for a loop without.
  const VeriStatement* Body() const { return _body; }

protected:
  struct Limits {
    int constant;
    int non_constant;
  };
  Limits EvaluateLoopLimits() const;
  /// Executes rounds until a condition fails, control leaves, or a limit is reached. A null condition never fails.
  void Run(VeriDataFlow* flow, VeriExpression* condition, bool test_first, const std::function<void()>& repetition);
  /// Where `break` and `continue` of this loop lead.
  const void* BreakLabel() const { return this; }
  const void* ContinueLabel() const { return &_scope; }
  friend class VeriJumpStatement;
  VeriStatement* _body; // may be null
  std::unique_ptr<VeriScope> _scope;
};

class VeriFor : public VeriLoop {
public:
  /// `declaration` declares the loop's own variable, or is null.
  VeriFor(VeriDataDecl* declaration, VeriStatements* initials, VeriExpression* condition, VeriStatements* repetitions,
          VeriStatement* body, std::unique_ptr<VeriScope> scope, unsigned long linefile = 0);
  ~VeriFor() override;
  VERI_STATEMENT_CLASS(VeriFor)
  void Initialize() override;

private:
  VeriDataDecl* _declaration;
  VeriStatements* _initials;
  VeriExpression* _condition;
  VeriStatements* _repetitions;
};

class VeriWhile : public VeriLoop {
public:
  VeriWhile(VeriExpression* condition, VeriStatement* body, std::unique_ptr<VeriScope> scope, bool is_do_while,
            unsigned long linefile = 0);
  ~VeriWhile() override;
  VERI_STATEMENT_CLASS(VeriWhile)
  bool TakesElse() const override { return !_is_do_while && VeriLoop::TakesElse(); }

private:
  VeriExpression* _condition;
  bool _is_do_while;
};

class VeriRepeat : public VeriLoop {
public:
  VeriRepeat(VeriExpression* count, VeriStatement* body, std::unique_ptr<VeriScope> scope, unsigned long linefile = 0);
  ~VeriRepeat() override;
  VERI_STATEMENT_CLASS(VeriRepeat)

private:
  VeriExpression* _count;
};

class VeriForever : public VeriLoop {
public:
  using VeriLoop::VeriLoop;
  VERI_STATEMENT_CLASS(VeriForever)
};

class VeriSeqBlock : public VeriStatement {
public:
  /// `id` null for a block without name. The scope is null for a block without name and declarations.
  VeriSeqBlock(VeriIdDecl* id, VeriModuleItems* declarations, VeriStatements* statements,
               std::unique_ptr<VeriScope> scope, unsigned long linefile = 0);
  ~VeriSeqBlock() override;
  VERI_STATEMENT_CLASS(VeriSeqBlock)
  /// The statement of a block that holds no other one and no declaration; null otherwise.
  VeriStatement* OnlyStatement() const;
  const VeriStatements* Statements() const { return _statements; }
  VeriScope* GetScope() const override { return _scope.get(); }
  void Initialize() override;

private:
  VeriIdDecl* _id;
  VeriModuleItems* _declarations;
  VeriStatements* _statements;
  std::unique_ptr<VeriScope> _scope;
};

class VeriParBlock : public VeriStatement {
public:
  /// `join_token`: VERI_JOIN, VERI_JOIN_ANY or VERI_JOIN_NONE.
  VeriParBlock(VeriIdDecl* id, VeriModuleItems* declarations, VeriStatements* statements,
               std::unique_ptr<VeriScope> scope, unsigned join_token, unsigned long linefile = 0);
  ~VeriParBlock() override;
  VERI_STATEMENT_CLASS(VeriParBlock)
  VeriScope* GetScope() const override { return _scope.get(); }

private:
  VeriIdDecl* _id;
  VeriModuleItems* _declarations;
  VeriStatements* _statements;
  std::unique_ptr<VeriScope> _scope;
  unsigned _join_token;
};

class VeriEventControlStatement : public VeriStatement {
public:
  /// An empty list is `@*`.
  VeriEventControlStatement(VeriExpressions* events, VeriStatement* statement, unsigned long linefile = 0);
  ~VeriEventControlStatement() override;
  VERI_STATEMENT_CLASS(VeriEventControlStatement)
  bool TakesElse() const override;
  void Initialize() override;
  const VeriExpressions* Events() const { return _events; }
  VeriStatement* Statement() const { return _statement; }
  /// Whether one of the events is an edge.
  bool HasEdge() const;

private:
  VeriExpressions* _events;
  VeriStatement* _statement;
};

class VeriDelayControlStatement : public VeriStatement {
public:
  VeriDelayControlStatement(VeriExpression* delay, VeriStatement* statement, unsigned long linefile = 0);
  ~VeriDelayControlStatement() override;
  VERI_STATEMENT_CLASS(VeriDelayControlStatement)
  bool TakesElse() const override;
  void Initialize() override;

private:
  VeriExpression* _delay;
  VeriStatement* _statement;
};

class VeriTaskEnable : public VeriStatement {
public:
  VeriTaskEnable(VeriName* name, VeriExpressions* args, unsigned long linefile = 0);
  ~VeriTaskEnable() override;
  VERI_STATEMENT_CLASS(VeriTaskEnable)
  VeriName* Name() const { return _name; }
  /// Null without.
  const VeriExpressions* Args() const { return _args; }

private:
  VeriName* _name;
  VeriExpressions* _args;
};

class VeriSystemTaskEnable : public VeriStatement {
public:
  /// The name has its `$`.
  VeriSystemTaskEnable(const char* name, VeriExpressions* args, unsigned long linefile = 0);
  ~VeriSystemTaskEnable() override;
  VERI_STATEMENT_CLASS(VeriSystemTaskEnable)
  const char* Name() const { return _name.c_str(); }

private:
  void ReadMemory(VeriDataFlow* flow, bool is_binary);
  void Display(VeriDataFlow* flow);
  void Report(VeriDataFlow* flow);
  /// The text that the arguments from `first` on print.
  std::string Format(VeriDataFlow* flow, unsigned first);
  unsigned NumOfArgs() const { return _args ? _args->Size() : 0; }
  std::string _name;
  VeriExpressions* _args;
};

class VeriDisable : public VeriStatement {
public:
  explicit VeriDisable(VeriName* name, unsigned long linefile = 0);
  ~VeriDisable() override;
  VERI_STATEMENT_CLASS(VeriDisable)
  VeriName* Name() const { return _name; }

private:
  VeriName* _name;
};

class VeriJumpStatement : public VeriStatement {
public:
  /// VERI_RETURN, VERI_BREAK or VERI_CONTINUE; the value of a return may be null.
  VeriJumpStatement(unsigned token, VeriExpression* value, unsigned long linefile = 0);
  ~VeriJumpStatement() override;
  VERI_STATEMENT_CLASS(VeriJumpStatement)
  unsigned Token() const { return _token; }
  /// Null without.
  VeriExpression* Value() const { return _value; }
  /// The loop that a break or continue concerns; null for none. Known after Resolve.
  const VeriLoop* Loop() const { return _loop; }

private:
  unsigned _token;
  VeriExpression* _value;
  VeriLoop* _loop = nullptr;
  VeriIdDef* _subprogram = nullptr;
};

class VeriNullStatement : public VeriStatement {
public:
  using VeriStatement::VeriStatement;
  VERI_STATEMENT_CLASS(VeriNullStatement)
};

class VeriWait : public VeriStatement {
public:
  VeriWait(VeriExpression* condition, VeriStatement* statement, unsigned long linefile = 0);
  ~VeriWait() override;
  VERI_STATEMENT_CLASS(VeriWait)
  bool TakesElse() const override;

private:
  VeriExpression* _condition;
  VeriStatement* _statement;
};

/// The assignment to the genvar at the head of a generate loop.
class VeriGenVarAssign : public VeriStatement {
public:
  VeriGenVarAssign(VeriName* name, VeriExpression* value, unsigned long linefile = 0);
  ~VeriGenVarAssign() override;
  VERI_STATEMENT_CLASS(VeriGenVarAssign)
  VeriName* Name() const { return _name; }
  VeriExpression* Value() const { return _value; }

private:
  VeriName* _name;
  VeriExpression* _value;
};

class VeriEventTrigger : public VeriStatement {
public:
  explicit VeriEventTrigger(VeriName* name, unsigned long linefile = 0);
  ~VeriEventTrigger() override;
  VERI_STATEMENT_CLASS(VeriEventTrigger)
  VeriName* Name() const { return _name; }

private:
  VeriName* _name;
};

/// Procedural continuous assignments, none of which is supported: a target, and a value for two of them.
#define VERI_PROCEDURAL_CLASS(name)                                                                                    \
  class name : public VeriStatement {                                                                                  \
  public:                                                                                                              \
    name(VeriExpression* target, VeriExpression* value, unsigned long linefile = 0)                                    \
        : VeriStatement(linefile), _target(Adopt(target)), _value(Adopt(value)) {}                                     \
    ~name() override {                                                                                                 \
      delete _target;                                                                                                  \
      delete _value;                                                                                                   \
    }                                                                                                                  \
    VERI_STATEMENT_CLASS(name)                                                                                         \
  private:                                                                                                             \
    VeriExpression* _target;                                                                                           \
    VeriExpression* _value; /* null for deassign and release */                                                        \
  };
VERI_PROCEDURAL_CLASS(VeriAssign)
VERI_PROCEDURAL_CLASS(VeriDeAssign)
VERI_PROCEDURAL_CLASS(VeriForce)
VERI_PROCEDURAL_CLASS(VeriRelease)
#undef VERI_PROCEDURAL_CLASS

#endif
