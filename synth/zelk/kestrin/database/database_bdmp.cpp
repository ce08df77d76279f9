// The binary form of the database: every object writes its fields in a fixed order, behind what all objects share, and
// reads them back in the same order; what an object writes and how it is read stand next to each other. References are
// the numbers under which objects were registered, so reader and writer register in the same order. A file may be cut
// or damaged: whatever it says is checked before it is believed, and the stream goes bad over what cannot be true.
#include <algorithm>
#include <charconv>
#include <cstdio>
#include <map>
#include <memory>
#include <set>
#include <string>
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
#include "database/views.h"
#include "util/message.h"
#include "util/saverestore.h"

namespace {

/// The version of the database's layout.
constexpr long database_version = 0xAB0006;

/// What stands before an instance.
enum instance_kind { PLAIN_INSTANCE = 2, LUT_INSTANCE = 3 };

// Fields that have no place in the format travel as attributes under these keys. Instances and nets are told by their
// positions in the netlist.
constexpr const char* power_up_key = " :power_up";
constexpr const char* preferred_name_key = " :preferred_name";
constexpr const char* driver_key = " :driver";     // the connection whose driver counts, when it is an unusual one
constexpr const char* wired_to_key = " :wired_to"; // the next net of the ring
constexpr const char* controls_key = " :controls"; // the instances whose condition the net is
constexpr const char* sequence_key = " :sequence";
constexpr const char* parameter_types_key = " :parameter_types"; // the host's numbers, in the order of the parameters

/// Buses of buses and views within views nest less deep in every design.
constexpr int max_bus_level = 1000;
constexpr unsigned max_view_depth = 1000;

/// A list ends with 0, and 1 stands before each of its elements.
bool ReadMore(SaveRestore& stream) {
  const long mark = stream.RestoreInteger();
  if (mark != 0 && mark != 1) stream.SetFail();
  return stream.IsOK() && mark;
}

/// What may not be negative.
long ReadCount(SaveRestore& stream) {
  const long count = stream.RestoreInteger();
  if (count < 0) stream.SetFail();
  return stream.IsOK() ? count : 0;
}

DesignObj* ReadObject(SaveRestore& stream) { return FromWord<DesignObj*>(stream.RestorePointer()); }

/// A reference to an object of this class; null for any other, and then the stream is bad.
template <class T> T* ReadObject(SaveRestore& stream, db_object_type type) {
  DesignObj* object = ReadObject(stream);
  if (object && object->ObjectType() == type) return static_cast<T*>(object);
  stream.SetFail();
  return nullptr;
}

/// A reference to something of the netlist.
template <class T> T* ReadObjectOf(const Netlist* netlist, SaveRestore& stream, db_object_type type) {
  T* object = ReadObject<T>(stream, type);
  if (object && object->Owner() == netlist) return object;
  stream.SetFail();
  return nullptr;
}

port_dir ReadDirection(SaveRestore& stream) {
  const long direction = stream.RestoreInteger();
  if (direction < DIR_INOUT || direction > DIR_NONE) stream.SetFail();
  return stream.IsOK() ? static_cast<port_dir>(direction) : DIR_NONE;
}

/// Reads so many objects, each by a call.
template <class Read> void ReadAll(SaveRestore& stream, Read read) {
  for (long count = ReadCount(stream); count > 0 && stream.IsOK(); count--) read();
}

/// The ports of a primitive or operator follow from what it is, so only their numbers are taken.
void RegisterPorts(const Netlist* view, SaveRestore& stream) {
  for (const DesignObj* port : PortsOf(view)) stream.RegisterPointer(port);
}

/// An object that was read whole; what was not is deleted.
template <class T> T* Whole(SaveRestore& stream, T* object) {
  if (stream.IsOK()) return object;
  delete object;
  return nullptr;
}

/// The end of an installation, for those who asked for it.
template <class T> T* Installed(SaveRestore& stream, T* object) {
  if (stream.IsOK()) return object;
  stream.Undo();
  Message::Error(0, "An error occurred during database binary restore");
  return nullptr;
}

} // namespace

// What all objects share. The first user name is not saved.

DesignObj::DesignObj(SaveRestore& stream) : DesignObj() { RestorePrefix(stream); }

void DesignObj::Save(SaveRestore& stream) const { SavePrefix(stream); }

void DesignObj::SavePrefix(SaveRestore& stream, const FieldAttributes& fields) const {
  stream.RegisterPointer(this);
  stream.SaveString(_name);
  stream.SaveLinefile(_linefile);
  stream.SaveInteger(static_cast<long>(NumOfAtts() + fields.size()));
  for (auto [key, att] : Entries<const char*, Att*>(_atts)) {
    stream.SaveString(key);
    stream.SaveString(att->Value());
  }
  for (const auto& [key, value] : fields) {
    stream.SaveString(key);
    stream.SaveString(value.c_str());
  }
}

