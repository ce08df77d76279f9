// Expressions, literals, names and types of the tree. An expression knows its self-determined size and sign and is
// evaluated in a context of size and sign (IEEE 1364-2005 clause 5.4 and 5.5); a name also takes assignments.
#ifndef KESTRIN_VERILOG_VERIEXPRESSION_H
#define KESTRIN_VERILOG_VERIEXPRESSION_H

#include <memory>
#include <string>
#include <vector>

#include "util/strings.h"
#include "verilog/veri_tokens.h"
#include "verilog/vericonstraint.h"
#include "verilog/veriid.h"
#include "verilog/veriscope.h"
#include "verilog/veritreenode.h"
#include "verilog/verivalue.h"

class VeriDataDecl;
class VeriIdDecl;
class VeriInterfaceTypeDef;
class VeriModport;
class VeriModule;
class VeriName;
class VeriRange;

/// The size and sign of an expression, by itself or as its context asks for.
struct VeriTypeInfo {
  unsigned size = 1;
  bool is_signed = false;
  bool is_real = false;
  bool is_unsized = false; ///< an unsized literal, or made of such only
};

class VeriExpression : public VeriTreeNode {
public:
  using VeriTreeNode::VeriTreeNode;
  unsigned IsExpr() const override { return 1; }
  /// Levels of nesting; the parser refuses what is deeper than walks over the tree can go.
  unsigned Depth() const { return _depth; }
  static constexpr unsigned max_depth = 2000;

  /// Binds the names.
  virtual void Resolve(VeriScope* scope, const VeriEnv& env) = 0;
  virtual const VeriName* AsName() const { return nullptr; }
  VeriName* AsName() { return const_cast<VeriName*>(static_cast<const VeriExpression*>(this)->AsName()); }
  virtual const VeriRange* AsRange() const { return nullptr; }
  /// The name of a plain identifier; null for anything else.
  virtual const char* GetName() const { return nullptr; }
  /// A literal.
  virtual unsigned IsConst() const { return 0; }
  virtual unsigned IsEdge() const { return 0; }
  virtual unsigned IsConcat() const { return 0; }
  /// The open end of a range.
  virtual unsigned IsOpen() const { return 0; }
  virtual unsigned IsTypeName() const { return 0; }
  /// The source text.
  std::string Image() const;
  /// A literal of the same value as a new node; null for what is no constant.
  static std::unique_ptr<VeriExpression> ToConstantExpression(const VeriValue& value, unsigned long linefile);

  // Elaboration. Flows may be null: outside processes.
  /// The self-determined type.
  virtual VeriTypeInfo TypeInfer(VeriDataFlow* flow) = 0;
  /// The value in a context: `type` is what TypeInfer of the whole expression gave, widened by an assignment. The
  /// result has the context's size. Null after an error, or for what has no value.
  virtual OwnedValue EvaluateIn(VeriDataFlow* flow, const VeriTypeInfo& type) = 0;
  /// Self-determined.
  OwnedValue Evaluate(VeriDataFlow* flow);
  /// As the right side of an assignment to this type, fitted to it.
  virtual OwnedValue EvaluateFor(const VeriConstraint& target, VeriDataFlow* flow);
  /// As the right side of an assignment to a variable that is encoded by its states: a code.
  virtual OwnedValue EvaluateState(const VeriVariable* target, VeriDataFlow* flow);
  /// A constant; reports "%s is not constant" with the image where it is none.
  OwnedValue EvaluateConstant();
  /// One bit; more are reduced with a warning. Null after an error.
  Net* EvaluateCondition(VeriDataFlow* flow);
  /// The type as a target, an actual or an aggregate; null for what has only size and sign.
  virtual OwnedConstraint EvaluateConstraint(VeriDataFlow* /*flow*/) { return nullptr; }
  /// Takes a value that fits: into the flow, or with a null flow onto the nets. `non_blocking` marks the value.
  virtual void Assign(OwnedValue value, VeriDataFlow* flow, bool non_blocking);
  /// The nets that a connection or continuous assignment drives; null with an error for what is no net.
  virtual OwnedValue EvaluateNets();
  /// Adds the variables that the value depends on.
  virtual void AddToSensList(Set& ids);

protected:
  /// The node is one deeper than this child.
  void Deepen(const VeriExpression* child);
  /// Fits a self-determined value to the context.
  static OwnedValue FitTo(OwnedValue value, const VeriTypeInfo& type, const VeriTreeNode* from);

private:
  unsigned _depth = 1;
};

using VeriExpressions = VeriNodes<VeriExpression>;

// Operators.

