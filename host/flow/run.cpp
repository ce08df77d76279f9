// The steps of a run and the worklist over the hierarchy.
#include "run.h"

#include <algorithm>
#include <cstring>

#include "fio.h"
#include "gen.h"
#include "host_messages.h"

namespace {

/// A deeper hierarchy than any design has: parameters that change on each level never end otherwise.
constexpr unsigned MAX_DEPTH = 500;

bool can_be_elaborated(const HDB_DESIGN_UNIT& unit) {
  return unit.get_type() == HDB_DESIGN_UNIT::TYPE_VERILOG_MODULE ||
         unit.get_type() == HDB_DESIGN_UNIT::TYPE_VHDL_ENTITY;
}

/// VHDL entities are modules in this sense.
HDB_ENTITY::ROLE role_of(const HDB_DESIGN_UNIT& unit) { return static_cast<const HDB_ENTITY&>(unit).get_role(); }

/// The units that can be the top without being asked for: modules, and primitives where there is nothing else.
std::vector<HDB_DESIGN_UNIT*> possible_tops(const HDB_ACTION_PT_INSTANCE& project) {
  for (HDB_ENTITY::ROLE role : {HDB_ENTITY::ROLE_MODULE, HDB_ENTITY::ROLE_PRIMITIVE}) {
    std::vector<HDB_DESIGN_UNIT*> units;
    for (const auto& unit : project.get_design_units())
      if (can_be_elaborated(*unit) && role_of(*unit) == role) units.push_back(unit.get());
    if (!units.empty()) return units;
  }
  return {};
}

std::string library_of(const HDB_DESIGN_UNIT& unit) {
  std::string library = "work";
  unit.get_library(&library);
  return library;
}

/// Equal for equal work. Lengths keep texts apart.
std::string key_of(const HDB_DESIGN_UNIT& unit, std::vector<UNIT_PARAMETER> parameters,
                   const std::string& architecture) {
  auto add = [](std::string& key, const std::string& text) { key += std::to_string(text.size()) + ':' + text; };
  std::sort(parameters.begin(), parameters.end(), [](const UNIT_PARAMETER& left, const UNIT_PARAMETER& right) {
    return std::tie(left.name, left.position) < std::tie(right.name, right.position);
  });
  std::string key;
  for (const std::string& text : {library_of(unit), std::string(unit.get_name()), architecture}) add(key, text);
  for (const UNIT_PARAMETER& parameter : parameters) {
    add(key, parameter.name);
    add(key, std::to_string(parameter.position));
    add(key, parameter.value);
  }
  return key;
}

/// Values by name. A plain integer and its typed form are the same.
std::map<std::string, std::string> values_of(const std::vector<UNIT_PARAMETER>& parameters) {
  std::map<std::string, std::string> values;
  for (const UNIT_PARAMETER& parameter : parameters) {
    bool is_plain = !parameter.value.empty() && parameter.value.find_first_not_of("0123456789") == std::string::npos;
    values[parameter.name] = is_plain ? "D\"" + parameter.value + "\"" : parameter.value;
  }
  return values;
}

std::vector<UNIT_PARAMETER> parameters_of(const CDB_SGATE_COMPONENT& component) {
  std::vector<UNIT_PARAMETER> parameters;
  for (const CDB_SGATE_COMPONENT::PARAMETER& parameter : component.get_parameters())
    parameters.push_back({parameter.name, parameter.position, parameter.value, parameter.type});
  return parameters;
}

/// The components of a netlist that name a design unit, in the netlist's order.
std::vector<CDB_SGATE_COMPONENT*> components_of(const UNIT_RESULT& result) {
  std::vector<CDB_SGATE_COMPONENT*> components;
  if (!result.get_netlist()) return components;
  for (const auto& node : result.get_netlist()->get_nodes()) {
    if (node->get_sgate_type() != CDB_SGATE_COMPONENT_ENUM) continue;
    auto* component = static_cast<CDB_SGATE_COMPONENT*>(node.get());
    if (!component->is_host_primitive()) components.push_back(component);
  }
  return components;
}

std::string place_text(const std::string& file, unsigned line) {
  return file.empty() ? "its instance" : FIO_PATH(file).filename() + "(" + std::to_string(line) + ")";
}

} // namespace

bool has_errors() {
  return msg_get_default_report()->get_message_count(MSG_KIND_ERROR) != 0 || MSG_INTERNAL_ERROR::get_count() != 0;
}

