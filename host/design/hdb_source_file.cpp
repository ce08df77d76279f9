// Source files: their type by extension and their arguments.
#include "hdb_source_file.h"

#include "fio.h"
#include "gen.h"

namespace {

struct EXTENSION {
  const char* text;
  int type;
};

constexpr EXTENSION extensions[] = {
    {"v", HDB_SOURCE_FILE::TYPE_VERILOG},        {"vh", HDB_SOURCE_FILE::TYPE_VERILOG},
    {"sv", HDB_SOURCE_FILE::TYPE_SYSTEMVERILOG}, {"svh", HDB_SOURCE_FILE::TYPE_SYSTEMVERILOG},
    {"vhd", HDB_SOURCE_FILE::TYPE_VHDL},         {"vhdl", HDB_SOURCE_FILE::TYPE_VHDL},
};

} // namespace

int HDB_SOURCE_FILE::path_to_file_type(const std::string& path) {
  std::string text = FIO_PATH(path).extension();
  for (const EXTENSION& extension : extensions)
    if (gen_stricmp(extension.text, text.c_str()) == 0) return extension.type;
  return TYPE_UNKNOWN;
}

bool HDB_SOURCE_FILE::get_argument_value(int argument, std::string* text) const {
  if (argument != ARGUMENT_HDL_VERSION || !m_has_hdl_version) return false;
  *text = m_hdl_version;
  return true;
}

void HDB_SOURCE_FILE::set_argument_value(int argument, const std::string& text) {
  if (argument != ARGUMENT_HDL_VERSION) return;
  m_hdl_version = text;
  m_has_hdl_version = true;
}
