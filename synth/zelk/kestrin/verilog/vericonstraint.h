// VeriConstraint and its family: the run-time form of a declared type: width, direction, packing, sign, element types.
// A constraint creates values and nets of its type, checks values and answers for index arithmetic. It owns the
// constraints that it is made of.
#ifndef KESTRIN_VERILOG_VERICONSTRAINT_H
#define KESTRIN_VERILOG_VERICONSTRAINT_H

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "database/port.h"
#include "verilog/verinode.h"
#include "verilog/verivalue.h"

class PortBus;
class VeriArrayConstraint;
class VeriCompositeArrayConstraint;
class VeriCompositeConstraint;
class VeriConstraint;
class VeriInterfaceConstraint;
class VeriLogicConstraint;
class VeriModule;
class VeriRangeConstraint;
class VeriScope;
class VeriUniformArrayConstraint;

using OwnedConstraint = std::unique_ptr<VeriConstraint>;

/// How the indices of a range run from left to right.
enum veri_range_dir { VERI_RANGE_UP, VERI_RANGE_DOWN };

class VeriConstraint : public VeriNode {
public:
  ~VeriConstraint() override = default;
  VeriConstraint& operator=(const VeriConstraint&) = delete;

  virtual OwnedConstraint Copy() const = 0;

  // The class of the constraint: this, or null.
  virtual const VeriLogicConstraint* AsLogic() const { return nullptr; }
  virtual const VeriRangeConstraint* AsRange() const { return nullptr; }
  virtual const VeriArrayConstraint* AsArray() const { return nullptr; }
  virtual const VeriUniformArrayConstraint* AsUniformArray() const { return nullptr; }
  virtual const VeriCompositeArrayConstraint* AsCompositeArray() const { return nullptr; }
  virtual const VeriCompositeConstraint* AsComposite() const { return nullptr; }
  virtual const VeriInterfaceConstraint* AsInterface() const { return nullptr; }
  bool IsLogicConstraint() const { return AsLogic() != nullptr; }
  bool IsRangeConstraint() const { return AsRange() != nullptr; }
  bool IsArrayConstraint() const { return AsArray() != nullptr; }
  bool IsCompositeConstraint() const { return AsComposite() != nullptr; }
  bool IsInterfaceConstraint() const { return AsInterface() != nullptr; }
  virtual bool IsEnumRange() const { return false; }
  virtual bool IsRealRange() const { return false; }
  virtual bool IsDynamicArray() const { return false; }
  virtual bool IsString() const { return false; }

  // Elements.
  /// Of an array, the type of one element; null otherwise.
  virtual const VeriConstraint* ElementConstraint() const { return nullptr; }
  /// Of an array or a struct, the type of the element at a position.
  virtual const VeriConstraint* ElementConstraintAt(unsigned /*position*/) const { return nullptr; }
  /// Below all array dimensions.
  const VeriConstraint* FinalElementConstraint() const;
  /// The type below `dimension` array dimensions (0: this); null when there are fewer.
  const VeriConstraint* ElementConstraintAtDim(unsigned dimension) const;
  /// The range of the indices of an array; null otherwise. An integer type (`int`, `integer`, ...) is indexed as its
  /// bits.
  virtual const VeriRangeConstraint* IndexConstraint() const { return nullptr; }
  const VeriRangeConstraint* IndexConstraintAtDim(unsigned dimension) const;
  /// The positions `left` to `right` of an array as an array of its own, with the indices that the user wrote; null
  /// otherwise.
  virtual OwnedConstraint Slice(int /*left*/, int /*right*/) const { return nullptr; }

