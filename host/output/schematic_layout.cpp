// Columns by the longest way from the inputs, rows by the mean of the neighbours, one track per wire in each channel.
#include "schematic_layout.h"

#include <algorithm>
#include <limits>
#include <map>
#include <set>

namespace {

using BLOCK = SCHEMATIC_BLOCK;

constexpr double PITCH = 16;      // of pins
constexpr double CHARACTER = 6.1; // of the font
constexpr double HEADER = 16;     // for the title of a box
constexpr double ROW_GAP = 22;    // between blocks, with room for a name
constexpr double WIRE_GAP = 12;   // around a passing wire
constexpr double TRACK = 9;
constexpr double MARGIN = 16;
constexpr double STUB = 8;      // of a wire that is told by name
constexpr size_t MAX_LOADS = 5; // of a wire that is drawn
constexpr int MAX_SPAN = 8;     // columns that a drawn wire passes
constexpr size_t MAX_TEXT = 26; // characters
constexpr int SWEEPS = 10;

size_t characters(const std::string& text) {
  return static_cast<size_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }));
}

double widest_label(const std::vector<SCHEMATIC_PIN>& pins) {
  double width = 0;
  for (const SCHEMATIC_PIN& pin : pins) width = std::max(width, SCHEMATIC_LAYOUT::text_width(pin.label));
  return width;
}

} // namespace

double SCHEMATIC_LAYOUT::text_width(const std::string& text) {
  return CHARACTER * static_cast<double>(std::min(characters(text), MAX_TEXT));
}

std::string SCHEMATIC_LAYOUT::shortened(const std::string& text) {
  if (characters(text) <= MAX_TEXT) return text;
  size_t end = 0;
  for (size_t seen = 0; end < text.size(); end++) {
    bool is_start = (static_cast<unsigned char>(text[end]) & 0xC0U) != 0x80U;
    if (is_start && seen++ == MAX_TEXT - 1) break;
  }
  return text.substr(0, end) + "\u2026";
}

SCHEMATIC_LAYOUT::SCHEMATIC_LAYOUT(const SCHEMATIC& schematic) : m_schematic(schematic) {
  measure_blocks();
  choose_named();
  find_columns();
  make_links();
  order_columns();
  place_rows();
  place_columns();
  draw_wires();
  add_texts();
}

void SCHEMATIC_LAYOUT::measure_blocks() {
  for (const BLOCK& block : m_schematic.get_blocks()) {
    PLACED_BLOCK placed;
    double rows = static_cast<double>(std::max({block.inputs.size(), block.outputs.size(), size_t{1}}));
    double labels = widest_label(block.inputs) + widest_label(block.outputs);
    double head = block.shape == BLOCK::SHAPE_BOX ? HEADER : 4;
    switch (block.shape) {
    case BLOCK::SHAPE_BOX:
      placed.width = std::max({labels + 26, text_width(block.title) + 16, text_width(block.name) + 4, 40.0});
      break;
    case BLOCK::SHAPE_GATE: placed.width = std::max(text_width(block.title) + 14, 28.0); break;
    case BLOCK::SHAPE_MUX: placed.width = 26; break;
    case BLOCK::SHAPE_REGISTER: placed.width = 48; break;
    case BLOCK::SHAPE_INPUT:
    case BLOCK::SHAPE_OUTPUT:
    case BLOCK::SHAPE_BIDIR: placed.width = text_width(block.title) + 24; break;
    }
    placed.height = head + rows * PITCH + 2;
    auto pins = [&](size_t count) {
      std::vector<double> ys;
      double first = head + (rows - static_cast<double>(count)) * PITCH / 2 + PITCH / 2;
      bool is_spread = block.shape != BLOCK::SHAPE_BOX; // lists of a box begin at its top
      if (!is_spread) first = head + PITCH / 2;
      for (size_t i = 0; i < count; i++) ys.push_back(first + static_cast<double>(i) * PITCH);
      return ys;
    };
    placed.inputs = pins(block.inputs.size());
    placed.outputs = pins(block.outputs.size());
    m_blocks.push_back(std::move(placed));
    VERTEX vertex;
    vertex.block = m_vertices.size();
    vertex.height = m_blocks.back().height;
    m_vertices.push_back(vertex);
  }
}

