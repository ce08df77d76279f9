// Reports attributes and directives that mean nothing, or not the same to every tool of the project.
#include "zelk_attribute_check.h"

#include <algorithm>
#include <string>
#include <vector>

#include "cfg.h"
#include "database/att.h"
#include "eti_util.h"
#include "fio.h"
#include "gen.h"
#include "msg.h"
#include "util/message.h"
#include "zelk_attribute_value.h"
#include "zelk_msgs.h"
#include "zelk_report.h"
#include "zelk_utility.h"

namespace {

bool is_known(const char* name) { return Att::Type(name) != ATT_GENERIC; }

std::string place_text(const char* file, unsigned line) {
  return FIO_PATH(file).filename() + "(" + std::to_string(line) + ")";
}

void report_at(MSG_BASE* message, const char* file, unsigned line) {
  zelk_report_at(message, file, static_cast<int>(line));
}

} // namespace

bool zelk_check_attribute_name(const char* name, const char* file, unsigned line) {
  static const bool takes_all = zelk_cfg_is_on("zelk_support_generic_attributes");
  if (is_known(name) || takes_all) return true;
  if (!Message::HidingMessages())
    report_at(MSG_ZELK::W::INVALID_ATTRIBUTE_TYPE(name, place_text(file, line).c_str()), file, line);
  return false;
}

namespace {

void check_message_ids(const char* name, const char* value, const char* file, unsigned line) {
  std::vector<std::string> ids;
  if (!parse_msg_attr_value(value, ids)) return;
  const std::string place = place_text(file, line);
  for (const std::string& id : ids) {
    if (is_hdl_msg_id(id))
      report_at(MSG_ZELK::W::HDL_ID_WITH_ENABLE_DISABLE_MESSAGE(name, id.c_str(), place.c_str()), file, line);
    else if (!is_valid_msg_id(id))
      report_at(MSG_ZELK::W::INVALID_ENABLE_DISABLE_MESSAGE_ID(name, id.c_str(), place.c_str()), file, line);
  }
}

} // namespace

void zelk_check_attribute_value(const char* name, const char* value, const char* file, unsigned line) {
  if (Message::HidingMessages() || !is_known(name)) return;
  Att att(name, value);
  if (!att.IsValid())
    report_at(MSG_ZELK::W::INVALID_ATTRIBUTE_VALUE(name, value ? value : "", place_text(file, line).c_str()), file,
              line);
  bool is_message_switch = att.Type() == ATT_MESSAGE_ENABLE || att.Type() == ATT_MESSAGE_DISABLE;
  if (is_message_switch && value) check_message_ids(name, value, file, line);
}

namespace {

constexpr const char* READ_COMMENTS = "read_comments_as_hdl";
/// What formal verification tools read too, each in its own way.
constexpr const char* shared_directives[] = {"translate_on", "translate_off", "synthesis_on", "synthesis_off",
                                             READ_COMMENTS,  "full_case",     "parallel_case"};

bool is_one_of_shared(const char* name) {
  return std::any_of(std::begin(shared_directives), std::end(shared_directives),
                     [name](const char* directive) { return gen_stricmp(name, directive) == 0; });
}

bool is_flag_on(const char* key) { return zelk_flags && zelk_flags->get_cfg_flag(key) != 0; }

int formal_tool() {
  if (is_flag_on("zelk_conformal_mode")) return ETI_TOOL_CONFORMAL;
  if (is_flag_on("zelk_custom_formal_mode")) return ETI_TOOL_CUSTOM_FORMAL;
  if (is_flag_on("zelk_formality_mode")) return ETI_TOOL_FORMALITY;
  return ETI_TOOL_NONE;
}

} // namespace

void zelk_check_attribute_or_directive(const char* name, const char* file, unsigned line, bool is_attribute,
                                       const char* trigger) {
  ZELK_ASSERT_TEXT(zelk_flags && file, "zelk_flags && filename");
  if (!zelk_flags || !file) return;
  int tool = formal_tool();
  if (tool == ETI_TOOL_NONE || is_flag_on("zelk_encrypted_source") || is_flag_on("zelk_analyzing_standard_vhdl_files"))
    return;
  if (is_known(name) || !is_one_of_shared(name)) return;
  std::string tool_name = ETI_UTIL::tool_enum_to_string(tool);
  if (tool_name.empty()) tool_name = "<Formal Verification Tool Name>";
  if (gen_stricmp(name, READ_COMMENTS) == 0) {
    report_at(MSG_ZELK::E::ILLEGAL_SYNTHESIS_DIRECTIVE_IN_FV_MODE(name, tool_name.c_str()), file, line);
    return;
  }
  if (trigger && (gen_stricmp(trigger, "norvel") == 0 || gen_stricmp(trigger, "exemplar") == 0))
    report_at(MSG_ZELK::E::ILLEGAL_TRIGGER_IN_FV_MODE(trigger, tool_name.c_str()), file, line);
  if (is_attribute && (tool == ETI_TOOL_CONFORMAL || tool == ETI_TOOL_CUSTOM_FORMAL))
    report_at(MSG_ZELK::E::VERILOG_2001_ATTRIBUTE_IN_CONFORMAL_MODE(name), file, line);
}
