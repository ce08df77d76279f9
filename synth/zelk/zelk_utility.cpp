// The services of the adapter's files, and the kernel's road to them.
#include "zelk_utility.h"

#include <cstdarg>
#include <cstdlib>
#include <memory>

#include "basex.h"
#include "cfg.h"
#include "containers/assertion.h"
#include "fio.h"
#include "gen.h"
#include "htl.h"
#include "msg.h"
#include "stl_util.h"
#include "util/services.h"
#include "zelk_attribute_check.h"
#include "zelk_mif.h"
#include "zelk_msg_directives.h"
#include "zelk_msgs.h"
#include "zelk_report.h"

ZELK_EXTRACTOR_FLAGS* zelk_flags = nullptr;
ZELK_EXTRACTOR_DATA* zelk_data = nullptr;
BASEX_ELABORATE_INFO* ZELK_EXTRACTOR_DATA::m_elab_info = nullptr;

ZELK_EXTRACTOR_FLAGS::ZELK_EXTRACTOR_FLAGS() : m_flags(new GEN_STRING_HASH) {}

ZELK_EXTRACTOR_FLAGS::~ZELK_EXTRACTOR_FLAGS() { delete m_flags; }

namespace {

/// Variables that are on unless the user turns them off.
bool is_on_by_default(std::string_view key) {
  return key == "lsx_infer_true_dual_port_rams" || key == "lsx_infer_mixed_width_and_byte_enabled_rams";
}

} // namespace

int ZELK_EXTRACTOR_FLAGS::get_cfg_flag(const char* key) {
  int value = 0;
  if (m_flags->find(key, value)) return value;
  value = cfg_is_on(key, is_on_by_default(key)) ? 1 : 0;
  m_flags->insert(key, value);
  return value;
}

void ZELK_EXTRACTOR_FLAGS::set_cfg_flag(const char* key, int value) { m_flags->insert(key, value); }

void zelk_rebuild_flags() {
  delete zelk_flags;
  zelk_flags = new ZELK_EXTRACTOR_FLAGS;
}

ZELK_EXTRACTOR_DATA* ZELK_EXTRACTOR_DATA::instance() {
  if (!zelk_data) zelk_data = new ZELK_EXTRACTOR_DATA;
  return zelk_data;
}

namespace {

class ZELK_KERNEL_SERVICES : public KernelServices {
public:
  FoundFile FindFile(const char* name, const char* current_absolute, const char* current_relative) override {
    auto [reported, full] = zelk_find_file(name, current_absolute, current_relative);
    return {OwnedString(reported), OwnedString(full)};
  }
  int Flag(const char* key) override { return zelk_flags ? zelk_flags->get_cfg_flag(key) : zelk_cfg_is_on(key); }
  void SetFlag(const char* key, int value) override {
    if (zelk_flags) zelk_flags->set_cfg_flag(key, value);
  }
  void Debug(const char* text) override { zelk_msg_debug("%s", text); }
  void* ProfileBegin(const char* name) override { return new HTL_PROFILER("ZELK", name); }
  void ProfileEnd(void* scope) override { delete static_cast<HTL_PROFILER*>(scope); }
  OwnedString WriteMemoryFile(const MemoryContents& contents) override {
    std::string name = zelk_generate_mif(contents);
    return OwnedString(name.empty() ? nullptr : Strings::save(name.c_str()));
  }
  bool CheckAttributeName(const char* name, const char* file, unsigned line) override {
    return zelk_check_attribute_name(name, file, line);
  }
  void CheckAttributeValue(const char* name, const char* value, const char* file, unsigned line) override {
    zelk_check_attribute_value(name, value, file, line);
  }
  void CheckAttributeOrDirective(const char* name, const char* file, unsigned line, bool is_attribute,
                                 const char* trigger) override {
    zelk_check_attribute_or_directive(name, file, line, is_attribute, trigger);
  }
  std::unique_ptr<MessageDirectives> NewMessageDirectives() override { return std::make_unique<ZELK_MSG_DIRECTIVES>(); }
};

void report_assertion(const char* text, const char* file, int line) {
  MSG_INTERNAL_ERROR::report_and_exit(text, "ZELK", file, line);
}

} // namespace

void zelk_connect_kernel() {
  static ZELK_KERNEL_SERVICES services;
  KernelServices::Set(&services);
  kestrin_set_assertion_handler(report_assertion);
  kestrin_set_report_handler(zelk_norvel_ie);
}

void zelk_norvel_ie(const char* text, const char* file, int line) {
  MSG_INTERNAL_ERROR::report(text, "ZELK", file, line);
}

void zelk_internal_error(const char* text, int line, const char* file) { zelk_norvel_ie(text, file, line); }

void zelk_norvel_assert(bool condition, const char* file, int line, const char* text) {
  if (!condition) zelk_norvel_ie(text, file, line);
}

