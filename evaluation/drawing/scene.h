// A scene in front of the sensor: a ground, what lies on it, and which of that are the cards.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "drawing/capture.h"
#include "drawing/faces.h"
#include "drawing/ground.h"
#include "drawing/layers.h"

namespace vantrel::drawing {

struct LaidCard {
  Quad corners;       // as its face has them
  std::size_t layer;  // what lies above may hide it
};

struct Scene {
  DrawnScan scan;  // without its pixels, cards
  Bed bed{};
  std::unique_ptr<Ground> ground;
  std::vector<std::unique_ptr<Layer>> layers;
  std::vector<LaidCard> cards;
  Capture capture;

  void note(const char* effect) { scan.effects.push_back(effect); }
  void set_bed(const Bed& wanted);
  void set_ground(Random& random, const std::string& kind);
};

// Beds of scanners, with at most so many pixels.
Bed pick_bed(Random& random);
Bed bed_of(double width_mm, double height_mm, double dpi, double most_pixels);

enum class Shadow { kNone, kAny, kFaint };
struct Laying {
  std::optional<Colour> paper = {};
  Shadow shadow = Shadow::kAny;
  bool counted = true;  // whether it is a card of the truth
  double wear = 0.35;   // how often creases, curls and the like are drawn
  double crumple = 0;   // in millimetres
  int folds = 0;        // across the sheet, with shading to both hands
  int curled_corners = 0;
};
// Lays a sheet with that face onto the scene; `quad` is where its corners come to lie.
void lay(Scene& scene, Random& random, const Design& design, const Quad& quad, const Laying& laying);
// A sheet of one colour, or paper with something faint on it: never a card.
void lay_backing(Scene& scene, Random& random, const Quad& quad, Colour colour);
void cast_shadow(Scene& scene, Random& random, const Quad& quad, bool faint);

// A strip of lid, frame or paper along a side of the scan.
void lay_strip(Scene& scene, Random& random);

// A stock that is hard to tell from the ground: a few levels off, or in hue alone.
Colour colour_near(Random& random, Colour ground, double least, double most);

// How a card lies.
double pick_tilt(Random& random);
Quad foreshortened(Random& random, const Quad& quad, double amount);  // about its middle
// As a card is seen from far aside and near by: its corners have 60 to 120 degrees.
Quad strongly_foreshortened(Random& random, const Quad& quad);
// Moves it to where `place` says on the bed; unknown words mean anywhere on it.
Quad placed(Random& random, const Quad& quad, const Bed& bed, const std::string& place);
Quad moved(const Quad& quad, Point by);

// All that lies on the right hand of a line through a point, as far as the scan reaches.
Quad half_plane(const Bed& bed, Point on, double angle);
// A rectangle along a side of the scan, reaching beyond it; `part` of the scan is how far it comes in.
Quad border_strip(Random& random, const Bed& bed, int side, double part);

// Which sides of the cards can be seen on the finished picture, in the order of the truth. Returns whether all can that
// are on the scan and not hidden.
bool find_truth(const Scene& scene, DrawnScan& scan);

// The sets.
void compose_single(Scene& scene, Random& random);
void compose_flat(Scene& scene, Random& random);  // single cards without wear, on scanners without faults
void compose_white(Scene& scene, Random& random);
void compose_fine(Scene& scene, Random& random);
void compose_photo(Scene& scene, Random& random);
void compose_receipt(Scene& scene, Random& random);
void compose_several(Scene& scene, Random& random);
void compose_bare(Scene& scene, Random& random);
void compose_strips(Scene& scene, Random& random);
void compose_page(Scene& scene, Random& random);

}  // namespace vantrel::drawing