  // Figures.
  int Left() const;
  int Right() const;
  int Low() const;
  int High() const;
  veri_range_dir Dir() const;
  /// Elements of an array or struct; 1 otherwise.
  virtual unsigned Length() const { return 1; }
  /// Bits of one element of an array; 1 otherwise.
  virtual unsigned ElementSize() const { return 1; }
  /// Elements through all dimensions of an array, at most 2^32-1.
  virtual unsigned TotalElements() const { return 1; }
  /// Exact, up to 2^64-1.
  virtual uint64_t TotalBits() const = 0;
  /// TotalBits, at most 2^32-1.
  unsigned Size() const;
  /// 2 for types that know neither x nor z, else 4.
  virtual unsigned NumLogicStates() const { return 4; }
  virtual bool IsSigned() const { return false; }
  virtual void SetSigned() {}
  virtual void SetUnsigned() {}
  virtual bool IsPacked() const { return true; }
  bool IsUnpacked() const { return !IsPacked(); }
  virtual void SetPacked() {}
  virtual void SetUnpacked() {}
  /// Dimensions from the outermost on.
  virtual unsigned NumUnpacked() const { return 0; }
  virtual unsigned NumPacked() const { return 0; }
  /// The position, counted from the left, of an index; -1 when it is outside.
  virtual int64_t PosOf(int64_t index) const;
  int64_t PosOf(const VeriValue& index) const;
  bool Contains(int64_t index) const { return PosOf(index) >= 0; }
  bool Contains(const VeriValue& index) const { return PosOf(index) >= 0; }
  /// The type as text, such as "[7:0]".
  virtual std::string Image() const = 0;

  // Relations.
  /// Same shape: as many elements in each unpacked dimension and as many bits below.
  virtual bool IsTypeCompatible(const VeriConstraint& other) const;
  /// The type in which a value of the type `other` is assigned to this one: null, with an error, when only an aggregate
  /// could be. Borrowed.
  const VeriConstraint* AssignmentConstraint(const VeriConstraint* other, const VeriTreeNode* from) const;
  /// The type in which values of this type and of `other` are compared. Borrowed.
  const VeriConstraint* ComparisonConstraint(const VeriConstraint* other, const VeriTreeNode* from) const;
  /// Checks that a value of the right size belongs to the type (members of enumerations); reports it when not.
  virtual bool ConstrainBy(const VeriValue& value, const VeriTreeNode* from) const;

  // Values. Null, with an error, for a type that has none or that is too large.
  /// The nets of a declared object, named by it, in the netlist under construction; with `linefile` 0 the nets count as
  /// the system's.
  OwnedValue CreateValue(const char* name, unsigned long linefile, const VeriTreeNode* from) const;
  /// A value of nameless nets, without drivers.
  OwnedValue CreateValue(const VeriTreeNode* from) const { return CreateValue(nullptr, 0, from); }
  OwnedValue CreateXValue(const VeriTreeNode* from) const;
  /// What a variable without initial value starts as: x, or 0 for types of two states.
  OwnedValue CreateInitialValue(const VeriTreeNode* from) const;
  /// A constant of one digit.
  OwnedValue CreateDigitValue(veri_digit digit, const VeriTreeNode* from) const;
  /// The value of an assignment pattern: `values` by position, with null where `otherwise` (which may be null) stands
  /// in. Both are consumed.
  OwnedValue CreatePatternValue(std::vector<OwnedValue> values, OwnedValue otherwise, const VeriTreeNode* from) const;
  /// Turns the bits of a packed value into the elements of this type.
  virtual OwnedValue Unpack(OwnedValue value, const VeriTreeNode* from) const;
  /// Makes ports of a netlist: a port for a scalar, buses over them for the packed and unpacked dimensions. They are
  /// appended to `ports`, most significant first.
  void CreatePorts(Netlist* netlist, const char* name, port_dir direction, unsigned long linefile, Array& ports) const;

protected:
  // What is built of elements asks them for their part.
  friend class VeriRangeConstraint;
  friend class VeriCompositeConstraint;
  friend class VeriUniformArrayConstraint;
  friend class VeriCompositeArrayConstraint;
  VeriConstraint() = default;
  VeriConstraint(const VeriConstraint&) = default;

  /// Builds the nets; `bus` is filled from left to right when the object is part of one.
  virtual OwnedValue BuildNets(const std::string& name, unsigned long linefile, NetBus* bus) const = 0;
  virtual void BuildPorts(Netlist* netlist, const std::string& name, port_dir direction, unsigned long linefile,
                          PortBus* bus, Array& ports) const = 0;
  virtual OwnedValue BuildConstant(veri_digit digit, bool initial) const = 0;
};

