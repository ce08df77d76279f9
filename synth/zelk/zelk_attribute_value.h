// The texts of synthesis attributes, taken apart. Pure functions of text: they report nothing but debug lines.
#ifndef ZELK_ATTRIBUTE_VALUE_H
#define ZELK_ATTRIBUTE_VALUE_H

#include <string>
#include <vector>

#include "cdb_sgate_ram.h"

/// Without white space around it and without one pair of surrounding double quotes.
std::string zelk_unquote(const char* text);
/// Tokens between commas, without blanks around them; empty tokens are dropped.
std::vector<std::string> zelk_split_list(const std::string& text);

/// The text of a whole assignment: one pair of quotes goes, and each backslash gives way to the character behind it.
std::string convert_norvel_attribute_string(const char* text);

/// Pins in the order of the text, which may be in one pair of double quotes; a pin given as a number gets the prefix
/// "Pin_". False for a text without pins or with other quotes.
bool parse_chip_pin_attr(const char* text, std::vector<std::string>& pins);
/// Ids of messages, in the same form.
bool parse_msg_attr_value(const char* text, std::vector<std::string>& ids);
/// A decimal number that the host's registrar knows.
bool is_valid_msg_id(const std::string& id);
/// A number in the range of the messages about sources, which attributes cannot switch.
bool is_hdl_msg_id(const std::string& id);

struct ZELK_RAMSTYLE {
  bool is_legal = true;
  bool has_block_type = false;
  CDB_SUGGESTED_RAM_BLOCK_TYPE block_type = CDB_RAM_BLOCK_AUTO;
  bool no_rw_check = false;
};
ZELK_RAMSTYLE zelk_parse_ramstyle_attribute(const char* text);

/// What a state machine's encoding attribute asks for: the host's value (0 for none) and whether the machine is to
/// recover from illegal states. With a `state_count` the default is chosen by it; -1 stands for objects without states.
struct ZELK_FSM_ENCODING {
  int encoding = 0;
  bool is_safe = false;
};
ZELK_FSM_ENCODING zelk_parse_fsm_encoding(const char* text, int state_count);

/// The host's value for a multiplier style; 0 for an illegal one.
int zelk_parse_multstyle(const char* text);

#endif
