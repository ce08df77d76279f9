// Single nets during elaboration: logic that folds the four constant nets at once.
#ifndef KESTRIN_VERILOG_VERINETS_H
#define KESTRIN_VERILOG_VERINETS_H

#include "database/netlist.h"
#include "verilog/veritreenode.h"
#include "verilog/verivalue.h"

inline unsigned long veri_top_linefile() {
  const VeriTreeNode* node = VeriTreeNode::TopNode();
  return node ? node->Linefile() : 0;
}
inline Net* veri_not(Net* a) {
  return veri_canonical_net(VeriNode::CurrentNetlist()->OptimizedInv(a, veri_top_linefile()));
}
inline Net* veri_and(Net* a, Net* b) {
  return veri_canonical_net(VeriNode::CurrentNetlist()->OptimizedAnd(a, b, veri_top_linefile()));
}
inline Net* veri_or(Net* a, Net* b) {
  return veri_canonical_net(VeriNode::CurrentNetlist()->OptimizedOr(a, b, veri_top_linefile()));
}

#endif
