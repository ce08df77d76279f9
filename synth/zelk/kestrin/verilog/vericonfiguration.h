// Configurations: which cells the instances of a design are bound to (IEEE 1364-2005 clause 13). The host binds cells
// by itself, so that they are kept as they were read and have no effect.
#ifndef KESTRIN_VERILOG_VERICONFIGURATION_H
#define KESTRIN_VERILOG_VERICONFIGURATION_H

#include <memory>
#include <string>
#include <vector>

#include "verilog/verimodule.h"

/// `use library.cell`, with `:config` for the configuration of that name.
class VeriUseClause : public VeriTreeNode {
public:
  VeriUseClause(VeriName* name, bool is_config, unsigned long linefile = 0);
  ~VeriUseClause() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriUseClause; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  VeriName* Name() const { return _name; }
  bool IsConfig() const { return _is_config; }

private:
  VeriName* _name;
  bool _is_config;
};

/// A rule: what it is for, and a list of libraries or a use clause.
class VeriConfigRule : public VeriTreeNode {
public:
  /// One of the library list and the use clause is null.
  VeriConfigRule(VeriName* name, VeriNodes<VeriName>* liblist, VeriUseClause* use, unsigned long linefile = 0);
  ~VeriConfigRule() override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  /// The cell or the path of the instance; null for the default.
  VeriName* Name() const { return _name; }
  const VeriNodes<VeriName>* Liblist() const { return _liblist; }
  VeriUseClause* Use() const { return _use; }

protected:
  virtual unsigned Token() const = 0;

private:
  VeriName* _name;
  VeriNodes<VeriName>* _liblist;
  VeriUseClause* _use;
};

class VeriDefaultConfig : public VeriConfigRule {
public:
  explicit VeriDefaultConfig(VeriNodes<VeriName>* liblist, unsigned long linefile = 0)
      : VeriConfigRule(nullptr, liblist, nullptr, linefile) {}
  VERI_CLASS_ID GetClassId() const override { return ID_VeriDefaultConfig; }
  void Accept(VeriVisitor& visitor) override;

protected:
  unsigned Token() const override { return VERI_DEFAULT; }
};

class VeriCellConfig : public VeriConfigRule {
public:
  using VeriConfigRule::VeriConfigRule;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriCellConfig; }
  void Accept(VeriVisitor& visitor) override;

protected:
  unsigned Token() const override { return VERI_CELL; }
};

class VeriInstanceConfig : public VeriConfigRule {
public:
  using VeriConfigRule::VeriConfigRule;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriInstanceConfig; }
  void Accept(VeriVisitor& visitor) override;

protected:
  unsigned Token() const override { return VERI_INSTANCE; }
};

class VeriConfiguration : public VeriDesignUnit {
public:
  VeriConfiguration(std::unique_ptr<VeriDesignUnitId> id, VeriNodes<VeriName>* design, VeriNodes<VeriConfigRule>* rules,
                    unsigned long linefile = 0);
  ~VeriConfiguration() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriConfiguration; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  unsigned IsConfiguration() const override { return 1; }
  /// The top cells.
  const VeriNodes<VeriName>& Design() const { return *_design; }
  const VeriNodes<VeriConfigRule>& Rules() const { return *_rules; }

protected:
  void ResolveContents() override {}

private:
  VeriNodes<VeriName>* _design;
  VeriNodes<VeriConfigRule>* _rules;
};

#endif