/// Wires with many loads, and those that clock.
void SCHEMATIC_LAYOUT::choose_named() {
  for (const SCHEMATIC_WIRE& wire : m_schematic.get_wires()) {
    std::set<size_t> blocks;
    bool is_clock = true;
    for (const SCHEMATIC_LOAD& load : wire.loads) {
      blocks.insert(load.block);
      is_clock &= m_schematic.get_blocks()[load.block].clock_pin == static_cast<int>(load.pin);
    }
    bool is_named = blocks.size() > MAX_LOADS || (is_clock && blocks.size() > 1);
    m_is_named.emplace_back(wire.loads.size(), is_named);
  }
}

/// A depth-first walk finds the wires that lead back, and an order in which sources come before loads.
void SCHEMATIC_LAYOUT::find_columns() {
  size_t count = m_blocks.size();
  struct EDGE {
    size_t wire;
    size_t load;
    size_t to;
  };
  std::vector<std::vector<EDGE>> edges(count);
  for (size_t w = 0; w < m_schematic.get_wires().size(); w++) {
    const SCHEMATIC_WIRE& wire = m_schematic.get_wires()[w];
    for (size_t l = 0; l < wire.loads.size(); l++)
      if (!m_is_named[w][l]) edges[wire.block].push_back({w, l, wire.loads[l].block});
  }
  enum STATE { NEW, OPEN, DONE };
  std::vector<STATE> states(count, NEW);
  std::vector<size_t> finished;
  for (size_t root = 0; root < count; root++) {
    if (states[root] != NEW) continue;
    std::vector<std::pair<size_t, size_t>> stack{{root, 0}};
    states[root] = OPEN;
    while (!stack.empty()) {
      auto& [at, next] = stack.back();
      if (next == edges[at].size()) {
        states[at] = DONE;
        finished.push_back(at);
        stack.pop_back();
        continue;
      }
      const EDGE& edge = edges[at][next++];
      if (states[edge.to] == OPEN) m_is_named[edge.wire][edge.load] = true;
      if (states[edge.to] != NEW) continue;
      states[edge.to] = OPEN;
      stack.emplace_back(edge.to, 0);
    }
  }
  std::vector<int> columns(count, 0);
  for (auto at = finished.rbegin(); at != finished.rend(); ++at)
    for (const EDGE& edge : edges[*at])
      if (!m_is_named[edge.wire][edge.load]) columns[edge.to] = std::max(columns[edge.to], columns[*at] + 1);
  int last = count == 0 ? 0 : *std::max_element(columns.begin(), columns.end());
  // What nothing drives stands beside what it drives; outputs stand at the right edge.
  for (size_t at : finished) {
    bool is_source = m_schematic.get_blocks()[at].inputs.empty() || columns[at] == 0;
    int nearest = std::numeric_limits<int>::max();
    for (const EDGE& edge : edges[at])
      if (!m_is_named[edge.wire][edge.load]) nearest = std::min(nearest, columns[edge.to]);
    if (is_source && nearest != std::numeric_limits<int>::max()) columns[at] = std::max(columns[at], nearest - 1);
    if (m_schematic.get_blocks()[at].shape == BLOCK::SHAPE_OUTPUT && last <= MAX_SPAN) columns[at] = std::max(last, 1);
  }
  for (size_t w = 0; w < m_schematic.get_wires().size(); w++) {
    const SCHEMATIC_WIRE& wire = m_schematic.get_wires()[w];
    for (size_t l = 0; l < wire.loads.size(); l++)
      if (columns[wire.loads[l].block] - columns[wire.block] > MAX_SPAN) m_is_named[w][l] = true;
  }
  for (size_t i = 0; i < count; i++) m_vertices[i].column = columns[i];
  m_columns.resize(static_cast<size_t>(std::max(last, 1)) + 1);
  for (auto at = finished.rbegin(); at != finished.rend(); ++at)
    m_columns[static_cast<size_t>(columns[*at])].push_back(*at);
}

/// A wire passes each column at one place for all its loads behind.
void SCHEMATIC_LAYOUT::make_links() {
  for (size_t w = 0; w < m_schematic.get_wires().size(); w++) {
    const SCHEMATIC_WIRE& wire = m_schematic.get_wires()[w];
    std::vector<size_t> passing; // by columns behind the source
    double start = m_blocks[wire.block].outputs[wire.pin];
    auto before = [&](size_t steps) {
      while (passing.size() < steps) {
        VERTEX vertex;
        vertex.block = wire.block;
        vertex.column = m_vertices[wire.block].column + static_cast<int>(passing.size()) + 1;
        vertex.is_block = false;
        size_t from = passing.empty() ? wire.block : passing.back();
        m_links.push_back({w, from, m_vertices.size(), passing.empty() ? start : 0, 0});
        m_columns[static_cast<size_t>(vertex.column)].push_back(m_vertices.size());
        passing.push_back(m_vertices.size());
        m_vertices.push_back(vertex);
      }
      return steps == 0 ? wire.block : passing[steps - 1];
    };
    for (size_t l = 0; l < wire.loads.size(); l++) {
      if (m_is_named[w][l]) continue;
      const SCHEMATIC_LOAD& load = wire.loads[l];
      int span = m_vertices[load.block].column - m_vertices[wire.block].column;
      size_t from = before(static_cast<size_t>(std::max(span, 1) - 1));
      m_links.push_back({w, from, load.block, from == wire.block ? start : 0, m_blocks[load.block].inputs[load.pin]});
    }
  }
}

