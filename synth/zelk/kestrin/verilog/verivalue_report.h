// Where messages about values go, for the files of values and types.
#ifndef KESTRIN_VERILOG_VERIVALUE_REPORT_H
#define KESTRIN_VERILOG_VERIVALUE_REPORT_H

class VeriTreeNode;

/// The node to report at: the given one, else the one on top of the stack, else one without location.
const VeriTreeNode& veri_at(const VeriTreeNode* from);
/// Its location, which new logic gets.
unsigned long veri_linefile(const VeriTreeNode* from);

#endif
