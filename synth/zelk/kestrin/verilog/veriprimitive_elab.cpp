// User-defined primitives (IEEE 1364-2005 clause 8): the rows of a table become logic. Rows are taken as cubes over the
// inputs, which are merged into larger ones before gates are made of them. Hardware knows 0 and 1 only, so rows that
// ask for an x or give one say nothing.
#include <algorithm>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "database/netlist.h"
#include "verilog/veri_tokens.h"
#include "verilog/vericonstraint.h"
#include "verilog/veridataflow.h"
#include "verilog/verimodule.h"
#include "verilog/verinets.h"

namespace {

// Covers: sums of products.

/// A digit per variable: 0, 1, or ? for both.
using Cube = std::string;
using Cover = std::vector<Cube>;
/// Whether what a cube would grow by may be part of the cover.
using MayInclude = std::function<bool(const Cube&)>;

bool IsLiteral(char digit) { return digit != '?'; }

bool Intersects(const Cube& a, const Cube& b) {
  for (size_t i = 0; i < a.size(); i++)
    if (IsLiteral(a[i]) && IsLiteral(b[i]) && a[i] != b[i]) return false;
  return true;
}

bool Intersects(const Cover& cover, const Cube& cube) {
  return std::any_of(cover.begin(), cover.end(), [&](const Cube& other) { return Intersects(other, cube); });
}

bool Contains(const Cube& a, const Cube& b) {
  for (size_t i = 0; i < a.size(); i++)
    if (IsLiteral(a[i]) && a[i] != b[i]) return false;
  return true;
}

/// Tells of tables where merging takes too long; they are taken as they stand.
class Effort {
public:
  bool Spend(size_t work) {
    _left -= std::min(work, _left);
    return _left > 0;
  }

private:
  size_t _left = size_t{1} << 27;
};

/// Whether all of the cube is covered; also false when that is not found out in time.
bool Contains(const Cover& cover, const Cube& cube, Effort& effort) {
  if (!effort.Spend(cover.size() * cube.size() + 1)) return false;
  Cover rest;
  size_t split = cube.size();
  for (const Cube& other : cover) {
    if (Contains(other, cube)) return true;
    if (!Intersects(other, cube)) continue;
    rest.push_back(other);
    for (size_t i = 0; i < cube.size() && split == cube.size(); i++)
      if (IsLiteral(other[i]) && !IsLiteral(cube[i])) split = i;
  }
  if (rest.empty()) return false;
  Cube half = cube;
  for (char digit : {'0', '1'}) {
    half[split] = digit;
    if (!Contains(rest, half, effort)) return false;
  }
  return true;
}

/// Lets each cube lose the literals that `may_include` allows, the last variable first, and drops the cubes that are
/// not needed then.
Cover Minimize(Cover cover, const MayInclude& may_include, Effort& effort) {
  std::sort(cover.begin(), cover.end());
  cover.erase(std::unique(cover.begin(), cover.end()), cover.end());
  Cover grown;
  for (Cube& cube : cover) {
    if (Contains(grown, cube, effort)) continue;
    for (size_t i = cube.size(); i-- > 0;) {
      if (!IsLiteral(cube[i])) continue;
      Cube flipped = cube;
      flipped[i] = cube[i] == '0' ? '1' : '0';
      if (may_include(flipped)) cube[i] = '?';
    }
    grown.push_back(cube);
  }
  for (size_t i = grown.size(); i-- > 0;) {
    std::swap(grown[i], grown.back());
    Cube cube = std::move(grown.back());
    grown.pop_back();
    if (Contains(grown, cube, effort)) continue;
    grown.push_back(std::move(cube));
    std::swap(grown[i], grown.back());
  }
  return grown;
}

/// The same function in fewer cubes.
Cover Merged(const Cover& cover, Effort& effort) {
  return Minimize(
      cover, [&](const Cube& cube) { return Contains(cover, cube, effort); }, effort);
}

/// At least `on`, and nothing of `off` that is not in `on`.
Cover MergedAgainst(const Cover& on, const Cover& off, Effort& effort) {
  auto is_free = [&](const Cube& cube) { return effort.Spend(off.size() * cube.size() + 1) && !Intersects(off, cube); };
  return Minimize(on, is_free, effort);
}

// Rows.

struct Row {
  Cube inputs;       // with an edge as the level that it leads to
  int edge = -1;     // the input that has one
  char state = '?';  // the present one: 0, 1 or ?
  char output = '-'; // 0, 1 or - for no change
  bool IsKept() const { return output == '-' || output == state; }
  Cube WithState() const { return inputs + state; }
};

/// 0, 1, ? or x; 0 for what is no level.
char LevelOf(char symbol) {
  switch (symbol) {
  case '0':
  case '1': return symbol;
  case '?':
  case 'b':
  case 'B': return '?';
  case 'x':
  case 'X': return 'x';
  default: return '\0';
  }
}

/// The levels that an edge leads to; null for what is no edge.
const char* LevelsBehindEdge(char symbol) {
  switch (symbol) {
  case 'r':
  case 'R':
  case 'p':
  case 'P': return "1";
  case 'f':
  case 'F':
  case 'n':
  case 'N': return "0";
  case '*': return "01";
  default: return nullptr;
  }
}

bool HasUnknown(const Cube& cube) { return cube.find('x') != Cube::npos; }

/// The table of a primitive with this many inputs.
class UdpTable {
public:
  UdpTable(const VeriTable& table, size_t num_inputs) : _table(table), _num_inputs(num_inputs) {}
  /// False, with messages, when a row is ill-formed.
  bool Read();
  bool IsSequential() const { return _is_sequential; }
  const std::vector<Row>& Rows() const { return _rows; }

private:
  bool CheckShape(const std::string& text);
  bool ReadRow(const std::string& text);
  bool Refuse(char symbol) const;
  const VeriTable& _table;
  size_t _num_inputs;
  std::vector<Row> _rows;
  bool _is_sequential = false;
  bool _is_first = true;
};

bool UdpTable::Read() {
  bool is_good = true;
  for (const std::string& text : _table.Rows()) is_good = CheckShape(text) && ReadRow(text) && is_good;
  return is_good;
}

bool UdpTable::CheckShape(const std::string& text) {
  const char* row = text.c_str();
  size_t colon = text.find(':');
  if (colon == std::string::npos) {
    _table.Error("table entry without ':' IO separator : %s", row);
    return false;
  }
  if (colon != _num_inputs) {
    _table.Error("incorrect number of inputs for table entry : %s", row);
    return false;
  }
  bool is_sequential = text.size() == _num_inputs + 4;
  if (is_sequential && text[_num_inputs + 2] != ':') {
    _table.Error("present state ':' output field separator misplaced : %s", row);
    return false;
  }
  if (!is_sequential && text.size() != _num_inputs + 2) {
    _table.Error("incorrect output field length found in table : %s", row);
    return false;
  }
  if (_is_first) _is_sequential = is_sequential;
  _is_first = false;
  if (is_sequential && !_is_sequential) {
    _table.Error("sequential table entry found in combinational table : %s", row);
    return false;
  }
  if (!is_sequential && _is_sequential) {
    _table.Error("missing 'present state' field in sequential table : %s", row);
    return false;
  }
  if (!is_sequential && text.find_first_of("rRfFpPnN*") != std::string::npos) {
    _table.Error("edge illegal in combinational table : %s", row);
    return false;
  }
  return true;
}

bool UdpTable::Refuse(char symbol) const {
  const char text[] = {symbol, '\0'};
  _table.Error("illegal character %s in UDP table", text);
  return false;
}

/// Keeps a row of the right shape, unless it has an x in it.
bool UdpTable::ReadRow(const std::string& text) {
  Row row;
  unsigned num_edges = 0;
  for (size_t i = 0; i < _num_inputs; i++) {
    bool is_edge = LevelsBehindEdge(text[i]) != nullptr;
    if (!is_edge && !LevelOf(text[i])) return Refuse(text[i]);
    if (is_edge) row.edge = static_cast<int>(i);
    num_edges += is_edge;
    row.inputs.push_back(is_edge ? '?' : LevelOf(text[i]));
  }
  if (num_edges > 1) {
    _table.Error("table entry has more than one edge : %s", text.c_str());
    return false;
  }
  if (_is_sequential) row.state = LevelOf(text[_num_inputs + 1]);
  if (!row.state) return Refuse(text[_num_inputs + 1]);
  row.output = text.back() == '-' && _is_sequential ? '-' : LevelOf(text.back());
  if (!row.output || row.output == '?') return Refuse(text.back());
  if (HasUnknown(row.inputs) || row.state == 'x' || row.output == 'x') return true;
  if (row.edge < 0) {
    _rows.push_back(row);
    return true;
  }
  for (const char* level = LevelsBehindEdge(text[static_cast<size_t>(row.edge)]); *level; level++) {
    row.inputs[static_cast<size_t>(row.edge)] = *level;
    _rows.push_back(row);
  }
  return true;
}

// Logic.

/// Builds the logic of one table.
class UdpLogic {
public:
  UdpLogic(const VeriTable& table, std::vector<Net*> inputs, VeriIdDef* output)
      : _table(table), _inputs(std::move(inputs)), _output(output), _hold(output->GetValue()->GetBit(0)),
        _clock(_inputs.size()) {}
  void CreateCombinational(const std::vector<Row>& rows);
  void CreateSequential(const std::vector<Row>& rows);

private:
  struct Levels {
    Cover set;
    Cover clear;
    Cover hold;
  };
  bool SplitRows(const std::vector<Row>& rows);
  bool FindClock();
  bool HasClock() const { return _clock < _inputs.size(); }
  OwnedValue CreateRegister();
  OwnedValue CreateLatch();
  Net* CreateLogic(const Cover& cover);
  Net* Combine(std::vector<Net*> nets, Net* (*gate)(Net*, Net*), Net* none) const;
  Net* Literal(size_t variable, char digit);

