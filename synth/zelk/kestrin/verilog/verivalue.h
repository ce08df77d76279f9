// VeriValue and its family: what evaluating an expression gives. Constants are computed on in four-state arithmetic
// (IEEE 1364-2005 clause 5); a value with a bit that comes from logic is a vector of nets, on which every operator
// builds the matching logic in the netlist under construction. The same code therefore serves both.
//
// Ownership: an operation that takes an OwnedValue consumes it, and its result may be that object, changed in place. A
// null operand stands for a failed evaluation: the other operands are deleted and the result is null. Messages go to
// the node `from`, or with null to the node on top of the stack of nodes.
//
// Bits are numbered from the least significant one, 0. Positions in arrays and slices are counted from the left, where
// the most significant element stands.
#ifndef KESTRIN_VERILOG_VERIVALUE_H
#define KESTRIN_VERILOG_VERIVALUE_H

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "containers/array.h"
#include "containers/views.h"
#include "database/port.h"
#include "verilog/verinode.h"
#include "verilog/verioper.h"

class Instance;
class VeriAggregateValue;
class VeriConstraint;
class VeriDataFlow;
class VeriDualPortValue;
class VeriEnum;
class VeriExpression;
class VeriIdDef;
class VeriIndexedName;
class VeriIntValue;
class VeriNonConstVal;
class VeriRam;
class VeriRealValue;
class VeriTreeNode;
class VeriValue;
class VeriVectorValue;

/// A four-state digit.
enum veri_digit : unsigned char { VERI_DIGIT_0 = 0, VERI_DIGIT_1 = 1, VERI_DIGIT_X = 2, VERI_DIGIT_Z = 3 };

/// How several drivers of a net are brought together.
enum veri_net_resolution { VERI_RESOLVE_WIRE, VERI_RESOLVE_AND, VERI_RESOLVE_OR, VERI_RESOLVE_TRIREG };

enum veri_index_kind {
  VERI_INDEX_SINGLE, ///< [left]
  VERI_INDEX_RANGE,  ///< [left:right], both constant
  VERI_INDEX_UP,     ///< [left +: right], the width constant
  VERI_INDEX_DOWN    ///< [left -: right]
};

using OwnedValue = std::unique_ptr<VeriValue>;

/// One index of an indexed name, evaluated.
struct VeriIndex {
  veri_index_kind kind = VERI_INDEX_SINGLE;
  OwnedValue left;
  OwnedValue right; ///< null for a single index
};
using VeriIndices = std::vector<VeriIndex>;

/// Vectors wider than this are refused with a message before any storage is taken.
constexpr unsigned veri_max_width = 1U << 20;
/// The bits of one object, arrays included.
constexpr unsigned veri_max_object_bits = 1U << 24;

class VeriValue : public VeriNode {
public:
  ~VeriValue() override = default;
  VeriValue& operator=(const VeriValue&) = delete;

  virtual OwnedValue Copy() const = 0;

  // The class of the value: this, or null.
  virtual VeriIntValue* AsInt() { return nullptr; }
  virtual VeriRealValue* AsReal() { return nullptr; }
  virtual VeriEnum* AsEnum() { return nullptr; }
  virtual VeriVectorValue* AsVector() { return nullptr; }
  virtual VeriNonConstVal* AsNonConst() { return nullptr; }
  virtual VeriAggregateValue* AsAggregate() { return nullptr; }
  virtual VeriDualPortValue* AsDualPort() { return nullptr; }
  const VeriIntValue* AsInt() const { return const_cast<VeriValue*>(this)->AsInt(); }
  const VeriRealValue* AsReal() const { return const_cast<VeriValue*>(this)->AsReal(); }
  const VeriEnum* AsEnum() const { return const_cast<VeriValue*>(this)->AsEnum(); }
  const VeriVectorValue* AsVector() const { return const_cast<VeriValue*>(this)->AsVector(); }
  const VeriNonConstVal* AsNonConst() const { return const_cast<VeriValue*>(this)->AsNonConst(); }
  const VeriAggregateValue* AsAggregate() const { return const_cast<VeriValue*>(this)->AsAggregate(); }
  const VeriDualPortValue* AsDualPort() const { return const_cast<VeriValue*>(this)->AsDualPort(); }
  bool IsInt() const { return AsInt() != nullptr; }
  bool IsReal() const { return AsReal() != nullptr; }
  bool IsEnum() const { return AsEnum() != nullptr; }
  bool IsAggregate() const { return AsAggregate() != nullptr; }
  bool IsDualPortValue() const { return AsDualPort() != nullptr; }
  /// Everything but nets; an aggregate, when all its elements are.
  virtual bool IsConstant() const = 0;

