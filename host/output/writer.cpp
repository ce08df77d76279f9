// What the writers share: views of a design, connections of components, parameter values, and the choice by extension.
#include "writer.h"

#include <algorithm>
#include <map>

#include "fio.h"
#include "flow/host_messages.h"
#include "htl.h"
#include "schematic.h"

DESIGN_VIEW::DESIGN_VIEW(const DESIGN& design) {
  for (const auto& result : design.units) {
    m_modules.push_back(std::make_unique<MODULE_VIEW>(*result));
    m_by_result[result.get()] = m_modules.back().get();
  }
}

const MODULE_VIEW* DESIGN_VIEW::get_module(const UNIT_RESULT* result) const {
  auto at = m_by_result.find(result);
  return at == m_by_result.end() ? nullptr : at->second;
}

const MODULE_VIEW* DESIGN_VIEW::get_child(const MODULE_VIEW& parent, const CDB_SGATE_COMPONENT& component) const {
  auto at = parent.get_result().children.find(&component);
  return at == parent.get_result().children.end() ? nullptr : get_module(at->second);
}

bool is_full_adder(const CDB_SGATE_COMPONENT& component) {
  return component.is_host_primitive() && component.get_entity_name() == "fadd";
}

PORTS_BY_NAME ports_by_name(const CDB_SGATE_COMPONENT& component, const MODULE_VIEW& child) {
  PORTS_BY_NAME ports;
  for (const auto& port : component.get_ports()) {
    if (port->get_position() < 0) {
      ports[port->get_full_name()] = port.get();
      continue;
    }
    size_t position = static_cast<size_t>(port->get_position());
    if (position >= child.get_ports().size()) continue;
    const SIGNAL& formal = *child.get_ports()[position];
    size_t offset = port->get_index() == CDB_COMPONENT_PORT::NO_INDEX ? 0 : static_cast<size_t>(port->get_index());
    if (offset < formal.ios.size() && formal.ios[offset]) ports[formal.ios[offset]->get_string_name()] = port.get();
  }
  return ports;
}

std::vector<std::pair<const SIGNAL*, BITS>>
connections_of(const MODULE_VIEW& view, const CDB_SGATE_COMPONENT& component, const MODULE_VIEW& child) {
  PORTS_BY_NAME ports = ports_by_name(component, child);
  std::vector<std::pair<const SIGNAL*, BITS>> connections;
  for (const SIGNAL* port : child.get_ports()) {
    BITS bits;
    for (const CDB_SGATE_IO* io : port->ios) {
      auto at = io ? ports.find(io->get_string_name()) : ports.end();
      bits.push_back(at == ports.end() ? BIT{BIT::UNCONNECTED} : view.component_port(at->second));
    }
    connections.emplace_back(port, std::move(bits));
  }
  return connections;
}

std::vector<BLACK_BOX_PORT> black_box_ports(const MODULE_VIEW& view, const CDB_SGATE_COMPONENT& component) {
  using KEY = std::pair<std::string, int>;
  std::vector<KEY> order;
  std::map<KEY, std::vector<const CDB_COMPONENT_PORT*>> by_port;
  for (const auto& port : component.get_ports()) {
    KEY key{port->get_name(), port->get_position()};
    if (by_port[key].empty()) order.push_back(key);
    by_port[key].push_back(port.get());
  }
  if (component.has_positional_ports())
    std::sort(order.begin(), order.end(), [](const KEY& left, const KEY& right) { return left.second < right.second; });
  std::vector<BLACK_BOX_PORT> ports;
  for (const KEY& key : order) {
    // Positions that the instance leaves open keep their place.
    while (static_cast<int>(ports.size()) < key.second) ports.push_back({"", CDB_IO_INPUT, {}});
    std::vector<const CDB_COMPONENT_PORT*>& bits = by_port[key];
    std::sort(bits.begin(), bits.end(), [](const CDB_COMPONENT_PORT* left, const CDB_COMPONENT_PORT* right) {
      return left->get_index() < right->get_index();
    });
    BLACK_BOX_PORT port{key.first, bits.front()->get_direction(), {}};
    for (const CDB_COMPONENT_PORT* bit : bits) port.bits.push_back(view.component_port(bit));
    ports.push_back(std::move(port));
  }
  return ports;
}

