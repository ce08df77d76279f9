// The entry point of the library and the object behind it, which forwards to the implementation.
#include "zelk_analyzer.h"

#include "zelk_analyzer_impl.h"
#include "zelk_utility.h"

namespace {

ZELK_ANALYZER* to_zelk(BASEX_ANALYZER* analyzer) { return static_cast<ZELK_ANALYZER*>(analyzer); }

bool resolve_service(BASEX_ANALYZER* analyzer, HDB_ACTION_PT_INSTANCE* ap_inst, std::vector<std::string>* files,
                     std::vector<std::string>* dependencies) {
  return to_zelk(analyzer)->resolve_all_design_units(ap_inst, files, dependencies);
}

void delete_service(BASEX_ANALYZER* analyzer) { to_zelk(analyzer)->delete_all_zelk_static_data(); }

bool to_verilog_service(BASEX_ANALYZER* analyzer, std::string& value, std::string& type) {
  return to_zelk(analyzer)->convert_hsp_parameter_to_verilog(value, type);
}

bool to_vhdl_service(BASEX_ANALYZER* analyzer, std::string& value, std::string& type) {
  return to_zelk(analyzer)->convert_hsp_parameter_to_vhdl(value, type);
}

constexpr BASEX_ANALYZER_SERVICES services = {resolve_service, delete_service, to_verilog_service, to_vhdl_service};

} // namespace

ZELK_ANALYZER::ZELK_ANALYZER() : BASEX_ANALYZER(&services), m_impl(new ZELK_ANALYZER_IMPL) { zelk_connect_kernel(); }

ZELK_ANALYZER::~ZELK_ANALYZER() { delete m_impl; }

bool ZELK_ANALYZER::analyze(BASEX_ANALYZE_INFO* info) { return m_impl->analyze(info); }

BASEX_ANALYZER* ZELK_ANALYZER::clone(MEM_SEGMENT*) { return new ZELK_ANALYZER; }

void ZELK_ANALYZER::delete_all_zelk_static_data() { m_impl->delete_all_zelk_static_data(); }

bool ZELK_ANALYZER::resolve_all_design_units(HDB_ACTION_PT_INSTANCE* ap_inst, std::vector<std::string>* files,
                                             std::vector<std::string>* dependencies) {
  return m_impl->resolve_all_design_units(ap_inst, files, dependencies);
}

bool ZELK_ANALYZER::convert_hsp_parameter_to_verilog(std::string& value, std::string& type) {
  return m_impl->convert_hsp_parameter_to_verilog(value, type);
}

bool ZELK_ANALYZER::convert_hsp_parameter_to_vhdl(std::string& value, std::string& type) {
  return m_impl->convert_hsp_parameter_to_vhdl(value, type);
}

void* zelk_dyn_create_analyzer() { return static_cast<BASEX_ANALYZER*>(new ZELK_ANALYZER); }
