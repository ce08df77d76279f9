#include "database/cell.h"

#include "database/library.h"
#include "database/namedchildren.h"
#include "database/netlist.h"
#include "database/views.h"

Cell::Cell(const char* name, unsigned long linefile) : DesignObj(name, linefile), _netlists(HASH_STRING) {}

Cell::~Cell() {
  for (Netlist* netlist : NetlistsOf(this)) delete netlist;
  if (_owner) _owner->Remove(this);
}

void Cell::SetName(const char* name) {
  Library* owner = _owner;
  if (owner) owner->Remove(this);
  Rename(name);
  if (owner) owner->Add(this);
}

void Cell::Add(Netlist* netlist) {
  KESTRIN_ASSERT(!netlist->Owner());
  AddNewestWins(
      _netlists, netlist, 'v', _auto_name, [](Netlist* child) { child->_owner = nullptr; },
      [this](Netlist* child) { child->_owner = this; });
}

void Cell::Remove(Netlist* netlist) {
  if (!netlist || netlist->_owner != this) return;
  _netlists.Remove(netlist->Name());
  netlist->_owner = nullptr;
}

Netlist* Cell::GetNetlist(const char* name) const {
  return name ? FromWord<Netlist*>(_netlists.GetValue(name)) : nullptr;
}

Netlist* Cell::GetFirstNetlist() const {
  return _netlists.Size() ? FromWord<Netlist*>(_netlists.GetValueAt(0)) : nullptr;
}

Cell* Cell::Copy() const {
  auto* copy = new Cell(Name(), Linefile());
  copy->CopyNames(*this);
  copy->CopyFrom(*this);
  for (Netlist* netlist : NetlistsOf(this)) copy->Add(netlist->Copy());
  copy->_auto_name = _auto_name;
  return copy;
}