/// Each vertex goes to the mean place of its neighbours in the column before, then in the one behind, and so on.
void SCHEMATIC_LAYOUT::order_columns() {
  std::vector<std::vector<size_t>> before(m_vertices.size());
  std::vector<std::vector<size_t>> behind(m_vertices.size());
  for (const LINK& link : m_links) {
    before[link.to].push_back(link.from);
    behind[link.from].push_back(link.to);
  }
  std::vector<double> places(m_vertices.size(), 0);
  auto number = [&](const std::vector<size_t>& column) {
    for (size_t i = 0; i < column.size(); i++) places[column[i]] = static_cast<double>(i);
  };
  for (const auto& column : m_columns) number(column);
  auto sort = [&](std::vector<size_t>& column, const std::vector<std::vector<size_t>>& neighbours) {
    std::vector<std::pair<double, size_t>> wanted;
    for (size_t vertex : column) {
      double sum = 0;
      for (size_t other : neighbours[vertex]) sum += places[other];
      wanted.emplace_back(
          neighbours[vertex].empty() ? places[vertex] : sum / static_cast<double>(neighbours[vertex].size()), vertex);
    }
    std::stable_sort(wanted.begin(), wanted.end(),
                     [](const auto& left, const auto& right) { return left.first < right.first; });
    for (size_t i = 0; i < column.size(); i++) column[i] = wanted[i].second;
    number(column);
  };
  for (int sweep = 0; sweep < SWEEPS; sweep++) {
    for (size_t i = 1; i < m_columns.size(); i++) sort(m_columns[i], before);
    for (size_t i = m_columns.size() - 1; i-- > 0;) sort(m_columns[i], behind);
  }
}

/// Places the vertices of a column in their order as near to the wanted rows as their heights allow: neighbours that
/// would overlap move together to their mean.
void SCHEMATIC_LAYOUT::align(const std::vector<size_t>& column, const std::vector<double>& wanted) {
  struct POOL {
    double sum;
    double count;
  };
  std::vector<POOL> pools;
  std::vector<double> offsets;
  double offset = 0;
  for (size_t i = 0; i < column.size(); i++) {
    offsets.push_back(offset);
    const VERTEX& vertex = m_vertices[column[i]];
    bool next_is_block = i + 1 < column.size() && m_vertices[column[i + 1]].is_block;
    offset += vertex.height +
              (vertex.is_block && next_is_block ? ROW_GAP : WIRE_GAP + (vertex.is_block || next_is_block ? 4 : 0));
    pools.push_back({wanted[i] - offsets[i], 1});
    while (pools.size() > 1) {
      POOL& last = pools[pools.size() - 1];
      POOL& former = pools[pools.size() - 2];
      if (former.sum / former.count <= last.sum / last.count) break;
      former = {former.sum + last.sum, former.count + last.count};
      pools.pop_back();
    }
  }
  size_t at = 0;
  for (const POOL& pool : pools)
    for (double i = 0; i < pool.count; i++, at++) m_vertices[column[at]].y = pool.sum / pool.count + offsets[at];
}

