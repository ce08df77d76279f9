// System tasks: memory files are read, messages of the user are formatted (IEEE 1364-2005 17.1 and 17.2.9) and
// reported, and all other tasks are of no effect in hardware.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <optional>
#include <string_view>

#include "util/services.h"
#include "verilog/vericonstraint.h"
#include "verilog/veridataflow.h"
#include "verilog/verielabstate.h"
#include "verilog/verimemoryfile.h"
#include "verilog/verimodule.h"
#include "verilog/veristatement.h"

namespace {

// Numbers as text. Bits stand most significant first, as 0, 1, x and z.

/// Wider numbers print as hexadecimal, in time that grows with the width only.
constexpr size_t max_decimal_width = 4096;
constexpr int max_columns = 4096;
constexpr int max_precision = 100;

/// What stands for digits of which some (X, Z) or all (x, z) are not known.
std::optional<char> UnknownDigit(std::string_view bits) {
  auto all = [&](char c) { return bits.find_first_not_of(c) == std::string_view::npos; };
  if (bits.find('x') != std::string_view::npos) return all('x') ? 'x' : 'X';
  if (bits.find('z') != std::string_view::npos) return all('z') ? 'z' : 'Z';
  return std::nullopt;
}

unsigned NumberOf(std::string_view bits) {
  unsigned number = 0;
  for (char bit : bits) number = number << 1 | (bit == '1');
  return number;
}

std::string InDigits(std::string_view bits, size_t bits_per_digit) {
  std::string text;
  size_t size = bits.size() % bits_per_digit;
  if (!size) size = bits_per_digit;
  for (; !bits.empty(); bits.remove_prefix(size), size = bits_per_digit) {
    std::string_view group = bits.substr(0, size);
    text.push_back(UnknownDigit(group).value_or("0123456789abcdef"[NumberOf(group)]));
  }
  return text;
}

/// The two's complement of known bits.
std::string Negated(std::string bits) {
  size_t last_one = bits.rfind('1');
  for (size_t i = 0; last_one != std::string::npos && i < last_one; i++) bits[i] = bits[i] == '1' ? '0' : '1';
  return bits;
}

std::string InDecimal(const std::string& bits, bool is_signed) {
  if (std::optional<char> unknown = UnknownDigit(bits)) return std::string(1, *unknown);
  if (bits.size() > max_decimal_width) return "'h" + InDigits(bits, 4);
  bool is_negative = is_signed && !bits.empty() && bits[0] == '1';
  std::vector<uint32_t> limbs = {0}; // of nine decimal digits, the least significant first
  for (char bit : is_negative ? Negated(bits) : bits) {
    uint32_t carry = bit == '1';
    for (uint32_t& limb : limbs) {
      limb = 2 * limb + carry;
      carry = limb >= 1000000000;
      if (carry) limb -= 1000000000;
    }
    if (carry) limbs.push_back(carry);
  }
  std::string text = (is_negative ? "-" : "") + std::to_string(limbs.back());
  for (size_t i = limbs.size() - 1; i-- > 0;) {
    std::string digits = std::to_string(limbs[i]);
    text += std::string(9 - digits.size(), '0') + digits;
  }
  return text;
}

/// The columns that any number of this width takes in decimal.
size_t DecimalColumns(size_t width, bool is_signed) {
  auto magnitude = static_cast<double>(is_signed && width ? width - 1 : width);
  return static_cast<size_t>(magnitude * std::log10(2.0)) + (is_signed ? 2 : 1);
}

/// Eight bits a character; zero bytes are no characters.
std::string InCharacters(const std::string& bits) {
  std::string padded = std::string((8 - bits.size() % 8) % 8, '0') + bits;
  std::string text;
  for (size_t at = 0; at < padded.size(); at += 8)
    if (unsigned c = NumberOf(std::string_view(padded).substr(at, 8))) text.push_back(static_cast<char>(c));
  return text;
}

std::string InReal(double number, char letter, int precision) {
  char text[512];
  int size = letter == 'e'   ? snprintf(text, sizeof text, "%.*e", precision, number)
             : letter == 'f' ? snprintf(text, sizeof text, "%.*f", precision, number)
                             : snprintf(text, sizeof text, "%.*g", precision, number);
  return {text, static_cast<size_t>(size)};
}

// Formats.

/// A `%-08.3d` of a format.
struct Directive {
  bool is_left = false; // justified
  bool is_zero = false; // a leading 0: filled with zeros, and without columns the shortest form
  int columns = 0;      // 0 without
  int precision = 6;
  char letter = '\0'; // in lower case; 0 at the end of the format
  size_t size = 0;    // characters in the format