bool RUN::execute() {
  if (!analyze_all() || !resolve()) return false;
  if (m_options.is_lint) return !has_errors();
  HDB_DESIGN_UNIT* top = choose_top();
  return top && elaborate_all(top) && !has_errors();
}

bool RUN::analyze_all() {
  STAGE stage(m_times, "analyse");
  // Analysis may add the source files of included modules; these are not analysed again.
  size_t count = m_project.get_source_files().size();
  for (size_t i = 0; i < count; i++) analyze_file(m_project.get_source_files()[i].get());
  return !has_errors();
}

bool RUN::analyze_file(HDB_SOURCE_FILE* file) {
  std::string name = file->get_unmodified_filename();
  if (!FIO_FILE_SYSTEM::is_file(name.c_str())) {
    report_host_message(HOST_MESSAGE_CANT_READ_FILE, {name});
    return false;
  }
  if (file->get_type() == HDB_SOURCE_FILE::TYPE_UNKNOWN) {
    report_host_message(HOST_MESSAGE_UNKNOWN_FILE_TYPE, {name}, name);
    return false;
  }
  progress("Analysing", name);
  FLOW_ANALYZE_INFO info(m_project, file);
  info.set_xml(m_options.write_xml);
  bool is_good = m_library.get_analyzer()->analyze(&info);
  for (HDB_DESIGN_UNIT* unit : info.entity_list) m_project.add_design_unit(unit);
  return is_good;
}

bool RUN::resolve() {
  STAGE stage(m_times, "resolve");
  progress("Resolving", "names");
  BASEX_ANALYZER* analyzer = m_library.get_analyzer();
  std::vector<std::string> files;
  std::vector<std::string> dependencies;
  bool is_good = analyzer->get_services().resolve_all_design_units(analyzer, &m_project, &files, &dependencies);
  return is_good && !has_errors();
}

HDB_DESIGN_UNIT* RUN::choose_top() {
  if (!m_options.top.empty()) {
    HDB_DESIGN_UNIT* unit = m_project.find_entity(m_options.top.c_str(), 1, nullptr, nullptr);
    if (!unit) { // only names of VHDL are the same in either case
      unit = m_project.find_entity(m_options.top.c_str(), 0, nullptr, nullptr);
      if (unit && unit->get_type() == HDB_DESIGN_UNIT::TYPE_VERILOG_MODULE) unit = nullptr;
    }
    if (!unit) report_host_message(HOST_MESSAGE_TOP_NOT_FOUND, {m_options.top});
    if (!unit || role_of(*unit) != HDB_ENTITY::ROLE_INTERFACE) return unit;
    report_host_message(HOST_MESSAGE_TOP_IS_INTERFACE, {m_options.top}, unit->get_location().get_file(),
                        unit->get_location().get_line());
    return nullptr;
  }
  std::vector<HDB_DESIGN_UNIT*> roots = find_roots();
  if (roots.size() == 1) return roots.front();
  if (has_errors()) return nullptr;
  // A unit with mistakes hides what it instantiates: its own messages help more than a list of candidates.
  if (m_unit_with_errors) return m_unit_with_errors;
  if (roots.empty()) {
    bool has_modules = !possible_tops(m_project).empty();
    report_host_message(has_modules ? HOST_MESSAGE_TOP_NONE : HOST_MESSAGE_NO_DESIGN_UNIT);
    return nullptr;
  }
  std::string names;
  for (HDB_DESIGN_UNIT* unit : roots) names += (names.empty() ? "\"" : ", \"") + std::string(unit->get_name()) + "\"";
  report_host_message(HOST_MESSAGE_TOP_AMBIGUOUS, {names});
  return nullptr;
}

