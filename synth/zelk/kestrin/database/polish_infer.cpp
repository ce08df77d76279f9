// Extraction of registers, latches and tristate buffers. Elaboration leaves a cone of multiplexers for each signal that
// is assigned in a process, behind an infer point; clock events stand as controls in it. A register is a multiplexer on
// a clock event whose other side holds the signal's value. What matches no template is reported and left as it is.
#include <cstring>
#include <memory>
#include <vector>

#include "containers/heap.h"
#include "database/fsm.h"
#include "database/polish.h"
#include "database/primitives.h"
#include "util/deep.h"
#include "util/message.h"
#include "util/services.h"

namespace {
// Marks on the hold nets during the pass.
constexpr const char* registered_mark = " :registered";
constexpr const char* latched_mark = " :latched";
constexpr const char* tristate_mark = " :tri-state";

enum class ClockRelation { SAME_EDGE, OPPOSITE_EDGES, DISTINCT_CLOCKS };

ClockRelation CompareClocks(const Net* a, const Net* b) {
  if (a == b) return ClockRelation::SAME_EDGE;
  const Net* not_a = a ? a->InvNet() : nullptr;
  const Net* not_b = b ? b->InvNet() : nullptr;
  if (not_a && not_a == not_b) return ClockRelation::SAME_EDGE;
  if ((not_a && not_a == b) || (not_b && not_b == a)) return ClockRelation::OPPOSITE_EDGES;
  return ClockRelation::DISTINCT_CLOCKS;
}

/// A multiplexer of the cone with its inputs before and after registers were pulled out of them.
struct Branches {
  Instance* mux;
  Net* output;
  Net* control;
  Net* a0;
  Net* a1;
  Net* r0 = nullptr;
  Net* r1 = nullptr;
  bool FoundIn0() const { return r0 != a0; }
  bool FoundIn1() const { return r1 != a1; }
  unsigned long Linefile() const { return mux->Linefile(); }
};

/// What the extraction from all cones of a netlist has in common.
struct ExtractionContext {
  explicit ExtractionContext(Netlist* owner) : netlist(owner), constants(owner) {}
  Netlist* netlist;
  SharedConstants constants;
  /// Nets in whose cones no clock event and no infer point stands, so that logic that many signals share is walked
  /// once. What the pass itself builds has none either: the address of a net that is gone does no harm.
  Set clock_free;
};

/// Pulls registers out of the cone of one signal.
class DffExtractor {
public:
  DffExtractor(ExtractionContext& context, Net* hold, Map& memo)
      : _netlist(context.netlist), _hold(hold), _memo(memo), _constants(context.constants),
        _clock_free(context.clock_free) {}

  /// The net that replaces this one: the same when it has no register in its cone.
  Deep<Net*> Extract(Net* net);

private:
  /// Whether the walk has no reason to enter the cone of a net.
  bool IsClockFree(const Net* net) const {
    prim_type_enum type = net->DriverType();
    if (type == PRIM_INFER_POINT) return false;
    return type != PRIM_MUX || (net->Linefile() && net != _hold) || _clock_free.Contains(net);
  }
  Net* ExtractClocked(const Branches& b);
  Net* ExtractAsynchronous(const Branches& b);
  Net* BuildRegister(const Branches& b, Net* clk, Net* enable);
  Net* Refuse(const Branches& b, ClockRelation relation) const;
  Net* RefuseWithoutHold(const Branches& b) const;

