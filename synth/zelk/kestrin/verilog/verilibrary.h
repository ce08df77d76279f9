// VeriLibrary: the analysed design units of one library, by name, and the global declarations. It owns all of them.
#ifndef KESTRIN_VERILOG_VERILIBRARY_H
#define KESTRIN_VERILOG_VERILIBRARY_H

#include <memory>
#include <string>

#include "containers/map.h"
#include "containers/set.h"
#include "verilog/verimodule.h"

class Cell;

class VeriLibrary : public VeriTreeNode {
public:
  explicit VeriLibrary(const char* name);
  ~VeriLibrary() override;
  VERI_CLASS_ID GetClassId() const override { return ID_VeriLibrary; }
  void Accept(VeriVisitor& visitor) override;
  void VisitChildren(VeriVisitor& visitor) override;
  void PrettyPrint(std::ostream& out, unsigned level) const override;
  const char* Name() const { return _name.c_str(); }
  /// The scope above all units: global declarations.
  VeriScope* GetScope() const override { return _globals.get(); }

  /// Takes the unit over; false, with a message, when errors were counted or the name is taken, and then the unit stays
  /// the caller's.
  bool AddDesignUnit(VeriDesignUnit* unit);
  /// A declaration outside of all units; taken over.
  void AddItem(VeriModuleItem* item);
  /// Deletes the declaration.
  void RemoveItem(VeriModuleItem* item);
  /// Declares a global name; false when it is taken.
  bool Declare(VeriIdDef* id) { return _globals->Declare(id); }
  VeriLibraryId* GetId() const { return _id.get(); }
  /// Deletes the unit.
  void RemoveDesignUnit(VeriDesignUnit* unit);
  void RemoveAllDesignUnits();
  /// A module, primitive or interface; exact, or with `case_sensitive` 0 the first that is equal but for case.
  VeriModule* GetModule(const char* name, unsigned case_sensitive = 1) const;
  VeriPackage* GetPackage(const char* name) const;
  /// A nested unit has the names of those around it in front, "outer.inner".
  VeriDesignUnit* GetDefinition(const char* name) const;
  /// VeriDesignUnitId to VeriDesignUnit, in the order of insertion.
  const Map& DesignUnits() const { return _units; }
  std::vector<VeriDesignUnit*> Units() const;

  /// Binds the names of the global declarations that came since the last call; each is entered into `done` when given.
  void ResolveGlobals(Set* done = nullptr);
  /// Makes the values of the global declarations, once until a new one arrives.
  void Elaborate();
  /// Something new makes the values of the global declarations stale.
  void RequireElaboration() { _is_elaborated = false; }
  bool IsElaborated() const { return _is_elaborated; }
  const VeriModuleItems& GlobalItems() const { return _items; }

  // Files that global declarations depend on.
  void AddDependentFile(const VeriModuleItem* item, const char* file);
  const Set* GetDependentFiles(const VeriModuleItem* item) const;

  const char* TimeScale() const { return _time_scale.empty() ? nullptr : _time_scale.c_str(); }
  void SetTimeScale(const char* text) { _time_scale = text; }

private:
  bool AddModule(VeriModule* module);
  bool AddNamed(Map& names, VeriDesignUnit* unit);
  void Insert(Map& names, VeriDesignUnit* unit);
  /// Takes the unit out without deleting it.
  void Extract(VeriDesignUnit* unit);
  void Elaborate(Cell* cell);
  std::string _name;
  std::string _time_scale;
  std::unique_ptr<VeriLibraryId> _id;
  std::unique_ptr<VeriScope> _globals;
  Map _names;    // of modules, primitives, interfaces: name to unit
  Map _packages; // name to unit
  Map _units;
  Set _contents; // units and global items as they came
  VeriModuleItems _items;
  ArrayOf<VeriModuleItem> _unresolved;
  Map _dependent_files; // item to Set of names
  bool _is_elaborated = false;
};

#endif
