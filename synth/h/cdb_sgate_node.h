// Nodes of the gate netlist, one class per kind. A node owns its terms; terms are made on first request and found again
// by type and index. Every kind of one bit works on scalars; operators and memories have vectors of terms.
#ifndef CDB_SGATE_NODE_H
#define CDB_SGATE_NODE_H

#include <climits>
#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "cdb_sgate_term.h"

class CDB_SGATE_NETLIST;
class CDB_STATE_MACHINE;

enum CDB_SGATE_ENUM {
  CDB_SGATE_BUFFER_ENUM = 0,
  CDB_SGATE_COMB_ENUM = 1,
  CDB_SGATE_DFF_ENUM = 2,
  CDB_SGATE_IO_ENUM = 3,
  CDB_SGATE_IO_BUF_ENUM = 4,
  CDB_SGATE_STATE_ENUM = 7,
  CDB_SGATE_MUX_ENUM = 23,
  CDB_SGATE_TRI_BUS_ENUM = 25,
  CDB_SGATE_LATCH_ENUM = 26,
  CDB_SGATE_COMPONENT_ENUM = 43,
  CDB_SGATE_OPERATOR_ENUM = 44,
  CDB_SGATE_ASYNCHRONOUS_RAM_ENUM = 45
};

class CDB_SGATE_NODE {
public:
  explicit CDB_SGATE_NODE(CDB_SGATE_ENUM type) : m_sgate_type(type) {}
  virtual ~CDB_SGATE_NODE();
  CDB_SGATE_NODE(const CDB_SGATE_NODE&) = delete;
  CDB_SGATE_NODE& operator=(const CDB_SGATE_NODE&) = delete;

  CDB_SGATE_ENUM get_sgate_type() const { return m_sgate_type; }
  CDB_SGATE_NETLIST* get_netlist() const { return m_netlist; }
  /// Null without a name. The text is copied.
  const char* get_string_name() const { return m_has_name ? m_name.c_str() : nullptr; }
  void set_string_name(const char* name);
  /// Place in the source of what the node implements; line 0 when it is unknown.
  void set_source_location(const char* file, unsigned line);
  const std::string& get_source_file() const;
  unsigned get_source_line() const { return m_source_line; }

  /// The term of that type and index, or null.
  CDB_SGATE_ITERM* find_iterm(int type, unsigned index = 0) const;
  CDB_SGATE_OTERM* find_oterm(int type, unsigned index = 0) const;
  /// The same, made when missing.
  CDB_SGATE_ITERM* retrieve_iterm(int type, unsigned index = 0);
  CDB_SGATE_OTERM* retrieve_oterm(int type, unsigned index = 0);
  /// A further input term of a gate or tri bus.
  CDB_SGATE_ITERM* insert_unordered_fanin_term();
  /// Makes an input term of that type and index and takes over what `term` is connected to.
  void set_input_term(CDB_SGATE_ITERM* term, unsigned index);
  /// Terms in the order of their making.
  const std::vector<std::unique_ptr<CDB_SGATE_ITERM>>& get_iterms() const { return m_iterms; }
  const std::vector<std::unique_ptr<CDB_SGATE_OTERM>>& get_oterms() const { return m_oterms; }
  /// The only input term, or null when there are none or several.
  CDB_SGATE_ITERM* get_single_iterm() const;
  /// Null when none was made.
  CDB_SGATE_OTERM* get_first_oterm() const;
  bool has_constant_fanin() const;
  /// Deletes a term of this node; it is disconnected first.
  void remove_iterm(CDB_SGATE_ITERM* term);

private:
  friend class CDB_SGATE_NETLIST;
  static uint64_t key(int type, unsigned index) {
    return static_cast<uint64_t>(static_cast<unsigned>(type)) << 32 | index;
  }

  void make_index();

  CDB_SGATE_NETLIST* m_netlist = nullptr;
  std::vector<std::unique_ptr<CDB_SGATE_ITERM>> m_iterms;
  std::vector<std::unique_ptr<CDB_SGATE_OTERM>> m_oterms;
  // Look-up by type and index, made once a node has more terms than a scan is good for.
  struct TERM_INDEX {
    std::unordered_map<uint64_t, CDB_SGATE_ITERM*> iterms;
    std::unordered_map<uint64_t, CDB_SGATE_OTERM*> oterms;
  };
  std::unique_ptr<TERM_INDEX> m_index;
  std::string m_name;
  const std::string* m_source_file = nullptr; // names of files are few and shared by all nodes
  unsigned m_source_line = 0;
  CDB_SGATE_ENUM m_sgate_type;
  bool m_has_name = false;
};

