// Saved netlists come back as they were; damaged files are refused without harm.
#include "util/saverestore.h"

#include <unistd.h>

#include <fstream>

#include "database/netlist_fixture.h"
#include "database/operators.h"

namespace {

class SavedDatabase : public NetlistTest {
protected:
  void SetUp() override {
    NetlistTest::SetUp();
    path = testing::TempDir() + "zelk_database_" + std::to_string(getpid());
  }
  void TearDown() override {
    std::remove(path.c_str());
    top.reset(new Netlist("top"));
    NetlistTest::TearDown();
  }

  /// A library "work" of a cell "leaf" and a cell "main" that uses it, with one of everything.
  void BuildAndSave() {
    auto* work = new Library("work");
    Libset::Global()->Add(work);
    auto* leaf_cell = new Cell("leaf");
    auto* main_cell = new Cell("main");
    work->Add(main_cell);
    work->Add(leaf_cell);
    Netlist* leaf = ViewWith(1, 1).release();
    leaf_cell->Add(leaf);
    auto* netlist = new Netlist("rtl", At(3));
    main_cell->Add(netlist);
    netlist->SetPresentDesign();
    auto* port = new Port("i", DIR_INPUT, At(4));
    netlist->Add(port);
    auto* port_bus = new PortBus("p", DIR_INPUT, 0, 1);
    netlist->Add(port_bus);
    port_bus->Add(port);
    auto* outer = new NetBus("matrix", 0, 0, 0, 1);
    auto* bus = new NetBus("v", 2, 0);
    netlist->Add(outer);
    netlist->Add(bus);
    outer->Add(bus);
    auto* in = new Net("i", At(4));
    netlist->Add(in);
    in->Connect(port);
    in->AddAtt(ATT_KEEP, "1");
    bus->AddAtIndex(in, 1);
    auto* inst = new Instance("u", leaf, At(5));
    netlist->Add(inst);
    inst->Connect(leaf->GetPort("i0"), in);
    Net* keep = netlist->Buf(in, 0, KEEP);
    Net* q = netlist->Dffrs(keep, in, nullptr, netlist->Gnd(0), 0, "q");
    auto* fsm = new Fsm("state");
    netlist->Add(fsm);
    fsm->AddState(q->Driver(), "idle");
    Array bits;
    for (int i = 0; i < 2; i++) bits.InsertLast(i ? q : in);
    netlist->Adder(q, &bits, &bits, nullptr, nullptr, 0);
    Net* o = nullptr;
    netlist->Lut(&bits, &o, 6, 0);
    Array read(2, nullptr);
    netlist->DualPortRam(in, nullptr, &bits, 4, &bits, &bits, 4, &read, 0);
    // A net with several drivers and loads, in an order of its own.
    netlist->Tristate(in, q, 0)->PropagateInto(o, 0);
    SaveRestore stream(path.c_str(), 0);
    work->Save(stream);
    ASSERT_TRUE(stream.IsOK());
    expected = Contents(netlist);
  }

  static std::string Contents(const Netlist* netlist) {
    std::string text;
    for (Instance* inst : InstancesOf(netlist))
      text += std::string(inst->Name()) + " " + inst->View()->Owner()->Name() + "/" + inst->View()->Name() + " " +
              std::to_string(inst->LutFunction()) + "\n";
    for (Net* net : NetsOf(netlist)) {
      text += std::string(net->Name() ? net->Name() : "~") + std::to_string(net->Linefile()) + ":";
      for (PortRef* ref : PortRefsOf(net))
        text += std::string(" ") + ref->GetInst()->Name() + "." + ref->GetPort()->Name();
      text += "\n";
    }
    return text;
  }

  Library* Restore() {
    SaveRestore stream(path.c_str(), 1);
    auto* library = new Library(stream);
    library->InstallRestored(stream, Libset::Global());
    return Libset::Global()->GetLibrary("work");
  }

  static linefile_type At(unsigned line) { return LineFile::EncodeLineFile("main.v", line); }

