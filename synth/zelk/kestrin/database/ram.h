// What there is to say about memories: the shape of the ports of an OperDualPortRam, the attributes that tell how reads
// and writes meet, and the helpers that read them. The operator itself is in operators.h, its ports are reached through
// Instance.
#ifndef KESTRIN_DATABASE_RAM_H
#define KESTRIN_DATABASE_RAM_H

#include <string>

#include "database/att.h"

class Array;
class Instance;
class Netlist;

/// The elements of a port. A port has the name of the element with the letter of the port behind it.
enum KESTRIN_RAM_PORT_ELEMENT {
  RAM_READ_ADDRESS = 0,  ///< "raddr_%s"
  RAM_READ_DATA = 1,     ///< "q_%s"
  RAM_WRITE_ADDRESS = 2, ///< "waddr_%s"
  RAM_WRITE_DATA = 3,    ///< "wdata_%s"
  RAM_WRITE_ENABLE = 4,  ///< "we_%s", one bit
  RAM_BYTE_ENABLE = 5,   ///< "be_%s"
  RAM_ELEMENT_COUNT
};

/// The shape of a read or write port; a size of 0 says that the element does not exist.
struct KESTRIN_RAM_PORT_INFO {
  unsigned size[RAM_ELEMENT_COUNT] = {};
  unsigned depth = 0;

  static KESTRIN_RAM_PORT_INFO CreateReadPortInfo(unsigned address_size, unsigned depth, unsigned data_size);
  /// The write enable has the size 1.
  static KESTRIN_RAM_PORT_INFO CreateWritePortInfo(unsigned address_size, unsigned depth, unsigned data_size,
                                                   unsigned byte_enable_size);
};

// Behaviour: tokens in the attributes ATT_ASYNCHRONOUS_READ to ATT_TRUE_DUAL_PORT of the instance, each the letter of a
// read port ("A"), followed by that of a write port where two are concerned ("BA").
/// Whether the value of the attribute contains the token.
unsigned kestrin_get_ram_behavior(const Instance* inst, ATT_ENUM attribute, const char* token);
/// Appends the token unless it is there.
void kestrin_set_ram_behavior(Instance* inst, ATT_ENUM attribute, const char* token);
/// Removes the first occurrence; an attribute that is left empty goes.
void kestrin_clear_ram_behavior(Instance* inst, ATT_ENUM attribute, const char* token);

/// The port has a depth.
unsigned kestrin_active_read_port(const Instance* inst, unsigned port);
/// The port has a depth and its write enable is connected and not constantly off.
unsigned kestrin_active_write_port(const Instance* inst, unsigned port);
/// Splits a ramstyle: the style without quotes, and whether "no_rw_check" stands in it.
void kestrin_parse_ramstyle(const char* value, std::string& style, bool& no_rw_check);

/// How a read and a write address relate: 0 not at all; 1 the same; 2 the write address is the read address one clock
/// later and the read data are registered alike; 3 the same without such registers.
unsigned kestrin_compare_read_and_write_address(Instance* inst, unsigned read_port, unsigned write_port);
/// Whether the user's logic around the memory returns the data being written; its output registers are appended.
unsigned kestrin_find_manual_bypass_logic(Instance* inst, unsigned read_port, unsigned write_port, Array& output_regs);
unsigned kestrin_read_and_write_ports_are_compatible(Instance* inst, unsigned read_port, unsigned write_port);
/// Replaces such logic by the behaviour read-after-write of the memory.
void kestrin_remove_manual_bypass_logic(Netlist* netlist);

#endif