void DesignObj::RestorePrefix(SaveRestore& stream) {
  stream.RegisterPointer(this);
  Strings::free_string(_name);
  _name = stream.RestoreString();
  _linefile = static_cast<unsigned>(stream.RestoreLinefile());
  ReadAll(stream, [&] {
    OwnedString key(stream.RestoreString());
    OwnedString value(stream.RestoreString());
    if (!key) stream.SetFail();
    if (stream.IsOK()) AddAtt(new Att(key.get(), value.get()));
  });
}

std::string DesignObj::TakeFieldAttribute(const char* key) {
  const char* value = GetAttValue(key);
  std::string text = value ? value : "";
  RemoveAtt(key);
  return text;
}

// Containers.

void Library::Save(SaveRestore& stream) const {
  SavePrefix(stream);
  stream.SaveInteger(database_version);
  stream.SaveInteger(_auto_name);
  for (Cell* cell : CellsOf(this)) {
    if (stream.IsSaved(cell)) continue;
    stream.SaveInteger(1);
    cell->Save(stream);
  }
  stream.SaveInteger(0);
}

Library::Library(SaveRestore& stream) : Library() {
  RestorePrefix(stream);
  const long version = stream.RestoreInteger();
  if (stream.IsOK() && version != database_version) {
    char number[16];
    std::snprintf(number, sizeof number, "0x%x", static_cast<unsigned>(version));
    Message::Error(0, stream.FileName(), " was created using code corresponding to a db_version_number of ", number);
    Message::Error(0, "Currently, backward compatibility is not supported");
    stream.SetFail();
  }
  _auto_name = static_cast<unsigned>(stream.RestoreInteger());
  while (ReadMore(stream))
    if (Cell* cell = Whole(stream, new Cell(stream))) Add(cell);
}

void Cell::Save(SaveRestore& stream) const {
  SavePrefix(stream);
  stream.SaveInteger(_auto_name);
  for (Netlist* netlist : NetlistsOf(this)) {
    if (stream.IsSaved(netlist)) continue;
    stream.SaveInteger(1);
    stream.SaveInteger(netlist->Type());
    netlist->Save(stream);
  }
  stream.SaveInteger(0);
}

namespace {

prim_type_enum ReadType(SaveRestore& stream) {
  const long type = stream.RestoreInteger();
  if (type < PRIM_NONE || type >= PRIM_ANY) stream.SetFail();
  return stream.IsOK() ? static_cast<prim_type_enum>(type) : PRIM_ANY;
}

/// An operator stands in the cell that the construction functions look for it in; of a memory this is where its shape
/// is told.
bool FitsCell(Netlist* view, SaveRestore& stream, const char* cell_name) {
  if (!view->IsOperator()) return stream.IsOK();
  if (view->Type() == OPER_DUAL_PORT_RAM) {
    if (static_cast<OperDualPortRam*>(view)->RestoreShape(stream, cell_name)) RegisterPorts(view, stream);
  } else if (!cell_name || static_cast<Operator*>(view)->CellName() != cell_name) {
    stream.SetFail();
  }
  return stream.IsOK();
}

} // namespace

Cell::Cell(SaveRestore& stream) : Cell() {
  RestorePrefix(stream);
  _auto_name = static_cast<unsigned>(stream.RestoreInteger());
  while (ReadMore(stream)) {
    const prim_type_enum type = ReadType(stream);
    Netlist* netlist = Netlist::RestoreNetlist(stream, type);
    if (!netlist) return;
    FitsCell(netlist, stream, Name());
    if (Whole(stream, netlist)) Add(netlist);
  }
}

// Views that the system defines.

void Prim::Save(SaveRestore& stream) const {
  SavePrefix(stream);
  RegisterPorts(this, stream);
}

namespace {

/// How many sizes are written of an operator of a type.
unsigned NumOfSizes(prim_type_enum type) {
  switch (type) {
  case OPER_DUAL_PORT_RAM: return 0;
  case OPER_ADDER:
  case OPER_MULTIPLIER:
  case OPER_DIVIDER:
  case OPER_MODULO: return 3; // of an adder with the output, of the others with their signedness
  case OPER_SHIFT_LEFT:
  case OPER_SHIFT_RIGHT:
  case OPER_ROTATE_LEFT:
  case OPER_ROTATE_RIGHT:
  case OPER_LESSTHAN:
  case OPER_EQUAL:
  case OPER_NTO1MUX: return 2;
  default: return 1;
  }
}

/// An operator of sizes that were checked to be possible; null when they are not.
Operator* MakeOperator(SaveRestore& stream, prim_type_enum type, const unsigned long* sizes) {
  constexpr unsigned long max_decoder_size = 30;
  const unsigned long left = sizes[0];
  const unsigned long right = sizes[1];
  if (type == OPER_DECODER && left > max_decoder_size) return nullptr;
  if ((type == OPER_LESSTHAN || type == OPER_EQUAL) && left != right) return nullptr;
  if (type == OPER_ADDER && sizes[2] != std::max(left, right)) return nullptr;
  if (!stream.Afford(type == OPER_DECODER ? left + (1UL << left) : 2 * (left + right))) return nullptr;

  return Operator::New(type, static_cast<unsigned>(left), static_cast<unsigned>(right), sizes[2] != 0);
}

} // namespace