  // Constructors of constants.
  /// The text of a literal: 12, 8'hxZ, 'b1, 4'sd3, '1, 1.5e3, "abc". Underscores are skipped. Null for what is none.
  /// What does not fit a sized number is cut off; unsized ones have at least 32 bits.
  static OwnedValue FromLiteral(std::string_view text);
  static OwnedValue FromInteger(int value);
  /// A signed or unsigned vector of this width.
  static OwnedValue FromNumber(int64_t value, unsigned width, bool is_signed);
  static OwnedValue FromReal(double value);
  /// Eight bits a character, the last character least significant; the empty string has one zero character.
  static OwnedValue FromString(std::string_view text);
  static OwnedValue Digits(unsigned width, veri_digit digit);
  /// One net, which may be one of the four constants.
  static OwnedValue FromNet(Net* net);
  /// Most significant net first. Constant nets only give a constant.
  static OwnedValue FromNets(const Array& nets, bool is_signed = false);

  // Representation changes.
  /// Nets for the bits: a VeriNonConstVal, or an aggregate of such. Reals are refused ("not supported use of real
  /// number").
  static OwnedValue ToNonConst(OwnedValue value, const VeriTreeNode* from = nullptr);
  /// A vector where all nets are constants; anything else as it is.
  static OwnedValue ToConst(OwnedValue value);
  /// Null for a real, and for an aggregate that is not packed.
  static std::unique_ptr<VeriNonConstVal> ToNonConstVal(OwnedValue value);
  /// Null for what has logic in it. Reals are rounded (half away from zero).
  static std::unique_ptr<VeriVectorValue> ToVectorValue(OwnedValue value);
  /// Null for what has logic in it; x and z count as 0.
  static std::unique_ptr<VeriRealValue> ToRealValue(OwnedValue value);
  /// The elements of an aggregate one after the other, as one vector. Other values as they are.
  static OwnedValue Pack(OwnedValue value);

  // Queries.
  /// Width in bits; of an aggregate, of all elements together.
  virtual unsigned Size() const = 0;
  /// The net of a bit, beyond the width SignBit.
  virtual Net* GetBit(unsigned bit) const = 0;
  /// What the value is extended with: the top bit if signed, else 0; an x or z top bit is always extended as itself.
  virtual Net* SignBit() const = 0;
  /// Appends the nets, most significant first.
  virtual void GetNets(Array& nets) const;
  /// Adds the nets that are no constants.
  virtual void CollectNets(class Set& nets) const;
  virtual bool ContainsNet(const Net* net) const;
  virtual bool HasX() const = 0;
  virtual bool HasZ() const = 0;
  bool HasXZ() const { return HasX() || HasZ(); }
  /// The constant is a negative number.
  virtual bool IsLessThanZero() const { return false; }
  /// Known, and all bits 0.
  bool IsZero() const;
  /// Exactly one bit is 1 and all others are 0.
  bool IsOnehotConstant() const;
  /// Bits that hold a register's output.
  virtual bool IsRegistered() const { return false; }
  /// As a 32-bit number, x and z as 0. With the flag "zelk_check_constant_overflow" a vector with significant bits
  /// above is reported ("could not convert a value to 32 bit integer"). 0 for what is not constant.
  virtual int Integer(const VeriTreeNode* from = nullptr) const;
  /// 1 and the number when the value is constant, known, and fits.
  bool ToInt64(int64_t* number) const;
  virtual double Real() const;
  /// The characters of a string, `%d'%sb` and the bits of another vector, decimal for integers.
  virtual std::string String() const;
  /// For names of parameter sets and attributes.
  virtual std::string ParamString() const { return String(); }
  /// One of 0, 1, x, z a bit, most significant first; a net that is no constant as '?'.
  virtual std::string BinaryString() const;

