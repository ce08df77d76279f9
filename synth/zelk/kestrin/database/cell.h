// Cell: the views of one design unit: a set of netlists, which it owns.
#ifndef KESTRIN_DATABASE_CELL_H
#define KESTRIN_DATABASE_CELL_H

#include "containers/map.h"
#include "database/designobj.h"

class Library;
class Netlist;

class Cell : public DesignObj {
public:
  explicit Cell(const char* name = nullptr, unsigned long linefile = 0);
  /// Restores a saved cell, without owner: see Library.
  explicit Cell(SaveRestore& stream);
  ~Cell() override;

  db_object_type ObjectType() const override { return DB_CELL; }
  void SetName(const char* name) override;
  void Save(SaveRestore& stream) const override;
  Library* Owner() const { return _owner; }
  /// Takes ownership of a netlist without owner. Names as told at Libset.
  void Add(Netlist* netlist);
  void Remove(Netlist* netlist);
  Netlist* GetNetlist(const char* name) const;
  /// Null for an empty cell.
  Netlist* GetFirstNetlist() const;
  unsigned NumOfNetlists() const { return _netlists.Size(); }
  const Map& Netlists() const { return _netlists; }
  /// A deep copy without owner; instances in it refer to the views that the originals refer to.
  Cell* Copy() const;
  Cell* InstallRestored(SaveRestore& stream, Library* owner);

private:
  friend class Library;
  Cell* Install(SaveRestore& stream, Library* owner);

  Map _netlists;
  Library* _owner = nullptr;
  unsigned _auto_name = 0;
};

#endif
