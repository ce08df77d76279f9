#include "verilog/verivisitor.h"

#include "verilog/veriassertion.h"
#include "verilog/vericonfiguration.h"
#include "verilog/verilibrary.h"
#include "verilog/verispecify.h"
#include "verilog/veristatement.h"

void VeriVisitor::TraverseNode(VeriTreeNode* node) {
  if (node) node->Accept(*this);
}

#define VERI_CLASS(name, base)                                                                                         \
  void name::Accept(VeriVisitor& visitor) { visitor.Visit(*this); }                                                    \
  void VeriVisitor::Visit(name& node) { node.VisitChildren(*this); }
#include "verilog/veri_classes.def"
