#include "database/port.h"

#include "containers/views.h"
#include "database/instance.h"
#include "database/net.h"
#include "database/netlist.h"
#include "database/views.h"

Port::Port(const char* name, port_dir direction, unsigned long linefile)
    : DesignObj(name, linefile), _direction(direction) {}

Port::~Port() {
  if (_net) _net->Disconnect(this);
  if (_bus) _bus->Remove(this);
  if (_owner) _owner->Remove(this);
}

unsigned Port::Supports(const Att* att) const { return !att || kestrin_att_supported(ATT_ON_PORT, att->Type()); }

void Port::SetName(const char* name) {
  if (_owner)
    _owner->RenamePort(this, name);
  else
    Rename(name);
}

void Port::SetDirection(port_dir direction) {
  if (direction == _direction) return;
  if (!_owner) {
    _direction = direction;
    return;
  }
  for (Instance* inst : ReferencesOf(_owner)) {
    PortRef* ref = inst->GetPortRef(this);
    if (ref) ref->GetNet()->Remove(ref);
  }
  _direction = direction;
  for (Instance* inst : ReferencesOf(_owner)) {
    PortRef* ref = inst->GetPortRef(this);
    if (ref) ref->GetNet()->Add(ref);
  }
}

PortBus::PortBus(const char* name, port_dir direction, int left, unsigned is_up, unsigned long linefile, int level)
    : DesignObj(name, linefile), _left(left), _level(level), _direction(direction), _is_up(is_up ? 1 : 0) {}

PortBus::~PortBus() {
  for (DesignObj* element : ElementsOf(this)) element->SetPortBus(nullptr);
  if (_bus) _bus->Remove(this);
  if (_owner) _owner->Remove(this);
}

unsigned PortBus::Supports(const Att* att) const { return !att || kestrin_att_supported(ATT_ON_PORT, att->Type()); }

void PortBus::SetName(const char* name) {
  Netlist* owner = _owner;
  if (owner) owner->Remove(this);
  Rename(name);
  if (owner) owner->Add(this);
}

int PortBus::RightIndex() const {
  int span = Size() ? static_cast<int>(Size()) - 1 : 0;
  return _is_up ? _left + span : _left - span;
}

unsigned PortBus::PortCount() const {
  unsigned count = 0;
  for (DesignObj* element : ElementsOf(this))
    count += element->ObjectType() == DB_PORTBUS ? static_cast<PortBus*>(element)->PortCount() : 1;
  return count;
}

void PortBus::Add(DesignObj* element) {
  KESTRIN_ASSERT_TEXT(!element->GetPortBus() || element->GetPortBus() == this,
                      "!elem->GetPortBus() || elem->GetPortBus() == this");
  KESTRIN_ASSERT_TEXT(!_level || element->PortBusLevel() + 1 == _level, "PortBusLevel() == elem->PortBusLevel() + 1");
  _elements.Insert(element);
  element->SetPortBus(this);
}

void PortBus::Remove(DesignObj* element) {
  KESTRIN_ASSERT_TEXT(!element->GetPortBus() || element->GetPortBus() == this,
                      "!elem->GetPortBus() || elem->GetPortBus() == this");
  KESTRIN_ASSERT_TEXT(!_level || element->PortBusLevel() + 1 == _level, "PortBusLevel() == elem->PortBusLevel() + 1");
  if (_elements.Remove(element)) element->SetPortBus(nullptr);
}

DesignObj* PortBus::ElementAtPos(unsigned pos) const {
  return pos < Size() ? FromWord<DesignObj*>(_elements.GetAt(pos)) : nullptr;
}

DesignObj* PortBus::ElementAtIndex(int index) const {
  long long pos = _is_up ? 0LL + index - _left : 0LL + _left - index;
  return pos < 0 || pos >= Size() ? nullptr : ElementAtPos(static_cast<unsigned>(pos));
}

int PortBus::IndexOf(const DesignObj* element) const {
  int pos = static_cast<int>(_elements.IndexOfItem(element));
  return _is_up ? _left + pos : _left - pos;
}
