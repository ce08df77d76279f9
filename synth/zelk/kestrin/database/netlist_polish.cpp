// Netlist::Polish: the order of the passes that turn an elaborated netlist into a clean one. The order is part of the
// design: each pass relies on what those before it left.
#include <iterator>

#include "database/netlist.h"
#include "database/netlistchecker.h"
#include "database/polishpass.h"
#include "database/ram.h"
#include "util/services.h"

namespace {
template <void (Netlist::*Pass)()> bool Do(Netlist* netlist) {
  (netlist->*Pass)();
  return true;
}

bool RemoveManualBypassLogic(Netlist* netlist) {
  kestrin_remove_manual_bypass_logic(netlist);
  return true;
}

bool StopOnConflict(Netlist* netlist) {
  if (!netlist->ElectricalConflict(/*ignore*/ 0)) return true;
  netlist->NetlistDump("on_electrical_conflict");
  return false;
}

constexpr PolishPass Always(const char* name, const char* dump_before, bool (*run)(Netlist*),
                            const char* dump_after = nullptr) {
  return {name, dump_before, run, dump_after, PolishGuard::ALWAYS, nullptr};
}
constexpr PolishPass If(const char* flag, const char* name, const char* dump_before, bool (*run)(Netlist*)) {
  return {name, dump_before, run, nullptr, PolishGuard::IF_SET, flag};
}
constexpr PolishPass Unless(const char* flag, const char* name, const char* dump_before, bool (*run)(Netlist*),
                            const char* dump_after = nullptr) {
  return {name, dump_before, run, dump_after, PolishGuard::UNLESS_SET, flag};
}

constexpr const char* sharing_flag = "zelk_enable_resource_sharing";
constexpr const char* no_inference_flag = "zelk_dont_use_new_dff_algorithm";

// A pass of the class Netlist is called after its operation.
#define PASS(kind, label, operation, ...) kind(#operation, label, Do<&Netlist::operation> __VA_OPT__(, ) __VA_ARGS__)
#define PASS_UNDER(kind, flag, label, operation, ...)                                                                  \
  kind(flag, #operation, label, Do<&Netlist::operation> __VA_OPT__(, ) __VA_ARGS__)
constexpr PolishPass passes[] = {
    PASS_UNDER(If, sharing_flag, nullptr, AddControlNetBuffers),
    PASS(Always, "before_process_globals", ProcessGlobals),
    PASS(Always, nullptr, ResolveWires),
    PASS(Always, "before_dff_conversion", ToSetResetRegisters),
    PASS(Always, "before_post_processing_rams", PostProcessRamWriteEnables),
    PASS(Always, "before_dangling_logic", RemoveDanglingLogic),
    PASS(Always, "before_dangling_nets", ProcessDanglingNets),
    PASS(Always, "before_removing_silly_cones", DisconnectSillyFaninCones),
    PASS(Always, "before_optimizing_mux_trees", OptimizeMuxTrees),
    PASS_UNDER(Unless, no_inference_flag, "before_dff_extraction", ExtractDffsLatchesAndTriStates),
    PASS_UNDER(Unless, no_inference_flag, nullptr, ToSetResetRegisters, "after_dff_extraction"),
    Always("ElectricalConflict", nullptr, StopOnConflict),
    PASS(Always, nullptr, CheckPortConnectivity),
    PASS(Always, "before_keep", ProcessKeepAttributes),
    PASS_UNDER(If, "zelk_add_always_enabled_tristates", "before_always_enable_tristates",
               AddAlwaysEnabledTristateBuffers),
    PASS(Always, "before_user_net_buffer_sweep", RemoveUserNetBuffers),
    PASS_UNDER(Unless, "zelk_dont_add_extra_directional_buffers", nullptr, AddExtraDirectionalBuffers),
    PASS(Always, "before_constant_propagation", PropagateConstants),
    PASS_UNDER(If, sharing_flag, nullptr, ShareResources),
    PASS(Always, "before_cse", EliminateCommonSubexpressions, "after_cse"),
    PASS(Always, nullptr, OptimizeOperators),
    Always("kestrin_remove_manual_bypass_logic", "before_transistor_sweep", RemoveManualBypassLogic),
    PASS(Always, nullptr, SplitDualReadRams),
    PASS(Always, nullptr, UniquifyOperatorNames),
    PASS(Always, nullptr, ConvertTransistorsWithConstantControls),
    Always("ElectricalConflict", nullptr, StopOnConflict),
    PASS(Always, nullptr, CheckTooManyFanouts),
};
#undef PASS
#undef PASS_UNDER

void PrintFigures(const Netlist* netlist) {
  if (kestrin_flag("zelk_profile_more")) netlist->PrintDetailedMemoryReport();
  if (kestrin_flag("zelk_analyze_netlists")) netlist->PrintConnectivityStats();
}

PolishObserver* observer = nullptr;

/// Whether all passes ran.
bool RunPasses(Netlist* netlist) {
  for (const PolishPass& pass : passes) {
    if (!pass.IsWanted()) continue;
    if (pass.dump_before) netlist->NetlistDump(pass.dump_before);
    const bool goes_on = pass.run(netlist);
    // In builds with assertions no pass leaves an inconsistent netlist behind.
    kestrin_check_netlist(netlist, pass.name);
    if (observer) observer->AfterPass(netlist, pass);
    if (!goes_on) return false;
    if (pass.dump_after) netlist->NetlistDump(pass.dump_after);
  }
  return true;
}
} // namespace

void Netlist::Polish() {
  const unsigned long before = MemUsage();
  kestrin_debug("Polishing Kestrin netlist consuming %u bytes", static_cast<unsigned>(before));
  ProfileScope scope("***Polishing the netlist***");
  PrintFigures(this);
  kestrin_check_netlist(this, "elaboration");
  if (observer) observer->BeforePolish(this);
  if (!RunPasses(this)) return;
  PrintFigures(this);
  const unsigned long after = MemUsage();
  kestrin_debug("Polished netlist consumes %u bytes (%2.3f %%)", static_cast<unsigned>(after),
                before ? 100.0 * static_cast<double>(after) / static_cast<double>(before) : 100.0);
}

bool PolishPass::IsWanted() const {
  return guard == PolishGuard::ALWAYS || (kestrin_flag(flag) != 0) == (guard == PolishGuard::IF_SET);
}

PolishPasses kestrin_polish_passes() { return {std::begin(passes), std::end(passes)}; }

void kestrin_observe_polish(PolishObserver* new_observer) { observer = new_observer; }