/// Copies CDB_TERM_DATA to CDB_TERM_OUTPUT. The type says why the buffer exists.
enum CDB_BUFFER_TYPE {
  CDB_BUFFER_WIRE = 4,
  CDB_BUFFER_KEEP = 5, // must stay
  CDB_BUFFER_CONSTANT_SOURCE = 10,
  CDB_BUFFER_DIRECTIONAL = 13
};

class CDB_SGATE_BUFFER : public CDB_SGATE_NODE {
public:
  explicit CDB_SGATE_BUFFER(CDB_BUFFER_TYPE type) : CDB_SGATE_NODE(CDB_SGATE_BUFFER_ENUM), m_type(type) {}
  CDB_BUFFER_TYPE get_buffer_type() const { return m_type; }

private:
  CDB_BUFFER_TYPE m_type;
};

/// A gate over its unordered inputs; NOT and BUF have one input. Output CDB_TERM_OUTPUT, which may be inverted.
enum CDB_COMB_TYPE { CDB_COMB_AND = 0, CDB_COMB_OR = 1, CDB_COMB_XOR = 2, CDB_COMB_NOT = 3, CDB_COMB_BUF = 4 };

class CDB_SGATE_COMB : public CDB_SGATE_NODE {
public:
  explicit CDB_SGATE_COMB(CDB_COMB_TYPE type) : CDB_SGATE_NODE(CDB_SGATE_COMB_ENUM), m_type(type) {}
  CDB_COMB_TYPE get_comb_type() const { return m_type; }

private:
  CDB_COMB_TYPE m_type;
};

/// CDB_TERM_MUX_SECOND when CDB_TERM_MUX_SELECT is 1, else CDB_TERM_MUX_FIRST.
class CDB_SGATE_MUX : public CDB_SGATE_NODE {
public:
  CDB_SGATE_MUX() : CDB_SGATE_NODE(CDB_SGATE_MUX_ENUM) {}
};

enum CDB_POWER_UP_ENUM { CDB_POWER_UP_UNKNOWN, CDB_POWER_UP_LOW, CDB_POWER_UP_HIGH };

/// A flip-flop: CDB_TERM_DATA at the rising edge of CDB_TERM_CLOCK; CDB_TERM_RESET, CDB_TERM_SET and
/// CDB_TERM_ASYNC_LOAD (of CDB_TERM_ASYNC_DATA) act at once, active high, in this order of priority. Terms that were
/// never made are inactive.
class CDB_SGATE_DFF : public CDB_SGATE_NODE {
public:
  CDB_SGATE_DFF() : CDB_SGATE_NODE(CDB_SGATE_DFF_ENUM) {}
  CDB_POWER_UP_ENUM get_power_up() const { return m_power_up; }
  void set_power_up(CDB_POWER_UP_ENUM level) { m_power_up = level; }

private:
  CDB_POWER_UP_ENUM m_power_up = CDB_POWER_UP_UNKNOWN;
};

/// Transparent while CDB_TERM_LATCH_ENABLE is 1; CDB_TERM_RESET and CDB_TERM_SET win over it, in this order.
class CDB_SGATE_LATCH : public CDB_SGATE_NODE {
public:
  CDB_SGATE_LATCH() : CDB_SGATE_NODE(CDB_SGATE_LATCH_ENUM) {}
};

/// One flip-flop of a one-hot state machine: it has CDB_TERM_DATA and CDB_TERM_OUTPUT only, the rest is the machine's.
class CDB_SGATE_STATE : public CDB_SGATE_NODE {
public:
  CDB_SGATE_STATE() : CDB_SGATE_NODE(CDB_SGATE_STATE_ENUM) {}
  CDB_STATE_MACHINE* get_machine() const { return m_machine; }
  void set_machine(CDB_STATE_MACHINE* machine) { m_machine = machine; }
  const std::string& get_state_name() const { return m_state_name; }
  void set_state_name(const char* name) { m_state_name = name ? name : ""; }
  /// The user's code of the state, most significant bit first; empty without one.
  const std::vector<bool>& get_user_encoding() const { return m_user_encoding; }
  void set_user_encoding(std::vector<bool> bits) { m_user_encoding = std::move(bits); }
  bool is_reset_state() const { return m_is_reset_state; }
  void set_is_reset_state(bool on) { m_is_reset_state = on; }

private:
  CDB_STATE_MACHINE* m_machine = nullptr;
  std::string m_state_name;
  std::vector<bool> m_user_encoding;
  bool m_is_reset_state = false;
};

