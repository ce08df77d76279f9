// Look-ups over the tables of settings and of enumerated values.
#include "acf.h"

#include <iterator>

#include "gen.h"

namespace {

struct VARIABLE {
  int number;
  const char* name;
  int section;
  ACF_KIND_ENUM kind;
};

constexpr VARIABLE variables[] = {
#define ACF_VARIABLE(number, name, section, kind) {number, #name, ACF_SECTION_##section, ACF_KIND_##kind},
#include "acf_variables.def"
#undef ACF_VARIABLE
};

struct ENUM_VALUE {
  int number;
  const char* name;
  int variable;
};

constexpr ENUM_VALUE enum_values[] = {
#define ACF_ENUM_VALUE(number, name, variable) {number, #name, ACF_VARIABLE_##variable},
#include "acf_enum_values.def"
#undef ACF_ENUM_VALUE
};

/// Spellings of former versions.
struct OLD_VALUE {
  int variable;
  const char* old_text;
  const char* new_text;
};

constexpr OLD_VALUE old_values[] = {
    {ACF_VARIABLE_VHDL_INPUT_VERSION, "1987", "VHDL87"},
    {ACF_VARIABLE_VHDL_INPUT_VERSION, "VHDL_1987", "VHDL87"},
    {ACF_VARIABLE_VHDL_INPUT_VERSION, "1993", "VHDL93"},
    {ACF_VARIABLE_VHDL_INPUT_VERSION, "VHDL_1993", "VHDL93"},
    {ACF_VARIABLE_VHDL_INPUT_VERSION, "2008", "VHDL_2008"},
    {ACF_VARIABLE_VHDL_INPUT_VERSION, "VHDL08", "VHDL_2008"},
    {ACF_VARIABLE_VHDL_INPUT_VERSION, "VHDL2008", "VHDL_2008"},
};

const VARIABLE* find_variable(int number) {
  for (const VARIABLE& variable : variables)
    if (variable.number == number) return &variable;
  return nullptr;
}

} // namespace

int acf_string_to_enum_type_enum(const char* text) {
  for (const ENUM_VALUE& value : enum_values)
    if (gen_stricmp(value.name, text) == 0) return value.number;
  return ACF_ENUM_NONE;
}

const char* acf_enum_type_to_user_string(int number) {
  for (const ENUM_VALUE& value : enum_values)
    if (value.number == number) return value.name;
  return nullptr;
}

void acf_get_variable_enum_value_types(std::vector<int>* values, int variable, int, int) {
  for (const ENUM_VALUE& value : enum_values)
    if (value.variable == variable) values->push_back(value.number);
}

const char* acf_convert_old_value_to_new(int variable, const char* text, int) {
  for (const OLD_VALUE& value : old_values)
    if (value.variable == variable && gen_stricmp(value.old_text, text) == 0) return value.new_text;
  return nullptr;
}

bool acf_is_variable_allowed_in_section_type(int number, int section) {
  const VARIABLE* variable = find_variable(number);
  return variable && variable->section == section;
}

int acf_get_variable_by_name(const char* name) {
  for (const VARIABLE& variable : variables)
    if (gen_stricmp(variable.name, name) == 0) return variable.number;
  return ACF_VARIABLE_NONE;
}

const char* acf_get_variable_name(int number) {
  const VARIABLE* variable = find_variable(number);
  return variable ? variable->name : nullptr;
}

int acf_get_variable_section(int number) {
  const VARIABLE* variable = find_variable(number);
  return variable ? variable->section : ACF_SECTION_NONE;
}

ACF_KIND_ENUM acf_get_variable_kind(int number) {
  const VARIABLE* variable = find_variable(number);
  return variable ? variable->kind : ACF_KIND_STRING;
}
