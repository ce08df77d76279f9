// Names for the modules of a design.
#include "unit_result.h"

#include <algorithm>
#include <cstdio>
#include <set>

#include "htl.h"

namespace {

/// Longer names become a hash, which tools and people bear better.
constexpr size_t MAX_SUFFIX = 60;

using VARIANTS = std::vector<UNIT_RESULT*>;

const std::vector<UNIT_PARAMETER>& parameters_of(const UNIT_RESULT& result) {
  return result.used_parameters.empty() ? result.parameters : result.used_parameters;
}

std::string value_of(const UNIT_RESULT& result, const std::string& name) {
  for (const UNIT_PARAMETER& parameter : parameters_of(result))
    if (parameter.name == name) return parameter.value;
  return "";
}

bool differs(const VARIANTS& variants, const std::string& name) {
  return std::any_of(variants.begin(), variants.end(), [&](const UNIT_RESULT* result) {
    return value_of(*result, name) != value_of(*variants.front(), name);
  });
}

std::string identifier_part(const std::string& text) {
  std::string part;
  for (char c : text) {
    bool is_plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
    if (is_plain)
      part += c;
    else if (c == '-')
      part += 'm';
    else if (!part.empty() && part.back() != '_')
      part += '_';
  }
  while (!part.empty() && part.back() == '_') part.pop_back();
  return part;
}

std::string hash_text(const std::string& text) {
  char digits[9];
  std::snprintf(digits, sizeof digits, "%08x", HTL_CSTR_OPS::hash(text.c_str()));
  return digits;
}

std::string suffix_of(const UNIT_RESULT& result, const VARIANTS& variants) {
  std::string suffix;
  std::string exact;
  for (const UNIT_PARAMETER& parameter : parameters_of(result)) {
    if (!differs(variants, parameter.name)) continue;
    suffix += "_" + identifier_part(parameter.name) + "_" + identifier_part(parameter.value);
    exact += parameter.name + "=" + parameter.value + ";";
  }
  return suffix.size() > MAX_SUFFIX ? "_" + hash_text(exact) : suffix;
}

std::string unique(const std::string& wanted, std::set<std::string>& taken) {
  std::string name = wanted;
  for (unsigned i = 1; !taken.insert(name).second; i++) name = wanted + "_" + std::to_string(i);
  return name;
}

} // namespace

void name_modules(DESIGN& design) {
  std::map<std::string, VARIANTS> variants;
  std::set<std::string> taken;
  for (const auto& result : design.units) variants[result->unit->get_name()].push_back(result.get());
  for (const auto& result : design.units) {
    const VARIANTS& mine = variants[result->unit->get_name()];
    bool is_plain = result.get() == design.get_top() || mine.size() == 1;
    result->module_name = unique(result->unit->get_name() + (is_plain ? "" : suffix_of(*result, mine)), taken);
  }
}