enum CDB_IO_DIRECTION { CDB_IO_INPUT = 0, CDB_IO_OUTPUT = 1, CDB_IO_BIDIR = 2 };

/// One bit of a port of the netlist, named like it: NAME or NAME[index]. CDB_TERM_OUTPUT carries what comes in,
/// CDB_TERM_DATA what goes out.
class CDB_SGATE_IO : public CDB_SGATE_NODE {
public:
  explicit CDB_SGATE_IO(CDB_IO_DIRECTION direction) : CDB_SGATE_NODE(CDB_SGATE_IO_ENUM), m_direction(direction) {}
  CDB_IO_DIRECTION get_direction() const { return m_direction; }

private:
  CDB_IO_DIRECTION m_direction;
};

/// A tristate driver: CDB_TERM_DATA while CDB_TERM_OUTPUT_ENABLE is 1, else high impedance.
class CDB_SGATE_IO_BUF : public CDB_SGATE_NODE {
public:
  CDB_SGATE_IO_BUF() : CDB_SGATE_NODE(CDB_SGATE_IO_BUF_ENUM) {}
};

/// A net with several drivers: its unordered inputs are resolved into CDB_TERM_OUTPUT.
class CDB_SGATE_TRI_BUS : public CDB_SGATE_NODE {
public:
  CDB_SGATE_TRI_BUS() : CDB_SGATE_NODE(CDB_SGATE_TRI_BUS_ENUM) {}
};

/// A word-level operator over the terms of CDB_OPERATOR_TERM_ENUM, bit 0 first. With a = input 1, b = input 2, c =
/// carry in, o = output:
///   ADDER o = a + b + c, carry out behind the top bit;  MULTIPLIER, DIVIDER, MODULO o = a op b;
///   SHIFT_LEFT, SHIFT_RIGHT o = a shifted by the amount, vacated bits take c;  ROTATE_LEFT, ROTATE_RIGHT;
///   LESS_THAN o = a < b, or a <= b when c is 1;  EQUAL o = a == b;
///   N_TO_1_MUX o = b[a];  SELECTOR o = OR over i of a[i] AND b[i];  DECODER o[i] = (a == i).
/// The signed flag concerns MULTIPLIER, DIVIDER, MODULO and LESS_THAN and speaks of both inputs.
enum CDB_OPERATOR_TYPE {
  CDB_OPERATOR_ADDER = 0,
  CDB_OPERATOR_MULTIPLIER = 1,
  CDB_OPERATOR_DIVIDER = 2,
  CDB_OPERATOR_MODULO = 3,
  CDB_OPERATOR_SHIFT_LEFT = 4,
  CDB_OPERATOR_SHIFT_RIGHT = 5,
  CDB_OPERATOR_ROTATE_LEFT = 6,
  CDB_OPERATOR_ROTATE_RIGHT = 7,
  CDB_OPERATOR_LESS_THAN = 8,
  CDB_OPERATOR_N_TO_1_MUX = 9,
  CDB_OPERATOR_SELECTOR = 10,
  CDB_OPERATOR_DECODER = 11,
  CDB_OPERATOR_ADD_SUB = 14,
  CDB_OPERATOR_EQUAL = 16
};

class CDB_SGATE_OPERATOR : public CDB_SGATE_NODE {
public:
  explicit CDB_SGATE_OPERATOR(CDB_OPERATOR_TYPE type) : CDB_SGATE_NODE(CDB_SGATE_OPERATOR_ENUM), m_type(type) {}
  CDB_OPERATOR_TYPE get_operator_type() const { return m_type; }
  bool is_signed() const { return m_is_signed; }
  void set_signed(bool on) { m_is_signed = on; }
  /// Number of bits of an input or output, counted from the highest index that was made.
  unsigned get_input_width(int term) const;
  unsigned get_output_width(int term) const;

private:
  CDB_OPERATOR_TYPE m_type;
  bool m_is_signed = false;
};

