// The report: what each module holds, by kind and width, and the time and memory of the run.
#include "writer.h"

#include <algorithm>
#include <fmt/format.h>
#include <map>

#include "acf.h"

namespace {

constexpr const char* comb_names[] = {"and", "or", "xor", "not", "buf"};

const char* operator_name(CDB_OPERATOR_TYPE type) {
  switch (type) {
  case CDB_OPERATOR_ADDER: return "add";
  case CDB_OPERATOR_MULTIPLIER: return "multiply";
  case CDB_OPERATOR_DIVIDER: return "divide";
  case CDB_OPERATOR_MODULO: return "modulo";
  case CDB_OPERATOR_SHIFT_LEFT: return "shift left";
  case CDB_OPERATOR_SHIFT_RIGHT: return "shift right";
  case CDB_OPERATOR_ROTATE_LEFT: return "rotate left";
  case CDB_OPERATOR_ROTATE_RIGHT: return "rotate right";
  case CDB_OPERATOR_LESS_THAN: return "less than";
  case CDB_OPERATOR_N_TO_1_MUX: return "n-to-1 mux";
  case CDB_OPERATOR_SELECTOR: return "selector";
  case CDB_OPERATOR_DECODER: return "decoder";
  case CDB_OPERATOR_ADD_SUB: return "add or subtract";
  case CDB_OPERATOR_EQUAL: return "equal";
  }
  return "operator";
}

unsigned widest(const CDB_SGATE_OPERATOR& node) {
  return std::max({node.get_input_width(CDB_OPERATOR_INPUT_1), node.get_input_width(CDB_OPERATOR_INPUT_2),
                   node.get_output_width(CDB_OPERATOR_OUTPUT)});
}

/// The line under which a node is counted.
std::string kind_of(const CDB_SGATE_NODE& node) {
  switch (node.get_sgate_type()) {
  case CDB_SGATE_BUFFER_ENUM: {
    bool keeps = static_cast<const CDB_SGATE_BUFFER&>(node).get_buffer_type() == CDB_BUFFER_KEEP;
    return keeps ? "keep buffers" : "buffers";
  }
  case CDB_SGATE_COMB_ENUM:
    return fmt::format("gates, {}", comb_names[static_cast<const CDB_SGATE_COMB&>(node).get_comb_type()]);
  case CDB_SGATE_DFF_ENUM: return "registers";
  case CDB_SGATE_STATE_ENUM: return "state registers";
  case CDB_SGATE_LATCH_ENUM: return "latches";
  case CDB_SGATE_MUX_ENUM: return "muxes";
  case CDB_SGATE_IO_BUF_ENUM: return "tristate drivers";
  case CDB_SGATE_TRI_BUS_ENUM: return "nets with several drivers";
  case CDB_SGATE_OPERATOR_ENUM: {
    const auto& oper = static_cast<const CDB_SGATE_OPERATOR&>(node);
    return fmt::format("operators, {}{}, {} bits", operator_name(oper.get_operator_type()),
                       oper.is_signed() ? " signed" : "", widest(oper));
  }
  case CDB_SGATE_ASYNCHRONOUS_RAM_ENUM: {
    const auto& ram = static_cast<const CDB_SGATE_ASYNCHRONOUS_RAM&>(node);
    const auto& sizes = ram.get_sizes(CDB_SGATE_ASYNCHRONOUS_RAM::PORT_A);
    return fmt::format("memories, {} x {}", ram.get_read_depth(), std::max(sizes.read_data, sizes.write_data));
  }
  case CDB_SGATE_COMPONENT_ENUM: return "instances";
  case CDB_SGATE_IO_ENUM: return "port bits";
  }
  return "nodes";
}

using COUNTS = std::map<std::string, unsigned long>;

COUNTS count_nodes(const MODULE_VIEW& view) {
  COUNTS counts;
  for (const auto& node : view.get_result().get_netlist()->get_nodes()) {
    bool is_adder = node->get_sgate_type() == CDB_SGATE_COMPONENT_ENUM &&
                    is_full_adder(static_cast<const CDB_SGATE_COMPONENT&>(*node));
    counts[is_adder ? "full adders" : kind_of(*node)]++;
  }
  return counts;
}

std::string black_boxes(const DESIGN_VIEW& design, const MODULE_VIEW& view) {
  std::map<std::string, unsigned> names;
  for (const auto& node : view.get_result().get_netlist()->get_nodes()) {
    if (node->get_sgate_type() != CDB_SGATE_COMPONENT_ENUM) continue;
    const auto& component = static_cast<const CDB_SGATE_COMPONENT&>(*node);
    if (!is_full_adder(component) && !design.get_child(view, component)) names[component.get_entity_name()]++;
  }
  std::string text;
  for (const auto& [name, count] : names) text += fmt::format("  {:>8}  black box {}\n", count, name);
  return text;
}

std::string machines(const UNIT_RESULT& result) {
  std::string text;
  const CDB_SGATE_HIERARCHY& hierarchy = *result.hierarchy;
  for (const auto& machine : hierarchy.get_machines()) {
    text += fmt::format("  state machine {}: {} states\n", machine->get_string_name(), machine->get_states().size());
    for (const CDB_SGATE_STATE* state : machine->get_states()) {
      std::string code;
      for (bool bit : state->get_user_encoding()) code += bit ? '1' : '0';
      text += fmt::format("    {}{}{}\n", state->get_state_name(), code.empty() ? "" : " = " + code,
                          state->is_reset_state() ? " (reset)" : "");
    }
  }
  return text;
}

/// What the sources ask of later steps, by the names in the netlist.
std::string assignments(const UNIT_RESULT& result) {
  std::string text;
  for (const NAMED_ASSIGNMENT& assignment : result.assignments) {
    const char* name = acf_get_variable_name(assignment.variable);
    text += fmt::format("  assignment {}{}", name ? std::string(name) + " = " : "", assignment.value);
    text += assignment.node.empty() ? "\n" : fmt::format(" on {}\n", assignment.node);
  }
  return text;
}

std::string counts_text(const COUNTS& counts) {
  std::string text;
  for (const auto& [kind, count] : counts) text += fmt::format("  {:>8}  {}\n", count, kind);
  return text;
}

} // namespace

