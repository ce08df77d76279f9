// ZELK_NETLIST_CREATOR: reads kernel netlists from a text file, so that what comes behind elaboration can be exercised
// on netlists that are written down directly.
//
// The language. A line is a command, followed by arguments KEY=value between blanks or tabs. Commands and keys are read
// without regard to case. A value in double quotes is a string and may have blanks; any other value is a number, a word
// of the language or a symbol. "//" begins a comment. What a line makes is known to later lines by its SYMBOL, which
// is its name unless given; symbols of ports, nets and instances belong to their netlist. A line works on the latest
// netlist, or on the one whose symbol stands before its command: "child.NET NAME=a".
//
//   LIBRARY NAME=                         CELL NAME= [LIBRARY=symbol]
//   NETLIST NAME= [CELL=symbol] [KEY="unit_library(name,value)"] [LINE=]     KEY: what the netlist is asked for by
//   NET [NAME=] [POWER_UP="1"] [LINE=]    without a name: an anonymous net, under its SYMBOL
//   NETBUS NAME= LEFT= RIGHT= [LINE=]     makes the nets "name[i]" too
//   PORT NAME= DIRECTION=INPUT|OUTPUT|INOUT [LEFT= RIGHT=] [NET=nets] [LINE=]     makes the nets when none are given
//   GATE TYPE=type [NAME=] [BUFFER_TYPE=] [LINE=] role=net ...
//   OPERATOR TYPE=type [NAME=] [SIGNED=1] [FUNCTION=] [LINE=] role=nets ...
//   RAM [NAME=] READ_ADDRESS= READ_DATA= [READ_DEPTH=] [WRITE_ENABLE= WRITE_ADDRESS= WRITE_DATA= [BYTE_ENABLE=]
//       [WRITE_DEPTH=]], and all of these with _B behind them for a second port
//   USER_INSTANCE NAME= VIEW=symbol [LINE=]
//   CONNECT INSTANCE=symbol PORT=port NET=nets
//   GET_PORT NAME= [VIEW=symbol] SYMBOL=  a port or port bus of the netlist or of another one
//   ATTRIBUTE OBJECT=symbol NAME= VALUE=
//   PARAMETER NAME= VALUE= [TYPE=]
//   SET NETLIST=symbol | OBJECT=symbol [POWER_UP=] [PREFERRED=1] [NAME=] | FILE= [LINE=]
//
// Nets are symbols between commas, the most significant first, as in a concatenation; the symbol of a bus stands for
// all of its nets, and "v[3:1]" for some. FILE and LINE give what follows a location; a LINE within a line counts for
// that line alone. A mistake is an internal error with the file and line; the file is not read further then.
#ifndef ZELK_NETLIST_CREATOR_H
#define ZELK_NETLIST_CREATOR_H

#include <map>
#include <string>
#include <vector>

class Cell;
class DesignObj;
class Instance;
class Library;
class Net;
class Netlist;
class Port;
template <class T> class ArrayOf;

enum ZELK_ARG_ENUM : int;

class ZELK_NETLIST_CREATOR {
public:
  explicit ZELK_NETLIST_CREATOR(const std::string& map_file);

  /// Reads the file and gives the netlist that answers the key; null when there is none or the file has a mistake.
  /// Netlists stand in the cells of the global set, as elaborated ones do.
  Netlist* create(const std::string& key);

private:
  using ARG_MAP = std::map<ZELK_ARG_ENUM, std::string>;
  using NETS = ArrayOf<Net>;
  using PROCESS = bool (ZELK_NETLIST_CREATOR::*)(const ARG_MAP& args);
  struct COMMAND;
  static const COMMAND m_commands[];

  // All of these are false, or null, when a mistake was reported.
  bool process_line(const std::string& line);
  bool create_arg_map(const std::string& rest, ARG_MAP& args);
  bool process_library(const ARG_MAP& args);
  bool process_cell(const ARG_MAP& args);
  bool process_netlist(const ARG_MAP& args);
  bool process_net(const ARG_MAP& args);
  bool process_netbus(const ARG_MAP& args);
  bool process_port(const ARG_MAP& args);
  bool process_gate(const ARG_MAP& args);
  bool process_op(const ARG_MAP& args);
  bool process_ram(const ARG_MAP& args);
  bool process_user_instance(const ARG_MAP& args);
  bool process_connect(const ARG_MAP& args);
  bool process_get_port(const ARG_MAP& args);
  bool process_attribute(const ARG_MAP& args);
  bool process_parameter(const ARG_MAP& args);
  bool process_set(const ARG_MAP& args);

  bool line_is_comment(const std::string& line) const;
  static bool value_is_string(const std::string& value);
  static std::string remove_quotes(const std::string& value);
  std::string append_line_info(const std::string& text) const;
  /// Reports and gives false.
  bool report(const std::string& text) const;

  bool has(ZELK_ARG_ENUM arg, const ARG_MAP& args) const { return args.count(arg) != 0; }
  bool get_from_arg_map(ZELK_ARG_ENUM arg, const ARG_MAP& args, std::string& value) const;
  /// Absent arguments leave the number as it was.
  bool get_from_arg_map(ZELK_ARG_ENUM arg, const ARG_MAP& args, long& number) const;
  DesignObj* get_from_symbol_table(const std::string& name) const;
  template <class T> T* get_from_symbol_table(ZELK_ARG_ENUM arg, const ARG_MAP& args, int object_type) const;
  bool get_from_type_map(const ARG_MAP& args, int& type) const;
  /// The nets of a role; an absent role has none.
  bool get_nets(ZELK_ARG_ENUM arg, const ARG_MAP& args, NETS& nets) const;
  bool get_net(ZELK_ARG_ENUM arg, const ARG_MAP& args, Net*& net) const;
  bool get_range(const ARG_MAP& args, long& left, long& right) const;
  bool get_linefile(const ARG_MAP& args, unsigned long& linefile) const;
  void append_nets(DesignObj* object, NETS& nets) const;

  std::string scoped(const std::string& name) const;
  void add_symbol(const ARG_MAP& args, const std::string& name, DesignObj* object, bool in_netlist);
  bool add_bus(const std::string& name, long left, long right, unsigned long linefile);
  Net* add_net(const char* name, unsigned long linefile);
  bool connect_role(Instance* inst, Port* port, ZELK_ARG_ENUM arg, const ARG_MAP& args);
  bool name_driver(const NETS& outputs, const ARG_MAP& args);
  void forget();

  static const std::string m_comment_sign;
  std::string m_map_file;
  int m_line_number = 0;
  std::string m_source_file;
  long m_source_line = 0;
  Library* m_library = nullptr;
  Cell* m_cell = nullptr;
  Netlist* m_netlist = nullptr;
  std::map<const Netlist*, std::string> m_scopes;
  std::map<std::string, DesignObj*> m_symbols;
  std::map<std::string, Netlist*> m_netlists; // by key
};

#endif
