// Memories that become RAMs. VeriRamInfo decides by the references to a variable alone, before any logic exists;
// VeriRam is such a memory in one run. Its words are no nets: what a process reads and writes travels through the flow
// of values as addresses, data and enables (VeriDualPortValue), and the operator is built from these at the end of the
// run. The operator itself has no clock, so the write side of a port gets registers in front of it.
#ifndef KESTRIN_VERILOG_VERIRAM_H
#define KESTRIN_VERILOG_VERIRAM_H

#include <memory>
#include <string>
#include <vector>

#include "verilog/veriid.h"
#include "verilog/verivalue.h"

class VeriIndexedName;

/// The shape of a reference by its indices: 1 to 16 as below, or VERI_RAM_REF_UNSUPPORTED.
enum veri_ram_ref {
  VERI_RAM_REF_CONST_WORD = 1,       ///< m[1]
  VERI_RAM_REF_CONST_WORDS = 2,      ///< m[1:0]
  VERI_RAM_REF_CONST_CONST = 5,      ///< m[1][2]
  VERI_RAM_REF_CONST_CONST_PART = 6, ///< m[1][3:2]
  VERI_RAM_REF_WORD = 7,             ///< m[a]
  VERI_RAM_REF_WORDS = 8,            ///< m[a +: 2]
  VERI_RAM_REF_WORD_CONST = 9,       ///< m[a][1]
  VERI_RAM_REF_WORD_CONST_PART = 10, ///< m[a][3:2]
  VERI_RAM_REF_CONST_VAR = 13,       ///< m[1][b]
  VERI_RAM_REF_CONST_VAR_PART = 14,  ///< m[1][b +: 2]
  VERI_RAM_REF_WORD_VAR = 15,        ///< m[a][b]
  VERI_RAM_REF_WORD_VAR_PART = 16,   ///< m[a][b +: 2]
  VERI_RAM_REF_UNSUPPORTED = 17
};
veri_ram_ref veri_ram_ref_type(const VeriIndexedName* name);
bool veri_ram_ref_type_is_const_word(veri_ram_ref type);

/// Which references to a memory make which port.
class VeriRamInfo {
public:
  static constexpr unsigned max_ports = 2;
  using References = std::vector<VeriIndexedName*>;

  /// Null when the variable stays registers. The warning about an attribute that asks for something else is given.
  static std::unique_ptr<VeriRamInfo> Create(const VeriVariable* variable);

  unsigned NumReadPorts() const { return static_cast<unsigned>(_reads.size()); }
  unsigned NumWritePorts() const { return static_cast<unsigned>(_writes.size()); }
  /// -1 for a name that is none of the references.
  int GetReadPortIndex(const VeriIndexedName* name) const { return IndexOf(_reads, name); }
  int GetWritePortIndex(const VeriIndexedName* name) const { return IndexOf(_writes, name); }
  /// A reference of the port stands outside of processes with a clock.
  bool IsAsynchronousRead(unsigned read) const;
  /// All references of both lie under one event control statement.
  bool SequentialReadWrite(unsigned read, unsigned write) const;
  /// They can never run in the same pass through a process.
  bool ExclusiveReadWrite(unsigned read, unsigned write) const;

  // While memories are disabled a read gives x and makes no port: event expressions name them in vain.
  static void DisableRam() { _disabled++; }
  static void EnableRam() { _disabled--; }
  static bool IsDisabled() { return _disabled != 0; }

private:
  static int IndexOf(const std::vector<References>& ports, const VeriIndexedName* name);
  bool Classify(const VeriVariable* variable);
  bool AddWrite(VeriIndexedName* name);
  bool AddRead(VeriIndexedName* name);
  std::vector<References> _reads;
  std::vector<References> _writes;
  static unsigned _disabled;
};

/// Memories are disabled while the object lives.
class VeriRamDisabled {
public:
  VeriRamDisabled() { VeriRamInfo::DisableRam(); }
  VeriRamDisabled(const VeriRamDisabled&) = delete;
  VeriRamDisabled& operator=(const VeriRamDisabled&) = delete;
  ~VeriRamDisabled() { VeriRamInfo::EnableRam(); }
};

/// What processes have made of a memory so far in this run.
class VeriRam {
public:
  VeriRam(VeriVariable* variable, std::unique_ptr<VeriRamInfo> info);
  VeriRam(const VeriRam&) = delete;
  VeriRam& operator=(const VeriRam&) = delete;

  /// The value of a variable that becomes a RAM; null for any other variable.
  static OwnedValue CreateDualPortValue(VeriVariable* variable);
  /// Builds the operator.
  void Finish();
  /// Gives up: the run is repeated with registers in place of this memory. What is asked until then has no meaning.
  void Refuse(const char* reason);

  const VeriRamInfo& Info() const { return *_info; }
  const VeriVariable* Variable() const { return _variable; }
  const VeriConstraint& Type() const { return *_variable->GetConstraint(); }
  unsigned Depth() const { return _depth; }
  unsigned WordSize() const { return _width; }
  unsigned AddressSize() const { return _address_size; }

  using Nets = std::vector<Net*>; // bit 0 first
  struct Address {
    Nets nets;
    Net* is_valid; ///< 1 when the index is in range
  };
  Address AddressOf(const VeriValue& index, const VeriTreeNode* from) const;
  /// The output of a read port.
  const Nets& ReadData(unsigned port);
  /// Binds a read port's address. A port has one.
  void ConnectRead(unsigned port, const Nets& address, const VeriTreeNode* from);

  /// The outputs of the registers in front of a write port.
  struct WriteNets {
    Nets mask; ///< a write enable per bit of the word
    Nets address;
    Nets data;
  };
  const WriteNets& Registers(unsigned port);
  /// Binds what is written, where it differs from these registers.
  void ConnectWrite(unsigned port, WriteNets nets);
  /// The words that the memory starts with.
  void SetContents(const VeriValue& value);

private:
  struct ReadPort {
    Nets data;
    Nets address;
    Nets source; // what the address was bound to
  };
  struct WritePort {
    WriteNets registers;
    WriteNets nets;
    bool is_connected = false;
  };
  struct Enables;
  Enables EnablesOf(const WritePort& port) const;
  void SetBehavior(Instance* ram, const std::vector<unsigned>& reads, const std::vector<unsigned>& writes) const;
  bool HasContents() const;

  VeriVariable* _variable;
  std::unique_ptr<VeriRamInfo> _info;
  unsigned _depth;
  unsigned _width;
  unsigned _address_size;
  ReadPort _reads[VeriRamInfo::max_ports];
  WritePort _writes[VeriRamInfo::max_ports];
  std::vector<std::string> _contents; // by address; empty without
  bool _is_refused = false;
};

/// Writes the words, one text of digits per address, to a memory file, and names it on the instance. False when there
/// is no file.
bool veri_attach_memory_contents(Instance* memory, const std::vector<std::string>& words, bool is_rom);

#endif
