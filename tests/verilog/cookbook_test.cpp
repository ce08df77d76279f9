// Ways to write registers, latches and tristate buffers: what each becomes is written behind "//=" in the sources, and
// what is refused behind "//!" on the line of the message. The equivalence tests compare the same sources with their
// netlists.
#include <gtest/gtest.h>

#include <cctype>
#include <fstream>
#include <map>
#include <sstream>

#include "database/net.h"
#include "database/netlistchecker.h"
#include "util/message.h"
#include "verilog/elaboration.h"

namespace {

/// What a net stands for: its name in the source, a constant, or the logic that drives it, to a small depth.
std::string Describe(const Net* net, int depth = 3) {
  if (!net) return "open";
  const Instance* driver = net->Driver();
  const prim_type_enum type = net->DriverType();
  if (type == PRIM_GND) return "0";
  if (type == PRIM_PWR) return "1";
  if (type == PRIM_X) return "x";
  if (type == PRIM_Z) return "z";
  if (net->Linefile() && net->Name()) return net->Name();
  if (!driver || !depth) return "?";
  auto in1 = [&] { return Describe(driver->GetInput1(), depth - 1); };
  auto in2 = [&] { return Describe(driver->GetInput2(), depth - 1); };
  switch (type) {
  case PRIM_INV: return "!" + Describe(driver->GetInput(), depth - 1);
  case PRIM_BUF: return Describe(driver->GetInput(), depth);
  case PRIM_AND: return "(" + in1() + " & " + in2() + ")";
  case PRIM_OR: return "(" + in1() + " | " + in2() + ")";
  case PRIM_XOR: return "(" + in1() + " ^ " + in2() + ")";
  case PRIM_MUX: return "(" + Describe(driver->GetControl(), depth - 1) + " ? " + in2() + " : " + in1() + ")";
  case PRIM_DFFRS:
  case PRIM_DLATCHRS: return driver->Name();
  default: return "?";
  }
}

/// A pin that matters: connected, and not tied to its resting level.
std::string Pin(const char* name, const Net* net) {
  return net && !net->IsGnd() ? std::string(" ") + name + "=" + Describe(net) : "";
}

std::string Describe(const Instance* inst) {
  const char* initial = inst->GetAttValue(ATT_INITIAL_VALUE);
  const std::string marks =
      std::string(initial ? std::string(" init=") + initial : "") + (inst->IsAttOn(ATT_PRESERVE) ? " preserve" : "");
  switch (inst->Type()) {
  case PRIM_DFFRS:
    return "dff d=" + Describe(inst->GetInput()) + " clk=" + Describe(inst->GetClock()) + Pin("set", inst->GetSet()) +
           Pin("reset", inst->GetReset()) + Pin("z", inst->GetZ()) + Pin("aload", inst->GetALoad()) +
           (inst->GetALoad() && !inst->GetALoad()->IsGnd() ? Pin("adata", inst->GetAData()) : "") + marks;
  case PRIM_DLATCHRS:
    return "latch d=" + Describe(inst->GetInput()) + " gate=" + Describe(inst->GetClock()) +
           Pin("set", inst->GetSet()) + Pin("reset", inst->GetReset()) + marks;
  default: return "tri d=" + Describe(inst->GetInput()) + " en=" + Describe(inst->GetControl());
  }
}

/// A text with "[]" in place of "[3]".
std::string WithoutBits(const std::string& text) {
  std::string rest;
  for (size_t at = 0; at < text.size(); at++) {
    rest += text[at];
    const size_t end = text[at] == '[' ? text.find_first_not_of("0123456789", at + 1) : at;
    if (end != std::string::npos && end > at + 1 && text[end] == ']') at = end - 1;
  }
  return rest;
}

/// Instances whose descriptions differ in the numbers of bits only are told once, with the names of the first and the
/// number of them.
std::vector<std::string> Shape(const Netlist* netlist) {
  std::map<std::string, std::pair<std::string, unsigned>> groups; // without numbers, to text and count
  std::vector<std::string> order;
  for (Instance* inst : InstancesOf(netlist)) {
    const prim_type_enum type = inst->Type();
    if (!kestrin_is_storage_type(type) && type != PRIM_TRI) continue;
    const std::string text = Describe(inst);
    const std::string key = WithoutBits(text);
    auto [group, is_new] = groups.try_emplace(key, key, 0);
    group->second.second++;
    if (is_new) order.push_back(key);
  }
  std::sort(order.begin(), order.end());
  std::vector<std::string> lines;
  for (const std::string& key : order) lines.push_back(std::to_string(groups[key].second) + " " + groups[key].first);
  return lines;
}

struct Recipe {
  std::string name;
  std::string text;
  std::vector<std::string> shape;
  std::map<unsigned, std::string> refusals; // by line
};

std::vector<Recipe> ReadRecipes(const std::string& file) {
  std::ifstream in(std::string(ZELK_COOKBOOK) + "/" + file);
  std::vector<Recipe> recipes;
  std::string line;
  while (std::getline(in, line)) {
    if (line.rfind("module ", 0) == 0) recipes.push_back({line.substr(7, line.find(' ', 7) - 7), "", {}, {}});
    if (recipes.empty()) continue;
    Recipe& recipe = recipes.back();
    recipe.text += line + "\n";
    if (size_t at = line.find("//="); at != std::string::npos) recipe.shape.push_back(line.substr(at + 4));
    if (size_t at = line.find("//!"); at != std::string::npos)
      recipe.refusals[static_cast<unsigned>(std::count(recipe.text.begin(), recipe.text.end(), '\n'))] =
          line.substr(at + 4);
  }
  return recipes;
}

std::string Text(const Netlist* netlist) {
  std::ostringstream text;
  netlist->Dump(text);
  return text.str();
}

/// Polishing what is polished changes nothing.
void ExpectStable(Netlist* netlist, const std::string& name) {
  const std::string polished = Text(netlist);
  netlist->Polish();
  EXPECT_EQ(Text(netlist), polished) << name;
}

TEST(Cookbook, EachRecipeBecomesItsPrimitives) {
  for (const char* file : {"storage.v", "levels.v"}) {
    std::vector<Recipe> recipes = ReadRecipes(file);
    ASSERT_GT(recipes.size(), 5U) << file;
    for (const Recipe& recipe : recipes) {
      if (recipe.name.rfind("all_", 0) == 0) continue; // several recipes together
      Elaboration e;
      Netlist* netlist = e.Elaborate(recipe.text, VERI_2K, recipe.name.c_str());
      ASSERT_TRUE(netlist) << recipe.name;
      EXPECT_EQ(Shape(netlist), recipe.shape) << recipe.name;
      EXPECT_EQ(NetlistChecker(netlist).Report(), "") << recipe.name;
      ExpectStable(netlist, recipe.name);
    }
  }
}

TEST(Cookbook, WhatMatchesNoTemplateIsRefusedAtItsPlace) {
  const std::vector<Recipe> recipes = ReadRecipes("refused.v");
  ASSERT_GT(recipes.size(), 5U);
  for (const Recipe& recipe : recipes) {
    Elaboration e;
    e.Elaborate(recipe.text, VERI_2K, recipe.name.c_str());
    std::map<unsigned, std::string> refusals;
    for (const std::string& message : e.Messages()) {
      const size_t text = message.find(": ") + 2;
      // Ports that nothing is left to read are told of as well.
      if (message.compare(text, 5, "info:") == 0 || message.find(" port ") != std::string::npos) continue;
      std::string& at = refusals[static_cast<unsigned>(std::stoul(message))];
      at += (at.empty() ? "" : " / ") + message.substr(text);
    }
    EXPECT_EQ(refusals, recipe.refusals) << recipe.name;
  }
}

} // namespace
