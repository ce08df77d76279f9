// Expansion of operators into gates, and the trees and sums of products that conditions are made of.
#include <algorithm>
#include <vector>

#include "containers/views.h"
#include "database/instance.h"
#include "database/net.h"
#include "database/operators.h"
#include "util/services.h"

void Operator::SwapBits(Net** nets, unsigned n) { std::reverse(nets, nets + n); }

namespace {
/// The input of a buffer that drives the net, else the net.
Net* look_through_buffer(Net* net) {
  Net* input = net->BufNet();
  return input ? input : net;
}

bool is_tree_node(const Net* net, prim_type_enum type) {
  return net->DriverType() == type && !net->Linefile() && net->NumOfFanouts() <= 1;
}

/// The gate of a word: the net itself for one bit.
Net* reduce(Netlist* netlist, const Array& nets, bool is_and, unsigned long linefile) {
  if (nets.Size() == 1) return FromWord<Net*>(nets.At(0));
  Net* result = nullptr;
  if (is_and)
    netlist->ReduceAnd(&nets, &result, linefile);
  else
    netlist->ReduceOr(&nets, &result, linefile);
  return result;
}
} // namespace

void Operator::CollectTreeInputs(Net* net, prim_type_enum type, Array& out) {
  std::vector<Net*> pending{net};
  while (!pending.empty()) {
    Net* next = pending.back();
    pending.pop_back();
    if (!next) continue;
    if (!is_tree_node(next, type)) {
      out.InsertLast(next);
      continue;
    }
    Instance* gate = next->Driver();
    pending.push_back(gate->GetInput2());
    pending.push_back(gate->GetInput1());
  }
}

Net* Operator::BuildSOP(Netlist* netlist, const Array* terms, const Set* leave_out, unsigned long linefile) {
  ArrayOf<Net> products;
  for (Net* term : ItemsOf<Net*>(terms)) {
    Array inputs;
    CollectTreeInputs(look_through_buffer(term), PRIM_AND, inputs);
    KESTRIN_ASSERT(inputs.Size() > 0);
    ArrayOf<Net> kept;
    for (Net* input : ItemsOf<Net*>(&inputs))
      if (!leave_out || !leave_out->Contains(input)) kept.InsertLast(input);
    products.InsertLast(kept.Size() ? reduce(netlist, kept, true, linefile) : netlist->Pwr(linefile));
  }
  if (!products.Size()) return nullptr;
  return reduce(netlist, products, false, linefile);
}

Set* Operator::FindCommonPtermInputs(const Array* terms) {
  auto* common = new Set;
  bool is_first = true;
  for (Net* term : ItemsOf<Net*>(terms)) {
    Array inputs;
    CollectTreeInputs(look_through_buffer(term), PRIM_AND, inputs);
    Set present;
    for (Net* input : ItemsOf<Net*>(&inputs)) (is_first ? *common : present).Insert(input);
    if (!is_first)
      for (Net* net : KeysOf<Net*>(common))
        if (!present.Contains(net)) common->Remove(net);
    is_first = false;
  }
  kestrin_debug("(RS) - SOP with %d terms has %d common input(s)", static_cast<int>(terms->Size()),
                static_cast<int>(common->Size()));
  return common;
}

Net* Operator::BuildBinaryTree(Netlist* netlist, Net** nets, unsigned n, prim_type_enum type) {
  KESTRIN_ASSERT(type == PRIM_AND || type == PRIM_OR || type == PRIM_XOR);
  if (n == 0) return nullptr;
  if (n == 1) return nets[0];
  Net* low = BuildBinaryTree(netlist, nets, n / 2, type);
  Net* high = BuildBinaryTree(netlist, nets + n / 2, n - n / 2, type);
  if (type == PRIM_AND) return netlist->And(low, high, 0);
  return type == PRIM_OR ? netlist->Or(low, high, 0) : netlist->Xor(low, high, 0);
}

Net* Operator::BuildMuxTree(Netlist* netlist, Net** sel, unsigned n, Net** data) {
  if (n == 0) return data[0];
  Net* low = BuildMuxTree(netlist, sel, n - 1, data);
  Net* high = BuildMuxTree(netlist, sel, n - 1, data + (1U << (n - 1)));
  return netlist->Mux(low, high, sel[n - 1], 0);
}

Net* Operator::BuildRippleAdder(Netlist* netlist, Net** a, Net** b, Net** o, unsigned n, Net* carry) {
  for (unsigned i = 0; i < n; i++) {
    Net* next = nullptr;
    o[i] = netlist->Fadd(a[i], b[i], carry, &next, 0);
    carry = next;
  }
  return carry;
}

Net* Operator::BuildEqual(Netlist* netlist, Net** a, Net** b, unsigned n) {
  for (unsigned i = 0; i < n; i++) a[i] = netlist->Xor(a[i], b[i], 0);
  Net* differs = BuildBinaryTree(netlist, a, n, PRIM_OR);
  return differs ? netlist->Inv(differs, 0) : nullptr;
}

Net* Operator::BuildSmallerThan(Netlist* netlist, Net** a, Net** b, unsigned n, unsigned is_signed, Net* carry) {
  for (unsigned i = 0; i < n; i++) {
    Net* differs = netlist->Xor(a[i], b[i], 0);
    // A sign bit counts the other way round: of two different ones, the set one belongs to the smaller number.
    if (is_signed && i + 1 == n) b[i] = netlist->Inv(b[i], 0);
    carry = netlist->Mux(carry, b[i], differs, 0);
  }
  return carry;
}

