// Reads the terms of a memory node and its initialisation file.
#include "ram_view.h"

#include <algorithm>
#include <unordered_map>

#include "mif_file.h"

namespace {

using RAM = CDB_SGATE_ASYNCHRONOUS_RAM;

/// Term types of a memory's ports.
struct RAM_TERMS {
  int write_enable, byte_enable, write_data, write_address, read_address, output;
};
constexpr RAM_TERMS terms_of_port[] = {
    {CDB_TERM_RAM_WRITE_ENABLE_A, CDB_TERM_RAM_BYTE_ENABLE_A, CDB_TERM_DATA, CDB_TERM_RAM_WRITE_ADDRESS_A,
     CDB_TERM_RAM_READ_ADDRESS_A, CDB_TERM_OUTPUT},
    {CDB_TERM_RAM_WRITE_ENABLE_B, CDB_TERM_RAM_BYTE_ENABLE_B, CDB_TERM_RAM_DATA_B, CDB_TERM_RAM_WRITE_ADDRESS_B,
     CDB_TERM_RAM_READ_ADDRESS_B, CDB_TERM_RAM_OUTPUT_B},
};

unsigned narrowest_port(const RAM& ram) {
  unsigned width = 0;
  for (RAM::PORT port : {RAM::PORT_A, RAM::PORT_B})
    for (unsigned size : {ram.get_sizes(port).read_data, ram.get_sizes(port).write_data})
      if (size && (!width || size < width)) width = size;
  return std::max(width, 1U);
}

} // namespace

RAM_VIEW::RAM_VIEW(const MODULE_VIEW& view, const RAM& ram) : width(narrowest_port(ram)) {
  for (RAM::PORT port : {RAM::PORT_A, RAM::PORT_B}) {
    const RAM::PORT_SIZES& sizes = ram.get_sizes(port);
    const RAM_TERMS& terms = terms_of_port[port];
    if (sizes.write_data) {
      unsigned words = std::max(sizes.write_data / width, 1U);
      writes.push_back({view.input(ram.find_iterm(terms.write_enable)),
                        view.input_bits(ram, terms.write_address, sizes.write_address),
                        view.input_bits(ram, terms.write_data, sizes.write_data),
                        view.input_bits(ram, terms.byte_enable, sizes.byte_enable), words});
      move_registers_into(view, writes.back());
      depth = std::max(depth, static_cast<unsigned long>(ram.get_write_depth()) * words);
    }
    if (sizes.read_data) {
      unsigned words = std::max(sizes.read_data / width, 1U);
      reads.push_back({view.input_bits(ram, terms.read_address, sizes.read_address),
                       view.output_bits(ram, terms.output, sizes.read_data), words});
      depth = std::max(depth, static_cast<unsigned long>(ram.get_read_depth()) * words);
    }
  }
  if (!ram.get_mif_file().empty()) read_contents(ram.get_mif_file());
}

namespace {

/// Registers without asynchronous controls, by the net that they drive.
std::unordered_map<int, const CDB_SGATE_NODE*> plain_registers(const MODULE_VIEW& view) {
  std::unordered_map<int, const CDB_SGATE_NODE*> registers;
  for (const NODE_GROUP& group : view.get_groups()) {
    if (group.first()->get_sgate_type() != CDB_SGATE_DFF_ENUM) continue;
    REGISTER_CONTROLS controls = view.controls(*group.first());
    BIT inactive{controls.is_async_low ? BIT::ONE : BIT::ZERO};
    auto is_inactive = [&](BIT control) { return control == inactive || control.kind == BIT::ZERO; };
    if (!is_inactive(controls.reset) || !is_inactive(controls.set) || controls.load.kind != BIT::ZERO) continue;
    BITS outputs = view.group_outputs(group);
    for (size_t i = 0; i < outputs.size(); i++)
      if (outputs[i].is_net()) registers[outputs[i].net] = group.nodes[i];
  }
  return registers;
}

} // namespace

/// A port whose enable, address and data are all held in registers of one clock writes what these are about to hold, at
/// the edge at which they take it.
void RAM_VIEW::move_registers_into(const MODULE_VIEW& view, RAM_WRITE_PORT& port) {
  std::unordered_map<int, const CDB_SGATE_NODE*> registers = plain_registers(view);
  const CDB_SGATE_NODE* first = nullptr;
  bool is_clocked = true;
  auto next_value = [&](BIT bit) {
    if (!bit.is_net()) return bit;
    auto found = registers.find(bit.net);
    if (found == registers.end()) {
      is_clocked = false;
      return bit;
    }
    if (!first) first = found->second;
    REGISTER_CONTROLS controls = view.controls(*found->second);
    REGISTER_CONTROLS of_first = view.controls(*first);
    if (controls.clock != of_first.clock || controls.clock_falls != of_first.clock_falls) is_clocked = false;
    return view.group_inputs({{found->second}}, CDB_TERM_DATA).front();
  };
  RAM_WRITE_PORT moved = port;
  moved.enable = next_value(port.enable);
  for (BITS* bits : {&moved.address, &moved.data, &moved.lanes})
    for (BIT& bit : *bits) bit = next_value(bit);
  if (!is_clocked || !first) return;
  port = moved;
  port.is_clocked = true;
  port.clock = view.controls(*first).clock;
  port.clock_falls = view.controls(*first).clock_falls;
}

void RAM_VIEW::read_contents(const std::string& name) {
  MIF_FILE file;
  if (!file.read(name) || file.get_width() % width != 0) return;
  contents.assign(depth, std::string(width, 'x'));
  unsigned long parts = file.get_width() / width;
  for (const auto& [address, word] : file.get_words())
    for (unsigned long part = 0; part < parts; part++)
      if (address * parts + part < depth)
        contents[address * parts + part] = word.substr(word.size() - (part + 1) * width, width);
}