void SCHEMATIC_LAYOUT::place_rows() {
  std::vector<std::vector<size_t>> arriving(m_vertices.size());
  std::vector<std::vector<size_t>> leaving(m_vertices.size());
  for (size_t i = 0; i < m_links.size(); i++) {
    arriving[m_links[i].to].push_back(i);
    leaving[m_links[i].from].push_back(i);
  }
  auto wanted_row = [&](size_t vertex, const std::vector<size_t>& links, bool from_left) {
    if (links.empty()) return m_vertices[vertex].y;
    double sum = 0;
    for (size_t i : links) {
      const LINK& link = m_links[i];
      sum += from_left ? m_vertices[link.from].y + link.from_y - link.to_y
                       : m_vertices[link.to].y + link.to_y - link.from_y;
    }
    return sum / static_cast<double>(links.size());
  };
  auto sweep = [&](const std::vector<size_t>& column, const std::vector<std::vector<size_t>>& links, bool from_left) {
    std::vector<double> wanted;
    for (size_t vertex : column) wanted.push_back(wanted_row(vertex, links[vertex], from_left));
    align(column, wanted);
  };
  for (const auto& column : m_columns) align(column, std::vector<double>(column.size(), 0));
  for (int i = 0; i < SWEEPS; i++) {
    for (size_t c = 1; c < m_columns.size(); c++) sweep(m_columns[c], arriving, /*from_left=*/true);
    for (size_t c = m_columns.size() - 1; c-- > 0;) sweep(m_columns[c], leaving, /*from_left=*/false);
  }
  double top = 0;
  for (const VERTEX& vertex : m_vertices) top = std::min(top, vertex.y);
  for (VERTEX& vertex : m_vertices) {
    vertex.y += MARGIN + ROW_GAP - top;
    m_height = std::max(m_height, vertex.y + vertex.height + MARGIN);
  }
}

void SCHEMATIC_LAYOUT::place_columns() {
  size_t count = m_columns.size();
  std::vector<double> before(count, 0); // texts in front of the inputs of a column
  std::vector<double> behind(count, 0); // texts behind its outputs
  m_column_width.assign(count, 0);
  m_column_x.assign(count, 0);
  for (size_t i = 0; i < m_blocks.size(); i++) {
    size_t column = static_cast<size_t>(m_vertices[i].column);
    m_column_width[column] = std::max(m_column_width[column], m_blocks[i].width);
    for (const SCHEMATIC_PIN& pin : m_schematic.get_blocks()[i].inputs)
      before[column] = std::max(before[column], text_width(pin.fixed) + STUB);
  }
  for (size_t w = 0; w < m_schematic.get_wires().size(); w++) {
    const SCHEMATIC_WIRE& wire = m_schematic.get_wires()[w];
    const std::string& name = m_schematic.source_of(wire).full_name;
    size_t source = static_cast<size_t>(m_vertices[wire.block].column);
    behind[source] = std::max(behind[source], text_width(name) + STUB);
    for (size_t l = 0; l < wire.loads.size(); l++) {
      size_t column = static_cast<size_t>(m_vertices[wire.loads[l].block].column);
      const std::string& text = m_is_named[w][l] && wire.loads[l].part.empty() ? name : wire.loads[l].part;
      before[column] = std::max(before[column], text_width(text) + STUB);
    }
  }
  double x = MARGIN + before[0];
  for (size_t c = 0; c < count; c++) {
    m_column_x[c] = x;
    x += m_column_width[c] + behind[c] + 6;
    m_track_x.push_back(x);
    if (c + 1 < count) x += TRACK * static_cast<double>(find_tracks(static_cast<int>(c))) + 10 + before[c + 1];
  }
  m_width = x + MARGIN;
  for (size_t i = 0; i < m_blocks.size(); i++) {
    size_t column = static_cast<size_t>(m_vertices[i].column);
    // Input ports end at the right of their column, everything else begins at its left.
    bool is_input = m_schematic.get_blocks()[i].shape == BLOCK::SHAPE_INPUT;
    m_blocks[i].x = m_column_x[column] + (is_input ? m_column_width[column] - m_blocks[i].width : 0);
    m_blocks[i].y = m_vertices[i].y;
  }
}

/// Gives each wire of a channel a track for its upright piece, such that no two on a track overlap. Returns the number
/// of tracks.
size_t SCHEMATIC_LAYOUT::find_tracks(int channel) {
  std::map<std::pair<size_t, size_t>, TRUNK> trunks; // by wire and vertex on the left
  for (const LINK& link : m_links) {
    if (m_vertices[link.from].column != channel) continue;
    double y = m_vertices[link.from].y + link.from_y;
    TRUNK& trunk =
        trunks.try_emplace({link.wire, link.from}, TRUNK{link.wire, link.from, y, y, y, 0, {}}).first->second;
    double end = m_vertices[link.to].y + link.to_y;
    trunk.ends.emplace_back(end, link.to);
    trunk.low = std::min(trunk.low, end);
    trunk.high = std::max(trunk.high, end);
  }
  std::vector<TRUNK> order;
  for (auto& [key, trunk] : trunks) order.push_back(std::move(trunk));
  std::stable_sort(order.begin(), order.end(), [](const TRUNK& a, const TRUNK& b) { return a.low < b.low; });
  std::vector<double> track_ends;
  for (TRUNK& trunk : order) {
    while (trunk.track < track_ends.size() && track_ends[trunk.track] + 3 > trunk.low) trunk.track++;
    if (trunk.track == track_ends.size()) track_ends.push_back(0);
    track_ends[trunk.track] = trunk.high;
  }
  m_trunks.push_back(std::move(order));
  return track_ends.size();
}

