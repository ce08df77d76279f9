// The target device and the third-party tools, as far as this host knows any.
#include "cfg.h"
#include "eti_util.h"
#include "gen.h"
#include "hcu_facade_util.h"
#include "wys_info.h"

#include <string>

const char* HCU_FACADE::get_family() const {
  static std::string family;
  family = cfg_get_value("device_family");
  return family.empty() ? nullptr : family.c_str();
}

const HCU_FACADE* HCU_FACADE_UTIL::get_facade() {
  static const HCU_FACADE facade;
  return &facade;
}

int WYS_INFO::get_wysiwyg_type_for_string(const char*) { return WYS_UNKNOWN; }

namespace {

struct TOOL {
  int number;
  const char* setting;
  const char* name;
};

constexpr TOOL tools[] = {
    {ETI_TOOL_CONFORMAL, "CONFORMAL", "Conformal LEC"},
    {ETI_TOOL_FORMALITY, "FORMALITY", "Formality"},
    {ETI_TOOL_CUSTOM_FORMAL, "CUSTOM", "custom formal verification"},
};

} // namespace

int ETI_UTIL::eda_tool_type_string_to_enum(const char* text) {
  for (const TOOL& tool : tools)
    if (gen_stricmp(tool.setting, text) == 0) return tool.number;
  return ETI_TOOL_NONE;
}

const char* ETI_UTIL::tool_enum_to_string(int number) {
  for (const TOOL& tool : tools)
    if (tool.number == number) return tool.name;
  return "";
}