/// One bit of a port of a component. Terms are made on first request; a bidirectional port can have both.
class CDB_SGATE_COMPONENT;
class CDB_COMPONENT_PORT {
public:
  const std::string& get_name() const { return m_name; }
  /// Bit of the port; NO_INDEX for a port of one bit without an index.
  static constexpr int NO_INDEX = INT_MIN;
  int get_index() const { return m_index; }
  /// NAME or NAME[index].
  std::string get_full_name() const {
    return m_index == NO_INDEX ? m_name : m_name + "[" + std::to_string(m_index) + "]";
  }
  /// Position among the ports of a component with positional ports, from 0; -1 otherwise.
  int get_position() const { return m_position; }
  CDB_IO_DIRECTION get_direction() const { return m_direction; }
  /// What goes into the component, and what comes out of it.
  CDB_SGATE_ITERM* retrieve_iterm();
  CDB_SGATE_OTERM* retrieve_oterm();
  /// Null when it was never made.
  CDB_SGATE_ITERM* get_iterm() const { return m_iterm; }
  CDB_SGATE_OTERM* get_oterm() const { return m_oterm; }

private:
  friend class CDB_SGATE_COMPONENT;
  CDB_SGATE_COMPONENT* m_component = nullptr;
  std::string m_name;
  int m_index = NO_INDEX;
  int m_position = -1;
  unsigned m_number = 0;
  CDB_IO_DIRECTION m_direction = CDB_IO_INPUT;
  CDB_SGATE_ITERM* m_iterm = nullptr;
  CDB_SGATE_OTERM* m_oterm = nullptr;
};

/// An instance of a design unit that the flow elaborates on its own, or of a black box.
class CDB_SGATE_COMPONENT : public CDB_SGATE_NODE {
public:
  /// 0 the ports are guesses from the connections; 1 they are those of the declaration; 2 they are known from a VHDL
  /// component declaration, which may differ from the entity within compatible types.
  enum PROTOTYPE { PROTOTYPE_UNKNOWN = 0, PROTOTYPE_KNOWN = 1, PROTOTYPE_COMPATIBLE = 2 };
  struct PARAMETER {
    std::string name; // empty for a positional one
    int position;     // -1 for a named one
    std::string value;
    int type;
  };

  CDB_SGATE_COMPONENT(const char* entity_name, PROTOTYPE prototype)
      : CDB_SGATE_NODE(CDB_SGATE_COMPONENT_ENUM), m_entity_name(entity_name), m_prototype(prototype) {}

  const std::string& get_entity_name() const { return m_entity_name; }
  PROTOTYPE get_prototype() const { return m_prototype; }
  bool is_prototype_known() const { return m_prototype != PROTOTYPE_UNKNOWN; }
  /// "A:" and an architecture or "C:" and a configuration; empty without one.
  const std::string& get_architecture_name() const { return m_architecture_name; }
  void set_architecture_name(const char* name) { m_architecture_name = name ? name : ""; }
  /// Empty when any library serves.
  const std::string& get_library_name() const { return m_library_name; }
  void set_library_name(const char* name) { m_library_name = name ? name : ""; }
  bool has_positional_ports() const { return m_has_positional_ports; }
  void set_positional_ports(bool on) { m_has_positional_ports = on; }
  /// A cell of the host itself, never of the user's: the full adder "fadd" with cin, a, b, o and cout.
  bool is_host_primitive() const { return m_is_host_primitive; }
  void set_host_primitive(bool on) { m_is_host_primitive = on; }

  /// A further value under the same name or position replaces the former one.
  void set_parameter(const char* name, const char* value, int type);
  void set_parameter_at_pos(int position, const char* value, int type);
  const std::vector<PARAMETER>& get_parameters() const { return m_parameters; }

  /// A bit of a declared port: NAME or NAME[index], as the declaration has it.
  CDB_COMPONENT_PORT* retrieve_known_port(const char* name, CDB_IO_DIRECTION direction);
  /// A bit of a port that is only known from a connection: its base name and the index, or -1 without one.
  CDB_COMPONENT_PORT* retrieve_unknown_port(const char* name, int index, CDB_IO_DIRECTION direction);
  /// The same for a connection by order.
  CDB_COMPONENT_PORT* retrieve_nameless_port(int position, int index, CDB_IO_DIRECTION direction);
  /// In the order of their making.
  const std::vector<std::unique_ptr<CDB_COMPONENT_PORT>>& get_ports() const { return m_ports; }
  /// The port that a term of this component belongs to.
  const CDB_COMPONENT_PORT* get_port_of(const CDB_SGATE_TERM& term) const { return m_ports[term.get_index()].get(); }

private:
  CDB_COMPONENT_PORT* retrieve_port(const std::string& name, int index, int position, CDB_IO_DIRECTION direction);

  std::string m_entity_name;
  std::string m_architecture_name;
  std::string m_library_name;
  std::vector<PARAMETER> m_parameters;
  std::vector<std::unique_ptr<CDB_COMPONENT_PORT>> m_ports;
  std::unordered_map<std::string, CDB_COMPONENT_PORT*> m_port_index;
  PROTOTYPE m_prototype;
  bool m_has_positional_ports = false;
  bool m_is_host_primitive = false;
};

#endif
