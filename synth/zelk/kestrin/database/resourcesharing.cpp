// The graph of operators that may share: edges come from elaboration and leave with their instances.
#include "database/resourcesharing.h"

#include "containers/views.h"
#include "database/instance.h"
#include "util/services.h"

namespace {

const void* EdgeKey(const Instance* a, const Instance* b) {
  return ToWord(FromWord<unsigned long>(a) ^ FromWord<unsigned long>(b));
}

bool Joins(const CEdge* edge, const Instance* a, const Instance* b) {
  return (edge->First() == a && edge->Second() == b) || (edge->First() == b && edge->Second() == a);
}

/// Among the edges of one key, that of a pair in either order.
MapItem* FindItem(const Map& edges, const Instance* a, const Instance* b) {
  if (!edges.Size()) return nullptr;
  MapItem* item = edges.GetItem(EdgeKey(a, b));
  while (item && !Joins(FromWord<CEdge*>(item->Value()), a, b)) item = edges.GetNextSameKeyItem(item);
  return item;
}

const char* NameOf(const Instance* inst) { return inst->Name() ? inst->Name() : ""; }

} // namespace

ResourceSharing::ResourceSharing(Netlist* netlist)
    : _netlist(netlist), _neighbors(HASH_POINTER), _edges(HASH_POINTER), _cliques(HASH_POINTER),
      _membership(HASH_POINTER) {}

ResourceSharing::~ResourceSharing() {
  for (CEdge* edge : ValuesOf<CEdge*>(&_edges)) delete edge;
  for (Set* neighbors : ValuesOf<Set*>(&_neighbors)) delete neighbors;
  for (Array* clique : ValuesOf<Array*>(&_cliques)) delete clique;
}

void ResourceSharing::AddCompatibilityEdge(Instance* i1, Instance* i2) {
  KESTRIN_ASSERT(i1 && i2);
  KESTRIN_ASSERT(i1->IsOperator() && i2->IsOperator());
  kestrin_debug("(RS) - Adding edge between %s and %s", NameOf(i1), NameOf(i2));
  auto add_neighbor = [this](Instance* inst, Instance* neighbor) {
    auto* neighbors = FromWord<Set*>(_neighbors.GetValue(inst));
    if (!neighbors) _neighbors.Insert(inst, neighbors = new Set(HASH_POINTER));
    return neighbors->Insert(neighbor);
  };
  KESTRIN_ASSERT_TEXT(add_neighbor(i1, i2), "neighbors->Insert(i2)");
  KESTRIN_ASSERT_TEXT(add_neighbor(i2, i1), "neighbors->Insert(i1)");
  _edges.Insert(EdgeKey(i1, i2), new CEdge(i1, i2, 0, -1), 0, 1);
}

CEdge* ResourceSharing::FindEdge(const Instance* a, const Instance* b) const {
  MapItem* item = FindItem(_edges, a, b);
  return item ? FromWord<CEdge*>(item->Value()) : nullptr;
}

const Set* ResourceSharing::Neighbors(const Instance* inst) const {
  return FromWord<const Set*>(_neighbors.GetValue(inst));
}

void ResourceSharing::DeleteCompatibilityEdge(Instance* a, Instance* b) {
  MapItem* item = FindItem(_edges, a, b);
  if (!item) return;
  auto* edge = FromWord<CEdge*>(item->Value());
  _edges.Remove(item);
  if (edge->Index() >= 0)
    KESTRIN_ASSERT_TEXT(_merges.Remove(edge->Index()) == edge,
                        "_merges.Remove(( (edge_to_remove)->_idx )) == edge_to_remove");
  delete edge;
  auto drop_neighbor = [this](Instance* inst, Instance* neighbor) {
    auto* neighbors = FromWord<Set*>(_neighbors.GetValue(inst));
    neighbors->Remove(neighbor);
    if (neighbors->Size()) return;
    _neighbors.Remove(static_cast<const void*>(inst));
    delete neighbors;
  };
  drop_neighbor(a, b);
  drop_neighbor(b, a);
}

void ResourceSharing::DeleteAllCompatibilityEdges(Instance* inst) {
  const Set* neighbors = Neighbors(inst);
  if (!neighbors) return;
  Array others(neighbors->Size());
  for (Instance* other : KeysOf<Instance*>(neighbors)) others.InsertLast(other);
  for (Instance* other : ItemsOf<Instance*>(&others)) DeleteCompatibilityEdge(inst, other);
}

unsigned long ResourceSharing::MemUsage() const {
  unsigned long bytes = sizeof(ResourceSharing) + _neighbors.MemUsage() + _edges.MemUsage() + _merges.MemUsage() +
                        _cliques.MemUsage() + _membership.MemUsage() + NumOfEdges() * sizeof(CEdge);
  for (Set* neighbors : ValuesOf<Set*>(&_neighbors)) bytes += neighbors->MemUsage();
  return bytes;
}
