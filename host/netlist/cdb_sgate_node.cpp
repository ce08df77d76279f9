// Nodes: the making and finding of their terms, operators' widths, components' ports and parameters.
#include "cdb_sgate_node.h"

#include <algorithm>
#include <set>

#include "msg.h"

namespace {

/// Nodes of fewer terms are searched by a scan, which is all that gates and registers need.
constexpr size_t SCAN_LIMIT = 8;

} // namespace

CDB_SGATE_NODE::~CDB_SGATE_NODE() = default;

void CDB_SGATE_NODE::set_string_name(const char* name) {
  m_has_name = name != nullptr;
  m_name = name ? name : "";
}

void CDB_SGATE_NODE::set_source_location(const char* file, unsigned line) {
  static std::set<std::string> names;
  m_source_file = file ? &*names.emplace(file).first : nullptr;
  m_source_line = line;
}

const std::string& CDB_SGATE_NODE::get_source_file() const {
  static const std::string none;
  return m_source_file ? *m_source_file : none;
}

namespace {

template <class TERM> TERM* scan_for_term(const std::vector<std::unique_ptr<TERM>>& terms, int type, unsigned index) {
  for (const auto& term : terms)
    if (term->get_type() == type && term->get_index() == index) return term.get();
  return nullptr;
}

template <class TERM> TERM* look_up(const std::unordered_map<uint64_t, TERM*>& index, uint64_t key) {
  auto at = index.find(key);
  return at == index.end() ? nullptr : at->second;
}

} // namespace

CDB_SGATE_ITERM* CDB_SGATE_NODE::find_iterm(int type, unsigned index) const {
  return m_index ? look_up(m_index->iterms, key(type, index)) : scan_for_term(m_iterms, type, index);
}

CDB_SGATE_OTERM* CDB_SGATE_NODE::find_oterm(int type, unsigned index) const {
  return m_index ? look_up(m_index->oterms, key(type, index)) : scan_for_term(m_oterms, type, index);
}

CDB_SGATE_ITERM* CDB_SGATE_NODE::retrieve_iterm(int type, unsigned index) {
  if (CDB_SGATE_ITERM* term = find_iterm(type, index)) return term;
  m_iterms.push_back(std::make_unique<CDB_SGATE_ITERM>(this, type, index));
  if (m_index) m_index->iterms.emplace(key(type, index), m_iterms.back().get());
  make_index();
  return m_iterms.back().get();
}

CDB_SGATE_OTERM* CDB_SGATE_NODE::retrieve_oterm(int type, unsigned index) {
  if (CDB_SGATE_OTERM* term = find_oterm(type, index)) return term;
  m_oterms.push_back(std::make_unique<CDB_SGATE_OTERM>(this, type, index));
  if (m_index) m_index->oterms.emplace(key(type, index), m_oterms.back().get());
  make_index();
  return m_oterms.back().get();
}

void CDB_SGATE_NODE::make_index() {
  if (m_index || m_iterms.size() + m_oterms.size() <= SCAN_LIMIT) return;
  m_index = std::make_unique<TERM_INDEX>();
  for (const auto& term : m_iterms) m_index->iterms.emplace(key(term->get_type(), term->get_index()), term.get());
  for (const auto& term : m_oterms) m_index->oterms.emplace(key(term->get_type(), term->get_index()), term.get());
}

CDB_SGATE_ITERM* CDB_SGATE_NODE::insert_unordered_fanin_term() {
  unsigned index = m_iterms.empty() ? 0 : m_iterms.back()->get_index() + 1;
  return retrieve_iterm(CDB_TERM_UNORDERED, index);
}

void CDB_SGATE_NODE::set_input_term(CDB_SGATE_ITERM* term, unsigned index) {
  CDB_SGATE_ITERM* mine = retrieve_iterm(term->get_type(), index);
  if (mine == term) return;
  CDB_SGATE_OTERM* source = term->get_source();
  bool is_gnd = term->is_gnd();
  bool is_vcc = term->is_vcc();
  term->disconnect_from_source(0);
  if (source) source->insert_fanout(mine);
  if (is_gnd) mine->set_gnd();
  if (is_vcc) mine->set_vcc();
}

CDB_SGATE_ITERM* CDB_SGATE_NODE::get_single_iterm() const {
  return m_iterms.size() == 1 ? m_iterms.front().get() : nullptr;
}

