// The frame of one analysis: messages, flags, dialect, the parse, registration, and what is left behind for the next
// file. zelk_registration.cpp holds the rest of the class.
#include "zelk_analyzer_impl.h"

#include <algorithm>
#include <memory>

#include "acf.h"
#include "basex.h"
#include "cfg.h"
#include "containers/views.h"
#include "database/libset.h"
#include "eti_util.h"
#include "fio.h"
#include "gen.h"
#include "hcu_facade_util.h"
#include "util/linefile.h"
#include "util/message.h"
#include "util/strings.h"
#include "verilog/veri_file.h"
#include "verilog/veri_lex.h"
#include "verilog/verilibrary.h"
#include "verilog/verimodule.h"
#include "zelk_fabr_interface.h"
#include "zelk_hsp_parameter.h"
#include "zelk_macro_text.h"
#include "zelk_msg_directives.h"
#include "zelk_msg_handler.h"
#include "zelk_msgs.h"
#include "zelk_report.h"
#include "zelk_utility.h"

Map* ZELK_ANALYZER_IMPL::m_macro_defs = nullptr;
Map* ZELK_ANALYZER_IMPL::m_macro_args = nullptr;
Map* ZELK_ANALYZER_IMPL::m_macro_filenames = nullptr;
Map* ZELK_ANALYZER_IMPL::m_macro_linefiles = nullptr;
ZELK_ANALYZER_IMPL::DEPENDENCIES ZELK_ANALYZER_IMPL::m_dependencies;
ZELK_ANALYZER_IMPL::DEPENDENCIES ZELK_ANALYZER_IMPL::m_reverse_dependencies;

ZELK_ANALYZER_IMPL::ZELK_ANALYZER_IMPL() = default;

ZELK_ANALYZER_IMPL::~ZELK_ANALYZER_IMPL() { ZELK_ASSERT(m_veri_file == 0); }

bool ZELK_ANALYZER_IMPL::analyze(BASEX_ANALYZE_INFO* info) {
  m_info = info;
  m_has_filled_entities = false;
  zelk_init_message_handler();
  Message::SetConsoleOutput(0);
  Message::RegisterCallBackMsg(zelk_message_handler);
  const MSG_REPORT* report = msg_get_default_report();
  unsigned former_errors = report->get_message_count(MSG_KIND_ERROR);
  set_flags();

  zelk_msg_debug("Calling Kestrin reader()");
  bool result = analyze_by_type(info->source_file->get_type());
  Message::ShowAllMessages();
  if (result && wants_interface_files()) result = write_interface_files();
  if (result) veri_file::NewlyFound().Reset();
  zelk_msg_debug("Returned from Kestrin reader()");
  // An error that any component reported by itself counts as well.
  if (report->get_message_count(MSG_KIND_ERROR) != former_errors) result = false;

  delete m_veri_file;
  m_veri_file = nullptr;
  m_info = nullptr;
  return result;
}

bool ZELK_ANALYZER_IMPL::analyze_by_type(int type) {
  switch (type) {
  case HDB_SOURCE_FILE::TYPE_VHDL: return vhdl_analyzer();
  case HDB_SOURCE_FILE::TYPE_VERILOG:
  case HDB_SOURCE_FILE::TYPE_SYSTEMVERILOG: return veri_analyzer();
  default: ZELK_INTERNAL_ERROR("ZELK cannot analyze files with this format"); return false;
  }
}

namespace {

/// Internal errors are told on both sides of a parse, since nothing may re-enter one.
void check_node_stack() { ZELK_ASSERT_TEXT(VeriTreeNode::TopNode() == nullptr, "VeriTreeNode::TopNode()==0"); }

} // namespace

