// Design units: modules, primitives, interfaces, packages. A unit owns its identifier, scope and items; a library owns
// the unit. Elaboration walks the same tree for each parameter set.
#ifndef KESTRIN_VERILOG_VERIMODULE_H
#define KESTRIN_VERILOG_VERIMODULE_H

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "verilog/veri_pragma.h"
#include "verilog/verimoduleitem.h"

class Library;
class Netlist;
class Param;
class VeriLibrary;
enum veri_elab_mode : int;

class VeriDesignUnit : public VeriTreeNode {
public:
  VeriDesignUnit(std::unique_ptr<VeriDesignUnitId> id, VeriModuleItems* items, std::unique_ptr<VeriScope> scope,
                 unsigned long linefile);
  ~VeriDesignUnit() override;
  void VisitChildren(VeriVisitor& visitor) override;
  VeriScope* GetScope() const override { return _scope.get(); }
  VeriDesignUnitId* GetId() const { return _id.get(); }
  const char* Name() const { return _id->Name(); }
  /// The name by which a library knows the unit: of a nested one with those of the units around it, "outer.inner".
  std::string FullName() const;
  VeriLibrary* GetLibrary() const { return _id->GetLibrary(); }
  veri_dialect GetDialect() const { return _dialect; }
  VeriModuleItems* Items() const { return _items; }
  virtual unsigned IsModule() const { return 0; }
  virtual unsigned IsPrimitive() const { return 0; }
  virtual unsigned IsInterface() const { return 0; }
  virtual unsigned IsPackage() const { return 0; }
  virtual unsigned IsConfiguration() const { return 0; }
  /// Binds all names, once.
  void Resolve();
  unsigned IsResolved() const { return _is_resolved; }
  /// Files that what the unit uses lies in, by the name pointers of LineFile; known after Resolve.
  const Set* Dependencies() const { return _dependencies.get(); }
  /// What the annotations of the source say; null without.
  const VeriAnnotations* Annotations() const { return _annotations.get(); }
  void SetAnnotations(std::unique_ptr<VeriAnnotations> annotations) { _annotations = std::move(annotations); }
  /// The names of the modules that the items instantiate, each once, in order.
  std::vector<std::string> InstantiatedModuleNames() const;

protected:
  virtual void ResolveContents() = 0;
  void PrintStart(std::ostream& out, unsigned level, const char* prefix = "") const;
  /// From the semicolon of the head to the end.
  void PrintBody(std::ostream& out, unsigned level, unsigned first_item = 0) const;
  /// What stands in front of the items.
  virtual void PrintTimes(std::ostream& /*out*/, unsigned /*level*/) const {}
  std::unique_ptr<VeriDesignUnitId> _id;
  VeriModuleItems* _items;
  std::unique_ptr<VeriScope> _scope;

private:
  veri_dialect _dialect;
  bool _is_resolved = false;
  std::unique_ptr<Set> _dependencies;
  std::unique_ptr<VeriAnnotations> _annotations;
};

class VeriModule : public VeriDesignUnit {
public:
  /// `parameter_ports` and `ports` are null without; ports are VeriAnsiPortDecl, names, concatenations of names, or
  /// VeriPortConnect for a named port expression.
  VeriModule(std::unique_ptr<VeriDesignUnitId> id, VeriModuleItems* parameter_ports, VeriExpressions* ports,
             VeriModuleItems* items, std::unique_ptr<VeriScope> scope, unsigned long linefile = 0);
  ~VeriModule() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriModule; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  unsigned IsModule() const override { return 1; }

  const VeriExpressions* PortExpressions() const { return _port_expressions; }
  const VeriModuleItems* ParameterPorts() const { return _parameter_ports; }
  /// The ports in the order of the head; known after Resolve.
  const std::vector<VeriVariable*>& Ports() const { return _ports; }
  /// All parameters in order of declaration, local ones included; those of a head come first. Known after the parse.
  const std::vector<VeriParamId*>& Params() const { return _params; }
  /// Those that an instance can override.
  std::vector<VeriParamId*> OverridableParams() const;
  VeriParamId* GetParam(const char* name) const;
  /// The parameters that stand for types, local ones included, in order of declaration.
  const std::vector<VeriDataType*>& TypeParams() const { return _type_params; }
  VeriDataType* GetTypeParam(const char* name) const;
  /// Values and types that an instance can override, in the order that a list without names gives them.
  std::vector<VeriValuedId*> OverridableFormals() const;
  /// The modport of this name; null when there is none.
  VeriModport* GetModport(const char* name) const;
  /// The module that this one is nested in; null for most.
  VeriModule* EnclosingModule() const;
  VeriVariable* GetPort(const char* name) const;

