// Services that every file of the adapter uses: configuration flags, options of the project, internal errors and debug
// output, timing, files. Also the hooks by which the kernel reaches these, since it includes nothing of the adapter.
#ifndef ZELK_UTILITY_H
#define ZELK_UTILITY_H

#include <cstdio>
#include <string>
#include <utility>

#include "acf.h"
#include "gen_string_hash.h"

class BASEX_ELABORATE_INFO;
class HDB_ACTION_PT_INSTANCE;
class HDB_OPTION;
class HDB_SOURCE_FILE;

/// The flags of one analysis or elaboration, by key. A key that nobody wrote takes its value, once, from the host's
/// configuration variable of the same name. Flags are numbers, because some keys carry limits.
class ZELK_EXTRACTOR_FLAGS {
public:
  ZELK_EXTRACTOR_FLAGS();
  ~ZELK_EXTRACTOR_FLAGS();
  ZELK_EXTRACTOR_FLAGS(const ZELK_EXTRACTOR_FLAGS&) = delete;
  ZELK_EXTRACTOR_FLAGS& operator=(const ZELK_EXTRACTOR_FLAGS&) = delete;

  int get_cfg_flag(const char* key);
  /// Inserts or overwrites.
  void set_cfg_flag(const char* key, int value);

private:
  GEN_STRING_HASH* m_flags;
};

/// The flags in force; null before the first analysis and after the static data was deleted.
extern ZELK_EXTRACTOR_FLAGS* zelk_flags;
/// Replaces the flags by a fresh set: what one call wrote is gone in the next.
void zelk_rebuild_flags();

/// What elaboration keeps for code that has no other way to it.
class ZELK_EXTRACTOR_DATA {
public:
  static ZELK_EXTRACTOR_DATA* instance();
  static BASEX_ELABORATE_INFO* m_elab_info;
};
extern ZELK_EXTRACTOR_DATA* zelk_data;

/// Routes the kernel's assertions, flags, debug output and file look-ups to the host. Idempotent.
void zelk_connect_kernel();

// Internal errors of the adapter, through the host.
void zelk_norvel_ie(const char* text, const char* file, int line);
void zelk_internal_error(const char* text, int line, const char* file);
void zelk_norvel_assert(bool condition, const char* file, int line, const char* text);
/// The condition must hold; its text is reported otherwise, and processing goes on.
#define ZELK_ASSERT_TEXT(condition, text) zelk_norvel_assert(static_cast<bool>(condition), __FILE__, __LINE__, text)
#define ZELK_ASSERT(condition) ZELK_ASSERT_TEXT(condition, #condition)
#define ZELK_INTERNAL_ERROR(text) zelk_norvel_ie(text, __FILE__, __LINE__)

/// Debug output of the host under the tag "KESTRIN".
[[gnu::format(printf, 1, 2)]] void zelk_msg_debug(const char* format, ...);

// Configuration variables, past the flags.
bool zelk_cfg_is_on(const char* key);
/// The decimal value of a variable, or the default when nobody set it. `print` prints what came out.
int zelk_get_ini_value(const char* name, int default_value, bool print);

/// Options of the project by section and variable; null when the project has no such section or option.
HDB_OPTION* zelk_get_string_option(HDB_ACTION_PT_INSTANCE* ap_inst, int section, int variable);
HDB_OPTION* zelk_get_bool_option(HDB_ACTION_PT_INSTANCE* ap_inst, int section, int variable);
HDB_OPTION* zelk_get_enum_option(HDB_ACTION_PT_INSTANCE* ap_inst, int section, int variable);
/// The option exists and is on, or exists and is off.
bool zelk_is_option_on(const HDB_OPTION* option);
bool zelk_is_option_off(const HDB_OPTION* option);

double zelk_tick_count();
double zelk_elapsed_time_in_seconds(double start);

/// True when the host's default report holds no error.
bool zelk_check_for_error_messages();

/// Files through the host. A failed open reports EZELK_CANT_OPEN_FILE and returns null.
FILE* zelk_norvel_fopen(const char* name, const char* mode);
int zelk_norvel_fclose(FILE* file);
int zelk_norvel_ferror(FILE* file);
int zelk_norvel_fgetc(FILE* file);
size_t zelk_norvel_fread(void* buffer, size_t size, FILE* file);

/// Looks a file up for the kernel: includes beside the current file and along the search directories, others from the
/// project. First the name to be reported, then the full name or null when the file was not found; both are kernel
/// strings of the caller. Either current name may be null.
std::pair<char*, char*> zelk_find_file(const char* filename, const char* current_absolute_filename,
                                       const char* current_relative_filename);

/// Copies a file to one of the same name with "_dump" behind it: a look at a source as the library sees it.
void zelk_dump_source(const char* filename);

#endif
