// State that all classes of the Verilog front end share.
#include "verilog/verinode.h"

#include "containers/assertion.h"
#include "verilog/veri_message.h"
#include "verilog/verielabstate.h"

veri_dialect VeriNode::_veri_dialect = VERI_2K;
VeriElaborationState* VeriNode::_elab_state = nullptr;

namespace {

VeriElaborationState* running_state() {
  KESTRIN_ASSERT_TEXT(VeriNode::ElabState() != nullptr, "_elab_state");
  return VeriNode::ElabState();
}

} // namespace

Netlist* VeriNode::CurrentNetlist() { return running_state()->GetNetlist(); }
Net* VeriNode::Gnd() { return running_state()->Gnd(); }
Net* VeriNode::Pwr() { return running_state()->Pwr(); }
Net* VeriNode::X() { return running_state()->X(); }
Net* VeriNode::Z() { return running_state()->Z(); }

const char* VeriNode::GetMessageId(const char* format) { return veri_message_id(format); }