class VeriBinaryOperator : public VeriExpression {
public:
  VeriBinaryOperator(unsigned token, VeriExpression* left, VeriExpression* right, unsigned long linefile = 0);
  ~VeriBinaryOperator() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriBinaryOperator; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  void Resolve(VeriScope* scope, const VeriEnv& env) override;
  VeriTypeInfo TypeInfer(VeriDataFlow* flow) override;
  OwnedValue EvaluateIn(VeriDataFlow* flow, const VeriTypeInfo& type) override;
  void AddToSensList(Set& ids) override;
  unsigned OperType() const { return _token; }
  VeriExpression* GetLeft() const { return _left; }
  VeriExpression* GetRight() const { return _right; }

private:
  OwnedValue EvaluateInside(VeriDataFlow* flow);
  OwnedValue EvaluateIsIn(VeriExpression* element, VeriDataFlow* flow);
  OwnedValue EvaluateStateTest(VeriDataFlow* flow);
  unsigned _token;
  VeriExpression* _left;
  VeriExpression* _right; // of `inside` a VeriConcat of values and ranges
};

class VeriUnaryOperator : public VeriExpression {
public:
  VeriUnaryOperator(unsigned token, VeriExpression* operand, unsigned long linefile = 0);
  ~VeriUnaryOperator() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriUnaryOperator; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  void Resolve(VeriScope* scope, const VeriEnv& env) override;
  VeriTypeInfo TypeInfer(VeriDataFlow* flow) override;
  OwnedValue EvaluateIn(VeriDataFlow* flow, const VeriTypeInfo& type) override;
  void AddToSensList(Set& ids) override;
  unsigned OperType() const { return _token; }
  VeriExpression* GetOperand() const { return _operand; }

private:
  unsigned _token;
  VeriExpression* _operand;
};

class VeriQuestionColon : public VeriExpression {
public:
  VeriQuestionColon(VeriExpression* condition, VeriExpression* one, VeriExpression* zero, unsigned long linefile = 0);
  ~VeriQuestionColon() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriQuestionColon; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  void Resolve(VeriScope* scope, const VeriEnv& env) override;
  VeriTypeInfo TypeInfer(VeriDataFlow* flow) override;
  OwnedValue EvaluateIn(VeriDataFlow* flow, const VeriTypeInfo& type) override;
  OwnedValue EvaluateFor(const VeriConstraint& target, VeriDataFlow* flow) override;
  OwnedValue EvaluateState(const VeriVariable* target, VeriDataFlow* flow) override;
  void AddToSensList(Set& ids) override;
  VeriExpression* Condition() const { return _condition; }
  VeriExpression* One() const { return _one; }
  VeriExpression* Zero() const { return _zero; }

private:
  VeriExpression* _condition;
  VeriExpression* _one;
  VeriExpression* _zero;
};

/// Concatenation, with a count the replication {count{...}}.
class VeriConcat : public VeriExpression {
public:
  VeriConcat(VeriExpression* count, VeriExpressions* parts, unsigned long linefile = 0);
  ~VeriConcat() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriConcat; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  unsigned IsConcat() const override { return 1; }
  void Resolve(VeriScope* scope, const VeriEnv& env) override;
  VeriTypeInfo TypeInfer(VeriDataFlow* flow) override;
  OwnedValue EvaluateIn(VeriDataFlow* flow, const VeriTypeInfo& type) override;
  OwnedConstraint EvaluateConstraint(VeriDataFlow* flow) override;
  void Assign(OwnedValue value, VeriDataFlow* flow, bool non_blocking) override;
  OwnedValue EvaluateNets() override;
  void AddToSensList(Set& ids) override;
  const VeriExpressions* Parts() const { return _parts; }

private:
  /// Null for an error.
  OwnedValue EvaluateParts(VeriDataFlow* flow);
  VeriExpression* _count;
  VeriExpressions* _parts;
};

/// `min : typ : max`; with a null in the middle the two limits of a pulse, `(reject, error)`.
class VeriMinTypMaxExpr : public VeriExpression {
public:
  VeriMinTypMaxExpr(VeriExpression* min, VeriExpression* typ, VeriExpression* max, unsigned long linefile = 0);
  ~VeriMinTypMaxExpr() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriMinTypMaxExpr; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  void Resolve(VeriScope* scope, const VeriEnv& env) override;
  VeriTypeInfo TypeInfer(VeriDataFlow* flow) override { return Typical()->TypeInfer(flow); }
  OwnedValue EvaluateIn(VeriDataFlow* flow, const VeriTypeInfo& type) override {
    return Typical()->EvaluateIn(flow, type);
  }

private:
  VeriExpression* Typical() const { return _typ ? _typ : _min; }
  VeriExpression* _min;
  VeriExpression* _typ;
  VeriExpression* _max;
};

