// Numbers and names of the project's settings: sections, variables and the values of enumerated ones. Both tables live
// in acf_variables.def and acf_enum_values.def, from which the enumerations and all look-ups derive.
#ifndef ACF_H
#define ACF_H

#include <vector>

/// Where a setting stands.
enum ACF_SECTION_TYPE_ENUM {
  ACF_SECTION_NONE = 0,
  ACF_SECTION_PARAMETER = 1,  // values of parameters, never in a section of the project
  ACF_SECTION_ASSIGNMENT = 2, // on nodes, by the synthesis
  ACF_SECTION_EDA_TOOLS = 7,
  ACF_SECTION_SYNTHESIS = 12,
  ACF_SECTION_HDL_INPUT = 14
};

enum ACF_KIND_ENUM { ACF_KIND_BOOL, ACF_KIND_INTEGER, ACF_KIND_ENUM_VALUE, ACF_KIND_STRING, ACF_KIND_MULTI_STRING };

enum ACF_VARIABLE_TYPE_ENUM {
  ACF_VARIABLE_NONE = 0,
#define ACF_VARIABLE(number, name, section, kind) ACF_VARIABLE_##name = number,
#include "acf_variables.def"
#undef ACF_VARIABLE
};

enum ACF_ENUM_TYPE_ENUM {
  ACF_ENUM_NONE = 0,
#define ACF_ENUM_VALUE(number, name, variable) ACF_ENUM_##name = number,
#include "acf_enum_values.def"
#undef ACF_ENUM_VALUE
};

/// The number of a user's text, without regard to case; ACF_ENUM_NONE when there is no such value.
int acf_string_to_enum_type_enum(const char* text);
/// The user's text of a value; null for an unknown number.
const char* acf_enum_type_to_user_string(int value);
/// Appends the values that a variable takes, in table order. The kind and the product only select among variants of the
/// table that this host does not have.
void acf_get_variable_enum_value_types(std::vector<int>* values, int variable, int kind, int product);
/// The present text of a value that was spelled otherwise in former versions ("1993" for VHDL93); null when the text
/// has no former meaning for the variable. The result is static.
const char* acf_convert_old_value_to_new(int variable, const char* text, int product);
/// A setting of that section: true. A value handed over as a parameter has a number that is allowed in none.
bool acf_is_variable_allowed_in_section_type(int variable, int section);

/// Number of a setting by its name, without regard to case; ACF_VARIABLE_NONE when there is none.
int acf_get_variable_by_name(const char* name);
/// Null for an unknown number.
const char* acf_get_variable_name(int variable);
int acf_get_variable_section(int variable);
ACF_KIND_ENUM acf_get_variable_kind(int variable);

#endif