  // Marks. Copies and results in place keep them.
  bool IsSigned() const { return _signed; }
  virtual void SetSigned() { _signed = true; }
  virtual void SetUnsigned() { _signed = false; }
  /// Signed only if both are.
  static void CoerceSign(VeriValue& a, VeriValue& b);
  bool IsString() const { return _string; }
  void SetIsString(bool on = true) { _string = on; }
  bool IsPacked() const { return !_unpacked; }
  bool IsUnpacked() const { return _unpacked; }
  void SetPacked() { _unpacked = false; }
  void SetUnpacked() { _unpacked = true; }
  bool IsBlocking() const { return _blocking; }
  bool IsNonBlocking() const { return _non_blocking; }
  void SetBlocking() { _blocking = true; }
  void SetNonBlocking() { _non_blocking = true; }
  void ResetBlockingInfo() { _blocking = _non_blocking = false; }
  bool IsOnehot() const { return _onehot; }
  void SetOnehot() { _onehot = true; }
  void SetNotOnehot() { _onehot = false; }
  void CopyMarks(const VeriValue& other);

  // Changes in place.
  /// Constants take the four constant nets only.
  virtual void SetBit(unsigned bit, Net* net);
  /// All bits.
  virtual void SetTo(veri_digit digit);
  void TieTo(veri_digit digit) { SetTo(digit); }
  /// Where the bit of `pattern` is `match`, the bit of `with` is taken.
  static OwnedValue ReplaceMatchingBitsWith(OwnedValue value, Net* match, const VeriValue& with);
  /// x and z become 0.
  static OwnedValue ToTwoState(OwnedValue value);
  /// Drops leading bits that repeat the one below (signed) or are 0 (unsigned), down to one bit.
  static OwnedValue Prune(OwnedValue value);

  // Fits.
  /// The one rule of widths: narrowing loses most significant bits, widening extends with SignBit. Width 0 does
  /// nothing; a width beyond the limit is refused. An x or z on top that is extended warns, unless it stands for any
  /// width.
  static OwnedValue Adjust(OwnedValue value, unsigned width, const VeriTreeNode* from = nullptr);
  /// Fits the value to the left side of an assignment or to a port. `sign_first`: the target's sign decides the
  /// extension. Null, with a message, for what does not fit at all. `expression_width`, when not 0, is the width that
  /// the reader of the source expects, and with it lost bits are reported; `is_unsized` tells of an unsized literal.
  static OwnedValue CheckAgainst(OwnedValue value, const VeriConstraint& target, const VeriTreeNode* from,
                                 bool sign_first, unsigned expression_width = 0, bool is_unsized = false);

  // Operators, by the rules of IEEE 1364-2005 clause 5.1. Operands are extended to the wider one, as signed numbers
  // only if both are signed; what a context asks for beyond that is done by the caller with Adjust and SetUnsigned
  // before.
  static OwnedValue Unary(veri_oper oper, OwnedValue operand, const VeriTreeNode* from = nullptr);
  static OwnedValue Binary(veri_oper oper, OwnedValue left, OwnedValue right, const VeriTreeNode* from = nullptr);
  /// The elements from left to right.
  static OwnedValue Concat(std::vector<OwnedValue> values, const VeriTreeNode* from = nullptr);
  /// The count must be a constant, known and positive (0 gives an empty vector of no bits, for use within Concat only).
  static OwnedValue Repeat(OwnedValue count, OwnedValue value, const VeriTreeNode* from = nullptr);
  /// One bit: a value is true when any of its bits is 1. Null for a null value and for one without bits.
  static Net* Condition(OwnedValue value, const VeriTreeNode* from = nullptr);
  /// Merge of two branches. A constant condition takes one of the values, x takes the first.
  static OwnedValue Select(Net* condition, OwnedValue one, OwnedValue zero, const VeriTreeNode* from = nullptr);
  /// The operator ?:. An unknown constant condition gives x where the branches differ (clause 5.1.13).
  static OwnedValue QuestionColon(OwnedValue condition, OwnedValue one, OwnedValue zero,
                                  const VeriTreeNode* from = nullptr);
  /// Whether two constants have the same digits; widths and signs must be the same.
  static bool SameDigits(const VeriValue& a, const VeriValue& b);
  /// Whether a value can match a pattern in which x (with `x_is_wild`) and z (with `z_is_wild`) digits of either side
  /// match anything, as casex and casez do: a net that is one when they match.
  static Net* CaseMatch(const VeriValue& value, const VeriValue& pattern, bool x_is_wild, bool z_is_wild,
                        const VeriTreeNode* from = nullptr);