// What it takes to build the view again: its sizes.
void Operator::Save(SaveRestore& stream) const {
  SavePrefix(stream);
  const unsigned third = Type() == OPER_ADDER ? OutputSize() : IsSigned();
  const unsigned sizes[] = {Input1Size(), Input2Size(), third};
  for (unsigned i = 0; i < NumOfSizes(Type()); i++) stream.SaveInteger(sizes[i]);
  RegisterPorts(this, stream);
}

// A memory has no sizes here: they stand in the name of its cell.
void OperDualPortRam::Save(SaveRestore& stream) const {
  SavePrefix(stream);
  RegisterPorts(this, stream);
}

Operator* Operator::Restore(SaveRestore& stream, prim_type_enum type) {
  DesignObj prefix(stream);
  unsigned long sizes[3] = {};
  for (unsigned i = 0; i < NumOfSizes(type); i++) sizes[i] = static_cast<unsigned long>(ReadCount(stream));
  Operator* view = stream.IsOK() ? MakeOperator(stream, type, sizes) : nullptr;
  if (!view) {
    stream.SetFail();
    return nullptr;
  }
  stream.ReRegister(&prefix, view);
  view->CopyNames(prefix);
  view->CopyFrom(prefix);
  RegisterPorts(view, stream);
  return view;
}

Netlist* Netlist::RestoreNetlist(SaveRestore& stream, prim_type_enum type) {
  Library::Primitives(); // what is read of a primitive gives way to the one that is there
  if (type == PRIM_NONE) return Whole(stream, new Netlist(stream));
  if (type > PRIM_INFER_POINT) return Operator::Restore(stream, type);
  Netlist* view = Prim::New(type);
  view->RestorePrefix(stream);
  RegisterPorts(view, stream);
  return Whole(stream, view);
}

// Netlists.

namespace {

const char* NameOf(const DesignObj* object) { return object ? object->Name() : nullptr; }

/// A view before all that refers to it.
void SaveViews(const Netlist* netlist, SaveRestore& stream) {
  Set views(HASH_POINTER);
  const_cast<Netlist*>(netlist)->Hierarchy(views, /*top_down*/ 1);
  for (unsigned pos = views.Size(); pos-- > 0;) {
    auto* view = FromWord<Netlist*>(views.GetAt(pos));
    if (view == netlist || stream.IsSaved(view)) continue;
    const Cell* cell = view->Owner();
    stream.SaveInteger(1);
    stream.SaveInteger(view->Type());
    view->Save(stream);
    stream.SaveString(NameOf(cell ? cell->Owner() : nullptr));
    stream.SaveString(NameOf(cell));
  }
  stream.SaveInteger(0);
}

/// Undo steps go by names: what they take back may be gone by other ways.
Library* LibraryNamed(const std::string& name) { return Libset::Global()->GetLibrary(name.c_str()); }
Cell* CellNamed(const std::string& library_name, const std::string& name) {
  Library* library = LibraryNamed(library_name);
  return library ? library->GetCell(name.c_str()) : nullptr;
}
std::string OwnName(const DesignObj* object) { return object && object->Name() ? object->Name() : ""; }

/// A netlist that may have to be changed back.
class NetlistByName {
public:
  explicit NetlistByName(const Netlist* netlist)
      : _library(OwnName(netlist->Owner() ? netlist->Owner()->Owner() : nullptr)), _cell(OwnName(netlist->Owner())),
        _netlist(OwnName(netlist)) {}
  /// Null when it is gone.
  Netlist* Find() const {
    Cell* cell = CellNamed(_library, _cell);
    return cell ? cell->GetNetlist(_netlist.c_str()) : nullptr;
  }

private:
  std::string _library;
  std::string _cell;
  std::string _netlist;
};

/// The library of this name in the global set, and the cell in it: they are made when missing. A view that stood in no
/// cell gets one of its own.
Cell* FindCell(SaveRestore& stream, const char* library_name, const char* cell_name) {
  Library* library = Libset::Global()->GetLibrary(library_name);
  if (!library) {
    library = new Library(library_name);
    Libset::Global()->Add(library);
    stream.OnFailure([name = std::string(library->Name())] {
      Library* made = LibraryNamed(name);
      if (made && !made->NumOfCells()) delete made;
    });
  }
  Cell* cell = library->GetCell(cell_name);
  if (!cell) {
    cell = new Cell(cell_name);
    library->Add(cell);
    stream.OnFailure([in = std::string(library->Name()), name = std::string(cell->Name())] {
      Cell* made = CellNamed(in, name);
      if (made && !made->NumOfNetlists()) delete made;
    });
  }
  return cell;
}

/// Counts the views that are being read within each other.
class ViewDepth {
public:
  explicit ViewDepth(SaveRestore& stream) {
    if (++_depth > max_view_depth) stream.SetFail();
  }
  ViewDepth(const ViewDepth&) = delete;
  ViewDepth& operator=(const ViewDepth&) = delete;
  ~ViewDepth() { _depth--; }

private:
  static inline unsigned _depth = 0;
};

/// The buses in the order of their levels, so that a bus of buses comes behind its elements.
template <class Bus, class Range> std::vector<Bus*> ByLevel(const Range& range, int (Bus::*level)() const) {
  std::vector<Bus*> buses;
  for (Bus* bus : range) buses.push_back(bus);
  std::stable_sort(buses.begin(), buses.end(),
                   [level](const Bus* a, const Bus* b) { return (a->*level)() < (b->*level)(); });
  return buses;
}

/// Numbers between blanks; the stream goes bad over anything else.
std::vector<unsigned> ReadNumbers(SaveRestore& stream, const std::string& text) {
  std::vector<unsigned> numbers;
  for (size_t begin = 0; begin < text.size();) {
    const size_t end = std::min(text.find(' ', begin), text.size());
    unsigned number = 0;
    const auto read = std::from_chars(text.data() + begin, text.data() + end, number);
    if (read.ec != std::errc() || read.ptr != text.data() + end) stream.SetFail();
    numbers.push_back(number);
    begin = end + 1;
  }
  return numbers;
}

/// A number that must be one of the first so many.
unsigned ReadPosition(SaveRestore& stream, const std::string& text, size_t count) {
  const std::vector<unsigned> numbers = ReadNumbers(stream, text);
  if (numbers.size() == 1 && numbers[0] < count) return numbers[0];
  stream.SetFail();
  return 0;
}

void AppendNumber(std::string& text, unsigned number) {
  if (!text.empty()) text += ' ';
  text += std::to_string(number);
}

/// What a netlist knows of its nets besides their connections.
class NetFields {
public:
  explicit NetFields(const Netlist* netlist) : _netlist(netlist) {
    unsigned position = 0;
    for (const Instance* inst : InstancesOf(netlist)) {
      if (const Net* control = inst->ControlNet()) AppendNumber(_controls[control], position);
      position++;
    }
    position = 0;
    for (const Net* net : NetsOf(netlist)) {
      if (net->IsWired()) _wired.emplace(net, position);
      position++;
    }
  }

