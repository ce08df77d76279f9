// The schematic as a graph for Graphviz.
#include "schematic.h"

#include <fmt/format.h>

namespace {

/// Texts of record labels: what has a meaning there is escaped.
std::string record_text(const std::string& text) {
  std::string result;
  for (char c : text) {
    if (std::string("{}|<>\"\\ ").find(c) != std::string::npos) result += '\\';
    result += c;
  }
  return result;
}

std::string quoted(const std::string& text) {
  std::string result = "\"";
  for (char c : text) {
    if (c == '"' || c == '\\') result += '\\';
    result += c;
  }
  return result + '"';
}

std::string pins_text(const std::vector<SCHEMATIC_PIN>& pins, char side) {
  std::string text;
  for (size_t i = 0; i < pins.size(); i++) {
    std::string shown = pins[i].label + (pins[i].fixed.empty() ? "" : "=" + pins[i].fixed);
    text += fmt::format("{}<{}{}> {}", i == 0 ? "" : "|", side, i, record_text(shown));
  }
  return text;
}

void write_block(std::string& text, const SCHEMATIC_BLOCK& block, size_t number) {
  static constexpr const char* port_shapes[] = {"cds", "cds", "hexagon"};
  std::string tooltip = block.place.empty() ? "" : ", tooltip=" + quoted(block.place);
  if (block.shape >= SCHEMATIC_BLOCK::SHAPE_INPUT) {
    std::string fixed = block.inputs.empty() || block.inputs[0].fixed.empty() ? "" : " = " + block.inputs[0].fixed;
    text += fmt::format("  n{} [shape={}, label={}{}];\n", number,
                        port_shapes[block.shape - SCHEMATIC_BLOCK::SHAPE_INPUT], quoted(block.title + fixed), tooltip);
    return;
  }
  std::string middle = block.shape == SCHEMATIC_BLOCK::SHAPE_MUX        ? "mux"
                       : block.shape == SCHEMATIC_BLOCK::SHAPE_REGISTER ? "register"
                                                                        : block.title;
  if (block.is_inverted) middle += " inverted";
  if (!block.name.empty()) middle += "\n" + block.name;
  std::string label = record_text(middle);
  for (size_t at = label.find('\n'); at != std::string::npos; at = label.find('\n')) label.replace(at, 1, "\\n");
  text += fmt::format("  n{} [label=\"{{{{{}}}|{}|{{{}}}}}\"{}];\n", number, pins_text(block.inputs, 'i'), label,
                      pins_text(block.outputs, 'o'), tooltip);
}

std::string pin_name(const SCHEMATIC& schematic, size_t block, size_t pin, char side) {
  bool is_port = schematic.get_blocks()[block].shape >= SCHEMATIC_BLOCK::SHAPE_INPUT;
  return is_port ? fmt::format("n{}", block) : fmt::format("n{}:{}{}", block, side, pin);
}

} // namespace

std::string write_dot(const DESIGN_VIEW& design) {
  SCHEMATIC schematic(*design.get_modules().front());
  std::string text = fmt::format("digraph {} {{\n  rankdir=LR;\n  node [shape=record, fontsize=10];\n"
                                 "  edge [arrowsize=0.5, fontsize=8];\n",
                                 quoted(schematic.get_name()));
  for (size_t i = 0; i < schematic.get_blocks().size(); i++) write_block(text, schematic.get_blocks()[i], i);
  for (const SCHEMATIC_WIRE& wire : schematic.get_wires()) {
    const SCHEMATIC_PIN& source = schematic.source_of(wire);
    for (const SCHEMATIC_LOAD& load : wire.loads) {
      const std::string& label = load.part.empty() ? source.full_name : load.part;
      text += fmt::format("  {} -> {} [label={}{}];\n", pin_name(schematic, wire.block, wire.pin, 'o'),
                          pin_name(schematic, load.block, load.pin, 'i'), quoted(label),
                          source.width > 1 ? ", penwidth=2" : "");
    }
  }
  return text + "}\n";
}
