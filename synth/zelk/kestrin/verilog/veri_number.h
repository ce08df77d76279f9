// The reading of based number literals: from the text that the grammar joins of size, base and digits to bits.
#ifndef KESTRIN_VERILOG_VERI_NUMBER_H
#define KESTRIN_VERILOG_VERI_NUMBER_H

#include <vector>

#include "util/linefile.h"

/// The bits of a literal, lowest first, in three planes: value, x and z. A bit is set in at most one of them. Only bits
/// that the digits tell are stored, so that a wide literal of few digits is small.
class VeriLiteralBits {
public:
  unsigned Width() const { return _width; }
  /// Whether the text told the width; 32 otherwise, 1 for a literal without base.
  bool IsSized() const { return _is_sized; }
  bool IsSigned() const { return _is_signed; }
  /// 'b', 'o', 'd' or 'h'; 0 for a literal without base.
  char Base() const { return _base; }
  bool Value(unsigned bit) const { return bit < _value.size() && _value[bit]; }
  bool X(unsigned bit) const { return Unknown(_x, 'x', bit); }
  bool Z(unsigned bit) const { return Unknown(_z, 'z', bit); }
  bool HasX() const { return !_x.empty(); }
  bool HasZ() const { return !_z.empty(); }

private:
  friend class VeriLiteralReader;
  /// Above the digits read an unknown highest digit goes on; a plane ends with its own highest digit.
  bool Unknown(const std::vector<bool>& plane, char kind, unsigned bit) const {
    if (bit < plane.size()) return plane[bit];
    return _extension == kind && bit >= _value.size() && bit < _width;
  }
  unsigned _width = 32;
  bool _is_sized = false;
  bool _is_signed = false;
  char _base = 0;
  char _extension = 0; // 'x' or 'z' when the highest digit goes on to the width
  std::vector<bool> _value;
  std::vector<bool> _x; // empty without such digits
  std::vector<bool> _z;
};

/// Reads `4'b10x1`, `'hFF`, `16'sd 5`, `'z`. White space and underscores count for nothing, nor does the case of
/// letters. Mistakes, truncation and extension are messages at `linefile`.
VeriLiteralBits veri_read_literal(const char* text, linefile_type linefile);

/// Whether the reading of a sized literal has nothing to report: all digits are numbers of the base, and the size has
/// room for the number. A quick answer for nearly all literals; "no" just means that it was not obvious.
bool veri_literal_fits(unsigned size, const char* base, const char* digits);

#endif