/// A dimension or an index: [left:right], [left+:right], [left-:right]; a dimension [left] of SystemVerilog has no
/// right bound.
class VeriRange : public VeriExpression {
public:
  VeriRange(VeriExpression* left, VeriExpression* right, unsigned token, unsigned long linefile = 0);
  ~VeriRange() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriRange; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  const VeriRange* AsRange() const override { return this; }
  void Resolve(VeriScope* scope, const VeriEnv& env) override;
  VeriTypeInfo TypeInfer(VeriDataFlow*) override { return {}; }
  OwnedValue EvaluateIn(VeriDataFlow*, const VeriTypeInfo&) override { return nullptr; }
  void AddToSensList(Set& ids) override;
  VeriExpression* GetLeft() const { return _left; }
  VeriExpression* GetRight() const { return _right; }
  unsigned GetPartSelectToken() const { return _token; }
  /// The bounds of a declared dimension; false after an error.
  bool EvaluateBounds(int* left, int* right) const;

private:
  VeriExpression* _left;
  VeriExpression* _right;
  unsigned _token; // VERI_COLON, VERI_PLUS_COLON, VERI_MINUS_COLON
};

class VeriFunctionCall : public VeriExpression {
public:
  VeriFunctionCall(VeriName* name, VeriExpressions* args, unsigned long linefile = 0);
  ~VeriFunctionCall() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriFunctionCall; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  void Resolve(VeriScope* scope, const VeriEnv& env) override;
  VeriTypeInfo TypeInfer(VeriDataFlow* flow) override;
  OwnedValue EvaluateIn(VeriDataFlow* flow, const VeriTypeInfo& type) override;
  OwnedConstraint EvaluateConstraint(VeriDataFlow* flow) override;
  void AddToSensList(Set& ids) override;
  /// Null without.
  const VeriExpressions* Args() const { return _args; }

private:
  VeriName* _name;
  VeriExpressions* _args;
};

class VeriSystemFunctionCall : public VeriExpression {
public:
  /// The name has its `$`.
  VeriSystemFunctionCall(const char* name, VeriExpressions* args, unsigned long linefile = 0);
  ~VeriSystemFunctionCall() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriSystemFunctionCall; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  void Resolve(VeriScope* scope, const VeriEnv& env) override;
  VeriTypeInfo TypeInfer(VeriDataFlow* flow) override;
  OwnedValue EvaluateIn(VeriDataFlow* flow, const VeriTypeInfo& type) override;
  void AddToSensList(Set& ids) override;

private:
  struct Function;
  static const Function* FindFunction(const std::string& name);
  OwnedValue EvaluateQuery(VeriDataFlow* flow);
  OwnedValue EvaluateClog2(VeriDataFlow* flow);
  OwnedValue EvaluateBits(VeriDataFlow* flow);
  OwnedValue EvaluateSign(VeriDataFlow* flow);
  OwnedValue EvaluateCount(VeriDataFlow* flow);
  unsigned NumOfArgs() const { return _args ? _args->Size() : 0; }
  std::string _name;
  VeriExpressions* _args;
};

/// `target = value` and the operator forms; also ++ and --.
/// The value of an assignment that is an operand: what is assigned, or with an increment behind the name what was
/// there.
enum veri_operand_value { VERI_NEW_VALUE, VERI_OLD_VALUE };

class VeriAssignmentOperator : public VeriExpression {
public:
  VeriAssignmentOperator(VeriExpression* target, unsigned token, VeriExpression* value, unsigned long linefile = 0);
  ~VeriAssignmentOperator() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriAssignmentOperator; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  void Resolve(VeriScope* scope, const VeriEnv& env) override;
  VeriTypeInfo TypeInfer(VeriDataFlow* flow) override { return _target->TypeInfer(flow); }
  /// Assigns and gives the assigned value, or the former one.
  OwnedValue EvaluateIn(VeriDataFlow* flow, const VeriTypeInfo& type) override;
  void Execute(VeriDataFlow* flow, bool non_blocking);
  /// What would be assigned, fitted to the type.
  OwnedValue EvaluateRight(const VeriConstraint& target, VeriDataFlow* flow);
  void AddToSensList(Set& ids) override;
  VeriExpression* Target() const { return _target; }
  VeriExpression* Value() const { return _value; }
  unsigned Token() const { return _token; }
  /// Stands in an expression, in parentheses.
  void SetIsOperand(veri_operand_value value) {
    _is_operand = true;
    _gives_old_value = value == VERI_OLD_VALUE;
  }
  bool IsOperand() const { return _is_operand; }

private:
  VeriExpression* _target;
  unsigned _token;
  VeriExpression* _value;
  bool _is_operand = false;
  bool _gives_old_value = false;
};

/// '{a, b}, '{default: x}, '{name: x}.
class VeriAssignmentPattern : public VeriExpression {
public:
  struct Part {
    VeriExpression* key; // null: by position, or the default
    bool is_default;
    VeriExpression* value;
  };
  VeriAssignmentPattern(std::vector<Part> parts, unsigned long linefile = 0);
  ~VeriAssignmentPattern() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriAssignmentPattern; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  void Resolve(VeriScope* scope, const VeriEnv& env) override;
  VeriTypeInfo TypeInfer(VeriDataFlow* flow) override;
  OwnedValue EvaluateIn(VeriDataFlow* flow, const VeriTypeInfo& type) override;
  OwnedValue EvaluateFor(const VeriConstraint& target, VeriDataFlow* flow) override;
  void AddToSensList(Set& ids) override;

private:
  void CheckKeys() const;
  std::vector<Part> _parts;
};

