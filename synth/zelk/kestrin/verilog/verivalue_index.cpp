// Elements and parts of values: reading and writing through indices, constant or made of nets.
#include <algorithm>
#include <limits>
#include <optional>

#include "database/net.h"
#include "database/netlist.h"
#include "util/services.h"
#include "verilog/vericonstraint.h"
#include "verilog/veritreenode.h"
#include "verilog/verivalue.h"
#include "verilog/verivalue_logic.h"
#include "verilog/verivalue_report.h"

// Parts by position.

namespace {
/// The bit that a position's least significant bit has in a vector; negative or too large outside.
int64_t low_bit(const VeriValue& value, int64_t position, unsigned count, unsigned element_size) {
  return static_cast<int64_t>(value.Size()) - (position + count) * element_size;
}

OwnedValue unknown_like(const VeriAggregateValue& aggregate) {
  if (!aggregate.NumOfElements() || !aggregate.GetElement(0)) return VeriValue::Digits(1, VERI_DIGIT_X);
  OwnedValue value = aggregate.GetElement(0)->Copy();
  if (!value->IsAggregate() && !value->AsNonConst()) return VeriValue::Digits(value->Size(), VERI_DIGIT_X);
  value->SetTo(VERI_DIGIT_X);
  return VeriValue::ToConst(std::move(value));
}

OwnedValue element_or_unknown(const VeriAggregateValue& aggregate, int64_t position) {
  if (position < 0 || position >= aggregate.NumOfElements()) return unknown_like(aggregate);
  VeriValue* element = aggregate.GetElement(static_cast<unsigned>(position));
  return element ? element->Copy() : nullptr;
}
} // namespace

namespace {
OwnedValue slice_of(const VeriValue& value, int64_t position, unsigned count, unsigned element_size) {
  if (const VeriAggregateValue* aggregate = value.AsAggregate()) {
    auto part = std::make_unique<VeriAggregateValue>();
    for (unsigned i = 0; i < count; i++) part->Append(element_or_unknown(*aggregate, position + i));
    return part;
  }
  uint64_t width = static_cast<uint64_t>(count) * element_size;
  if (!veri_width_is_supported(width, nullptr)) return nullptr;
  int64_t low = low_bit(value, position, count, element_size);
  int64_t size = value.Size();
  auto is_inside = [size](int64_t bit) { return bit >= 0 && bit < size; };
  if (const auto* constant = value.AsVector()) {
    auto part = std::make_unique<VeriVectorValue>(static_cast<unsigned>(width));
    for (unsigned bit = 0; bit < width; bit++)
      part->SetDigit(bit, is_inside(low + bit) ? constant->Digit(static_cast<unsigned>(low + bit)) : VERI_DIGIT_X);
    return part;
  }
  auto part = std::make_unique<VeriNonConstVal>(static_cast<unsigned>(width));
  for (unsigned bit = 0; bit < width; bit++)
    part->SetBit(bit,
                 is_inside(low + bit) ? value.GetBit(static_cast<unsigned>(low + bit)) : veri_digit_net(VERI_DIGIT_X));
  return VeriValue::ToConst(std::move(part));
}

OwnedValue element_of_value(const VeriValue& value, int64_t position, unsigned element_size) {
  if (const VeriAggregateValue* aggregate = value.AsAggregate()) return element_or_unknown(*aggregate, position);
  return slice_of(value, position, 1, element_size);
}
} // namespace

OwnedValue VeriValue::EvaluateSliced(OwnedValue value, int64_t position, unsigned count, unsigned element_size) {
  return value ? slice_of(*value, position, count, element_size) : nullptr;
}

OwnedValue VeriValue::EvaluateIndexed(OwnedValue value, int64_t position, unsigned element_size) {
  return value ? element_of_value(*value, position, element_size) : nullptr;
}

