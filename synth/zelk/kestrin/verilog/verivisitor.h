// VeriVisitor: one operation per class of the tree. The default visits the children, so that a derived visitor names
// only the classes that it cares for.
#ifndef KESTRIN_VERILOG_VERIVISITOR_H
#define KESTRIN_VERILOG_VERIVISITOR_H

#define VERI_CLASS(name, base) class name;
#include "verilog/veri_classes.def"
class VeriTreeNode;

class VeriVisitor {
public:
  virtual ~VeriVisitor() = default;
  /// Null is allowed.
  void TraverseNode(VeriTreeNode* node);
#define VERI_CLASS(name, base) virtual void Visit(name& node);
#include "verilog/veri_classes.def"
};

#endif