  Netlist* _netlist;
  Net* _hold;
  Map& _memo;
  SharedConstants& _constants;
  Set& _clock_free;
};

Deep<Net*> DffExtractor::Extract(Net* net) {
  if (IsClockFree(net)) co_return net;
  if (const MapItem* known = _memo.GetItem(net)) co_return FromWord<Net*>(known->Value());
  _memo.Insert(net, net);
  Instance* driver = net->Driver();

  Net* result = net;
  if (driver->Type() == PRIM_INFER_POINT) {
    Net* input = driver->GetInput();
    if (driver->GetInput2() != _hold || !input) co_return net;
    Net* inner = co_await Extract(input);
    if (inner != input) result = inner;
  } else {
    Branches b{driver, net, driver->GetControl(), driver->GetInput1(), driver->GetInput2()};
    if (!b.control || !b.a0 || !b.a1) co_return net;
    b.r0 = co_await Extract(b.a0);
    b.r1 = co_await Extract(b.a1);
    if (kestrin_is_clock_event(b.control))
      result = ExtractClocked(b);
    else if (b.FoundIn0() || b.FoundIn1())
      result = ExtractAsynchronous(b);
    else if (net != _hold && IsClockFree(b.a0) && IsClockFree(b.a1))
      _clock_free.Insert(net);
  }
  if (result != net) _memo.Insert(net, result, /*force_overwrite*/ 1);
  co_return result;
}

Net* DffExtractor::Refuse(const Branches& b, ClockRelation relation) const {
  const char* name = _hold->ExternalName();
  switch (relation) {
  case ClockRelation::SAME_EDGE:
    b.mux->Error("can't infer register for %s because its behavior does not match a known template", name);
    break;
  case ClockRelation::OPPOSITE_EDGES:
    b.mux->Error("can't infer register for %s because it changes value on both rising and falling edges of the clock",
                 name);
    break;
  case ClockRelation::DISTINCT_CLOCKS:
    b.mux->Error("can't infer register for %s because its behavior depends on the edges of multiple distinct clocks",
                 name);
    break;
  }
  return b.output;
}

Net* DffExtractor::RefuseWithoutHold(const Branches& b) const {
  b.mux->Error("can't infer register for %s because it does not hold its value outside the clock edge",
               _hold->ExternalName());
  return b.output;
}

Net* DffExtractor::ExtractClocked(const Branches& b) {
  const Instance* event = b.control->Driver();
  Net* clk = event->GetInput();
  Net* enable = event->GetControl();
  if (b.FoundIn0() && b.FoundIn1()) return Refuse(b, ClockRelation::SAME_EDGE);
  if (!b.FoundIn0() && b.r0 != _hold) return RefuseWithoutHold(b);
  if (!b.FoundIn0() && !b.FoundIn1()) return BuildRegister(b, clk, enable);

  if (b.FoundIn1()) {
    const Instance* dff1 = b.r1->Driver();
    KESTRIN_ASSERT_TEXT(dff1 && dff1->Type() == PRIM_DFFRS, "dff1 && dff1->Type() == PRIM_DFFRS");
    return Refuse(b, CompareClocks(dff1->GetClock(), clk));
  }
  Instance* dff0 = b.r0->Driver();
  KESTRIN_ASSERT_TEXT(dff0 && dff0->Type() == PRIM_DFFRS, "dff0 && dff0->Type() == PRIM_DFFRS");
  ClockRelation relation = CompareClocks(dff0->GetClock(), clk);
  if (relation == ClockRelation::DISTINCT_CLOCKS) return Refuse(b, relation);
  if (b.r1 == _hold) return b.r0;
  if (relation == ClockRelation::OPPOSITE_EDGES) return Refuse(b, relation);
  dff0->AddSyncHold(enable ? enable : _constants.Pwr(), b.a1->LookThroughInferPoint(_hold), b.Linefile());
  return b.r0;
}

/// Outside of the clock event what is assigned is asynchronous to it.
Net* DffExtractor::ExtractAsynchronous(const Branches& b) {
  if (b.FoundIn0() && b.FoundIn1()) return Refuse(b, ClockRelation::SAME_EDGE);
  Net* found = b.FoundIn0() ? b.r0 : b.r1;
  Net* value = b.FoundIn0() ? b.a1 : b.a0;
  Net* condition = b.FoundIn0() ? b.control : _netlist->OptimizedInv(b.control, b.Linefile());
  Instance* reg = found->Driver();
  if (value == _hold)
    reg->AddAsyncHold(condition, _hold, b.Linefile());
  else
    reg->AddAsyncCondition(condition, value->LookThroughInferPoint(_hold), b.Linefile());
  return found;
}

Net* DffExtractor::BuildRegister(const Branches& b, Net* clk, Net* enable) {
  Net* d = b.a1;
  if (enable && !enable->IsPwr())
    d = enable->IsGnd() || b.a0 == b.a1
            ? _hold
            : _netlist->Mux(_hold, b.a1->LookThroughInferPoint(_hold), enable, b.Linefile());
  const std::string name = _hold->Linefile() ? kestrin_user_name(_hold) : "";
  Net* gnd = _constants.Gnd();
  Net* output =
      _netlist->Dffrs(d, clk, gnd, gnd, b.Linefile(), name.empty() ? nullptr : name.c_str(), gnd, gnd, _constants.X());
  Instance* reg = output->Driver();
  reg->CopyAttributesFrom(_hold);
  for (const char* mark : {registered_mark, latched_mark, tristate_mark}) reg->RemoveAtt(mark);
  if (char power_up = _hold->PowerUpValue()) {
    const char value[] = {power_up, '\0'};
    reg->AddAtt(ATT_INITIAL_VALUE, value);
  }
  if (!reg->IsAttOn(ATT_PRESERVE) && _hold->GetAtt(" :fsm")) kestrin_add_state(_hold, reg);
  return output;
}
} // namespace

