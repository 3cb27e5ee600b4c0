// Pieces that print is made of: photographs, portraits, bars, boxes.
#pragma once

#include "drawing/canvas.h"

namespace vantrel::drawing {

// A colour of that lightness, more or less far from gray.
Colour tint(Random& random, double lightness, double colourfulness);
Colour ink(Random& random);    // dark, often black
Colour paper(Random& random);  // white or nearly so
Colour vivid(Random& random);  // as logos and bands are
Colour skin_colour(Random& random);

void draw_photograph(Canvas& canvas, Random& random, const Box& box);
void draw_portrait(Canvas& canvas, Random& random, const Box& box);
void draw_bars(Canvas& canvas, Random& random, const Box& box, Colour colour);
void draw_square_code(Canvas& canvas, Random& random, const Box& box, Colour colour);
void draw_logo(Canvas& canvas, Random& random, const Box& box);

}  // namespace vantrel::drawing
