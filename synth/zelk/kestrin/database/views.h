// Typed ranges over the objects of the database, for `for` loops. The walks survive deletion of the current object;
// what is added during a walk may or may not be seen.
#ifndef KESTRIN_DATABASE_VIEWS_H
#define KESTRIN_DATABASE_VIEWS_H

#include "containers/views.h"
#include "database/cell.h"
#include "database/fsm.h"
#include "database/instance.h"
#include "database/library.h"
#include "database/libset.h"
#include "database/net.h"
#include "database/netlist.h"
#include "database/param.h"
#include "database/port.h"

inline ValuesOf<Library*> LibrariesOf(const Libset* libset) { return ValuesOf<Library*>(&libset->Libraries()); }
inline ValuesOf<Cell*> CellsOf(const Library* library) { return ValuesOf<Cell*>(&library->Cells()); }
inline ValuesOf<Netlist*> NetlistsOf(const Cell* cell) { return ValuesOf<Netlist*>(&cell->Netlists()); }

/// In declaration order: the order of Port::Index.
inline ValuesOf<Port*> PortsOf(const Netlist* netlist) { return ValuesOf<Port*>(&netlist->Ports()); }
inline ValuesOf<PortBus*> PortBusesOf(const Netlist* netlist) { return ValuesOf<PortBus*>(&netlist->PortBuses()); }
inline ValuesOf<NetBus*> NetBusesOf(const Netlist* netlist) { return ValuesOf<NetBus*>(&netlist->NetBuses()); }
inline ValuesOf<Instance*> InstancesOf(const Netlist* netlist) { return ValuesOf<Instance*>(&netlist->Insts()); }
inline ValuesOf<Fsm*> FsmsOf(const Netlist* netlist) { return ValuesOf<Fsm*>(&netlist->Fsms()); }
inline ValuesOf<Param*> ParamsOf(const Netlist* netlist) { return ValuesOf<Param*>(&netlist->Params()); }
/// The instances, anywhere, whose view the netlist is.
inline KeysOf<Instance*> ReferencesOf(const Netlist* netlist) { return KeysOf<Instance*>(&netlist->References()); }
inline ValuesOf<Net*> NamedNetsOf(const Netlist* netlist) { return ValuesOf<Net*>(&netlist->NamedNets()); }
inline ValuesOf<Net*> AutoNetsOf(const Netlist* netlist) { return ValuesOf<Net*>(&netlist->AutoNets()); }
inline ValuesOf<Att*> AttributesOf(const DesignObj* object) { return ValuesOf<Att*>(object->Atts()); }
/// The netlist's own ports on a net.
inline KeysOf<Port*> PortsOf(const Net* net) { return KeysOf<Port*>(net->Ports()); }
inline KeysOf<DesignObj*> ElementsOf(const PortBus* bus) { return KeysOf<DesignObj*>(&bus->Elements()); }
/// Null for holes.
inline Entries<DesignObj*, NetBus*> ElementsOf(const NetBus* bus) {
  return Entries<DesignObj*, NetBus*>(&bus->Elements());
}

/// All nets, the anonymous ones first.
class NetsOf {
public:
  explicit NetsOf(const Netlist* netlist) : _netlist(netlist) {}
  class iterator {
  public:
    explicit iterator(const Netlist* netlist) : _iter(&netlist->AutoNets()), _named(&netlist->NamedNets()) { Switch(); }
    Net* operator*() const {
      void* net = nullptr;
      _iter.Item(nullptr, &net);
      return FromWord<Net*>(net);
    }
    iterator& operator++() {
      _iter.Next();
      Switch();
      return *this;
    }
    bool operator!=(RangeEnd) const { return _iter.Item(nullptr, nullptr); }

  private:
    void Switch() {
      if (!_named || _iter.Item(nullptr, nullptr)) return;
      _iter.First(_named);
      _named = nullptr;
    }
    MapIter _iter;
    const Map* _named;
  };
  iterator begin() const { return iterator(_netlist); }
  RangeEnd end() const { return {}; }

private:
  const Netlist* _netlist;
};

