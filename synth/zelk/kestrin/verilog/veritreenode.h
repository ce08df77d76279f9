// VeriTreeNode: the root of the parse tree: parent, location, attributes, messages; and the lists of nodes that the
// tree is made of. A node owns its children; nothing in the tree is shared but the expressions of attributes.
#ifndef KESTRIN_VERILOG_VERITREENODE_H
#define KESTRIN_VERILOG_VERITREENODE_H

#include <iosfwd>
#include <memory>
#include <utility>

#include "containers/views.h"
#include "verilog/verinode.h"

class DesignObj;
class Set;
class VeriExpression;
class VeriScope;
class VeriVisitor;

/// An owning list of nodes in source order.
template <class T> class VeriNodes : public ArrayOf<T> {
public:
  using ArrayOf<T>::ArrayOf;
  VeriNodes(const VeriNodes&) = delete;
  ~VeriNodes() override {
    for (T* node : *this) delete node;
  }
};

/// Class ids in the order of the class list.
enum VERI_CLASS_ID {
#define VERI_CLASS(name, base) ID_##name,
#include "verilog/veri_classes.def"
  ID_VERI_END
};

class VeriTreeNode : public VeriNode {
public:
  /// A location of 0 stands for the place where the scanner is.
  explicit VeriTreeNode(unsigned long linefile = 0);
  VeriTreeNode(const VeriTreeNode&) = delete;
  VeriTreeNode& operator=(const VeriTreeNode&) = delete;
  ~VeriTreeNode() override;

  virtual VERI_CLASS_ID GetClassId() const = 0;
  /// Calls the visitor's operation for the class of this node.
  virtual void Accept(VeriVisitor& visitor) = 0;
  /// The location of the leftmost token of the node.
  virtual unsigned long StartingLinefile() const { return Linefile(); }
  /// The scope that the node opens, or null.
  virtual VeriScope* GetScope() const { return nullptr; }
  /// The source text of the node, indented by `level`.
  virtual void PrettyPrint(std::ostream& out, unsigned level) const = 0;
  virtual unsigned IsExpr() const { return 0; }
  /// Whether two children can never both be executed in one pass through this node.
  virtual unsigned MutuallyExclusive(const VeriTreeNode* /*a*/, const VeriTreeNode* /*b*/) const { return 0; }
  /// Calls `visit` for each direct child, in source order; children may be null in the node but never in the call.
  virtual void VisitChildren(VeriVisitor& /*visitor*/) {}

  VeriTreeNode* Parent() const { return _parent; }
  /// A node gets its parent once.
  void SetParent(VeriTreeNode* parent);
  void ClearParent() { _parent = nullptr; }
  unsigned long Linefile() const { return _linefile; }
  void SetLinefile(unsigned long linefile) { _linefile = static_cast<unsigned>(linefile); }

  // Relations by parent links.
  /// The nearest common ancestor, which may be one of the two; null when there is none.
  static VeriTreeNode* Dominator(VeriTreeNode* a, VeriTreeNode* b);
  unsigned Dominates(const VeriTreeNode* child) const;
  unsigned Excludes(VeriTreeNode* other);

  // Attributes: name to VeriExpression (null for an attribute without value). The map owns both; names are strings of
  // Strings::save.
  const Map* Attributes() const { return _attributes; }
  /// Merges the map into the node's and takes it over; of equal names the new value wins with a warning.
  void AddAttributes(Map* attributes);
  /// The attributes, which are the caller's then.
  Map* TakeAttributes() { return std::exchange(_attributes, nullptr); }
  /// The node of the value; null when the attribute is absent or has no value.
  VeriExpression* GetAttribute(const char* name) const;
  unsigned HasAttribute(const char* name) const;
  bool HasAttributes() const { return _attributes != nullptr; }
  /// The attribute's constant value as a number, an absent value counts as 1; `absent` when there is none.
  int AttributeValue(const char* name, int absent) const;
  /// Binds the names in the values.
  void ResolveAttributes(VeriScope* scope) const;
  /// Puts constant attributes that the object supports on it.
  void ApplyAttributes(DesignObj* object) const;
  static void DeleteAttributes(Map* attributes);