CDB_SGATE_OTERM* CDB_SGATE_NODE::get_first_oterm() const { return m_oterms.empty() ? nullptr : m_oterms.front().get(); }

bool CDB_SGATE_NODE::has_constant_fanin() const {
  return std::any_of(m_iterms.begin(), m_iterms.end(), [](const auto& term) { return term->is_constant(); });
}

void CDB_SGATE_NODE::remove_iterm(CDB_SGATE_ITERM* term) {
  if (m_index) m_index->iterms.erase(key(term->get_type(), term->get_index()));
  std::erase_if(m_iterms, [term](const auto& mine) { return mine.get() == term; });
}

namespace {

unsigned width_of(const auto& terms, int type) {
  unsigned width = 0;
  for (const auto& term : terms)
    if (term->get_type() == type) width = std::max(width, term->get_index() + 1);
  return width;
}

} // namespace

unsigned CDB_SGATE_OPERATOR::get_input_width(int term) const { return width_of(get_iterms(), term); }
unsigned CDB_SGATE_OPERATOR::get_output_width(int term) const { return width_of(get_oterms(), term); }

CDB_SGATE_ITERM* CDB_COMPONENT_PORT::retrieve_iterm() {
  if (!m_iterm) m_iterm = m_component->CDB_SGATE_NODE::retrieve_iterm(CDB_TERM_DATA, m_number);
  return m_iterm;
}

CDB_SGATE_OTERM* CDB_COMPONENT_PORT::retrieve_oterm() {
  if (!m_oterm) m_oterm = m_component->CDB_SGATE_NODE::retrieve_oterm(CDB_TERM_OUTPUT, m_number);
  return m_oterm;
}

void CDB_SGATE_COMPONENT::set_parameter(const char* name, const char* value, int type) {
  for (PARAMETER& parameter : m_parameters) {
    if (parameter.name != name) continue;
    parameter.value = value ? value : "";
    parameter.type = type;
    return;
  }
  m_parameters.push_back({name, -1, value ? value : "", type});
}

void CDB_SGATE_COMPONENT::set_parameter_at_pos(int position, const char* value, int type) {
  m_parameters.push_back({"", position, value ? value : "", type});
}

CDB_COMPONENT_PORT* CDB_SGATE_COMPONENT::retrieve_port(const std::string& name, int index, int position,
                                                       CDB_IO_DIRECTION direction) {
  std::string key = name + '\n' + std::to_string(index) + '\n' + std::to_string(position);
  CDB_COMPONENT_PORT*& port = m_port_index[key];
  if (port) return port;
  m_ports.push_back(std::make_unique<CDB_COMPONENT_PORT>());
  port = m_ports.back().get();
  port->m_component = this;
  port->m_name = name;
  port->m_index = index;
  port->m_position = position;
  port->m_number = static_cast<unsigned>(m_ports.size() - 1);
  port->m_direction = direction;
  return port;
}

CDB_COMPONENT_PORT* CDB_SGATE_COMPONENT::retrieve_known_port(const char* name, CDB_IO_DIRECTION direction) {
  std::string text(name);
  size_t bracket = text.rfind('[');
  bool has_index = bracket != std::string::npos && bracket > 0 && text.back() == ']' && text[bracket + 1] != ']' &&
                   text.find_first_not_of("-0123456789", bracket + 1) == text.size() - 1;
  if (!has_index) return retrieve_port(text, CDB_COMPONENT_PORT::NO_INDEX, -1, direction);
  return retrieve_port(text.substr(0, bracket), std::stoi(text.substr(bracket + 1)), -1, direction);
}

CDB_COMPONENT_PORT* CDB_SGATE_COMPONENT::retrieve_unknown_port(const char* name, int index,
                                                               CDB_IO_DIRECTION direction) {
  return retrieve_port(name, index < 0 ? CDB_COMPONENT_PORT::NO_INDEX : index, -1, direction);
}

CDB_COMPONENT_PORT* CDB_SGATE_COMPONENT::retrieve_nameless_port(int position, int index, CDB_IO_DIRECTION direction) {
  return retrieve_port("", index < 0 ? CDB_COMPONENT_PORT::NO_INDEX : index, position, direction);
}
