// What the resolve of names shares: the process whose names are being bound.
#ifndef KESTRIN_VERILOG_VERIRESOLVE_H
#define KESTRIN_VERILOG_VERIRESOLVE_H

class VeriTreeNode;
class VeriTypeDef;

/// The type behind the names that typedefs give; null for an unknown one.
const VeriTypeDef* veri_real_type(const VeriTypeDef* type);

/// The names being bound stand in this process or subprogram while the object lives; null for none.
class VeriProcessScope {
public:
  explicit VeriProcessScope(const VeriTreeNode* process) : _former(_present) { _present = process; }
  VeriProcessScope(const VeriProcessScope&) = delete;
  VeriProcessScope& operator=(const VeriProcessScope&) = delete;
  ~VeriProcessScope() { _present = _former; }
  static const VeriTreeNode* Present() { return _present; }

private:
  const VeriTreeNode* _former;
  static const VeriTreeNode* _present;
};

#endif
