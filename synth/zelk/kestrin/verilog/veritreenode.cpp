// What all nodes of the tree have: relations, attributes, messages, and the lists that a run of the front end keeps of
// nodes and files.
#include "verilog/veritreenode.h"

#include <cstdarg>
#include <string>
#include <vector>

#include "database/att.h"
#include "database/designobj.h"
#include "util/message.h"
#include "util/strings.h"
#include "verilog/veri_lex.h"
#include "verilog/veri_message.h"
#include "verilog/veriexpression.h"
#include "verilog/verivalue.h"

VeriTreeNode::VeriTreeNode(unsigned long linefile)
    : _linefile(static_cast<unsigned>(linefile ? linefile : VeriLex::GetLineFile())) {}

VeriTreeNode::~VeriTreeNode() { DeleteAttributes(_attributes); }

// Relations.

void VeriTreeNode::SetParent(VeriTreeNode* parent) {
  KESTRIN_ASSERT(!_parent);
  _parent = parent;
}

namespace {

unsigned depth_of(const VeriTreeNode* node) {
  unsigned depth = 0;
  for (; node; node = node->Parent()) depth++;
  return depth;
}

/// The ancestor that stands directly below another one; the node itself must be below it.
VeriTreeNode* child_towards(const VeriTreeNode* ancestor, VeriTreeNode* node) {
  while (node->Parent() != ancestor) node = node->Parent();
  return node;
}

} // namespace

VeriTreeNode* VeriTreeNode::Dominator(VeriTreeNode* a, VeriTreeNode* b) {
  unsigned depth_a = depth_of(a);
  unsigned depth_b = depth_of(b);
  for (; depth_a > depth_b; depth_a--) a = a->Parent();
  for (; depth_b > depth_a; depth_b--) b = b->Parent();
  for (; a != b; b = b->Parent()) a = a->Parent();
  return a;
}

unsigned VeriTreeNode::Dominates(const VeriTreeNode* child) const {
  while (child && child != this) child = child->Parent();
  return child != nullptr;
}

unsigned VeriTreeNode::Excludes(VeriTreeNode* other) {
  VeriTreeNode* dominator = Dominator(this, other);
  if (!dominator || dominator == this || dominator == other) return 0;
  return dominator->MutuallyExclusive(child_towards(dominator, this), child_towards(dominator, other));
}

// Attributes.

void VeriTreeNode::AddAttributes(Map* attributes) {
  if (!attributes) return;
  if (!_attributes) {
    _attributes = attributes;
    return;
  }
  for (auto [name, value] : Entries<char*, VeriExpression*>(attributes)) {
    MapItem* former = _attributes->GetItem(name);
    if (!former) {
      _attributes->Insert(name, value);
      continue;
    }
    Warning("overriding existing value for attribute %s", name);
    delete FromWord<VeriExpression*>(former->Value());
    former->SetValue(value);
    Strings::free_string(name);
  }
  delete attributes;
}

void VeriTreeNode::DeleteAttributes(Map* attributes) {
  if (!attributes) return;
  std::vector<char*> names;
  for (auto [name, value] : Entries<char*, VeriExpression*>(attributes)) {
    delete value;
    names.push_back(name);
  }
  delete attributes;
  for (char* name : names) Strings::free_string(name);
}

VeriExpression* VeriTreeNode::GetAttribute(const char* name) const {
  return _attributes ? FromWord<VeriExpression*>(_attributes->GetValue(name)) : nullptr;
}

unsigned VeriTreeNode::HasAttribute(const char* name) const { return _attributes && _attributes->GetItem(name); }

int VeriTreeNode::AttributeValue(const char* name, int absent) const {
  if (!HasAttribute(name)) return absent;
  VeriExpression* expression = GetAttribute(name);
  if (!expression) return 1;
  OwnedValue value = expression->Evaluate(nullptr);
  if (!value || !value->IsConstant()) return absent;
  return value->IsString() ? Strings::atoi(value->String().c_str()) : value->Integer(this);
}