  std::vector<std::pair<const char*, std::string>> Of(const Net* net) const {
    std::vector<std::pair<const char*, std::string>> fields;
    if (auto controls = _controls.find(net); controls != _controls.end())
      fields.emplace_back(controls_key, controls->second);
    if (const Net* next = net->WireNext()) {
      KESTRIN_ASSERT(next->Owner() == _netlist);
      fields.emplace_back(wired_to_key, std::to_string(_wired.at(next)));
    }
    return fields;
  }

private:
  const Netlist* _netlist;
  std::map<const Net*, std::string> _controls;
  std::map<const Net*, unsigned> _wired;
};

/// The driver that counts when the connections of a net were made one by one, from the last driver to the first.
const PortRef* UsualDriver(const Net* net) {
  const PortRef* usual = net->GetFirstPortRef();
  if (!usual || usual->IsInput()) return nullptr;
  for (const PortRef* ref : DriversOf(net))
    if (ref->GetInst()->IsConstantPrimitive()) usual = ref;
  return usual;
}

void SaveConnections(const Net* net, SaveRestore& stream) {
  stream.SaveInteger(net->NumOfPorts());
  for (const DesignObj* port : PortsOf(net)) stream.SavePointer(port);
  stream.SaveInteger(net->NumOfPortRefs());
  for (PortRef* ref : PortRefsOf(net)) {
    stream.SavePointer(ref->GetPort());
    stream.SavePointer(ref->GetInst());
  }
}

} // namespace