bool ZELK_ANALYZER_IMPL::veri_analyzer() {
  HDB_SOURCE_FILE* file = m_info->source_file;
  if (!m_veri_file) m_veri_file = new veri_file;
  auto dialect = static_cast<veri_dialect>(get_verilog_input_version(file));
  std::string path = path_for_kernel(file);
  zelk_msg_debug("Begin veri_analyzer() on %s ...", path.c_str());
  double start = zelk_tick_count();
  VeriLex::RegisterMsgDirectives(apply_project_message_settings());
  add_verilog_compiler_directives();

  check_node_stack();
  bool is_good = m_veri_file->Analyze(path.c_str(), dialect, get_destination_library(file)) != 0;
  check_node_stack();
  if (is_good) {
    for (VeriDesignUnitId* id : KeysOf<VeriDesignUnitId*>(&veri_file::NewlyFound())) {
      register_design_unit(id->GetDesignUnit());
      veri_file::UnresolvedDesignUnits().Insert(id);
    }
    create_basic_verilog_dependencies(path.c_str());
    update_verilog_compiler_directives();
  } else if (Message::ErrorCount() == 0) {
    zelk_report(MSG_ZELK::E::CANT_OPEN_FILE(path.c_str()));
  }
  zelk_msg_debug("End veri_analyzer() ...");
  zelk_msg_debug("Spent %.3f seconds in Verilog analysis of %s", zelk_elapsed_time_in_seconds(start), path.c_str());
  return is_good;
}

bool ZELK_ANALYZER_IMPL::vhdl_analyzer() {
  zelk_msg_debug("Begin vhdl_analyzer() on %s with dialect %d...", m_info->source_file->get_unmodified_filename(),
                 get_vhdl_input_version(m_info->source_file));
  std::string text = "file \"" + std::string(m_info->source_file->get_unmodified_filename()) +
                     "\" is VHDL, which this front end does not read";
  zelk_report(MSG_ZELK::E::GENERIC_ERROR(text.c_str()));
  return false;
}

void ZELK_ANALYZER_IMPL::delete_all_zelk_static_data() {
  delete zelk_flags;
  zelk_flags = nullptr;
  delete zelk_data;
  zelk_data = nullptr;
  ZELK_EXTRACTOR_DATA::m_elab_info = nullptr;
  delete_verilog_compiler_directives();
  veri_file::FreeStaticMemory();
  Database::FreeStaticMemory();
  Message::FreeStaticMemory();
  LineFile::FreeLineFileMaps();
  ClearDependencyHashes();
}

HDB_ACTION_PT_INSTANCE* ZELK_ANALYZER_IMPL::get_action_pt_inst() const { return m_info->get_action_pt_inst(); }

/// Files inside the project are known by their relative names.
std::string ZELK_ANALYZER_IMPL::path_for_kernel(HDB_SOURCE_FILE* file) const {
  FIO_PATH path(file->get_unmodified_filename());
  return path.is_absolute() ? gen_get_relative_path_if_starts_with_project_dir(path.fullpath()) : path.get_path();
}

const char* ZELK_ANALYZER_IMPL::get_destination_library(HDB_SOURCE_FILE* file) const {
  const char* library = file->get_library();
  if (!library) return "work";
  zelk_msg_debug("Found user-specified destination library %s for %s", library, file->get_unmodified_filename());
  return library;
}

bool ZELK_ANALYZER_IMPL::wants_interface_files() const {
  return m_info->is_create_default_symbol_file() || m_info->is_create_default_include_file() ||
         m_info->is_create_default_component_file() || m_info->is_create_default_instantiation_file() ||
         m_info->is_create_xml_interface_file();
}

void ZELK_ANALYZER_IMPL::resolve_for_interface_files() {
  Set done;
  for (VeriLibrary* library : ValuesOf<VeriLibrary*>(&veri_file::AllLibraries()))
    if (Message::ErrorCount() == 0) library->ResolveGlobals(&done);
  for (VeriDesignUnitId* id : KeysOf<VeriDesignUnitId*>(&veri_file::UnresolvedDesignUnits()))
    if (Message::ErrorCount() == 0) id->GetDesignUnit()->Resolve();
}

bool ZELK_ANALYZER_IMPL::write_interface_files() {
  resolve_for_interface_files();
  bool result = true;
  auto is_next = [this](bool is_wanted) {
    if (!is_wanted || Message::ErrorCount() != 0) return false;
    set_port_and_parameter_to_hdb_entity();
    return true;
  };
  if (is_next(m_info->is_create_default_symbol_file())) create_default_symbol_file();
  if (is_next(m_info->is_create_default_include_file())) create_default_include_file();
  if (is_next(m_info->is_create_default_component_file())) result = create_default_component_file();
  if (is_next(m_info->is_create_default_instantiation_file())) result &= create_default_instantiation_file();
  if (m_info->is_create_xml_interface_file() && Message::ErrorCount() == 0) write_xml_interface_file();
  return result && Message::ErrorCount() == 0;
}