class VeriTypeDef;

/// type'(expression) and size'(expression).
class VeriTypeCast : public VeriExpression {
public:
  VeriTypeCast(VeriExpression* type, VeriExpression* operand, unsigned long linefile = 0);
  ~VeriTypeCast() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriTypeCast; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  void Resolve(VeriScope* scope, const VeriEnv& env) override;
  VeriTypeInfo TypeInfer(VeriDataFlow* flow) override;
  OwnedValue EvaluateIn(VeriDataFlow* flow, const VeriTypeInfo& type) override;
  OwnedValue EvaluateFor(const VeriConstraint& target, VeriDataFlow* flow) override;
  OwnedConstraint EvaluateConstraint(VeriDataFlow* flow) override;
  void AddToSensList(Set& ids) override;

private:
  bool NamesType() const;
  OwnedValue EvaluateTyped(const VeriConstraint& own, VeriDataFlow* flow);
  VeriExpression* _type;
  VeriExpression* _operand;
};

class VeriEventExpression : public VeriExpression {
public:
  /// `edge`: VERI_POSEDGE, VERI_NEGEDGE, or 0 for a change.
  VeriEventExpression(unsigned edge, VeriExpression* operand, unsigned long linefile = 0);
  ~VeriEventExpression() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriEventExpression; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  unsigned IsEdge() const override { return _edge; }
  void Resolve(VeriScope* scope, const VeriEnv& env) override;
  VeriTypeInfo TypeInfer(VeriDataFlow*) override { return {}; }
  OwnedValue EvaluateIn(VeriDataFlow* flow, const VeriTypeInfo& type) override;
  void AddToSensList(Set& ids) override { _operand->AddToSensList(ids); }
  VeriExpression* Operand() const { return _operand; }
  /// `iff`: the event counts while this holds; null without. Taken over.
  VeriExpression* Condition() const { return _condition; }
  void SetCondition(VeriExpression* condition) { _condition = Adopt(condition); }
  /// The condition, which is the caller's then.
  VeriExpression* TakeCondition() {
    if (_condition) _condition->ClearParent();
    return std::exchange(_condition, nullptr);
  }

private:
  unsigned _edge;
  VeriExpression* _operand;
  VeriExpression* _condition = nullptr;
};

/// A connection of an instance: `.formal(actual)`, `.formal`, or in order.
class VeriPortConnect : public VeriExpression {
public:
  /// `formal` null: by order; it is not copied, see VeriIdRef. `is_implicit`: the form `.name`; with the formal "*" the
  /// form `.*`.
  VeriPortConnect(const char* formal, VeriExpression* connection, bool is_implicit, unsigned long linefile = 0);
  ~VeriPortConnect() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriPortConnect; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  void Resolve(VeriScope* scope, const VeriEnv& env) override;
  VeriTypeInfo TypeInfer(VeriDataFlow*) override { return {}; }
  OwnedValue EvaluateIn(VeriDataFlow*, const VeriTypeInfo&) override { return nullptr; }
  void AddToSensList(Set& ids) override;
  /// Null for a connection by order.
  const char* NamedFormal() const { return _formal; }
  /// Null when left open.
  VeriExpression* Connection() const { return _connection; }
  bool IsDotStar() const { return _is_implicit && Strings::compare(_formal, "*"); }
  bool IsImplicit() const { return _is_implicit; }

private:
  const char* _formal;
  VeriExpression* _connection;
  bool _is_implicit;
};

/// `$`, the open end of a range.
class VeriOpen : public VeriExpression {
public:
  using VeriExpression::VeriExpression;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriOpen; }
  void Accept(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  unsigned IsOpen() const override { return 1; }
  void Resolve(VeriScope*, const VeriEnv&) override {}
  VeriTypeInfo TypeInfer(VeriDataFlow*) override { return {}; }
  OwnedValue EvaluateIn(VeriDataFlow*, const VeriTypeInfo&) override;
};

/// Matching of a value against a pattern, and the patterns (IEEE 1800-2005 clause 8.4), by the token:
///   VERI_MATCHES     left matches right          VERI_TRIPLE_AND  left &&& right
///   VERI_TAGGED      tagged left right, the right may be null
///   VERI_DOT         .left                       VERI_DOT_STAR    .*
class VeriPattern : public VeriExpression {
public:
  VeriPattern(VeriExpression* left, VeriExpression* right, unsigned token, unsigned long linefile = 0);
  ~VeriPattern() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriPattern; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  unsigned OperType() const { return _token; }
  void Resolve(VeriScope* scope, const VeriEnv& env) override;
  VeriTypeInfo TypeInfer(VeriDataFlow*) override { return {}; }
  OwnedValue EvaluateIn(VeriDataFlow*, const VeriTypeInfo&) override;

private:
  VeriExpression* _left;
  VeriExpression* _right;
  unsigned _token;
};

