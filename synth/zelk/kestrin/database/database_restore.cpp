// Reads what the objects of the database wrote, field by field in the same order. A file may be damaged: every number
// is checked before it is used, an id must name an object of the kind that is expected, and reading ends with the
// stream.
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "containers/views.h"
#include "database/cell.h"
#include "database/fsm.h"
#include "database/instance.h"
#include "database/library.h"
#include "database/libset.h"
#include "database/net.h"
#include "database/netlist.h"
#include "database/operators.h"
#include "database/port.h"
#include "database/primitives.h"
#include "database/savedform.h"
#include "database/views.h"
#include "util/message.h"
#include "util/saverestore.h"
#include "util/strings.h"

void DesignObj::RestoreFields(SaveRestore& stream) {
  Strings::free_string(_name);
  _name = stream.RestoreString();
  _linefile = static_cast<unsigned>(stream.RestoreLinefile());
  long count = stream.RestoreInteger();
  for (long i = 0; i < count && stream.IsOK(); i++) {
    OwnedString key(stream.RestoreString());
    OwnedString value(stream.RestoreString());
    if (key)
      AddAtt(key.get(), value.get());
    else
      stream.SetFail();
  }
}

void DesignObj::RestorePrefix(SaveRestore& stream) {
  stream.RegisterPointer(this);
  RestoreFields(stream);
}

namespace {

/// An object that was read before; null, and a bad stream, when the id names none of this kind.
template <class Object> Object* RestoreObject(SaveRestore& stream, db_object_type type) {
  auto* object = static_cast<DesignObj*>(stream.RestorePointer());
  if (object && object->ObjectType() == type) return static_cast<Object*>(object);
  stream.SetFail();
  return nullptr;
}

port_dir RestoreDirection(SaveRestore& stream) {
  long direction = stream.RestoreInteger();
  if (direction >= DIR_INOUT && direction <= DIR_NONE) return static_cast<port_dir>(direction);
  stream.SetFail();
  return DIR_NONE;
}

/// Reads a count and so many items, as long as the stream is good.
template <class Read> void RestoreEach(SaveRestore& stream, Read read) {
  long count = stream.RestoreInteger();
  for (long i = 0; i < count && stream.IsOK(); i++) read();
}

void RegisterPorts(const Netlist* view, SaveRestore& stream) {
  for (Port* port : PortsOf(view)) stream.RegisterPointer(static_cast<DesignObj*>(port));
}

/// A primitive is not made again: the shared one gets the id.
Prim* RestorePrim(SaveRestore& stream, prim_type_enum type) {
  DesignObj fields;
  fields.RestoreFields(stream);
  Prim* prim = Prim::Static(type);
  if (type == PRIM_BUF)
    for (unsigned kind = LOGICAL; kind <= NONE; kind++)
      if (Strings::compare(PrimBuf::Static(kind)->Name(), fields.Name())) prim = PrimBuf::Static(kind);
  stream.RegisterPointer(static_cast<DesignObj*>(prim));
  RegisterPorts(prim, stream);
  return prim;
}

/// No word is wider; a size beyond it comes from a damaged file.
constexpr long max_operator_size = 1L << 20;

class OperatorReader {
public:
  explicit OperatorReader(SaveRestore& stream) : _stream(stream) {}

  unsigned Size() {
    long size = _stream.RestoreInteger();
    if (size < 0 || size > max_operator_size) {
      _stream.SetFail();
      return 0;
    }
    return static_cast<unsigned>(size);
  }

  /// Null and a bad stream when the sizes make no operator.
  Operator* Read(prim_type_enum type) {
    if (type == OPER_DUAL_PORT_RAM) return ReadRam();
    unsigned left = Size();
    switch (type) {
    case OPER_REDUCE_AND: return Made(new OperReduceAnd(left));
    case OPER_REDUCE_OR: return Made(new OperReduceOr(left));
    case OPER_REDUCE_XOR: return Made(new OperReduceXor(left));
    case OPER_REDUCE_NAND: return Made(new OperReduceNand(left));
    case OPER_REDUCE_NOR: return Made(new OperReduceNor(left));
    case OPER_REDUCE_XNOR: return Made(new OperReduceXnor(left));
    case OPER_SELECTOR: return Made(new OperSelector(left));
    case OPER_PRIO_SELECTOR: return Made(new OperPrioSelector(left));
    case OPER_LUT: return Made(new OperLut(left));
    case OPER_DECODER:
      if (left > max_decoder_size) return Made(nullptr);
      return Made(new OperDecoder(left));
    default: return ReadOfTwo(type, left, Size());
    }
  }

private:
  /// A decoder has 2 to the power of its size outputs.
  static constexpr unsigned max_decoder_size = 20;

