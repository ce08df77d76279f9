// Writes, for each kind of gate netlist node, a module made of it as Verilog and as JSON, and beside these a Verilog
// module that says what the node means. The folder is the only argument.
#include <fstream>
#include <functional>
#include <iostream>

#include "host/netlist_builder.h"
#include "output/writer.h"

namespace {

using BUILD = std::function<void(NETLIST_BUILDER&)>;

struct KIND {
  const char* name;
  const char* meaning; // ports and body of the reference module
  BUILD build;
};

const WIRE zero = WIRE::zero();
const WIRE one = WIRE::one();

/// An operator over a and b (and c), in the widths of the case.
BUILD oper(CDB_OPERATOR_TYPE type, unsigned a, unsigned b, unsigned o, bool is_signed = false) {
  return [=](NETLIST_BUILDER& n) {
    WIRES left = n.inputs("a", a);
    WIRES right = n.inputs("b", b);
    auto* node = n.oper(type, is_signed, "op");
    n.feed(node, CDB_OPERATOR_INPUT_1, left);
    n.feed(node, CDB_OPERATOR_INPUT_2, right);
    n.outputs("o", n.bits(node, CDB_OPERATOR_OUTPUT, o));
  };
}

enum CARRY { CARRY_NONE, CARRY_ZERO, CARRY_ONE, CARRY_INPUT, CARRY_TOP_BIT };

WIRE carry_wire(NETLIST_BUILDER& n, CARRY carry, const WIRES& a) {
  switch (carry) {
  case CARRY_ZERO: return zero;
  case CARRY_ONE: return one;
  case CARRY_INPUT: return n.input("c");
  case CARRY_TOP_BIT: return a.back();
  case CARRY_NONE: break;
  }
  return WIRE::open();
}

BUILD adder(unsigned a, unsigned b, CARRY carry, bool has_carry_out) {
  return [=](NETLIST_BUILDER& n) {
    WIRES left = n.inputs("a", a);
    WIRES right = n.inputs("b", b);
    auto* node = n.oper(CDB_OPERATOR_ADDER, false, "op");
    n.feed(node, CDB_OPERATOR_CARRY_IN, {carry_wire(n, carry, left)});
    n.feed(node, CDB_OPERATOR_INPUT_1, left);
    n.feed(node, CDB_OPERATOR_INPUT_2, right);
    n.outputs("o", n.bits(node, CDB_OPERATOR_OUTPUT, std::max(a, b)));
    if (has_carry_out) n.output("co", node->retrieve_oterm(CDB_OPERATOR_CARRY_OUT));
  };
}

BUILD shift(CDB_OPERATOR_TYPE type, unsigned a, unsigned amount, CARRY carry) {
  return [=](NETLIST_BUILDER& n) {
    WIRES left = n.inputs("a", a);
    WIRES right = n.inputs("b", amount);
    auto* node = n.oper(type, false, "op");
    if (carry != CARRY_NONE) n.feed(node, CDB_OPERATOR_CARRY_IN, {carry_wire(n, carry, left)});
    n.feed(node, CDB_OPERATOR_INPUT_1, left);
    n.feed(node, CDB_OPERATOR_AMOUNT, right);
    n.outputs("o", n.bits(node, CDB_OPERATOR_OUTPUT, a));
  };
}

BUILD less_than(bool is_signed, CARRY carry) {
  return [=](NETLIST_BUILDER& n) {
    WIRES left = n.inputs("a", 4);
    WIRES right = n.inputs("b", 4);
    auto* node = n.oper(CDB_OPERATOR_LESS_THAN, is_signed, "op");
    n.feed(node, CDB_OPERATOR_CARRY_IN, {carry_wire(n, carry, left)});
    n.feed(node, CDB_OPERATOR_INPUT_1, left);
    n.feed(node, CDB_OPERATOR_INPUT_2, right);
    n.output("o", node->retrieve_oterm(CDB_OPERATOR_OUTPUT));
  };
}

BUILD gate(CDB_COMB_TYPE type, unsigned inputs, bool inverted) {
  return [=](NETLIST_BUILDER& n) { n.output("o", n.gate(type, n.inputs("a", inputs), inverted, "g")); };
}

/// A register of four bits with whichever controls are asked for.
BUILD registers(bool has_reset, bool has_set, bool has_load, bool inverted = false) {
  return [=](NETLIST_BUILDER& n) {
    WIRE clock = n.input("clk");
    WIRE reset = has_reset ? n.input("r") : zero;
    WIRE set = has_set ? n.input("s") : zero;
    WIRE load = has_load ? n.input("l") : zero;
    WIRES data = n.inputs("d", 4);
    WIRES async_data = has_load ? n.inputs("ad", 4) : WIRES(4, WIRE::open());
    WIRES q;
    for (unsigned i = 0; i < 4; i++) {
      WIRE bit = n.cell(new CDB_SGATE_DFF,
                        {{CDB_TERM_DATA, data[i]},
                         {CDB_TERM_CLOCK, clock},
                         {CDB_TERM_RESET, reset},
                         {CDB_TERM_SET, set},
                         {CDB_TERM_ASYNC_LOAD, load},
                         {CDB_TERM_ASYNC_DATA, async_data[i]}},
                        "q[" + std::to_string(i) + "]~reg0");
      bit.term->set_inverted(inverted);
      q.push_back(bit);
    }
    n.outputs("q", q);
  };
}

BUILD latch(bool has_reset, bool has_set) {
  return [=](NETLIST_BUILDER& n) {
    std::vector<std::pair<int, WIRE>> inputs = {{CDB_TERM_DATA, n.input("d")}, {CDB_TERM_LATCH_ENABLE, n.input("en")}};
    if (has_reset) inputs.emplace_back(CDB_TERM_RESET, n.input("r"));
    if (has_set) inputs.emplace_back(CDB_TERM_SET, n.input("s"));
    n.output("q", n.cell(new CDB_SGATE_LATCH, inputs, "q~latch"));
  };
}

void bidirectional_pad(NETLIST_BUILDER& n) {
  WIRE data = n.input("d");
  WIRE enable = n.input("en");
  CDB_SGATE_IO* pad = n.bidirectional("pad");
  WIRE driver = n.cell(new CDB_SGATE_IO_BUF, {{CDB_TERM_DATA, data}, {CDB_TERM_OUTPUT_ENABLE, enable}}, "drv");
  WIRE bus = n.bus({driver, pad->retrieve_oterm(CDB_TERM_OUTPUT)}, "pad~");
  connect(pad->retrieve_iterm(CDB_TERM_DATA), bus);
  n.output("o", n.gate(CDB_COMB_NOT, {bus}));
}

void shared_bus(NETLIST_BUILDER& n) {
  WIRES data = n.inputs("d", 2);
  WIRE enable = n.input("en");
  WIRE other = n.gate(CDB_COMB_NOT, {enable});
  WIRE first = n.cell(new CDB_SGATE_IO_BUF, {{CDB_TERM_DATA, data[0]}, {CDB_TERM_OUTPUT_ENABLE, enable}}, "first");
  WIRE second = n.cell(new CDB_SGATE_IO_BUF, {{CDB_TERM_DATA, data[1]}, {CDB_TERM_OUTPUT_ENABLE, other}}, "second");
  n.output("o", n.bus({first, second}, "bus"));
}

void state_machine(NETLIST_BUILDER& n) {
  WIRE clock = n.input("clk");
  WIRE reset = n.input("r");
  WIRE go = n.input("go");
  auto machine = std::make_unique<CDB_STATE_MACHINE>();
  machine->set_string_name("state");
  machine->set_clk(clock.term, false);
  machine->set_reset(reset.term, false);
  auto* idle = n.add(new CDB_SGATE_STATE, "state.IDLE");
  auto* busy = n.add(new CDB_SGATE_STATE, "state.BUSY");
  idle->set_machine(machine.get());
  busy->set_machine(machine.get());
  idle->set_is_reset_state(true);
  machine->set_reset_state(idle);
  machine->set_states({idle, busy});
  n.hierarchy().get_machines()->push_back(std::move(machine));
  WIRE is_idle = idle->retrieve_oterm(CDB_TERM_OUTPUT);
  WIRE is_busy = busy->retrieve_oterm(CDB_TERM_OUTPUT);
  WIRE not_go = n.gate(CDB_COMB_NOT, {go});
  connect(idle->retrieve_iterm(CDB_TERM_DATA), n.gate(CDB_COMB_OR, {is_busy, n.gate(CDB_COMB_AND, {is_idle, not_go})}));
  connect(busy->retrieve_iterm(CDB_TERM_DATA), n.gate(CDB_COMB_AND, {is_idle, go}));
  n.output("b", is_busy);
  n.output("i", is_idle);
}

void full_adder(NETLIST_BUILDER& n) {
  auto* node = n.add(new CDB_SGATE_COMPONENT("fadd", CDB_SGATE_COMPONENT::PROTOTYPE_KNOWN), "u$fadd");
  node->set_host_primitive(true);
  for (const char* port : {"a", "b", "cin"})
    connect(node->retrieve_known_port(port, CDB_IO_INPUT)->retrieve_iterm(), n.input(port));
  n.output("o", node->retrieve_known_port("o", CDB_IO_OUTPUT)->retrieve_oterm());
  n.output("co", node->retrieve_known_port("cout", CDB_IO_OUTPUT)->retrieve_oterm());
}

using RAM = CDB_SGATE_ASYNCHRONOUS_RAM;

/// A memory with a write and a read port; lanes of 0 make no byte enables.
BUILD ram(unsigned words_bits, unsigned width, unsigned lanes, bool has_second_port) {
  return [=](NETLIST_BUILDER& n) {
    RAM::PORT_SIZES a{words_bits, width, words_bits, width, lanes};
    RAM::PORT_SIZES b;
    if (has_second_port) b = a;
    auto* node = n.add(new RAM(a, b), "mem");
    node->set_depths(1U << words_bits, 1U << words_bits);
    connect(node->retrieve_iterm(CDB_TERM_RAM_WRITE_ENABLE_A), n.input("we"));
    n.feed(node, CDB_TERM_RAM_WRITE_ADDRESS_A, n.inputs("wa", words_bits));
    n.feed(node, CDB_TERM_DATA, n.inputs("d", width));
    if (lanes) n.feed(node, CDB_TERM_RAM_BYTE_ENABLE_A, n.inputs("be", lanes));
    n.feed(node, CDB_TERM_RAM_READ_ADDRESS_A, n.inputs("ra", words_bits));
    n.outputs("q", n.bits(node, CDB_TERM_OUTPUT, width));
    if (!has_second_port) return;
    connect(node->retrieve_iterm(CDB_TERM_RAM_WRITE_ENABLE_B), n.input("we2"));
    n.feed(node, CDB_TERM_RAM_WRITE_ADDRESS_B, n.inputs("wa2", words_bits));
    n.feed(node, CDB_TERM_RAM_DATA_B, n.inputs("d2", width));
    n.feed(node, CDB_TERM_RAM_READ_ADDRESS_B, n.inputs("ra2", words_bits));
    n.outputs("q2", n.bits(node, CDB_TERM_RAM_OUTPUT_B, width));
  };
}

/// Write data of two bits, read data of four.
void ram_of_two_widths(NETLIST_BUILDER& n) {
  auto* node = n.add(new RAM({2, 4, 3, 2, 0}, {}), "mem");
  node->set_depths(4, 8);
  connect(node->retrieve_iterm(CDB_TERM_RAM_WRITE_ENABLE_A), n.input("we"));
  n.feed(node, CDB_TERM_RAM_WRITE_ADDRESS_A, n.inputs("wa", 3));
  n.feed(node, CDB_TERM_DATA, n.inputs("d", 2));
  n.feed(node, CDB_TERM_RAM_READ_ADDRESS_A, n.inputs("ra", 2));
  n.outputs("q", n.bits(node, CDB_TERM_OUTPUT, 4));
}

const KIND kinds[] = {
    {"ram",
     "(input we, input [2:0] wa, ra, input [3:0] d, output [3:0] q);"
     "reg [3:0] m [0:7]; always @* if (we) m[wa] = d; assign q = m[ra];",
     ram(3, 4, 0, false)},
    {"ram_lanes",
     "(input we, input [1:0] wa, ra, be, input [3:0] d, output [3:0] q);"
     "reg [3:0] m [0:3]; always @* if (we) begin if (be[0]) m[wa][1:0] = d[1:0]; if (be[1]) m[wa][3:2] = d[3:2]; end "
     "assign q = m[ra];",
     ram(2, 4, 2, false)},
    {"ram_dual",
     "(input we, input [1:0] wa, ra, wa2, ra2, input we2, input [2:0] d, d2, output [2:0] q, q2);"
     "reg [2:0] m [0:3]; always @* if (we) m[wa] = d; always @* if (we2) m[wa2] = d2;"
     "assign q = m[ra]; assign q2 = m[ra2];",
     ram(2, 3, 0, true)},
    {"ram_widths",
     "(input we, input [2:0] wa, input [1:0] ra, d, output [3:0] q);"
     "reg [1:0] m [0:7]; always @* if (we) m[wa] = d; assign q = {m[{ra, 1'b1}], m[{ra, 1'b0}]};",
     ram_of_two_widths},

    {"buffer_wire", "(input a, output o); assign o = a;",
     [](NETLIST_BUILDER& n) {
       n.output("o", n.cell(new CDB_SGATE_BUFFER(CDB_BUFFER_WIRE), {{18, n.input("a")}}));
     }},
    {"buffer_keep", "(input a, output o); assign o = a;",
     [](NETLIST_BUILDER& n) {
       n.output("o", n.cell(new CDB_SGATE_BUFFER(CDB_BUFFER_KEEP), {{18, n.input("a")}}, "k"));
     }},
    {"buffer_constant", "(input a, output o); assign o = 1'b0;",
     [](NETLIST_BUILDER& n) {
       n.input("a");
       n.output("o", n.cell(new CDB_SGATE_BUFFER(CDB_BUFFER_CONSTANT_SOURCE), {{18, zero}}));
     }},
    {"and1", "(input [0:0] a, output o); assign o = a;", gate(CDB_COMB_AND, 1, false)},
    {"and2", "(input [1:0] a, output o); assign o = &a;", gate(CDB_COMB_AND, 2, false)},
    {"nand3", "(input [2:0] a, output o); assign o = ~&a;", gate(CDB_COMB_AND, 3, true)},
    {"or2", "(input [1:0] a, output o); assign o = |a;", gate(CDB_COMB_OR, 2, false)},
    {"nor4", "(input [3:0] a, output o); assign o = ~|a;", gate(CDB_COMB_OR, 4, true)},
    {"xor2", "(input [1:0] a, output o); assign o = ^a;", gate(CDB_COMB_XOR, 2, false)},
    {"xnor5", "(input [4:0] a, output o); assign o = ~^a;", gate(CDB_COMB_XOR, 5, true)},
    {"not", "(input [0:0] a, output o); assign o = ~a;", gate(CDB_COMB_NOT, 1, false)},
    {"not_inverted", "(input [0:0] a, output o); assign o = a;", gate(CDB_COMB_NOT, 1, true)},
    {"buf", "(input [0:0] a, output o); assign o = a;", gate(CDB_COMB_BUF, 1, false)},
    {"mux", "(input a, b, s, output o); assign o = s ? b : a;",
     [](NETLIST_BUILDER& n) {
       WIRE a = n.input("a"), b = n.input("b"), s = n.input("s");
       n.output("o", n.cell(new CDB_SGATE_MUX,
                            {{CDB_TERM_MUX_FIRST, a}, {CDB_TERM_MUX_SECOND, b}, {CDB_TERM_MUX_SELECT, s}}));
     }},
    {"gate_vector", "(input [3:0] a, b, output [3:0] o); assign o = ~(a & b);",
     [](NETLIST_BUILDER& n) {
       WIRES a = n.inputs("a", 4), b = n.inputs("b", 4), o;
       for (unsigned i = 0; i < 4; i++)
         o.push_back(n.gate(CDB_COMB_AND, {a[i], b[i]}, true, "w[" + std::to_string(i) + "]"));
       n.outputs("o", o);
     }},
    {"gate_vector_wide", "(input [3:0] a, b, c, output [3:0] o); assign o = a | b | c;",
     [](NETLIST_BUILDER& n) {
       WIRES a = n.inputs("a", 4), b = n.inputs("b", 4), c = n.inputs("c", 4), o;
       for (unsigned i = 0; i < 4; i++)
         o.push_back(n.gate(CDB_COMB_OR, {a[i], b[i], c[i]}, false, "w[" + std::to_string(i) + "]"));
       n.outputs("o", o);
     }},
    {"dff", "(input clk, input [3:0] d, output reg [3:0] q); always @(posedge clk) q <= d;",
     registers(false, false, false)},
    {"dff_inverted", "(input clk, input [3:0] d, output reg [3:0] q); always @(posedge clk) q <= ~d;",
     registers(false, false, false, true)},
    {"dff_reset",
     "(input clk, r, input [3:0] d, output reg [3:0] q); always @(posedge clk or posedge r) if (r) q <= 0; else q <= "
     "d;",
     registers(true, false, false)},
    {"dff_set",
     "(input clk, s, input [3:0] d, output reg [3:0] q); always @(posedge clk or posedge s) if (s) q <= 15; else q <= "
     "d;",
     registers(false, true, false)},
    {"dff_set_inverted",
     "(input clk, s, input [3:0] d, output reg [3:0] q); always @(posedge clk or posedge s) if (s) q <= 0; else q <= "
     "~d;",
     registers(false, true, false, true)},
    {"dff_reset_set",
     "(input clk, r, s, input [3:0] d, output reg [3:0] q);"
     "always @(posedge clk or posedge r or posedge s) if (r) q <= 0; else if (s) q <= 15; else q <= d;",
     registers(true, true, false)},
    {"dff_load",
     "(input clk, l, input [3:0] d, ad, output reg [3:0] q); always @(posedge clk or posedge l) if (l) q <= ad; else q "
     "<= d;",
     registers(false, false, true)},
    {"dff_reset_load",
     "(input clk, r, l, input [3:0] d, ad, output reg [3:0] q);"
     "always @(posedge clk or posedge r or posedge l) if (r) q <= 0; else if (l) q <= ad; else q <= d;",
     registers(true, false, true)},
    {"latch", "(input d, en, output reg q); always @* if (en) q = d;", latch(false, false)},
    {"latch_reset", "(input d, en, r, output reg q); always @* if (r) q = 0; else if (en) q = d;", latch(true, false)},
    {"latch_set", "(input d, en, s, output reg q); always @* if (s) q = 1; else if (en) q = d;", latch(false, true)},
    {"latch_both", "(input d, en, r, s, output reg q); always @* if (r) q = 0; else if (s) q = 1; else if (en) q = d;",
     latch(true, true)},
    {"bidirectional_pad", "(input d, en, inout pad, output o); assign pad = en ? d : 1'bz; assign o = ~pad;",
     bidirectional_pad},
    {"shared_bus", "(input [1:0] d, input en, output o); assign o = en ? d[0] : d[1];", shared_bus},
    {"state_machine",
     "(input clk, r, go, output reg b, i); always @(posedge clk or posedge r) if (r) begin b <= 0; i <= 1; end "
     "else begin b <= i & go; i <= b | (i & ~go); end",
     state_machine},
    {"full_adder", "(input a, b, cin, output o, co); assign {co, o} = a + b + cin;", full_adder},
    {"add", "(input [3:0] a, b, output [3:0] o); assign o = a + b;", adder(4, 4, CARRY_ZERO, false)},
    {"add_uneven", "(input [2:0] a, input [4:0] b, output [4:0] o); assign o = a + b;", adder(3, 5, CARRY_ZERO, false)},
    {"add_one", "(input [3:0] a, b, output [3:0] o, output co); assign {co, o} = a + b + 1'b1;",
     adder(4, 4, CARRY_ONE, true)},
    {"add_carry", "(input [3:0] a, b, input c, output [3:0] o, output co); assign {co, o} = a + b + c;",
     adder(4, 4, CARRY_INPUT, true)},
    {"add_carry_out", "(input [3:0] a, input [1:0] b, output [3:0] o, output co); assign {co, o} = a + b;",
     adder(4, 2, CARRY_ZERO, true)},
    {"multiply", "(input [3:0] a, input [2:0] b, output [6:0] o); assign o = a * b;",
     oper(CDB_OPERATOR_MULTIPLIER, 4, 3, 7)},
    {"multiply_signed", "(input signed [3:0] a, input signed [2:0] b, output [6:0] o); assign o = a * b;",
     oper(CDB_OPERATOR_MULTIPLIER, 4, 3, 7, true)},
    {"multiply_narrow", "(input [3:0] a, b, output [2:0] o); assign o = a * b;",
     oper(CDB_OPERATOR_MULTIPLIER, 4, 4, 3)},
    {"divide", "(input [3:0] a, b, output [3:0] o); assign o = b ? a / b : 4'bx;", oper(CDB_OPERATOR_DIVIDER, 4, 4, 4)},
    {"divide_signed", "(input signed [3:0] a, b, output signed [3:0] o); assign o = a / b;",
     oper(CDB_OPERATOR_DIVIDER, 4, 4, 4, true)},
    {"modulo", "(input [3:0] a, b, output [3:0] o); assign o = a % b;", oper(CDB_OPERATOR_MODULO, 4, 4, 4)},
    {"modulo_signed", "(input signed [3:0] a, b, output signed [3:0] o); assign o = a % b;",
     oper(CDB_OPERATOR_MODULO, 4, 4, 4, true)},
    {"shift_left", "(input [4:0] a, input [3:0] b, output [4:0] o); assign o = a << b;",
     shift(CDB_OPERATOR_SHIFT_LEFT, 5, 4, CARRY_ZERO)},
    {"shift_left_one", "(input [4:0] a, input [3:0] b, output [4:0] o); assign o = ~(~a << b);",
     shift(CDB_OPERATOR_SHIFT_LEFT, 5, 4, CARRY_ONE)},
    {"shift_right", "(input [4:0] a, input [3:0] b, output [4:0] o); assign o = a >> b;",
     shift(CDB_OPERATOR_SHIFT_RIGHT, 5, 4, CARRY_ZERO)},
    {"shift_right_arithmetic", "(input signed [4:0] a, input [3:0] b, output [4:0] o); assign o = a >>> b;",
     shift(CDB_OPERATOR_SHIFT_RIGHT, 5, 4, CARRY_TOP_BIT)},
    {"shift_right_fill", "(input [4:0] a, input [3:0] b, input c, output [4:0] o); assign o = c ? ~(~a >> b) : a >> b;",
     shift(CDB_OPERATOR_SHIFT_RIGHT, 5, 4, CARRY_INPUT)},
    {"rotate_left", "(input [4:0] a, input [3:0] b, output [4:0] o); assign o = {a, a} >> (5 - b % 5);",
     shift(CDB_OPERATOR_ROTATE_LEFT, 5, 4, CARRY_NONE)},
    {"rotate_right", "(input [4:0] a, input [3:0] b, output [4:0] o); assign o = {a, a} >> (b % 5);",
     shift(CDB_OPERATOR_ROTATE_RIGHT, 5, 4, CARRY_NONE)},
    {"less", "(input [3:0] a, b, output o); assign o = a < b;", less_than(false, CARRY_ZERO)},
    {"less_or_equal", "(input [3:0] a, b, output o); assign o = a <= b;", less_than(false, CARRY_ONE)},
    {"less_signed", "(input signed [3:0] a, b, output o); assign o = a < b;", less_than(true, CARRY_ZERO)},
    {"less_carry", "(input signed [3:0] a, b, input c, output o); assign o = c ? a <= b : a < b;",
     less_than(true, CARRY_INPUT)},
    {"equal", "(input [3:0] a, b, output [0:0] o); assign o = a == b;", oper(CDB_OPERATOR_EQUAL, 4, 4, 1)},
    {"n_to_1_mux", "(input [1:0] a, input [3:0] b, output [0:0] o); assign o = b[a];",
     oper(CDB_OPERATOR_N_TO_1_MUX, 2, 4, 1)},
    {"selector", "(input [2:0] a, b, output [0:0] o); assign o = |(a & b);", oper(CDB_OPERATOR_SELECTOR, 3, 3, 1)},
    {"decoder", "(input [1:0] a, output [3:0] o); assign o = {a == 3, a == 2, a == 1, a == 0};",
     [](NETLIST_BUILDER& n) {
       auto* node = n.oper(CDB_OPERATOR_DECODER, false, "op");
       n.feed(node, CDB_OPERATOR_INPUT_1, n.inputs("a", 2));
       n.outputs("o", n.bits(node, CDB_OPERATOR_OUTPUT, 4));
     }},
    {"constants_in_vectors", "(input [1:0] a, output [5:0] o); assign o = {2'b10, a, 1'b0, a[0]};",
     [](NETLIST_BUILDER& n) {
       WIRES a = n.inputs("a", 2);
       n.outputs("o", {a[0], zero, a[0], a[1], zero, one});
     }},
};

void write_file(const std::string& path, const std::string& text) { std::ofstream(path) << text; }

} // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  for (const KIND& kind : kinds) {
    DESIGN design;
    NETLIST_BUILDER builder("gate");
    kind.build(builder);
    design.units.push_back(builder.take());
    DESIGN_VIEW view(design);
    std::string base = std::string(argv[1]) + "/" + kind.name;
    write_file(base + ".gate.v", write_verilog(view));
    write_file(base + ".gate.json", write_json(view));
    write_file(base + ".gold.v", "module gold" + std::string(kind.meaning) + "\nendmodule\n");
    std::cout << kind.name << '\n';
  }
  return 0;
}