  // Words selected from many. Inputs are consumed.
  /// `inputs[i]` for the select word i, selectors most significant net first. Null inputs are don't care.
  static OwnedValue Nto1Mux(const Array& selectors, std::vector<OwnedValue> inputs, const VeriTreeNode* from);
  /// `inputs[i]` where `onehot` net i is 1. Null inputs are don't care.
  static OwnedValue Selector(const Array& onehot, std::vector<OwnedValue> inputs, const VeriTreeNode* from);
  /// The first input whose net is 1, else the default. Null inputs and a null default are don't care.
  static OwnedValue PrioSelector(const Array& conditions, std::vector<OwnedValue> inputs, OwnedValue otherwise,
                                 const VeriTreeNode* from);
  /// The number of different values.
  static unsigned CountUniqueValues(const std::vector<OwnedValue>& inputs);
  /// A read-only memory of 2^n constants, addressed by n nets (most significant first). Null entries are undefined.
  /// `attributes` may be null. Null when the constants make no memory; the inputs are consumed all the same.
  static OwnedValue Rom(const Array& address, std::vector<OwnedValue> entries, const Map* attributes,
                        const VeriTreeNode* from);

  // Elements and parts.
  virtual unsigned NumOfElements() const { return Size(); }
  /// Borrowed; null for a value without elements and out of range.
  virtual VeriValue* GetElement(unsigned position) const;
  virtual OwnedValue TakeElement(unsigned position);
  virtual void SetElement(unsigned position, OwnedValue element);
  /// `count` elements of `element_size` bits from a position on, x beyond the ends. Of an aggregate, its elements.
  static OwnedValue EvaluateSliced(OwnedValue value, int64_t position, unsigned count, unsigned element_size);
  /// One element.
  static OwnedValue EvaluateIndexed(OwnedValue value, int64_t position, unsigned element_size);
  /// The value with `part` written over `count` elements; what lies beyond the ends is dropped.
  static OwnedValue AssignSliced(OwnedValue value, int64_t position, unsigned count, unsigned element_size,
                                 OwnedValue part);
  static OwnedValue AssignIndexed(OwnedValue value, int64_t position, unsigned element_size, OwnedValue part);
  /// Reads through indices, outermost first, constant or not; `name` is for messages. The value is only borrowed. Out
  /// of range reads x. A single net-valued index makes a multiplexer over the elements, a variable part-select
  /// multiplexers or a shift.
  static OwnedValue ReadPartial(const VeriValue& value, const VeriConstraint& constraint, const VeriIndices& indices,
                                const char* name, const VeriTreeNode* from);
  /// The value with `part` written through the indices: a constant index replaces bits, a variable one multiplexes each
  /// element between its old and its new bits. Out of range writes nothing, with a warning.
  static OwnedValue AssignPartial(OwnedValue value, const VeriConstraint& constraint, const VeriIndices& indices,
                                  OwnedValue part, const char* name, const VeriTreeNode* from);
  /// The type of what the indices select, newly made; null when there are too many.
  static std::unique_ptr<VeriConstraint> PartialConstraint(const VeriConstraint& constraint,
                                                           const VeriIndices& indices);
  /// For a net-valued index into `constraint`: one enable per element, by position. 0 with a warning when no index
  /// value is in range.
  static unsigned DecodeVariableIndex(const VeriValue& index, const VeriConstraint& constraint, ArrayOf<Net>& enables,
                                      const char* name, unsigned dimension, const VeriTreeNode* from);