OwnedValue VeriValue::AssignSliced(OwnedValue value, int64_t position, unsigned count, unsigned element_size,
                                   OwnedValue part) {
  if (!value || !part) return value;
  if (VeriAggregateValue* aggregate = value->AsAggregate()) {
    if (part->NumOfElements() != count || !part->IsAggregate()) {
      veri_at(nullptr).Error("target slice is %d elements; value is %d elements", static_cast<int>(count),
                             static_cast<int>(part->IsAggregate() ? part->NumOfElements() : 1));
      return value;
    }
    for (unsigned i = 0; i < count; i++)
      if (position + i >= 0 && position + i < aggregate->NumOfElements())
        aggregate->SetElement(static_cast<unsigned>(position + i), part->TakeElement(i));
    return value;
  }
  uint64_t width = static_cast<uint64_t>(count) * element_size;
  if (!veri_width_is_supported(width, nullptr)) return value;
  part = Adjust(Pack(std::move(part)), static_cast<unsigned>(width));
  if (!part) return value;
  int64_t low = low_bit(*value, position, count, element_size);
  bool both_constant = value->IsConstant() && part->IsConstant();
  bool is_int = value->IsInt();
  bool is_signed = value->IsSigned();
  if (is_int || (value->IsEnum() && both_constant)) value = ToVectorValue(std::move(value));
  if (!both_constant && !value->AsNonConst()) value = ToNonConstVal(std::move(value));
  for (unsigned bit = 0; bit < width; bit++) {
    int64_t target = low + bit;
    if (target >= 0 && target < static_cast<int64_t>(value->Size()))
      value->SetBit(static_cast<unsigned>(target), part->GetBit(bit));
  }
  is_signed ? value->SetSigned() : value->SetUnsigned();
  return ToConst(std::move(value));
}

OwnedValue VeriValue::AssignIndexed(OwnedValue value, int64_t position, unsigned element_size, OwnedValue part) {
  if (!value || !part) return value;
  VeriAggregateValue* aggregate = value->AsAggregate();
  if (!aggregate) return AssignSliced(std::move(value), position, 1, element_size, std::move(part));
  if (position >= 0 && position < aggregate->NumOfElements())
    aggregate->SetElement(static_cast<unsigned>(position), std::move(part));
  return value;
}

// Indices.