/// A scalar.
class VeriLogicConstraint : public VeriConstraint {
public:
  explicit VeriLogicConstraint(unsigned num_states = 4, bool is_signed = false)
      : _num_states(num_states), _signed(is_signed) {}
  OwnedConstraint Copy() const override;
  const VeriLogicConstraint* AsLogic() const override { return this; }
  uint64_t TotalBits() const override { return 1; }
  unsigned NumLogicStates() const override { return _num_states; }
  bool IsSigned() const override { return _signed; }
  void SetSigned() override { _signed = true; }
  void SetUnsigned() override { _signed = false; }
  std::string Image() const override;

protected:
  OwnedValue BuildNets(const std::string& name, unsigned long linefile, NetBus* bus) const override;
  void BuildPorts(Netlist* netlist, const std::string& name, port_dir direction, unsigned long linefile, PortBus* bus,
                  Array& ports) const override;
  OwnedValue BuildConstant(veri_digit digit, bool initial) const override;

private:
  unsigned _num_states;
  bool _signed;
};

/// A state of a machine: its name, and its code in the source, most significant bit first.
struct VeriStateName {
  std::string name;
  std::string code;
};

/// A range of indices; an enumeration; a real. As the type of an object it is as wide as its base type.
class VeriRangeConstraint : public VeriConstraint {
public:
  /// The indices of an array dimension.
  VeriRangeConstraint(int left, int right);
  /// An integer type of this width, indexed [width-1:0].
  static std::unique_ptr<VeriRangeConstraint> Integer(unsigned width, bool is_signed, unsigned num_states);
  static std::unique_ptr<VeriRangeConstraint> RealType();
  /// An enumeration over a base type; `members` are the encoded values, which are copied.
  static std::unique_ptr<VeriRangeConstraint> Enumeration(const VeriConstraint& base,
                                                          const std::vector<const VeriValue*>& members);
  VeriRangeConstraint(const VeriRangeConstraint& other);
  OwnedConstraint Copy() const override;
  const VeriRangeConstraint* AsRange() const override { return this; }
  const VeriRangeConstraint* IndexConstraint() const override { return this; }
  OwnedConstraint Slice(int left, int right) const override;
  bool IsEnumRange() const override { return _is_enum; }
  bool IsRealRange() const override { return _is_real; }
  int LeftBound() const { return _left; }
  int RightBound() const { return _right; }
  /// Up only when the right bound is above the left one.
  bool IsUp() const { return _right > _left; }
  /// At most 2^32-1, as the full range of 32-bit indices has one more.
  unsigned Length() const override;
  uint64_t TotalBits() const override { return _is_real ? 64 : Length(); }
  unsigned TotalElements() const override { return Length(); }
  unsigned NumLogicStates() const override { return _num_states; }
  bool IsSigned() const override { return _signed; }
  void SetSigned() override { _signed = true; }
  void SetUnsigned() override { _signed = false; }
  unsigned NumPacked() const override { return 1; }
  int64_t PosOf(int64_t index) const override;
  std::string Image() const override;
  bool ConstrainBy(const VeriValue& value, const VeriTreeNode* from) const override;
  const std::vector<OwnedValue>& Members() const { return _members; }
  /// One net per state of a variable that is encoded one-hot, bit 0 for the first; the nets are named by the states
  /// and bear the codes that the source gives them.
  static OwnedValue CreateStateVectorValue(const char* name, const std::vector<VeriStateName>& states,
                                           unsigned long linefile);

protected:
  OwnedValue BuildNets(const std::string& name, unsigned long linefile, NetBus* bus) const override;
  void BuildPorts(Netlist* netlist, const std::string& name, port_dir direction, unsigned long linefile, PortBus* bus,
                  Array& ports) const override;
  OwnedValue BuildConstant(veri_digit digit, bool initial) const override;

private:
  int _left;
  int _right;
  bool _is_enum = false;
  bool _is_real = false;
  bool _signed = false;
  unsigned _num_states = 4;
  std::vector<OwnedValue> _members;
};

