// Letters of no alphabet: strokes on a small lattice. From afar they are print like any other.
#pragma once

#include <array>
#include <vector>

#include "drawing/canvas.h"

namespace vantrel::drawing {

class Lettering {
 public:
  // `height` of a capital in millimetres on that canvas; `weight`: stroke width as part of it.
  Lettering(Random& random, double height, double weight, double slant = 0);

  // One line of words from `left`, at most `width` long. Returns where it ended.
  double write(Canvas& canvas, Random& random, Point left_top, double width, Colour colour);
  void write_centred(Canvas& canvas, Random& random, Point middle_top, double width, Colour colour);
  void write_to_right(Canvas& canvas, Random& random, Point right_top, double width, Colour colour);
  // Lines that fill a box.
  void paragraph(Canvas& canvas, Random& random, const Box& box, double line_distance, Colour colour);
  double height() const { return height_; }

 private:
  struct Glyph {
    std::vector<std::array<Point, 2>> strokes;  // on a unit cell, one high
    double width = 0;
    std::vector<unsigned char> mask;
    int mask_width = 0;
  };
  void engrave(Glyph& glyph, double pixels);
  std::vector<int> line_of_letters(Random& random, double width, double& length);
  void put(Canvas& canvas, const std::vector<int>& letters, Point left_top, Colour colour);

  double height_, weight_, slant_;
  std::vector<Glyph> glyphs_;
  bool capitals_;
};

// A few that are often wanted.
Lettering small_print(Random& random);
Lettering heading(Random& random, double height);

}  // namespace vantrel::drawing