  // A variable's nets.
  /// A buffer behind each bit.
  static OwnedValue Buffer(OwnedValue value, const VeriTreeNode* from);
  /// Turns a value into registers, bit by bit; `hold` is the variable's own value, which lends its names and
  /// attributes. With `enable` (a clock event or a level) Mux(hold, value, enable) is made instead, for later
  /// extraction. Bits that do not change stay as they are.
  static OwnedValue Register(OwnedValue value, Net* clock, Net* enable, const VeriValue& hold,
                             const VeriTreeNode* from);
  /// This value's nets take the source's: the end of a variable's or net's assignment. Infer points mark where the
  /// source depends on this value. `keep_names` puts no buffer between two named nets.
  void NetAssignFrom(OwnedValue source, veri_net_resolution resolution, bool isolate, const VeriTreeNode* from);
  /// Whether a bit of `source` depends on the bit of this value that it would drive, without a register between.
  /// `ignore_self`: a bit that is driven by itself alone does not count.
  bool CreatesLoop(const VeriValue& source, bool ignore_self) const;
  /// Places an infer point on each bit of `changed` that differs from `old`'s and may feed back.
  static OwnedValue InsertInferPoints(OwnedValue changed, const VeriValue& old, const VeriTreeNode* from);
  /// The power-up value of the nets. Constants only.
  virtual void SetDefaultValue(const VeriValue& value, const VeriTreeNode* from);
  /// Makes ports of the netlist under construction for the nets, shaped by the constraint.
  virtual void CreatePorts(const char* name, port_dir direction, const VeriConstraint& constraint,
                           const VeriTreeNode* from) const;
  /// Connects the nets, most significant first, to as many ports of an instance's view.
  virtual void Connect(Instance* instance, const Array& ports) const;
  /// Puts attributes (name to Att) on the nets.
  virtual void ApplyAttributes(const Map* attributes, const VeriTreeNode* from);
  /// The operator that drives the bits, when it is one and the same; else null.
  Instance* GetOperator() const;
  /// The multiplier that drives bits of the value; null without one.
  Instance* GetMult() const;

protected:
  VeriValue() = default;
  VeriValue(const VeriValue& other) = default;

private:
  bool _signed = false;
  bool _string = false;
  bool _unpacked = false;
  bool _blocking = false;
  bool _non_blocking = false;
  bool _onehot = false;
};

/// A value whose bits are all known digits.
class VeriConstVal : public VeriValue {
public:
  bool IsConstant() const override { return true; }
  Net* GetBit(unsigned bit) const override;
  Net* SignBit() const override;
  /// Beyond the width the digit of extension.
  virtual veri_digit Digit(unsigned bit) const = 0;
  veri_digit SignDigit() const;
  bool HasX() const override { return false; }
  bool HasZ() const override { return false; }
};

/// A signed 32-bit integer: unsized decimal literals, loop variables.
class VeriIntValue : public VeriConstVal {
public:
  explicit VeriIntValue(int value) : _value(value) { VeriValue::SetSigned(); }
  OwnedValue Copy() const override;
  VeriIntValue* AsInt() override { return this; }
  unsigned Size() const override { return 32; }
  veri_digit Digit(unsigned bit) const override;
  /// 0 and 1 only: an unknown integer is a vector.
  void SetTo(veri_digit digit) override;
  bool IsLessThanZero() const override { return IsSigned() && _value < 0; }
  int Integer(const VeriTreeNode* = nullptr) const override { return _value; }
  double Real() const override { return IsSigned() ? _value : static_cast<double>(static_cast<uint32_t>(_value)); }
  std::string String() const override;

private:
  int _value;
};

class VeriRealValue : public VeriConstVal {
public:
  explicit VeriRealValue(double value) : _value(value) { VeriValue::SetSigned(); }
  OwnedValue Copy() const override;
  VeriRealValue* AsReal() override { return this; }
  unsigned Size() const override { return 64; }
  /// Of the number rounded to 64 bits.
  veri_digit Digit(unsigned bit) const override;
  bool IsLessThanZero() const override { return _value < 0; }
  int Integer(const VeriTreeNode* from = nullptr) const override;
  /// Rounded half away from zero, saturated.
  int64_t Rounded() const;
  double Real() const override { return _value; }
  std::string String() const override;
  std::string BinaryString() const override;

private:
  double _value;
};

