// Specify blocks: the timing of the paths through a module and the checks of its inputs. They have no effect in
// hardware and are kept as they were read.
#ifndef KESTRIN_VERILOG_VERISPECIFY_H
#define KESTRIN_VERILOG_VERISPECIFY_H

#include <memory>
#include <string>

#include "verilog/verimoduleitem.h"

class VeriSpecifyBlock : public VeriModuleItem {
public:
  /// The scope has the block's parameters.
  VeriSpecifyBlock(VeriModuleItems* items, std::unique_ptr<VeriScope> scope, unsigned long linefile = 0);
  ~VeriSpecifyBlock() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriSpecifyBlock; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  VeriScope* GetScope() const override { return _scope.get(); }
  void Resolve(VeriScope* scope) override;

private:
  VeriModuleItems* _items;
  std::unique_ptr<VeriScope> _scope;
};

/// The terminals of a path, in parentheses: `(posedge clk => (q +: d))`. Without an arrow: the terminals of a
/// declaration like `showcancelled q`.
class VeriPath : public VeriTreeNode {
public:
  /// Tokens are 0 without. `polarity`: + or - in front of the arrow; `data_polarity`: of `+:` and `-:`, or VERI_COLON,
  /// in front of the data source, which is null without.
  struct Tokens {
    unsigned edge = 0;
    unsigned polarity = 0;
    unsigned arrow = 0;
    unsigned data_polarity = 0;
  };
  VeriPath(const Tokens& tokens, VeriExpressions* inputs, VeriExpressions* outputs, VeriExpression* data_source,
           unsigned long linefile = 0);
  ~VeriPath() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriPath; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  void Resolve(VeriScope* scope);

private:
  Tokens _tokens;
  VeriExpressions* _inputs;
  VeriExpressions* _outputs; // null without an arrow
  VeriExpression* _data_source;
};

/// A path with its delays, or a declaration of how pulses pass through paths.
class VeriPathDecl : public VeriModuleItem {
public:
  /// `token`: VERI_IF with a condition, VERI_IFNONE, 0 for a plain path; or the word of a pulse declaration, with null
  /// delays.
  VeriPathDecl(unsigned token, VeriExpression* condition, VeriPath* path, VeriExpressions* delays,
               unsigned long linefile = 0);
  ~VeriPathDecl() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriPathDecl; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  void Resolve(VeriScope* scope) override;

private:
  unsigned _token;
  VeriExpression* _condition;
  VeriPath* _path;
  VeriExpressions* _delays;
};

/// $setup, $hold and the like.
class VeriSystemTimingCheck : public VeriModuleItem {
public:
  /// The name has its `$`; an argument left out is a VeriPortOpen.
  VeriSystemTimingCheck(const char* name, VeriExpressions* args, unsigned long linefile = 0);
  ~VeriSystemTimingCheck() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriSystemTimingCheck; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  void Resolve(VeriScope* scope) override;

private:
  std::string _name;
  VeriExpressions* _args;
};

/// An event of a timing check: `edge[01, 10] clk &&& enable`.
class VeriTimingCheckEvent : public VeriExpression {
public:
  /// `edge`: VERI_POSEDGE, VERI_NEGEDGE, VERI_EDGE or 0. `descriptors`: pairs of letters behind `edge`; null without.
  VeriTimingCheckEvent(unsigned edge, const char* descriptors, VeriExpression* terminal, VeriExpression* condition,
                       unsigned long linefile = 0);
  ~VeriTimingCheckEvent() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriTimingCheckEvent; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  unsigned IsEdge() const override { return _edge; }
  void Resolve(VeriScope* scope, const VeriEnv& env) override;
  VeriTypeInfo TypeInfer(VeriDataFlow*) override { return {}; }
  OwnedValue EvaluateIn(VeriDataFlow*, const VeriTypeInfo&) override { return nullptr; }

private:
  unsigned _edge;
  std::string _descriptors;
  VeriExpression* _terminal;
  VeriExpression* _condition;
};

#endif
