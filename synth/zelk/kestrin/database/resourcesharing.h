// ResourceSharing: the graph of operators that are never used at the same time, and the merging of them. The netlist
// owns it and makes it at the first edge; edges leave with their instances.
#ifndef KESTRIN_DATABASE_RESOURCESHARING_H
#define KESTRIN_DATABASE_RESOURCESHARING_H

#include "containers/heap.h"
#include "containers/map.h"

class Array;
class Instance;
class Set;

/// Two operators that may become one, weighted by what that costs. The lowest weight is on top of a heap.
class CEdge : public HeapNode {
public:
  CEdge(Instance* first, Instance* second, int weight, int index)
      : _first(first), _second(second), _weight(weight), _idx(index) {}

  int Cmp(HeapNode* other) override { return _weight < static_cast<CEdge*>(other)->_weight; }
  int Index() const override { return _idx; }
  void SetIndex(int index) override { _idx = index; }
  unsigned long MemUsage() const override { return sizeof(*this); }
  Instance* First() const { return _first; }
  Instance* Second() const { return _second; }
  int Weight() const { return _weight; }
  void SetWeight(int weight) { _weight = weight; }

private:
  Instance* _first;
  Instance* _second;
  int _weight;
  int _idx; // -1 outside of the heap
};

class ResourceSharing {
public:
  ResourceSharing();
  ResourceSharing(const ResourceSharing&) = delete;
  ResourceSharing& operator=(const ResourceSharing&) = delete;
  ~ResourceSharing();

  // The graph.
  /// Both are operators; a pair is added once.
  void AddCompatibilityEdge(Instance* a, Instance* b);
  /// Does nothing for a pair without edge.
  void DeleteCompatibilityEdge(Instance* a, Instance* b);
  void DeleteAllCompatibilityEdges(Instance* inst);
  /// Null when there is none; the order of the two does not matter.
  CEdge* FindEdge(const Instance* a, const Instance* b) const;
  const Set* Neighbors(const Instance* inst) const;
  unsigned NumOfEdges() const { return _edges.Size(); }
  unsigned long MemUsage() const;

  // Merging.
  /// Merges what pays and makes no loop, cheapest first.
  void Execute();
  /// Whether the merge makes no path from a member to a member.
  unsigned SafeToMerge(CEdge* edge);
  unsigned FindFalsePath(Instance* start, Set* members, Set* visited);
  void ExecuteMerge(CEdge* edge);
  void UpdateEdgeWeights(Instance* inst);
  /// The neighbours of `a` but `b` that are no neighbours of `b`.
  int Commonality(Instance* a, Instance* b);
  /// An adder and a subtractor of the same operands lose all edges: the host does better with them as they are.
  void ProtectAddSubs();

private:
  /// The clique that an instance stands for, or the instance.
  void AppendMembers(Instance* inst, Array& members) const;

  Map _neighbors; // Instance* to Set* of Instance*
  Map _edges;     // both addresses combined by exclusive or, to CEdge*; keys are not unique
  Heap _merges;
  Map _cliques;    // representative to Array* of members, itself first
  Map _membership; // member to representative
};

#endif
