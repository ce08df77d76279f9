// The binary form of the database: every object writes its fields in a fixed order, behind what all objects share.
// database_restore.cpp reads them in the same order.
#include <algorithm>
#include <vector>

#include "containers/views.h"
#include "database/cell.h"
#include "database/fsm.h"
#include "database/instance.h"
#include "database/library.h"
#include "database/net.h"
#include "database/netlist.h"
#include "database/operators.h"
#include "database/port.h"
#include "database/primitives.h"
#include "database/savedform.h"
#include "database/views.h"
#include "util/saverestore.h"

void DesignObj::Save(SaveRestore& stream) const { SavePrefix(stream); }

// The first user name is not saved.
void DesignObj::SavePrefix(SaveRestore& stream) const {
  stream.RegisterPointer(this);
  stream.SaveString(_name);
  stream.SaveLinefile(_linefile);
  stream.SaveInteger(NumOfAtts());
  for (auto [key, att] : Entries<const char*, Att*>(_atts)) {
    stream.SaveString(key);
    stream.SaveString(att->Value());
  }
}

void Library::Save(SaveRestore& stream) const {
  SavePrefix(stream);
  stream.SaveInteger(database_version);
  stream.SaveInteger(_auto_name);
  for (Cell* cell : CellsOf(this)) {
    if (stream.IsSaved(cell)) continue;
    stream.SaveInteger(another_follows);
    cell->Save(stream);
  }
  stream.SaveInteger(0);
}

void Cell::Save(SaveRestore& stream) const {
  SavePrefix(stream);
  stream.SaveInteger(_auto_name);
  for (Netlist* netlist : NetlistsOf(this)) {
    if (stream.IsSaved(netlist)) continue;
    stream.SaveInteger(another_follows);
    stream.SaveInteger(netlist->Type());
    netlist->Save(stream);
  }
  stream.SaveInteger(0);
}

namespace {

const char* NameOf(const DesignObj* object) { return object ? object->Name() : nullptr; }

void RegisterPorts(const Netlist* view, SaveRestore& stream) {
  for (Port* port : PortsOf(view)) stream.RegisterPointer(static_cast<DesignObj*>(port));
}

/// A bus behind the buses that are its elements.
template <class Bus, class Buses> void SaveBuses(Buses buses, int (DesignObj::*level)() const, SaveRestore& stream) {
  std::vector<const Bus*> order;
  for (const Bus* bus : buses) order.push_back(bus);
  std::stable_sort(order.begin(), order.end(),
                   [level](const Bus* a, const Bus* b) { return (a->*level)() < (b->*level)(); });
  stream.SaveInteger(static_cast<long>(order.size()));
  for (const Bus* bus : order) bus->Save(stream);
}

/// A view before all that refers to it.
void SaveViews(const Netlist* netlist, SaveRestore& stream) {
  Set views(HASH_POINTER);
  const_cast<Netlist*>(netlist)->Hierarchy(views, /*top_down*/ 1);
  for (unsigned pos = views.Size(); pos-- > 0;) {
    auto* view = FromWord<Netlist*>(views.GetAt(pos));
    if (view == netlist || stream.IsSaved(view)) continue;
    const Cell* cell = view->Owner();
    stream.SaveInteger(another_follows);
    stream.SaveInteger(view->Type());
    view->Save(stream);
    stream.SaveString(NameOf(cell ? cell->Owner() : nullptr));
    stream.SaveString(NameOf(cell));
  }
  stream.SaveInteger(0);
}

void SaveConnections(const Net* net, SaveRestore& stream) {
  stream.SaveInteger(net->NumOfPorts());
  for (Port* port : PortsOf(net)) stream.SavePointer(port);
  stream.SaveInteger(net->NumOfPortRefs());
  for (PortRef* ref : PortRefsOf(net)) {
    stream.SavePointer(ref->GetPort());
    stream.SavePointer(ref->GetInst());
  }
}

} // namespace