/// Arrays, packed (vectors) and unpacked.
class VeriArrayConstraint : public VeriConstraint {
public:
  const VeriArrayConstraint* AsArray() const override { return this; }
  const VeriRangeConstraint* IndexConstraint() const override { return &_index; }
  unsigned Length() const override { return _index.Length(); }
  int64_t PosOf(int64_t index) const override { return _index.PosOf(index); }

protected:
  explicit VeriArrayConstraint(const VeriRangeConstraint& index) : _index(index) {}
  VeriArrayConstraint(const VeriArrayConstraint&) = default;
  VeriRangeConstraint _index;
};

/// Packed vectors, and arrays of one element type.
class VeriUniformArrayConstraint : public VeriArrayConstraint {
public:
  VeriUniformArrayConstraint(const VeriRangeConstraint& index, OwnedConstraint element, bool packed, bool is_signed);
  /// logic [left:right].
  static std::unique_ptr<VeriUniformArrayConstraint> Vector(int left, int right, bool is_signed = false,
                                                            unsigned num_states = 4);
  VeriUniformArrayConstraint(const VeriUniformArrayConstraint& other);
  OwnedConstraint Copy() const override;
  const VeriUniformArrayConstraint* AsUniformArray() const override { return this; }
  const VeriConstraint* ElementConstraint() const override { return _element.get(); }
  const VeriConstraint* ElementConstraintAt(unsigned position) const override;
  OwnedConstraint Slice(int left, int right) const override;
  unsigned ElementSize() const override { return _element->Size(); }
  unsigned TotalElements() const override;
  uint64_t TotalBits() const override;
  unsigned NumLogicStates() const override { return _element->NumLogicStates(); }
  bool IsSigned() const override { return _signed; }
  void SetSigned() override { _signed = true; }
  void SetUnsigned() override { _signed = false; }
  bool IsPacked() const override { return _packed; }
  void SetPacked() override { _packed = true; }
  void SetUnpacked() override { _packed = false; }
  unsigned NumUnpacked() const override { return _packed ? 0 : 1 + _element->NumUnpacked(); }
  unsigned NumPacked() const override { return (_packed ? 1 : 0) + _element->NumPacked(); }
  bool IsString() const override { return _string; }
  void SetString() { _string = true; }
  bool IsDynamicArray() const override { return _dynamic; }
  void SetDynamic() { _dynamic = true; }
  std::string Image() const override;
  OwnedValue Unpack(OwnedValue value, const VeriTreeNode* from) const override;

protected:
  OwnedValue BuildNets(const std::string& name, unsigned long linefile, NetBus* bus) const override;
  void BuildPorts(Netlist* netlist, const std::string& name, port_dir direction, unsigned long linefile, PortBus* bus,
                  Array& ports) const override;
  OwnedValue BuildConstant(veri_digit digit, bool initial) const override;

private:
  OwnedConstraint _element;
  bool _packed;
  bool _string = false;
  bool _signed;
  bool _dynamic = false;
};

/// Arrays whose elements differ.
class VeriCompositeArrayConstraint : public VeriArrayConstraint {
public:
  VeriCompositeArrayConstraint(const VeriRangeConstraint& index, std::vector<OwnedConstraint> elements);
  VeriCompositeArrayConstraint(const VeriCompositeArrayConstraint& other);
  OwnedConstraint Copy() const override;
  const VeriCompositeArrayConstraint* AsCompositeArray() const override { return this; }
  const VeriConstraint* ElementConstraint() const override { return ElementConstraintAt(0); }
  const VeriConstraint* ElementConstraintAt(unsigned position) const override;
  unsigned TotalElements() const override;
  uint64_t TotalBits() const override;
  bool IsPacked() const override { return false; }
  unsigned NumUnpacked() const override { return 1 + (_elements.empty() ? 0 : _elements.front()->NumUnpacked()); }
  std::string Image() const override;
  OwnedValue Unpack(OwnedValue value, const VeriTreeNode* from) const override;

protected:
  OwnedValue BuildNets(const std::string& name, unsigned long linefile, NetBus* bus) const override;
  void BuildPorts(Netlist* netlist, const std::string& name, port_dir direction, unsigned long linefile, PortBus* bus,
                  Array& ports) const override;
  OwnedValue BuildConstant(veri_digit digit, bool initial) const override;

private:
  std::vector<OwnedConstraint> _elements;
};

