// Terms of gate netlist nodes. An output term drives a list of input terms; an input term has one source, or is tied to
// a constant, or is unconnected and reads as unknown.
#ifndef CDB_SGATE_TERM_H
#define CDB_SGATE_TERM_H

#include <string>
#include <vector>

class CDB_SGATE_ITERM;
class CDB_SGATE_NODE;

/// What a term means on its node. Terms of vectors share a type and differ by index.
enum CDB_TERM_TYPE_ENUM {
  CDB_TERM_ASYNC_DATA = 0,
  CDB_TERM_ASYNC_LOAD = 1,
  CDB_TERM_OUTPUT = 2,
  CDB_TERM_RESET = 5,
  CDB_TERM_CLOCK = 6,
  CDB_TERM_MUX_FIRST = 11,
  CDB_TERM_MUX_SECOND = 12,
  CDB_TERM_DATA = 18,
  CDB_TERM_LATCH_ENABLE = 19,
  CDB_TERM_OUTPUT_ENABLE = 20,
  CDB_TERM_SET = 25,
  CDB_TERM_RAM_WRITE_ENABLE_A = 31,
  CDB_TERM_RAM_WRITE_ADDRESS_A = 34,
  CDB_TERM_RAM_READ_ADDRESS_A = 35,
  CDB_TERM_RAM_OUTPUT_B = 41,
  CDB_TERM_MUX_SELECT = 52,
  CDB_TERM_RAM_DATA_B = 92,
  CDB_TERM_RAM_WRITE_ENABLE_B = 99,
  CDB_TERM_RAM_WRITE_ADDRESS_B = 101,
  CDB_TERM_RAM_READ_ADDRESS_B = 102,
  CDB_TERM_RAM_BYTE_ENABLE_A = 170,
  CDB_TERM_RAM_BYTE_ENABLE_B = 171,
  CDB_TERM_UNORDERED = 1000 // inputs of gates and tri buses, whose order has no meaning
};

/// Terms of operators.
enum CDB_OPERATOR_TERM_ENUM {
  CDB_OPERATOR_CARRY_IN = 0,
  CDB_OPERATOR_INPUT_1 = 1,
  CDB_OPERATOR_INPUT_2 = 2,
  CDB_OPERATOR_OUTPUT = 3,
  CDB_OPERATOR_CARRY_OUT = 4,
  CDB_OPERATOR_AMOUNT = 5,
  CDB_OPERATOR_ADD_NOT_SUBTRACT = 6,
  CDB_OPERATOR_SELECT = 7
};

class CDB_SGATE_TERM {
public:
  CDB_SGATE_TERM(CDB_SGATE_NODE* node, int type, unsigned index) : m_node(node), m_type(type), m_index(index) {}
  CDB_SGATE_TERM(const CDB_SGATE_TERM&) = delete;
  CDB_SGATE_TERM& operator=(const CDB_SGATE_TERM&) = delete;

  CDB_SGATE_NODE* get_node() const { return m_node; }
  int get_type() const { return m_type; }
  /// Bit of a vector, 0 the least significant; 0 for single terms.
  unsigned get_index() const { return m_index; }
  void set_index(unsigned index) { m_index = index; }
  /// Null without a name. The text is copied.
  const char* get_string_name() const { return m_has_name ? m_name.c_str() : nullptr; }
  void set_string_name(const char* name) {
    m_has_name = name != nullptr;
    m_name = name ? name : "";
  }

private:
  CDB_SGATE_NODE* m_node;
  std::string m_name;
  int m_type;
  unsigned m_index;
  bool m_has_name = false;
};

/// Drives its fanouts. An inverted output carries the complement of what its node computes.
class CDB_SGATE_OTERM : public CDB_SGATE_TERM {
public:
  using CDB_SGATE_TERM::CDB_SGATE_TERM;
  ~CDB_SGATE_OTERM();
  /// Connects an input term that is neither connected nor tied; an internal error otherwise.
  void insert_fanout(CDB_SGATE_ITERM* iterm);
  /// Null without a fanout.
  CDB_SGATE_ITERM* get_first_fanout() const;
  /// In the order of connection.
  const std::vector<CDB_SGATE_ITERM*>& get_fanouts() const { return m_fanouts; }
  bool is_inverted() const { return m_is_inverted; }
  void set_inverted(bool on) { m_is_inverted = on; }

private:
  friend class CDB_SGATE_ITERM;
  std::vector<CDB_SGATE_ITERM*> m_fanouts;
  bool m_is_inverted = false;
};

class CDB_SGATE_ITERM : public CDB_SGATE_TERM {
public:
  using CDB_SGATE_TERM::CDB_SGATE_TERM;
  ~CDB_SGATE_ITERM() { disconnect_from_source(0); }
  /// Has a source or is tied.
  bool is_connected() const { return m_is_connected; }
  CDB_SGATE_OTERM* get_source() const { return m_source; }
  bool is_constant() const { return m_is_connected && !m_source; }
  bool is_gnd() const { return is_constant() && m_constant; }
  bool is_vcc() const { return is_constant() && !m_constant; }
  /// Ties the term; it must not have a source.
  void set_gnd() { tie(true); }
  void set_vcc() { tie(false); }
  /// Leaves the term unconnected; a tie is lifted too. The argument tells the host's incremental flow why and has no
  /// effect here.
  void disconnect_from_source(int reason);

private:
  friend class CDB_SGATE_OTERM;
  void tie(bool gnd);

  CDB_SGATE_OTERM* m_source = nullptr;
  bool m_is_connected = false;
  bool m_constant = false; // with no source: set reads as ground, clear as power
};

/// Disconnects every fanout and ties it.
void set_all_fanouts_constant(CDB_SGATE_OTERM* oterm, bool is_vcc);

#endif