  const VeriTable& _table;
  std::vector<Net*> _inputs;
  VeriIdDef* _output;
  Net* _hold; // the present state, the last variable of covers that have one more than inputs
  Effort _effort;
  Levels _levels;                 // of rows without edge, over the inputs
  std::vector<const Row*> _edges; // rows with an edge that is not overruled
  size_t _clock;                  // the input; their number without clock
  char _active_level = '1';
};

Net* UdpLogic::Literal(size_t variable, char digit) {
  Net* net = variable < _inputs.size() ? _inputs[variable] : _hold;
  return digit == '1' ? net : veri_not(net);
}

/// A balanced tree of gates.
Net* UdpLogic::Combine(std::vector<Net*> nets, Net* (*gate)(Net*, Net*), Net* none) const {
  if (nets.empty()) return none;
  while (nets.size() > 1) {
    size_t half = 0;
    for (size_t i = 0; i < nets.size(); i += 2)
      nets[half++] = i + 1 < nets.size() ? gate(nets[i], nets[i + 1]) : nets[i];
    nets.resize(half);
  }
  return nets.front();
}

Net* UdpLogic::CreateLogic(const Cover& cover) {
  std::vector<Net*> products;
  for (const Cube& cube : cover) {
    std::vector<Net*> literals;
    for (size_t i = 0; i < cube.size(); i++)
      if (IsLiteral(cube[i])) literals.push_back(Literal(i, cube[i]));
    products.push_back(Combine(std::move(literals), veri_and, VeriNode::Pwr()));
  }
  return Combine(std::move(products), veri_or, VeriNode::Gnd());
}

void UdpLogic::CreateCombinational(const std::vector<Row>& rows) {
  Cover on;
  Cover off;
  for (const Row& row : rows) (row.output == '1' ? on : off).push_back(row.inputs);
  for (const Cube& cube : on)
    if (Intersects(off, cube)) return _table.Error("table entries contradict each other : %s", cube.c_str());
  Net* result = rows.empty() ? VeriNode::X() : CreateLogic(MergedAgainst(on, off, _effort));
  _output->GetValue()->NetAssignFrom(VeriValue::FromNet(result), VERI_RESOLVE_WIRE, true, &_table);
}

/// Sorts the rows by what they do. Levels overrule edges (IEEE 1364-2005 8.8). False, with a message, for a state that
/// changes on and on.
bool UdpLogic::SplitRows(const std::vector<Row>& rows) {
  Cover to_one;
  Cover to_zero;
  for (const Row& row : rows) {
    if (row.edge >= 0) continue;
    Cover& cover = row.IsKept() ? _levels.hold : row.output == '1' ? _levels.set : _levels.clear;
    cover.push_back(row.inputs);
    if (!row.IsKept() && row.state != '?') (row.output == '1' ? to_one : to_zero).push_back(row.inputs);
  }
  for (const Cube& cube : to_one)
    if (Intersects(to_zero, cube)) {
      _table.Error("table changes its state back and forth");
      return false;
    }
  Cover decided = _levels.set;
  decided.insert(decided.end(), _levels.clear.begin(), _levels.clear.end());
  for (const Row& row : rows)
    if (row.edge >= 0 && !Contains(decided, row.inputs, _effort)) _edges.push_back(&row);
  return true;
}

/// Finds the edge that changes the state, if any does. False, with a message, when there are several.
bool UdpLogic::FindClock() {
  for (const Row* row : _edges) {
    if (row->IsKept()) continue;
    auto input = static_cast<size_t>(row->edge);
    if (HasClock() && (_clock != input || _active_level != row->inputs[input])) {
      _table.Error("table changes its state at the edges of more than one clock");
      return false;
    }
    _clock = input;
    _active_level = row->inputs[input];
  }
  return true;
}

/// The next state at the edge of the clock, registered; asynchronous levels come in front of it.
OwnedValue UdpLogic::CreateRegister() {
  Cover change;
  Cover keep;
  Cover on;
  Cover off;
  for (const Row* row : _edges) {
    auto input = static_cast<size_t>(row->edge);
    if (input != _clock || row->inputs[input] != _active_level) continue;
    Cube cube = row->WithState();
    cube[_clock] = '?'; // its level is what the edge says
    if (row->output == '-') {
      keep.push_back(cube);
      continue;
    }
    (row->output == '1' ? on : off).push_back(cube);
    if (!row->IsKept()) change.push_back(cube);
  }
  Cover held;
  for (Cube cube : _levels.hold) {
    if (IsLiteral(cube[_clock]) && cube[_clock] != _active_level) continue;
    cube[_clock] = '?';
    cube.push_back('?');
    if (Intersects(change, cube)) held.push_back(cube);
  }
  keep.insert(keep.end(), held.begin(), held.end());
  Net* changes = CreateLogic(MergedAgainst(change, keep, _effort));
  if (!held.empty()) changes = veri_and(changes, veri_not(CreateLogic(Merged(held, _effort))));
  Net* next = CreateLogic(MergedAgainst(on, off, _effort));
  OwnedValue hold = VeriValue::FromNet(_hold);
  OwnedValue data = VeriValue::Select(changes, VeriValue::FromNet(next), std::move(hold), &_table);

  VeriDataFlow flow(nullptr);
  flow.SetProcessNode(&_table);
  flow.SetClock(Literal(_clock, _active_level));
  OwnedValue value = flow.Register(std::move(data), _output, &_table);
  auto force = [&](const Cover& cover, veri_digit digit) {
    if (cover.empty()) return;
    Net* condition = CreateLogic(Merged(cover, _effort));
    value = VeriValue::Select(condition, VeriValue::Digits(1, digit), std::move(value), &_table);
  };
  force(_levels.clear, VERI_DIGIT_0);
  force(_levels.set, VERI_DIGIT_1);
  return value;
}

OwnedValue UdpLogic::CreateLatch() {
  Cover open = _levels.set;
  open.insert(open.end(), _levels.clear.begin(), _levels.clear.end());
  Net* enable = CreateLogic(Merged(open, _effort));
  Net* data = CreateLogic(MergedAgainst(_levels.set, _levels.clear, _effort));
  return VeriValue::Select(enable, VeriValue::FromNet(data), VeriValue::FromNet(_hold), &_table);
}

void UdpLogic::CreateSequential(const std::vector<Row>& rows) {
  if (!SplitRows(rows) || !FindClock()) return;
  OwnedValue value = HasClock() ? CreateRegister() : CreateLatch();
  if (value) _output->GetValue()->NetAssignFrom(std::move(value), VERI_RESOLVE_WIRE, true, &_table);
}

const VeriTable* TableOf(const VeriModuleItems* items) {
  for (VeriModuleItem* item : ItemsOf<VeriModuleItem*>(items))
    if (const auto* table = dynamic_cast<const VeriTable*>(item)) return table;
  return nullptr;
}

/// Whether the ports are an output and inputs behind it, one bit each; reports what they are not.
bool CheckPorts(const VeriPrimitive& primitive) {
  const std::vector<VeriVariable*>& ports = primitive.Ports();
  auto has_direction = [](unsigned token) {
    return [token](const VeriVariable* port) { return port->Dir() == token; };
  };
  auto is_vector = [](VeriVariable* port) {
    const VeriConstraint* type = port->GetConstraint();
    return type && (type->IsUnpacked() || type->Size() != 1);
  };
  if (std::none_of(ports.begin(), ports.end(), has_direction(VERI_OUTPUT)))
    primitive.Error("UDP has no output");
  else if (std::find_if(ports.begin(), ports.end(), has_direction(VERI_OUTPUT)) != ports.begin() ||
           std::any_of(ports.begin() + 1, ports.end(), has_direction(VERI_OUTPUT)))
    primitive.Error("UDP output must be the first port");
  else if (std::any_of(ports.begin(), ports.end(), is_vector))
    primitive.Error("every UDP port must be a scalar");
  else if (std::any_of(ports.begin(), ports.end(), has_direction(VERI_INOUT)))
    primitive.Error("inout ports not allowed on a UDP");
  else
    return true;
  return false;
}

} // namespace

void VeriPrimitive::ElaborateContents() {
  VeriModule::ElaborateContents();
  if (!CheckPorts(*this)) return;
  const VeriTable* table = TableOf(Items());
  if (!table || table->Rows().empty()) return Warning("empty table will create an empty box UDP");
  VeriNodeScope node(table);
  UdpTable rows(*table, Ports().size() - 1);
  if (!rows.Read()) return;
  std::vector<Net*> nets;
  for (VeriVariable* port : Ports()) {
    if (!port->GetValue()) return;
    nets.push_back(port->GetValue()->GetBit(0));
  }
  nets.erase(nets.begin());
  UdpLogic logic(*table, std::move(nets), Ports().front());
  if (rows.IsSequential())
    logic.CreateSequential(rows.Rows());
  else
    logic.CreateCombinational(rows.Rows());
}
