// What the user wants to see: a message level and single messages switched on or off, in the project and in sources.
#ifndef ZELK_MSG_DIRECTIVES_H
#define ZELK_MSG_DIRECTIVES_H

#include "containers/set.h"
#include "util/services.h"

enum MESSAGE_LEVEL_ENUM { MESSAGE_LEVEL_LOW = 0, MESSAGE_LEVEL_MEDIUM = 1, MESSAGE_LEVEL_HIGH = 2 };

/// A number is in at most one of the two sets. The sets are applied after the level, the off set last.
class ZELK_MSG_DIRECTIVES : public MessageDirectives {
public:
  ZELK_MSG_DIRECTIVES() = default;
  ZELK_MSG_DIRECTIVES(const ZELK_MSG_DIRECTIVES&) = default;
  ZELK_MSG_DIRECTIVES& operator=(const ZELK_MSG_DIRECTIVES&) = delete;

  void SetMessageLevel(MESSAGE_LEVEL_ENUM level, linefile_type linefile);
  static const char* GetMessageLevelString(MESSAGE_LEVEL_ENUM level);
  const char* GetMessageLevelString() const { return GetMessageLevelString(m_level); }
  void MessageOn(unsigned id) override;
  void MessageOff(unsigned id) override;
  void ClearOnSet() { m_on_set.Reset(); }
  void ClearOffSet() { m_off_set.Reset(); }

  static void EnableMessageLevel(MESSAGE_LEVEL_ENUM level);
  void ApplyMessageLevel() const;
  static void EnableMessage(unsigned id);
  static void DisableMessage(unsigned id);
  void ApplyMessageOnOffs() const;
  void RefreshMessageStatus() override;

  static bool is_E_msg(unsigned id);
  static bool is_W_msg(unsigned id);
  static bool is_I_msg(unsigned id);
  /// Whether directives control the number; reports it when not. Id 0 stands for a text that is no number. A null file
  /// is the project's settings.
  static bool check_msg_id(unsigned id, const char* text, const char* file, unsigned line);

  // As the kernel asks for them.
  bool CheckMsgId(unsigned id, const char* text, const char* file, unsigned line) override {
    return check_msg_id(id, text, file, line);
  }
  bool IsErrorMessage(unsigned id) const override { return is_E_msg(id); }
  unsigned MessageLevel() const override { return m_level; }
  void SetMessageLevel(unsigned level, linefile_type linefile) override {
    SetMessageLevel(static_cast<MESSAGE_LEVEL_ENUM>(level), linefile);
  }

private:
  Set m_on_set{HASH_NUM, 3};
  Set m_off_set{HASH_NUM, 3};
  MESSAGE_LEVEL_ENUM m_level = MESSAGE_LEVEL_MEDIUM;
  linefile_type m_level_linefile = 0;
};

#endif