void ZELK_ANALYZER_IMPL::write_xml_interface_file() {
  static constexpr const char* versions[] = {"VERILOG_1995", "VERILOG_2001", "SYSTEMVERILOG_2005"};
  std::vector<VeriModule*> units;
  for (VeriDesignUnitId* id : KeysOf<VeriDesignUnitId*>(&veri_file::NewlyFound()))
    if (id->GetDesignUnit() && id->GetDesignUnit()->IsModule())
      units.push_back(static_cast<VeriModule*>(id->GetDesignUnit()));
  int dialect = get_verilog_input_version(m_info->source_file);
  create_xml_interface_file(get_action_pt_inst(), m_info->source_file, versions[dialect - 1], units);
}

void ZELK_ANALYZER_IMPL::set_flags() {
  zelk_rebuild_flags();
  bool is_encrypted = m_info->source_file->is_encrypted();
  zelk_flags->set_cfg_flag("zelk_encrypted_source", is_encrypted);
  if (is_encrypted && !zelk_is_option_on(zelk_get_bool_option(get_action_pt_inst(), ACF_SECTION_HDL_INPUT,
                                                              ACF_VARIABLE_SHOW_ENCRYPTED_MESSAGES)))
    Message::CriticalMessagesOnly();
  set_formal_tool_flags();
  if (zelk_cfg_is_on("zelk_ignore_translate_off") ||
      zelk_is_option_on(
          zelk_get_bool_option(get_action_pt_inst(), ACF_SECTION_HDL_INPUT, ACF_VARIABLE_IGNORE_TRANSLATE_OFF)))
    VeriLex::SetIgnoreTranslateOff(1);
}

void ZELK_ANALYZER_IMPL::set_formal_tool_flags() {
  const HDB_OPTION* option =
      zelk_get_string_option(get_action_pt_inst(), ACF_SECTION_EDA_TOOLS, ACF_VARIABLE_EDA_FORMAL_TOOL);
  if (!option) return;
  switch (ETI_UTIL::eda_tool_type_string_to_enum(option->get_string())) {
  case ETI_TOOL_CONFORMAL: zelk_flags->set_cfg_flag("zelk_conformal_mode", 1); break;
  case ETI_TOOL_CUSTOM_FORMAL: zelk_flags->set_cfg_flag("zelk_custom_formal_mode", 1); break;
  case ETI_TOOL_FORMALITY: zelk_flags->set_cfg_flag("zelk_formality_mode", 1); break;
  default: break;
  }
}