namespace {
const VeriConstraint& scalar() {
  static const VeriLogicConstraint logic;
  return logic;
}

const VeriConstraint& element_of(const VeriConstraint& array) {
  const VeriConstraint* element = array.ElementConstraint();
  return element ? *element : scalar();
}

/// The position of an index that may lie outside.
int64_t open_position(const VeriRangeConstraint& range, int64_t index) {
  return range.IsUp() ? index - range.LeftBound() : range.LeftBound() - index;
}

/// Bits that an unsigned number takes.
unsigned bits_of(uint64_t number) {
  unsigned bits = 1;
  while (number >>= 1) bits++;
  return bits;
}

/// What index values a word can have.
struct Reach {
  int64_t low;
  int64_t high;
};

Reach reach_of(const VeriValue& index) {
  unsigned width = std::min(index.Size(), 62U);
  if (!index.IsSigned()) return {0, (int64_t{1} << width) - 1};
  if (!width) return {0, 0};
  return {-(int64_t{1} << (width - 1)), (int64_t{1} << (width - 1)) - 1};
}

/// An index made of nets against the range that it indexes: an unsigned word of which the values from `first` on are
/// the indices from the lowest on.
struct Offset {
  OwnedValue word;
  uint64_t first;
};

Offset offset_in(const VeriValue& index, const VeriRangeConstraint& range, const VeriTreeNode* from) {
  uint64_t length = range.Length();
  unsigned high_bits = bits_of(static_cast<uint64_t>(std::max(range.High(), 0)));
  // A signed index keeps its sign as a bit that must be 0.
  OwnedValue word = VeriValue::Adjust(index.Copy(), index.Size() + (index.IsSigned() ? 1 : 0), from);
  bool is_dense = range.Low() >= 0 && ((1ULL << high_bits) <= 4 * length || high_bits <= 6);
  if (is_dense) {
    word->SetUnsigned();
    return {std::move(word), static_cast<uint64_t>(range.Low())};
  }
  unsigned width = std::max(index.Size(), 32U) + 2;
  word = VeriValue::Adjust(std::move(word), width, from);
  if (word) word->SetSigned();
  word = VeriValue::Binary(VERI_OPER_MINUS, std::move(word), VeriValue::FromNumber(range.Low(), width, true), from);
  if (word) word->SetUnsigned();
  return {std::move(word), 0};
}

/// The nets of the bits below `bits`, most significant first.
void low_bits(const VeriValue& word, unsigned bits, Array& nets) {
  for (unsigned bit = std::min(bits, word.Size()); bit-- > 0;) nets.InsertLast(word.GetBit(bit));
}

/// One net per value of the bits from `first` for `count` values: 1 when the word has this value.
void decode(const VeriValue& word, uint64_t first, uint64_t count, ArrayOf<Net>& enables, const VeriTreeNode* from) {
  VeriLogic logic(from);
  unsigned bits = std::min(bits_of(first + count - 1), word.Size());
  Array above;
  for (unsigned bit = bits; bit < word.Size(); bit++) above.InsertLast(word.GetBit(bit));
  Net* fits = logic.Inv(logic.Reduce(above, PRIM_OR));

  // Constant bits of the word need no decoder: they only exclude values.
  std::vector<unsigned> free_bits;
  ArrayOf<Net> inputs;
  uint64_t fixed = 0;
  for (unsigned bit = 0; bit < bits; bit++) {
    Net* net = word.GetBit(bit);
    if (!veri_is_digit(net)) {
      free_bits.push_back(bit);
      inputs.InsertLast(net);
    } else if (net == veri_digit_net(VERI_DIGIT_1)) {
      fixed |= 1ULL << bit;
    }
  }
  uint64_t free_mask = 0;
  for (unsigned bit : free_bits) free_mask |= 1ULL << bit;
  auto matches = [&](uint64_t value) { return bits_of(value) <= bits && (value & ~free_mask) == fixed; };
  auto code_of = [&](uint64_t value) {
    uint64_t code = 0;
    for (unsigned i = 0; i < free_bits.size(); i++) code |= (value >> free_bits[i] & 1) << i;
    return code;
  };

  ArrayOf<Net> outputs(free_bits.empty() ? 1U : 1U << free_bits.size(), nullptr);
  if (free_bits.empty()) {
    outputs.Set(0, veri_digit_net(VERI_DIGIT_1));
  } else if (free_bits.size() == 1) {
    outputs.Set(0, logic.Inv(inputs.At(0)));
    outputs.Set(1, inputs.At(0));
  } else {
    for (uint64_t value = first; value < first + count; value++)
      if (matches(value)) outputs.Set(static_cast<unsigned>(code_of(value)), logic.NewNet());
    logic.netlist()->Decoder(&inputs, &outputs, logic.linefile());
  }
  for (uint64_t value = first; value < first + count; value++)
    enables.InsertLast(matches(value) ? logic.And(outputs.At(static_cast<unsigned>(code_of(value))), fits)
                                      : veri_digit_net(VERI_DIGIT_0));
}

void warn_outside(int64_t index, const VeriRangeConstraint& range, unsigned dimension, const char* name,
                  const VeriTreeNode* from) {
  veri_at(from).Warning("constant index %d falls outside the range [%d:%d] for dimension %d of the array %s",
                        static_cast<int>(index), range.LeftBound(), range.RightBound(), static_cast<int>(dimension),
                        name ? name : "");
}

/// One step through an index list: what stays the same for the whole name.
struct Access {
  const VeriIndices& indices;
  const char* name;
  const VeriTreeNode* from;
};

const VeriRangeConstraint* range_of(const VeriConstraint& constraint, const Access& access) {
  const VeriRangeConstraint* range = constraint.IsRealRange() ? nullptr : constraint.IndexConstraint();
  if (!range) veri_at(access.from).Error("cannot index into non-array %s", access.name ? access.name : "");
  return range;
}

/// Elements from a position on, by the constant bounds of a range or of an indexed part-select. Without value when the
/// bounds are unknown or a message refused them.
struct Part {
  int64_t position;
  unsigned count;
};

std::optional<Part> constant_part(const VeriIndex& index, const VeriRangeConstraint& range, unsigned dimension,
                                  const Access& access) {
  int64_t left = 0;
  int64_t right = 0;
  if (!index.left || !index.right) return std::nullopt;
  if (!index.left->IsConstant() || !index.right->IsConstant()) {
    veri_at(access.from).Error("bounds of a part-select must be constant");
    return std::nullopt;
  }
  if (!index.left->ToInt64(&left) || !index.right->ToInt64(&right)) return std::nullopt;
  if (index.kind != VERI_INDEX_RANGE) {
    int64_t width = right;
    if (width <= 0) {
      veri_at(access.from).Error("the width of a part-select must be positive, not %d", static_cast<int>(width));
      return std::nullopt;
    }
    if (width > veri_max_object_bits) {
      veri_at(access.from).Error("width of a part-select is not known or too large");
      return std::nullopt;
    }
    // The base is the lower index going up and the higher one going down, whichever way the range runs.
    int64_t low = index.kind == VERI_INDEX_UP ? left : left - width + 1;
    int64_t high = low + width - 1;
    left = range.IsUp() ? low : high;
    right = range.IsUp() ? high : low;
  }
  if (left != right && (right > left) != range.IsUp() && range.Length() > 1) {
    veri_at(access.from).Error("part-select direction is opposite from prefix index direction");
    return std::nullopt;
  }
  int64_t count = (left < right ? right - left : left - right) + 1;
  if (count > veri_max_object_bits) {
    veri_object_size_is_supported(static_cast<uint64_t>(count), access.from);
    return std::nullopt;
  }
  for (int64_t bound : {left, right}) {
    if (range.PosOf(bound) >= 0) continue;
    warn_outside(bound, range, dimension, access.name, access.from);
    break;
  }
  bool is_up = range.Length() > 1 ? range.IsUp() : right > left;
  int64_t position = is_up ? left - range.LeftBound() : range.LeftBound() - left;
  return Part{position, static_cast<unsigned>(count)};
}

bool is_variable(const VeriIndex& index) {
  return index.kind != VERI_INDEX_RANGE && index.left && !index.left->IsConstant();
}

/// Where a variable part-select of `width` elements that begins at this base index lies.
int64_t variable_part_position(const VeriIndex& index, const VeriRangeConstraint& range, int64_t base, unsigned width) {
  bool base_is_left = (index.kind == VERI_INDEX_UP) == range.IsUp();
  return open_position(range, base) - (base_is_left ? 0 : static_cast<int64_t>(width) - 1);
}

/// The constant width of a variable part-select; 0 with a message for what is not supported.
unsigned variable_part_width(const VeriIndex& index, const VeriConstraint& constraint, const Access& access) {
  if (constraint.IsUnpacked() || element_of(constraint).TotalBits() != 1) {
    veri_at(access.from)
        .Error("no support for %s (SystemVerilog)", "variable part-select of multi-dimensional arrays.");
    return 0;
  }
  int64_t width = 0;
  const bool is_known = index.right && index.right->IsConstant() && index.right->ToInt64(&width);
  if (is_known && width <= 0) {
    veri_at(access.from).Error("the width of a part-select must be positive, not %d", static_cast<int>(width));
    return 0;
  }
  if (!is_known || width > veri_max_width) {
    veri_at(access.from).Error("width of a part-select is not known or too large");
    return 0;
  }
  return static_cast<unsigned>(width);
}

/// The bases that an index can have and from which a part of this width reaches into the range, as a range of the same
/// direction. Null when there are none.
std::optional<VeriRangeConstraint> reaching_bases(const VeriIndex& index, const VeriRangeConstraint& range,
                                                  unsigned width) {
  Reach reach = reach_of(*index.left);
  bool goes_up = index.kind == VERI_INDEX_UP;
  int64_t low = std::max<int64_t>(reach.low, static_cast<int64_t>(range.Low()) - (goes_up ? width - 1 : 0));
  int64_t high = std::min<int64_t>(reach.high, static_cast<int64_t>(range.High()) + (goes_up ? 0 : width - 1));
  low = std::max<int64_t>(low, std::numeric_limits<int>::min());
  high = std::min<int64_t>(high, std::numeric_limits<int>::max());
  if (low > high) return std::nullopt;
  auto left = static_cast<int>(range.IsUp() ? low : high);
  auto right = static_cast<int>(range.IsUp() ? high : low);
  return VeriRangeConstraint(left, right);
}

// Reading.

OwnedValue read_variable_element(const VeriValue& value, const VeriIndex& index, const VeriConstraint& constraint,
                                 const VeriRangeConstraint& range, const Access& access) {
  Offset offset = offset_in(*index.left, range, access.from);
  if (!offset.word) return nullptr;
  // What lies beyond the range is not known, so that the bits above may be ignored.
  Array selectors;
  low_bits(*offset.word, bits_of(offset.first + range.Length() - 1), selectors);
  std::vector<OwnedValue> inputs(1ULL << selectors.Size());
  unsigned element_size = element_of(constraint).Size();
  for (uint64_t i = 0; i < range.Length(); i++) {
    uint64_t code = offset.first + i;
    if (code >= inputs.size()) break;
    int64_t position = open_position(range, range.Low() + static_cast<int64_t>(i));
    inputs[code] = element_of_value(value, position, element_size);
  }
  return VeriValue::Nto1Mux(selectors, std::move(inputs), access.from);
}

OwnedValue read_variable_part_by_shift(OwnedValue value, const VeriIndex& index, const VeriRangeConstraint& range,
                                       unsigned width, const Access& access) {
  kestrin_debug("Found variable part select. Evaluating with shift.");
  // The lowest bit of the part, counted from the lowest where a part can begin, as a signed number.
  unsigned amount_width = std::max(index.left->Size(), 32U) + 2;
  bool is_signed = index.left->IsSigned();
  OwnedValue base = VeriValue::Adjust(index.left->Copy(), index.left->Size() + (is_signed ? 0 : 1), access.from);
  base->SetSigned();
  base = VeriValue::Adjust(std::move(base), amount_width, access.from);
  int64_t reach = static_cast<int64_t>(width) - 1;
  OwnedValue amount;
  if (range.IsUp()) {
    int64_t high = range.High() + (index.kind == VERI_INDEX_UP ? 0 : reach);
    amount = VeriValue::Binary(VERI_OPER_MINUS, VeriValue::FromNumber(high, amount_width, true), std::move(base),
                               access.from);
  } else {
    int64_t low = range.Low() - (index.kind == VERI_INDEX_UP ? reach : 0);
    amount = VeriValue::Binary(VERI_OPER_MINUS, std::move(base), VeriValue::FromNumber(low, amount_width, true),
                               access.from);
  }
  if (!amount) return nullptr;
  // Below the vector there is room for a part that begins outside.
  std::vector<OwnedValue> padded;
  padded.push_back(std::move(value));
  padded.push_back(VeriValue::Digits(width - 1, VERI_DIGIT_0));
  value = VeriValue::Concat(std::move(padded), access.from);
  if (!value) return nullptr;
  amount->SetUnsigned();
  value = VeriValue::Binary(VERI_OPER_SHIFT_RIGHT, std::move(value), std::move(amount), access.from);
  return VeriValue::Adjust(std::move(value), width, access.from);
}

OwnedValue read_variable_part(const VeriValue& value, const VeriIndex& index, const VeriConstraint& constraint,
                              const VeriRangeConstraint& range, const Access& access) {
  unsigned width = variable_part_width(index, constraint, access);
  if (!width) return nullptr;
  if (kestrin_flag("zelk_dont_use_muxes_for_variable_part_select"))
    return read_variable_part_by_shift(value.Copy(), index, range, width, access);
  kestrin_debug("Found variable part select. Evaluating with muxes.");
  std::optional<VeriRangeConstraint> bases = reaching_bases(index, range, width);
  if (!bases) return VeriValue::Digits(width, VERI_DIGIT_X);
  Offset offset = offset_in(*index.left, *bases, access.from);
  if (!offset.word) return nullptr;
  Array selectors;
  low_bits(*offset.word, bits_of(offset.first + bases->Length() - 1), selectors);
  std::vector<OwnedValue> inputs(1ULL << selectors.Size());
  if (!veri_object_size_is_supported(static_cast<uint64_t>(inputs.size()) * width, access.from)) return nullptr;
  for (uint64_t i = 0; i < bases->Length(); i++) {
    int64_t base = bases->Low() + static_cast<int64_t>(i);
    uint64_t code = offset.first + i;
    if (code < inputs.size())
      inputs[code] = slice_of(value, variable_part_position(index, range, base, width), width, 1);
  }
  return VeriValue::Nto1Mux(selectors, std::move(inputs), access.from);
}

OwnedValue read_single(const VeriValue& value, const VeriIndex& index, const VeriConstraint& constraint,
                       const VeriRangeConstraint& range, unsigned dimension, const Access& access) {
  if (!index.left->IsConstant()) return read_variable_element(value, index, constraint, range, access);
  int64_t number = 0;
  bool is_known = !index.left->HasXZ();
  bool fits = is_known && index.left->ToInt64(&number);
  if (is_known && (!fits || range.PosOf(number) < 0))
    warn_outside(fits ? number : index.left->Integer(), range, dimension, access.name, access.from);
  int64_t position = fits ? range.PosOf(number) : -1;
  return element_of_value(value, position, element_of(constraint).Size());
}
} // namespace

