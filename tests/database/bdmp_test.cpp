// The binary form of the database: everything that was saved comes back, and damaged files change nothing.
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <sstream>

#include "containers/assertion.h"
#include "database/netlist_fixture.h"
#include "database/operators.h"
#include "support/database_file.h"

namespace {

std::vector<std::string> reports;

class BdmpTest : public NetlistTest {
protected:
  void SetUp() override {
    NetlistTest::SetUp();
    reports.clear();
    kestrin_set_report_handler([](const char* text, const char*, int) { reports.emplace_back(text); });
    path = TemporaryFile(testing::UnitTest::GetInstance()->current_test_info()->name());
  }
  void TearDown() override {
    kestrin_set_report_handler(nullptr);
    std::filesystem::remove(path);
    NetlistTest::TearDown();
    LineFile::FreeLineFileMaps();
  }

  static Library* Work() {
    Library* work = Libset::Global()->GetLibrary("work");
    if (!work) Libset::Global()->Add(work = new Library("work"));
    return work;
  }
  static Netlist* NewNetlist(const char* cell_name) {
    auto* cell = new Cell(cell_name, LineFile::EncodeLineFile("a.v", 3));
    Work()->Add(cell);
    auto* netlist = new Netlist("INTERFACE", LineFile::EncodeLineFile("b.v", 4));
    cell->Add(netlist);
    return netlist;
  }
  static Netlist* Find(const char* cell_name) {
    Cell* cell = Work()->GetCell(cell_name);
    return cell ? cell->GetFirstNetlist() : nullptr;
  }

  std::string BytesOf(const DesignObj* object) { return BytesOfSaved(object, path); }
  void Save(const DesignObj* object) { BytesOf(object); }
  void SetBytes(const std::string& bytes) { WriteBytes(path, bytes); }
  Library* RestoreLibrary() {
    messages.clear();
    Message::ClearErrorCount();
    SaveRestore stream(path.c_str(), 1);
    auto* library = new Library(stream);
    return library->InstallRestored(stream, Libset::Global());
  }

  /// Everything of all designs and operators.
  static std::string DumpAll() {
    std::string all;
    for (Library* library : LibrariesOf(Libset::Global())) all += DumpOf(library);
    return all;
  }