void zelk_msg_debug(const char* format, ...) {
  if (!MSG_LOCAL_DEBUG::is_on()) return;
  std::string text;
  va_list args;
  va_start(args, format);
  stl_vsprintf(text, format, args);
  va_end(args);
  MSG_LOCAL_DEBUG::print("KESTRIN", text.c_str());
}

bool zelk_cfg_is_on(const char* key) { return cfg_is_on(key, false); }

int zelk_get_ini_value(const char* name, int default_value, bool print) {
  std::string text = cfg_get_value(name);
  int value = text.empty() ? default_value : std::atoi(text.c_str());
  if (print) std::printf("Variable %s value %d\n", name, value);
  return value;
}

namespace {

HDB_OPTION* find_option(HDB_ACTION_PT_INSTANCE* ap_inst, int section, int variable) {
  ZELK_ASSERT(ap_inst);
  if (!ap_inst) return nullptr;
  HDB_SECTION* found = HDB_SECTION::find_section(ap_inst, section);
  return found ? found->find_option(variable) : nullptr;
}

} // namespace

HDB_OPTION* zelk_get_string_option(HDB_ACTION_PT_INSTANCE* ap_inst, int section, int variable) {
  return find_option(ap_inst, section, variable);
}

HDB_OPTION* zelk_get_bool_option(HDB_ACTION_PT_INSTANCE* ap_inst, int section, int variable) {
  return find_option(ap_inst, section, variable);
}

HDB_OPTION* zelk_get_enum_option(HDB_ACTION_PT_INSTANCE* ap_inst, int section, int variable) {
  return find_option(ap_inst, section, variable);
}

bool zelk_is_option_on(const HDB_OPTION* option) { return option && option->is_on(); }

bool zelk_is_option_off(const HDB_OPTION* option) { return option && !option->is_on(); }

double zelk_tick_count() { return gen_get_tick_count(); }

double zelk_elapsed_time_in_seconds(double start) { return (zelk_tick_count() - start) / 1000; }

bool zelk_check_for_error_messages() { return msg_get_default_report()->get_message_count(MSG_KIND_ERROR) == 0; }

FILE* zelk_norvel_fopen(const char* name, const char* mode) {
  FILE* file = FIO_FILE_SYSTEM::open(name, mode);
  if (!file) zelk_report(MSG_ZELK::E::CANT_OPEN_FILE(name));
  return file;
}

int zelk_norvel_fclose(FILE* file) { return FIO_FILE_SYSTEM::close(file); }
int zelk_norvel_ferror(FILE* file) { return FIO_FILE_SYSTEM::error(file); }
int zelk_norvel_fgetc(FILE* file) { return FIO_FILE_SYSTEM::getc(file); }
size_t zelk_norvel_fread(void* buffer, size_t size, FILE* file) { return FIO_FILE_SYSTEM::read(buffer, size, file); }

namespace {

std::pair<char*, char*> not_found(const char* filename) { return {Strings::save(filename), nullptr}; }

} // namespace

std::pair<char*, char*> zelk_find_file(const char* filename, const char* current_absolute_filename,
                                       const char* current_relative_filename) {
  ZELK_ASSERT_TEXT(filename, "filename");
  if (!filename) return {nullptr, nullptr};
  OwnedString resolved;
  if (current_relative_filename && !current_absolute_filename) {
    auto [reported, full] = zelk_find_file(current_relative_filename, nullptr, nullptr);
    Strings::free_string(reported);
    if (!full) return not_found(filename);
    resolved.reset(full);
    current_absolute_filename = resolved.get();
  }
  if (!current_relative_filename) current_relative_filename = current_absolute_filename;

  std::string reported(filename);
  std::string full;
  if (current_absolute_filename) {
    std::string relative;
    if (!gen_find_include_file(filename, current_absolute_filename, current_relative_filename, relative, full))
      return not_found(filename);
    if (!relative.empty()) reported = relative;
    if (reported != filename)
      zelk_msg_debug("Corrected relative path to 'include file: %s --> %s", filename, reported.c_str());
  } else {
    std::string found;
    if (!gen_find_file(filename, found)) return not_found(filename);
    full = FIO_PATH(found).fullpath();
  }
  if (full != filename) zelk_msg_debug("Mapped %s --> %s", filename, full.c_str());
  return {Strings::save(reported.c_str()), Strings::save(full.c_str())};
}

void zelk_dump_source(const char* filename) {
  constexpr size_t BLOCK_SIZE = 1024;
  FILE* source = zelk_norvel_fopen(filename, "rb");
  if (!source) return;
  if (FILE* copy = zelk_norvel_fopen((std::string(filename) + "_dump").c_str(), "wb")) {
    char block[BLOCK_SIZE];
    while (size_t size = zelk_norvel_fread(block, sizeof block, source))
      if (std::fwrite(block, 1, size, copy) != size) break;
    zelk_norvel_fclose(copy);
  }
  zelk_norvel_fclose(source);
}
