// Smooth random fields, made row by row.
#pragma once

#include <vector>

#include "drawing/random.h"

namespace vantrel::drawing {

// Value noise: normal deviates on a lattice, with smooth passages between them.
class NoiseField {
 public:
  NoiseField(Random& random, int width, int height, int cell_width, int cell_height, double amplitude);
  void add_to(int y, std::vector<float>& row) const;

 private:
  int cell_width_, cell_height_, shift_x_, shift_y_, columns_;
  std::vector<float> lattice_, passage_;
};

// Fields of ever finer cells, each weaker than the one before.
class FractalField {
 public:
  FractalField() = default;
  void add(NoiseField field) { fields_.push_back(std::move(field)); }
  void add_octaves(Random& random, int width, int height, double cell, int octaves, double amplitude,
                   double decay = 0.5);
  void draw(int y, std::vector<float>& row) const;
  bool empty() const { return fields_.empty(); }

 private:
  std::vector<NoiseField> fields_;
};

}  // namespace vantrel::drawing
