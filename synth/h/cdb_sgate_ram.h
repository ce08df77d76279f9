// The memory node of the gate netlist: up to two read ports and two write ports over one array of words. Reading is
// asynchronous; writing happens at once while the write enable is 1, so a synchronous memory has registers around it.
#ifndef CDB_SGATE_RAM_H
#define CDB_SGATE_RAM_H

#include <string>

#include "cdb_sgate_node.h"

/// Kind of block that the user wants the memory in.
enum CDB_SUGGESTED_RAM_BLOCK_TYPE {
  CDB_RAM_BLOCK_AUTO = 0,
  CDB_RAM_BLOCK_SRB1 = 1,
  CDB_RAM_BLOCK_SRB2 = 2,
  CDB_RAM_BLOCK_SRB6 = 3,
  CDB_RAM_BLOCK_LOGIC = 4,
  CDB_RAM_BLOCK_SRB7 = 5,
  CDB_RAM_BLOCK_SRB3 = 6,
  CDB_RAM_BLOCK_SRB5 = 7,
  CDB_RAM_BLOCK_SRB4 = 8
};

/// What a read port sees of a write to the same address.
enum CDB_READ_DURING_WRITE {
  CDB_READ_OLD_DATA = 0,
  CDB_READ_NEW_DATA = 1,
  CDB_READ_ASYNCHRONOUS = 2,
  CDB_READ_DONT_CARE = 3
};

class CDB_SGATE_ASYNCHRONOUS_RAM : public CDB_SGATE_NODE {
public:
  enum PORT { PORT_A = 0, PORT_B = 1 };
  /// Widths in bits; 0 for what the port does not have.
  struct PORT_SIZES {
    unsigned read_address = 0;
    unsigned read_data = 0;
    unsigned write_address = 0;
    unsigned write_data = 0;
    unsigned byte_enable = 0;
  };

  CDB_SGATE_ASYNCHRONOUS_RAM(const PORT_SIZES& a, const PORT_SIZES& b)
      : CDB_SGATE_NODE(CDB_SGATE_ASYNCHRONOUS_RAM_ENUM), m_sizes{a, b} {}

  const PORT_SIZES& get_sizes(PORT port) const { return m_sizes[port]; }
  unsigned get_read_depth() const { return m_read_depth; }
  unsigned get_write_depth() const { return m_write_depth; }
  void set_depths(unsigned read, unsigned write) {
    m_read_depth = read;
    m_write_depth = write;
  }
  /// Contents at start; empty without a file.
  const std::string& get_mif_file() const { return m_mif_file; }
  void set_mif_file(const char* name) { m_mif_file = name ? name : ""; }
  CDB_SUGGESTED_RAM_BLOCK_TYPE get_block_type() const { return m_block_type; }
  void set_block_type(CDB_SUGGESTED_RAM_BLOCK_TYPE type) { m_block_type = type; }
  unsigned get_maximum_depth() const { return m_maximum_depth; }
  void set_maximum_depth(unsigned depth) { m_maximum_depth = depth; }
  bool is_no_rw_check() const { return m_no_rw_check; }
  void set_no_rw_check(bool on) { m_no_rw_check = on; }
  bool is_true_dual_port() const { return m_is_true_dual_port; }
  void set_true_dual_port(bool on) { m_is_true_dual_port = on; }
  bool has_async_clear() const { return m_has_async_clear; }
  void set_async_clear(bool on) { m_has_async_clear = on; }
  CDB_READ_DURING_WRITE get_read_during_write(PORT read, PORT write) const { return m_read_during_write[read][write]; }
  void set_read_during_write(PORT read, PORT write, CDB_READ_DURING_WRITE behavior) {
    m_read_during_write[read][write] = behavior;
  }
  /// The read port follows the address without a register.
  bool is_exclusive_read_write(PORT read, PORT write) const { return m_exclusive[read][write]; }
  void set_exclusive_read_write(PORT read, PORT write, bool on) { m_exclusive[read][write] = on; }

private:
  PORT_SIZES m_sizes[2];
  std::string m_mif_file;
  unsigned m_read_depth = 0;
  unsigned m_write_depth = 0;
  unsigned m_maximum_depth = 0;
  CDB_SUGGESTED_RAM_BLOCK_TYPE m_block_type = CDB_RAM_BLOCK_AUTO;
  CDB_READ_DURING_WRITE m_read_during_write[2][2] = {{CDB_READ_OLD_DATA, CDB_READ_OLD_DATA},
                                                     {CDB_READ_OLD_DATA, CDB_READ_OLD_DATA}};
  bool m_exclusive[2][2] = {{false, false}, {false, false}};
  bool m_no_rw_check = false;
  bool m_is_true_dual_port = false;
  bool m_has_async_clear = false;
};

#endif
