// The graph of operators that may share: edges come from elaboration and leave with their instances. Merging takes the
// cheapest edge first, joins the two ends to one node of the graph, and in the end builds each clique as one operator.
#include "database/resourcesharing.h"

#include <algorithm>
#include <climits>
#include <string>
#include <vector>

#include "containers/views.h"
#include "database/instance.h"
#include "database/net.h"
#include "database/netlist.h"
#include "database/operators.h"
#include "database/views.h"
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

Operator* ViewOf(const Instance* inst) { return static_cast<Operator*>(inst->View()); }

const char* NameOf(const Instance* inst) { return inst->Name() ? inst->Name() : ""; }

} // namespace

ResourceSharing::ResourceSharing()
    : _neighbors(HASH_POINTER), _edges(HASH_POINTER), _cliques(HASH_POINTER), _membership(HASH_POINTER) {}

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

void ResourceSharing::ProtectAddSubs() {
  std::vector<std::pair<Instance*, Instance*>> pairs;
  for (CEdge* edge : ValuesOf<CEdge*>(&_edges))
    if (ViewOf(edge->First())->AreAddSubPair(edge->First(), edge->Second()))
      pairs.emplace_back(edge->First(), edge->Second());
  for (auto [first, second] : pairs) {
    kestrin_debug("(RS) -- %s and %s form an addsub pair", NameOf(first), NameOf(second));
    DeleteAllCompatibilityEdges(first);
    DeleteAllCompatibilityEdges(second);
  }
}

void ResourceSharing::AppendMembers(Instance* inst, Array& members) const {
  if (const auto* clique = FromWord<const Array*>(_cliques.GetValue(inst)))
    members.Append(clique);
  else
    members.InsertLast(inst);
}

void ResourceSharing::Execute() {
  if (!_neighbors.Size()) return;
  ProtectAddSubs();
  kestrin_debug("(RS) - Initializing edge weights");
  for (CEdge* edge : ValuesOf<CEdge*>(&_edges)) {
    Array ends;
    ends.InsertLast(edge->First());
    ends.InsertLast(edge->Second());
    edge->SetWeight(ViewOf(edge->First())->MergeCost(&ends));
    _merges.Insert(edge);
  }
  while (auto* edge = static_cast<CEdge*>(_merges.ExtractRoot())) {
    if (edge->Weight() > 0) break;
    Instance* first = edge->First();
    if (SafeToMerge(edge)) {
      ExecuteMerge(edge);
      UpdateEdgeWeights(first);
    } else {
      kestrin_debug("(RS) - Edge pruned because of loop or potential loop.");
      DeleteCompatibilityEdge(first, edge->Second());
    }
  }
  _merges.Reset();
  _membership.Reset();
  for (auto [representative, clique] : Entries<Instance*, Array*>(&_cliques)) {
    kestrin_debug("(RS) - Merging a clique with %d elements", static_cast<int>(clique->Size()));
    ViewOf(representative)->Merge(clique);
    delete clique;
  }
  _cliques.Reset();
}

void ResourceSharing::ExecuteMerge(CEdge* edge) {
  Instance* a = edge->First();
  Instance* b = edge->Second();
  kestrin_debug("(RS) - Merging %s and %s with cost %d", NameOf(a), NameOf(b), edge->Weight());
  const Set* of_b = Neighbors(b);
  std::vector<std::pair<Instance*, Instance*>> dropped;
  for (Instance* neighbor : KeysOf<Instance*>(Neighbors(a)))
    dropped.emplace_back(neighbor, neighbor == b || !of_b->Contains(neighbor) ? a : b);
  for (auto [neighbor, end] : dropped) DeleteCompatibilityEdge(neighbor, end);
  DeleteAllCompatibilityEdges(b);

  auto* clique = FromWord<Array*>(_cliques.GetValue(a));
  auto* joining = FromWord<Array*>(_cliques.GetValue(b));
  if (joining) _cliques.Remove(static_cast<const void*>(b));
  if (clique && joining) {
    clique->Append(joining);
    delete joining;
  } else if (clique) {
    clique->InsertLast(b);
  } else if (joining) {
    joining->InsertFirst(a);
    _cliques.Insert(a, clique = joining);
  } else {
    clique = new Array;
    clique->InsertLast(a);
    clique->InsertLast(b);
    _cliques.Insert(a, clique);
  }
  for (Instance* member : ItemsOf<Instance*>(clique)) _membership.Insert(member, a, 1);
}

int ResourceSharing::Commonality(Instance* a, Instance* b) {
  const Set* of_b = Neighbors(b);
  int lost = 0;
  for (Instance* neighbor : KeysOf<Instance*>(Neighbors(a)))
    lost += neighbor != b && !(of_b && of_b->Contains(neighbor));
  return lost;
}

void ResourceSharing::UpdateEdgeWeights(Instance* inst) {
  for (Instance* neighbor : KeysOf<Instance*>(Neighbors(inst))) {
    CEdge* edge = FindEdge(inst, neighbor);
    KESTRIN_ASSERT(edge);
    Array members;
    AppendMembers(inst, members);
    AppendMembers(neighbor, members);
    long long weight = (Commonality(inst, neighbor) + 1LL) * ViewOf(inst)->MergeCost(&members);
    if (edge->Index() >= 0) _merges.Remove(edge->Index());
    edge->SetWeight(static_cast<int>(std::clamp<long long>(weight, INT_MIN, INT_MAX)));
    _merges.Insert(edge);
  }
}