/// A name of an enumeration with its encoded value. It behaves as that value.
class VeriEnum : public VeriConstVal {
public:
  VeriEnum(const VeriIdDef* id, OwnedValue encoded);
  OwnedValue Copy() const override;
  VeriEnum* AsEnum() override { return this; }
  const VeriIdDef* GetEnumId() const { return _id; }
  const VeriValue& GetEncodedValue() const { return *_encoded; }
  OwnedValue TakeEncodedValue() { return std::move(_encoded); }
  unsigned Size() const override { return _encoded->Size(); }
  veri_digit Digit(unsigned bit) const override;
  void SetSigned() override;
  void SetUnsigned() override;
  bool HasX() const override { return _encoded->HasX(); }
  bool HasZ() const override { return _encoded->HasZ(); }
  bool IsLessThanZero() const override { return _encoded->IsLessThanZero(); }
  int Integer(const VeriTreeNode* from = nullptr) const override { return _encoded->Integer(from); }
  double Real() const override { return _encoded->Real(); }
  std::string String() const override { return _encoded->String(); }

private:
  const VeriIdDef* _id;
  OwnedValue _encoded;
};

/// A constant vector in three bit planes: value, z, x. The planes of z and x exist only once a bit needs them. Bit i
/// stands in byte i/8 at the mask 0x80 >> i%8.
class VeriVectorValue : public VeriConstVal {
public:
  /// All 0. A width of 0 is a vector without bits.
  explicit VeriVectorValue(unsigned width, char base = 'b');
  VeriVectorValue(const VeriVectorValue&) = default;
  OwnedValue Copy() const override;
  VeriVectorValue* AsVector() override { return this; }

  unsigned Size() const override { return _width; }
  char Base() const { return _base; }
  void SetBase(char base) { _base = base; }
  /// An unbased literal such as '1 fills whatever width it is fitted to.
  bool IsFill() const { return _fill; }
  void SetFill(bool on = true) { _fill = on; }
  veri_digit Digit(unsigned bit) const override;
  void SetDigit(unsigned bit, veri_digit digit);
  void SetBit(unsigned bit, Net* net) override;
  void SetTo(veri_digit digit) override;
  bool HasX() const override;
  bool HasZ() const override;
  bool IsLessThanZero() const override;
  int Integer(const VeriTreeNode* from = nullptr) const override;
  double Real() const override;
  std::string String() const override;
  /// The characters, without the leading zero bytes.
  std::string Characters() const;

  // Arithmetic in place; both vectors are fitted to the wider one first. An x or z makes all bits of the result x.
  void Resize(unsigned width);
  void Plus(VeriVectorValue& other, veri_digit carry_in, const VeriTreeNode* from);
  void Minus(VeriVectorValue& other, const VeriTreeNode* from);
  void Multiply(VeriVectorValue& other, const VeriTreeNode* from);
  /// Division by 0 gives x. The quotient is cut towards zero, the remainder has the sign of the left operand.
  void Divide(VeriVectorValue& other, const VeriTreeNode* from);
  void Modulo(VeriVectorValue& other, const VeriTreeNode* from);
  void Power(VeriVectorValue& exponent, const VeriTreeNode* from);
  void Negate();
  void Invert();
  void Shift(const VeriVectorValue& amount, bool is_right, bool arithmetic, const VeriTreeNode* from);
  void Bitwise(veri_oper oper, VeriVectorValue& other);
  veri_digit Reduce(veri_oper oper) const;
  /// Less, or with `or_equal` less or equal.
  veri_digit LessThan(VeriVectorValue& other, bool or_equal);
  /// For VERI_OPER_EQ, VERI_OPER_CASE_EQ and VERI_OPER_WILD_EQ and their negations.
  veri_digit Equal(veri_oper oper, VeriVectorValue& other);

private:
  using Plane = std::vector<unsigned char>; // whole 64-bit words, zero beyond the width
  using Limbs = std::vector<uint32_t>;      // a number, least significant limb first
  void FillFrom(Plane& plane, unsigned bit) const;
  void DropEmptyPlanes();
  bool Unify(VeriVectorValue& other);
  Limbs Magnitude() const;
  void SetNumber(const Limbs& limbs);
  void DivideBy(VeriVectorValue& other, bool want_remainder, const VeriTreeNode* from);

