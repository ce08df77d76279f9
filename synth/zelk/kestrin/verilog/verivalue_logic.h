// VeriLogic: gates on nets of which any may be one of the four constant nets. What constants decide needs no gate.
#ifndef KESTRIN_VERILOG_VERIVALUE_LOGIC_H
#define KESTRIN_VERILOG_VERIVALUE_LOGIC_H

#include "containers/views.h"
#include "database/primtype.h"

class Net;
class Netlist;
class VeriTreeNode;

/// Builds in the netlist under construction, at the location of a node. An x that meets logic is don't care.
class VeriLogic {
public:
  explicit VeriLogic(const VeriTreeNode* from);

  Net* Inv(Net* a) const;
  Net* And(Net* a, Net* b) const;
  Net* Or(Net* a, Net* b) const;
  Net* Xor(Net* a, Net* b) const;
  Net* Xnor(Net* a, Net* b) const;
  /// in1 where the control is 1. A z is a value like any other; an x on an input is not.
  Net* Mux(Net* in0, Net* in1, Net* control) const;
  /// PRIM_AND, PRIM_OR or PRIM_XOR over all nets.
  Net* Reduce(const Array& nets, prim_type_enum gate) const;

  Net* NewNet() const;
  void NewNets(ArrayOf<Net>& nets, unsigned count) const;
  Netlist* netlist() const;
  unsigned long linefile() const { return _linefile; }

private:
  unsigned long _linefile;
};

#endif
