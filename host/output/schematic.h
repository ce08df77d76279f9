// A module as a drawing knows it: blocks with pins, and wires from the pins that drive to the pins that read. Vectors
// are one pin, and nodes that do the same to the bits of a vector one block.
#ifndef HOST_SCHEMATIC_H
#define HOST_SCHEMATIC_H

#include <map>
#include <string>
#include <unordered_map>
#include <vector>

#include "writer.h"

struct SCHEMATIC_PIN {
  std::string label;     // inside the block; empty for the only pin of a kind
  std::string fixed;     // what the pin reads where no wire leads: constants, and controls told by name
  std::string full_name; // of what an output drives
  size_t width = 1;
};

struct SCHEMATIC_BLOCK {
  enum SHAPE { SHAPE_BOX, SHAPE_GATE, SHAPE_MUX, SHAPE_REGISTER, SHAPE_INPUT, SHAPE_OUTPUT, SHAPE_BIDIR };
  SHAPE shape = SHAPE_BOX;
  std::string title; // what it is
  std::string name;  // whose it is
  std::string place; // FILE:LINE of the source
  bool is_inverted = false;
  int clock_pin = -1; // among the inputs
  std::vector<SCHEMATIC_PIN> inputs;
  std::vector<SCHEMATIC_PIN> outputs;
};

struct SCHEMATIC_LOAD {
  size_t block = 0;
  size_t pin = 0;
  std::string part; // such as "a[3:0]" when not the whole of the source is read; otherwise empty
};

struct SCHEMATIC_WIRE {
  size_t block = 0; // the source
  size_t pin = 0;
  std::vector<SCHEMATIC_LOAD> loads;
};

class SCHEMATIC {
public:
  explicit SCHEMATIC(const MODULE_VIEW& view);
  const std::string& get_name() const { return m_view.get_result().module_name; }
  const std::vector<SCHEMATIC_BLOCK>& get_blocks() const { return m_blocks; }
  /// In the order of their sources.
  const std::vector<SCHEMATIC_WIRE>& get_wires() const { return m_wires; }
  const SCHEMATIC_PIN& source_of(const SCHEMATIC_WIRE& wire) const { return m_blocks[wire.block].outputs[wire.pin]; }

private:
  using INPUTS = std::vector<const CDB_SGATE_ITERM*>;
  using OUTPUTS = std::vector<const CDB_SGATE_OTERM*>;
  struct DRIVER {
    size_t block;
    size_t pin;
    size_t bit;
  };

  using GROUPS = std::vector<NODE_GROUP>;
  GROUPS gather_groups() const;
  void add_port(const SIGNAL& port);
  void add_group(const NODE_GROUP& group);
  void add_component(SCHEMATIC_BLOCK block, const CDB_SGATE_COMPONENT& component);
  void add_word_node(SCHEMATIC_BLOCK block, const CDB_SGATE_NODE& node);
  void add_machine_controls(SCHEMATIC_BLOCK& block, const CDB_SGATE_STATE& state);
  size_t add(SCHEMATIC_BLOCK block);
  void add_input(size_t block, const std::string& label, INPUTS terms);
  void add_output(size_t block, const std::string& label, const OUTPUTS& terms);
  void make_wires();
  void connect(size_t block, size_t pin, const INPUTS& terms);
  std::string names_of(const OUTPUTS& terms) const;

  const MODULE_VIEW& m_view;
  std::vector<SCHEMATIC_BLOCK> m_blocks;
  std::vector<SCHEMATIC_WIRE> m_wires;
  std::vector<std::vector<INPUTS>> m_inputs;   // by block and pin
  std::vector<std::vector<OUTPUTS>> m_outputs; // by block and pin
  std::unordered_map<const CDB_SGATE_OTERM*, DRIVER> m_drivers;
  std::map<std::pair<size_t, size_t>, size_t> m_wire_of; // by source
};

/// The schematic of the top module as a graph for Graphviz, and as a drawing.
std::string write_dot(const DESIGN_VIEW& design);
std::string write_svg(const DESIGN_VIEW& design);

#endif
