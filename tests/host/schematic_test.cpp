// Schematics: what becomes a block, what becomes a wire, and that nothing lies on anything else.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "host/netlist_builder.h"
#include "output/schematic_layout.h"

namespace {

using testing::HasSubstr;

DESIGN design_of(NETLIST_BUILDER& builder) {
  DESIGN design;
  design.units.push_back(builder.take());
  return design;
}

/// A counter of four bits: an adder, a multiplexer of four single nodes, a register that leads back.
DESIGN counter() {
  NETLIST_BUILDER builder("counter");
  WIRE clk = builder.input("clk");
  WIRE load = builder.input("load");
  WIRES value = builder.inputs("value", 4);
  CDB_SGATE_OPERATOR* adder = builder.oper(CDB_OPERATOR_ADDER, false, "Add0");
  WIRES sum = builder.bits(adder, CDB_OPERATOR_OUTPUT, 4);
  WIRES count;
  for (unsigned i = 0; i < 4; i++) {
    WIRE next =
        builder.cell(new CDB_SGATE_MUX,
                     {{CDB_TERM_MUX_FIRST, sum[i]}, {CDB_TERM_MUX_SECOND, value[i]}, {CDB_TERM_MUX_SELECT, load}});
    count.push_back(builder.cell(new CDB_SGATE_DFF, {{CDB_TERM_DATA, next}, {CDB_TERM_CLOCK, clk}},
                                 "count[" + std::to_string(i) + "]"));
  }
  builder.feed(adder, CDB_OPERATOR_INPUT_1, count);
  builder.feed(adder, CDB_OPERATOR_INPUT_2, {WIRE::one(), WIRE::zero(), WIRE::zero(), WIRE::zero()});
  builder.outputs("q", count);
  return design_of(builder);
}

TEST(Schematic, VectorsAreOneBlockAndOneWire) {
  DESIGN design = counter();
  DESIGN_VIEW view(design);
  SCHEMATIC schematic(*view.get_modules().front());
  std::string titles;
  for (const SCHEMATIC_BLOCK& block : schematic.get_blocks())
    titles += (block.shape == SCHEMATIC_BLOCK::SHAPE_MUX        ? "mux"
               : block.shape == SCHEMATIC_BLOCK::SHAPE_REGISTER ? "register " + block.name
                                                                : block.title) +
              "; ";
  EXPECT_EQ(titles, "clk; load; value[3:0]; q[3:0]; +; mux; register count; ");
  std::string wires;
  for (const SCHEMATIC_WIRE& wire : schematic.get_wires())
    wires += std::to_string(schematic.source_of(wire).width) + "x" + std::to_string(wire.loads.size()) + " ";
  EXPECT_EQ(wires, "1x1 1x1 4x1 4x1 4x1 4x2 ") << "clk, load, value, sum, mux, count to adder and output";
  EXPECT_EQ(schematic.get_blocks()[4].inputs[1].fixed, "4'b0001");
}

/// The block's outline, with the pins' wires left out.
bool overlap(const PLACED_BLOCK& a, const PLACED_BLOCK& b) {
  return a.x < b.x + b.width && b.x < a.x + a.width && a.y < b.y + b.height && b.y < a.y + a.height;
}

/// Blocks lie apart and on the page; each input that a wire reads is reached by a line or bears a name.
void check_layout(const SCHEMATIC& schematic) {
  SCHEMATIC_LAYOUT layout(schematic);
  const auto& blocks = layout.get_blocks();
  for (size_t i = 0; i < blocks.size(); i++) {
    EXPECT_GE(blocks[i].x, 0);
    EXPECT_GE(blocks[i].y, 0);
    EXPECT_LE(blocks[i].x + blocks[i].width, layout.get_width());
    EXPECT_LE(blocks[i].y + blocks[i].height, layout.get_height());
    for (size_t k = 0; k < i; k++) EXPECT_FALSE(overlap(blocks[i], blocks[k])) << i << " and " << k;
  }
  auto is_told = [&](double x, double y) {
    auto ends_there = [&](const PLACED_LINE& line) { return line.to.x == x && line.to.y == y; };
    auto stands_there = [&](const PLACED_TEXT& text) { return text.is_name && text.at.x == x && text.at.y == y; };
    return std::any_of(layout.get_lines().begin(), layout.get_lines().end(), ends_there) ||
           std::any_of(layout.get_texts().begin(), layout.get_texts().end(), stands_there);
  };
  for (const SCHEMATIC_WIRE& wire : schematic.get_wires()) {
    const PLACED_BLOCK& source = blocks[wire.block];
    for (const SCHEMATIC_LOAD& load : wire.loads) {
      const PLACED_BLOCK& target = blocks[load.block];
      EXPECT_TRUE(is_told(target.x, target.y + target.inputs[load.pin])) << load.block << "." << load.pin;
    }
    bool leaves = std::any_of(layout.get_lines().begin(), layout.get_lines().end(), [&](const PLACED_LINE& line) {
      return line.from.x == source.x + source.width && line.from.y == source.y + source.outputs[wire.pin];
    });
    EXPECT_TRUE(leaves || is_told(source.x + source.width, source.y + source.outputs[wire.pin]));
  }
}

TEST(Schematic, NothingLiesOnAnythingElseAndEveryPinIsReached) {
  DESIGN design = counter();
  DESIGN_VIEW view(design);
  check_layout(SCHEMATIC(*view.get_modules().front()));
  for (unsigned seed = 1; seed <= 20; seed++) {
    std::mt19937 random(seed);
    NETLIST_BUILDER builder("random");
    WIRES wires{builder.input("clk")};
    std::vector<CDB_SGATE_NODE*> registers;
    for (int i = 0; i < 5; i++) wires.push_back(builder.input("i" + std::to_string(i)));
    for (int i = 0; i < 40; i++) {
      auto any = [&] { return wires[random() % wires.size()]; };
      if (random() % 4 == 0) {
        registers.push_back(new CDB_SGATE_DFF);
        wires.push_back(builder.cell(registers.back(), {{CDB_TERM_CLOCK, wires[0]}}, "r" + std::to_string(i)));
      } else {
        wires.push_back(
            builder.gate(static_cast<CDB_COMB_TYPE>(random() % 3), {any(), any(), any()}, random() % 2 != 0));
      }
    }
    for (CDB_SGATE_NODE* node : registers) connect(node->retrieve_iterm(CDB_TERM_DATA), wires[random() % wires.size()]);
    for (int i = 0; i < 4; i++)
      builder.output("o" + std::to_string(i), wires[wires.size() - 1 - static_cast<size_t>(i)]);
    DESIGN made = design_of(builder);
    DESIGN_VIEW made_view(made);
    check_layout(SCHEMATIC(*made_view.get_modules().front()));
  }
}

TEST(Schematic, TextsThatMeanSomethingToTheFormatsAreEscaped) {
  NETLIST_BUILDER builder("odd");
  builder.output("o|{\"", builder.gate(CDB_COMB_AND, {builder.input("a<b&\""), WIRE::one()}));
  DESIGN design = design_of(builder);
  DESIGN_VIEW view(design);
  EXPECT_THAT(write_svg(view), HasSubstr(">a&lt;b&amp;&quot;<"));
  EXPECT_THAT(write_dot(view), HasSubstr("label=\"o|{\\\"\""));
  EXPECT_THAT(write_dot(view), HasSubstr("<i1> =1'b1"));
}

} // namespace