std::string write_report(const DESIGN_VIEW& design, const std::vector<STAGE_TIME>& times) {
  std::string text;
  COUNTS total;
  std::map<const MODULE_VIEW*, unsigned long> occurrences = count_occurrences(design);
  for (const auto& module : design.get_modules()) {
    const UNIT_RESULT& result = module->get_result();
    text += fmt::format("module {}", result.module_name);
    for (const UNIT_PARAMETER& parameter : result.used_parameters)
      text += fmt::format(" {}={}", parameter.name, parameter.value);
    unsigned long count = occurrences[module.get()];
    text += count == 1 ? " (once)\n" : fmt::format(" ({} times)\n", count);
    COUNTS counts = count_nodes(*module);
    text += counts_text(counts) + black_boxes(design, *module) + machines(result) + assignments(result) + "\n";
    for (const auto& [kind, number] : counts) total[kind] += number * count;
  }
  text += "whole design\n" + counts_text(total);
  if (times.empty()) return text;
  text += "\n" + write_times(times);
  return text;
}

std::string write_times(const std::vector<STAGE_TIME>& times) {
  std::string text = "time and peak memory\n";
  double seconds = 0;
  double megabytes = 0;
  for (const STAGE_TIME& stage : times) {
    text += fmt::format("  {:>8.3f} s {:>8.1f} MB  {}\n", stage.seconds, stage.peak_megabytes, stage.name);
    seconds += stage.seconds;
    megabytes = std::max(megabytes, stage.peak_megabytes);
  }
  return text + fmt::format("  {:>8.3f} s {:>8.1f} MB  in all\n", seconds, megabytes);
}
