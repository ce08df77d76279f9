// A kernel netlist built by hand, converted, and looked at from the host's side.
#ifndef TESTS_ADAPTER_SGATE_FIXTURE_H
#define TESTS_ADAPTER_SGATE_FIXTURE_H

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "cdb_sgate.h"
#include "database/views.h"
#include "flow/info_objects.h"
#include "hdb_action_pt.h"
#include "host/netlist_builder.h"
#include "util/linefile.h"
#include "zelk_sgate.h"
#include "zelk_utility.h"

class SgateTest : public testing::Test {
protected:
  SgateTest() {
    zelk_connect_kernel();
    MSG_INTERNAL_ERROR::reset_count();
    m_library = new Library("work");
    Libset::Global()->Add(m_library);
    auto* cell = new Cell("top");
    m_library->Add(cell);
    netlist = new Netlist("top", place(1));
    cell->Add(netlist);
    netlist->SetSourceLang(DB_SOURCE_LANG_VERILOG);
    m_unit = new TEST_MODULE("top");
    m_project.add_design_unit(m_unit);
  }
  ~SgateTest() override {
    EXPECT_EQ(MSG_INTERNAL_ERROR::get_count(), 0U);
    Database::FreeStaticMemory();
  }

  static unsigned long place(unsigned line) { return LineFile::EncodeLineFile("t.v", line); }

  // Building. A user's net, a port on a user's net of its name, and a vector of ports, bit 0 first.
  Net* net(const char* name) {
    auto* made = new Net(name, place(2));
    netlist->Add(made);
    return made;
  }
  Net* port(const std::string& name, port_dir direction) {
    auto* made = new Port(name.c_str(), direction, place(2));
    netlist->Add(made);
    Net* inside = net(name.c_str());
    inside->Connect(made);
    return inside;
  }
  Net* in(const std::string& name) { return port(name, DIR_INPUT); }
  Net* out(const std::string& name) { return port(name, DIR_OUTPUT); }
  /// An output port that reads a net.
  void out(const char* name, Net* source) {
    auto* made = new Port(name, DIR_OUTPUT, place(2));
    netlist->Add(made);
    source->Connect(made);
  }
  std::unique_ptr<ArrayOf<Net>> bus(const std::string& name, unsigned width, port_dir direction) {
    auto bits = std::make_unique<ArrayOf<Net>>();
    for (unsigned i = 0; i < width; i++) bits->InsertLast(port(name + "[" + std::to_string(i) + "]", direction));
    return bits;
  }
  /// The instance that drives a net, under a user's name.
  Instance* name_driver(const Net* output, const char* name) {
    Instance* driver = output->Driver();
    driver->SetName(name);
    driver->SetLinefile(place(3));
    return driver;
  }

  // Converting.
  bool convert() {
    m_info = std::make_unique<FLOW_ELABORATE_INFO>(m_project, m_unit, std::vector<UNIT_PARAMETER>(), "",
                                                   FLOW_ELABORATE_INFO::PLACE_TOP, FLOW_ELABORATE_INFO::MODE_FULL);
    bool is_good = ZELK_SGATE(m_info.get(), netlist).convert_netlist();
    messages = m_info->take_messages();
    result = m_info->take_result();
    return is_good;
  }

  // Looking.
  std::vector<CDB_SGATE_NODE*> nodes(CDB_SGATE_ENUM type) const {
    std::vector<CDB_SGATE_NODE*> found;
    for (const auto& node : result->get_netlist()->get_nodes())
      if (node->get_sgate_type() == type) found.push_back(node.get());
    return found;
  }
  template <class NODE> NODE* only(CDB_SGATE_ENUM type) const {
    std::vector<CDB_SGATE_NODE*> found = nodes(type);
    EXPECT_EQ(found.size(), 1U);
    return found.size() == 1 ? static_cast<NODE*>(found[0]) : nullptr;
  }
  CDB_SGATE_NODE* named(const std::string& name) const {
    for (const auto& node : result->get_netlist()->get_nodes())
      if (node->get_string_name() && name == node->get_string_name()) return node.get();
    return nullptr;
  }
  /// What an input term reads: "0", "1", "open", or the name of the node that drives it.
  static std::string source(const CDB_SGATE_ITERM* term) {
    if (!term) return "no term";
    if (term->is_gnd()) return "0";
    if (term->is_vcc()) return "1";
    if (!term->get_source()) return "open";
    const char* name = term->get_source()->get_node()->get_string_name();
    return name ? name : "";
  }
  static std::string source(const CDB_SGATE_NODE* node, int type, unsigned index = 0) {
    return node ? source(node->find_iterm(type, index)) : "no node";
  }
  std::string output_source(const std::string& port_name) const { return source(named(port_name), CDB_TERM_DATA); }
  std::vector<std::string> assignments(int variable) const {
    std::vector<std::string> found;
    for (const NAMED_ASSIGNMENT& assignment : result->assignments)
      if (assignment.variable == variable) found.push_back(assignment.node + "=" + assignment.value);
    return found;
  }

  Netlist* netlist = nullptr;
  std::unique_ptr<UNIT_RESULT> result;
  std::vector<std::unique_ptr<MSG_BASE>> messages;

private:
  HDB_ACTION_PT_INSTANCE m_project;
  TEST_MODULE* m_unit = nullptr;
  Library* m_library = nullptr;
  std::unique_ptr<FLOW_ELABORATE_INFO> m_info;
};

#endif