namespace {

/// How the dialects of one language are set.
struct DIALECT_SETTING {
  ACF_VARIABLE_TYPE_ENUM variable;
  ACF_ENUM_TYPE_ENUM default_setting;
  int default_dialect;
  const char* bad_setting;
  struct {
    int setting;
    int dialect;
  } dialects[3];
};

constexpr DIALECT_SETTING verilog_setting = {ACF_VARIABLE_VERILOG_INPUT_VERSION,
                                             ACF_ENUM_VERILOG_2001,
                                             VERI_DIALECT_2001,
                                             "Illegal VERILOG_INPUT_VERSION setting",
                                             {{ACF_ENUM_VERILOG_1995, VERI_DIALECT_1995},
                                              {ACF_ENUM_SYSTEMVERILOG_2005, VERI_DIALECT_SYSTEM_2005},
                                              {ACF_ENUM_VERILOG_2001, VERI_DIALECT_2001}}};
constexpr DIALECT_SETTING vhdl_setting = {ACF_VARIABLE_VHDL_INPUT_VERSION,
                                          ACF_ENUM_VHDL93,
                                          VHDL_DIALECT_1993,
                                          "Illegal VHDL_INPUT_VERSION setting",
                                          {{ACF_ENUM_VHDL87, VHDL_DIALECT_1987},
                                           {ACF_ENUM_VHDL_2008, VHDL_DIALECT_2008},
                                           {ACF_ENUM_VHDL93, VHDL_DIALECT_1993}}};
constexpr int ACF_KIND_ANY = 0;
constexpr int ACF_PRODUCT = 52;

int dialect_of(const DIALECT_SETTING& setting, int value) {
  for (const auto& entry : setting.dialects)
    if (entry.setting == value) return entry.dialect;
  ZELK_INTERNAL_ERROR(setting.bad_setting);
  return setting.default_dialect;
}

/// The dialect that the file itself asks for.
int dialect_of_argument(const DIALECT_SETTING& setting, const HDB_SOURCE_FILE* file, const std::string& text) {
  int value = acf_string_to_enum_type_enum(text.c_str());
  std::vector<int> allowed;
  acf_get_variable_enum_value_types(&allowed, setting.variable, ACF_KIND_ANY, ACF_PRODUCT);
  if (std::find(allowed.begin(), allowed.end(), value) != allowed.end()) return dialect_of(setting, value);
  zelk_report(MSG_ZELK::E::ILLEGAL_HDL_VERSION_ARGUMENT(file->get_unmodified_filename()));
  return setting.default_dialect;
}

/// The dialect of the project. A missing setting is made with its default, which is not stored with the project.
int dialect_of_project(const DIALECT_SETTING& setting, HDB_ACTION_PT_INSTANCE* ap_inst) {
  HDB_SECTION* section = HDB_SECTION::find_section(ap_inst, ACF_SECTION_HDL_INPUT);
  if (!section) return setting.default_dialect;
  HDB_OPTION* option = section->find_option(setting.variable);
  if (!option) {
    const char* name = acf_get_variable_name(setting.variable);
    const char* value = acf_enum_type_to_user_string(setting.default_setting);
    zelk_msg_debug("No %s found; creating default setting %s = %s", name, name, value);
    option = section->create_option(setting.variable);
    option->set_string(value);
    option->set_flag(HDB_ASSIGNMENT::FLAG_STORED, false);
  }
  return dialect_of(setting, option->get_enum());
}

} // namespace

int ZELK_ANALYZER_IMPL::get_verilog_input_version(HDB_SOURCE_FILE* file) {
  std::string text;
  int dialect = file->get_argument_value(HDB_SOURCE_FILE::ARGUMENT_HDL_VERSION, &text)
                    ? dialect_of_argument(verilog_setting, file, text)
                    : dialect_of_project(verilog_setting, get_action_pt_inst());
  // A SystemVerilog file is SystemVerilog, whatever was said.
  if (zelk_cfg_is_on("zelk_enable_system_verilog_2005") || file->get_type() == HDB_SOURCE_FILE::TYPE_SYSTEMVERILOG)
    return VERI_DIALECT_SYSTEM_2005;
  return dialect;
}

int ZELK_ANALYZER_IMPL::get_vhdl_input_version(HDB_SOURCE_FILE* file) {
  std::string text;
  if (!file->get_argument_value(HDB_SOURCE_FILE::ARGUMENT_HDL_VERSION, &text))
    return dialect_of_project(vhdl_setting, get_action_pt_inst());
  const char* present = acf_convert_old_value_to_new(vhdl_setting.variable, text.c_str(), ACF_PRODUCT);
  return dialect_of_argument(vhdl_setting, file, present ? present : text);
}

namespace {

MESSAGE_LEVEL_ENUM level_of_project(HDB_ACTION_PT_INSTANCE* ap_inst) {
  const HDB_OPTION* option = zelk_get_enum_option(ap_inst, ACF_SECTION_HDL_INPUT, ACF_VARIABLE_HDL_MESSAGE_LEVEL);
  if (!option) return MESSAGE_LEVEL_MEDIUM;
  switch (option->get_enum()) {
  case ACF_ENUM_LOW: return MESSAGE_LEVEL_LOW;
  case ACF_ENUM_MEDIUM: return MESSAGE_LEVEL_MEDIUM;
  case ACF_ENUM_HIGH: return MESSAGE_LEVEL_HIGH;
  default: ZELK_INTERNAL_ERROR("Illegal HDL_MESSAGE_LEVEL setting"); return MESSAGE_LEVEL_MEDIUM;
  }
}

std::vector<std::string> values_of(HDB_ACTION_PT_INSTANCE* ap_inst, int variable) {
  const HDB_OPTION* option = zelk_get_string_option(ap_inst, ACF_SECTION_HDL_INPUT, variable);
  return option ? option->get_values() : std::vector<std::string>();
}

} // namespace