  std::string path;
  std::string expected;
};

TEST_F(SavedDatabase, ComesBackAsItWas) {
  BuildAndSave();
  Database::FreeStaticMemory();
  EXPECT_EQ(Netlist::PresentDesign(), nullptr);
  Library* work = Restore();
  ASSERT_TRUE(work);
  EXPECT_EQ(work->NumOfCells(), 2U) << "a view is restored once";
  Netlist* netlist = work->GetCell("main")->GetNetlist("rtl");
  ASSERT_TRUE(netlist);
  EXPECT_EQ(NetlistChecker(netlist).Report(), "");
  EXPECT_EQ(Contents(netlist), expected);
  EXPECT_EQ(Netlist::PresentDesign(), netlist);
  EXPECT_EQ(netlist->Linefile(), At(3));
  EXPECT_EQ(netlist->GetPort("i")->GetPortBus(), netlist->GetPortBus("p"));
  EXPECT_TRUE(netlist->GetPortBus("p")->IsUp());
  EXPECT_EQ(netlist->GetNetBus("v")->ElementAtIndex(1), netlist->GetNet("i"));
  EXPECT_EQ(netlist->GetNetBus("v")->GetNetBus(), netlist->GetNetBus("matrix"));
  EXPECT_TRUE(netlist->GetNet("i")->IsAttOn(ATT_KEEP));
  EXPECT_EQ(netlist->GetInst("u")->View(), work->GetCell("leaf")->GetFirstNetlist());
  EXPECT_EQ(netlist->GetFsm("state")->GetState("idle"), netlist->GetInst("q"));
  Net* keep = netlist->GetInst("q")->GetInput();
  EXPECT_EQ(keep->Driver()->BufferType(), KEEP);
  EXPECT_EQ(keep->Driver()->View(), PrimBuf::Static(KEEP)) << "primitives are the shared ones";
}

TEST_F(SavedDatabase, AViewThatIsThereTakesTheIdsOfTheRestoredOne) {
  BuildAndSave();
  Library* before = Libset::Global()->GetLibrary("work");
  Netlist* leaf = before->GetCell("leaf")->GetFirstNetlist();
  delete leaf->GetPort("o0");
  delete before->GetCell("main");
  Library* work = Restore();
  EXPECT_EQ(work, before);
  EXPECT_EQ(work->GetCell("leaf")->GetFirstNetlist(), leaf);
  EXPECT_EQ(work->GetCell("main")->GetFirstNetlist()->GetInst("u")->View(), leaf);
  EXPECT_THAT(messages, testing::Contains("VDB-1006 port o0 added to existing netlist"));
  EXPECT_EQ(leaf->GetPort("o0")->Direction(), DIR_INOUT);
}

TEST_F(SavedDatabase, AnotherDatabaseVersionIsRefused) {
  {
    SaveRestore stream(path.c_str(), 0);
    DesignObj prefix("work");
    prefix.Save(stream);
    stream.SaveInteger(0xAB0005);
  }
  EXPECT_EQ(Restore(), nullptr);
  EXPECT_THAT(messages,
              testing::ElementsAre(path + " was created using code corresponding to a db_version_number of 0xab0005",
                                   "Currently, backward compatibility is not supported",
                                   "An error occurred during database binary restore"));
}

TEST_F(SavedDatabase, DamagedFilesDoNoHarm) {
  BuildAndSave();
  std::ifstream file(path, std::ios::binary);
  std::string whole((std::istreambuf_iterator<char>(file)), {});
  ASSERT_GT(whole.size(), 500U);
  auto read = [&](const std::string& bytes) {
    Database::FreeStaticMemory();
    std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    Restore();
  };
  for (size_t size = 0; size < whole.size(); size += 13) {
    read(whole.substr(0, size));
    EXPECT_THAT(messages, testing::Contains("An error occurred during database binary restore"));
  }
  kestrin_set_report_handler([](const char*, const char*, int) {}); // that the file does not end as it should
  auto former = kestrin_set_assertion_handler([](const char* text, const char*, int) { FAIL() << text; });
  for (size_t at = 8; at < whole.size(); at += 4)
    for (char byte : {'\x00', '\x7F'}) {
      std::string damaged = whole;
      damaged[at] = byte;
      read(damaged);
    }
  kestrin_set_assertion_handler(former);
  kestrin_set_report_handler(nullptr);
}

} // namespace
