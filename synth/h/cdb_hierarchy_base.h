// What every result of an elaboration is to the flow, whatever netlist it holds.
#ifndef CDB_HIERARCHY_BASE_H
#define CDB_HIERARCHY_BASE_H

#include <string>

class CDB_HIERARCHY_BASE {
public:
  virtual ~CDB_HIERARCHY_BASE() = default;
  const std::string& get_instance_name() const { return m_instance_name; }
  void set_instance_name(const char* name) { m_instance_name = name ? name : ""; }

private:
  std::string m_instance_name;
};

#endif