Net* Net::ExtractDff(Net* hold, Map& memo) {
  ExtractionContext context(_owner);
  return DffExtractor(context, hold, memo).Extract(this).Run();
}

namespace {
/// The pass over all infer points of a netlist.
class InferencePass {
public:
  explicit InferencePass(Netlist* netlist)
      : _netlist(netlist), _context(netlist), _constants(_context.constants),
        _is_debugging(kestrin_flag("zelk_debug_dff_algorithm") != 0) {}

  void Run();

private:
  struct InferPointNets {
    Instance* ipoint;
    Net* input;
    Net* hold;
    Net* output;
    unsigned long linefile;
  };

  void SortInferPoints();
  void Convert(Instance* ipoint);
  bool ConvertAdditional(const InferPointNets& p);
  Net* ExtractLatch(const InferPointNets& p, Net* data);
  Net* ExtractTristate(const InferPointNets& p, Net* data);
  void ConnectResult(const InferPointNets& p, Net* result);
  void RemoveMarks();
  void ReportUnconverted();
  void Debug(const char* text) const {
    if (_is_debugging) kestrin_debug("%s", text);
  }

  Netlist* _netlist;
  ExtractionContext _context;
  SharedConstants& _constants;
  bool _is_debugging;
  bool _has_z = false;
  std::vector<std::unique_ptr<UnsignedHeapNode>> _nodes;
  Heap _heap;
};

void InferencePass::Run() {
  SortInferPoints();
  if (_heap.Size()) { // made here, so that they are not called after a signal
    _constants.Gnd();
    _constants.X();
  }
  ForEachInstanceOf(Prim::Static(PRIM_Z), _netlist, [this](Instance*) { _has_z = true; });
  const Netlist* view = Prim::Static(PRIM_INFER_POINT);
  while (HeapNode* node = _heap.ExtractRoot()) {
    auto* ipoint = FromWord<Instance*>(static_cast<UnsignedHeapNode*>(node)->Item());
    // Sweeping the cone of an earlier one may have taken it along.
    if (view->References().Contains(ipoint)) Convert(ipoint);
  }
  RemoveMarks();
  _netlist->RemoveDanglingLogic();
  Debug("Looking for unconverted clock primitives or infer points...");
  if (_is_debugging) _netlist->NetlistDump("before_check");
  ReportUnconverted();
  for (Fsm* fsm : FsmsOf(_netlist)) fsm->ReorderStates();
}

void InferencePass::SortInferPoints() {
  ForEachInstanceOf(Prim::Static(PRIM_INFER_POINT), _netlist, [this](Instance* ipoint) {
    _nodes.push_back(std::make_unique<UnsignedHeapNode>(ipoint->Sequence(), ipoint));
    _heap.Insert(_nodes.back().get());
  });
  if (_is_debugging) kestrin_debug("Sorted %d infer points!", _heap.Size());
}

void InferencePass::Convert(Instance* ipoint) {
  KESTRIN_ASSERT_TEXT(ipoint && ipoint->Type() == PRIM_INFER_POINT, "ipoint && ipoint->Type() == PRIM_INFER_POINT");
  InferPointNets p{ipoint, ipoint->GetInput(), ipoint->GetInput2(), ipoint->GetOutput(), ipoint->Linefile()};
  if (!p.input || !p.output) {
    delete ipoint;
    return;
  }
  if (!p.hold) p.hold = p.output;
  ipoint->Disconnect(ipoint->View()->GetOutput());
  if (ConvertAdditional(p)) return;

  const std::string hold_name = kestrin_user_name(p.hold);
  AutoInstancePrefix prefix(_netlist, hold_name.empty() ? nullptr : hold_name.c_str());
  Map memo(HASH_POINTER, 0);
  memo.Insert(p.output, p.output);
  Net* result = DffExtractor(_context, p.hold, memo).Extract(p.input).Run();
  KESTRIN_ASSERT_TEXT(result, "new_i");
  if (result != p.input) p.hold->AddAtt(registered_mark, "");
  result = ExtractLatch(p, result);
  if (_has_z) result = ExtractTristate(p, result);
  ConnectResult(p, result);
}

/// A signal that is a register or latch already, through an assignment elsewhere: here its value is only passed on, or
/// plain logic. What might be a register again gives way to the one that exists. Returns whether that was the case.
bool InferencePass::ConvertAdditional(const InferPointNets& p) {
  Net* target = p.output;
  if (!p.output->Linefile())
    if (Instance* buf = kestrin_get_fanout(p.output, PRIM_BUF, GET_FANOUT_SINGLE))
      if (buf->GetOutput()) target = buf->GetOutput();
  if (target == p.hold || !(p.hold->GetAtt(registered_mark) || p.hold->GetAtt(latched_mark))) return false;
  if (_is_debugging)
    kestrin_debug("Found an additional infer point for %s(%s), which was already registered or latched",
                  p.hold->ExternalName(), p.output->ExternalName());
  Map cache(HASH_POINTER, 0);
  Net* source = p.hold;
  if (p.input->ReduceConeToSingleNet(cache) != p.hold) {
    if (p.input->MightInferRegister(p.hold)) {
      Debug("The input cone might infer a register - using previously inferred register, which has more complete "
            "functionality.  This design probably has multiple assignments to the same signal.");
    } else {
      Debug("The cone won't infer a register - bypassing the infer point.");
      source = p.input;
    }
  }
  delete p.ipoint;
  source->PropagateInto(p.output, p.linefile);
  return true;
}

/// A cone that reaches the signal without passing a register keeps its value under some condition.
Net* InferencePass::ExtractLatch(const InferPointNets& p, Net* data) {
  Set visited;
  if (!data->CheckDriverFrom(p.hold, visited)) return data;
  Net* async_condition = nullptr;
  Net* async_value = nullptr;
  Net* enable = nullptr;
  data = data->ExtractAsyncCondition(&async_condition, &async_value);
  Map conditions(HASH_POINTER, 0);
  Map results(HASH_POINTER, 0);
  data = data->ExtractCondition(p.hold, &enable, /*tristate*/ 0, /*copy*/ 1, conditions, results);
  const unsigned long linefile = p.linefile ? p.linefile : p.output->Linefile();
  Net* latched = _netlist->Dlatch(data, enable ? enable : _constants.Pwr(), async_value ? async_value : _constants.X(),
                                  async_condition ? async_condition : _constants.Gnd(), linefile, p.output->Name());
  latched->Driver()->Info("inferred latch %s", p.hold->ExternalName());
  p.hold->AddAtt(latched_mark, "");
  return latched;
}

Net* InferencePass::ExtractTristate(const InferPointNets& p, Net* data) {
  Net* enable = nullptr;
  Map conditions(HASH_POINTER, 0);
  Map results(HASH_POINTER, 0);
  data = data->ExtractCondition(p.hold, &enable, /*tristate*/ 1, /*copy*/ 1, conditions, results);
  if (!enable) return data;
  p.hold->AddAtt(tristate_mark, "");
  return _netlist->Tristate(data, enable, p.linefile ? p.linefile : p.output->Linefile());
}

void InferencePass::ConnectResult(const InferPointNets& p, Net* result) {
  delete p.ipoint;
  if (result != p.input) {
    Set visited;
    _constants.Protect(visited);
    for (Net* net : {p.input, p.output, p.hold, result}) visited.Insert(net);
    visited.Remove(p.input);
    p.input->DeleteFanoutFreeCone(&visited, /*keep_user_nets*/ 0);
  } else if (result->Linefile() || result->IsConstant()) {
    // A cone that turned out to be a net of its own, which may have to keep its name.
    result->PropagateInto(p.output, p.linefile);
    return;
  }
  p.output->Wire(result);
  p.output->ResolveWires();
}

void InferencePass::RemoveMarks() {
  for (Net* net : NetsOf(_netlist))
    if (net->HasAtts())
      for (const char* mark : {registered_mark, latched_mark, tristate_mark}) net->RemoveAtt(mark);
}

void InferencePass::ReportUnconverted() {
  ForEachInstanceOf(Prim::Static(PRIM_CLOCK), _netlist, [](Instance* event) {
    event->Error("couldn't implement registers for assignments on this clock edge");
    delete event;
  });
  if (Message::ErrorCount()) return;
  ForEachInstanceOf(Prim::Static(PRIM_INFER_POINT), _netlist,
                    [](Instance*) { KESTRIN_REPORT_INTERNAL("Found unconverted infer point after inferencing pass"); });
}
} // namespace

void Netlist::ExtractDffsLatchesAndTriStates() { InferencePass(this).Run(); }