/// Structs and unions. A packed one is a vector; an unpacked one an aggregate of its members.
class VeriCompositeConstraint : public VeriConstraint {
public:
  enum Kind { STRUCT, UNION };
  struct Member {
    std::string name;
    const VeriIdDef* id; ///< may be null
    OwnedConstraint type;
  };
  /// `data_type` is whatever identifies the declared type; types without one are compared by shape.
  VeriCompositeConstraint(Kind kind, std::vector<Member> members, bool packed, bool is_signed,
                          const void* data_type = nullptr);
  VeriCompositeConstraint(const VeriCompositeConstraint& other);
  OwnedConstraint Copy() const override;
  const VeriCompositeConstraint* AsComposite() const override { return this; }
  bool IsUnion() const { return _kind == UNION; }
  const std::vector<Member>& Members() const { return _members; }
  const void* DataType() const { return _data_type; }
  /// -1 when there is none of that name.
  int MemberPosition(const char* name) const;
  /// Of a packed one: the place of a member's most significant bit, counted from the left.
  uint64_t MemberOffset(unsigned position) const;
  const VeriConstraint* ElementConstraintAt(unsigned position) const override;
  unsigned Length() const override { return static_cast<unsigned>(_members.size()); }
  uint64_t TotalBits() const override;
  unsigned TotalElements() const override { return Length(); }
  unsigned NumLogicStates() const override;
  bool IsSigned() const override { return _signed; }
  void SetSigned() override { _signed = true; }
  void SetUnsigned() override { _signed = false; }
  bool IsPacked() const override { return _packed; }
  void SetPacked() override { _packed = true; }
  void SetUnpacked() override { _packed = false; }
  bool IsTypeCompatible(const VeriConstraint& other) const override;
  std::string Image() const override;
  OwnedValue Unpack(OwnedValue value, const VeriTreeNode* from) const override;
  /// The member of a value of this type, copied out of it; and the value with the member replaced.
  OwnedValue ReadMember(OwnedValue value, unsigned position) const;
  OwnedValue AssignMember(OwnedValue value, unsigned position, OwnedValue part) const;

protected:
  OwnedValue BuildNets(const std::string& name, unsigned long linefile, NetBus* bus) const override;
  void BuildPorts(Netlist* netlist, const std::string& name, port_dir direction, unsigned long linefile, PortBus* bus,
                  Array& ports) const override;
  OwnedValue BuildConstant(veri_digit digit, bool initial) const override;

private:
  Kind _kind;
  std::vector<Member> _members;
  bool _packed;
  bool _signed;
  const void* _data_type;
};

/// An interface port: what is known of the interface that it stands for. Nothing of it is owned.
class VeriInterfaceConstraint : public VeriConstraint {
public:
  VeriInterfaceConstraint(VeriScope* scope, VeriModule* interface, const VeriIdDef* modport, const Map* parameters,
                          const Array* port_expressions)
      : _scope(scope), _interface(interface), _modport(modport), _parameters(parameters),
        _port_expressions(port_expressions) {}
  OwnedConstraint Copy() const override;
  const VeriInterfaceConstraint* AsInterface() const override { return this; }
  VeriScope* Scope() const { return _scope; }
  VeriModule* Interface() const { return _interface; }
  const VeriIdDef* Modport() const { return _modport; }
  const Map* Parameters() const { return _parameters; }
  const Array* PortExpressions() const { return _port_expressions; }
  uint64_t TotalBits() const override { return 0; }
  bool IsPacked() const override { return false; }
  bool IsTypeCompatible(const VeriConstraint& other) const override;
  std::string Image() const override { return "interface"; }

protected:
  OwnedValue BuildNets(const std::string& name, unsigned long linefile, NetBus* bus) const override;
  void BuildPorts(Netlist* netlist, const std::string& name, port_dir direction, unsigned long linefile, PortBus* bus,
                  Array& ports) const override;
  OwnedValue BuildConstant(veri_digit digit, bool initial) const override;

private:
  VeriScope* _scope;
  VeriModule* _interface;
  const VeriIdDef* _modport;
  const Map* _parameters;
  const Array* _port_expressions;
};

#endif
