// What lies on the ground, drawn one over the other, row by row.
#pragma once

#include <memory>
#include <vector>

#include "drawing/outline.h"
#include "drawing/random.h"
#include "drawing/texture.h"

namespace vantrel::drawing {

class Layer {
 public:
  virtual ~Layer() = default;
  virtual void draw(int y, Row& row) = 0;
  virtual bool hides(Point) const { return false; }
};

// A change of brightness over all that lies below: a shadow, or light where `darkness` is negative.
class Shade : public Layer {
 public:
  Shade(const Quad& quad, double softness, double darkness);
  void draw(int y, Row& row) override;

 private:
  Outline outline_;
  double softness_;
  float darkness_;
  Cover cover_;
};

// Light and dark along a straight line over a sheet: a crease (one hand light, the other dark) or a streak of gloss.
struct Streak {
  Point on;
  double angle, width;  // in pixels
  double ridge, slope;  // levels on the line itself; levels on one hand of it, taken away on the other
};

// A flat thing with a picture on it.
class Sheet : public Layer {
 public:
  Sheet(Outline outline, std::shared_ptr<const Texture> face, const Mapping& face_to_scan);
  void draw(int y, Row& row) override;
  bool hides(Point p) const override { return !transparent_ && contains(outline_.corners(), p); }

  Outline& outline() { return outline_; }
  void add(const Streak& streak) { streaks_.push_back(streak); }
  void make_transparent(double haze) { transparent_ = true, haze_ = static_cast<float>(haze); }
  // A raster of dots, as print or an interfering sensor has it: period in pixels, contrast as part of the level.
  void add_raster(double period, double angle, double contrast);

 private:
  void shine(int y, int first, int end);
  void rasterize(int y, int first, int end);

  Outline outline_;
  std::shared_ptr<const Texture> face_;
  Mapping to_face_;
  std::vector<Streak> streaks_;
  bool transparent_ = false;
  float haze_ = 0;
  double raster_period_ = 0, raster_angle_ = 0, raster_contrast_ = 0;
  Cover cover_;
  Row pixels_{0};
};

// Dust, hairs and scratches: short thick lines.
struct Speck {
  Point from, to;
  double width, levels;
};
class Specks : public Layer {
 public:
  explicit Specks(std::vector<Speck> specks) : specks_(std::move(specks)) {}
  void draw(int y, Row& row) override;

 private:
  std::vector<Speck> specks_;
};
std::vector<Speck> drawn_specks(Random& random, int width, int height, double pixels_per_mm, double levels);

}  // namespace vantrel::drawing
