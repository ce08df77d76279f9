// Library: a set of cells, which it owns.
#ifndef KESTRIN_DATABASE_LIBRARY_H
#define KESTRIN_DATABASE_LIBRARY_H

#include "containers/map.h"
#include "database/designobj.h"

class Cell;
class Libset;
class Netlist;

class Library : public DesignObj {
public:
  explicit Library(const char* name = nullptr, unsigned long linefile = 0);
  /// Restores a saved library, without owner. Views of other libraries that it refers to enter the global set on the
  /// way. Ends with InstallRestored.
  explicit Library(SaveRestore& stream);
  ~Library() override;

  /// The library "Primitives" of the global set, with all primitive netlists in it.
  static Library* Primitives();
  /// The library "Operators" of the global set; operators enter it as they are first built.
  static Library* Operators();

  db_object_type ObjectType() const override { return DB_LIBRARY; }
  void SetName(const char* name) override;
  void Save(SaveRestore& stream) const override;
  Libset* Owner() const { return _owner; }
  /// Takes ownership of a cell without owner. Names as told at Libset.
  void Add(Cell* cell);
  void Remove(Cell* cell);
  /// Without `case_sensitive` the first cell, in library order, whose name is equal but for case.
  Cell* GetCell(const char* name, unsigned case_sensitive = 1) const;
  /// The exact name here, then in the other libraries of the set, in their order; then without `case_sensitive` the
  /// name without regard to case, here only.
  Cell* GetCellAnywhere(const char* name, unsigned case_sensitive = 1) const;
  unsigned NumOfCells() const { return _cells.Size(); }
  const Map& Cells() const { return _cells; }
  /// A deep copy without owner; instances in it refer to the views that the originals refer to.
  Library* Copy() const;
  /// Puts what was restored under its owner, and gives back what stands there now. Where the owner has an object of
  /// that name, this one stays: libraries and cells take in what they do not have, a netlist keeps its contents and
  /// gets missing ports, and the restored object goes. From a bad stream nothing is installed, what entered the
  /// database on the way is taken back, an error tells so, and null comes back; the restored object goes too.
  Library* InstallRestored(SaveRestore& stream, Libset* owner);

private:
  friend class Libset;
  Library* Install(SaveRestore& stream, Libset* owner);

  Map _cells;
  Libset* _owner = nullptr;
  unsigned _auto_name = 0;
};

#endif