/// The connections of a net, drivers first. Only the current one may be disconnected during the walk.
class PortRefsOf {
public:
  explicit PortRefsOf(const Net* net) : _first(net ? net->GetFirstPortRef() : nullptr) {}
  class iterator {
  public:
    explicit iterator(PortRef* ref) : _ref(ref), _next(ref ? ref->Next() : nullptr) {}
    PortRef* operator*() const { return _ref; }
    iterator& operator++() {
      _ref = _next;
      _next = _ref ? _ref->Next() : nullptr;
      return *this;
    }
    bool operator!=(RangeEnd) const { return _ref != nullptr; }

  private:
    PortRef* _ref;
    PortRef* _next;
  };
  iterator begin() const { return iterator(_first); }
  RangeEnd end() const { return {}; }

private:
  PortRef* _first;
};

/// The leading connections that are no loads; the walk ends at the first load.
class DriversOf {
public:
  explicit DriversOf(const Net* net) : _first(Driver(net ? net->GetFirstPortRef() : nullptr)) {}
  class iterator {
  public:
    explicit iterator(PortRef* ref) : _ref(ref), _next(Following(ref)) {}
    PortRef* operator*() const { return _ref; }
    iterator& operator++() {
      _ref = _next;
      _next = Following(_ref);
      return *this;
    }
    bool operator!=(RangeEnd) const { return _ref != nullptr; }

  private:
    static PortRef* Following(PortRef* ref) { return ref ? Driver(ref->Next()) : nullptr; }
    PortRef* _ref;
    PortRef* _next;
  };
  iterator begin() const { return iterator(_first); }
  RangeEnd end() const { return {}; }

private:
  static PortRef* Driver(PortRef* ref) { return ref && !ref->IsInput() ? ref : nullptr; }
  PortRef* _first;
};

/// The loads, from the tail of the list to its front; the walk ends at the last driver.
class LoadsOf {
public:
  explicit LoadsOf(const Net* net)
      : _head(net ? net->GetFirstPortRef() : nullptr), _last(Load(net ? net->GetLastPortRef() : nullptr)) {}
  class iterator {
  public:
    iterator(PortRef* head, PortRef* ref) : _head(head), _ref(ref), _previous(Preceding(ref)) {}
    PortRef* operator*() const { return _ref; }
    iterator& operator++() {
      _ref = _previous;
      _previous = Preceding(_ref);
      return *this;
    }
    bool operator!=(RangeEnd) const { return _ref != nullptr; }

  private:
    PortRef* Preceding(PortRef* ref) const { return !ref || ref == _head ? nullptr : Load(ref->Previous()); }
    PortRef* _head;
    PortRef* _ref;
    PortRef* _previous;
  };
  iterator begin() const { return {_head, _last}; }
  RangeEnd end() const { return {}; }

private:
  static PortRef* Load(PortRef* ref) { return ref && ref->IsInput() ? ref : nullptr; }
  PortRef* _head;
  PortRef* _last;
};

/// The connections of an instance in port order, unconnected ports left out.
class ConnectionsOf {
public:
  explicit ConnectionsOf(const Instance* inst) : _inst(inst) {}
  class iterator {
  public:
    explicit iterator(const Instance* inst) : _inst(inst) { Skip(); }
    PortRef* operator*() const { return FromWord<PortRef*>(_inst->Connections()->At(_pos)); }
    iterator& operator++() {
      _pos++;
      Skip();
      return *this;
    }
    bool operator!=(RangeEnd) const { return _inst->Connections() && _pos < _inst->Connections()->Size(); }

  private:
    void Skip() {
      const Array* connections = _inst->Connections();
      while (connections && _pos < connections->Size() && !connections->At(_pos)) _pos++;
    }
    const Instance* _inst;
    unsigned _pos = 0;
  };
  iterator begin() const { return iterator(_inst); }
  RangeEnd end() const { return {}; }

private:
  const Instance* _inst;
};

#endif
