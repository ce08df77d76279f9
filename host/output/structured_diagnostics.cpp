// Messages for programs: gathered during the run and written as one document at its end, either in this host's own JSON
// form or in the interchange format of static analysis results, SARIF 2.1.0.
#include <nlohmann/json.hpp>

#include "diagnostics.h"
#include "gen.h"
#include "platform/source_lines.h"

using JSON = nlohmann::ordered_json;

namespace {

struct DIAGNOSTIC {
  MSG_KIND_ENUM kind = MSG_KIND_INFO;
  unsigned number = 0;
  std::string name;
  std::string text;
  std::string file; // empty when there is no place
  int line = 0;     // 0 is the file as a whole
  std::string source;
  bool has_source = false;
  std::vector<DIAGNOSTIC> notes;
};

struct INTERNAL_ERROR {
  std::string text;
  std::string area;
  std::string file;
  int line;
};

struct DEBUG_LINE {
  std::string tag;
  std::string text;
};

struct GATHERED {
  std::vector<DIAGNOSTIC> diagnostics;
  std::vector<INTERNAL_ERROR> internal_errors;
  std::vector<DEBUG_LINE> debug;
  int status = 0;
};

constexpr const char* PROGRAM = "zelk-host";

std::string version_number() {
  std::string version = gen_get_version();
  return version.substr(version.rfind(' ') + 1);
}

// --- the host's own form

JSON json_of(const DIAGNOSTIC& diagnostic) {
  JSON object;
  std::string id = kernel_id_of(diagnostic.number);
  object["severity"] = severity_word(diagnostic.kind);
  object["number"] = diagnostic.number;
  object["name"] = diagnostic.name;
  object["kernel_id"] = id.empty() ? JSON() : JSON(id);
  object["text"] = diagnostic.text;
  object["file"] = diagnostic.file.empty() ? JSON() : JSON(diagnostic.file);
  object["line"] = diagnostic.line > 0 ? JSON(diagnostic.line) : JSON();
  object["source"] = diagnostic.has_source ? JSON(diagnostic.source) : JSON();
  object["notes"] = JSON::array();
  for (const DIAGNOSTIC& note : diagnostic.notes) object["notes"].push_back(json_of(note));
  return object;
}

JSON write_own_form(const GATHERED& gathered) {
  constexpr int VERSION = 1;
  MSG_REPORT* report = msg_get_default_report();
  JSON document;
  document["version"] = VERSION;
  document["tool"] = {{"name", PROGRAM}, {"version", version_number()}};
  document["diagnostics"] = JSON::array();
  for (const DIAGNOSTIC& diagnostic : gathered.diagnostics) document["diagnostics"].push_back(json_of(diagnostic));
  document["internal_errors"] = JSON::array();
  for (const INTERNAL_ERROR& error : gathered.internal_errors)
    document["internal_errors"].push_back(
        {{"text", error.text}, {"area", error.area}, {"file", error.file}, {"line", error.line}});
  document["debug"] = JSON::array();
  for (const DEBUG_LINE& line : gathered.debug) document["debug"].push_back({{"tag", line.tag}, {"text", line.text}});
  document["summary"] = {{"errors", report->get_message_count(MSG_KIND_ERROR)},
                         {"warnings", report->get_message_count(MSG_KIND_WARNING)},
                         {"infos", report->get_message_count(MSG_KIND_INFO)},
                         {"status", gathered.status}};
  return document;
}

// --- SARIF

std::string rule_of(const DIAGNOSTIC& diagnostic) { return std::to_string(diagnostic.number); }

/// A path as a reference that a reader can resolve: percent signs for what such references cannot hold.
std::string uri_of(const std::string& path) {
  static const std::string plain = "-._~/+,=@:";
  constexpr const char* digits = "0123456789ABCDEF";
  std::string uri = path.front() == '/' ? "file://" : "";
  for (char c : path) {
    auto byte = static_cast<unsigned char>(c);
    bool is_plain = (byte < 0x80 && std::isalnum(byte)) || plain.find(c) != std::string::npos;
    if (is_plain)
      uri += c;
    else
      uri += {'%', digits[byte >> 4U], digits[byte & 15U]};
  }
  return uri;
}

JSON location_of(const DIAGNOSTIC& diagnostic) {
  JSON physical = {{"artifactLocation", {{"uri", uri_of(diagnostic.file)}}}};
  if (diagnostic.line > 0) physical["region"]["startLine"] = diagnostic.line;
  if (diagnostic.line > 0 && diagnostic.has_source) physical["region"]["snippet"]["text"] = diagnostic.source;
  return {{"physicalLocation", physical}};
}

JSON result_of(const DIAGNOSTIC& diagnostic) {
  static constexpr const char* levels[] = {"error", "note", "warning"}; // by MSG_KIND_ENUM
  JSON result;
  result["ruleId"] = rule_of(diagnostic);
  result["level"] = levels[diagnostic.kind];
  result["message"]["text"] = diagnostic.text;
  if (!diagnostic.file.empty()) result["locations"].push_back(location_of(diagnostic));
  for (const DIAGNOSTIC& note : diagnostic.notes) {
    JSON related = note.file.empty() ? JSON::object() : location_of(note);
    related["message"]["text"] = note.text;
    result["relatedLocations"].push_back(related);
  }
  return result;
}

/// The rules are the numbers that occur, each once, in the order of their first message.
JSON rules_of(const GATHERED& gathered) {
  JSON rules = JSON::array();
  std::vector<unsigned> seen;
  for (const DIAGNOSTIC& diagnostic : gathered.diagnostics) {
    if (std::find(seen.begin(), seen.end(), diagnostic.number) != seen.end()) continue;
    seen.push_back(diagnostic.number);
    JSON rule = {{"id", rule_of(diagnostic)}};
    if (!diagnostic.name.empty()) rule["name"] = diagnostic.name;
    std::string id = kernel_id_of(diagnostic.number);
    if (!id.empty()) rule["properties"]["kernelId"] = id;
    rules.push_back(rule);
  }
  return rules;
}

JSON write_sarif(const GATHERED& gathered) {
  JSON invocation = {{"executionSuccessful", gathered.status == 0}, {"exitCode", gathered.status}};
  for (const INTERNAL_ERROR& error : gathered.internal_errors)
    invocation["toolExecutionNotifications"].push_back(
        {{"level", "error"},
         {"message", {{"text", error.text + " (" + internal_error_place(error.area, error.file, error.line) + ")"}}}});
  JSON run;
  run["tool"]["driver"] = {{"name", PROGRAM}, {"version", version_number()}, {"rules", rules_of(gathered)}};
  run["invocations"].push_back(invocation);
  run["results"] = JSON::array();
  for (const DIAGNOSTIC& diagnostic : gathered.diagnostics) run["results"].push_back(result_of(diagnostic));
  JSON document;
  document["$schema"] = "https://json.schemastore.org/sarif-2.1.0.json";
  document["version"] = "2.1.0";
  document["runs"].push_back(run);
  return document;
}

// --- gathering

class STRUCTURED_DIAGNOSTICS : public MSG_SINK {
public:
  using FORM = JSON (*)(const GATHERED&);
  STRUCTURED_DIAGNOSTICS(FILE* stream, DIAGNOSTICS_DETAIL detail, FORM form)
      : m_stream(stream), m_detail(detail), m_form(form) {}