ZELK_MSG_DIRECTIVES* ZELK_ANALYZER_IMPL::apply_project_message_settings() {
  HDB_ACTION_PT_INSTANCE* ap_inst = get_action_pt_inst();
  auto directives = std::make_unique<ZELK_MSG_DIRECTIVES>();
  MESSAGE_LEVEL_ENUM level = level_of_project(ap_inst);
  zelk_msg_debug("apply_project_message_settings(): setting global message level to: %s",
                 ZELK_MSG_DIRECTIVES::GetMessageLevelString(level));
  directives->SetMessageLevel(level, 0);

  Set enabled(HASH_NUM);
  for (const std::string& text : values_of(ap_inst, ACF_VARIABLE_HDL_MESSAGE_ON)) {
    auto id = static_cast<unsigned>(Strings::atoi(text.c_str()));
    if (!ZELK_MSG_DIRECTIVES::check_msg_id(id, text.c_str(), nullptr, 0)) continue;
    zelk_msg_debug(" message id %u is listed as enabled by HDL_MESSAGE_ON.", id);
    enabled.Insert(ToWord(id));
    directives->MessageOn(id);
  }
  for (const std::string& text : values_of(ap_inst, ACF_VARIABLE_HDL_MESSAGE_OFF)) {
    auto id = static_cast<unsigned>(Strings::atoi(text.c_str()));
    if (!ZELK_MSG_DIRECTIVES::check_msg_id(id, text.c_str(), nullptr, 0)) continue;
    zelk_msg_debug(" message id %u is listed as enabled by HDL_MESSAGE_OFF.", id);
    if (enabled.Contains(ToWord(id)))
      zelk_report(MSG_ZELK::E::AMBIGUOUS_MESSAGE_STATUS(static_cast<int>(id)));
    else
      directives->MessageOff(id);
  }
  directives->RefreshMessageStatus();
  return directives.release();
}

void ZELK_ANALYZER_IMPL::initialize_verilog_compiler_directives() {
  constexpr unsigned INITIAL_SIZE = 16;
  if (m_macro_defs) return;
  for (Map** map : {&m_macro_defs, &m_macro_args, &m_macro_filenames, &m_macro_linefiles})
    *map = new Map(HASH_STRING, INITIAL_SIZE);
  store_macro("NORVEL_RESERVED_LSX", nullptr, nullptr, nullptr, 0);
  if (m_info->is_simgen_mode()) store_macro("TESMARK__SIMGEN", nullptr, nullptr, nullptr, 0);
  if (const char* family = HCU_FACADE_UTIL::get_facade()->get_family()) {
    std::string text = "\"" + std::string(family) + "\"";
    store_macro("NORVEL_RESERVED_LSX_FAMILY", text.c_str(), nullptr, nullptr, 0);
  }
  define_project_macros();
}

void ZELK_ANALYZER_IMPL::define_project_macros() {
  for (const std::string& text : values_of(get_action_pt_inst(), ACF_VARIABLE_VERILOG_MACRO))
    define_project_macro(text);
}

void ZELK_ANALYZER_IMPL::define_project_macro(const std::string& text) {
  ZELK_MACRO_TEXT macro = zelk_parse_macro_text(text);
  switch (macro.problem) {
  case ZELK_MACRO_TEXT::NONE: break;
  case ZELK_MACRO_TEXT::BAD_PARAMETERS:
    zelk_report(MSG_ZELK::E::VERI_BAD_MACRO_PARAM_GUI(macro.parameters.c_str(), macro.name.c_str()));
    return;
  case ZELK_MACRO_TEXT::BAD_CHARACTER:
    zelk_report(MSG_ZELK::E::VERI_ILLEGAL_CHAR_IN_MACRO_NAME(macro.bad_character, macro.name.c_str()));
    return;
  }
  m_veri_file->Macros().DefineMacro(macro.name.c_str(), macro.has_text ? macro.text.c_str() : nullptr,
                                    macro.has_parameters ? macro.parameters.c_str() : nullptr, 0);
}

