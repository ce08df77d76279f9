// Analysis of sources for the tests of the front end: texts go into files of a folder of their own and from there into
// the libraries; messages are kept.
#ifndef TESTS_VERILOG_ANALYSIS_H
#define TESTS_VERILOG_ANALYSIS_H

#include <string>
#include <vector>

#include "verilog/scan.h"
#include "verilog/veri_file.h"

class Analysis {
public:
  ~Analysis() { veri_file::FreeStaticMemory(); }

  /// Reads a text as a file of this name; the messages of the front end stay for Messages.
  bool Read(const std::string& text, veri_dialect dialect = VERI_2K, const std::string& name = "main.v",
            const char* library = "work") {
    return file.Analyze(AddFile(name, text).c_str(), dialect, library) != 0;
  }
  std::string AddFile(const std::string& name, const std::string& text) { return _folder.write(name, text); }
  /// Reads a text and resolves its units; the messages of both.
  std::vector<std::string> Resolve(const std::string& text, veri_dialect dialect = VERI_2K) {
    Read(text, dialect);
    veri_file::GetLibrary("work")->ResolveGlobals();
    for (VeriDesignUnit* unit : veri_file::GetLibrary("work")->Units()) unit->Resolve();
    return Messages();
  }
  /// The errors among them.
  std::vector<std::string> Errors(const std::string& text, veri_dialect dialect = VERI_2K) {
    std::vector<std::string> errors;
    for (const std::string& line : Resolve(text, dialect))
      if (line.find(": error: ") != std::string::npos) errors.push_back(line);
    return errors;
  }
  /// The messages since the last call, "LINE: error: text", without the lines that tell which file is read.
  static std::vector<std::string> Messages() {
    std::vector<std::string> messages = MessageLog::Take();
    std::erase_if(messages, [](const std::string& line) {
      return line.find(": Reading Verilog file ") != std::string::npos ||
             line.find(" ignored due to errors (no id)") != std::string::npos;
    });
    return messages;
  }

  static VeriModule* Module(const char* name) { return veri_file::GetLibrary("work")->GetModule(name); }
  /// A variable of a module; null when there is none.
  static VeriVariable* Variable(const char* module, const char* name) {
    return dynamic_cast<VeriVariable*>(Module(module)->GetScope()->Find(name));
  }

  RecordingServices services;
  veri_file file;

private:
  SCRATCH_DIR _folder;
  MessageLog _log;
};

using Lines = std::vector<std::string>;

#endif