OwnedValue VeriValue::ReadPartial(const VeriValue& value, const VeriConstraint& constraint, const VeriIndices& indices,
                                  const char* name, const VeriTreeNode* from) {
  Access access{indices, name, from};
  const VeriConstraint* level = &constraint;
  const VeriValue* present = &value;
  OwnedValue owned;
  for (unsigned i = 0; i < indices.size(); i++) {
    const VeriIndex& index = indices[i];
    const VeriRangeConstraint* range = range_of(*level, access);
    if (!range || !index.left) return nullptr;
    if (index.kind == VERI_INDEX_SINGLE) {
      owned = read_single(*present, index, *level, *range, i + 1, access);
      if (!owned) return nullptr;
      present = owned.get();
      level = &element_of(*level);
      continue;
    }
    if (is_variable(index)) return read_variable_part(*present, index, *level, *range, access);
    if (index.left->HasXZ() || (index.right && index.right->HasXZ())) {
      std::unique_ptr<VeriConstraint> type = PartialConstraint(constraint, indices);
      return type ? type->CreateXValue(from) : nullptr;
    }
    std::optional<Part> part = constant_part(index, *range, i + 1, access);
    return part ? slice_of(*present, part->position, part->count, element_of(*level).Size()) : nullptr;
  }
  return owned ? std::move(owned) : value.Copy();
}

