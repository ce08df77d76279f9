// Four-state arithmetic digit by digit, as IEEE 1364-2005 clause 5.1 words it: slow, obvious, and with nothing in
// common with the values that are checked against it.
#ifndef TESTS_VERILOG_VALUE_MODEL_H
#define TESTS_VERILOG_VALUE_MODEL_H

#include <algorithm>
#include <string>

#include "verilog/verioper.h"

/// Digits, the least significant first.
struct ModelValue {
  std::string digits;
  bool is_signed = false;

  size_t width() const { return digits.size(); }
  bool has_unknown() const { return digits.find_first_of("xz") != std::string::npos; }
  bool is_negative() const { return is_signed && digits.back() == '1'; }
  /// Most significant first, as a literal.
  std::string text() const { return {digits.rbegin(), digits.rend()}; }
  ModelValue extended(size_t to) const {
    char top = digits.back();
    char fill = is_signed || top == 'x' || top == 'z' ? top : '0';
    ModelValue result = *this;
    result.digits.resize(to, fill);
    return result;
  }
};

class Model {
public:
  static ModelValue binary(veri_oper oper, ModelValue a, ModelValue b) {
    switch (veri_oper_class(oper)) {
    case VeriOperClass::SHIFT: return shift(oper, a, b);
    case VeriOperClass::LOGICAL: return bit(logical(oper, truth(a), truth(b)));
    default: break;
    }
    a.is_signed = b.is_signed = a.is_signed && b.is_signed;
    size_t width = std::max(a.width(), b.width());
    a = a.extended(width);
    b = b.extended(width);
    switch (veri_oper_class(oper)) {
    case VeriOperClass::BITWISE:
      for (size_t i = 0; i < width; i++) a.digits[i] = gate(oper, a.digits[i], b.digits[i]);
      return a;
    case VeriOperClass::EQUALITY: return bit(equal(oper, a, b));
    case VeriOperClass::RELATIONAL: return bit(relation(oper, a, b));
    default: return arithmetic(oper, a, b);
    }
  }

  static ModelValue unary(veri_oper oper, ModelValue a) {
    bool unknown = a.has_unknown();
    size_t ones = static_cast<size_t>(std::count(a.digits.begin(), a.digits.end(), '1'));
    size_t zeros = static_cast<size_t>(std::count(a.digits.begin(), a.digits.end(), '0'));
    auto known = [](bool is_known, bool value) { return bit(!is_known ? 'x' : value ? '1' : '0'); };
    switch (oper) {
    case VERI_OPER_REDUCE_AND: return known(zeros || !unknown, !zeros);
    case VERI_OPER_REDUCE_NAND: return known(zeros || !unknown, zeros);
    case VERI_OPER_REDUCE_OR: return known(ones || !unknown, ones);
    case VERI_OPER_REDUCE_NOR: return known(ones || !unknown, !ones);
    case VERI_OPER_REDUCE_XOR: return known(!unknown, ones % 2);
    case VERI_OPER_REDUCE_XNOR: return known(!unknown, ones % 2 == 0);
    case VERI_OPER_LOG_NOT: return known(ones || !unknown, !ones);
    case VERI_OPER_NOT:
      for (char& digit : a.digits) digit = digit == '0' ? '1' : digit == '1' ? '0' : 'x';
      return a;
    case VERI_OPER_UNARY_MINUS:
      if (unknown) return all_x(a);
      return negated(a);
    default: return a;
    }
  }

private:
  static ModelValue bit(char digit) { return {std::string(1, digit), false}; }
  static ModelValue all_x(ModelValue a) {
    std::fill(a.digits.begin(), a.digits.end(), 'x');
    return a;
  }
  static char truth(const ModelValue& a) {
    if (a.digits.find('1') != std::string::npos) return '1';
    return a.has_unknown() ? 'x' : '0';
  }
  static char logical(veri_oper oper, char a, char b) {
    char decides = oper == VERI_OPER_LOG_AND ? '0' : '1';
    if (a == decides || b == decides) return decides;
    return a == 'x' || b == 'x' ? 'x' : a;
  }
  static char gate(veri_oper oper, char a, char b) {
    bool unknown = a == 'x' || a == 'z' || b == 'x' || b == 'z';
    switch (oper) {
    case VERI_OPER_AND: return a == '0' || b == '0' ? '0' : unknown ? 'x' : '1';
    case VERI_OPER_OR: return a == '1' || b == '1' ? '1' : unknown ? 'x' : '0';
    case VERI_OPER_XOR: return unknown ? 'x' : a == b ? '0' : '1';
    default: return unknown ? 'x' : a == b ? '1' : '0';
    }
  }
  static char equal(veri_oper oper, const ModelValue& a, const ModelValue& b) {
    bool is_case = oper == VERI_OPER_CASE_EQ || oper == VERI_OPER_CASE_NE;
    bool is_wild = oper == VERI_OPER_WILD_EQ || oper == VERI_OPER_WILD_NE;
    bool negated = oper == VERI_OPER_NE || oper == VERI_OPER_CASE_NE || oper == VERI_OPER_WILD_NE;
    char result = '1';
    for (size_t i = 0; i < a.width(); i++) {
      char x = a.digits[i];
      char y = b.digits[i];
      if (is_wild && (y == 'x' || y == 'z')) continue;
      bool unknown = x == 'x' || x == 'z' || y == 'x' || y == 'z';
      if (is_case ? x != y : !unknown && x != y) return negated ? '1' : '0';
      if (!is_case && unknown) result = 'x';
    }
    return result == 'x' ? 'x' : negated ? '0' : '1';
  }
  static bool less(const ModelValue& a, const ModelValue& b) {
    if (a.is_negative() != b.is_negative()) return a.is_negative();
    return a.text() < b.text();
  }
  static char relation(veri_oper oper, const ModelValue& a, const ModelValue& b) {
    if (a.has_unknown() || b.has_unknown()) return 'x';
    switch (oper) {
    case VERI_OPER_LT: return less(a, b) ? '1' : '0';
    case VERI_OPER_GT: return less(b, a) ? '1' : '0';
    case VERI_OPER_LE: return less(b, a) ? '0' : '1';
    default: return less(a, b) ? '0' : '1';
    }
  }
  static ModelValue shift(veri_oper oper, const ModelValue& a, const ModelValue& amount) {
    if (amount.has_unknown()) return all_x(a);
    size_t distance = 0;
    for (size_t i = amount.width(); i-- > 0;)
      distance = std::min<size_t>(2 * distance + (amount.digits[i] == '1'), a.width());
    bool right = oper == VERI_OPER_SHIFT_RIGHT || oper == VERI_OPER_ARITH_SHIFT_RIGHT;
    char fill = oper == VERI_OPER_ARITH_SHIFT_RIGHT && a.is_signed ? a.digits.back() : '0';
    ModelValue result = a;
    for (size_t i = 0; i < a.width(); i++) {
      if (right)
        result.digits[i] = i + distance < a.width() ? a.digits[i + distance] : fill;
      else
        result.digits[i] = i >= distance ? a.digits[i - distance] : '0';
    }
    return result;
  }

