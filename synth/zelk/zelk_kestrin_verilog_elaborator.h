// The elaboration of one Verilog or SystemVerilog unit.
#ifndef ZELK_KESTRIN_VERILOG_ELABORATOR_H
#define ZELK_KESTRIN_VERILOG_ELABORATOR_H

#include "zelk_kestrin_elaborator.h"

class VeriModule;

class ZELK_KESTRIN_VERILOG_ELABORATOR : public ZELK_KESTRIN_ELABORATOR {
public:
  ~ZELK_KESTRIN_VERILOG_ELABORATOR() override;
  Netlist* elaborate(BASEX_ELABORATE_INFO* info) override;

private:
  void set_flags();
  void set_loop_limit(int variable, const char* key);
  /// Finds the unit's tree again by unit and library name.
  void bind();
  void bind_library(const char* name);
  /// In order of declaration, local ones left out: a position of the host counts these.
  std::vector<std::string> parameter_names() const;
  void run_kernel();
  void add_defaults_to_netlist();
  void register_additional_dependencies();
  void register_ports_type();
  void dump_port_types(HDB_ENTITY* entity);
  void cleanup();

  Map* m_actual_parameters = nullptr; // made by the module
  VeriModule* m_module = nullptr;
};

#endif