void Netlist::Save(SaveRestore& stream) const {
  std::string types;
  for (const Param* param : ParamsOf(this)) AppendNumber(types, static_cast<unsigned>(param->VariableType()));
  SavePrefix(stream, types.empty() ? FieldAttributes() : FieldAttributes{{parameter_types_key, types}});
  SaveViews(this, stream);
  stream.SaveInteger(_present_design == this);
  stream.SaveInteger(_inst_index);
  stream.SaveInteger(_anonymous_port_index);
  stream.SaveInteger(_renamed_net_index);
  stream.SaveInteger(_fsm_index);
  stream.SaveInteger(NumOfPorts());
  for (Port* port : PortsOf(this)) port->Save(stream);
  stream.SaveInteger(NumOfPortBuses());
  for (PortBus* bus : ByLevel<PortBus>(PortBusesOf(this), &PortBus::PortBusLevel)) bus->Save(stream);
  stream.SaveInteger(NumOfInsts());
  for (Instance* inst : InstancesOf(this)) {
    stream.SaveInteger(inst->LutFunction() ? LUT_INSTANCE : PLAIN_INSTANCE);
    inst->Save(stream);
  }
  stream.SaveInteger(NumOfFsms());
  for (Fsm* fsm : FsmsOf(this)) fsm->Save(stream);
  stream.SaveInteger(NumOfNets());
  const NetFields fields(this);
  for (Net* net : NetsOf(this)) {
    net->Save(stream, fields.Of(net));
    SaveConnections(net, stream);
  }
  stream.SaveInteger(NumOfNetBuses());
  for (NetBus* bus : ByLevel<NetBus>(NetBusesOf(this), &NetBus::NetBusLevel)) bus->Save(stream);
  stream.SaveInteger(NumOfParameters());
  for (Param* param : ParamsOf(this)) {
    KESTRIN_REPORT_INTERNAL("netlists with parameters are not meant to be saved");
    stream.SaveString(param->Name());
    stream.SaveString(param->Value());
    stream.SaveString(param->TypeText());
  }
}

// The case-sensitivity of its names is not saved.
Netlist::Netlist(SaveRestore& stream) : Netlist(nullptr, 0, /*case_sensitive*/ 1) {
  const ViewDepth depth(stream);
  Library::Primitives(); // references to them must find them
  RestorePrefix(stream);
  while (ReadMore(stream)) {
    const prim_type_enum type = ReadType(stream);
    Netlist* view = RestoreNetlist(stream, type);
    OwnedString library_name(stream.RestoreString());
    OwnedString cell_name(stream.RestoreString());
    if (view && Whole(stream, view)) view->Install(stream, FindCell(stream, library_name.get(), cell_name.get()));
  }
  RestoreContents(stream);
}

/// What later parts of a netlist refer to by position.
struct Netlist::RestoredParts {
  std::vector<Instance*> insts;
  std::vector<Net*> nets;
  std::vector<std::pair<Net*, std::string>> wired; // with the text of the next net's position
  std::vector<unsigned> parameter_types;
};

void Netlist::RestoreContents(SaveRestore& stream) {
  RestoredParts parts;
  parts.parameter_types = ReadNumbers(stream, TakeFieldAttribute(parameter_types_key));
  const long is_present_design = stream.RestoreInteger();
  const auto inst_index = static_cast<unsigned>(stream.RestoreInteger());
  const auto anonymous_port_index = static_cast<unsigned>(stream.RestoreInteger());
  const auto renamed_net_index = static_cast<unsigned>(stream.RestoreInteger());
  const auto fsm_index = static_cast<unsigned>(stream.RestoreInteger());
  auto add = [&](auto* object) {
    if (Whole(stream, object)) Add(object);
  };
  ReadAll(stream, [&] { add(new Port(stream)); });
  ReadAll(stream, [&] { add(new PortBus(stream, this)); });
  ReadAll(stream, [&] {
    const long kind = stream.RestoreInteger();
    if (kind != PLAIN_INSTANCE && kind != LUT_INSTANCE) stream.SetFail();
    Instance* inst = kind == LUT_INSTANCE ? new LutInstance(stream) : new Instance(stream);
    add(inst);
    parts.insts.push_back(inst);
  });
  ReadAll(stream, [&] { add(new Fsm(stream, this)); });
  ReadAll(stream, [&] { RestoreNet(stream, parts); });
  RestoreRings(stream, parts);
  ReadAll(stream, [&] {
    auto* bus = new NetBus(stream, this);
    if (!Whole(stream, bus)) return;
    // A bus may have the name of a net that came after it, and must not be renamed for that.
    if (!bus->Name() || GetNetBus(bus->Name())) return Add(bus);
    _net_buses.Insert(bus->Name(), bus);
    bus->_owner = this;
  });
  ReadAll(stream, [&] { RestoreParameter(stream, parts); });
  if (!stream.IsOK()) return;
  _inst_index = inst_index;
  _anonymous_port_index = anonymous_port_index;
  _renamed_net_index = renamed_net_index;
  _fsm_index = fsm_index;
  if (is_present_design) SetPresentDesign();
}