  static ModelValue added(ModelValue a, const ModelValue& b, bool carry) {
    for (size_t i = 0; i < a.width(); i++) {
      int sum = (a.digits[i] == '1') + (b.digits[i] == '1') + carry;
      a.digits[i] = sum % 2 ? '1' : '0';
      carry = sum > 1;
    }
    return a;
  }
  static ModelValue inverted(ModelValue a) {
    for (char& digit : a.digits) digit = digit == '1' ? '0' : '1';
    return a;
  }
  static ModelValue negated(const ModelValue& a) {
    ModelValue nothing{std::string(a.width(), '0'), a.is_signed};
    return added(nothing, inverted(a), true);
  }
  static ModelValue multiplied(const ModelValue& a, const ModelValue& b) {
    ModelValue sum{std::string(a.width(), '0'), a.is_signed};
    ModelValue term = a;
    for (size_t i = 0; i < a.width(); i++) {
      if (b.digits[i] == '1') sum = added(sum, term, false);
      term = added(term, term, false);
    }
    return sum;
  }
  /// Division of magnitudes, one digit of the quotient at a time.
  static void divided(const ModelValue& a, const ModelValue& b, ModelValue& quotient, ModelValue& remainder) {
    quotient = remainder = ModelValue{std::string(a.width(), '0'), false};
    ModelValue divisor{b.digits, false};
    for (size_t i = a.width(); i-- > 0;) {
      bool lost = remainder.digits.back() == '1';
      remainder = added(remainder, remainder, false);
      remainder.digits[0] = a.digits[i];
      if (!lost && less(remainder, divisor)) continue;
      remainder = added(remainder, inverted(divisor), true);
      quotient.digits[i] = '1';
    }
  }
  static ModelValue arithmetic(veri_oper oper, const ModelValue& a, const ModelValue& b) {
    if (a.has_unknown() || b.has_unknown()) return all_x(a);
    if (oper == VERI_OPER_PLUS) return added(a, b, false);
    if (oper == VERI_OPER_MINUS) return added(a, inverted(b), true);
    if (oper == VERI_OPER_MULTIPLY) return multiplied(a, b);
    if (b.digits.find('1') == std::string::npos) return all_x(a);
    ModelValue quotient;
    ModelValue remainder;
    divided(a.is_negative() ? negated(a) : a, b.is_negative() ? negated(b) : b, quotient, remainder);
    ModelValue result = oper == VERI_OPER_DIVIDE ? quotient : remainder;
    bool negative = oper == VERI_OPER_DIVIDE ? a.is_negative() != b.is_negative() : a.is_negative();
    result.is_signed = a.is_signed;
    return negative ? negated(result) : result;
  }
};

#endif
