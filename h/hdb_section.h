// Settings of a project: assignments of values to variables, gathered in sections.
#ifndef HDB_SECTION_H
#define HDB_SECTION_H

#include <memory>
#include <string>
#include <vector>

#include "acf.h"

class HDB_ACTION_PT_INSTANCE;

/// A variable with its value or values, and eight flags for whoever set it.
class HDB_ASSIGNMENT {
public:
  /// Flag 5 off says that the assignment was made up as a default and is not to be stored with the project.
  static constexpr int FLAG_STORED = 5;

  explicit HDB_ASSIGNMENT(int variable) : m_variable(variable) {}
  virtual ~HDB_ASSIGNMENT() = default;
  int get_variable() const { return m_variable; }
  void set_flag(int flag, bool on);
  bool get_flag(int flag) const { return (m_flags >> flag & 1U) != 0; }
  /// What the assignment is made to, such as the name of a library; empty for the whole project.
  const std::string& get_target() const { return m_target; }
  void set_target(const std::string& target) { m_target = target; }

private:
  int m_variable;
  unsigned m_flags = 1U << FLAG_STORED;
  std::string m_target;
};

/// An assignment as its reader sees it. Reading it as another kind than it is gives 0, off or empty.
class HDB_OPTION : public HDB_ASSIGNMENT {
public:
  using HDB_ASSIGNMENT::HDB_ASSIGNMENT;
  bool is_on() const;
  int get_integer() const;
  /// ACF_ENUM_NONE for a text that names no value.
  int get_enum() const;
  /// The first value; empty without one.
  const char* get_string() const { return m_values.empty() ? "" : m_values.front().c_str(); }
  const std::vector<std::string>& get_values() const { return m_values; }
  void set_string(const std::string& value) { m_values.assign(1, value); }
  void add_value(const std::string& value) { m_values.push_back(value); }

private:
  std::vector<std::string> m_values;
};

/// A section of a project's settings. It owns its options.
class HDB_SECTION {
public:
  explicit HDB_SECTION(int type) : m_type(type) {}
  HDB_SECTION(const HDB_SECTION&) = delete;
  HDB_SECTION& operator=(const HDB_SECTION&) = delete;
  int get_type() const { return m_type; }

  /// The project's section of that type, or null.
  static HDB_SECTION* find_section(HDB_ACTION_PT_INSTANCE* ap_inst, int type);

  /// The project-wide option (one without a target), or null.
  HDB_OPTION* find_option(int variable) const;
  /// Finds or makes it, without a value.
  HDB_OPTION* create_option(int variable);
  /// A further one for a target.
  HDB_OPTION* create_assignment(int variable, const std::string& target);
  /// Every one of a variable, with and without a target, in the order of their making.
  std::vector<HDB_OPTION*> find_assignments(int variable) const;

private:
  int m_type;
  std::vector<std::unique_ptr<HDB_OPTION>> m_options;
};

#endif