std::unique_ptr<VeriConstraint> VeriValue::PartialConstraint(const VeriConstraint& constraint,
                                                             const VeriIndices& indices) {
  const VeriConstraint* level = &constraint;
  for (const VeriIndex& index : indices) {
    const VeriRangeConstraint* range = level->IsRealRange() ? nullptr : level->IndexConstraint();
    if (!range) return nullptr;
    if (index.kind == VERI_INDEX_SINGLE) {
      level = &element_of(*level);
      continue;
    }
    int64_t left = 0;
    int64_t right = 0;
    if (!index.right || !index.right->ToInt64(&right)) return nullptr;
    bool has_left = index.left && index.left->ToInt64(&left);
    if (index.kind == VERI_INDEX_RANGE)
      return has_left ? level->Slice(static_cast<int>(left), static_cast<int>(right)) : nullptr;
    if (right <= 0 || right > veri_max_object_bits) return nullptr;
    // An indexed part-select of unknown place is as wide as any other.
    if (!has_left) left = range->Low();
    int64_t low = index.kind == VERI_INDEX_UP || !has_left ? left : left - right + 1;
    int64_t high = low + right - 1;
    return range->IsUp() ? level->Slice(static_cast<int>(low), static_cast<int>(high))
                         : level->Slice(static_cast<int>(high), static_cast<int>(low));
  }
  return level->Copy();
}

