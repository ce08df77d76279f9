// Elaboration of sources for the tests: a text becomes the polished netlist of one of its modules.
#ifndef TESTS_VERILOG_ELABORATION_H
#define TESTS_VERILOG_ELABORATION_H

#include <string>
#include <vector>

#include "database/instance.h"
#include "database/libset.h"
#include "database/netlist.h"
#include "database/views.h"
#include "verilog/analysis.h"

class Elaboration : public Analysis {
public:
  ~Elaboration() { Database::FreeStaticMemory(); }
  /// The netlist of module m; null after an error. The messages stay for Messages.
  Netlist* Elaborate(const std::string& text, veri_dialect dialect = VERI_2K, const char* module = "m") {
    if (!Read(text, dialect) || !veri_file::Elaborate(module, "work", nullptr)) return nullptr;
    return Netlist::PresentDesign();
  }
  /// What a text gives rise to.
  std::vector<std::string> MessagesOf(const std::string& text, veri_dialect dialect = VERI_2K) {
    Elaborate(text, dialect);
    return Messages();
  }
  static std::vector<Instance*> InstancesOfType(const Netlist* netlist, prim_type_enum type) {
    std::vector<Instance*> found;
    if (!netlist) return found;
    for (Instance* inst : InstancesOf(netlist))
      if (inst->Type() == type) found.push_back(inst);
    return found;
  }
};

#endif
