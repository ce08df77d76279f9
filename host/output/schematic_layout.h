// Where the blocks and wires of a schematic stand on a page: blocks in columns from the inputs to the outputs, wires at
// right angles in the channels between them. Wires to many places and wires that lead back are not drawn: both ends
// bear the name instead, as usual in schematics.
#ifndef HOST_SCHEMATIC_LAYOUT_H
#define HOST_SCHEMATIC_LAYOUT_H

#include "schematic.h"

struct SCHEMATIC_POINT {
  double x = 0;
  double y = 0;
};

struct PLACED_BLOCK {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;
  std::vector<double> inputs;  // y of the pins from the block's top
  std::vector<double> outputs; // the same
};

/// A straight piece of a wire.
struct PLACED_LINE {
  SCHEMATIC_POINT from;
  SCHEMATIC_POINT to;
  bool is_vector = false;
};

/// A text beside a pin, in front of an input or behind an output.
struct PLACED_TEXT {
  SCHEMATIC_POINT at;
  bool is_before = false; // ends there instead of beginning there
  bool is_name = false;   // stands for a wire
  std::string text;
};

class SCHEMATIC_LAYOUT {
public:
  explicit SCHEMATIC_LAYOUT(const SCHEMATIC& schematic);

  double get_width() const { return m_width; }
  double get_height() const { return m_height; }
  /// By the numbers of the schematic's blocks.
  const std::vector<PLACED_BLOCK>& get_blocks() const { return m_blocks; }
  const std::vector<PLACED_LINE>& get_lines() const { return m_lines; }
  /// Where a wire branches.
  const std::vector<SCHEMATIC_POINT>& get_dots() const { return m_dots; }
  const std::vector<PLACED_TEXT>& get_texts() const { return m_texts; }

  /// What a text in the drawing's font takes, and a text cut to what the drawing has room for.
  static double text_width(const std::string& text);
  static std::string shortened(const std::string& text);

private:
  /// A block, or the place where a wire passes a column.
  struct VERTEX {
    size_t block;
    int column = 0;
    double y = 0;
    double height = 0;
    bool is_block = true;
  };
  /// A piece of a wire between neighbouring columns.
  struct LINK {
    size_t wire;
    size_t from;
    size_t to;
    double from_y; // from the vertex' top
    double to_y;
  };

  /// A wire in a channel: from its source to an upright piece, and from there to its ends.
  struct TRUNK {
    size_t wire;
    size_t from;
    double y;
    double low;
    double high;
    size_t track;
    std::vector<std::pair<double, size_t>> ends; // y and vertex
  };

  void measure_blocks();
  void choose_named();
  void find_columns();
  void make_links();
  void order_columns();
  void place_rows();
  void align(const std::vector<size_t>& column, const std::vector<double>& wanted);
  void place_columns();
  size_t find_tracks(int channel);
  double left_of(const VERTEX& vertex) const;
  void draw_wires();
  void draw_trunk(const TRUNK& trunk, double x);
  void add_texts();

  const SCHEMATIC& m_schematic;
  std::vector<PLACED_BLOCK> m_blocks;
  std::vector<VERTEX> m_vertices; // blocks first
  std::vector<LINK> m_links;
  std::vector<std::vector<size_t>> m_columns;
  std::vector<double> m_column_x;
  std::vector<double> m_column_width;
  std::vector<std::vector<bool>> m_is_named; // by wire and load
  std::vector<double> m_track_x;             // of the first track of each channel
  std::vector<std::vector<TRUNK>> m_trunks;  // by channel
  std::vector<PLACED_LINE> m_lines;
  std::vector<SCHEMATIC_POINT> m_dots;
  std::vector<PLACED_TEXT> m_texts;
  double m_width = 0;
  double m_height = 0;
};

#endif