// Writing.

namespace {
/// Reports an index that reaches nothing or not all of a range. False when it reaches nothing.
bool check_reach(const VeriValue& index, const VeriRangeConstraint& range, unsigned dimension, const char* name,
                 const VeriTreeNode* from) {
  Reach reach = reach_of(index);
  if (reach.high < range.Low() || reach.low > range.High()) {
    veri_at(from).Warning("non-constant index always falls outside the range [%d:%d] for dimension %d of the array %s",
                          range.LeftBound(), range.RightBound(), static_cast<int>(dimension), name ? name : "");
    return false;
  }
  if (reach.high < range.High()) veri_at(from).Warning("index does not have enough bits to address entire range.");
  return true;
}

/// One enable per index of a range, by position.
bool decode_range(const VeriValue& index, const VeriRangeConstraint& range, ArrayOf<Net>& enables,
                  const VeriTreeNode* from) {
  Offset offset = offset_in(index, range, from);
  if (!offset.word) return false;
  ArrayOf<Net> ascending;
  decode(*offset.word, offset.first, range.Length(), ascending, from);
  for (unsigned position = 0; position < range.Length(); position++)
    enables.InsertLast(ascending.At(range.IsUp() ? position : range.Length() - 1 - position));
  return true;
}
} // namespace

unsigned VeriValue::DecodeVariableIndex(const VeriValue& index, const VeriConstraint& constraint, ArrayOf<Net>& enables,
                                        const char* name, unsigned dimension, const VeriTreeNode* from) {
  const VeriRangeConstraint* range = constraint.IndexConstraint();
  if (!range || !check_reach(index, *range, dimension, name, from)) return 0;
  return decode_range(index, *range, enables, from);
}

