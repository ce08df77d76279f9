// Messages of the host: text with numbered placeholders, a number, a severity, a place in a source file; the report
// that counts them, switches numbers off and passes them on; the registrar of known numbers; internal errors; debug
// output. What a message looks like to a person is decided by the sink of the report, never here.
#ifndef MSG_H
#define MSG_H

#include <cstdint>
#include <string>
#include <vector>

/// A place in a source file. Line 0 is the file as a whole; the position within the line is -1 or 0 when unknown.
class MSG_TEXT_LOCATION_SCHEMA {
public:
  MSG_TEXT_LOCATION_SCHEMA(const char* file, int line, int position)
      : m_file(file ? file : ""), m_line(line), m_position(position) {}
  const std::string& get_file() const { return m_file; }
  int get_line() const { return m_line; }
  int get_position() const { return m_position; }

private:
  std::string m_file;
  int m_line;
  int m_position;
};

/// Kinds of messages, in the numbering of the registrar's type array and of MSG_REPORT::get_message_count.
enum MSG_KIND_ENUM { MSG_KIND_ERROR = 0, MSG_KIND_INFO = 1, MSG_KIND_WARNING = 2 };

/// One message. The derived classes below differ by severity only.
class MSG_BASE {
public:
  virtual ~MSG_BASE() = default;
  virtual MSG_KIND_ENUM get_kind() const = 0;

  /// Sets the text. `text` is the message with placeholders %N!x! (x: s string, d integer, c character), then "/" and
  /// the message's name with its severity letter. One argument follows per number, in the order of the numbers, of type
  /// const char* (null reads as an empty string), int or char as the placeholders say.
  void fill_args(const char* text, ...);
  void set_id(unsigned id) { m_id = id; }
  /// Attaches a place (copied). The two texts name a node and its hierarchy and are empty for source messages.
  void set_location(const char* file, const MSG_TEXT_LOCATION_SCHEMA* schema, const char* node, const char* hierarchy);
  /// Hands the message to the default report. The argument selects a sub-report; the only one is 0.
  void report(int report);

  unsigned get_id() const { return m_id; }
  /// The text with its arguments, without the name.
  const std::string& get_text() const { return m_text; }
  /// The name behind the last "/" of the text, such as "EZELK_CANT_OPEN_FILE"; empty when there is none.
  const std::string& get_name() const { return m_name; }
  bool has_location() const { return m_has_location; }
  const std::string& get_file() const { return m_file; }
  int get_line() const { return m_line; }

private:
  std::string m_text;
  std::string m_name;
  std::string m_file;
  unsigned m_id = 0;
  int m_line = 0;
  bool m_has_location = false;
};

class MSG_E : public MSG_BASE {
public:
  MSG_KIND_ENUM get_kind() const override { return MSG_KIND_ERROR; }
};
class MSG_W : public MSG_BASE {
public:
  MSG_KIND_ENUM get_kind() const override { return MSG_KIND_WARNING; }
};
class MSG_I : public MSG_BASE {
public:
  MSG_KIND_ENUM get_kind() const override { return MSG_KIND_INFO; }
};

/// Where messages go after they were counted. Whoever presents messages installs one.
class MSG_SINK {
public:
  virtual ~MSG_SINK() = default;
  virtual void on_message(const MSG_BASE& message) = 0;
  virtual void on_internal_error(const std::string& text, const std::string& area, const std::string& file,
                                 int line) = 0;
  /// Debug output; called only while debug output is on.
  virtual void on_debug(const std::string& tag, const std::string& text) = 0;
  /// Nothing more follows, and the process ends with the given status. Called once.
  virtual void finish(int) {}
};

/// Counts messages by kind and passes them to the sink. A disabled number is neither counted nor passed on, except that
/// errors cannot be disabled.
class MSG_REPORT {
public:
  void add(const MSG_BASE& message);
  unsigned get_message_count(int kind) const { return m_counts[kind]; }
  void enable_message(unsigned id);
  void disable_message(unsigned id);
  bool is_enabled(unsigned id) const;
  /// Null drops messages after counting. Returns the former sink.
  MSG_SINK* set_sink(MSG_SINK* sink);
  MSG_SINK* get_sink() const { return m_sink; }
  /// Zero counts, every number enabled; the sink stays.
  void reset();

private:
  unsigned m_counts[3] = {0, 0, 0};
  std::vector<unsigned> m_disabled; // sorted
  MSG_SINK* m_sink = nullptr;
};

/// The one report of the process; never null.
MSG_REPORT* msg_get_default_report();

/// Declares numbers at load time: `ids` and `types` (MSG_KIND_ENUM values) are parallel arrays of `count` elements that
/// must outlive the process' use of them. The destructor takes them out again, so a library may be unloaded.
class MSG_ID_REGISTRAR {
public:
  MSG_ID_REGISTRAR(const unsigned* ids, const int* types, unsigned count);
  ~MSG_ID_REGISTRAR();
  MSG_ID_REGISTRAR(const MSG_ID_REGISTRAR&) = delete;
  MSG_ID_REGISTRAR& operator=(const MSG_ID_REGISTRAR&) = delete;

  static bool is_known(unsigned id);
  /// The kind of a known number; -1 for others.
  static int get_kind(unsigned id);

private:
  const unsigned* m_ids;
};

/// A broken assumption of the code. It is shown as "internal error" with file, line and text and remembered, so that
/// the program ends with the status of an internal error; the caller goes on.
class MSG_INTERNAL_ERROR {
public:
  static void report(const char* text, const char* area, const char* file, int line);
  /// For errors after which nothing can go on: reports, removes unfinished outputs and ends the process with status 3.
  [[noreturn]] static void report_and_exit(const char* text, const char* area, const char* file, int line);
  static unsigned get_count();
  static void reset_count();
};

/// Local debug output under a tag; shown only while switched on (configuration variable "msg_debug").
class MSG_LOCAL_DEBUG {
public:
  static bool is_on();
  static void print(const char* tag, const char* text);
};

#endif