/// An empty place in a list of ports.
class VeriPortOpen : public VeriExpression {
public:
  using VeriExpression::VeriExpression;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriPortOpen; }
  void Accept(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  void Resolve(VeriScope*, const VeriEnv&) override {}
  VeriTypeInfo TypeInfer(VeriDataFlow*) override { return {}; }
  OwnedValue EvaluateIn(VeriDataFlow*, const VeriTypeInfo&) override { return nullptr; }
};

/// A declaration in the list of ports of a head.
class VeriAnsiPortDecl : public VeriExpression {
public:
  explicit VeriAnsiPortDecl(VeriDataDecl* decl, unsigned long linefile = 0);
  ~VeriAnsiPortDecl() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriAnsiPortDecl; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  void Resolve(VeriScope* scope, const VeriEnv& env) override;
  VeriTypeInfo TypeInfer(VeriDataFlow*) override { return {}; }
  OwnedValue EvaluateIn(VeriDataFlow*, const VeriTypeInfo&) override { return nullptr; }
  VeriDataDecl* Decl() const { return _decl; }

private:
  VeriDataDecl* _decl;
};

// Literals.

class VeriLiteral : public VeriExpression {
public:
  /// The text is copied.
  VeriLiteral(const char* text, OwnedValue value, unsigned long linefile);
  /// The value is made of the text when it is first asked for: most literals of a source are never evaluated, and a
  /// value is much larger than its text.
  VeriLiteral(const char* text, unsigned long linefile);
  ~VeriLiteral() override;
  unsigned IsConst() const override { return 1; }
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  void Resolve(VeriScope*, const VeriEnv&) override {}
  VeriTypeInfo TypeInfer(VeriDataFlow*) override;
  OwnedValue EvaluateIn(VeriDataFlow*, const VeriTypeInfo& type) override;
  OwnedValue EvaluateFor(const VeriConstraint& target, VeriDataFlow* flow) override;
  const VeriValue& Value() const;
  const char* Text() const { return _text; }

protected:
  /// What the text stands for; null when that cannot be told, which was reported when it was read.
  virtual OwnedValue MakeValue() const;

private:
  const char* _text;
  mutable OwnedValue _value;
};

/// Numbers without a base. Those above the largest int are negative, as they are when a variable takes them.
class VeriIntLiteral : public VeriLiteral {
public:
  using VeriLiteral::VeriLiteral;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriIntLiteral; }
  void Accept(VeriVisitor& visitor) override;

protected:
  OwnedValue MakeValue() const override;
};

#define VERI_LITERAL(name)                                                                                             \
  class name : public VeriLiteral {                                                                                    \
  public:                                                                                                              \
    using VeriLiteral::VeriLiteral;                                                                                    \
    VERI_CLASS_ID GetClassId() const override { return ID_##name; }                                                    \
    void Accept(VeriVisitor& visitor) override;                                                                        \
  };
VERI_LITERAL(VeriRealLiteral)
/// Based numbers and strings.
VERI_LITERAL(VeriVectorLiteral)
#undef VERI_LITERAL

/// A number with a unit of time; the value is the number.
class VeriTimeLiteral : public VeriLiteral {
public:
  using VeriLiteral::VeriLiteral;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriTimeLiteral; }
  void Accept(VeriVisitor& visitor) override;
  /// fs 1, ps 2, ns 3, us 4, ms 5, s 6, anything else 7.
  unsigned Unit() const;
};

// Names.

class VeriName : public VeriExpression {
public:
  using VeriExpression::VeriExpression;
  const VeriName* AsName() const override { return this; }
  /// The identifier as it was declared; null before Resolve and for what elaboration has to find.
  virtual VeriIdDef* GetId() const = 0;
  /// The identifier in the present round of a generate construct; null, with a message, when it cannot be found.
  virtual VeriIdDef* EvaluateId() = 0;
  /// The scope that the name leads into, for names behind it; null when it leads nowhere.
  virtual VeriScope* EvaluateScope() = 0;
  virtual unsigned IsHier() const { return 0; }
  /// Another node of the same text, bound to nothing; null for a name with indices.
  virtual VeriName* Copy() const { return nullptr; }
  /// What a process has assigned so far to what the name means, by either kind of assignment: the value that an
  /// assignment to a part of it starts from. Null after an error.
  virtual OwnedValue CurrentValue(VeriDataFlow* flow);
  /// Looks the name up without a message when there is nothing.
  VeriTypeInfo TypeInfer(VeriDataFlow* flow) override;
  void AddToSensList(Set& ids) override;

protected:
  /// Notes the use on the identifier.
  void AnalyzeReference(VeriIdDef* id, const VeriEnv& env) const;
};

