// A picture in packed pixels, and its sampling under a projective mapping.
#pragma once

#include <cstdint>
#include <vector>

#include "drawing/geometry.h"

namespace vantrel::drawing {

struct Colour {
  double b = 0, g = 0, r = 0;  // levels from 0 to 255
};
inline Colour gray(double level) { return {level, level, level}; }
inline Colour operator+(Colour a, double levels) { return {a.b + levels, a.g + levels, a.r + levels}; }
inline Colour operator*(Colour a, double factor) { return {a.b * factor, a.g * factor, a.r * factor}; }
Colour mixed(Colour a, Colour b, double part_of_b);
double luminance(Colour colour);

std::uint32_t packed(Colour colour);
Colour unpacked(std::uint32_t pixel);

// A row of the scan while it is drawn: levels in planes, so that what is done to every pixel is done to several at
// once.
struct Row {
  std::vector<float> b, g, r;

  explicit Row(int width)
      : b(static_cast<std::size_t>(width)), g(static_cast<std::size_t>(width)), r(static_cast<std::size_t>(width)) {}
  int width() const { return static_cast<int>(b.size()); }
};

// What lies beyond a texture: its border pixels, or itself again, turned over at each border.
enum class Beyond { kBorder, kMirror };

class Texture {
 public:
  Texture() = default;
  Texture(int width, int height, Colour colour);

  int width() const { return width_; }
  int height() const { return height_; }
  std::uint32_t* row(int y) { return pixels_.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(width_); }
  const std::uint32_t* row(int y) const {
    return pixels_.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(width_);
  }

  // The pixels [first, end) of the scan's row y, where `mapping` leads from the scan to the texture's pixels.
  void sample(const Mapping& mapping, Beyond beyond, int y, int first, int end, Row& row) const;

 private:
  void sample_inside(const Mapping& mapping, int y, int first, int end, Row& row) const;
  int reflected(int at, int size, Beyond beyond) const;
  template <class Fetch>
  void interpolate(const Mapping& mapping, int y, int first, int end, Row& row, Fetch fetch) const;

  int width_ = 0, height_ = 0;
  std::vector<std::uint32_t> pixels_;
};

}  // namespace vantrel::drawing