  Operator* Made(Operator* made) {
    if (!made) _stream.SetFail();
    if (_stream.IsOK()) return made;
    delete made;
    return nullptr;
  }

  Operator* ReadOfTwo(prim_type_enum type, unsigned left, unsigned right) {
    switch (type) {
    case OPER_ADDER:
      Size(); // that of the output follows from the others
      return Made(new OperAdder(left, right));
    case OPER_MULTIPLIER: return Made(new OperMult(left, right, left + right, Size()));
    case OPER_DIVIDER: return Made(new OperDiv(left, right, left, Size()));
    case OPER_MODULO: return Made(new OperMod(left, right, right, Size()));
    case OPER_SHIFT_LEFT: return Made(new OperShiftLeft(left, right));
    case OPER_SHIFT_RIGHT: return Made(new OperShiftRight(left, right));
    case OPER_ROTATE_LEFT: return Made(new OperRotateLeft(left, right));
    case OPER_ROTATE_RIGHT: return Made(new OperRotateRight(left, right));
    case OPER_LESSTHAN: return Made(left == right ? new OperLessThan(left, right) : nullptr);
    case OPER_EQUAL: return Made(left == right ? new OperEqual(left, right) : nullptr);
    case OPER_NTO1MUX: return Made(new OperNto1Mux(left, right));
    default: return Made(nullptr);
    }
  }

  Operator* ReadRam() {
    KESTRIN_RAM_PORT_INFO ports[4]; // two to read, two to write
    for (unsigned number = 0; number < 4; number++) {
      for (unsigned element = 0; element < RAM_ELEMENT_COUNT; element++) {
        ports[number].size[element] = Size();
        bool is_read = element == RAM_READ_ADDRESS || element == RAM_READ_DATA;
        if (ports[number].size[element] && is_read != (number < 2)) _stream.SetFail();
      }
      ports[number].depth = static_cast<unsigned>(_stream.RestoreInteger());
    }
    return _stream.IsOK() ? new OperDualPortRam(ports[0], ports[1], ports[2], ports[3]) : nullptr;
  }

  SaveRestore& _stream;
};

Operator* RestoreOperator(SaveRestore& stream, prim_type_enum type) {
  DesignObj fields;
  fields.RestoreFields(stream);
  Operator* made = OperatorReader(stream).Read(type);
  if (!made) return nullptr;
  made->SetName(fields.Name());
  made->CopyFrom(fields);
  stream.RegisterPointer(static_cast<DesignObj*>(made));
  RegisterPorts(made, stream);
  return made;
}

/// Views that are read inside of views: a file that was written whole never goes deeper than this.
constexpr unsigned max_view_depth = 16;

class ViewDepth {
public:
  ViewDepth() { _depth++; }
  ViewDepth(const ViewDepth&) = delete;
  ViewDepth& operator=(const ViewDepth&) = delete;
  ~ViewDepth() { _depth--; }
  bool IsTooDeep() const { return _depth > max_view_depth; }

private:
  static inline unsigned _depth = 0;
};

} // namespace

Netlist* Netlist::RestoreNetlist(SaveRestore& stream, prim_type_enum type) {
  ViewDepth depth;
  if (depth.IsTooDeep() || type < PRIM_NONE || type >= PRIM_ANY) stream.SetFail();
  if (!stream.IsOK()) return nullptr;
  if (type == PRIM_NONE) return new Netlist(stream);
  if (type <= PRIM_INFER_POINT) return RestorePrim(stream, type);
  return RestoreOperator(stream, type);
}

