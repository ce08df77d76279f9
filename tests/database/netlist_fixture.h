// A netlist per test, nets and ports by one call, and the messages that were raised.
#ifndef TESTS_DATABASE_NETLIST_FIXTURE_H
#define TESTS_DATABASE_NETLIST_FIXTURE_H

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "database/netlistchecker.h"
#include "database/primitives.h"
#include "database/views.h"
#include "util/message.h"
#include "util/services.h"

/// Flags by key; all others are 0.
class TestServices : public KernelServices {
public:
  int Flag(const char* key) override {
    auto flag = flags.find(key);
    return flag == flags.end() ? 0 : flag->second;
  }
  std::map<std::string, int> flags;
};

class NetlistTest : public ::testing::Test {
protected:
  void SetUp() override {
    Message::SetConsoleOutput(0);
    Message::ClearErrorCount();
    messages.clear();
    Message::RegisterCallBackMsg([](msg_type_t, const char* id, linefile_type, const char* format, va_list args) {
      char text[512];
      std::vsnprintf(text, sizeof text, format, args);
      messages.push_back((id ? std::string(id) + " " : std::string()) + text);
    });
    KernelServices::Set(&services);
    top = std::make_unique<Netlist>("top");
  }

  void TearDown() override {
    EXPECT_EQ(NetlistChecker(top.get()).Report(), "");
    top.reset();
    Message::RegisterCallBackMsg(nullptr);
    KernelServices::Set(nullptr);
    Database::FreeStaticMemory();
  }

  /// A net that the user declared has a location.
  Net* UserNet(const char* name) { return Added(new Net(name, 0x100001)); }
  Net* AutoNet() { return Added(new Net); }

  /// A port with a net of its own inside.
  Net* PortNet(const char* name, port_dir direction) {
    auto* port = new Port(name, direction);
    top->Add(port);
    Net* net = UserNet(name);
    net->Connect(port);
    return net;
  }

  Instance* Use(Netlist* view, const char* name = nullptr) {
    auto* inst = new Instance(name, view);
    top->Add(inst);
    return inst;
  }

  Net* Added(Net* net) {
    top->Add(net);
    return net;
  }

  std::unique_ptr<Netlist> top;
  TestServices services;
  static inline std::vector<std::string> messages;
};

/// A user's view with ports "i0", "i1" ... and "o0", "o1" ...
inline std::unique_ptr<Netlist> ViewWith(unsigned inputs, unsigned outputs) {
  auto view = std::make_unique<Netlist>("view");
  for (unsigned i = 0; i < inputs; i++) view->Add(new Port(("i" + std::to_string(i)).c_str(), DIR_INPUT));
  for (unsigned i = 0; i < outputs; i++) view->Add(new Port(("o" + std::to_string(i)).c_str(), DIR_OUTPUT));
  return view;
}

#endif
