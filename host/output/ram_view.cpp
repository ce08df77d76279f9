// Reads the terms of a memory node and its initialisation file.
#include "ram_view.h"

#include <algorithm>
#include <unordered_set>

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

/// The register whose output a bit is; null for other drivers.
const CDB_SGATE_NODE* register_of(const MODULE_VIEW& view, BIT bit) {
  const CDB_SGATE_NODE* node = view.driver_of(bit);
  bool is_register = node && node->get_sgate_type() == CDB_SGATE_DFF_ENUM && !node->get_first_oterm()->is_inverted();
  return is_register ? node : nullptr;
}

bool is_or(const CDB_SGATE_NODE* node) {
  return node && node->get_sgate_type() == CDB_SGATE_COMB_ENUM && !node->get_first_oterm()->is_inverted() &&
         static_cast<const CDB_SGATE_COMB*>(node)->get_comb_type() == CDB_COMB_OR;
}

/// Whether a bit is 1 whenever one of the given bits is: a tree of ors over all of them.
bool is_implied_by(const MODULE_VIEW& view, BIT bit, const BITS& bits) {
  std::unordered_set<int> nets;
  std::vector<BIT> open{bit};
  while (!open.empty()) {
    BIT next = open.back();
    open.pop_back();
    if (next.kind == BIT::ONE) return true;
    if (!next.is_net() || !nets.insert(next.net).second) continue;
    const CDB_SGATE_NODE* node = view.driver_of(next);
    if (!is_or(node)) continue;
    for (const auto& term : node->get_iterms()) open.push_back(view.input(term.get()));
  }
  return std::all_of(bits.begin(), bits.end(), [&](const BIT& part) {
    return part.kind == BIT::ZERO || (part.is_net() && nets.count(part.net));
  });
}

/// Moves a write port before the registers that hold what it writes: it then writes what these are about to hold, at
/// the edge at which they take it. What decides whether it writes may have a reset, in whose presence it does not.
class PORT_MOVER {
public:
  explicit PORT_MOVER(const MODULE_VIEW& view) : m_view(view) {}

  /// False when the port cannot be moved; it is left as it was then.
  bool move(RAM_WRITE_PORT& port) {
    RAM_WRITE_PORT moved = port;
    moved.enable = next_value(port.enable, DECIDES);
    for (BIT& lane : moved.lanes) lane = next_value(lane, DECIDES);
    for (BITS* bits : {&moved.address, &moved.data})
      for (BIT& bit : *bits) bit = next_value(bit, IS_WRITTEN);
    if (!m_is_movable || !m_first) return false;
    port = moved;
    port.is_clocked = true;
    REGISTER_CONTROLS controls = m_view.controls(*m_first);
    port.clock = controls.clock;
    port.clock_falls = controls.clock_falls;
    port.reset = m_reset;
    port.reset_is_low = m_reset_is_low;
    return true;
  }

private:
  enum ROLE { DECIDES, IS_WRITTEN };

  BIT next_value(BIT bit, ROLE role) {
    if (!bit.is_net()) return bit;
    const CDB_SGATE_NODE* node = register_of(m_view, bit);
    if (!node || !may_move(m_view.controls(*node), role)) {
      m_is_movable = false;
      return bit;
    }
    if (!m_first) m_first = node;
    return m_view.group_inputs({{node}}, CDB_TERM_DATA).front();
  }

  /// All have one clock. Resets are those of what decides, since nothing is written in their presence, and not all of
  /// what is written needs to have them.
  bool may_move(const REGISTER_CONTROLS& controls, ROLE role) {
    BIT inactive{controls.is_async_low ? BIT::ONE : BIT::ZERO};
    auto is_inactive = [&](BIT control) { return control == inactive || control.kind == BIT::ZERO; };
    if (!is_inactive(controls.set) || controls.load.kind != BIT::ZERO) return false;
    if (m_first) {
      REGISTER_CONTROLS first = m_view.controls(*m_first);
      if (controls.clock != first.clock || controls.clock_falls != first.clock_falls) return false;
    }
    BIT reset = is_inactive(controls.reset) ? BIT{BIT::ZERO} : controls.reset;
    bool is_same = reset == m_reset && controls.is_async_low == m_reset_is_low;
    if (role == IS_WRITTEN) return !reset.is_net() || is_same;
    if (m_has_decision) return reset == m_reset && (!reset.is_net() || is_same);
    m_has_decision = true;
    m_reset = reset;
    m_reset_is_low = controls.is_async_low;
    return true;
  }

  const MODULE_VIEW& m_view;
  const CDB_SGATE_NODE* m_first = nullptr;
  bool m_is_movable = true;
  bool m_has_decision = false;
  BIT m_reset{BIT::ZERO};
  bool m_reset_is_low = false;
};

} // namespace

RAM_VIEW::RAM_VIEW(const MODULE_VIEW& view, const RAM& ram) : width(narrowest_port(ram)) {
  for (RAM::PORT port : {RAM::PORT_A, RAM::PORT_B}) {
    const RAM::PORT_SIZES& sizes = ram.get_sizes(port);
    const RAM_TERMS& terms = terms_of_port[port];
    if (sizes.write_data) {
      unsigned words = std::max(sizes.write_data / width, 1U);
      RAM_WRITE_PORT write{view.input(ram.find_iterm(terms.write_enable)),
                           view.input_bits(ram, terms.write_address, sizes.write_address),
                           view.input_bits(ram, terms.write_data, sizes.write_data),
                           view.input_bits(ram, terms.byte_enable, sizes.byte_enable), words};
      if (!write.lanes.empty() && is_implied_by(view, write.enable, write.lanes)) write.enable = {BIT::ONE};
      PORT_MOVER(view).move(write);
      writes.push_back(std::move(write));
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