namespace {

/// The cell in the library of that name, both made when they are missing.
Cell* CellOf(const char* library_name, const char* cell_name) {
  Library* library = Libset::Global()->GetLibrary(library_name);
  if (!library) Libset::Global()->Add(library = new Library(library_name));
  Cell* cell = library->GetCell(cell_name);
  if (!cell) library->Add(cell = new Cell(cell_name));
  return cell;
}

void RestoreViews(SaveRestore& stream) {
  while (stream.RestoreInteger() == another_follows && stream.IsOK()) {
    Netlist* view = Netlist::RestoreNetlist(stream, static_cast<prim_type_enum>(stream.RestoreInteger()));
    OwnedString library_name(stream.RestoreString());
    OwnedString cell_name(stream.RestoreString());
    if (!view || view->IsPrimitive()) continue;
    view->Install(stream, stream.IsOK() ? CellOf(library_name.get(), cell_name.get()) : nullptr);
  }
}

/// Elements were read before their bus, so that no bus contains itself.
bool MayEnter(const PortBus* bus, const DesignObj* element) {
  bool is_kind = element && (element->ObjectType() == DB_PORT || element->ObjectType() == DB_PORTBUS);
  if (!is_kind || element == bus || element->GetPortBus()) return false;
  return !bus->Size() || element->PortBusLevel() + 1 == bus->PortBusLevel();
}

bool MayEnter(const NetBus* bus, const DesignObj* element, long index) {
  bool is_kind = element && (element->ObjectType() == DB_NET || element->ObjectType() == DB_NETBUS);
  if (!is_kind || element == bus || element->GetNetBus()) return false;
  if (bus->Elements().Size() && element->NetBusLevel() + 1 != bus->NetBusLevel()) return false;
  long low = bus->IsUp() ? bus->LeftIndex() : bus->RightIndex();
  long high = bus->IsUp() ? bus->RightIndex() : bus->LeftIndex();
  return index >= low && index <= high && high - low < max_operator_size &&
         !bus->ElementAtIndex(static_cast<int>(index));
}

void RestorePortBus(Netlist* netlist, SaveRestore& stream) {
  DesignObj fields;
  fields.RestoreFields(stream);
  port_dir direction = RestoreDirection(stream);
  bool is_up = stream.RestoreInteger() != 0;
  int left = static_cast<int>(stream.RestoreInteger());
  auto* bus = new PortBus(fields.Name(), direction, left, is_up, fields.Linefile());
  bus->CopyFrom(fields);
  netlist->Add(bus);
  stream.RegisterPointer(static_cast<DesignObj*>(bus));
  RestoreEach(stream, [&] {
    auto* element = static_cast<DesignObj*>(stream.RestorePointer());
    if (!MayEnter(bus, element)) {
      stream.SetFail();
      return;
    }
    bus->SetPortBusLevel(element->PortBusLevel() + 1);
    bus->Add(element);
  });
}

void RestoreNetBus(Netlist* netlist, SaveRestore& stream) {
  DesignObj fields;
  fields.RestoreFields(stream);
  int left = static_cast<int>(stream.RestoreInteger());
  int right = static_cast<int>(stream.RestoreInteger());
  auto* bus = new NetBus(fields.Name(), left, right, fields.Linefile());
  bus->CopyFrom(fields);
  netlist->Add(bus);
  stream.RegisterPointer(static_cast<DesignObj*>(bus));
  RestoreEach(stream, [&] {
    auto* element = static_cast<DesignObj*>(stream.RestorePointer());
    long index = stream.RestoreInteger();
    if (!MayEnter(bus, element, index)) {
      stream.SetFail();
      return;
    }
    bus->SetNetBusLevel(element->NetBusLevel() + 1);
    bus->AddAtIndex(element, static_cast<int>(index));
  });
}

void RestorePort(Netlist* netlist, SaveRestore& stream) {
  auto* port = new Port;
  port->RestorePrefix(stream);
  port->SetDirection(RestoreDirection(stream));
  netlist->Add(port);
}

void RestoreInstance(Netlist* netlist, SaveRestore& stream) {
  bool is_lut = stream.RestoreInteger() == LUT_INSTANCE;
  DesignObj fields;
  fields.RestoreFields(stream);
  auto* view = stream.IsOK() ? static_cast<DesignObj*>(stream.RestorePointer()) : nullptr;
  unsigned function = is_lut ? static_cast<unsigned>(stream.RestoreInteger()) : 0;
  bool is_view = view && view->ObjectType() == DB_NETLIST && view != netlist;
  auto* netlist_view = is_view ? static_cast<Netlist*>(view) : nullptr;
  bool fits_lut = netlist_view && netlist_view->Type() == OPER_LUT && netlist_view->InputSize() <= 5;
  if (!stream.IsOK() || (view && !is_view) || (is_lut && !fits_lut)) {
    stream.SetFail();
    return;
  }
  auto* inst = is_lut ? new LutInstance(fields.Name(), netlist_view, function, fields.Linefile())
                      : new Instance(fields.Name(), netlist_view, fields.Linefile());
  inst->CopyFrom(fields);
  netlist->Add(inst);
  stream.RegisterPointer(static_cast<DesignObj*>(inst));
}

void RestoreFsm(Netlist* netlist, SaveRestore& stream) {
  auto* fsm = new Fsm;
  fsm->RestorePrefix(stream);
  netlist->Add(fsm);
  RestoreEach(stream, [&] {
    auto* state = RestoreObject<Instance>(stream, DB_INSTANCE);
    OwnedString name(stream.RestoreString());
    if (state && name && state->Owner() == netlist && kestrin_is_register_type(state->Type()) && !state->GetFsm())
      fsm->AddState(state, name.get());
    else
      stream.SetFail();
  });
}

// The connections are read in the order of the list; drivers are pushed at its head, so they are made last to first.
void RestoreNet(Netlist* netlist, SaveRestore& stream) {
  auto* net = new Net;
  net->RestorePrefix(stream);
  netlist->Add(net);
  RestoreEach(stream, [&] {
    auto* port = RestoreObject<Port>(stream, DB_PORT);
    if (port && port->Owner() == netlist && !port->GetNet())
      net->Connect(port);
    else
      stream.SetFail();
  });
  std::vector<std::pair<Instance*, Port*>> drivers;
  std::vector<std::pair<Instance*, Port*>> loads;
  RestoreEach(stream, [&] {
    auto* port = RestoreObject<Port>(stream, DB_PORT);
    auto* inst = RestoreObject<Instance>(stream, DB_INSTANCE);
    if (port && inst && inst->Owner() == netlist && port->Owner() == inst->View())
      (port->IsInput() ? loads : drivers).emplace_back(inst, port);
    else
      stream.SetFail();
  });
  for (auto driver = drivers.rbegin(); driver != drivers.rend() && stream.IsOK(); ++driver)
    if (driver->first->GetPortRef(driver->second) || !driver->first->Connect(driver->second, net)) stream.SetFail();
  for (auto [inst, port] : loads)
    if (!stream.IsOK() || inst->GetPortRef(port) || !inst->Connect(port, net)) stream.SetFail();
}

} // namespace