/// The units that no other unit instantiates. What a unit instantiates is seen by elaborating its hierarchy with the
/// parameters' defaults; what that has to say is said again when it matters.
std::vector<HDB_DESIGN_UNIT*> RUN::find_roots() {
  STAGE stage(m_times, "choose top");
  std::vector<HDB_DESIGN_UNIT*> candidates = possible_tops(m_project);
  if (candidates.size() < 2) return candidates;

  std::set<HDB_DESIGN_UNIT*> instantiated;
  for (HDB_DESIGN_UNIT* unit : candidates) {
    FLOW_ELABORATE_INFO info(m_project, unit, {}, "", FLOW_ELABORATE_INFO::PLACE_BELOW,
                             FLOW_ELABORATE_INFO::MODE_HIERARCHY_ONLY);
    unit->get_elaborator()->elaborate(&info);
    std::unique_ptr<UNIT_RESULT> result = info.take_result();
    if (!result->success && !m_unit_with_errors) m_unit_with_errors = unit;
    for (CDB_SGATE_COMPONENT* component : components_of(*result))
      if (HDB_DESIGN_UNIT* child = find_unit(*component); child != unit) instantiated.insert(child);
  }
  std::erase_if(candidates, [&](HDB_DESIGN_UNIT* unit) { return instantiated.count(unit) != 0; });
  return candidates;
}

bool RUN::elaborate_all(HDB_DESIGN_UNIT* top) {
  STAGE stage(m_times, "elaborate");
  if (!elaborate({top, m_options.top_parameters, "", 0}, FLOW_ELABORATE_INFO::PLACE_TOP)) return false;
  for (size_t i = 0; i < m_worklist.size() && !has_errors(); i++) {
    JOB job = m_worklist[i];
    if (job.depth > MAX_DEPTH) {
      report_host_message(HOST_MESSAGE_TOO_DEEP, {std::to_string(MAX_DEPTH), job.unit->get_name()},
                          job.unit->get_location().get_file(), job.unit->get_location().get_line());
      return false;
    }
    elaborate(job, FLOW_ELABORATE_INFO::PLACE_BELOW);
  }
  if (has_errors()) return false;
  for (auto& [result, keys] : m_bindings)
    for (auto& [component, key] : keys) result->children[component] = m_results.at(key);
  check_recursion();
  name_modules(m_design);
  return !has_errors();
}

/// A result of the unit that was elaborated with exactly these values, some of them perhaps as defaults.
UNIT_RESULT* RUN::find_equal(const JOB& job, const std::vector<UNIT_PARAMETER>& parameters) const {
  auto results = m_by_unit.find(job.unit);
  if (results == m_by_unit.end()) return nullptr;
  for (auto& [architecture, result] : results->second)
    if (architecture == job.architecture && values_of(result->exact_parameters) == values_of(parameters)) return result;
  return nullptr;
}

/// Elaborates a unit, unless that was done with the same values; null when it gave no netlist. Its components join the
/// worklist.
UNIT_RESULT* RUN::elaborate(const JOB& job, FLOW_ELABORATE_INFO::PLACE place) {
  UNIT_RESULT*& raw = m_results[key_of(*job.unit, job.parameters, job.architecture)];
  raw = find_equal(job, job.parameters);
  if (raw) return raw;
  progress("Elaborating", job.unit->get_name());
  std::unique_ptr<UNIT_RESULT> result = elaborate_once(job, place);
  if (!result) return nullptr;
  // Instances that leave a default and those that give its value are told apart by their results only.
  raw = find_equal(job, result->exact_parameters);
  if (raw) return raw;
  raw = result.get();
  m_by_unit[job.unit].emplace_back(job.architecture, raw);
  m_design.units.push_back(std::move(result));
  bind_components(*raw, job.depth);
  return raw;
}

/// A unit whose components were found in the library directories only now is elaborated again, since it did not know
/// their ports; only the messages of the last time are reported.
std::unique_ptr<UNIT_RESULT> RUN::elaborate_once(const JOB& job, FLOW_ELABORATE_INFO::PLACE place) {
  for (;;) {
    FLOW_ELABORATE_INFO info(m_project, job.unit, job.parameters, job.architecture, place,
                             FLOW_ELABORATE_INFO::MODE_FULL);
    job.unit->get_elaborator()->elaborate(&info);
    std::vector<std::string> unused = info.get_unused_parameters();
    std::unique_ptr<UNIT_RESULT> result = info.take_result();
    if (result->success && find_in_library_dirs(*result)) continue;
    bool is_told = result->success && find_equal(job, result->exact_parameters);
    for (const auto& message : info.take_messages())
      if (!is_told) message->report(0);
    if (place == FLOW_ELABORATE_INFO::PLACE_TOP)
      for (const std::string& name : unused)
        report_host_message(HOST_MESSAGE_UNKNOWN_PARAMETER, {job.unit->get_name(), name},
                            job.unit->get_location().get_file(), job.unit->get_location().get_line());
    if (result->success && result->get_netlist()) return result;
    if (!has_errors()) report_host_message(HOST_MESSAGE_ELABORATION_FAILED, {job.unit->get_name()});
    return nullptr;
  }
}