void Netlist::RestoreNet(SaveRestore& stream, RestoredParts& parts) {
  auto* net = Whole(stream, new Net(stream));
  if (!net) return;
  const std::string driver = net->TakeFieldAttribute(driver_key);
  const std::string wired_to = net->TakeFieldAttribute(wired_to_key);
  const std::string controls = net->TakeFieldAttribute(controls_key);
  Add(net);
  parts.nets.push_back(net);
  if (!wired_to.empty()) parts.wired.emplace_back(net, wired_to);
  for (unsigned position : ReadNumbers(stream, controls)) {
    if (position >= parts.insts.size() || parts.insts[position]->ControlNet()) return stream.SetFail();
    parts.insts[position]->SetControlNet(net);
  }
  ReadAll(stream, [&] {
    auto* port = ReadObjectOf<Port>(this, stream, DB_PORT);
    if (port && !port->GetNet())
      net->Connect(port);
    else
      stream.SetFail();
  });
  std::vector<std::pair<Port*, Instance*>> refs;
  ReadAll(stream, [&] {
    auto* port = ReadObject<Port>(stream, DB_PORT);
    auto* inst = ReadObjectOf<Instance>(this, stream, DB_INSTANCE);
    if (!port || !inst || !inst->View() || port->Owner() != inst->View())
      stream.SetFail();
    else
      refs.emplace_back(port, inst);
  });
  auto connect = [&](Port* port, Instance* inst) {
    if (!inst->GetPortRef(port))
      inst->Connect(port, net);
    else
      stream.SetFail();
  };
  if (!stream.IsOK()) return;
  // A driver goes to the head of the list and a load to its tail.
  auto first_load = std::find_if(refs.begin(), refs.end(), [](auto& ref) { return ref.first->IsInput(); });
  for (auto driver = first_load; driver != refs.begin(); --driver) connect(driver[-1].first, driver[-1].second);
  for (auto load = first_load; load != refs.end(); ++load) connect(load->first, load->second);
  if (driver.empty()) return;
  unsigned position = ReadPosition(stream, driver, static_cast<size_t>(first_load - refs.begin()));
  if (!stream.IsOK()) return;
  PortRef* counting = net->_first;
  while (position--) counting = counting->Next();
  net->_driver = counting;
}

// Every net of a ring has one before it and one behind it.
void Netlist::RestoreRings(SaveRestore& stream, const RestoredParts& parts) {
  std::set<const Net*> rings;
  for (const auto& wired : parts.wired) rings.insert(wired.first);
  std::set<const Net*> reached;
  for (const auto& [net, wired_to] : parts.wired) {
    const unsigned position = ReadPosition(stream, wired_to, parts.nets.size());
    if (!stream.IsOK()) return;
    Net* next = parts.nets[position];
    if (next == net || !rings.count(next) || !reached.insert(next).second) stream.SetFail();
  }
  if (!stream.IsOK()) return;
  for (const auto& [net, wired_to] : parts.wired)
    net->_wire = parts.nets[ReadPosition(stream, wired_to, parts.nets.size())];
}

void Netlist::RestoreParameter(SaveRestore& stream, RestoredParts& parts) {
  OwnedString name(stream.RestoreString());
  OwnedString value(stream.RestoreString());
  OwnedString type(stream.RestoreString());
  const unsigned position = NumOfParameters();
  const bool has_type = position < parts.parameter_types.size();
  if (stream.IsOK())
    AddParam(name.get(), value.get(), type.get(),
             has_type ? static_cast<int>(parts.parameter_types[position]) : Param::unknown_variable_type);
}

// Contents of netlists.

void Port::Save(SaveRestore& stream) const {
  SavePrefix(stream);
  stream.SaveInteger(_direction);
}

Port::Port(SaveRestore& stream) : Port() {
  RestorePrefix(stream);
  _direction = ReadDirection(stream);
}

void PortBus::Save(SaveRestore& stream) const {
  SavePrefix(stream);
  stream.SaveInteger(_direction);
  stream.SaveInteger(_is_up);
  stream.SaveInteger(_left);
  stream.SaveInteger(Size());
  for (const DesignObj* element : ElementsOf(this)) stream.SavePointer(element);
}

// The level is that of the elements and one more.
PortBus::PortBus(SaveRestore& stream, const Netlist* netlist) : PortBus() {
  RestorePrefix(stream);
  _direction = ReadDirection(stream);
  _is_up = stream.RestoreInteger() != 0;
  _left = static_cast<int>(stream.RestoreInteger());
  ReadAll(stream, [&] {
    DesignObj* element = ReadObject(stream);
    const Netlist* owner = nullptr;
    if (element && element->ObjectType() == DB_PORT) owner = static_cast<Port*>(element)->Owner();
    if (element && element->ObjectType() == DB_PORTBUS) owner = static_cast<PortBus*>(element)->Owner();
    if (owner != netlist || element->GetPortBus()) return stream.SetFail();
    const int level = element->PortBusLevel() + 1;
    if (!Size()) _level = level;
    if (level != _level || level > max_bus_level) return stream.SetFail();
    Add(element);
  });
}

void Net::Save(SaveRestore& stream) const { Save(stream, {}); }

void Net::Save(SaveRestore& stream, FieldAttributes fields) const {
  if (_power_up) fields.emplace_back(power_up_key, std::string(1, _power_up));
  if (_preferred_name) fields.emplace_back(preferred_name_key, "");
  if (const PortRef* driver = DrivingPortRef(); driver != UsualDriver(this)) {
    unsigned position = 0;
    for (const PortRef* ref = _first; ref != driver; ref = ref->Next()) position++;
    fields.emplace_back(driver_key, std::to_string(position));
  }
  SavePrefix(stream, fields);
}