Netlist::Netlist(SaveRestore& stream) : Netlist(nullptr, 0, 1) {
  RestorePrefix(stream);
  RestoreViews(stream);
  if (stream.RestoreInteger() == 1) SetPresentDesign();
  _inst_index = static_cast<unsigned>(stream.RestoreInteger());
  _anonymous_port_index = static_cast<unsigned>(stream.RestoreInteger());
  _renamed_net_index = static_cast<unsigned>(stream.RestoreInteger());
  _fsm_index = static_cast<unsigned>(stream.RestoreInteger());
  RestoreEach(stream, [&] { RestorePort(this, stream); });
  RestoreEach(stream, [&] { RestorePortBus(this, stream); });
  RestoreEach(stream, [&] { RestoreInstance(this, stream); });
  RestoreEach(stream, [&] { RestoreFsm(this, stream); });
  RestoreEach(stream, [&] { RestoreNet(this, stream); });
  RestoreEach(stream, [&] { RestoreNetBus(this, stream); });
  if (stream.RestoreInteger()) stream.SetFail(); // parameters are never saved
}

Cell::Cell(SaveRestore& stream) : Cell() {
  RestorePrefix(stream);
  _auto_name = static_cast<unsigned>(stream.RestoreInteger());
  while (stream.RestoreInteger() == another_follows && stream.IsOK()) {
    Netlist* netlist = Netlist::RestoreNetlist(stream, static_cast<prim_type_enum>(stream.RestoreInteger()));
    if (netlist && !netlist->IsPrimitive()) netlist->Install(stream, this);
  }
}

