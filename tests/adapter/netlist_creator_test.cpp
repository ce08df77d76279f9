// Netlists written as text: what the language says stands in the netlist, and a mistake is told with its line.
#include "zelk_netlist_creator.h"

#include <gmock/gmock.h>

#include <random>

#include "database/netlistchecker.h"
#include "database/primitives.h"
#include "host/scratch_dir.h"
#include "sgate_fixture.h"
#include "support/netlist_evaluator.h"
#include "tst.h"
#include "zelk_kestrin_elaborator.h"

namespace {

struct INTERNAL_ERRORS : MSG_SINK {
  std::vector<std::string> texts;
  void on_message(const MSG_BASE&) override {}
  void on_internal_error(const std::string& text, const std::string&, const std::string&, int) override {
    texts.push_back(text);
  }
  void on_debug(const std::string&, const std::string&) override {}
};

class CreatorTest : public SgateTest {
protected:
  CreatorTest() { msg_get_default_report()->set_sink(&m_errors); }
  ~CreatorTest() override {
    msg_get_default_report()->set_sink(nullptr);
    MSG_INTERNAL_ERROR::reset_count();
  }

  /// Reads lines behind those that open a netlist "n".
  Netlist* read(const std::string& lines, const char* key = "n") {
    m_folder.write("map.txt", "LIBRARY NAME=text\nCELL NAME=m\nNETLIST NAME=n KEY=\"n\"\n" + lines);
    m_errors.texts.clear();
    Netlist* read = ZELK_NETLIST_CREATOR(m_folder.path("map.txt")).create(key);
    EXPECT_EQ(read ? NetlistChecker(read).Report() : "", "");
    return read;
  }
  void forget() { delete Libset::Global()->GetLibrary("text"); }