  void on_message(const MSG_BASE& message) override;
  void on_internal_error(const std::string& text, const std::string& area, const std::string& file, int line) override {
    m_gathered.internal_errors.push_back({text, area, file, line});
  }
  void on_debug(const std::string& tag, const std::string& text) override { m_gathered.debug.push_back({tag, text}); }
  void finish(int status) override;

private:
  FILE* m_stream;
  DIAGNOSTICS_DETAIL m_detail;
  FORM m_form;
  SOURCE_LINES m_lines;
  GATHERED m_gathered;
};

void STRUCTURED_DIAGNOSTICS::on_message(const MSG_BASE& message) {
  if (!is_shown(message, m_detail)) return;
  DIAGNOSTIC diagnostic;
  diagnostic.kind = message.get_kind();
  diagnostic.number = message.get_id();
  diagnostic.name = message.get_name();
  diagnostic.text = message.get_text();
  if (message.has_location()) {
    diagnostic.file = message.get_file();
    diagnostic.line = message.get_line();
    diagnostic.has_source = m_lines.get(diagnostic.file, diagnostic.line, diagnostic.source);
  }
  bool belongs_to_former = is_note(message) && !m_gathered.diagnostics.empty();
  auto& list = belongs_to_former ? m_gathered.diagnostics.back().notes : m_gathered.diagnostics;
  list.push_back(std::move(diagnostic));
}

void STRUCTURED_DIAGNOSTICS::finish(int status) {
  constexpr int INDENT = 2;
  m_gathered.status = status;
  // Sources may hold any bytes.
  std::string text =
      m_form(m_gathered).dump(INDENT, ' ', /*ensure_ascii=*/false, JSON::error_handler_t::replace) + "\n";
  std::fwrite(text.data(), 1, text.size(), m_stream);
  std::fflush(m_stream);
}

} // namespace

std::unique_ptr<MSG_SINK> make_json_diagnostics(FILE* stream, DIAGNOSTICS_DETAIL detail) {
  return std::make_unique<STRUCTURED_DIAGNOSTICS>(stream, detail, write_own_form);
}

std::unique_ptr<MSG_SINK> make_sarif_diagnostics(FILE* stream, DIAGNOSTICS_DETAIL detail) {
  return std::make_unique<STRUCTURED_DIAGNOSTICS>(stream, detail, write_sarif);
}