void Netlist::Save(SaveRestore& stream) const {
  SavePrefix(stream);
  SaveViews(this, stream);
  stream.SaveInteger(_present_design == this);
  stream.SaveInteger(_inst_index);
  stream.SaveInteger(_anonymous_port_index);
  stream.SaveInteger(_renamed_net_index);
  stream.SaveInteger(_fsm_index);
  stream.SaveInteger(NumOfPorts());
  for (Port* port : PortsOf(this)) port->Save(stream);
  SaveBuses<PortBus>(PortBusesOf(this), &DesignObj::PortBusLevel, stream);
  stream.SaveInteger(NumOfInsts());
  for (Instance* inst : InstancesOf(this)) {
    stream.SaveInteger(inst->LutFunction() ? LUT_INSTANCE : PLAIN_INSTANCE);
    inst->Save(stream);
  }
  stream.SaveInteger(NumOfFsms());
  for (Fsm* fsm : FsmsOf(this)) fsm->Save(stream);
  stream.SaveInteger(NumOfNets());
  for (Net* net : NetsOf(this)) {
    net->Save(stream);
    SaveConnections(net, stream);
  }
  SaveBuses<NetBus>(NetBusesOf(this), &DesignObj::NetBusLevel, stream);
  stream.SaveInteger(NumOfParameters());
  for (Param* param : ParamsOf(this)) {
    KESTRIN_ASSERT_TEXT(false, "netlists with parameters are not saved");
    stream.SaveString(param->Name());
    stream.SaveString(param->Value());
    stream.SaveString(param->TypeText());
  }
}

// The ports of shared views are written nowhere: they take their ids in their order.
void Prim::Save(SaveRestore& stream) const {
  SavePrefix(stream);
  RegisterPorts(this, stream);
}

// What it takes to build the view again: its sizes.
void Operator::Save(SaveRestore& stream) const {
  SavePrefix(stream);
  SaveSizes(stream);
  RegisterPorts(this, stream);
}

void Operator::SaveSizes(SaveRestore& stream) const {
  stream.SaveInteger(Input1Size());
  switch (Type()) {
  case OPER_ADDER:
    stream.SaveInteger(Input2Size());
    stream.SaveInteger(OutputSize());
    return;
  case OPER_MULTIPLIER:
  case OPER_DIVIDER:
  case OPER_MODULO:
    stream.SaveInteger(Input2Size());
    stream.SaveInteger(IsSigned());
    return;
  case OPER_SHIFT_LEFT:
  case OPER_SHIFT_RIGHT:
  case OPER_ROTATE_LEFT:
  case OPER_ROTATE_RIGHT:
  case OPER_LESSTHAN:
  case OPER_EQUAL:
  case OPER_NTO1MUX: stream.SaveInteger(Input2Size()); return;
  default: return;
  }
}

void OperDualPortRam::SaveSizes(SaveRestore& stream) const {
  for (const KESTRIN_RAM_PORT_INFO* port : {&_read[0], &_read[1], &_write[0], &_write[1]}) {
    for (unsigned size : port->size) stream.SaveInteger(size);
    stream.SaveInteger(port->depth);
  }
}

void Port::Save(SaveRestore& stream) const {
  SavePrefix(stream);
  stream.SaveInteger(_direction);
}

void PortBus::Save(SaveRestore& stream) const {
  SavePrefix(stream);
  stream.SaveInteger(_direction);
  stream.SaveInteger(_is_up);
  stream.SaveInteger(_left);
  stream.SaveInteger(Size());
  for (DesignObj* element : ElementsOf(this)) stream.SavePointer(element);
}

void Net::Save(SaveRestore& stream) const { SavePrefix(stream); }

void NetBus::Save(SaveRestore& stream) const {
  SavePrefix(stream);
  stream.SaveInteger(_left);
  stream.SaveInteger(_right);
  unsigned present = 0;
  for (auto [element, bus] : ElementsOf(this)) present += element != nullptr;
  stream.SaveInteger(present);
  int index = _left;
  for (auto [element, bus] : ElementsOf(this)) {
    if (element) {
      stream.SavePointer(element);
      stream.SaveInteger(index);
    }
    index += IsUp() ? 1 : -1;
  }
}

void Instance::Save(SaveRestore& stream) const {
  SavePrefix(stream);
  stream.SavePointer(_view);
}

void LutInstance::Save(SaveRestore& stream) const {
  Instance::Save(stream);
  stream.SaveInteger(_function);
}

void Fsm::Save(SaveRestore& stream) const {
  SavePrefix(stream);
  stream.SaveInteger(NumStates());
  for (auto [state, name] : Entries<Instance*, char*>(_states)) {
    stream.SavePointer(state);
    stream.SaveString(name);
  }
}