Net::Net(SaveRestore& stream) : Net() {
  RestorePrefix(stream);
  if (GetAtt(power_up_key)) _power_up = TakeFieldAttribute(power_up_key)[0];
  if (!GetAtt(preferred_name_key)) return;
  _preferred_name = 1;
  TakeFieldAttribute(preferred_name_key);
}

void NetBus::Save(SaveRestore& stream) const {
  SavePrefix(stream);
  stream.SaveInteger(_left);
  stream.SaveInteger(_right);
  stream.SaveInteger(_elements.Size());
  int index = _left;
  for (auto [element, bus] : ElementsOf(this)) {
    stream.SavePointer(element); // null for a hole
    stream.SaveInteger(index);
    index += IsUp() ? 1 : -1;
  }
}

NetBus::NetBus(SaveRestore& stream, const Netlist* netlist) : NetBus() {
  RestorePrefix(stream);
  _left = static_cast<int>(stream.RestoreInteger());
  _right = static_cast<int>(stream.RestoreInteger());
  stream.Afford(Distance(_left, _right));
  bool has_level = false;
  ReadAll(stream, [&] {
    DesignObj* element = ReadObject(stream);
    const auto index = static_cast<int>(stream.RestoreInteger());
    if (!element && stream.IsOK() && _elements.Size() < Size()) {
      _elements.Insert(nullptr, this, 0, 1); // a hole
      return;
    }
    const Netlist* owner = nullptr;
    if (element && element->ObjectType() == DB_NET) owner = static_cast<Net*>(element)->Owner();
    if (element && element->ObjectType() == DB_NETBUS) owner = static_cast<NetBus*>(element)->Owner();
    if (owner != netlist || element->GetNetBus()) return stream.SetFail();
    if (index < std::min(_left, _right) || index > std::max(_left, _right)) return stream.SetFail();
    const int level = element->NetBusLevel() + 1;
    if (!has_level) _level = level;
    has_level = true;
    if (level != _level || level > max_bus_level || ElementAtIndex(index)) return stream.SetFail();
    AddAtIndex(element, index);
  });
}

void Instance::Save(SaveRestore& stream) const {
  SavePrefix(stream, _sequence ? FieldAttributes{{sequence_key, std::to_string(_sequence)}} : FieldAttributes());
  stream.SavePointer(_view);
}

// A view that stands in no cell is itself still being read.
Instance::Instance(SaveRestore& stream) : Instance() {
  RestorePrefix(stream);
  if (GetAtt(sequence_key)) _sequence = static_cast<unsigned>(Strings::atoi(TakeFieldAttribute(sequence_key).c_str()));
  DesignObj* view = ReadObject(stream);
  if (!view) return;
  if (view->ObjectType() == DB_NETLIST && static_cast<Netlist*>(view)->Owner())
    Instantiate(static_cast<Netlist*>(view));
  else
    stream.SetFail();
}

// One without a function is written as a plain instance.
void LutInstance::Save(SaveRestore& stream) const {
  Instance::Save(stream);
  if (_function) stream.SaveInteger(_function);
}

LutInstance::LutInstance(SaveRestore& stream) : Instance(stream), _function(0) {
  _function = static_cast<unsigned>(stream.RestoreInteger());
  if (Type() != OPER_LUT || InputSize() > max_inputs) stream.SetFail();
}

void Fsm::Save(SaveRestore& stream) const {
  SavePrefix(stream);
  stream.SaveInteger(NumStates());
  for (auto [state, name] : Entries<Instance*, char*>(_states)) {
    stream.SavePointer(state);
    stream.SaveString(name);
  }
}

Fsm::Fsm(SaveRestore& stream, const Netlist* netlist) : Fsm() {
  RestorePrefix(stream);
  ReadAll(stream, [&] {
    auto* state = ReadObjectOf<Instance>(netlist, stream, DB_INSTANCE);
    OwnedString name(stream.RestoreString());
    if (!state || !kestrin_is_register_type(state->Type()) || state->GetFsm() || !name || !AddState(state, name.get()))
      stream.SetFail();
  });
}

// Installation: what was restored meets what the database has.

namespace {

/// Gives an object what it lacks of the attributes and the location of another.
void Complete(DesignObj* object, const DesignObj* other) {
  for (Att* att : AttributesOf(other))
    if (!object->GetAtt(att->Key())) object->AddAtt(new Att(*att));
  if (!object->Linefile()) object->SetLinefile(other->Linefile());
}

} // namespace

Library* Library::InstallRestored(SaveRestore& stream, Libset* owner) {
  return Installed(stream, Install(stream, owner));
}
Cell* Cell::InstallRestored(SaveRestore& stream, Library* owner) { return Installed(stream, Install(stream, owner)); }
Netlist* Netlist::InstallRestored(SaveRestore& stream, Cell* owner) {
  return Installed(stream, Install(stream, owner));
}