Library::Library(SaveRestore& stream) : Library() {
  Primitives(); // before the views that refer to them
  RestorePrefix(stream);
  long version = stream.RestoreInteger();
  if (stream.IsOK() && version != static_cast<int>(database_version)) {
    char number[32];
    std::snprintf(number, sizeof number, "0x%x", static_cast<unsigned>(version));
    Message::Error(0, stream.FileName(), " was created using code corresponding to a db_version_number of ", number);
    Message::Error(0, "Currently, backward compatibility is not supported");
    stream.SetFail();
  }
  _auto_name = static_cast<unsigned>(stream.RestoreInteger());
  while (stream.RestoreInteger() == another_follows && stream.IsOK()) {
    auto* cell = new Cell(stream);
    cell->Install(stream, this);
  }
}

namespace {

void ReportRestore(const SaveRestore& stream) {
  if (!stream.IsOK()) Message::Error(0, "An error occurred during database binary restore");
}

void Forget(const Map& objects, SaveRestore& stream) {
  for (DesignObj* object : ValuesOf<DesignObj*>(&objects)) stream.UnRegister(object);
}

} // namespace

// What was made from a bad stream is never installed.

void Library::InstallRestored(SaveRestore& stream, Libset* owner) {
  ReportRestore(stream);
  Library* exist = stream.IsOK() ? owner->GetLibrary(Name()) : nullptr;
  if (!stream.IsOK()) {
    delete this;
    return;
  }
  if (!exist) {
    owner->Add(this);
    return;
  }
  for (Cell* cell : CellsOf(this)) {
    Remove(cell);
    cell->Install(stream, exist);
  }
  stream.ReRegister(static_cast<DesignObj*>(this), static_cast<DesignObj*>(exist));
  delete this;
}

void Cell::InstallRestored(SaveRestore& stream, Library* owner) {
  ReportRestore(stream);
  Install(stream, owner);
}

void Cell::Install(SaveRestore& stream, Library* owner) {
  Cell* exist = stream.IsOK() ? owner->GetCell(Name()) : nullptr;
  if (!stream.IsOK()) {
    delete this;
    return;
  }
  if (!exist) {
    owner->Add(this);
    return;
  }
  for (Netlist* netlist : NetlistsOf(this)) {
    Remove(netlist);
    netlist->Install(stream, exist);
  }
  stream.ReRegister(static_cast<DesignObj*>(this), static_cast<DesignObj*>(exist));
  delete this;
}

void Netlist::InstallRestored(SaveRestore& stream, Cell* owner) {
  ReportRestore(stream);
  Install(stream, owner);
}

void Netlist::Install(SaveRestore& stream, Cell* owner) {
  KESTRIN_ASSERT_TEXT(!_owner, "!_the_owner");
  if (!stream.IsOK() || !owner) {
    delete this;
    return;
  }
  if (Netlist* exist = owner->GetNetlist(Name()))
    ReplaceBy(stream, exist);
  else
    owner->Add(this);
}

void Netlist::ReplaceBy(SaveRestore& stream, Netlist* existing) {
  stream.ReRegister(static_cast<DesignObj*>(this), static_cast<DesignObj*>(existing));
  for (Port* port : PortsOf(this)) {
    Port* counterpart = existing->GetPort(port->Name());
    if (!counterpart) {
      counterpart = new Port(port->Name(), DIR_INOUT, port->Linefile());
      existing->Add(counterpart);
      existing->Warning("port %s added to existing netlist", counterpart->Name());
    }
    stream.ReRegister(static_cast<DesignObj*>(port), static_cast<DesignObj*>(counterpart));
  }
  for (PortBus* bus : PortBusesOf(this)) {
    if (!stream.IsRegistered(static_cast<DesignObj*>(bus))) continue;
    PortBus* counterpart = existing->GetPortBus(bus->Name());
    if (!counterpart) {
      counterpart = new PortBus(bus->Name(), DIR_INOUT, bus->LeftIndex(), bus->IsUp(), bus->Linefile());
      existing->Add(counterpart);
    }
    stream.ReRegister(static_cast<DesignObj*>(bus), static_cast<DesignObj*>(counterpart));
  }
  const Map* contents[] = {&_insts, &_fsms, &_net_buses, &_nets, &_auto_nets};
  for (const Map* objects : contents) Forget(*objects, stream);
  if (_present_design == this) existing->SetPresentDesign();
  ReplaceReferences(existing, 1);
  delete this;
}
