// A scan of a text in one line: what the tests of the scanner see is the tokens, the messages, and what the client of
// the scanner was told.
#ifndef TESTS_VERILOG_SCAN_H
#define TESTS_VERILOG_SCAN_H

#include <string>
#include <vector>

#include "host/scratch_dir.h"
#include "util/message.h"
#include "util/services.h"
#include "verilog/veri_lex.h"
#include "verilog/veri_pragma.h"

/// The services with what the tests want to see of them.
class RecordingServices : public KernelServices {
public:
  RecordingServices() { Set(this); }
  ~RecordingServices() override { Set(nullptr); }
  int Flag(const char* key) override { return flag_on == key; }
  void Debug(const char* text) override { debug.emplace_back(text); }
  bool CheckAttributeName(const char* name, const char*, unsigned) override { return unknown_attribute != name; }
  void CheckAttributeOrDirective(const char* name, const char*, unsigned, bool, const char* trigger) override {
    checked.push_back(std::string(trigger ? trigger : "(*") + " " + name);
  }

  std::string flag_on;
  std::string unknown_attribute;
  std::vector<std::string> debug;
  std::vector<std::string> checked; // trigger and name
};

class RecordingClient : public VeriScanClient {
public:
  bool IsBetweenDesignUnits() const override { return between_units; }
  void AddToMacroSeq(const char* name, const char* args, const char* value, linefile_type) override {
    macros.push_back(std::string(name) + "(" + args + ")=" + value);
  }
  void AddDependentFile(const char* name) override { files.emplace_back(name); }
  void SetTimeScale(const char* text) override { timescale = text; }
  void SetDialect(veri_dialect to) override { dialect = to; }

  bool between_units = true;
  std::vector<std::string> macros;
  std::vector<std::string> files;
  std::string timescale;
  int dialect = 0;
};

/// Messages as "LINE: error: text", from the raising to the end of the object.
class MessageLog {
public:
  MessageLog();
  MessageLog(const MessageLog&) = delete;
  MessageLog& operator=(const MessageLog&) = delete;
  ~MessageLog();
  /// The lines since the last call.
  static std::vector<std::string> Take();
};

/// One analysis of a text after another, with one macro table, in a folder of their own.
class Scan {
public:
  explicit Scan(veri_dialect dialect = VERI_2K) : _dialect(dialect) {}
  ~Scan() { VeriLex::FreeStaticMemory(); }

  /// The tokens of a text, by name and value with a blank between: "module ID:m ;".
  std::string Tokens(const std::string& text);
  /// The tokens with the line of each in front: "1:module 1:ID:m".
  std::string TokensAndLines(const std::string& text);
  /// A file beside the scanned ones; its full name.
  std::string AddFile(const std::string& name, const std::string& text) { return _folder.write(name, text); }
  /// The messages since the last call, "LINE: error: text".
  static std::vector<std::string> Messages() { return MessageLog::Take(); }
  /// The last token that was not the end.
  veri_token LastToken() const { return _last; }

  RecordingServices services;
  RecordingClient client;
  VeriMacroTable macros;

private:
  std::string Read(const std::string& text, bool with_lines);

  veri_dialect _dialect;
  SCRATCH_DIR _folder;
  MessageLog _log;
  veri_token _last{};
};

#endif