namespace {
OwnedValue assign_level(OwnedValue value, const VeriConstraint& constraint, unsigned depth, const VeriValue& part,
                        Net* enable, const Access& access);

OwnedValue guarded(OwnedValue value, OwnedValue changed, Net* enable, const VeriTreeNode* from) {
  return enable ? VeriValue::Select(enable, std::move(changed), std::move(value), from) : std::move(changed);
}

OwnedValue assign_constant_index(OwnedValue value, const VeriConstraint& constraint, const VeriRangeConstraint& range,
                                 unsigned depth, const VeriValue& part, Net* enable, const Access& access) {
  const VeriValue& index = *access.indices[depth].left;
  if (index.HasXZ()) return value;
  int64_t number = 0;
  bool fits = index.ToInt64(&number);
  int64_t position = fits ? range.PosOf(number) : -1;
  if (position < 0) {
    warn_outside(fits ? number : index.Integer(), range, depth + 1, access.name, access.from);
    return value;
  }
  const VeriConstraint& element = element_of(constraint);
  bool is_whole = !enable && depth + 1 == access.indices.size() && !part.IsAggregate() && !value->IsAggregate();
  if (is_whole) return VeriValue::AssignIndexed(std::move(value), position, element.Size(), part.Copy());
  OwnedValue old = value->IsAggregate() ? value->TakeElement(static_cast<unsigned>(position))
                                        : element_of_value(*value, position, element.Size());
  OwnedValue changed = assign_level(std::move(old), element, depth + 1, part, enable, access);
  return VeriValue::AssignIndexed(std::move(value), position, element.Size(), std::move(changed));
}

OwnedValue assign_variable_index(OwnedValue value, const VeriConstraint& constraint, const VeriRangeConstraint& range,
                                 unsigned depth, const VeriValue& part, Net* enable, const Access& access) {
  ArrayOf<Net> enables;
  if (!VeriValue::DecodeVariableIndex(*access.indices[depth].left, constraint, enables, access.name, depth + 1,
                                      access.from))
    return value;
  VeriLogic logic(access.from);
  const VeriConstraint& element = element_of(constraint);
  if (!value->IsAggregate()) value = VeriValue::ToNonConst(std::move(value), access.from);
  for (unsigned position = 0; position < range.Length() && value; position++) {
    Net* hit = enable ? logic.And(enable, enables.At(position)) : enables.At(position);
    if (hit == veri_digit_net(VERI_DIGIT_0)) continue;
    OwnedValue old;
    if (VeriAggregateValue* aggregate = value->AsAggregate()) {
      old = aggregate->TakeElement(position);
    } else {
      Array nets(element.Size());
      auto low = static_cast<unsigned>(low_bit(*value, position, 1, element.Size()));
      for (unsigned bit = element.Size(); bit-- > 0;) nets.InsertLast(value->GetBit(low + bit));
      old = std::make_unique<VeriNonConstVal>(nets);
    }
    OwnedValue changed = assign_level(std::move(old), element, depth + 1, part, hit, access);
    if (!changed) continue;
    if (VeriAggregateValue* aggregate = value->AsAggregate()) {
      aggregate->SetElement(position, std::move(changed));
      continue;
    }
    auto low = static_cast<unsigned>(low_bit(*value, position, 1, element.Size()));
    for (unsigned bit = 0; bit < element.Size(); bit++) value->SetBit(low + bit, changed->GetBit(bit));
  }
  return VeriValue::ToConst(std::move(value));
}

/// Each bit takes the part's bit that falls on it for one of the places where the part can begin.
OwnedValue assign_variable_part(OwnedValue value, const VeriConstraint& constraint, const VeriRangeConstraint& range,
                                unsigned depth, const VeriValue& part, Net* enable, const Access& access) {
  const VeriIndex& index = access.indices[depth];
  unsigned width = variable_part_width(index, constraint, access);
  if (!width) return value;
  if (!veri_object_size_is_supported(static_cast<uint64_t>(width) * range.Length(), access.from)) return value;
  OwnedValue fitted = VeriValue::Adjust(part.Copy(), width, access.from);
  std::optional<VeriRangeConstraint> bases = reaching_bases(index, range, width);
  ArrayOf<Net> enables;
  if (!fitted || !check_reach(*index.left, range, depth + 1, access.name, access.from) || !bases ||
      !decode_range(*index.left, *bases, enables, access.from))
    return value;
  VeriLogic logic(access.from);
  value = VeriValue::ToNonConst(std::move(value), access.from);
  unsigned size = value->Size();
  // The part's position grows with that of its base, and so bit `source` of it falls on this bit for one base i each.
  int64_t first_position = variable_part_position(index, range, bases->LeftBound(), width);
  for (unsigned bit = 0; bit < size; bit++) {
    ArrayOf<Net> hits;
    ArrayOf<Net> data;
    for (unsigned source = 0; source < width; source++) {
      int64_t i = static_cast<int64_t>(size) - width - bit + source - first_position;
      if (i < 0 || i >= bases->Length()) continue;
      Net* hit = enables.At(static_cast<unsigned>(i));
      if (hit == veri_digit_net(VERI_DIGIT_0)) continue;
      hits.InsertLast(hit);
      data.InsertLast(logic.And(hit, fitted->GetBit(source)));
    }
    if (!hits.Size()) continue;
    Net* hit = logic.Reduce(hits, PRIM_OR);
    if (enable) hit = logic.And(enable, hit);
    value->SetBit(bit, logic.Mux(value->GetBit(bit), logic.Reduce(data, PRIM_OR), hit));
  }
  return VeriValue::ToConst(std::move(value));
}

OwnedValue assign_level(OwnedValue value, const VeriConstraint& constraint, unsigned depth, const VeriValue& part,
                        Net* enable, const Access& access) {
  if (!value) return nullptr;
  if (depth == access.indices.size()) {
    OwnedValue changed = part.Copy();
    if (!changed->IsAggregate()) changed = VeriValue::Adjust(std::move(changed), value->Size(), access.from);
    return guarded(std::move(value), std::move(changed), enable, access.from);
  }
  const VeriIndex& index = access.indices[depth];
  const VeriRangeConstraint* range = range_of(constraint, access);
  if (!range || !index.left) return value;
  if (index.kind == VERI_INDEX_SINGLE) {
    return index.left->IsConstant()
               ? assign_constant_index(std::move(value), constraint, *range, depth, part, enable, access)
               : assign_variable_index(std::move(value), constraint, *range, depth, part, enable, access);
  }
  if (is_variable(index))
    return assign_variable_part(std::move(value), constraint, *range, depth, part, enable, access);
  std::optional<Part> place = constant_part(index, *range, depth + 1, access);
  if (!place) return value;
  OwnedValue changed =
      VeriValue::AssignSliced(value->Copy(), place->position, place->count, element_of(constraint).Size(), part.Copy());
  return guarded(std::move(value), std::move(changed), enable, access.from);
}
} // namespace

OwnedValue VeriValue::AssignPartial(OwnedValue value, const VeriConstraint& constraint, const VeriIndices& indices,
                                    OwnedValue part, const char* name, const VeriTreeNode* from) {
  if (!value || !part) return value;
  bool is_signed = value->IsSigned();
  value = assign_level(std::move(value), constraint, 0, *part, nullptr, Access{indices, name, from});
  if (value) is_signed ? value->SetSigned() : value->SetUnsigned();
  return value;
}
