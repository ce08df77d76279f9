// Reads the entries of a project file from one table of their names.
#include "project_file.h"

#include <functional>

#define TOML_EXCEPTIONS 1
#include <toml++/toml.h>

#include "arguments.h"
#include "fio.h"

namespace {

class PROJECT_FILE {
public:
  PROJECT_FILE(const std::string& path, PROJECT_BUILDER& builder, COMMAND_LINE& command)
      : m_path(path), m_directory(FIO_PATH(path).directory()), m_builder(builder), m_command(command) {}
  void read();

private:
  struct ENTRY {
    const char* key;
    void (PROJECT_FILE::*read)(const toml::node& node);
  };
  static const ENTRY entries[];

  [[noreturn]] void refuse(const toml::node& node, const std::string& problem) const;
  void located(const toml::node& node, const std::function<void()>& action) const;
  const std::string& text_of(const toml::node& node) const;
  std::string value_of(const toml::node& node) const;
  std::string resolved(const toml::node& node) const;
  void each(const toml::node& node, const std::function<void(const toml::node&)>& action) const;
  void each_named(const toml::node& node,
                  const std::function<void(const std::string& name, const toml::node&)>& action) const;
  void add_sources(const toml::node& node);
  void add_source(const toml::node& node);
  void add_source_table(const toml::table& table);

  void read_top(const toml::node& node);
  void read_standards(const toml::node& node);
  void read_libraries(const toml::node& node);
  void read_include_dirs(const toml::node& node);
  void read_library_dirs(const toml::node& node);
  void read_parameters(const toml::node& node);
  void read_defines(const toml::node& node);
  void read_settings(const toml::node& node);
  void read_variables(const toml::node& node);
  void read_outputs(const toml::node& node);

