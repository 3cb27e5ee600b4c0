#include "drawing/texture.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace vantrel::drawing {
namespace {

std::uint32_t level(double value) { return static_cast<std::uint32_t>(std::clamp(value + 0.5, 0.0, 255.0)); }

// Where a pixel falls in the texture, as a sum that grows by the same amount from pixel to pixel.
struct Ray {
  double x, y, below, dx, dy, dbelow;

  Ray(const Mapping& mapping, int first, int row) {
    const auto& m = mapping.m;
    const double px = first + 0.5, py = row + 0.5;
    x = m[0] * px + m[1] * py + m[2], dx = m[0];
    y = m[3] * px + m[4] * py + m[5], dy = m[3];
    below = m[6] * px + m[7] * py + m[8], dbelow = m[6];
  }
  bool projective() const { return dbelow != 0; }
  void normalize() {
    const double factor = 1 / below;
    x *= factor, y *= factor, dx *= factor, dy *= factor;
    below = 1;
  }
  void step() { x += dx, y += dy, below += dbelow; }
};

}  // namespace

Colour mixed(Colour a, Colour b, double part_of_b) {
  return {a.b + (b.b - a.b) * part_of_b, a.g + (b.g - a.g) * part_of_b, a.r + (b.r - a.r) * part_of_b};
}

double luminance(Colour colour) { return 0.114 * colour.b + 0.587 * colour.g + 0.299 * colour.r; }

std::uint32_t packed(Colour colour) { return level(colour.b) | level(colour.g) << 8 | level(colour.r) << 16; }

Colour unpacked(std::uint32_t pixel) {
  return {static_cast<double>(pixel & 255), static_cast<double>(pixel >> 8 & 255),
          static_cast<double>(pixel >> 16 & 255)};
}

Texture::Texture(int width, int height, Colour colour)
    : width_(width),
      height_(height),
      pixels_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), packed(colour)) {}

int Texture::reflected(int at, int size, Beyond beyond) const {
  if (at >= 0 && at < size) return at;
  if (beyond == Beyond::kBorder) return std::clamp(at, 0, size - 1);
  const int period = 2 * size;
  const int within = ((at % period) + period) % period;
  return within < size ? within : period - 1 - within;
}

// Bilinear, in steps of 1/256 pixel: coarser ones would be seen as bars in pictures that are much enlarged. Two colours
// of a pixel are weighed by one multiplication: 32 bits apart, with weights that sum up to 65536, they cannot reach
// each other.
template <class Fetch>
void Texture::interpolate(const Mapping& mapping, int y, int first, int end, Row& row, Fetch fetch) const {
  Ray ray(mapping, first, y);
  const bool projective = ray.projective();
  if (!projective) ray.normalize();
  for (int x = first; x < end; ++x, ray.step()) {
    const double factor = projective ? 1 / ray.below : 1;
    // Shifted up before it is cut off, so that what is left of the texture is cut downwards too.
    const auto u = static_cast<std::int32_t>((ray.x * factor - 0.5) * 256 + 0x40000000) - 0x40000000;
    const auto v = static_cast<std::int32_t>((ray.y * factor - 0.5) * 256 + 0x40000000) - 0x40000000;
    const std::array<std::uint32_t, 4> pixels = fetch(u >> 8, v >> 8);
    const std::uint32_t right = u & 255, low = v & 255;
    const std::array<std::uint32_t, 4> weights{(256 - right) * (256 - low), right * (256 - low), (256 - right) * low,
                                               right * low};
    std::uint64_t blue_red = 0;
    std::uint32_t green = 0;
    for (std::size_t i = 0; i < 4; ++i) {
      const std::uint64_t apart = (pixels[i] & 0xff) | static_cast<std::uint64_t>(pixels[i] & 0xff0000) << 16;
      blue_red += apart * weights[i];
      green += (pixels[i] >> 8 & 0xff) * weights[i];
    }
    const auto at = static_cast<std::size_t>(x);
    constexpr float kOne = 1 / 65536.0F;
    row.b[at] = static_cast<float>(static_cast<std::int32_t>(blue_red & 0xffffffff)) * kOne;
    row.g[at] = static_cast<float>(static_cast<std::int32_t>(green)) * kOne;
    row.r[at] = static_cast<float>(static_cast<std::int32_t>(blue_red >> 32)) * kOne;
  }
}

void Texture::sample_inside(const Mapping& mapping, int y, int first, int end, Row& row) const {
  interpolate(mapping, y, first, end, row, [this](int u, int v) {
    const std::uint32_t* upper = this->row(v) + u;
    const std::uint32_t* lower = upper + width_;
    return std::array<std::uint32_t, 4>{upper[0], upper[1], lower[0], lower[1]};
  });
}

void Texture::sample(const Mapping& mapping, Beyond beyond, int y, int first, int end, Row& row) const {
  if (first >= end) return;
  const auto inside = [&](int x) {
    const Point p = mapping({x + 0.5, y + 0.5});
    return p.x > 1 && p.y > 1 && p.x < width_ - 2 && p.y < height_ - 2;
  };
  // A row of the scan is a straight line in the texture, which is convex: its ends speak for all of it.
  if (inside(first) && inside(end - 1)) return sample_inside(mapping, y, first, end, row);
  interpolate(mapping, y, first, end, row, [&](int u, int v) {
    const int left = reflected(u, width_, beyond), right = reflected(u + 1, width_, beyond);
    const std::uint32_t *upper = this->row(reflected(v, height_, beyond)),
                        *lower = this->row(reflected(v + 1, height_, beyond));
    return std::array<std::uint32_t, 4>{upper[left], upper[right], lower[left], lower[right]};
  });
}

}  // namespace vantrel::drawing
