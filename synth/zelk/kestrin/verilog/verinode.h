// VeriNode: the root of the Verilog front end's classes. It has no data of its own, only what one run of the front end
// shares: the dialect, pending pragmas and annotations, the elaboration state. One analysis or elaboration runs at a
// time.
#ifndef KESTRIN_VERILOG_VERINODE_H
#define KESTRIN_VERILOG_VERINODE_H

#include "containers/pool.h"

class Map;
class Net;
class Netlist;
class VeriElaborationState;

/// The dialects of the scanner and of every design unit.
enum veri_dialect { VERI_95 = 1, VERI_2K = 2, VERI_SV = 3 };

class VeriNode : public Pooled {
public:
  VeriNode() = default;
  virtual ~VeriNode() = default;

  static veri_dialect Dialect() { return _veri_dialect; }
  /// For the scanner's directives; everything else takes a VeriDialectScope.
  static void SetDialect(veri_dialect dialect) { _veri_dialect = dialect; }
  static unsigned IsSystemVerilog() { return _veri_dialect == VERI_SV; }

  // Elaboration. The state on top of the stack is the module being elaborated; null outside an elaboration.
  static VeriElaborationState* ElabState() { return _elab_state; }
  /// The netlist under construction; an assertion outside an elaboration.
  static Netlist* CurrentNetlist();
  // The four constant nets of the netlist under construction.
  static Net* Gnd();
  static Net* Pwr();
  static Net* X();
  static Net* Z();

  /// The id of a kernel message by its format; null when the catalogue has none.
  static const char* GetMessageId(const char* format);

protected:
  friend class VeriDialectScope;
  friend class VeriElaborationScope;
  static veri_dialect _veri_dialect;
  static VeriElaborationState* _elab_state;
};

/// The dialect is this one while the object lives.
class VeriDialectScope {
public:
  explicit VeriDialectScope(veri_dialect dialect) : _former(VeriNode::_veri_dialect) {
    VeriNode::_veri_dialect = dialect;
  }
  VeriDialectScope(const VeriDialectScope&) = delete;
  VeriDialectScope& operator=(const VeriDialectScope&) = delete;
  ~VeriDialectScope() { VeriNode::_veri_dialect = _former; }

private:
  veri_dialect _former;
};

#endif
