// Any text as a file list of the command line and as a project file, and each of its lines through the small readers of
// texts in settings and attributes: macros, lists, pins, styles, encodings, parameters.
#include "fuzz_input.h"

#include <iostream>
#include <sstream>

#include "app/arguments.h"
#include "app/command_line.h"
#include "app/parameter_notation.h"
#include "zelk_attribute_value.h"
#include "zelk_hsp_parameter.h"
#include "zelk_macro_text.h"

namespace {

void read_values(const std::string& text) {
  const char* line = text.c_str();
  zelk_parse_macro_text(text);
  zelk_unquote(line);
  zelk_split_list(text);
  convert_norvel_attribute_string(line);
  std::vector<std::string> parts;
  parse_chip_pin_attr(line, parts);
  parse_msg_attr_value(line, parts);
  is_valid_msg_id(text);
  is_hdl_msg_id(text);
  zelk_parse_ramstyle_attribute(line);
  zelk_parse_fsm_encoding(line, static_cast<int>(text.size()));
  zelk_parse_multstyle(line);
  std::istringstream words(text);
  std::string value;
  std::string type;
  words >> type >> value;
  zelk_convert_parameter_to_verilog(value, type);
  try {
    parameter_notation(text);
  } catch (const USAGE_ERROR&) {}
}

/// The program called with one option that names the file.
void call(const char* option_name, const char* path_name) {
  std::string program = "zelk-host";
  std::string option = option_name;
  std::string path = path_name;
  char* arguments[] = {program.data(), option.data(), path.data(), nullptr};
  COMMAND_LINE command;
  HDB_ACTION_PT_INSTANCE project;
  parse_command_line(3, arguments, command, project);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const FUZZ_FILE file(".f");
  static const bool is_quiet = [] {
    std::cout.setstate(std::ios::failbit);
    std::cerr.setstate(std::ios::failbit);
    return true;
  }();
  (void)is_quiet;
  file.write(data, size);
  call("-f", file.path());
  call("--project", file.path());

  std::istringstream lines(std::string(reinterpret_cast<const char*>(data), size));
  for (std::string line; std::getline(lines, line);) read_values(line.substr(0, line.find('\0')));
  return 0;
}