  // Messages at the node's location. The format must be a string literal of the catalogue.
  [[gnu::format(printf, 2, 3)]] void Error(const char* format, ...) const;
  [[gnu::format(printf, 2, 3)]] void Warning(const char* format, ...) const;
  [[gnu::format(printf, 2, 3)]] void Info(const char* format, ...) const;

  // The stack of nodes under elaboration: who has no node of its own reports at the top one.
  static const VeriTreeNode* TopNode();
  static void PushNode(const VeriTreeNode* node);
  static void PopNode(const VeriTreeNode* node);

  // Files that the unit being resolved depends on, by the name pointers of LineFile; null outside a resolve.
  static void SetImplicitDependencies(Set* files) { _implicit_dependencies = files; }
  static const Set* ImplicitDependencies() { return _implicit_dependencies; }
  static Set* TakeImplicitDependencies();
  static void ClearImplicitDependencies();
  static void AddImplicitDependency(const char* file);
  // Files that elaboration reads.
  static void AddAdditionalDependency(const char* file);
  static const Set* AdditionalDependencies() { return _additional_dependencies; }
  static void ClearAdditionalDependencies();

  static void PrintLevel(std::ostream& out, unsigned level);
  /// Writes a name as an identifier of the source, escaped where it must be.
  static void PrintName(std::ostream& out, const char* name);
  static unsigned IsEscapedIdentifier(const char* name);

  // Tokens.
  /// The source text of a token; null for none.
  static const char* PrintToken(unsigned token);
  /// The words that stand for a class of tokens in a message, else the text.
  static const char* PrintErrorToken(unsigned token);
  static unsigned IsLegalToken(unsigned token);
  /// Rank in the hint of a syntax error; 9999 for those that have none.
  static unsigned TokenPriority(unsigned token);

  static void FreeStaticMemory();

protected:
  void PrintAttributes(std::ostream& out, unsigned level) const;
  /// What a statement or item begins with: indentation and attributes.
  void PrintFront(std::ostream& out, unsigned level) const {
    PrintLevel(out, level);
    PrintAttributes(out, level);
  }
  /// Makes this node the parent of the child; null is allowed. Returns the child.
  template <class T> T* Adopt(T* child) {
    if (child) child->SetParent(this);
    return child;
  }
  template <class T> VeriNodes<T>* Adopt(VeriNodes<T>* children) {
    if (children)
      for (T* child : *children)
        if (child) child->SetParent(this);
    return children;
  }

private:
  Map* _attributes = nullptr;
  VeriTreeNode* _parent = nullptr;
  unsigned _linefile;
  static Set* _implicit_dependencies;
  static Set* _additional_dependencies;
};

/// Implicit dependencies are collected anew while the object lives.
class VeriDependencyScope {
public:
  VeriDependencyScope() : _former(VeriTreeNode::TakeImplicitDependencies()) {
    VeriTreeNode::SetImplicitDependencies(new class Set);
  }
  VeriDependencyScope(const VeriDependencyScope&) = delete;
  VeriDependencyScope& operator=(const VeriDependencyScope&) = delete;
  ~VeriDependencyScope() {
    delete VeriTreeNode::TakeImplicitDependencies();
    VeriTreeNode::SetImplicitDependencies(_former);
  }
  /// What was collected so far; collecting ends.
  static std::unique_ptr<class Set> Take() {
    return std::unique_ptr<class Set>(VeriTreeNode::TakeImplicitDependencies());
  }

private:
  class Set* _former;
};

/// The node is on top of the stack while the object lives.
class VeriNodeScope {
public:
  explicit VeriNodeScope(const VeriTreeNode* node) : _node(node) { VeriTreeNode::PushNode(node); }
  VeriNodeScope(const VeriNodeScope&) = delete;
  VeriNodeScope& operator=(const VeriNodeScope&) = delete;
  ~VeriNodeScope() { VeriTreeNode::PopNode(_node); }

private:
  const VeriTreeNode* _node;
};

#endif