/// A simple name, or a hierarchical one: what can be an implicit net or a module's name.
class VeriFullName : public VeriName {
public:
  using VeriName::VeriName;
};

class VeriIdRef : public VeriFullName {
public:
  /// The name is not copied: it is a text of the scanner, or of VeriLex::Intern.
  explicit VeriIdRef(const char* name, unsigned long linefile = 0);
  VERI_CLASS_ID GetClassId() const override { return ID_VeriIdRef; }
  void Accept(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  const char* GetName() const override { return _name; }
  VeriName* Copy() const override { return new VeriIdRef(_name, Linefile()); }
  void Resolve(VeriScope* scope, const VeriEnv& env) override;
  VeriIdDef* GetId() const override { return _id; }
  VeriIdDef* EvaluateId() override;
  VeriScope* EvaluateScope() override;
  OwnedValue EvaluateIn(VeriDataFlow* flow, const VeriTypeInfo& type) override;
  OwnedValue EvaluateFor(const VeriConstraint& target, VeriDataFlow* flow) override;
  OwnedValue EvaluateState(const VeriVariable* target, VeriDataFlow* flow) override;
  /// The code that the variable of this name holds; null when it is not encoded by its states.
  OwnedValue EvaluateCode(VeriDataFlow* flow);
  OwnedConstraint EvaluateConstraint(VeriDataFlow* flow) override;
  void Assign(OwnedValue value, VeriDataFlow* flow, bool non_blocking) override;
  OwnedValue EvaluateNets() override;
  void SetId(VeriIdDef* id) { _id = id; }

private:
  const char* _name;
  VeriIdDef* _id = nullptr;
};

/// package::name.
class VeriScopedIdRef : public VeriFullName {
public:
  VeriScopedIdRef(const char* package, const char* name, unsigned long linefile = 0);
  VERI_CLASS_ID GetClassId() const override { return ID_VeriScopedIdRef; }
  void Accept(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  void Resolve(VeriScope* scope, const VeriEnv& env) override;
  VeriIdDef* GetId() const override { return _id; }
  VeriName* Copy() const override { return new VeriScopedIdRef(_package.c_str(), _name.c_str(), Linefile()); }
  VeriIdDef* EvaluateId() override { return _id ? _id->Current() : nullptr; }
  VeriScope* EvaluateScope() override { return nullptr; }
  OwnedValue EvaluateIn(VeriDataFlow* flow, const VeriTypeInfo& type) override;
  OwnedConstraint EvaluateConstraint(VeriDataFlow* flow) override;
  const std::string& Package() const { return _package; }
  const std::string& Suffix() const { return _name; }

private:
  std::string _package;
  std::string _name;
  VeriIdDef* _id = nullptr;
};

class VeriEnumTypeDef;

/// Methods of enumerations.
enum veri_method { METHOD_NONE, METHOD_FIRST, METHOD_LAST, METHOD_NEXT, METHOD_PREV, METHOD_NUM, METHOD_NAME };

/// prefix.suffix: a member of a struct, a method of an enumeration, or an object in a block, found at elaboration where
/// the prefix is generated.
class VeriSelectedName : public VeriFullName {
public:
  VeriSelectedName(VeriName* prefix, const char* suffix, unsigned long linefile = 0);
  ~VeriSelectedName() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriSelectedName; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  unsigned IsHier() const override { return 1; }
  VeriName* Copy() const override;
  void Resolve(VeriScope* scope, const VeriEnv& env) override;
  VeriIdDef* GetId() const override { return _id; }
  VeriIdDef* EvaluateId() override;
  VeriScope* EvaluateScope() override;
  OwnedValue EvaluateIn(VeriDataFlow* flow, const VeriTypeInfo& type) override;
  OwnedConstraint EvaluateConstraint(VeriDataFlow* flow) override;
  void Assign(OwnedValue value, VeriDataFlow* flow, bool non_blocking) override;
  OwnedValue EvaluateNets() override;
  VeriTypeInfo TypeInfer(VeriDataFlow* flow) override;
  void AddToSensList(Set& ids) override;
  VeriName* GetPrefix() const { return _prefix; }
  const std::string& GetSuffix() const { return _suffix; }
  /// The prefix is a struct whose member this is, as far as resolve knows.
  bool IsStructMember() const { return _is_member; }
  /// The same in elaboration, which finds the objects of rounds and interfaces.
  bool EvaluateIsMember();
  OwnedValue CurrentValue(VeriDataFlow* flow) override;
  /// The method that the suffix names, known after Resolve; METHOD_NONE for most.
  veri_method GetMethodType() const { return _method; }
  /// The result of the method with these arguments, which may be null.
  OwnedValue EvaluateMethod(const VeriExpressions* args, VeriDataFlow* flow) const;
  /// The type of the result; null for a text.
  OwnedConstraint MethodConstraint() const;

private:
  int EvaluateSteps(const VeriExpressions* args) const;
  OwnedValue EvaluateNeighbour(const std::vector<VeriValue*>& members, int steps, VeriDataFlow* flow) const;
  OwnedValue EvaluateMemberName(const std::vector<VeriValue*>& members, VeriDataFlow* flow) const;
  bool BindMethod(const VeriIdDef* prefix, const VeriEnv& env);
  void ResolvePrefix(VeriScope* scope, const VeriEnv& env);
  void BindIn(const VeriScope* scope, const VeriEnv& env);
  void AnalyzeInGenerated(const VeriIdDef* block, const VeriEnv& env) const;
  void ResolveInInterface(const VeriInterfaceTypeDef& type, const VeriEnv& env) const;
  void ReportBrokenPath(bool prefix_is_found) const;
  int MemberPosition(const VeriConstraint& prefix) const;
  VeriName* _prefix;
  std::string _suffix;
  VeriIdDef* _id = nullptr;
  bool _is_member = false;
  veri_method _method = METHOD_NONE;
  const VeriEnumTypeDef* _enum = nullptr; // of the method
};

class VeriIndexedName : public VeriName {
public:
  VeriIndexedName(VeriName* prefix, unsigned long linefile = 0);
  ~VeriIndexedName() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriIndexedName; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  void AddIndex(VeriExpression* index);
  void Resolve(VeriScope* scope, const VeriEnv& env) override;
  VeriIdDef* GetId() const override { return _prefix->GetId(); }
  VeriIdDef* EvaluateId() override { return _prefix->EvaluateId(); }
  VeriScope* EvaluateScope() override;
  VeriTypeInfo TypeInfer(VeriDataFlow* flow) override;
  OwnedValue EvaluateIn(VeriDataFlow* flow, const VeriTypeInfo& type) override;
  OwnedValue EvaluateFor(const VeriConstraint& target, VeriDataFlow* flow) override;
  OwnedConstraint EvaluateConstraint(VeriDataFlow* flow) override;
  void Assign(OwnedValue value, VeriDataFlow* flow, bool non_blocking) override;
  OwnedValue EvaluateNets() override;
  void AddToSensList(Set& ids) override;
  OwnedValue CurrentValue(VeriDataFlow* flow) override;
  VeriName* GetPrefix() const { return _prefix; }
  const VeriExpressions& Indices() const { return _indices; }

private:
  bool IsPathElement() const;
  void CheckIndices(const VeriIdDef* id, const VeriEnv& env) const;
  bool EvaluateIndices(VeriDataFlow* flow, VeriIndices& out);
  OwnedValue Read(VeriDataFlow* flow);
  VeriName* _prefix;
  VeriExpressions _indices;
};

// Types.

class VeriTypeDef : public VeriExpression {
public:
  using VeriExpression::VeriExpression;
  unsigned IsTypeName() const override { return 1; }
  /// The type in this run; null after an error.
  virtual OwnedConstraint CreateConstraint() const = 0;
  /// The packed dimensions, left to right; null without.
  virtual const VeriNodes<VeriRange>* Ranges() const { return nullptr; }
  /// VERI_SIGNED, VERI_UNSIGNED or 0.
  virtual unsigned Signing() const { return 0; }
  /// The keyword; 0 for an implicit type and for a type by name.
  virtual unsigned Type() const { return 0; }
  /// The declaration names no type.
  virtual unsigned IsImplicit() const { return 0; }
  VeriTypeInfo TypeInfer(VeriDataFlow* flow) override;
  OwnedValue EvaluateIn(VeriDataFlow*, const VeriTypeInfo&) override { return nullptr; }
  OwnedConstraint EvaluateConstraint(VeriDataFlow*) override { return CreateConstraint(); }

protected:
  static OwnedConstraint AddPackedRanges(OwnedConstraint element, const VeriNodes<VeriRange>* ranges, bool is_signed,
                                         const VeriTreeNode* from);
};

/// A type of the language by its keyword, or with the keyword 0 the implicit one.
class VeriPrimitiveTypeDef : public VeriTypeDef {
public:
  VeriPrimitiveTypeDef(unsigned token, unsigned signing, VeriNodes<VeriRange>* ranges, unsigned long linefile = 0);
  ~VeriPrimitiveTypeDef() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriPrimitiveTypeDef; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  void Resolve(VeriScope* scope, const VeriEnv& env) override;
  OwnedConstraint CreateConstraint() const override;
  const VeriNodes<VeriRange>* Ranges() const override { return _ranges; }
  unsigned Signing() const override { return _signing; }
  unsigned Type() const override { return _token; }
  unsigned IsImplicit() const override { return !_token; }

private:
  unsigned _token;
  unsigned _signing;
  VeriNodes<VeriRange>* _ranges;
};

/// What a declaration that names no type says: a sign, packed dimensions, or both.
class VeriImplicitTypeDef : public VeriPrimitiveTypeDef {
public:
  VeriImplicitTypeDef(unsigned signing, VeriNodes<VeriRange>* ranges, unsigned long linefile = 0)
      : VeriPrimitiveTypeDef(0, signing, ranges, linefile) {}
  VERI_CLASS_ID GetClassId() const override { return ID_VeriImplicitTypeDef; }
  void Accept(VeriVisitor& visitor) override;
};

/// Packed dimensions of a type that has none of its own: of a struct, union or enumeration.
class VeriArrayTypeDef : public VeriTypeDef {
public:
  VeriArrayTypeDef(VeriTypeDef* element, VeriNodes<VeriRange>* ranges, unsigned long linefile = 0);
  ~VeriArrayTypeDef() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriArrayTypeDef; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  void Resolve(VeriScope* scope, const VeriEnv& env) override;
  OwnedConstraint CreateConstraint() const override;
  const VeriNodes<VeriRange>* Ranges() const override { return _ranges; }
  unsigned Signing() const override { return _element->Signing(); }
  unsigned Type() const override { return _element->Type(); }
  VeriTypeDef* Element() const { return _element; }

private:
  VeriTypeDef* _element;
  VeriNodes<VeriRange>* _ranges;
};

/// A type by its name, with packed dimensions of its own.
class VeriTypeName : public VeriTypeDef {
public:
  VeriTypeName(VeriName* name, VeriNodes<VeriRange>* ranges, unsigned long linefile = 0);
  ~VeriTypeName() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriTypeName; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  void Resolve(VeriScope* scope, const VeriEnv& env) override;
  OwnedConstraint CreateConstraint() const override;
  const VeriNodes<VeriRange>* Ranges() const override { return _ranges; }
  VeriName* Name() const { return _name; }

private:
  VeriName* _name;
  VeriNodes<VeriRange>* _ranges;
};

class VeriEnumElementDecl;

class VeriEnumTypeDef : public VeriTypeDef {
public:
  /// A null base is int.
  VeriEnumTypeDef(VeriTypeDef* base, VeriNodes<VeriIdDecl>* elements, unsigned long linefile = 0);
  ~VeriEnumTypeDef() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriEnumTypeDef; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  void Resolve(VeriScope* scope, const VeriEnv& env) override;
  OwnedConstraint CreateConstraint() const override;
  /// Gives the members their values in this run.
  void EvaluateMembers() const;
  /// The values of the members in order, borrowed.
  std::vector<VeriValue*> MemberValues() const;

private:
  OwnedConstraint BaseConstraint() const;
  VeriTypeDef* _base;
  VeriNodes<VeriIdDecl>* _elements;
};

class VeriStructUnionTypeDef : public VeriTypeDef {
public:
  VeriStructUnionTypeDef(unsigned token, bool packed, unsigned signing, VeriNodes<VeriDataDecl>* members,
                         unsigned long linefile = 0);
  ~VeriStructUnionTypeDef() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriStructUnionTypeDef; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  void Resolve(VeriScope* scope, const VeriEnv& env) override;
  OwnedConstraint CreateConstraint() const override;
  unsigned Signing() const override { return _signing; }
  unsigned Type() const override { return _token; }
  void SetIsTagged() { _is_tagged = true; }
  /// The member's identifier; null when there is none of this name.
  VeriIdDef* FindMember(const char* name) const;

private:
  unsigned _token;
  bool _packed;
  bool _is_tagged = false;
  unsigned _signing;
  VeriNodes<VeriDataDecl>* _members;
};

/// The type of an interface port: the interface, or any for `interface`, and the modport that limits the access.
class VeriInterfaceTypeDef : public VeriTypeDef {
public:
  /// A null name stands for any interface; a null modport for none.
  VeriInterfaceTypeDef(VeriName* name, const char* modport, unsigned long linefile = 0);
  ~VeriInterfaceTypeDef() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriInterfaceTypeDef; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  void Resolve(VeriScope* scope, const VeriEnv& env) override;
  OwnedConstraint CreateConstraint() const override { return nullptr; }
  unsigned Type() const override { return VERI_INTERFACE; }
  VeriName* Name() const { return _name; }
  /// Null without.
  const char* ModportName() const { return _modport.empty() ? nullptr : _modport.c_str(); }
  /// Known after Resolve; null for a generic port and for an unknown interface.
  VeriModule* GetInterface() const;
  VeriModport* GetModport() const;

private:
  VeriName* _name;
  std::string _modport;
};

/// The type of an object: its packed type with the unpacked dimensions around it. A null type is an implicit scalar.
OwnedConstraint veri_object_constraint(const VeriTypeDef* type, const VeriNodes<VeriRange>* unpacked,
                                       const VeriTreeNode* from);

#endif