std::map<const MODULE_VIEW*, unsigned long> count_occurrences(const DESIGN_VIEW& design) {
  // Modules are in the order of the worklist, which is no order of dependence; repeat until nothing changes.
  std::map<const MODULE_VIEW*, unsigned long> result;
  std::map<const MODULE_VIEW*, unsigned long> level{{design.get_modules().front().get(), 1}};
  while (!level.empty()) {
    std::map<const MODULE_VIEW*, unsigned long> next;
    for (const auto& [view, count] : level) {
      result[view] += count;
      for (const auto& node : view->get_result().get_netlist()->get_nodes()) {
        if (node->get_sgate_type() != CDB_SGATE_COMPONENT_ENUM) continue;
        const MODULE_VIEW* child = design.get_child(*view, static_cast<const CDB_SGATE_COMPONENT&>(*node));
        if (child) next[child] += count;
      }
    }
    level = std::move(next);
  }
  return result;
}

namespace {

/// A notation of values: the form of the text, what it is, and how Verilog writes it ("%" is the group's text, "#" its
/// number of binary digits).
struct NOTATION {
  const char* form;
  char kind;
  const char* verilog;
  unsigned bits_per_digit;
};

constexpr NOTATION notations[] = {
    {"\"(.*)\"", 's', "%", 0},
    {"(-?[0-9]+)", 'i', "%", 0},
    {"([0-9]+'[bB][01xXzZ]+)", 'i', "%", 0},
    {"(-?[0-9]*\\.[0-9]+)", 'r', "%", 0},
    {"[sS]\"(.*)\"", 's', "%", 0},
    {"[bB]\"([01xXzZ]+)\"", 'i', "#'b%", 1},
    {"[sS][bB]\"([01xXzZ]+)\"", 'i', "#'sb%", 1},
    {"[oOqQ]\"([0-7]+)\"", 'i', "#'o%", 3},
    {"[sS][oOqQ]\"([0-7]+)\"", 'i', "#'so%", 3},
    {"[xXhH]\"([0-9a-fA-F]+)\"", 'i', "#'h%", 4},
    {"[sS][xXhH]\"([0-9a-fA-F]+)\"", 'i', "#'sh%", 4},
    {"[uU]?[dD]\" *([+-]?[0-9]+)\"", 'i', "%", 0},
    {"[uU]?[fF]\"([+-]?[0-9]+(?:\\.[0-9]+)?(?:[eE][+-]?[0-9]+)?)\"", 'r', "%", 0},
    {"[rR]\"([01xXzZ])\"", 'i', "1'b%", 0},
};

} // namespace

PARAMETER_VALUE read_parameter_value(const std::string& text) {
  for (const NOTATION& notation : notations) {
    std::vector<std::string> groups;
    if (!HTL_REGEXP(notation.form).match(text.c_str(), &groups)) continue;
    PARAMETER_VALUE value{notation.kind, ""};
    for (const char* c = notation.verilog; *c; c++) {
      if (*c == '%')
        value.text += groups.front();
      else if (*c == '#')
        value.text += std::to_string(groups.front().size() * notation.bits_per_digit);
      else
        value.text += *c;
    }
    return value;
  }
  return {'s', text};
}

namespace {

using WRITER = std::string (*)(const DESIGN_VIEW&, const std::vector<STAGE_TIME>&);

struct FORMAT {
  const char* extension;
  WRITER write;
};

constexpr FORMAT formats[] = {
    {"v", [](const DESIGN_VIEW& design, const std::vector<STAGE_TIME>&) { return write_verilog(design); }},
    {"json", [](const DESIGN_VIEW& design, const std::vector<STAGE_TIME>&) { return write_json(design); }},
    {"dot", [](const DESIGN_VIEW& design, const std::vector<STAGE_TIME>&) { return write_dot(design); }},
    {"svg", [](const DESIGN_VIEW& design, const std::vector<STAGE_TIME>&) { return write_svg(design); }},
    {"txt", write_report},
};

const FORMAT* format_of(const std::string& path) {
  std::string extension = FIO_PATH(path).extension();
  for (const FORMAT& format : formats)
    if (extension == format.extension) return &format;
  return nullptr;
}

} // namespace

bool is_known_output(const std::string& path) { return format_of(path) != nullptr; }

bool is_report(const std::string& path) { return is_known_output(path) && format_of(path)->write == write_report; }

bool OUTPUT_FILES::write(const std::string& path, const DESIGN_VIEW& design, const std::vector<STAGE_TIME>& times) {
  for (const auto& [name, file] : m_files)
    if (name == path) return true;
  auto file = std::make_unique<FIO_OUTPUT_FILE>(path);
  if (!file->is_open()) return fail(path);
  file->write(format_of(path)->write(design, times));
  m_files.emplace_back(path, std::move(file));
  return true;
}

bool OUTPUT_FILES::commit() {
  for (auto& [path, file] : m_files)
    if (!file->commit()) return fail(path);
  m_files.clear();
  return true;
}

bool OUTPUT_FILES::fail(const std::string& path) {
  report_host_message(HOST_MESSAGE_CANT_WRITE_FILE, {path});
  m_files.clear();
  return false;
}