  std::string m_path;
  std::string m_directory;
  PROJECT_BUILDER& m_builder;
  COMMAND_LINE& m_command;
};

/// In the order in which they take effect: dialects before the sources that they are for.
const PROJECT_FILE::ENTRY PROJECT_FILE::entries[] = {{"top", &PROJECT_FILE::read_top},
                                                     {"std", &PROJECT_FILE::read_standards},
                                                     {"include_dirs", &PROJECT_FILE::read_include_dirs},
                                                     {"library_dirs", &PROJECT_FILE::read_library_dirs},
                                                     {"defines", &PROJECT_FILE::read_defines},
                                                     {"libraries", &PROJECT_FILE::read_libraries},
                                                     {"sources", &PROJECT_FILE::add_sources},
                                                     {"parameters", &PROJECT_FILE::read_parameters},
                                                     {"settings", &PROJECT_FILE::read_settings},
                                                     {"variables", &PROJECT_FILE::read_variables},
                                                     {"outputs", &PROJECT_FILE::read_outputs}};

void PROJECT_FILE::refuse(const toml::node& node, const std::string& problem) const {
  throw USAGE_ERROR(m_path + ":" + std::to_string(node.source().begin.line) + ": " + problem);
}

const std::string& PROJECT_FILE::text_of(const toml::node& node) const {
  if (!node.is_string()) refuse(node, "a text is expected");
  return node.as_string()->get();
}

/// A text, a number or a truth value as the options of the command line have it.
std::string PROJECT_FILE::value_of(const toml::node& node) const {
  if (node.is_boolean()) return node.as_boolean()->get() ? "on" : "off";
  if (node.is_integer()) return std::to_string(node.as_integer()->get());
  if (node.is_floating_point()) {
    std::ostringstream text;
    text.precision(17);
    text << node.as_floating_point()->get();
    bool is_plain = text.str().find_first_of(".en") == std::string::npos;
    return text.str() + (is_plain ? ".0" : "");
  }
  return text_of(node);
}

std::string PROJECT_FILE::resolved(const toml::node& node) const {
  const std::string& path = text_of(node);
  return path.empty() || path[0] == '/' ? path : m_directory + path;
}

/// Gives the problems of an action that have no place the one of a node.
void PROJECT_FILE::located(const toml::node& node, const std::function<void()>& action) const {
  try {
    action();
  } catch (const USAGE_ERROR& problem) {
    bool has_place = std::string(problem.what()).rfind(m_path + ":", 0) == 0;
    if (has_place) throw;
    refuse(node, problem.what());
  }
}

/// Each element of a list; what is no list stands for itself.
void PROJECT_FILE::each(const toml::node& node, const std::function<void(const toml::node&)>& action) const {
  auto act = [&](const toml::node& element) { located(element, [&] { action(element); }); };
  if (!node.is_array()) return act(node);
  for (const toml::node& element : *node.as_array()) act(element);
}

/// Each entry of a table, in the order of the file.
void PROJECT_FILE::each_named(const toml::node& node,
                              const std::function<void(const std::string& name, const toml::node&)>& action) const {
  if (!node.is_table()) refuse(node, "a table of names and values is expected");
  std::vector<std::pair<std::string, const toml::node*>> members;
  for (const auto& [key, value] : *node.as_table()) members.emplace_back(std::string(key.str()), &value);
  std::stable_sort(members.begin(), members.end(), [](const auto& left, const auto& right) {
    return left.second->source().begin < right.second->source().begin;
  });
  for (const auto& member : members) located(*member.second, [&] { action(member.first, *member.second); });
}

void PROJECT_FILE::read() {
  toml::table root;
  try {
    if (!FIO_FILE_SYSTEM::is_file(m_path.c_str())) throw USAGE_ERROR("can't read project file \"" + m_path + "\"");
    root = toml::parse_file(m_path);
  } catch (const toml::parse_error& problem) {
    throw USAGE_ERROR(m_path + ":" + std::to_string(problem.source().begin.line) + ": " +
                      std::string(problem.description()));
  }
  each_named(root, [this](const std::string& name, const toml::node& node) {
    for (const ENTRY& entry : entries)
      if (name == entry.key) return;
    refuse(node, "a project has no entry \"" + name + "\"");
  });
  for (const ENTRY& entry : entries) {
    const toml::node* node = root.get(entry.key);
    if (!node) continue;
    located(*node, [&] { (this->*entry.read)(*node); });
  }
}

void PROJECT_FILE::read_top(const toml::node& node) {
  if (m_command.run.top.empty()) m_command.run.top = text_of(node);
}

void PROJECT_FILE::read_standards(const toml::node& node) {
  each(node, [this](const toml::node& name) { m_builder.set_standard(text_of(name)); });
}

void PROJECT_FILE::read_include_dirs(const toml::node& node) {
  each(node, [this](const toml::node& path) { m_builder.add_include_dir(resolved(path)); });
}

void PROJECT_FILE::read_library_dirs(const toml::node& node) {
  each(node, [this](const toml::node& path) { m_builder.add_library_dir(resolved(path)); });
}

void PROJECT_FILE::read_defines(const toml::node& node) {
  each_named(node, [this](const std::string& name, const toml::node& text) {
    bool is_flag = text.is_boolean();
    if (is_flag && !text.as_boolean()->get()) return;
    m_builder.add_macro(is_flag ? name : name + "=" + value_of(text));
  });
}

void PROJECT_FILE::add_sources(const toml::node& node) {
  each(node, [this](const toml::node& source) { add_source(source); });
}

/// A path, or a table of a path with its own library and dialect.
void PROJECT_FILE::add_source(const toml::node& node) {
  PROJECT_BUILDER::FILE_STATE state = m_builder.get_file_state();
  if (node.is_table())
    add_source_table(*node.as_table());
  else
    m_builder.add_file(resolved(node));
  m_builder.set_file_state(state);
}

void PROJECT_FILE::add_source_table(const toml::table& table) {
  const toml::node* file = table.get("file");
  if (!file) refuse(table, "a source needs a \"file\"");
  each_named(table, [this](const std::string& name, const toml::node& value) {
    if (name == "library")
      m_builder.set_library(text_of(value));
    else if (name == "std")
      m_builder.set_standard(text_of(value));
    else if (name != "file")
      refuse(value, "a source has no \"" + name + "\"");
  });
  each(*file, [this](const toml::node& path) { m_builder.add_file(resolved(path)); });
}

void PROJECT_FILE::read_libraries(const toml::node& node) {
  PROJECT_BUILDER::FILE_STATE state = m_builder.get_file_state();
  each_named(node, [this](const std::string& name, const toml::node& sources) {
    m_builder.set_library(name);
    add_sources(sources);
  });
  m_builder.set_file_state(state);
}

void PROJECT_FILE::read_parameters(const toml::node& node) {
  each_named(node, [this](const std::string& name, const toml::node& value) {
    bool is_flag = value.is_boolean();
    m_builder.add_parameter(name + "=" + (is_flag ? (value.as_boolean()->get() ? "1" : "0") : value_of(value)));
  });
}

void PROJECT_FILE::read_settings(const toml::node& node) {
  each_named(node, [this](const std::string& name, const toml::node& values) {
    each(values, [&](const toml::node& value) { m_builder.set_option(name + "=" + value_of(value)); });
  });
}

void PROJECT_FILE::read_variables(const toml::node& node) {
  each_named(node, [this](const std::string& name, const toml::node& value) {
    m_builder.set_variable(name + "=" + value_of(value));
  });
}

void PROJECT_FILE::read_outputs(const toml::node& node) {
  each(node, [this](const toml::node& path) { m_builder.add_output(resolved(path)); });
}

} // namespace

void read_project_file(const std::string& path, PROJECT_BUILDER& builder, COMMAND_LINE& command) {
  PROJECT_FILE(path, builder, command).read();
}