  explicit Directive(std::string_view text);
  bool TakesArgument() const { return letter && strchr("dhxobcstefgvpuz", letter); }
  std::string Print(OwnedValue value) const;

private:
  std::string Pad(std::string text, size_t natural_columns, char fill = ' ') const;
  std::string PrintDigits(const std::string& bits, size_t bits_per_digit) const;
};

Directive::Directive(std::string_view text) {
  size_t at = 1;
  auto peek = [&] { return at < text.size() ? text[at] : '\0'; };
  auto number = [&](int limit) {
    int value = 0;
    for (; peek() >= '0' && peek() <= '9'; at++) value = std::min(value * 10 + (peek() - '0'), limit);
    return value;
  };
  for (; peek() == '-' || (peek() == '0' && !is_zero); at++) (peek() == '-' ? is_left : is_zero) = true;
  columns = number(max_columns);
  if (peek() == '.') {
    at++;
    precision = number(max_precision);
  }
  letter = peek();
  if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
  size = at + (letter ? 1 : 0);
}

std::string Directive::Pad(std::string text, size_t natural_columns, char fill) const {
  size_t wanted = columns ? static_cast<size_t>(columns) : is_zero ? 0 : natural_columns;
  if (text.size() >= wanted) return text;
  if (is_left) return text + std::string(wanted - text.size(), ' ');
  if (is_zero) fill = '0';
  size_t behind_sign = fill == '0' && !text.empty() && text[0] == '-' ? 1 : 0;
  return text.insert(behind_sign, wanted - text.size(), fill);
}

std::string Directive::PrintDigits(const std::string& bits, size_t bits_per_digit) const {
  std::string text = InDigits(bits, bits_per_digit);
  size_t natural_columns = text.size();
  if (is_zero || columns) text.erase(0, std::min(text.find_first_not_of('0'), text.size() - 1));
  return Pad(std::move(text), natural_columns, is_left ? ' ' : '0');
}

std::string Directive::Print(OwnedValue value) const {
  if (!value->IsConstant()) return "<non-constant>";
  bool is_real = value->IsReal();
  if (letter == 'e' || letter == 'f' || letter == 'g' || (is_real && letter == 'p'))
    return Pad(InReal(value->Real(), letter == 'p' ? 'g' : letter, precision), 0);
  if (is_real) value = VeriValue::ToVectorValue(std::move(value));
  value = VeriValue::Pack(std::move(value));
  std::string bits = value->BinaryString();
  bool is_signed = value->IsSigned();
  switch (letter) {
  case 'h':
  case 'x': return PrintDigits(bits, 4);
  case 'o': return PrintDigits(bits, 3);
  case 'b':
  case 'v': return PrintDigits(bits, 1);
  case 'c': return std::string(1, static_cast<char>(value->Integer()));
  case 's': return Pad(InCharacters(bits), bits.size() / 8);
  case 't': return Pad(InDecimal(bits, is_signed), 20);
  case 'p': return value->IsString() ? InCharacters(bits) : InDecimal(bits, is_signed);
  case 'u':
  case 'z': return InCharacters(bits);
  default: return Pad(InDecimal(bits, is_signed), DecimalColumns(bits.size(), is_signed));
  }
}

/// The module under elaboration and the blocks in it.
std::string PathOfElaboration() {
  const VeriElaborationState* state = VeriNode::ElabState();
  if (!state || !state->Module()) return {};
  std::string blocks = state->NamedPath().ToString();
  return state->Module()->Name() + (blocks.empty() ? blocks : "." + blocks);
}

/// The arguments of a task, one after the other.
class Arguments {
public:
  Arguments(const VeriExpressions* list, unsigned first, VeriDataFlow* flow)
      : _list(list), _next(first), _end(list ? list->Size() : 0), _flow(flow) {}
  bool IsAtEnd() const { return _next >= _end; }
  /// Null for an empty argument, and after an error.
  OwnedValue Take() {
    VeriExpression* arg = _list->At(_next++);
    return arg ? arg->Evaluate(_flow) : nullptr;
  }
  /// Prints the rest. A string is the format of what follows it; other arguments print as decimals.
  std::string Print();

private:
  std::string PrintFormat(std::string_view format);
  const VeriExpressions* _list;
  unsigned _next;
  unsigned _end;
  VeriDataFlow* _flow;
};

std::string Arguments::Print() {
  std::string text;
  while (!IsAtEnd()) {
    OwnedValue value = Take();
    if (!value)
      text.push_back(' ');
    else if (value->IsString() && value->IsConstant())
      text += PrintFormat(InCharacters(value->BinaryString()));
    else
      text += Directive(value->IsReal() ? "%g" : "%d").Print(std::move(value));
  }
  return text;
}

std::string Arguments::PrintFormat(std::string_view format) {
  std::string text;
  while (!format.empty()) {
    size_t plain = std::min(format.find('%'), format.size());
    text += format.substr(0, plain);
    format.remove_prefix(plain);
    if (format.empty()) break;
    Directive directive(format);
    if (directive.letter == '%') {
      text.push_back('%');
    } else if (directive.letter == 'm') {
      text += PathOfElaboration();
    } else if (directive.letter == 'l') {
      text += "work." + PathOfElaboration();
    } else if (!directive.TakesArgument() || IsAtEnd()) {
      text += format.substr(0, directive.size);
    } else if (OwnedValue value = Take()) {
      text += directive.Print(std::move(value));
    }
    format.remove_prefix(directive.size);
  }
  return text;
}

/// The memory that an argument names as a whole: an array of vectors with one dimension. Null for anything else.
VeriIdDef* MemoryOf(VeriExpression* arg) {
  auto* name = dynamic_cast<VeriFullName*>(arg);
  auto* selected = dynamic_cast<VeriSelectedName*>(arg);
  if (!name || (selected && selected->IsStructMember())) return nullptr;
  VeriIdDef* id = name->EvaluateId();
  const VeriConstraint* type = id && id->IsVar() ? id->GetConstraint() : nullptr;
  if (!type || !type->IsArrayConstraint() || type->IsDynamicArray() || type->NumUnpacked() != 1) return nullptr;
  const VeriConstraint* element = type->ElementConstraint();
  return element && element->IsPacked() && !element->IsRealRange() ? id : nullptr;
}

/// The characters of a constant string, or of a constant vector that holds some.
std::optional<std::string> StringOf(VeriExpression* arg, VeriDataFlow* flow) {
  OwnedValue value = arg ? arg->Evaluate(flow) : nullptr;
  if (!value || !value->IsConstant() || value->IsInt() || value->IsReal() || value->IsAggregate()) return std::nullopt;
  if (value->HasXZ()) return std::nullopt;
  std::string text = InCharacters(value->BinaryString());
  text.erase(0, text.find_first_not_of(' ')); // a name in a wider variable
  if (text.empty()) return std::nullopt;
  return text;
}

std::optional<int64_t> NumberOf(VeriExpression* arg, VeriDataFlow* flow) {
  OwnedValue value = arg ? arg->Evaluate(flow) : nullptr;
  int64_t number = 0;
  if (!value || !value->ToInt64(&number)) return std::nullopt;
  return number;
}

} // namespace

