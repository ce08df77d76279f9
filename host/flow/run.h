// One run of the host: analyse every file, resolve, choose the top, elaborate the hierarchy below it.
#ifndef HOST_RUN_H
#define HOST_RUN_H

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "analyzer_library.h"
#include "hdb_action_pt.h"
#include "info_objects.h"
#include "stage.h"
#include "unit_result.h"

struct RUN_OPTIONS {
  std::string top;                            // empty: the one unit that nothing instantiates
  std::vector<UNIT_PARAMETER> top_parameters; // in the notation of parameter values
  std::vector<std::string> library_dirs;      // where a unit that no source declares is looked for
  bool is_lint = false;
  bool write_xml = false;
};

class RUN {
public:
  RUN(HDB_ACTION_PT_INSTANCE& project, ANALYZER_LIBRARY& library, const RUN_OPTIONS& options)
      : m_project(project), m_library(library), m_options(options) {}

  /// True when no error arose. Every problem was reported.
  bool execute();
  DESIGN& get_design() { return m_design; }
  /// Whoever carries on after the run appends its own stages.
  std::vector<STAGE_TIME>& get_stage_times() { return m_times; }
  /// Told of each step: what is done and to what.
  void set_progress(std::function<void(const char* step, const std::string& object)> progress) {
    m_progress = std::move(progress);
  }

private:
  struct JOB {
    HDB_DESIGN_UNIT* unit;
    std::vector<UNIT_PARAMETER> parameters;
    std::string architecture;
    unsigned depth = 0; // below the top
  };

  bool analyze_all();
  bool analyze_file(HDB_SOURCE_FILE* file);
  bool resolve();
  HDB_DESIGN_UNIT* choose_top();
  std::vector<HDB_DESIGN_UNIT*> find_roots();
  HDB_DESIGN_UNIT* m_unit_with_errors = nullptr; // the first one that find_roots met
  bool elaborate_all(HDB_DESIGN_UNIT* top);
  UNIT_RESULT* elaborate(const JOB& job, FLOW_ELABORATE_INFO::PLACE place);
  UNIT_RESULT* find_equal(const JOB& job, const std::vector<UNIT_PARAMETER>& parameters) const;
  std::unique_ptr<UNIT_RESULT> elaborate_once(const JOB& job, FLOW_ELABORATE_INFO::PLACE place);
  void bind_components(UNIT_RESULT& result, unsigned depth);
  HDB_DESIGN_UNIT* find_unit(const CDB_SGATE_COMPONENT& component) const;
  bool find_in_library_dirs(const UNIT_RESULT& result);
  void report_black_box(const CDB_SGATE_COMPONENT& component);
  void check_recursion();
  void progress(const char* step, const std::string& object) const {
    if (m_progress) m_progress(step, object);
  }

  HDB_ACTION_PT_INSTANCE& m_project;
  ANALYZER_LIBRARY& m_library;
  const RUN_OPTIONS& m_options;
  DESIGN m_design;
  std::map<std::string, UNIT_RESULT*> m_results;                                                 // by key of the job
  std::map<const HDB_DESIGN_UNIT*, std::vector<std::pair<std::string, UNIT_RESULT*>>> m_by_unit; // with architectures
  std::vector<std::pair<UNIT_RESULT*, std::map<const CDB_SGATE_COMPONENT*, std::string>>> m_bindings;
  std::vector<JOB> m_worklist;
  std::set<std::string> m_black_boxes;
  std::set<std::string> m_looked_for; // in the library directories
  std::vector<STAGE_TIME> m_times;
  std::function<void(const char*, const std::string&)> m_progress;
};

/// Errors in the default report, and internal errors.
bool has_errors();

#endif
