// Small helpers of the tree's source files: children of nodes, visited and printed as lists.
#ifndef KESTRIN_VERILOG_VERIPRINT_UTIL_H
#define KESTRIN_VERILOG_VERIPRINT_UTIL_H

#include <ostream>
#include <utility>

#include "verilog/veritreenode.h"
#include "verilog/verivisitor.h"

inline void veri_visit(VeriVisitor& visitor, VeriTreeNode* node) { visitor.TraverseNode(node); }

template <class T> void veri_visit(VeriVisitor& visitor, const VeriNodes<T>* nodes) {
  if (!nodes) return;
  for (T* node : *nodes) visitor.TraverseNode(node);
}

/// The nodes with a separator between them; null nodes stand for empty places.
template <class T> void veri_print_list(std::ostream& out, const VeriNodes<T>* nodes, const char* separator = ", ") {
  if (!nodes) return;
  const char* before = "";
  for (const T* node : *nodes) {
    out << before;
    before = separator;
    if (node) node->PrettyPrint(out, 0);
  }
}

/// Values, and ranges of values, with commas between them.
template <class T> void veri_print_values(std::ostream& out, const VeriNodes<T>& values) {
  const char* before = "";
  for (const T* value : values) {
    out << std::exchange(before, ", ");
    const bool is_range = value->AsRange() != nullptr;
    if (is_range) out << '[';
    value->PrettyPrint(out, 0);
    if (is_range) out << ']';
  }
}

/// The nodes one after the other, each on lines of its own.
template <class T> void veri_print_lines(std::ostream& out, const VeriNodes<T>* nodes, unsigned level) {
  if (!nodes) return;
  for (const T* node : *nodes)
    if (node) node->PrettyPrint(out, level);
}

#endif
