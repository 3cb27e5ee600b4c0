// What cards and documents look like, flat.
#pragma once

#include <optional>
#include <string>

#include "drawing/canvas.h"

namespace vantrel::drawing {

struct Design {
  std::string kind;
  double width, height;  // in millimetres
  double radius = 0;     // of its corners
  bool transparent = false;
};

// A kind at random, or the one named.
Design design_card(Random& random);
Design design_card(Random& random, const std::string& kind);

// `paper` is the colour of its stock, where that is not for the design to say.
Canvas draw_face(const Design& design, Random& random, double pixels_per_mm, std::optional<Colour> paper);

// A page of text that fills a canvas: columns, tables, figures.
void draw_page(Canvas& canvas, Random& random, const Box& box, Colour ink);
void draw_receipt(Canvas& canvas, Random& random, Colour ink);
void draw_thermal(Canvas& canvas, Random& random, Colour paper);

}  // namespace vantrel::drawing