Net* Operator::BuildSelector(Netlist* netlist, Net** sel, Net** data, unsigned n) {
  std::vector<Net*> products(n);
  for (unsigned i = 0; i < n; i++) products[i] = netlist->And(sel[i], data[i], 0);
  return BuildBinaryTree(netlist, products.data(), n, PRIM_OR);
}

Net* Operator::BuildPrioSelector(Netlist* netlist, Net* default_value, Net** sel, Net** data, unsigned n) {
  Net* result = default_value;
  for (unsigned i = 0; i < n; i++) result = netlist->Mux(result, data[i], sel[i], 0);
  return result;
}

void Operator::BuildShiftRight(Netlist* netlist, Net** bits, unsigned n, Net** amount, unsigned m, Net* fill) {
  for (unsigned j = 0; j < m; j++) {
    // A stride that leaves the word moves the fill into all bits.
    unsigned stride = j < 31 ? std::min(1U << j, n) : n;
    for (unsigned i = 0; i < n; i++)
      bits[i] = netlist->Mux(bits[i], i + stride < n ? bits[i + stride] : fill, amount[j], 0);
  }
}

void Operator::BuildRotateRight(Netlist* netlist, Net** bits, unsigned n, Net** amount, unsigned m) {
  if (n == 0) return;
  unsigned stride = 1 % n;
  for (unsigned j = 0; j < m; j++) {
    std::vector<Net*> former(bits, bits + n);
    for (unsigned i = 0; i < n; i++) bits[i] = netlist->Mux(former[i], former[(i + stride) % n], amount[j], 0);
    stride = static_cast<unsigned>(2ULL * stride % n);
  }
}

void Operator::BuildDecoder(Netlist* netlist, Net** in, unsigned n, Net** out) {
  out[0] = netlist->Pwr(0);
  for (unsigned i = 0; i < n; i++) {
    Net* is_zero = netlist->Inv(in[i], 0);
    unsigned half = 1U << i;
    for (unsigned value = 0; value < half; value++) {
      out[value + half] = netlist->And(out[value], in[i], 0);
      out[value] = netlist->And(out[value], is_zero, 0);
    }
  }
}

void Operator::Extend(Net** nets, Net* fill, unsigned from, unsigned to) {
  for (unsigned i = from; i < to; i++) nets[i] = fill;
}

namespace {
/// A partial product of the multiplier. Of signed operands the products of one sign bit are subtracted, which Baugh and
/// Wooley turn into additions: sign & ~bit, the signs themselves at the weight of the sign, and in the corner, where
/// both signs meet, the complement of their disjunction with constant ones from its weight on.
Net* partial_product(Netlist* netlist, const std::vector<Net*>& a, const std::vector<Net*>& b, unsigned i, unsigned j,
                     unsigned is_signed) {
  unsigned top = static_cast<unsigned>(a.size()) - 1;
  if (is_signed && i == top && j == top) return netlist->Inv(netlist->Or(a[i], b[j], 0), 0);
  if (is_signed && i == top) return netlist->And(a[i], netlist->Inv(b[j], 0), 0);
  if (is_signed && j == top) return netlist->And(netlist->Inv(a[i], 0), b[j], 0);
  return netlist->And(a[i], b[j], 0);
}
} // namespace

void Operator::BuildMultiplier(Netlist* netlist, Net** a, unsigned n, Net** b, unsigned m, Net** o, unsigned size,
                               unsigned is_signed, Net* zero) {
  KESTRIN_ASSERT(size == n + m);
  // The signed scheme needs a row besides the one of the sign.
  unsigned rows = std::max({n, m, is_signed ? 2U : 1U});
  std::vector<Net*> left(a, a + n);
  std::vector<Net*> right(b, b + m);
  left.resize(rows, is_signed ? a[n - 1] : zero);
  right.resize(rows, is_signed ? b[m - 1] : zero);
  unsigned top = rows - 1;
  Net* one = is_signed ? netlist->Pwr(0) : nullptr;

  // Element i of row j has the weight i + j; sum[i + 1] and carry[i] of the row before have it too.
  std::vector<Net*> sum(rows + 1, zero);
  std::vector<Net*> carry(rows, zero);
  for (unsigned i = 0; i < rows; i++) sum[i] = partial_product(netlist, left, right, i, 0, is_signed);
  if (is_signed) carry[top - 1] = left[top];
  o[0] = sum[0];
  for (unsigned j = 1; j < rows; j++) {
    if (is_signed && j == top) sum[rows] = one;
    for (unsigned i = 0; i < rows; i++) {
      Net* product = partial_product(netlist, left, right, i, j, is_signed);
      Net* next = nullptr;
      sum[i] = netlist->Fadd(product, sum[i + 1], carry[i], &next, 0);
      carry[i] = next;
    }
    sum[rows] = zero;
    if (j < size) o[j] = sum[0];
  }

  // The sign of the second operand finds no room within the rows; it is added below the final adder and carried in.
  Net* carry_in = zero;
  if (is_signed) {
    Net* low = netlist->Fadd(sum[0], right[top], zero, &carry_in, 0);
    if (top < size) o[top] = low;
    sum[rows] = one;
  }
  if (size > rows) BuildRippleAdder(netlist, sum.data() + 1, carry.data(), o + rows, size - rows, carry_in);
}
