#include "drawing/noise_field.h"

#include <algorithm>
#include <cmath>

namespace vantrel::drawing {

NoiseField::NoiseField(Random& random, int width, int height, int cell_width, int cell_height, double amplitude)
    : cell_width_(std::max(1, cell_width)),
      cell_height_(std::max(1, cell_height)),
      shift_x_(random.integer(0, cell_width_ - 1)),
      shift_y_(random.integer(0, cell_height_ - 1)),
      columns_((width + shift_x_) / cell_width_ + 2) {
  const int rows = (height + shift_y_) / cell_height_ + 2;
  lattice_.resize(static_cast<std::size_t>(columns_) * static_cast<std::size_t>(rows));
  const float* deviates = normal_deviates();
  std::size_t next = random.bits() % kDeviates;
  for (auto& value : lattice_) {
    value = deviates[next] * static_cast<float>(amplitude);
    next = (next + 1) % kDeviates;
  }
  for (int i = 0; i < cell_width_; ++i) {
    const float t = (static_cast<float>(i) + 0.5F) / static_cast<float>(cell_width_);
    passage_.push_back(t * t * (3 - 2 * t));
  }
}

void NoiseField::add_to(int y, std::vector<float>& row) const {
  const int line = (y + shift_y_) / cell_height_;
  float t = (static_cast<float>((y + shift_y_) % cell_height_) + 0.5F) / static_cast<float>(cell_height_);
  t = t * t * (3 - 2 * t);
  const float* upper = lattice_.data() + static_cast<std::size_t>(line) * static_cast<std::size_t>(columns_);
  const float* lower = upper + columns_;
  const int width = static_cast<int>(row.size());
  float left = upper[0] + (lower[0] - upper[0]) * t;
  for (int cell = 0, begin = -shift_x_; begin < width; ++cell, begin += cell_width_) {
    const float right = upper[cell + 1] + (lower[cell + 1] - upper[cell + 1]) * t;
    const int first = std::max(begin, 0), end = std::min(begin + cell_width_, width);
    const float* passage = passage_.data() - begin;
    float* out = row.data();
    for (int x = first; x < end; ++x) {
      out[x] += left + (right - left) * passage[x];
    }
    left = right;
  }
}

void FractalField::add_octaves(Random& random, int width, int height, double cell, int octaves, double amplitude,
                               double decay) {
  for (int octave = 0; octave < octaves && cell >= 1; ++octave, cell /= 2.1, amplitude *= decay) {
    const int size = static_cast<int>(std::lround(cell));
    add(NoiseField(random, width, height, size, size, amplitude));
  }
}

void FractalField::draw(int y, std::vector<float>& row) const {
  std::fill(row.begin(), row.end(), 0.0F);
  for (const auto& field : fields_) {
    field.add_to(y, row);
  }
}

}  // namespace vantrel::drawing
