// Connections between terms: a source knows its fanouts and each fanout its source.
#include "cdb_sgate_term.h"

#include <algorithm>

#include "msg.h"

CDB_SGATE_OTERM::~CDB_SGATE_OTERM() {
  for (CDB_SGATE_ITERM* fanout : m_fanouts) {
    fanout->m_source = nullptr;
    fanout->m_is_connected = false;
  }
}

void CDB_SGATE_OTERM::insert_fanout(CDB_SGATE_ITERM* iterm) {
  if (!iterm || iterm->is_connected()) {
    MSG_INTERNAL_ERROR::report("iterm && !iterm->is_connected()", "CDB", __FILE__, __LINE__);
    return;
  }
  iterm->m_source = this;
  iterm->m_is_connected = true;
  m_fanouts.push_back(iterm);
}

CDB_SGATE_ITERM* CDB_SGATE_OTERM::get_first_fanout() const { return m_fanouts.empty() ? nullptr : m_fanouts.front(); }

void CDB_SGATE_ITERM::disconnect_from_source(int) {
  if (m_source) {
    // The latest connection is the likeliest to go, so the search runs backwards.
    auto at = std::find(m_source->m_fanouts.rbegin(), m_source->m_fanouts.rend(), this);
    if (at != m_source->m_fanouts.rend()) m_source->m_fanouts.erase(std::next(at).base());
  }
  m_source = nullptr;
  m_is_connected = false;
  m_constant = false;
}

void CDB_SGATE_ITERM::tie(bool gnd) {
  if (m_source) {
    MSG_INTERNAL_ERROR::report("!m_source", "CDB", __FILE__, __LINE__);
    return;
  }
  m_is_connected = true;
  m_constant = gnd;
}

void set_all_fanouts_constant(CDB_SGATE_OTERM* oterm, bool is_vcc) {
  while (!oterm->get_fanouts().empty()) {
    CDB_SGATE_ITERM* fanout = oterm->get_fanouts().back();
    fanout->disconnect_from_source(2);
    if (is_vcc)
      fanout->set_vcc();
    else
      fanout->set_gnd();
  }
}