double SCHEMATIC_LAYOUT::left_of(const VERTEX& vertex) const {
  return vertex.is_block ? m_blocks[vertex.block].x : m_column_x[static_cast<size_t>(vertex.column)];
}

void SCHEMATIC_LAYOUT::draw_wires() {
  for (size_t channel = 0; channel < m_trunks.size(); channel++)
    for (const TRUNK& trunk : m_trunks[channel])
      draw_trunk(trunk, m_track_x[channel] + TRACK * static_cast<double>(trunk.track) + TRACK / 2);
}

void SCHEMATIC_LAYOUT::draw_trunk(const TRUNK& trunk, double x) {
  bool is_vector = m_schematic.source_of(m_schematic.get_wires()[trunk.wire]).width > 1;
  const VERTEX& from = m_vertices[trunk.from];
  double start = left_of(from) + (from.is_block ? m_blocks[from.block].width : 0);
  m_lines.push_back({{start, trunk.y}, {x, trunk.y}, is_vector});
  if (trunk.high > trunk.low) m_lines.push_back({{x, trunk.low}, {x, trunk.high}, is_vector});
  std::map<double, unsigned> meeting{{trunk.y, 1}}; // pieces beside the trunk
  for (const auto& [y, vertex] : trunk.ends) {
    m_lines.push_back({{x, y}, {left_of(m_vertices[vertex]), y}, is_vector});
    meeting[y]++;
  }
  if (meeting.size() < 2) return;
  for (const auto& [y, count] : meeting) {
    bool is_corner = y == trunk.low || y == trunk.high;
    if (!is_corner || (y == trunk.y && count > 1)) m_dots.push_back({x, y});
  }
}

void SCHEMATIC_LAYOUT::add_texts() {
  std::map<std::pair<size_t, size_t>, bool> reached; // pins, by whether a drawn wire leads there
  for (size_t w = 0; w < m_schematic.get_wires().size(); w++)
    for (size_t l = 0; l < m_is_named[w].size(); l++) {
      const SCHEMATIC_LOAD& load = m_schematic.get_wires()[w].loads[l];
      reached[{load.block, load.pin}] |= !m_is_named[w][l];
    }
  std::set<std::pair<size_t, size_t>> told; // pins
  for (size_t w = 0; w < m_schematic.get_wires().size(); w++) {
    const SCHEMATIC_WIRE& wire = m_schematic.get_wires()[w];
    const std::string& name = m_schematic.source_of(wire).full_name;
    const PLACED_BLOCK& source = m_blocks[wire.block];
    bool is_port = m_schematic.get_blocks()[wire.block].shape == BLOCK::SHAPE_INPUT;
    bool is_named = false;
    bool is_drawn = false;
    for (size_t l = 0; l < wire.loads.size(); l++) {
      const SCHEMATIC_LOAD& load = wire.loads[l];
      const PLACED_BLOCK& target = m_blocks[load.block];
      is_named |= m_is_named[w][l];
      is_drawn |= !m_is_named[w][l];
      const std::string& text = m_is_named[w][l] && load.part.empty() ? name : load.part;
      if (text.empty() || !told.insert({load.block, load.pin}).second) continue;
      bool is_reached = reached[{load.block, load.pin}];
      m_texts.push_back({{target.x, target.y + target.inputs[load.pin]}, true, !is_reached, text});
    }
    bool is_made_up = name.find('~') != std::string::npos;
    if (is_named || (!is_port && !is_made_up))
      m_texts.push_back({{source.x + source.width, source.y + source.outputs[wire.pin]}, false, !is_drawn, name});
  }
  for (size_t i = 0; i < m_blocks.size(); i++)
    for (size_t pin = 0; pin < m_blocks[i].inputs.size(); pin++) {
      const std::string& fixed = m_schematic.get_blocks()[i].inputs[pin].fixed;
      if (!fixed.empty())
        m_texts.push_back({{m_blocks[i].x, m_blocks[i].y + m_blocks[i].inputs[pin]}, true, true, fixed});
    }
}
