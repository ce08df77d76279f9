#include "database/library.h"

#include "database/cell.h"
#include "database/libset.h"
#include "database/namedchildren.h"
#include "database/netlist.h"
#include "database/views.h"
#include "util/strings.h"

namespace {

Library* GlobalLibrary(const char* name) {
  Library* library = Libset::Global()->GetLibrary(name);
  if (library) return library;
  library = new Library(name);
  Libset::Global()->Add(library);
  return library;
}

} // namespace

Library::Library(const char* name, unsigned long linefile) : DesignObj(name, linefile), _cells(HASH_STRING) {}

Library::~Library() {
  for (Cell* cell : CellsOf(this)) delete cell;
  if (_owner) _owner->Remove(this);
}

Library* Library::Primitives() {
  Netlist::CreateAllPrimitives();
  return GlobalLibrary("Primitives");
}

Library* Library::Operators() { return GlobalLibrary("Operators"); }

void Library::SetName(const char* name) {
  Libset* owner = _owner;
  if (owner) owner->Remove(this);
  Rename(name);
  if (owner) owner->Add(this);
}

void Library::Add(Cell* cell) {
  KESTRIN_ASSERT(!cell->Owner());
  AddNewestWins(
      _cells, cell, 'c', _auto_name, [](Cell* child) { child->_owner = nullptr; },
      [this](Cell* child) { child->_owner = this; });
}

void Library::Remove(Cell* cell) {
  if (!cell || cell->_owner != this) return;
  _cells.Remove(cell->Name());
  cell->_owner = nullptr;
}

Cell* Library::GetCell(const char* name, unsigned case_sensitive) const {
  if (!name) return nullptr;
  if (case_sensitive) return FromWord<Cell*>(_cells.GetValue(name));
  for (Cell* cell : CellsOf(this))
    if (Strings::compare_nocase(cell->Name(), name)) return cell;
  return nullptr;
}

Cell* Library::GetCellAnywhere(const char* name, unsigned case_sensitive) const {
  if (Cell* cell = GetCell(name, 1)) return cell;
  if (_owner)
    for (Library* library : LibrariesOf(_owner))
      if (library != this)
        if (Cell* cell = library->GetCell(name, 1)) return cell;
  return case_sensitive ? nullptr : GetCell(name, 0);
}

Library* Library::Copy() const {
  auto* copy = new Library(Name(), Linefile());
  copy->CopyNames(*this);
  copy->CopyFrom(*this);
  for (Cell* cell : CellsOf(this)) copy->Add(cell->Copy());
  copy->_auto_name = _auto_name;
  return copy;
}