  SCRATCH_DIR m_folder;
  INTERNAL_ERRORS m_errors;
};

TEST_F(CreatorTest, ADesignIsReadAndConverted) {
  Netlist* made = read(R"(
// An adder with a register behind it.
port name=a direction=input left=3 right=0 line=10
PORT	NAME="b" DIRECTION=INPUT LEFT=3 RIGHT=0   // trailing
PORT NAME=clk DIRECTION=INPUT
NETBUS NAME=s LEFT=3 RIGHT=0
NETBUS NAME=q LEFT=0 RIGHT=3
PORT NAME=y DIRECTION=OUTPUT LEFT=4 RIGHT=0 NET=carry,q
)");
  EXPECT_EQ(made, nullptr);
  EXPECT_THAT(m_errors.texts, testing::ElementsAre(testing::HasSubstr("Cannot find \"carry\" (file ")));
  forget();

  made = read(R"(
PORT NAME=a DIRECTION=INPUT LEFT=3 RIGHT=0 LINE=10
PORT NAME=b DIRECTION=INPUT LEFT=3 RIGHT=0
PORT NAME=clk DIRECTION=INPUT
NETBUS NAME=s LEFT=3 RIGHT=0
NETBUS NAME=q LEFT=0 RIGHT=3
NET SYMBOL=carry
PORT NAME=y DIRECTION=OUTPUT LEFT=4 RIGHT=0 NET=carry,q
OPERATOR TYPE=ADDER NAME="sum" INPUT1=a INPUT2=b OUTPUT=s COUT=carry
GATE TYPE=DFF NAME=r INPUT=s[3] CLOCK=clk OUTPUT=q[0]
GATE TYPE=DFF INPUT=s[2] CLOCK=clk OUTPUT=q[1]
GATE TYPE=DFF INPUT=s[1] CLOCK=clk OUTPUT=q[2]
GATE TYPE=DFF INPUT=s[0] CLOCK=clk OUTPUT=q[3]
ATTRIBUTE OBJECT=r NAME=preserve VALUE=on
)");
  ASSERT_NE(made, nullptr);
  EXPECT_EQ(made->GetNet("a[2]")->Linefile(), LineFile::EncodeLineFile(m_folder.path("map.txt").c_str(), 10));
  NetlistEvaluator evaluator;
  ArrayOf<Net> a, b, s;
  for (int bit = 0; bit < 4; bit++) {
    a.InsertLast(made->GetNet(("a[" + std::to_string(bit) + "]").c_str()));
    b.InsertLast(made->GetNet(("b[" + std::to_string(bit) + "]").c_str()));
    s.InsertLast(made->GetNet(("s[" + std::to_string(bit) + "]").c_str()));
  }
  evaluator.Set(a, 5);
  evaluator.Set(b, 13);
  EXPECT_EQ(evaluator.Value(s), 2U);
  EXPECT_TRUE(evaluator.Value(made->GetPort("y[4]")->GetNet()));
  EXPECT_EQ(made->GetPort("y[3]")->GetNet(), made->GetNet("q[0]")); // q ascends: its left net is the first one
  EXPECT_TRUE(made->GetInst("r")->IsAttOn(ATT_PRESERVE));
  netlist = made;
  EXPECT_TRUE(convert());
}

TEST_F(CreatorTest, EveryGateTypeTakesTheNetsOfItsRoles) {
  Netlist* made = read(R"(
NET NAME=a
NET NAME=b
GATE TYPE=POWER OUTPUT=b
GATE TYPE=GND
GATE TYPE=X
GATE TYPE=Z
GATE TYPE=INVERTER INPUT=a OUTPUT=b NAME=INV
GATE TYPE=BUF BUFFER_TYPE=KEEP_BUFFER INPUT=a OUTPUT=b NAME=BUF
GATE TYPE=AND INPUT1=a INPUT2=b OUTPUT=b NAME=AND
GATE TYPE=NAND INPUT1=a INPUT2=b OUTPUT=b
GATE TYPE=OR INPUT1=a INPUT2=b OUTPUT=b
GATE TYPE=NOR INPUT1=a INPUT2=b OUTPUT=b
GATE TYPE=XOR INPUT1=a INPUT2=b OUTPUT=b
GATE TYPE=XNOR INPUT1=a INPUT2=b OUTPUT=b
GATE TYPE=MUX INPUT1=a INPUT2=b CTRL=a OUTPUT=b
GATE TYPE=PULL_UP OUTPUT=b
GATE TYPE=PULLDOWN OUTPUT=b
GATE TYPE=TRISTATE INPUT=a CONTROL=b OUTPUT=b
GATE TYPE=DLATCH INPUT=a CLOCK=b ASYNCVAL=a ASYNC_COND=b OUTPUT=b
GATE TYPE=DLATCHSR INPUT=a CLOCK=b SET=a RESET=b OUTPUT=b
GATE TYPE=DFF INPUT=a CLOCK=b ASYNC_VAL=a ASYNCCOND=b OUTPUT=b
GATE TYPE=DFFSR INPUT=a CLOCK=b SET=a RESET=b Z=a ALOAD=a ADATA=b OUTPUT=b NAME=DFFRS
GATE TYPE=NMOS INPUT=a CONTROL=b OUTPUT=b
GATE TYPE=PMOS INPUT=a CONTROL=b OUTPUT=b
GATE TYPE=CMOS INPUT=a INPUT1=a INPUT2=b OUTPUT=b
GATE TYPE=TRAN INPUT1=a INPUT2=b CONTROL=b
GATE TYPE=FULL_ADDER INPUT1=a INPUT2=b CIN=a OUTPUT=b COUT=b
GATE TYPE=PSL_ASSERTION INPUT=a
GATE TYPE=CLOCK INPUT=a CONTROL=b OUTPUT=b
GATE TYPE=INFER_POINT INPUT=a INPUT2=b OUTPUT=b
)");
  ASSERT_NE(made, nullptr) << testing::PrintToString(m_errors.texts);
  EXPECT_EQ(made->NumOfInsts(), 28U);
  unsigned connected = 0;
  for (Instance* inst : InstancesOf(made))
    if (!inst->IsConstantPrimitive()) connected += inst->NumOfPortRefs() == inst->View()->NumOfPorts();
  EXPECT_EQ(connected, 24U);
  EXPECT_EQ(made->GetInst("BUF")->BufferType(), KEEP);
  EXPECT_EQ(made->GetInst("DFFRS")->GetReset(), made->GetNet("b"));
}

TEST_F(CreatorTest, EveryOperatorTypeIsBuilt) {
  const struct {
    const char* line;
    prim_type_enum type;
  } operators[] = {
      {"TYPE=ADDER CIN=c IN=a INPUT2=b OUTPUT=w4", OPER_ADDER},
      {"TYPE=MULT SIGNED=1 INPUT1=a INPUT2=b OUTPUT=w4,w2,c", OPER_MULTIPLIER},
      {"TYPE=DIVIDER INPUT1=a INPUT2=b OUTPUT=w4", OPER_DIVIDER},
      {"TYPE=MODULO INPUT1=a INPUT2=b OUTPUT=w4[2:0]", OPER_MODULO},
      {"TYPE=SHIFT_LEFT INPUT1=a AMOUNT=b OUTPUT=w4", OPER_SHIFT_LEFT},
      {"TYPE=SHIFTRIGHT INPUT1=a AMOUNT=b OUTPUT=w4", OPER_SHIFT_RIGHT},
      {"TYPE=ROTATE_LEFT INPUT1=a AMOUNT=b OUTPUT=w4", OPER_ROTATE_LEFT},
      {"TYPE=ROTATERIGHT INPUT1=a AMOUNT=b OUTPUT=w4", OPER_ROTATE_RIGHT},
      {"TYPE=REDUCE_AND INPUT=a OUTPUT=d", OPER_REDUCE_AND},
      {"TYPE=REDUCE_OR INPUT=a OUTPUT=d", OPER_REDUCE_OR},
      {"TYPE=REDUCE_XOR INPUT=a OUTPUT=d", OPER_REDUCE_XOR},
      {"TYPE=REDUCE_NAND INPUT=a OUTPUT=d", OPER_REDUCE_NAND},
      {"TYPE=REDUCENOR INPUT=a OUTPUT=d", OPER_REDUCE_NOR},
      {"TYPE=REDUCE_XNOR INPUT=a OUTPUT=d", OPER_REDUCE_XNOR},
      {"TYPE=LESS_THAN INPUT1=a INPUT2=w4 OUTPUT=d", OPER_LESSTHAN},
      {"TYPE=EQUAL INPUT1=a INPUT2=w4 OUTPUT=d", OPER_EQUAL},
      {"TYPE=NTO1MUX SEL=w2 DATA=a OUTPUT=d", OPER_NTO1MUX},
      {"TYPE=SELECT SEL=a DATA=w4 OUTPUT=d", OPER_SELECTOR},
      {"TYPE=DECODER INPUT=w2 OUTPUT=w4", OPER_DECODER},
      {"TYPE=PRIORITYSELECTOR SEL=a DATA=w4 CIN=c OUTPUT=d", OPER_PRIO_SELECTOR},
      {"TYPE=DUALPORTRAM READ_ADDRESS=b READ_DATA=w4", OPER_DUAL_PORT_RAM},
      {"TYPE=LUT FUNCTION=0x8 INPUT=w2 OUTPUT=d", OPER_LUT},
  };
  for (const auto& op : operators) {
    Netlist* made = read(std::string("NET NAME=c\nNET NAME=d\nNETBUS NAME=a LEFT=3 RIGHT=0\nNETBUS NAME=b LEFT=2 "
                                     "RIGHT=0\nNETBUS NAME=w4 LEFT=3 RIGHT=0\nNETBUS NAME=w2 LEFT=0 RIGHT=1\n"
                                     "OP NAME=op SYMBOL=u ") +
                         op.line + "\nSET OBJECT=u NAME=\"the op\"\n");
    ASSERT_NE(made, nullptr) << op.line << testing::PrintToString(m_errors.texts);
    Instance* inst = made->GetInst("the op");
    ASSERT_NE(inst, nullptr) << op.line;
    EXPECT_EQ(inst->Type(), op.type);
    EXPECT_EQ(inst->IsSigned(), op.type == OPER_MULTIPLIER);
    forget();
  }
}

TEST_F(CreatorTest, ALineWorksOnTheNetlistBeforeItsDot) {
  Netlist* made = read(R"(
CELL NAME=child
NETLIST NAME=c
PORT NAME=x DIRECTION=INPUT LEFT=0 RIGHT=1
SET NETLIST=n
NET NAME=p POWER_UP="1"
NET NAME=q
USER_INSTANCE NAME=u VIEW=c
CONNECT INSTANCE=u PORT=x NET=p,q
c.NET NAME=p
c.GET_PORT NAME=x SYMBOL=port
c.ATTRIBUTE OBJECT=port NAME=chip_pin VALUE="A1"
c.PARAMETER NAME=W VALUE=8
SET OBJECT=q PREFERRED=1
RAM NAME=mem READ_ADDRESS=p READ_DATA=q WRITE_ENABLE=q WRITE_ADDRESS=p WRITE_DATA=q WRITE_DEPTH=2 READ_ADDRESS_B=q READ_DATA_B=p
)");
  ASSERT_NE(made, nullptr) << testing::PrintToString(m_errors.texts);
  Netlist* child = made->GetInst("u")->View();
  EXPECT_EQ(made->GetInst("u")->GetNet(child->GetPort("x[0]")), made->GetNet("p"));
  EXPECT_EQ(made->GetInst("u")->GetNet(child->GetPort("x[1]")), made->GetNet("q"));
  EXPECT_EQ(child->GetPortBus("x")->GetAttValue(ATT_CHIP_PIN), std::string("\"A1\""));
  EXPECT_NE(child->GetNet("p"), nullptr);
  EXPECT_NE(child->GetParam("W"), nullptr);
  EXPECT_EQ(made->GetNet("p")->PowerUpValue(), '1');
  EXPECT_TRUE(made->GetNet("q")->IsPreferredName());
  EXPECT_EQ(made->GetInst("mem")->GetReadDepth(1), 2U);
}

TEST_F(CreatorTest, AMistakeIsAnInternalErrorWithItsLine) {
  const struct {
    const char* line;
    const char* text;
  } mistakes[] = {
      {"GATES TYPE=AND", "Bad command: GATES"},
      {"NET a", "Invalid argument format.  Every argument must take a value."},
      {"NET NAME=", "Invalid argument format.  Every argument must take a value."},
      {"NET NAME=\"a", "Missing quote."},
      {"NET COLOUR=red", "Invalid argument \"COLOUR\""},
      {"NET NAME=x NAME=y", "Argument \"NAME\" is given twice"},
      {"PORT DIRECTION=INPUT", "Missing argument \"NAME\""},
      {"PORT NAME=x DIRECTION=UP", "Invalid direction \"UP\""},
      {"PORT NAME=x DIRECTION=INPUT LEFT=0 RIGHT=99999999", "Too many bits"},
      {"PORT NAME=x DIRECTION=INPUT LEFT=1 RIGHT=0 NET=a", "Port \"x\" has 2 bits, but 1 nets"},
      {"NETBUS NAME=a LEFT=1 RIGHT=0", "The netlist has a net \"a\" already"},
      {"NETBUS NAME=z LEFT=one", "Argument \"LEFT\" takes a number"},
      {"GATE TYPE=ANDD", "Invalid type \"ANDD\""},
      {"GATE TYPE=ADDER", "Type \"ADDER\" is no gate"},
      {"GATE TYPE=AND BUFFER_TYPE=KEEP", "Invalid type \"KEEP\""},
      {"GATE TYPE=AND CLOCK=a", "The gate has no \"CLK\""},
      {"GATE TYPE=INV INPUT=a,a", "Argument \"IN\" takes one net"},
      {"GATE TYPE=INV INPUT=v[0:9999999]", "Invalid range \"v[0:9999999]\""},
      {"GATE TYPE=INV INPUT=n", "\"n\" is no net"},
      {"OP TYPE=AND INPUT=a", "Type \"AND\" is no operator"},
      {"OP TYPE=ADDER INPUT1=a OUTPUT=a", "Wrong inputs for the operator"},
      {"OP TYPE=EQUAL INPUT1=a INPUT2=a,a OUTPUT=a", "Wrong inputs for the operator"},
      {"OP TYPE=LUT INPUT=a,a,a,a,a,a OUTPUT=a", "Wrong inputs for the operator"},
      {"OP TYPE=ADDER INPUT1=a INPUT2=a OUTPUT=a,a", "The operator has 1 output bits, but 2 nets"},
      {"OP TYPE=EQUAL INPUT1=a INPUT2=a OUTPUT=a CIN=a", "The operator has no such carry"},
      {"RAM READ_ADDRESS=a", "Incomplete read port"},
      {"RAM READ_ADDRESS=a READ_DATA=a WRITE_ENABLE=a", "Incomplete write port"},
      {"USER_INSTANCE NAME=u VIEW=n", "A netlist can't contain itself"},
      {"USER_INSTANCE NAME=u VIEW=a", "\"a\" is nothing for argument \"VIEW\""},
      {"a.NET NAME=x", "\"a\" is no netlist"},
      {"GET_PORT NAME=x SYMBOL=y", "Cannot find port \"x\""},
      {"SET OBJECT=n POWER_UP=1", "\"n\" is no net"},
      {"NETLIST NAME=n", "The cell has a netlist \"n\" already"},
      {"NET NAME=x LINE=-1", "Line out of range"},
  };
  for (const auto& mistake : mistakes) {
    EXPECT_EQ(read(std::string("NET NAME=a\n") + mistake.line + "\nNET NAME=behind\n"), nullptr) << mistake.line;
    EXPECT_THAT(m_errors.texts,
                testing::ElementsAre(mistake.text + (" (file \"" + m_folder.path("map.txt") + "\", line 5)")))
        << mistake.line;
    forget();
  }
}

// Whatever stands in the file, the reader ends with a netlist or with a mistake.
TEST_F(CreatorTest, DamagedTextDoesNoHarm) {
  const std::string text = R"(PORT NAME=a DIRECTION=INPUT LEFT=3 RIGHT=0 LINE=10
PORT NAME=y DIRECTION=OUTPUT LEFT=0 RIGHT=3
NETBUS NAME=b LEFT=0 RIGHT=3
NET NAME=c POWER_UP="1"
GATE TYPE=DFF NAME=r INPUT=a[1] CLOCK=c OUTPUT=b[2]
OP TYPE=ADDER INPUT1=a INPUT2=b CIN=c OUTPUT=y
OP TYPE=NTO1MUX SEL=b[0:1] DATA=a OUTPUT=c
RAM READ_ADDRESS=b READ_DATA=y WRITE_ENABLE=c WRITE_ADDRESS=b WRITE_DATA=a
CELL NAME=k
NETLIST NAME=child
PORT NAME=x DIRECTION=INOUT
SET NETLIST=n
USER_INSTANCE NAME=u VIEW=child
CONNECT INSTANCE=u PORT=x NET=b[1]
ATTRIBUTE OBJECT=u NAME=noprune VALUE=1
SET OBJECT=r NAME=q
)";
  ASSERT_NE(read(text), nullptr) << testing::PrintToString(m_errors.texts);
  forget();
  const std::string letters = "ab1=,[]:\". -9\n/\t";
  std::mt19937 random(3);
  unsigned mistakes = 0;
  for (int round = 0; round < 2000; round++) {
    std::string damaged = text;
    for (unsigned left = 1 + random() % 3; left > 0; left--) {
      const size_t at = random() % damaged.size();
      switch (random() % 3) {
      case 0: damaged[at] = letters[random() % letters.size()]; break;
      case 1: damaged.erase(at, 1 + random() % 10); break;
      default: damaged.insert(at, damaged.substr(random() % damaged.size(), random() % 30));
      }
    }
    if (!read(damaged)) mistakes += m_errors.texts.size() == 1;
    forget();
  }
  EXPECT_GT(mistakes, 1000U);
}

