// What cards lie on.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "drawing/geometry.h"
#include "drawing/random.h"
#include "drawing/texture.h"

namespace vantrel::drawing {

class Ground {
 public:
  virtual ~Ground() = default;
  virtual void draw(int y, Row& row) = 0;
  Colour mean = gray(0);
};

struct Bed {
  int width, height;  // in pixels
  double pixels_per_mm;
  bool photographed = false;  // from a distance: patterns may lie at any angle
};

// Those of a scanner without a sheet; sheets, tables and cloths; and all of them.
std::string pick_scanner_ground(Random& random);
std::string pick_table_ground(Random& random);
std::unique_ptr<Ground> make_ground(const std::string& kind, Random& random, const Bed& bed);

// Patterns that repeat, as textures; `pixels_per_mm` is chosen by them.
struct Pattern {
  Texture texture;
  double pixels_per_mm;
};
Pattern draw_weave(Random& random);
Pattern draw_terrazzo(Random& random);
Pattern draw_leather(Random& random);
Pattern draw_carpet(Random& random);
Pattern draw_print(Random& random);  // a newspaper, a printed mat
Pattern draw_cloth(Random& random);  // checks, stripes, dots
Pattern draw_keys(Random& random);   // a keyboard, a tiled table
Pattern real_glass(Random& random);  // scanned

}  // namespace vantrel::drawing
