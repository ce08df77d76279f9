// Symbol, include, component and instantiation files: one text for each of a unit's ports and parameters.
#include <fmt/format.h>

#include "fio.h"
#include "flow/host_messages.h"
#include "gio.h"
#include "hdb_design_unit.h"
#include "sio.h"

namespace {

enum PARAMETER_PART { PARAMETER_NAME, PARAMETER_KEYWORD, PARAMETER_VALUE };

bool write_file(const std::string& path, const std::string& text) {
  FIO_OUTPUT_FILE file(path);
  if (file.is_open()) file.write(text);
  if (file.is_open() && file.commit()) return true;
  report_host_message(HOST_MESSAGE_CANT_WRITE_FILE, {path});
  return false;
}

/// One piece per element with commas and line ends in between.
template <class LIST, class PIECE> std::string listed(const LIST& list, const char* separator, const PIECE& piece) {
  std::string text;
  for (const auto& element : list) text += (text.empty() ? "" : separator) + piece(element);
  return text;
}

std::string range_text(const HDB_PORT& port) { return port.range.empty() ? "" : "[" + port.range + "]"; }

/// "7:0" as VHDL has it; a range that is no pair of numbers counts down, too.
std::string vhdl_type(const HDB_PORT& port) {
  if (port.range.empty()) return "std_logic";
  size_t colon = port.range.find(':');
  std::string left = port.range.substr(0, colon);
  std::string right = colon == std::string::npos ? "0" : port.range.substr(colon + 1);
  return "std_logic_vector(" + left + " downto " + right + ")";
}

} // namespace

void GIO_SYMBOL_CREATOR::create_symbol_file(const std::string& path) const {
  static constexpr const char* sides[] = {"left", "right", "right", "right"};
  static constexpr const char* directions[] = {"input", "output", "inout", "buffer"};
  std::string text = fmt::format("(symbol \"{}\"\n", m_name);
  for (const auto& parameter : m_entity->get_parameters())
    text += fmt::format("  (parameter \"{}\" \"{}\")\n", parameter[PARAMETER_NAME], parameter[PARAMETER_VALUE]);
  for (const auto& port : m_entity->get_ports())
    text += fmt::format("  (pin \"{}{}\" {} (side {}))\n", port->name, range_text(*port), directions[port->direction],
                        sides[port->direction]);
  write_file(path, text + ")\n");
}

void GIO_SYMBOL_CREATOR::create_include_file(const std::string& path) const {
  std::string parameters = listed(m_entity->get_parameters(), ", ", [](const auto& parameter) {
    return fmt::format("parameter {} = {}", parameter[PARAMETER_NAME], parameter[PARAMETER_VALUE]);
  });
  std::string ports = listed(m_entity->get_ports(), ",\n  ", [](const auto& port) {
    static constexpr const char* directions[] = {"input", "output", "inout", "output"};
    std::string range = range_text(*port);
    return fmt::format("{} {}{}{}", directions[port->direction], range, range.empty() ? "" : " ", port->name);
  });
  write_file(path, fmt::format("extern module {}{} (\n  {});\n", m_name,
                               parameters.empty() ? "" : " #(" + parameters + ")", ports));
}

bool SIO_GENERATOR::create_component_file(const std::string& path) const {
  std::string text = fmt::format("component {}\n", m_entity->get_name());
  std::string generics = listed(m_entity->get_parameters(), ";\n    ", [](const auto& parameter) {
    const std::string& value = parameter[PARAMETER_VALUE];
    return fmt::format("{} : integer{}", parameter[PARAMETER_NAME], value.empty() ? "" : " := " + value);
  });
  std::string ports = listed(m_entity->get_ports(), ";\n    ", [](const auto& port) {
    static constexpr const char* directions[] = {"in", "out", "inout", "buffer"};
    return fmt::format("{} : {} {}", port->name, directions[port->direction], vhdl_type(*port));
  });
  if (!generics.empty()) text += "  generic (\n    " + generics + ");\n";
  if (!ports.empty()) text += "  port (\n    " + ports + ");\n";
  return write_file(path + ".cmp", text + "end component;\n");
}

bool SIO_GENERATOR::create_instantiation_file(const std::string& path, SIO::HDL_LANGUAGE language) const {
  bool is_verilog = language == SIO::HDL_VERILOG;
  auto map = [&](const auto& list, const auto& name) {
    return listed(list, ",\n    ", [&](const auto& element) {
      const std::string& formal = name(element);
      return is_verilog ? fmt::format(".{}({}_sig)", formal, formal) : fmt::format("{} => {}_sig", formal, formal);
    });
  };
  std::string ports = map(m_entity->get_ports(), [](const auto& port) -> const std::string& { return port->name; });
  std::string parameters = listed(m_entity->get_parameters(), ",\n    ", [&](const auto& parameter) {
    return fmt::format(is_verilog ? fmt::runtime(".{}({})") : fmt::runtime("{} => {}"), parameter[PARAMETER_NAME],
                       parameter[PARAMETER_VALUE]);
  });
  std::string name = m_entity->get_name();
  std::string text;
  if (is_verilog)
    text = fmt::format("{}{} {}_inst (\n    {});\n", name, parameters.empty() ? "" : " #(\n    " + parameters + ")",
                       name, ports);
  else
    text = fmt::format("{}_inst : {}{}\n  port map (\n    {});\n", name, name,
                       parameters.empty() ? "" : "\n  generic map (\n    " + parameters + ")", ports);
  return write_file(path + (is_verilog ? "_inst.v" : "_inst.vhd"), text);
}
