// The outline of a flat thing: four sides, perhaps bent, corners perhaps round, holes. It says exactly how much of each
// pixel lies within.
#pragma once

#include <vector>

#include "drawing/geometry.h"

namespace vantrel::drawing {

struct Bend {
  double bulge = 0;         // how far the side's middle reaches outwards, in pixels
  double crumple = 0;       // deviation of its irregularities
  double crumple_step = 1;  // and their distance along the side
  std::size_t crumple_seed = 0;
};

struct Hole {
  Point middle;
  double radius;
};

// How much of the pixels [first, end) of a row is covered; those in [inner_first, inner_end) are covered wholly.
struct Cover {
  int first = 0, end = 0, inner_first = 0, inner_end = 0;
  std::vector<float> part;  // by column of the scan
};

class Outline {
 public:
  explicit Outline(const Quad& corners, double radius = 0);
  void bend(std::size_t side, const Bend& bend);
  void cut(const Hole& hole) { holes_.push_back(hole); }

  const Quad& corners() const { return corners_; }
  int first_row() const;
  int end_row() const;
  void cover(int y, int width, Cover& cover) const;
  // The same softly: from 0 at `softness` outside of each side to 1 at `softness` inside. Without bends and holes.
  void cover_softly(int y, int width, double softness, Cover& cover) const;

 private:
  struct Side {
    double a, b, c;  // a x + b y + c is the distance from the side, positive inside
    Point origin, along;
    double length;
    Bend bend;
  };
  struct Span {
    int first, end;
  };

  Span columns_within(double distance, double y, int width) const;
  double distance(const Side& side, Point p) const;
  double part_of_pixel(Point centre) const;
  double sampled_part(Point centre) const;
  bool inside(Point p) const;
  void cut_holes(int y, int width, Cover& cover) const;

  Quad corners_;
  double radius_, reach_ = 0;
  std::array<Side, 4> sides_;
  std::vector<Hole> holes_;
};

}  // namespace vantrel::drawing