Library* Library::Install(SaveRestore& stream, Libset* owner) {
  if (!Whole(stream, this)) return nullptr;
  Library* exist = owner->GetLibrary(Name());
  if (!exist) {
    owner->Add(this);
    return this;
  }
  stream.ReRegister(this, exist);
  for (Cell* cell : CellsOf(this)) {
    Remove(cell);
    cell->Install(stream, exist);
  }
  KESTRIN_ASSERT(!NumOfCells());
  exist->_auto_name = std::max(exist->_auto_name, _auto_name);
  Complete(exist, this);
  delete this;
  return exist;
}

Cell* Cell::Install(SaveRestore& stream, Library* owner) {
  if (!Whole(stream, this)) return nullptr;
  Cell* exist = owner->GetCell(Name());
  if (!exist) {
    owner->Add(this);
    stream.OnFailure([in = OwnName(owner), name = OwnName(this)] { delete CellNamed(in, name); });
    return this;
  }
  stream.ReRegister(this, exist);
  for (Netlist* netlist : NetlistsOf(this)) {
    Remove(netlist);
    netlist->Install(stream, exist);
  }
  KESTRIN_ASSERT(!NumOfNetlists());
  exist->_auto_name = std::max(exist->_auto_name, _auto_name);
  Complete(exist, this);
  delete this;
  return exist;
}

// Views of the system are made by the system: what stands in a file under their name has to be the same thing.
Netlist* Netlist::Install(SaveRestore& stream, Cell* owner) {
  if (!_owner && stream.IsOK()) FitsCell(this, stream, owner->Name());
  if (!Whole(stream, this)) return nullptr;
  Netlist* exist = owner->GetNetlist(Name());
  if (!exist && !IsPrimitive()) {
    owner->Add(this);
    stream.OnFailure([added = NetlistByName(this)] { delete added.Find(); });
    return this;
  }
  if (exist && exist->Type() == Type())
    ReplaceBy(stream, exist);
  else
    stream.SetFail();
  if (stream.IsOK()) ReplaceReferences(exist, /*keep_by_name*/ 1);
  delete this;
  return stream.IsOK() ? exist : nullptr;
}

void Netlist::ReplaceBy(SaveRestore& stream, Netlist* existing) {
  if (_present_design == this) existing->SetPresentDesign();
  stream.ReRegister(this, existing);
  for (Port* port : PortsOf(this)) {
    Port* same = existing->GetPort(port->Name());
    if (!same) same = existing->AddForRestored(stream, port);
    if (same) stream.ReRegister(port, same);
  }
  for (PortBus* bus : PortBusesOf(this)) {
    PortBus* same = existing->GetPortBus(bus->Name());
    if (!same) same = existing->AddForRestored(stream, bus);
    if (same && stream.IsRegistered(bus)) stream.ReRegister(bus, same);
  }
  auto forget = [&stream](const auto& objects) {
    for (const DesignObj* object : objects) stream.UnRegister(object);
  };
  forget(InstancesOf(this));
  forget(FsmsOf(this));
  forget(NetsOf(this));
  forget(NetBusesOf(this));
}

// The ports of primitives and operators are fixed.
Port* Netlist::AddForRestored(SaveRestore& stream, const Port* restored) {
  if (Type() != PRIM_NONE) {
    stream.SetFail();
    return nullptr;
  }
  auto* port = new Port(restored->Name(), DIR_INOUT, restored->Linefile());
  Add(port);
  Warning("port %s added to existing netlist", port->Name());
  stream.OnFailure([changed = NetlistByName(this), name = OwnName(port)] {
    if (Netlist* netlist = changed.Find()) delete netlist->GetPort(name.c_str());
  });
  return port;
}

PortBus* Netlist::AddForRestored(SaveRestore& stream, const PortBus* restored) {
  if (Type() != PRIM_NONE) {
    stream.SetFail();
    return nullptr;
  }
  auto* bus = new PortBus(restored->Name(), DIR_INOUT, restored->LeftIndex(), restored->IsUp(), restored->Linefile(),
                          restored->PortBusLevel());
  Add(bus);
  Warning("port %s added to existing netlist", bus->Name());
  for (DesignObj* element : ElementsOf(restored)) {
    DesignObj* same = nullptr;
    if (element->ObjectType() == DB_PORT)
      same = GetPort(element->Name());
    else
      same = GetPortBus(element->Name());
    if (same && !same->GetPortBus() && same->PortBusLevel() + 1 == bus->PortBusLevel()) bus->Add(same);
  }
  stream.OnFailure([changed = NetlistByName(this), name = OwnName(bus)] {
    if (Netlist* netlist = changed.Find()) delete netlist->GetPortBus(name.c_str());
  });
  return bus;
}