  // What the source had in force at the head.
  unsigned IsCelldefine() const { return _is_celldefine; }
  unsigned DefaultNettype() const { return _default_nettype; }
  void SetDirectives(unsigned celldefine, unsigned default_nettype);
  /// What `timeunit` and `timeprecision` of the module say; null without.
  const VeriTimeLiteral* TimeUnit() const { return _time_unit.get(); }
  const VeriTimeLiteral* TimePrecision() const { return _time_precision.get(); }
  void SetTimes(std::unique_ptr<VeriTimeLiteral> unit, std::unique_ptr<VeriTimeLiteral> precision) {
    _time_unit = std::move(unit);
    _time_precision = std::move(precision);
  }
  unsigned IsExtern() const { return _is_extern; }
  void SetExtern() { _is_extern = true; }
  /// Takes over a declaration of this module without body.
  void AddExternDecl(VeriModule* module);
  /// The lists of parameters and ports of the head, as source text.
  void PrintPorts(std::ostream& out, unsigned level) const;
  unsigned HasAnsiPorts() const;

  // Elaboration.
  /// One parameter set: a name of a parameter to a VeriExpression, both owned by the map's owner. The netlist is
  /// polished and owned by a cell of the library. A black box, with errors counted, when something was wrong.
  Netlist* Elaborate(Library* library, const Map* parameters, bool hierarchy_only = false);
  /// The view of the ports alone, made once per parameter set; null after an error.
  Netlist* ElaborateBlackBox(Library* library, const Map* parameters);
  unsigned IsElaborated() const { return _is_elaborated; }
  /// "m", or "m(W,8,N,2)".
  static std::string CreateUniqueName(const char* name, const Map* parameters);
  /// Parameters of the host (name to Param) as expressions (name to VeriExpression); DeleteParams frees them.
  Map* CreateActualParameters(const Map* host_parameters);
  static void DeleteParams(Map* parameters);
  /// The values of the parameters in the last elaboration, as text, by name; empty before it.
  const std::vector<std::pair<std::string, std::string>>& ElaboratedParameters() const {
    return _elaborated_parameters;
  }

  /// Puts a parameter set (name to VeriExpression) on a view, in the host's notation.
  static void AddParamsToNetlist(Netlist* view, const Map* parameters);
  /// The type of a port under the parameters that a port-level view was made with; null for an unknown port.
  OwnedConstraint PortType(const Netlist* view, const char* port) const;

  void AddImplicitNet(VeriDataDecl* decl);

  /// The items in their order, in the present scope.
  virtual void ElaborateContents();

protected:
  void ResolveContents() override;
  void PrintTimes(std::ostream& out, unsigned level) const override;

private:
  friend class VeriModuleRun;
  std::unique_ptr<Netlist> Run(Library* library, const Map* parameters, veri_elab_mode mode);
  void CollectParams();
  void ResolveParameterPorts();
  void ResolvePorts();
  void DependOnInterfaces();
  void AddPort(VeriVariable* port);
  void ResolveItems();
  VeriModuleItems* _parameter_ports;
  VeriExpressions* _port_expressions;
  std::vector<VeriVariable*> _ports;
  std::vector<VeriParamId*> _params;
  std::vector<VeriDataType*> _type_params;
  std::vector<std::pair<std::string, std::string>> _elaborated_parameters;
  std::vector<std::unique_ptr<VeriModule>> _extern_decls;
  // By the name of the cell: what PortType answers.
  std::map<std::string, std::map<std::string, OwnedConstraint>> _port_types;
  std::unique_ptr<VeriTimeLiteral> _time_unit;
  std::unique_ptr<VeriTimeLiteral> _time_precision;
  unsigned _default_nettype;
  bool _is_celldefine = false;
  bool _is_extern = false;
  bool _is_elaborated = false;
};

class VeriPrimitive : public VeriModule {
public:
  using VeriModule::VeriModule;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriPrimitive; }
  void Accept(VeriVisitor& visitor) override;
  unsigned IsPrimitive() const override { return 1; }

protected:
  void ElaborateContents() override;
};

class VeriInterface : public VeriModule {
public:
  using VeriModule::VeriModule;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriInterface; }
  void Accept(VeriVisitor& visitor) override;
  unsigned IsInterface() const override { return 1; }
};

/// A module, primitive or interface inside of another one, which knows its name alone.
class VeriNestedModule : public VeriModuleItem {
public:
  explicit VeriNestedModule(VeriModule* module, unsigned long linefile = 0);
  ~VeriNestedModule() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriNestedModule; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  void Resolve(VeriScope* scope) override;
  VeriModule* Module() const { return _module; }

private:
  VeriModule* _module;
};

class VeriPackage : public VeriDesignUnit {
public:
  using VeriDesignUnit::VeriDesignUnit;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriPackage; }
  void Accept(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  unsigned IsPackage() const override { return 1; }
  /// Makes the values of parameters and types.
  void Initialize();

protected:
  void ResolveContents() override;
};

#endif