void ZELK_ANALYZER_IMPL::add_verilog_compiler_directives() {
  initialize_verilog_compiler_directives();
  for (auto [name, text] : Entries<const char*, const char*>(m_macro_defs))
    m_veri_file->Macros().DefineMacro(name, text, FromWord<const char*>(m_macro_args->GetValue(name)),
                                      FromWord<linefile_type>(m_macro_linefiles->GetValue(name)));
}

/// Afterwards a macro that the file defined or undefined holds in all later files of the project.
void ZELK_ANALYZER_IMPL::update_verilog_compiler_directives() {
  for (auto [name, text] : Entries<const char*, const char*>(m_macro_defs))
    if (!m_veri_file->Macros().IsDefinedMacro(name)) remove_macro(name);
  for (auto [name, macro] : m_veri_file->Macros().All()) {
    if (macro->IsPredefined() || is_stored_as_it_is(name)) continue;
    remove_macro(name);
    store_macro(name, macro->Value(), macro->Args(), m_veri_file->Macros().MacroFilename(name), macro->Linefile());
  }
  print_verilog_compiler_directives();
}

bool ZELK_ANALYZER_IMPL::is_stored_as_it_is(const char* name) const {
  const VeriMacroDef* macro = m_veri_file->Macros().Find(name);
  const char* filename = m_veri_file->Macros().MacroFilename(name);
  auto is_same = [name](const Map* stored, const char* text) {
    return gen_strcmp(FromWord<const char*>(stored->GetValue(name)), text) == 0;
  };
  return m_macro_defs->GetItem(name) && is_same(m_macro_defs, macro->Value()) && is_same(m_macro_args, macro->Args()) &&
         is_same(m_macro_filenames, filename) &&
         FromWord<linefile_type>(m_macro_linefiles->GetValue(name)) == macro->Linefile();
}

void ZELK_ANALYZER_IMPL::print_verilog_compiler_directives() {
  for (auto [name, text] : Entries<const char*, const char*>(m_macro_defs)) {
    const char* filename = FromWord<const char*>(m_macro_filenames->GetValue(name));
    zelk_msg_debug("%s = %s (%s)", name, text ? text : "", filename ? filename : "<no filename>");
  }
}

/// The four maps share the copy of the name.
void ZELK_ANALYZER_IMPL::store_macro(const char* name, const char* text, const char* args, const char* filename,
                                     unsigned long linefile) {
  const char* key = Strings::save(name);
  m_macro_defs->Insert(key, Strings::save(text));
  m_macro_args->Insert(key, Strings::save(args));
  m_macro_filenames->Insert(key, Strings::save(filename));
  m_macro_linefiles->Insert(key, ToWord(linefile));
}

void ZELK_ANALYZER_IMPL::remove_macro(const char* name) {
  const MapItem* item = m_macro_defs->GetItem(name);
  if (!item) return;
  OwnedString key(FromWord<char*>(item->Key()));
  for (Map* map : {m_macro_defs, m_macro_args, m_macro_filenames}) {
    Strings::free_string(FromWord<char*>(map->GetValue(key.get())));
    map->Remove(key.get());
  }
  m_macro_linefiles->Remove(key.get());
}

void ZELK_ANALYZER_IMPL::delete_verilog_compiler_directives() {
  if (!m_macro_defs) return;
  for (auto [name, text] : Entries<const char*, const char*>(m_macro_defs)) remove_macro(name);
  for (Map** map : {&m_macro_defs, &m_macro_args, &m_macro_filenames, &m_macro_linefiles}) {
    delete *map;
    *map = nullptr;
  }
}

namespace {

/// The kernel runs without the frame of an analysis: nothing is shown.
void silence_kernel() {
  Message::SetConsoleOutput(0);
  Message::RegisterCallBackMsg(nullptr);
  Message::ClearErrorCount();
}

} // namespace

bool ZELK_ANALYZER_IMPL::convert_hsp_parameter_to_verilog(std::string& value, std::string& type) {
  silence_kernel();
  zelk_convert_parameter_to_verilog(value, type);
  return Message::ErrorCount() == 0 && type.empty();
}

bool ZELK_ANALYZER_IMPL::convert_hsp_parameter_to_vhdl(std::string&, std::string& type) {
  silence_kernel();
  return type.empty();
}