  std::string path;
};

unsigned long At(unsigned line) { return LineFile::EncodeLineFile("rich.v", line); }

/// An array of nets in a netlist, as a bus.
ArrayOf<Net>* Word(Netlist* netlist, std::vector<std::unique_ptr<ArrayOf<Net>>>& kept, const std::string& name,
                   int width) {
  kept.push_back(std::make_unique<ArrayOf<Net>>());
  auto* bus = new NetBus(name.c_str(), width - 1, 0, At(5));
  netlist->Add(bus);
  for (int bit = 0; bit < width; bit++) {
    auto* net = new Net((name + "[" + std::to_string(bit) + "]").c_str(), At(6));
    netlist->Add(net);
    bus->AddAtIndex(net, bit);
    kept.back()->InsertLast(net);
  }
  return kept.back().get();
}

void AddWordOperators(Netlist* n) {
  std::vector<std::unique_ptr<ArrayOf<Net>>> kept;
  int words = 0;
  auto word = [&](int width) { return Word(n, kept, "w" + std::to_string(words++), width); };
  auto bit = [&] { return word(1)->At(0); };
  Net* one_bit = nullptr;
  auto fresh = [&]() -> Net** {
    one_bit = nullptr;
    return &one_bit;
  };
  n->Adder(bit(), word(3), word(2), word(3), fresh(), At(10));
  n->Multiplier(1, word(3), word(2), word(5), At(11));
  n->Multiplier(0, word(2), word(2), word(4), At(11));
  n->Divider(1, word(4), word(3), word(4), At(12));
  n->Modulo(0, word(4), word(3), word(3), At(12));
  n->ShiftLeft(bit(), word(4), word(2), word(4), At(13));
  n->ShiftRight(bit(), word(4), word(2), word(4), At(13));
  n->RotateLeft(word(4), word(2), word(4), At(13));
  n->RotateRight(word(4), word(2), word(4), At(13));
  n->ReduceAnd(word(4), fresh(), 0);
  n->ReduceNand(word(4), fresh(), 0);
  n->ReduceOr(word(4), fresh(), 0);
  n->ReduceNor(word(4), fresh(), 0);
  n->ReduceXor(word(4), fresh(), 0);
  n->ReduceXnor(word(4), fresh(), 0);
  n->Equal(word(3), word(3), fresh(), 0);
  n->LessThan(bit(), word(3), word(3), fresh(), 0);
  n->Nto1Mux(word(2), word(3), fresh(), 0);
  n->Selector(word(3), word(3), fresh(), 0);
  n->PrioSelector(bit(), word(3), word(3), fresh(), 0);
  n->Decoder(word(2), word(4), 0);
  n->Lut(word(3), fresh(), 0xE8, 0);
  n->Lut(word(2), fresh(), 0, 0); // a table of zeros is saved as a plain instance
  Instance* ram = n->TrueDualPortRam(bit(), word(2), word(3), 8, word(4), word(2), 4, word(8), bit(), nullptr, word(3),
                                     7, word(4), word(3), 8, word(4), At(20));
  ram->AddAtt(ATT_TRUE_DUAL_PORT, "AB");
  n->DualPortRam(nullptr, nullptr, nullptr, 0, nullptr, word(2), 4, word(8), At(21));
}

void AddPrimitives(Netlist* n, Net* a, Net* b, Net* clk) {
  Net* cout = nullptr;
  n->X(0);
  n->And(n->Nand(a, b, 0), n->Or(a, n->Nor(a, b, 0), 0), 0);
  n->Mux(n->Xor(a, b, 0), n->Xnor(a, b, 0), n->Inv(b, 0), At(31));
  for (buffer_type_enum type : {LOGICAL, STRUCTURAL, KEEP, USER_NET, CONSTANT, DIRECTIONAL, NONE}) n->Buf(a, 0, type);
  Net* bus = n->Tristate(a, b, 0);
  for (Net* other : {n->Tristate(b, a, 0), n->Pullup(0)}) {
    Instance* driver = other->Driver();
    driver->Reconnect(driver->View()->GetOutput(), bus);
  }
  n->Pulldown(0);
  n->Tran(n->Z(0), a, b, 0);
  n->Cmos(a, b, b, 0);
  n->Nmos(a, b, 0);
  n->Pmos(a, b, 0);
  n->Fadd(a, b, a, &cout, 0);
  n->InferPoint(n->Clock(clk, nullptr, 0), a, 0)->Driver()->SetSequence(17);
  n->PslAssertion(a, 0);
  n->Dlatch(a, clk, b, b, 0);
  n->Dlatchrs(a, clk, b, b, 0);
}

Net* NewPort(Netlist* n, const char* name, port_dir direction) {
  auto* port = new Port(name, direction, At(1));
  n->Add(port);
  auto* net = new Net(name, At(2));
  n->Add(net);
  net->Connect(port);
  return net;
}

/// A netlist with something of every kind, over a view that is used twice and over a black box.
Netlist* Rich(Netlist* n, Netlist* child, Netlist* black_box) {
  Net* a = NewPort(n, "a", DIR_INPUT);
  Net* clk = NewPort(n, "clk", DIR_INPUT);
  Net* b = NewPort(n, "io", DIR_INOUT);
  n->Add(new Port("open", DIR_OUTPUT));
  auto* matrix = new PortBus("m", DIR_OUTPUT, 0, 1, At(3), 1);
  n->Add(matrix);
  for (const char* row_name : {"m[0]", "m[1]"}) {
    auto* row = new PortBus(row_name, DIR_OUTPUT, 1, 0, At(3));
    n->Add(row);
    for (const char* bit : {"[1]", "[0]"}) {
      NewPort(n, (std::string(row_name) + bit).c_str(), DIR_OUTPUT);
      row->Add(n->GetPort((std::string(row_name) + bit).c_str()));
    }
    matrix->Add(row);
  }
  n->GetPort("a")->AddAtt(ATT_CHIP_PIN, "\"B12\"");
  n->AddAtt(" cell_name", "rich");
  n->SetSourceLang(DB_SOURCE_LANG_VERILOG);

  auto* outer = new NetBus("v", 2, 0, At(7), 1);
  n->Add(outer);
  auto* inner = new NetBus("v[1]", -1, 4, At(7));
  n->Add(inner);
  outer->AddAtIndex(inner, 1);
  inner->AddAtIndex(a, 2);
  inner->AddAtIndex(clk, 0);
  auto* twin = new Net("v", At(7)); // the name of a bus
  n->Add(twin);

  AddPrimitives(n, a, b, clk);
  AddWordOperators(n);
  a->SetPowerUpValue('1');
  b->SetPreferredName(1);
  b->SetPowerUpValue('Z');
  b->AddAtt(ATT_KEEP, "1");
  clk->SetPreferredName(1);
  b->AddAtt("odd name", "");

  auto* fsm = new Fsm("state", At(8));
  n->Add(fsm);
  for (const char* state : {"idle", "run"}) {
    Instance* reg = state[0] == 'i' ? n->Dff(a, clk, b, b, At(9), state)->Driver()
                                    : n->Dffrs(a, clk, a, b, At(9), state, nullptr, a, b)->Driver();
    fsm->AddState(reg, state);
  }
  fsm->AddAtt(ATT_FSM_ENCODING, "\"onehot\"");

  for (const char* name : {"r0", "r1", "r2"}) n->Add(new Net(name, At(41)));
  n->GetNet("r0")->Wire(n->GetNet("r1"));
  n->GetNet("r1")->Wire(n->GetNet("r2"));
  Net* oldest = n->Inv(a, 0);
  for (Net* later : {n->Inv(b, 0), n->Pulldown(0)})
    later->Driver()->Reconnect(later->Driver()->View()->GetOutput(), oldest);
  delete oldest->Driver(); // the latest; from now on the oldest counts
  for (Instance* inst : InstancesOf(n))
    if (inst->Type() == OPER_ADDER || inst->Type() == OPER_EQUAL) inst->SetControlNet(b);
  n->AddParam("WIDTH", "8", "integer", 391);
  n->AddParam("NAME", "a b", nullptr, 396);

  for (const char* name : {"u1", "u2"}) {
    auto* inst = new Instance(name, child, At(40));
    n->Add(inst);
    for (Port* port : PortsOf(child)) inst->Connect(port, port->IsInput() ? a : b);
    inst->AddAtt(ATT_NOPRUNE, "1");
  }
  n->Add(new Instance("u3", black_box));
  n->Add(new Instance("u4"));
  return n;
}

class RichTest : public BdmpTest {
protected:
  void SetUp() override {
    BdmpTest::SetUp();
    Netlist* leaf = NewNetlist("leaf");
    NewPort(leaf, "x", DIR_INPUT);
    Netlist* child = NewNetlist("child");
    Net* x = NewPort(child, "x", DIR_INPUT);
    Net* y = NewPort(child, "y", DIR_OUTPUT);
    child->Inv(x, 0)->Driver()->Reconnect(Prim::Static(PRIM_INV)->GetOutput(), y);
    auto* inst = new Instance("deep", leaf);
    child->Add(inst);
    inst->Connect(leaf->GetPort("x"), y);
    rich = Rich(NewNetlist("a rich(8)"), child, leaf);
    rich->SetPresentDesign();
    EXPECT_THAT(messages, testing::IsEmpty());
  }
  Netlist* rich = nullptr;
};

TEST_F(RichTest, ALibraryComesBackWithEverythingInIt) {
  const std::string before = DumpAll();
  Save(Work());
  ForgetDesigns();
  ASSERT_NE(RestoreLibrary(), nullptr);
  EXPECT_EQ(DumpAll(), before);

  Netlist* restored = Find("a rich(8)");
  EXPECT_EQ(Netlist::PresentDesign(), restored);
  EXPECT_TRUE(restored->GetNet("io")->IsPreferredName());
  EXPECT_EQ(restored->GetNet("a")->PowerUpValue(), '1');
  EXPECT_EQ(restored->GetNetBus("v")->ElementAtIndex(1), restored->GetNetBus("v[1]"));
  EXPECT_EQ(restored->GetNetBus("v[1]")->ElementAtIndex(2), restored->GetNet("a"));
  EXPECT_EQ(restored->GetNetBus("v[1]")->ElementAtIndex(1), nullptr);
  EXPECT_EQ(restored->GetPortBus("m")->ElementAtIndex(1), restored->GetPortBus("m[1]"));
  EXPECT_EQ(restored->GetFsm("state")->StateName(restored->GetInst("run")), std::string("run"));
  unsigned sequence = 0;
  for (Instance* inst : InstancesOf(restored)) {
    sequence += inst->Sequence();
    if (inst->Type() != OPER_LUT) continue;
    EXPECT_EQ(inst->LutFunction(), inst->Input1Size() == 3 ? 0xE8U : 0U);
  }
  EXPECT_EQ(sequence, 17U);
  EXPECT_EQ(Find("child")->NumOfRefs(), 2U);
  EXPECT_EQ(restored->GetNet("r0")->WireNext(), restored->GetNet("r1"));
  EXPECT_EQ(restored->GetNet("r2")->WireNext(), restored->GetNet("r0"));
  EXPECT_EQ(restored->GetParam("WIDTH")->VariableType(), 391);
  EXPECT_STREQ(restored->GetParam("WIDTH")->TypeText(), "integer");
  EXPECT_EQ(restored->GetParam("NAME")->VariableType(), 396);
  unsigned controlled = 0;
  for (Instance* inst : InstancesOf(restored)) controlled += inst->ControlNet() == restored->GetNet("io");
  EXPECT_EQ(controlled, 2U);
  EXPECT_THAT(reports, testing::Each("netlists with parameters are not meant to be saved"));
  EXPECT_EQ(reports.size(), 2U);
}

TEST_F(RichTest, WhatIsSavedTwiceIsTheSameAndSoIsWhatWasRestored) {
  const std::string bytes = BytesOf(rich);
  EXPECT_EQ(BytesOf(rich), bytes);
  ForgetDesigns();
  SaveRestore stream(path.c_str(), 1);
  std::unique_ptr<Netlist> restored(new Netlist(stream));
  ASSERT_TRUE(stream.IsOK());
  restored->SetPresentDesign();
  EXPECT_EQ(BytesOf(restored.get()), bytes);
  EXPECT_EQ(NetlistChecker(restored.get()).Report(), "");
}

TEST_F(RichTest, AFileOfTheOtherByteOrderComesBack) {
  const std::string before = DumpAll();
  std::string bytes = BytesOf(Work());
  const ByteSwapper swap(bytes);
  SetBytes(bytes);
  ForgetDesigns();
  ASSERT_NE(RestoreLibrary(), nullptr);
  EXPECT_EQ(DumpAll(), before);
}

TEST_F(RichTest, WhatExistsStaysAndGetsMissingPorts) {
  Save(Work());
  ForgetDesigns();
  Netlist* older = NewNetlist("child");
  older->Add(new Port("x", DIR_INPUT));
  older->Add(new Net("only here"));
  Cell* cell = older->Owner();
  ASSERT_NE(RestoreLibrary(), nullptr);
  EXPECT_EQ(Work()->GetCell("child"), cell);
  EXPECT_EQ(Find("child"), older);
  EXPECT_EQ(older->NumOfNets(), 1U);
  EXPECT_EQ(older->NumOfInsts(), 0U);
  ASSERT_NE(older->GetPort("y"), nullptr);
  EXPECT_EQ(older->GetPort("y")->Direction(), DIR_INOUT);
  EXPECT_THAT(messages, testing::Contains(testing::EndsWith("VDB-1006 port y added to existing netlist")));
  Netlist* restored = Find("a rich(8)");
  EXPECT_EQ(restored->GetInst("u1")->View(), older);
  EXPECT_EQ(restored->GetInst("u1")->GetNet(older->GetPort("x")), restored->GetNet("a"));
  EXPECT_EQ(NetlistChecker(restored).Report(), "");
}

TEST_F(RichTest, AHierarchyComesBackUnderItsTopAndEachViewOnce) {
  Save(rich);
  ForgetDesigns();
  {
    SaveRestore stream(path.c_str(), 1);
    auto* top_cell = new Cell("a rich(8)", LineFile::EncodeLineFile("a.v", 3));
    auto* netlist = new Netlist(stream);
    EXPECT_EQ(Work()->NumOfCells(), 2U);
    Work()->Add(top_cell);
    EXPECT_EQ(netlist->InstallRestored(stream, top_cell), netlist);
  }
  EXPECT_EQ(Find("a rich(8)")->GetInst("u1")->View(), Find("child"));
  EXPECT_EQ(Find("child")->GetInst("deep")->View(), Find("leaf"));
}

TEST_F(RichTest, AnotherVersionOfTheDatabaseInstallsNothing) {
  std::string bytes = BytesOf(Work());
  const std::string version("\x06\0\xAB\0", 4);
  bytes.replace(bytes.find(version), 1, "\x05");
  SetBytes(bytes);
  ForgetDesigns();
  EXPECT_EQ(RestoreLibrary(), nullptr);
  EXPECT_EQ(Libset::Global()->GetLibrary("work"), nullptr);
  EXPECT_THAT(messages,
              testing::ElementsAre(path + " was created using code corresponding to a db_version_number of 0xab0005",
                                   "Currently, backward compatibility is not supported",
                                   "An error occurred during database binary restore"));
}

/// A small design with a record of every kind.
class CutFile : public BdmpTest {
protected:
  void SetUp() override {
    BdmpTest::SetUp();
    Netlist* leaf = NewNetlist("leaf");
    NewPort(leaf, "x", DIR_INPUT);
    Netlist* n = NewNetlist("m");
    Net* a = NewPort(n, "a", DIR_INPUT);
    auto* ports = new PortBus("p", DIR_INPUT, 0, 0, At(3));
    n->Add(ports);
    ports->Add(n->GetPort("a"));
    auto* nets = new NetBus("v", 1, 0, At(4));
    n->Add(nets);
    nets->AddAtIndex(a, 1);
    ArrayOf<Net> word(1, a);
    Net* equal = nullptr;
    n->Lut(&word, &equal, 2, 0);
    Instance* reg = n->Dff(equal, a, a, a, At(5), "q")->Driver();
    auto* fsm = new Fsm("s");
    n->Add(fsm);
    fsm->AddState(reg, "idle");
    auto* inst = new Instance("u", leaf);
    n->Add(inst);
    inst->Connect(leaf->GetPort("x"), a);
    reg->SetControlNet(a);
    n->Add(new Net("r", 0));
    n->GetNet("r")->Wire(equal);
    n->AddParam("W", "8", "integer", 391);
    a->SetPowerUpValue('1');
  }
};

TEST_F(CutFile, ChangesNothingWhereverItIsCut) {
  const std::string bytes = BytesOf(Work());
  ForgetDesigns();
  NewNetlist("leaf"); // gets a port, and loses it again
  const std::string before = DumpAll();
  for (size_t size = 0; size + 4 < bytes.size(); size++) {
    SetBytes(bytes.substr(0, size));
    ASSERT_EQ(RestoreLibrary(), nullptr) << size;
    ASSERT_THAT(messages, testing::Contains("An error occurred during database binary restore")) << size;
    ASSERT_TRUE(DumpAll() == before) << size;
  }
}

TEST_F(CutFile, WithAnyBitWrongEndsInAMessageOrInAConsistentDesign) {
  const std::string bytes = BytesOf(Work());
  ForgetDesigns();
  const std::string before = DumpAll();
  unsigned failed = 0;
  for (size_t bit = 0; bit < 8 * bytes.size(); bit += 3) { // each byte, and each place in it
    std::string damaged = bytes;
    damaged[bit / 8] ^= 1U << bit % 8;
    SetBytes(damaged);
    if (RestoreLibrary()) {
      DumpAll();
      ForgetDesigns();
    } else {
      failed++;
      ASSERT_THAT(messages, testing::Contains("An error occurred during database binary restore")) << bit;
      ASSERT_TRUE(DumpAll() == before) << bit;
    }
  }
  EXPECT_GT(failed, bytes.size());
}

TEST_F(RichTest, ACutFileChangesNothing) {
  const std::string bytes = BytesOf(Work());
  ForgetDesigns();
  NewNetlist("child"); // gets ports, and loses them again
  const std::string before = DumpAll();
  std::mt19937 random(1);
  for (size_t size = 0; size + 4 < bytes.size(); size += 1 + random() % 100) {
    SetBytes(bytes.substr(0, size));
    ASSERT_EQ(RestoreLibrary(), nullptr) << size;
    ASSERT_THAT(messages, testing::Contains("An error occurred during database binary restore")) << size;
    ASSERT_TRUE(DumpAll() == before) << size;
  }
}

// Some damage cannot be told from another design; then the design is consistent and the primitives are what they were.
TEST_F(RichTest, ADamagedFileEndsInAMessageOrInAConsistentDesign) {
  const std::string bytes = BytesOf(Work());
  ForgetDesigns();
  const std::string before = DumpAll();
  std::mt19937 random(2);
  unsigned failed = 0;
  for (int round = 0; round < 600; round++) {
    std::string damaged = bytes;
    for (int flips = 1 + round % 3; flips > 0; flips--) damaged[random() % damaged.size()] ^= 1U << random() % 8;
    SetBytes(damaged);
    if (RestoreLibrary()) {
      DumpAll();
      ForgetDesigns();
    } else {
      failed++;
      ASSERT_THAT(messages, testing::Contains("An error occurred during database binary restore")) << round;
      ASSERT_TRUE(DumpAll() == before) << round;
    }
  }
  EXPECT_GT(failed, 200U);
}

} // namespace