  unsigned _width;
  char _base;
  bool _fill = false;
  Plane _bits;
  Plane _z_bits; // empty: none is z
  Plane _x_bits;
};

/// A vector of nets, most significant first. Nets of known bits are the four constant nets.
class VeriNonConstVal : public VeriValue {
public:
  explicit VeriNonConstVal(unsigned width);
  VeriNonConstVal(unsigned width, Net* fill);
  explicit VeriNonConstVal(const Array& nets);
  OwnedValue Copy() const override;
  VeriNonConstVal* AsNonConst() override { return this; }
  bool IsConstant() const override;

  unsigned Size() const override { return _nets.Size(); }
  Net* GetBit(unsigned bit) const override;
  Net* SignBit() const override;
  void SetBit(unsigned bit, Net* net) override;
  void SetTo(veri_digit digit) override;
  bool HasX() const override;
  bool HasZ() const override;
  bool IsRegistered() const override;
  bool ContainsNet(const Net* net) const override;
  void SetDefaultValue(const VeriValue& value, const VeriTreeNode* from) override;
  void ApplyAttributes(const Map* attributes, const VeriTreeNode* from) override;

  /// Most significant first.
  const ArrayOf<Net>& Nets() const { return _nets; }
  ArrayOf<Net>& Nets() { return _nets; }
  /// Bit 0 first, as the builders of the netlist take them.
  void NetsFromLsb(Array& nets) const;
  void Resize(unsigned width, const VeriTreeNode* from);

  // Logic in place; `other` is a vector of nets of the same width, unless told otherwise.
  void Plus(const VeriNonConstVal& other, Net* carry_in, const VeriTreeNode* from);
  void Minus(const VeriNonConstVal& other, const VeriTreeNode* from);
  void Multiply(const VeriNonConstVal& other, const VeriTreeNode* from);
  void Divide(const VeriNonConstVal& other, const VeriTreeNode* from);
  void Modulo(const VeriNonConstVal& other, const VeriTreeNode* from);
  void Negate(const VeriTreeNode* from);
  void Invert(const VeriTreeNode* from);
  void Bitwise(veri_oper oper, const VeriNonConstVal& other, const VeriTreeNode* from);
  /// The amount is of any width.
  void Shift(const VeriValue& amount, bool is_right, bool arithmetic, const VeriTreeNode* from);
  Net* LessThan(const VeriNonConstVal& other, bool or_equal, const VeriTreeNode* from) const;
  /// For the equality operators, negation included.
  Net* Equal(veri_oper oper, const VeriNonConstVal& other, const VeriTreeNode* from) const;
  Net* Reduce(veri_oper oper, const VeriTreeNode* from) const;
  /// Compares a one-hot encoded variable with a one-hot constant by its one bit.
  Net* EqualOnehotConstant(const VeriValue& constant) const;
  /// This value where the condition is 0, `one` where it is 1. x on a side is don't care. The multiplexer goes in front
  /// of a register, or into its asynchronous controls, where one drives the bit.
  void MuxIn1(Net* condition, const VeriNonConstVal& one, const VeriTreeNode* from);

private:
  ArrayOf<Net> _nets;
};

/// The elements of an unpacked array or of a struct, left to right; they are owned.
class VeriAggregateValue : public VeriValue {
public:
  VeriAggregateValue() { SetUnpacked(); }
  explicit VeriAggregateValue(std::vector<OwnedValue> elements);
  VeriAggregateValue(const VeriAggregateValue& other);
  OwnedValue Copy() const override;
  VeriAggregateValue* AsAggregate() override { return this; }
  bool IsConstant() const override;

