// Netlist::Polish: the order of the passes that turn an elaborated netlist into a clean one. The order is part of the
// design: each pass relies on what those before it left.
#include <iterator>
#include <string>

#include "database/netlist.h"
#include "database/netlistchecker.h"
#include "database/ram.h"
#include "util/services.h"

namespace {
enum class Guard { ALWAYS, IF_SET, UNLESS_SET };

/// A pass answers whether polishing goes on.
struct PolishPass {
  const char* dump_before; ///< label of the dump, null for none
  bool (*run)(Netlist* netlist);
  const char* dump_after;
  Guard guard;
  const char* flag;

  bool IsWanted() const { return guard == Guard::ALWAYS || (kestrin_flag(flag) != 0) == (guard == Guard::IF_SET); }
};

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

constexpr PolishPass Always(const char* dump_before, bool (*run)(Netlist*), const char* dump_after = nullptr) {
  return {dump_before, run, dump_after, Guard::ALWAYS, nullptr};
}
constexpr PolishPass If(const char* flag, const char* dump_before, bool (*run)(Netlist*)) {
  return {dump_before, run, nullptr, Guard::IF_SET, flag};
}
constexpr PolishPass Unless(const char* flag, const char* dump_before, bool (*run)(Netlist*),
                            const char* dump_after = nullptr) {
  return {dump_before, run, dump_after, Guard::UNLESS_SET, flag};
}

constexpr const char* sharing_flag = "zelk_enable_resource_sharing";
constexpr const char* no_inference_flag = "zelk_dont_use_new_dff_algorithm";

constexpr PolishPass passes[] = {
    If(sharing_flag, nullptr, Do<&Netlist::AddControlNetBuffers>),
    Always("before_process_globals", Do<&Netlist::ProcessGlobals>),
    Always(nullptr, Do<&Netlist::ResolveWires>),
    Always("before_dff_conversion", Do<&Netlist::ToSetResetRegisters>),
    Always("before_post_processing_rams", Do<&Netlist::PostProcessRamWriteEnables>),
    Always("before_dangling_logic", Do<&Netlist::RemoveDanglingLogic>),
    Always("before_dangling_nets", Do<&Netlist::ProcessDanglingNets>),
    Always("before_removing_silly_cones", Do<&Netlist::DisconnectSillyFaninCones>),
    Always("before_optimizing_mux_trees", Do<&Netlist::OptimizeMuxTrees>),
    Unless(no_inference_flag, "before_dff_extraction", Do<&Netlist::ExtractDffsLatchesAndTriStates>),
    Unless(no_inference_flag, nullptr, Do<&Netlist::ToSetResetRegisters>, "after_dff_extraction"),
    Always(nullptr, StopOnConflict),
    Always(nullptr, Do<&Netlist::CheckPortConnectivity>),
    Always("before_keep", Do<&Netlist::ProcessKeepAttributes>),
    If("zelk_add_always_enabled_tristates", "before_always_enable_tristates",
       Do<&Netlist::AddAlwaysEnabledTristateBuffers>),
    Always("before_user_net_buffer_sweep", Do<&Netlist::RemoveUserNetBuffers>),
    Unless("zelk_dont_add_extra_directional_buffers", nullptr, Do<&Netlist::AddExtraDirectionalBuffers>),
    Always("before_constant_propagation", Do<&Netlist::PropagateConstants>),
    If(sharing_flag, nullptr, Do<&Netlist::ShareResources>),
    Always("before_cse", Do<&Netlist::EliminateCommonSubexpressions>, "after_cse"),
    Always(nullptr, Do<&Netlist::OptimizeOperators>),
    Always("before_transistor_sweep", RemoveManualBypassLogic),
    Always(nullptr, Do<&Netlist::SplitDualReadRams>),
    Always(nullptr, Do<&Netlist::UniquifyOperatorNames>),
    Always(nullptr, Do<&Netlist::ConvertTransistorsWithConstantControls>),
    Always(nullptr, StopOnConflict),
    Always(nullptr, Do<&Netlist::CheckTooManyFanouts>),
};

void PrintFigures(const Netlist* netlist) {
  if (kestrin_flag("zelk_profile_more")) netlist->PrintDetailedMemoryReport();
  if (kestrin_flag("zelk_analyze_netlists")) netlist->PrintConnectivityStats();
}

/// In builds with assertions no pass leaves an inconsistent netlist behind.
void CheckAfter(const PolishPass& pass, const Netlist* netlist) {
  const auto number = std::distance(std::begin(passes), &pass);
  kestrin_check_netlist(netlist, ("pass " + std::to_string(number) + " of polishing").c_str());
}

/// Whether all passes ran.
bool RunPasses(Netlist* netlist) {
  for (const PolishPass& pass : passes) {
    if (!pass.IsWanted()) continue;
    if (pass.dump_before) netlist->NetlistDump(pass.dump_before);
    const bool goes_on = pass.run(netlist);
    CheckAfter(pass, netlist);
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
  if (!RunPasses(this)) return;
  PrintFigures(this);
  const unsigned long after = MemUsage();
  kestrin_debug("Polished netlist consumes %u bytes (%2.3f %%)", static_cast<unsigned>(after),
                before ? 100.0 * static_cast<double>(after) / static_cast<double>(before) : 100.0);
}