/// Analyses what the library directories have for the components without a design unit. True when units came.
bool RUN::find_in_library_dirs(const UNIT_RESULT& result) {
  bool found = false;
  for (CDB_SGATE_COMPONENT* component : components_of(result)) {
    const std::string& name = component->get_entity_name();
    if (find_unit(*component) || !m_looked_for.insert(name).second) continue;
    for (const std::string& directory : m_options.library_dirs) {
      std::string path;
      for (const char* extension : {".v", ".sv"})
        if (path.empty() && FIO_FILE_SYSTEM::is_file((directory + "/" + name + extension).c_str()))
          path = directory + "/" + name + extension;
      if (path.empty()) continue;
      HDB_SOURCE_FILE* file = m_project.create_source_file(path, HDB_SOURCE_FILE::path_to_file_type(path));
      found |= analyze_file(file);
      break;
    }
  }
  return found && resolve();
}

void RUN::bind_components(UNIT_RESULT& result, unsigned depth) {
  std::map<const CDB_SGATE_COMPONENT*, std::string> keys;
  for (CDB_SGATE_COMPONENT* component : components_of(result)) {
    HDB_DESIGN_UNIT* unit = find_unit(*component);
    if (!unit) {
      report_black_box(*component);
      continue;
    }
    JOB job{unit, parameters_of(*component), component->get_architecture_name(), depth + 1};
    std::string key = key_of(*unit, job.parameters, job.architecture);
    keys[component] = key;
    if (m_results.emplace(key, nullptr).second) m_worklist.push_back(std::move(job));
  }
  m_bindings.emplace_back(&result, std::move(keys));
}

HDB_DESIGN_UNIT* RUN::find_unit(const CDB_SGATE_COMPONENT& component) const {
  const char* name = component.get_entity_name().c_str();
  const std::string& library = component.get_library_name();
  if (!library.empty())
    if (HDB_ENTITY* entity = m_project.find_entity(name, 1, library.c_str(), nullptr)) return entity;
  if (HDB_ENTITY* entity = m_project.find_entity(name, 1, nullptr, nullptr)) return entity;
  HDB_ENTITY* entity = m_project.find_entity(name, 0, nullptr, nullptr);
  bool is_vhdl = entity && entity->get_type() == HDB_DESIGN_UNIT::TYPE_VHDL_ENTITY;
  return is_vhdl ? entity : nullptr;
}

void RUN::report_black_box(const CDB_SGATE_COMPONENT& component) {
  if (!m_black_boxes.insert(component.get_entity_name()).second) return;
  report_host_message(
      HOST_MESSAGE_BLACK_BOX,
      {component.get_entity_name(), place_text(component.get_source_file(), component.get_source_line())},
      component.get_source_file(), static_cast<int>(component.get_source_line()));
}

/// A unit that reaches itself with the same parameters would be a hierarchy without end.
void RUN::check_recursion() {
  enum STATE { NEW, OPEN, DONE };
  std::map<const UNIT_RESULT*, STATE> states;
  struct FRAME {
    const UNIT_RESULT* result;
    std::vector<CDB_SGATE_COMPONENT*> components;
    size_t next;
  };
  std::vector<FRAME> stack{{m_design.get_top(), components_of(*m_design.get_top()), 0}};
  states[m_design.get_top()] = OPEN;
  while (!stack.empty()) {
    FRAME& frame = stack.back();
    if (frame.next == frame.components.size()) {
      states[frame.result] = DONE;
      stack.pop_back();
      continue;
    }
    const CDB_SGATE_COMPONENT* component = frame.components[frame.next++];
    auto child = frame.result->children.find(component);
    if (child == frame.result->children.end() || states[child->second] == DONE) continue;
    if (states[child->second] == OPEN) {
      report_host_message(
          HOST_MESSAGE_RECURSIVE_HIERARCHY,
          {child->second->unit->get_name(), place_text(component->get_source_file(), component->get_source_line())},
          component->get_source_file(), static_cast<int>(component->get_source_line()));
      return;
    }
    states[child->second] = OPEN;
    stack.push_back({child->second, components_of(*child->second), 0});
  }
}