std::string VeriSystemTaskEnable::Format(VeriDataFlow* flow, unsigned first) {
  return Arguments(_args, first, flow).Print();
}

void VeriSystemTaskEnable::Execute(VeriDataFlow* flow) {
  if (_name == "$readmemb" || _name == "$readmemh") {
    if (!kestrin_flag("zelk_dont_support_readmem")) return ReadMemory(flow, _name == "$readmemb");
  } else if (_name == "$display") {
    return Display(flow);
  } else if (_name == "$fatal" || _name == "$error" || _name == "$warning" || _name == "$info") {
    return Report(flow);
  }
  Warning("system task ignored");
}

void VeriSystemTaskEnable::ReadMemory(VeriDataFlow* flow, bool is_binary) {
  const unsigned min_args = 2;
  const unsigned max_args = 4;
  if (NumOfArgs() < min_args || NumOfArgs() > max_args)
    return Error("%s expects at least %d arguments but no more than %d", _name.c_str(), static_cast<int>(min_args),
                 static_cast<int>(max_args));
  auto refuse = [&](int position, const char* kind) {
    Error("argument %d to %s must be a %s", position, _name.c_str(), kind);
  };
  std::optional<std::string> name = StringOf(_args->At(0), flow);
  if (!name) return refuse(1, "string");
  VeriIdDef* memory = MemoryOf(_args->At(1));
  if (!memory) return refuse(2, "memory identifier");
  std::optional<int64_t> bounds[2];
  for (unsigned i = 2; i < NumOfArgs(); i++) {
    bounds[i - 2] = NumberOf(_args->At(i), flow);
    if (!bounds[i - 2]) return refuse(static_cast<int>(i) + 1, "constant");
  }
  const char* source = LineFile::GetFileName(Linefile());
  FoundFile found = KernelServices::Get().FindFile(name->c_str(), source, source);
  if (!found.full) return Error("cannot open file %s", name->c_str());
  const char* reported = found.reported ? found.reported.get() : name->c_str();
  AddAdditionalDependency(reported);
  auto file = VeriMemoryFile::ReadMemoryFile(found.full.get(), reported, is_binary, this);
  if (file) file->LoadMemory(memory, flow, bounds[0], bounds[1], this);
}

