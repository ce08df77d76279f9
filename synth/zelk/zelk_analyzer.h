// The front door of the library: the object that the host creates through the one entry point.
#ifndef ZELK_ANALYZER_H
#define ZELK_ANALYZER_H

#include <string>
#include <vector>

#include "basex.h"

class ZELK_ANALYZER_IMPL;

class [[gnu::visibility("default")]] ZELK_ANALYZER : public BASEX_ANALYZER {
public:
  ZELK_ANALYZER();
  ~ZELK_ANALYZER() override;
  ZELK_ANALYZER(const ZELK_ANALYZER&) = delete;
  ZELK_ANALYZER& operator=(const ZELK_ANALYZER&) = delete;

  /// Reads one source file: its units enter the library and the info object's list. True only if everything asked for
  /// succeeded and no error was reported meanwhile, by whomever.
  bool analyze(BASEX_ANALYZE_INFO * info) override;
  /// A fresh analyzer; nothing is copied.
  BASEX_ANALYZER* clone(MEM_SEGMENT * segment) override;

  /// Forgets all that was learnt: trees, libraries, macros, dependencies.
  void delete_all_zelk_static_data();
  /// Resolves every unit after the last file. With both lists given, item i of the first is a file that depends on item
  /// i of the second. False when errors arose.
  bool resolve_all_design_units(HDB_ACTION_PT_INSTANCE * ap_inst, std::vector<std::string> * files,
                                std::vector<std::string> * dependencies);
  /// Rewrite a parameter value of the user interface as source text, in place. True when the value was understood and
  /// its type was consumed.
  bool convert_hsp_parameter_to_verilog(std::string & value, std::string & type);
  bool convert_hsp_parameter_to_vhdl(std::string & value, std::string & type);

private:
  ZELK_ANALYZER_IMPL* m_impl;
};

/// The entry point: a new ZELK_ANALYZER, as a pointer to its base BASEX_ANALYZER.
extern "C" [[gnu::visibility("default")]] void* zelk_dyn_create_analyzer();

#endif
