// The schematic as a drawing.
#include "schematic_layout.h"

#include <fmt/format.h>

namespace {

using BLOCK = SCHEMATIC_BLOCK;

constexpr const char* STYLE = R"(<style>
  text { font-family: "DejaVu Sans Mono", Menlo, Consolas, monospace; font-size: 10px; fill: #222; }
  .box { fill: #fdf6e3; stroke: #333; } .register { fill: #e3effd; stroke: #333; } .port { fill: #e6f4e3; stroke: #333; }
  .wire { stroke: #555; fill: none; } .vector { stroke: #222; stroke-width: 2; fill: none; }
  .dot { fill: #222; } .name { fill: #1a5fb4; } .part { fill: #777; font-size: 9px; } .title { font-weight: bold; }
  .middle { text-anchor: middle; } .end { text-anchor: end; }
</style>
)";

std::string escaped(const std::string& text) {
  std::string result;
  for (char c : text) {
    switch (c) {
    case '&': result += "&amp;"; break;
    case '<': result += "&lt;"; break;
    case '>': result += "&gt;"; break;
    case '"': result += "&quot;"; break;
    default: result += static_cast<unsigned char>(c) < ' ' ? ' ' : c;
    }
  }
  return result;
}

class SVG_WRITER {
public:
  SVG_WRITER(const SCHEMATIC& schematic, std::string& text)
      : m_schematic(schematic), m_layout(schematic), m_text(text) {}
  void write();

private:
  void write_block(const BLOCK& block, const PLACED_BLOCK& placed);
  void write_outline(const BLOCK& block, const PLACED_BLOCK& placed);
  void write_pins(const BLOCK& block, const PLACED_BLOCK& placed);
  void polygon(const char* style, std::initializer_list<SCHEMATIC_POINT> points);
  void label(double x, double y, const char* style, const std::string& text);
  void write_text(const PLACED_TEXT& text);

  const SCHEMATIC& m_schematic;
  SCHEMATIC_LAYOUT m_layout;
  std::string& m_text;
};

void SVG_WRITER::polygon(const char* style, std::initializer_list<SCHEMATIC_POINT> points) {
  m_text += fmt::format("<polygon class=\"{}\" points=\"", style);
  const char* separator = "";
  for (const SCHEMATIC_POINT& point : points) {
    m_text += fmt::format("{}{:.1f},{:.1f}", separator, point.x, point.y);
    separator = " ";
  }
  m_text += "\"/>\n";
}

/// Long texts are cut; the whole is shown when the pointer rests there.
void SVG_WRITER::label(double x, double y, const char* style, const std::string& text) {
  std::string shown = SCHEMATIC_LAYOUT::shortened(text);
  std::string whole = shown == text ? "" : "<title>" + escaped(text) + "</title>";
  m_text +=
      fmt::format("<text x=\"{:.1f}\" y=\"{:.1f}\" class=\"{}\">{}{}</text>\n", x, y, style, escaped(shown), whole);
}

void SVG_WRITER::write_outline(const BLOCK& block, const PLACED_BLOCK& placed) {
  double x = placed.x;
  double y = placed.y;
  double right = x + placed.width;
  double bottom = y + placed.height;
  double middle = (y + bottom) / 2;
  constexpr double TIP = 9;
  switch (block.shape) {
  case BLOCK::SHAPE_MUX: polygon("box", {{x, y}, {right, y + TIP}, {right, bottom - TIP}, {x, bottom}}); break;
  case BLOCK::SHAPE_INPUT:
  case BLOCK::SHAPE_OUTPUT:
    polygon("port", {{x, y}, {right - TIP, y}, {right, middle}, {right - TIP, bottom}, {x, bottom}});
    break;
  case BLOCK::SHAPE_BIDIR:
    polygon("port",
            {{x, middle}, {x + TIP, y}, {right - TIP, y}, {right, middle}, {right - TIP, bottom}, {x + TIP, bottom}});
    break;
  case BLOCK::SHAPE_BOX:
  case BLOCK::SHAPE_GATE:
  case BLOCK::SHAPE_REGISTER:
    polygon(block.shape == BLOCK::SHAPE_REGISTER ? "register" : "box",
            {{x, y}, {right, y}, {right, bottom}, {x, bottom}});
    break;
  }
}

void SVG_WRITER::write_pins(const BLOCK& block, const PLACED_BLOCK& placed) {
  constexpr double BASE = 3.5; // from the middle of a text to its line
  constexpr double EDGE = 4;
  for (size_t i = 0; i < block.inputs.size(); i++) {
    double y = placed.y + placed.inputs[i];
    if (block.clock_pin == static_cast<int>(i))
      m_text += fmt::format("<polyline class=\"wire\" points=\"{0:.1f},{1:.1f} {2:.1f},{3:.1f} {0:.1f},{4:.1f}\"/>\n",
                            placed.x, y - 5, placed.x + 8, y, y + 5);
    if (!block.inputs[i].label.empty()) label(placed.x + EDGE, y + BASE, "", block.inputs[i].label);
    if (!block.inputs[i].fixed.empty())
      m_text += fmt::format("<line class=\"wire\" x1=\"{:.1f}\" y1=\"{:.1f}\" x2=\"{:.1f}\" y2=\"{:.1f}\"/>\n",
                            placed.x - 6, y, placed.x, y);
  }
  for (size_t i = 0; i < block.outputs.size(); i++) {
    double y = placed.y + placed.outputs[i];
    double right = placed.x + placed.width;
    if (block.is_inverted)
      m_text += fmt::format("<circle class=\"box\" cx=\"{:.1f}\" cy=\"{:.1f}\" r=\"3\"/>\n", right + 3, y);
    if (!block.outputs[i].label.empty()) label(right - EDGE, y + BASE, "end", block.outputs[i].label);
  }
}

void SVG_WRITER::write_block(const BLOCK& block, const PLACED_BLOCK& placed) {
  m_text += "<g>";
  std::string about = block.place;
  if (!block.name.empty()) about = block.name + (about.empty() ? "" : " at " + about);
  if (!about.empty()) m_text += "<title>" + escaped(about) + "</title>";
  m_text += '\n';
  write_outline(block, placed);
  double center = placed.x + placed.width / 2;
  double middle = placed.y + placed.height / 2;
  switch (block.shape) {
  case BLOCK::SHAPE_BOX:
    label(center, placed.y + 12, "middle title", block.title);
    if (!block.name.empty()) label(center, placed.y - 4, "middle", block.name);
    break;
  case BLOCK::SHAPE_REGISTER:
    if (!block.name.empty()) label(placed.x, placed.y - 4, "", block.name);
    break;
  case BLOCK::SHAPE_MUX: break;
  default: label(center, middle + 3.5, "middle", block.title);
  }
  write_pins(block, placed);
  m_text += "</g>\n";
}

void SVG_WRITER::write_text(const PLACED_TEXT& text) {
  constexpr double STUB = 6;
  constexpr double ABOVE = 4; // texts of drawn wires stand over them
  double y = text.at.y + (text.is_name ? 3.5 : -ABOVE);
  double x = text.at.x + (text.is_before ? -STUB - 2 : STUB + 2);
  if (text.is_name) {
    double end = text.at.x + (text.is_before ? -STUB : STUB);
    m_text += fmt::format("<line class=\"wire\" x1=\"{:.1f}\" y1=\"{:.1f}\" x2=\"{:.1f}\" y2=\"{:.1f}\"/>\n", end,
                          text.at.y, text.at.x, text.at.y);
  }
  std::string style = std::string(text.is_name ? "name" : "part") + (text.is_before ? " end" : "");
  label(x, y, style.c_str(), text.text);
}

void SVG_WRITER::write() {
  m_text += fmt::format("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\" "
                        "width=\"{0:.0f}\" height=\"{1:.0f}\" viewBox=\"0 0 {0:.0f} {1:.0f}\">\n<title>{2}</title>\n{3}"
                        "<rect width=\"100%\" height=\"100%\" fill=\"white\"/>\n",
                        m_layout.get_width(), m_layout.get_height(), escaped(m_schematic.get_name()), STYLE);
  for (const PLACED_LINE& line : m_layout.get_lines())
    m_text += fmt::format("<line class=\"{}\" x1=\"{:.1f}\" y1=\"{:.1f}\" x2=\"{:.1f}\" y2=\"{:.1f}\"/>\n",
                          line.is_vector ? "vector" : "wire", line.from.x, line.from.y, line.to.x, line.to.y);
  for (const SCHEMATIC_POINT& dot : m_layout.get_dots())
    m_text += fmt::format("<circle class=\"dot\" cx=\"{:.1f}\" cy=\"{:.1f}\" r=\"2.5\"/>\n", dot.x, dot.y);
  for (size_t i = 0; i < m_schematic.get_blocks().size(); i++)
    write_block(m_schematic.get_blocks()[i], m_layout.get_blocks()[i]);
  for (const PLACED_TEXT& text : m_layout.get_texts()) write_text(text);
  m_text += "</svg>\n";
}

} // namespace

std::string write_svg(const DESIGN_VIEW& design) {
  SCHEMATIC schematic(*design.get_modules().front());
  std::string text;
  SVG_WRITER(schematic, text).write();
  return text;
}
