// The frame of one elaboration: the language's elaborator, the checks on its netlist, the conversion, the clean-up.
#include "zelk_elaborator.h"

#include <memory>

#include "database/views.h"
#include "hdb_design_unit.h"
#include "tst.h"
#include "util/linefile.h"
#include "util/message.h"
#include "zelk_kestrin_verilog_elaborator.h"
#include "zelk_msg_handler.h"
#include "zelk_msgs.h"
#include "zelk_report.h"
#include "zelk_sgate.h"
#include "zelk_utility.h"

namespace {

/// Messages go to the queue of the elaboration while the object lives.
class ELABORATION_SCOPE {
public:
  explicit ELABORATION_SCOPE(BASEX_ELABORATE_INFO* info) { zelk_current_elab_info = info; }
  ELABORATION_SCOPE(const ELABORATION_SCOPE&) = delete;
  ELABORATION_SCOPE& operator=(const ELABORATION_SCOPE&) = delete;
  ~ELABORATION_SCOPE() {
    zelk_current_elab_info = nullptr;
    ZELK_EXTRACTOR_DATA::m_elab_info = nullptr;
  }
};

void tell_test_of_unit(const HDB_DESIGN_UNIT* unit) {
  constexpr const char* SECTION = "General Section";
  constexpr const char* NAME = "ZELK_ELAB";
  if (tst_is_regtest_mode() && tst_get_value(SECTION, NAME) == "ON") tst_set_value(SECTION, NAME, unit->get_name());
}

std::unique_ptr<Netlist> elaborate_unit(BASEX_ELABORATE_INFO* info, const HDB_DESIGN_UNIT* unit) {
  if (unit && unit->get_type() == HDB_DESIGN_UNIT::TYPE_VERILOG_MODULE)
    return std::unique_ptr<Netlist>(ZELK_KESTRIN_VERILOG_ELABORATOR().elaborate(info));
  ZELK_INTERNAL_ERROR("Can't elaborate unknown HDB design unit");
  return nullptr;
}

void print_debug_netlist_stats(const Netlist* netlist) {
  zelk_msg_debug("Netlist of %s: %u ports, %u nets, %u instances", netlist->ExternalName(), netlist->NumOfPorts(),
                 netlist->NumOfNets(), netlist->NumOfInsts());
}

/// A greybox stands for a unit whose contents are not to be had.
bool is_greybox(const Netlist* netlist, const HDB_DESIGN_UNIT* unit) {
  if (!netlist->GetAtt(ATT_SYNTHESIS_GREYBOX)) return false;
  std::string place = zelk_build_location_string(netlist->Linefile());
  zelk_report_at(MSG_ZELK::E::CANT_COMPILE_GREYBOX(unit->get_name(), place.c_str()),
                 LineFile::GetFileName(netlist->Linefile()),
                 static_cast<int>(LineFile::GetLineNo(netlist->Linefile())));
  return true;
}

/// False when the conversion failed. With errors on the way there is no conversion; the error count tells then.
bool convert(BASEX_ELABORATE_INFO* info, Netlist* netlist, const HDB_DESIGN_UNIT* unit) {
  if (zelk_cfg_is_on("zelk_dump_netlist")) {
    std::string name;
    info->get_dump_name(&name);
    netlist->Dump((name + ".netlist").c_str(), "final");
  }
  if (zelk_cfg_is_on("zelk_debussy_dump_netlist")) {
    std::string name;
    info->get_dump_name(&name);
    netlist->NetlistDebussyDump(name.c_str(), "final");
  }
  print_debug_netlist_stats(netlist);
  if (is_greybox(netlist, unit)) return false;
  if (Message::ErrorCount() != 0 || !zelk_check_for_error_messages()) return true;
  return ZELK_SGATE(info, netlist).convert_netlist();
}

/// Cells that packages and libraries contribute survive; everything else is rebuilt by the next elaboration.
void clean_netlist_libraries() {
  for (Library* library : LibrariesOf(Libset::Global())) {
    if (library == Library::Primitives() || library == Library::Operators()) continue;
    for (Cell* cell : CellsOf(library)) {
      if (cell->GetAtt(" :package") || cell->GetAtt(" :library")) continue;
      library->Remove(cell);
      delete cell;
    }
  }
}

} // namespace

CDB_HIERARCHY_BASE* ZELK_ELABORATOR::elaborate(BASEX_ELABORATE_INFO* info) {
  const HDB_DESIGN_UNIT* unit = info->get_design_unit();
  ELABORATION_SCOPE scope(info);
  std::unique_ptr<Netlist> netlist = elaborate_unit(info, unit);
  if (unit) tell_test_of_unit(unit);
  Message::ShowAllMessages();
  bool is_good = netlist && convert(info, netlist.get(), unit);
  netlist.reset();
  if (!is_good || Message::ErrorCount() != 0 || !zelk_check_for_error_messages()) info->set_success(false);
  clean_netlist_libraries();
  return nullptr;
}

BASEX_ELABORATOR* ZELK_ELABORATOR::clone(MEM_SEGMENT*) { return new ZELK_ELABORATOR; }
