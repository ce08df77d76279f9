// Applies levels and single switches of messages to the host's report.
#include "zelk_msg_directives.h"

#include <memory>

#include "containers/views.h"
#include "fio.h"
#include "msg.h"
#include "util/message.h"
#include "zelk_attribute_value.h"
#include "zelk_msgs.h"
#include "zelk_report.h"
#include "zelk_utility.h"

namespace {

constexpr unsigned medium_level_messages[] = {
#define ZELK_MEDIUM_LEVEL_MESSAGE(number) number,
#include "zelk_msg_levels.def"
};
constexpr unsigned high_level_messages[] = {
#define ZELK_HIGH_LEVEL_MESSAGE(number) number,
#include "zelk_msg_levels.def"
};
constexpr unsigned level_messages[] = {
#define ZELK_LEVEL_MESSAGE(number) number,
#include "zelk_msg_levels.def"
};

} // namespace

void ZELK_MSG_DIRECTIVES::SetMessageLevel(MESSAGE_LEVEL_ENUM level, linefile_type linefile) {
  m_level = level;
  m_level_linefile = linefile;
}

const char* ZELK_MSG_DIRECTIVES::GetMessageLevelString(MESSAGE_LEVEL_ENUM level) {
  switch (level) {
  case MESSAGE_LEVEL_LOW: return "low";
  case MESSAGE_LEVEL_MEDIUM: return "medium";
  case MESSAGE_LEVEL_HIGH: return "high";
  }
  return "";
}

void ZELK_MSG_DIRECTIVES::MessageOn(unsigned id) {
  m_off_set.Remove(ToWord(id));
  m_on_set.Insert(ToWord(id));
}

void ZELK_MSG_DIRECTIVES::MessageOff(unsigned id) {
  m_on_set.Remove(ToWord(id));
  m_off_set.Insert(ToWord(id));
}

void ZELK_MSG_DIRECTIVES::EnableMessage(unsigned id) { msg_get_default_report()->enable_message(id); }

void ZELK_MSG_DIRECTIVES::DisableMessage(unsigned id) { msg_get_default_report()->disable_message(id); }

/// Everything is enabled first, so that no switch of a former unit lasts.
void ZELK_MSG_DIRECTIVES::EnableMessageLevel(MESSAGE_LEVEL_ENUM level) {
  for (unsigned id : level_messages) EnableMessage(id);
  for (unsigned id : medium_level_messages) EnableMessage(id);
  for (unsigned id : high_level_messages) EnableMessage(id);
  if (level < MESSAGE_LEVEL_MEDIUM)
    for (unsigned id : medium_level_messages) DisableMessage(id);
  if (level < MESSAGE_LEVEL_HIGH)
    for (unsigned id : high_level_messages) DisableMessage(id);
}

void ZELK_MSG_DIRECTIVES::ApplyMessageLevel() const {
  zelk_msg_debug("Applying message level %s", GetMessageLevelString());
  EnableMessageLevel(m_level);
}

void ZELK_MSG_DIRECTIVES::ApplyMessageOnOffs() const {
  for (unsigned id : KeysOf<unsigned>(&m_on_set)) {
    zelk_msg_debug("Enabling message %u.", id);
    EnableMessage(id);
  }
  for (unsigned id : KeysOf<unsigned>(&m_off_set)) {
    zelk_msg_debug("Disabling message %u.", id);
    DisableMessage(id);
  }
}

void ZELK_MSG_DIRECTIVES::RefreshMessageStatus() {
  zelk_msg_debug("Refreshing message status...");
  ApplyMessageLevel();
  ApplyMessageOnOffs();
}

bool ZELK_MSG_DIRECTIVES::is_E_msg(unsigned id) { return MSG_ID_REGISTRAR::get_kind(id) == MSG_KIND_ERROR; }
bool ZELK_MSG_DIRECTIVES::is_W_msg(unsigned id) { return MSG_ID_REGISTRAR::get_kind(id) == MSG_KIND_WARNING; }
bool ZELK_MSG_DIRECTIVES::is_I_msg(unsigned id) { return MSG_ID_REGISTRAR::get_kind(id) == MSG_KIND_INFO; }

namespace {

/// At the place of the directive, or for a project's setting at none.
void report(MSG_BASE* message, const char* file, unsigned line) {
  if (file)
    zelk_report_at(message, file, static_cast<int>(line));
  else
    zelk_report(message);
}

} // namespace

bool ZELK_MSG_DIRECTIVES::check_msg_id(unsigned id, const char* text, const char* file, unsigned line) {
  const bool loc_available = file != nullptr;
  std::string place;
  if (loc_available) place = FIO_PATH(file).filename() + "(" + std::to_string(line) + ")";
  int number = static_cast<int>(id);
  if (id == 0) {
    report(MSG_ZELK::E::INVALID_MESSAGE_ID_STRING(text, place.c_str()), file, line);
    return false;
  }
  if (!MSG_ID_REGISTRAR::is_known(id)) {
    if (loc_available)
      report(MSG_ZELK::E::INVALID_SRC_MESSAGE_ID(number, place.c_str()), file, line);
    else
      report(MSG_ZELK::E::INVALID_MESSAGE_ID(number), file, line);
    return false;
  }
  if (is_hdl_msg_id(std::to_string(id))) return true;
  ZELK_ASSERT(loc_available);
  if (!Message::HidingMessages())
    report(MSG_ZELK::W::NON_HDL_MSG_ID_WITH_DIRECTIVES(number, place.c_str()), file, line);
  return false;
}