unsigned ResourceSharing::SafeToMerge(CEdge* edge) {
  if (kestrin_flag("zelk_dont_prune_merges")) return 1;
  Array instances;
  AppendMembers(edge->First(), instances);
  AppendMembers(edge->Second(), instances);
  Set members(HASH_POINTER);
  for (Instance* member : ItemsOf<Instance*>(&instances)) {
    members.Insert(member);
    const Net* n = member->ControlNet();
    KESTRIN_ASSERT(n && n->Driver() && n->Driver()->Type() == PRIM_BUF);
    members.Insert(n->Driver());
  }
  Set visited(HASH_POINTER);
  for (Instance* member : ItemsOf<Instance*>(&instances))
    if (FindFalsePath(member, &members, &visited)) return 0;
  return 1;
}

namespace {

/// Beyond this many instances a search is not worth its time.
constexpr unsigned max_searched_instances = 9999;

struct path_step {
  Instance* inst;
  std::vector<Instance*> fanout;
  size_t next = 0;
};

/// A load that only a clock edge passes on.
bool EndsAtRegister(const PortRef* load) {
  const Instance* inst = load->GetInst();
  return kestrin_is_register_type(inst->Type()) && load->GetPort() == inst->View()->GetInput();
}

void AppendFanout(const Instance* inst, std::vector<Instance*>& fanout) {
  for (PortRef* output : ConnectionsOf(inst)) {
    if (output->IsInput()) continue;
    const Net* net = output->GetNet();
    const Port* port = net->GetFirstPort(DIR_OUTPUT) ? net->GetFirstPort(DIR_OUTPUT) : net->GetFirstPort(DIR_INOUT);
    if (port) kestrin_debug("(RS) - %s feeds a PO through %s", NameOf(inst), port->Name());
    for (PortRef* load : PortRefsOf(net))
      if (load != output && load->Direction() != DIR_OUTPUT && !EndsAtRegister(load)) fanout.push_back(load->GetInst());
  }
}

} // namespace

unsigned ResourceSharing::FindFalsePath(Instance* start, Set* members, Set* visited) {
  Set on_path(HASH_POINTER);
  std::vector<path_step> path;
  auto enter = [&](Instance* inst) {
    on_path.Insert(inst);
    path.push_back({inst, {}, 0});
    Array as_one; // the members of a clique will be one operator
    Instance* representative = FromWord<Instance*>(_membership.GetValue(inst));
    AppendMembers(representative ? representative : inst, as_one);
    for (Instance* member : ItemsOf<Instance*>(&as_one)) AppendFanout(member, path.back().fanout);
  };
  enter(start);
  while (!path.empty()) {
    path_step& step = path.back();
    if (step.next == step.fanout.size()) {
      visited->Insert(step.inst);
      on_path.Remove(step.inst);
      if (visited->Size() > max_searched_instances) {
        kestrin_debug("(RS) - Pruned search at %s because it's too costly.", NameOf(step.inst));
        return 1;
      }
      path.pop_back();
      continue;
    }
    Instance* next = step.fanout[step.next++];
    if (members->Contains(next)) {
      kestrin_debug("(RS) - There's a path between %s and %s", NameOf(start), NameOf(next));
      return 1;
    }
    if (on_path.Contains(next)) {
      kestrin_debug("(RS) - %s enters a combinational loop, it seems.  I managed to visit %s twice in the same DFS.",
                    NameOf(start), NameOf(next));
      return 1;
    }
    if (!visited->Contains(next)) enter(next);
  }
  return 0;
}

unsigned long ResourceSharing::MemUsage() const {
  unsigned long bytes = sizeof(ResourceSharing) + _neighbors.MemUsage() + _edges.MemUsage() + _merges.MemUsage() +
                        _cliques.MemUsage() + _membership.MemUsage() + NumOfEdges() * sizeof(CEdge);
  for (Set* neighbors : ValuesOf<Set*>(&_neighbors)) bytes += neighbors->MemUsage();
  return bytes;
}

void Netlist::ShareResources() {
  if (_sharing) {
    ProfileScope scope("***Sharing resources***");
    _sharing->Execute();
    RemoveControlNetBuffers();
    RemoveDanglingLogic();
    PropagateConstants();
    return;
  }
  RemoveControlNetBuffers();
}

namespace {

/// A control net buffer that a net feeds already.
Instance* ControlNetBuffer(const Net* net, const Set& buffers) {
  for (PortRef* load : LoadsOf(net))
    if (buffers.Contains(load->GetInst())) return load->GetInst();
  return nullptr;
}

} // namespace

void Netlist::AddControlNetBuffers() {
  KESTRIN_ASSERT(_cnet_buffers == nullptr);
  _cnet_buffers = new Set(HASH_POINTER);
  for (Instance* inst : InstancesOf(this)) {
    Net* control = inst->ControlNet();
    if (!control || _cnet_buffers->Contains(inst)) continue;
    Instance* fanin = ControlNetBuffer(control, *_cnet_buffers);
    if (!fanin) {
      fanin = Buf(control, 0, LOGICAL)->Driver();
      KESTRIN_ASSERT(fanin && fanin->Type() == PRIM_BUF);
      _cnet_buffers->Insert(fanin);
    }
    inst->SetControlNet(fanin->GetOutput());
  }
}

void Netlist::RemoveControlNetBuffers() {
  if (!_cnet_buffers) return;
  std::vector<Instance*> buffers;
  for (Instance* buf : KeysOf<Instance*>(_cnet_buffers)) buffers.push_back(buf);
  delete _cnet_buffers;
  _cnet_buffers = nullptr;
  for (Instance* buf : buffers) {
    KESTRIN_ASSERT(buf && buf->Type() == PRIM_BUF);
    Net* input = buf->GetInput();
    Net* output = buf->GetOutput();
    delete buf;
    if (input) input->Wire(output); // operators under the buffer's output follow it
    if (output) output->ResolveWires();
  }
}