class PROBE : public ZELK_KESTRIN_ELABORATOR {
public:
  Netlist* elaborate(BASEX_ELABORATE_INFO*) override { return nullptr; }
  Netlist* look_up(Library* library) {
    m_library = library;
    m_parameters = new Map(HASH_STRING);
    auto* width = new Param("W", "8", nullptr, 0);
    m_parameters->Insert(width->Name(), width);
    return read_netlist_from_file("m", {"W", "DEPTH"});
  }
};

TEST_F(CreatorTest, ElaborationAsksForUnitLibraryAndParameters) {
  EXPECT_EQ(PROBE().look_up(Libset::Global()->GetLibrary("work")), nullptr);
  tst_set_regtest_mode(true);
  tst_set_value("General Section", "ZELK_NETLIST_CREATOR_MAP_FILE", m_folder.path("map.txt").c_str());
  EXPECT_EQ(PROBE().look_up(Libset::Global()->GetLibrary("work")), nullptr);
  EXPECT_THAT(m_errors.texts, testing::ElementsAre("Cannot find file \"" + m_folder.path("map.txt") + "\""));
  Netlist* made = read("NETLIST NAME=w8 KEY=\"m_work(W,8)\"\n", "m_work(W,8)");
  ASSERT_NE(made, nullptr);
  EXPECT_STREQ(made->Name(), "w8");
  EXPECT_EQ(read("", "m_work(W,8)"), nullptr);
  forget();
  read("NETLIST NAME=w8 KEY=\"m_work(W,8)\"\n");
  forget();
  Netlist* found = PROBE().look_up(Libset::Global()->GetLibrary("work"));
  ASSERT_NE(found, nullptr);
  EXPECT_STREQ(found->Name(), "w8");
  tst_set_regtest_mode(false);
}

} // namespace