  unsigned Size() const override;
  Net* GetBit(unsigned bit) const override;
  Net* SignBit() const override;
  void SetBit(unsigned bit, Net* net) override;
  void SetTo(veri_digit digit) override;
  void GetNets(Array& nets) const override;
  bool HasX() const override;
  bool HasZ() const override;
  bool IsRegistered() const override;
  std::string String() const override;
  unsigned NumOfElements() const override { return static_cast<unsigned>(_elements.size()); }
  VeriValue* GetElement(unsigned position) const override;
  OwnedValue TakeElement(unsigned position) override;
  void SetElement(unsigned position, OwnedValue element) override;
  void Append(OwnedValue element) { _elements.push_back(std::move(element)); }
  std::vector<OwnedValue>& Elements() { return _elements; }
  void SetDefaultValue(const VeriValue& value, const VeriTreeNode* from) override;
  void CreatePorts(const char* name, port_dir direction, const VeriConstraint& constraint,
                   const VeriTreeNode* from) const override;
  void ApplyAttributes(const Map* attributes, const VeriTreeNode* from) override;

protected:
  std::vector<OwnedValue> _elements;
};

/// A memory that is inferred as a RAM, at one point of a process: what is read and written there, per port. As the
/// value of the variable itself nothing is.
class VeriDualPortValue : public VeriAggregateValue {
public:
  explicit VeriDualPortValue(std::shared_ptr<VeriRam> ram);
  OwnedValue Copy() const override;
  VeriDualPortValue* AsDualPort() override { return this; }
  bool IsConstant() const override { return false; }
  unsigned Size() const override;
  unsigned NumOfElements() const override;
  VeriRam& Ram() const { return *_ram; }

  /// Reads through a reference, outermost index first. The value is that of the flow, or the variable's own one with a
  /// null flow; x after an error.
  static OwnedValue Read(VeriIdDef* id, VeriDataFlow* flow, const VeriIndexedName* name, const VeriIndices& indices);
  /// The value with `part` written through a reference.
  static OwnedValue Write(OwnedValue value, const VeriIndexedName* name, VeriIndices indices, OwnedValue part,
                          bool non_blocking);
  /// The merge of branches of a flow by a selection among values.
  using Choice = std::function<OwnedValue(std::vector<OwnedValue>)>;
  static OwnedValue Merge(std::vector<OwnedValue> inputs, const Choice& select);
  /// Puts registers into what is written.
  void Register(Net* clock, Net* enable, const VeriTreeNode* from);
  /// The end of a process: binds the ports that it uses.
  void ConnectPorts(const VeriTreeNode* from) const;
  void SetDefaultValue(const VeriValue& value, const VeriTreeNode* from) override;

private:
  using Bits = std::vector<Net*>; // bit 0 first
  struct WriteSide {
    bool is_used = false;
    bool is_blocking = false;
    bool is_registered = false;
    Bits mask; // 1 where the bit is written
    Bits address;
    Bits data;
    std::vector<unsigned> registers; // of the mask's bits, once registered
  };
  struct ReadSide {
    bool is_used = false;
    Bits address;
  };
  static Bits MergeBits(const std::vector<const Bits*>& inputs, const Choice& select);
  void MergeWrite(unsigned port, const std::vector<const VeriDualPortValue*>& inputs, const Choice& select);
  OwnedValue WithPendingWrites(OwnedValue word, const Bits& address, const char* read_port,
                               const VeriTreeNode* from) const;
  bool NoteRead(unsigned port, const Bits& address);

  std::shared_ptr<VeriRam> _ram;
  WriteSide _writes[2];
  ReadSide _reads[2];
};

/// The constant net of a digit. Outside an elaboration four nets that belong to no netlist stand for the digits.
Net* veri_digit_net(veri_digit digit);
/// Whether the net is one of the four, and which.
bool veri_is_digit(const Net* net, veri_digit* digit = nullptr);
/// The constant net of the same value for a net that a constant drives, any other net as it is.
Net* veri_canonical_net(Net* net);
/// Whether a width (or with `bits` a number of bits of an object) can be built; reports it when not.
bool veri_width_is_supported(uint64_t width, const VeriTreeNode* from);
bool veri_object_size_is_supported(uint64_t bits, const VeriTreeNode* from);

#endif
