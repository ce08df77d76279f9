// General services of the host: comparison of strings, search of source files, project and library folders, time.
#ifndef GEN_H
#define GEN_H

#include <string>

/// As strcmp; null sorts before everything and equals null.
int gen_strcmp(const char* left, const char* right);
/// The same without regard to case.
int gen_stricmp(const char* left, const char* right);

/// Finds a file by the name that a user gave: as it stands, from the project directory, then in the project's search
/// directories in order. True and the path as found when it exists.
bool gen_find_file(const char* name, std::string& found);

/// Finds an include file: beside the including file, then as gen_find_file. `relative` is the name to report (may stay
/// empty: the given name serves) and `absolute` the full path. The names of the including file are its full path and
/// the path under which it is reported.
bool gen_find_include_file(const char* name, const char* current_absolute, const char* current_relative,
                           std::string& relative, std::string& absolute);

/// A path inside the project directory becomes relative to it; any other is returned as it is.
std::string gen_get_relative_path_if_starts_with_project_dir(const std::string& path);

/// The project's directory with "/" at its end.
std::string gen_get_project_dir_path();

/// Folders of the installation by kind: 2 holds the standard libraries of VHDL, one folder each. With "/" at the end.
std::string gen_get_library_path(int kind);

/// Milliseconds of a monotonic clock.
double gen_get_tick_count();

/// The version of the program as shown to users, and the name of the operating system.
const char* gen_get_version();
const char* gen_get_platform();

/// Set-up of the above by the program: project directory (default: the current one) and search directories in order.
void gen_set_project_dir(const std::string& directory);
void gen_set_library_root(const std::string& directory);
void gen_add_search_dir(const std::string& directory);
void gen_clear_search_dirs();

#endif