namespace {
/// What belongs to a register waits on the net of the variable until one is inferred.
bool IsForRegister(const DesignObj* object, const Att* att) {
  return object->ObjectType() == DB_NET && att->Type() != ATT_GENERIC &&
         kestrin_att_supported(ATT_ON_REGISTER, att->Type());
}
} // namespace

void VeriTreeNode::ApplyAttributes(DesignObj* object) const {
  for (auto [name, expression] : Entries<const char*, VeriExpression*>(_attributes)) {
    std::string text = "1"; // an attribute without value is on, IEEE 1364-2005 clause 3.8
    if (expression) {
      OwnedValue value = expression->Evaluate(nullptr);
      if (!value || !value->IsConstant()) continue;
      int64_t number = 0;
      text = !value->IsString() && value->ToInt64(&number) ? std::to_string(number) : value->String();
    }
    auto att = std::make_unique<Att>(name, text.c_str());
    if (object->Supports(att.get()) || IsForRegister(object, att.get())) object->AddAtt(att.release());
  }
}

// Messages.

namespace {

void raise(msg_type_t type, const VeriTreeNode* node, const char* format, va_list args) {
  Message::MsgVaList(type, VeriNode::GetMessageId(format), node->Linefile(), format, args);
}

} // namespace

void VeriTreeNode::Error(const char* format, ...) const {
  va_list args;
  va_start(args, format);
  raise(MSG_ERROR, this, format, args);
  va_end(args);
}

void VeriTreeNode::Warning(const char* format, ...) const {
  va_list args;
  va_start(args, format);
  raise(MSG_WARNING, this, format, args);
  va_end(args);
}

void VeriTreeNode::Info(const char* format, ...) const {
  va_list args;
  va_start(args, format);
  raise(MSG_INFO, this, format, args);
  va_end(args);
}

// The stack of nodes.

namespace {

std::vector<const VeriTreeNode*>& node_stack() {
  static std::vector<const VeriTreeNode*> stack;
  return stack;
}

} // namespace

const VeriTreeNode* VeriTreeNode::TopNode() { return node_stack().empty() ? nullptr : node_stack().back(); }

void VeriTreeNode::PushNode(const VeriTreeNode* node) { node_stack().push_back(node); }

void VeriTreeNode::PopNode(const VeriTreeNode* node) {
  KESTRIN_ASSERT(TopNode() == node);
  node_stack().pop_back();
  if (node_stack().empty()) std::vector<const VeriTreeNode*>().swap(node_stack());
}

// Dependencies. Names are compared by the pointers that LineFile keeps.

Set* VeriTreeNode::_implicit_dependencies = nullptr;
Set* VeriTreeNode::_additional_dependencies = nullptr;

Set* VeriTreeNode::TakeImplicitDependencies() {
  Set* files = _implicit_dependencies;
  _implicit_dependencies = nullptr;
  return files;
}

void VeriTreeNode::ClearImplicitDependencies() {
  if (_implicit_dependencies) _implicit_dependencies->Reset();
}

void VeriTreeNode::AddImplicitDependency(const char* file) {
  if (_implicit_dependencies && file) _implicit_dependencies->Insert(file);
}

void VeriTreeNode::AddAdditionalDependency(const char* file) {
  if (!file) return;
  if (!_additional_dependencies) _additional_dependencies = new Set(HASH_STRING);
  if (!_additional_dependencies->Contains(file)) _additional_dependencies->Insert(Strings::save(file));
}

void VeriTreeNode::ClearAdditionalDependencies() {
  std::vector<char*> files;
  for (char* file : KeysOf<char*>(_additional_dependencies)) files.push_back(file);
  delete _additional_dependencies;
  _additional_dependencies = nullptr;
  for (char* file : files) Strings::free_string(file);
}

void VeriTreeNode::FreeStaticMemory() {
  delete TakeImplicitDependencies();
  ClearAdditionalDependencies();
  veri_free_message_table();
}