void VeriSystemTaskEnable::Display(VeriDataFlow* flow) {
  std::string text = Format(flow, 0);
  if (!ElabState()->IsNewReport()) return;
  auto mentions = [&](const char* word) { return text.find(word) != std::string::npos; };
  if (!mentions("Info:") && mentions("Warning:"))
    Warning("verilog $display call: %s", text.c_str());
  else if (!mentions("Info:") && mentions("Error:"))
    Error("verilog $display call: %s", text.c_str());
  else
    Info("verilog $display call: %s", text.c_str());
}

void VeriSystemTaskEnable::Report(VeriDataFlow* flow) {
  // $fatal may begin with the number that it ends a simulation with (IEEE 1800-2005 22.10).
  bool has_number = false;
  if (_name == "$fatal" && NumOfArgs()) {
    OwnedValue first = _args->GetFirst() ? _args->GetFirst()->Evaluate(flow) : nullptr;
    has_number = first && !first->IsString();
  }
  std::string text = Format(flow, has_number ? 1 : 0);
  if (!ElabState()->IsNewReport()) return;
  if (_name == "$fatal")
    Error("$fatal: %s", text.c_str());
  else if (_name == "$error")
    Error("$error: %s", text.c_str());
  else if (_name == "$info")
    Info("$info: %s", text.c_str());
  else if (AttributeValue("critical", 0))
    Warning("critical $warning: %s", text.c_str());
  else
    Warning("$warning: %s", text.c_str());
}
