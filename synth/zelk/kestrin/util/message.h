// Message: the one road of all diagnostics of the kernel. It classifies, counts, drops repeated messages, writes to the
// console and a log file and calls whoever registered. It knows ids and formats only; their table is the catalogue.
#ifndef KESTRIN_UTIL_MESSAGE_H
#define KESTRIN_UTIL_MESSAGE_H

#include <cstdarg>
#include <cstdio>
#include <string>

#include "util/linefile.h"

class Map;
class Set;

enum msg_type_t {
  MSG_NONE = 0,
  MSG_ERROR = 1, // the only one that counts
  MSG_WARNING = 2,
  MSG_IGNORE = 3, // never shown: what a user turned a message into
  MSG_INFO = 4,
  MSG_COMMENT = 5,
  MSG_PROGRAM_ERROR = 6
};

/// Takes a message as it was raised; the text is not formatted. It may use `args` up and must not end it.
using message_callback = void (*)(msg_type_t type, const char* id, linefile_type linefile, const char* format,
                                  va_list args);
/// Takes the line that the console would show.
using message_text_callback = void (*)(const char* text);

class Message {
public:
  virtual ~Message() = default;

  // Raising. Ids are string constants: the same text at another address is another id to the test for repetition.
  [[gnu::format(printf, 4, 5)]] static void Msg(msg_type_t type, const char* id, linefile_type linefile,
                                                const char* format, ...);
  /// Leaves `args` as it was.
  static void MsgVaList(msg_type_t type, const char* id, linefile_type linefile, const char* format, va_list args);
  // Messages without id from up to five pieces of text; null pieces are empty. They are never dropped as repeated.
  static void Error(linefile_type linefile, const char* a, const char* b = nullptr, const char* c = nullptr,
                    const char* d = nullptr, const char* e = nullptr);
  static void Warning(linefile_type linefile, const char* a, const char* b = nullptr, const char* c = nullptr,
                      const char* d = nullptr, const char* e = nullptr);
  static void Info(linefile_type linefile, const char* a, const char* b = nullptr, const char* c = nullptr,
                   const char* d = nullptr, const char* e = nullptr);
  static void PrintLine(const char* a, const char* b = nullptr, const char* c = nullptr, const char* d = nullptr,
                        const char* e = nullptr);

  // Severity by id, in place of what the raiser says. Keys are copied.
  /// 0 for a null id.
  static unsigned SetMessageType(const char* id, msg_type_t type);
  /// 1 when there was an entry.
  static unsigned ClearMessageType(const char* id);
  static void ClearAllMessageTypes();

  // Hiding: while only critical messages are wanted, the message callback gets no others. Console and log see all.
  static void MakeCritical(const char* id);
  /// Errors and program errors always are.
  static unsigned IsCritical(const char* id, msg_type_t type);
  static void CriticalMessagesOnly() { _critical_msgs_only = 1; }
  static void ShowAllMessages() { _critical_msgs_only = 0; }
  static unsigned HidingMessages() { return _critical_msgs_only; }

  // Outputs.
  static void SetConsoleOutput(unsigned on) { _console_output = on; }
  static void PrintIds(unsigned on) { _print_ids = on; }
  // A null pointer unregisters.
  static void RegisterCallBackMsg(message_callback callback) { _msg_callback_func = callback; }
  static void RegisterCallBackError(message_text_callback callback) { _error_func = callback; }
  static void RegisterCallBackWarning(message_text_callback callback) { _warning_func = callback; }
  static void RegisterCallBackInfo(message_text_callback callback) { _info_func = callback; }
  /// Truncates the file. 0, with a warning unless the path is null, when there is no log.
  static unsigned OpenLogFile(const char* path);
  static void CloseLogFile();

  // A run of messages.
  static unsigned ErrorCount() { return _error_count; }
  /// Starts a new run: no error so far, and every message may be repeated.
  static void ClearErrorCount();
  /// Back to the defaults. Callbacks and log stay.
  static void FreeStaticMemory();

private:
  static bool IsRepeated(msg_type_t type, const char* id, linefile_type linefile, const char* format, va_list args);
  static void WriteLine(FILE* stream, const std::string& line, const char* id);

  static constexpr unsigned default_max_error_count = 20;

  static Map* _forced_message_types; // id, owned -> msg_type_t
  static Set* _critical_messages;    // ids, owned
  static unsigned _error_count;
  static unsigned _max_error_count;
  static unsigned _print_ids;
  static unsigned _console_output;
  static unsigned _critical_msgs_only;
  static message_callback _msg_callback_func;
  static message_text_callback _error_func;
  static message_text_callback _warning_func;
  static message_text_callback _info_func;
  static FILE* logfile;
};

#endif
