#include "drawing/canvas.h"

#include <algorithm>
#include <cmath>

namespace vantrel::drawing {
namespace {

std::uint32_t weight_of(double part) { return static_cast<std::uint32_t>(std::clamp(part, 0.0, 1.0) * 256 + 0.5); }

int pixels(double size) { return std::max(2, static_cast<int>(std::lround(size))); }

}  // namespace

Canvas::Canvas(double width, double height, double pixels_per_mm, Colour colour)
    : width_(width),
      height_(height),
      scale_(pixels_per_mm),
      texture_(pixels(width * pixels_per_mm), pixels(height * pixels_per_mm), colour) {}

Canvas::Pixels Canvas::within(const Box& box) const {
  const auto low = [](double at, int size) { return std::clamp(static_cast<int>(std::floor(at)), 0, size); };
  const auto high = [](double at, int size) { return std::clamp(static_cast<int>(std::ceil(at)), 0, size); };
  return {low(box.left * scale_, texture_.width()), low(box.top * scale_, texture_.height()),
          high(box.right() * scale_, texture_.width()), high(box.bottom() * scale_, texture_.height())};
}

// Every pixel of the box, by the part of it that `part` says of its centre in pixels.
template <class Part>
void Canvas::blend(const Box& box, Colour colour, double opacity, Part part) {
  const Pixels area = within(box);
  const std::uint32_t paint = packed(colour);
  for (int y = area.top; y < area.bottom; ++y) {
    std::uint32_t* row = texture_.row(y);
    for (int x = area.left; x < area.right; ++x) {
      const double covered = part(x + 0.5, y + 0.5);
      if (covered > 0) row[x] = blended(row[x], paint, weight_of(covered * opacity));
    }
  }
}

void Canvas::fill(const Box& box, Colour colour, double opacity) {
  const Pixels area = within(box);
  const std::uint32_t paint = packed(colour);
  const auto overlap = [](int at, double first, double end) {
    return std::max(0.0, std::min(at + 1.0, end) - std::max(static_cast<double>(at), first));
  };
  for (int y = area.top; y < area.bottom; ++y) {
    const double high = overlap(y, box.top * scale_, box.bottom() * scale_) * opacity;
    std::uint32_t* row = texture_.row(y);
    for (int x = area.left; x < area.right; ++x) {
      const bool rim = x == area.left || x + 1 == area.right;
      const double part = rim ? high * overlap(x, box.left * scale_, box.right() * scale_) : high;
      row[x] = part >= 1 ? paint : blended(row[x], paint, weight_of(part));
    }
  }
}

void Canvas::frame(const Box& box, double thickness, Colour colour) {
  fill({box.left, box.top, box.width, thickness}, colour);
  fill({box.left, box.bottom() - thickness, box.width, thickness}, colour);
  fill({box.left, box.top, thickness, box.height}, colour);
  fill({box.right() - thickness, box.top, thickness, box.height}, colour);
}

void Canvas::line(Point from, Point to, double thickness, Colour colour, double opacity) {
  const double reach = thickness / 2 + 1 / scale_;
  const Box box{std::min(from.x, to.x) - reach, std::min(from.y, to.y) - reach, std::abs(to.x - from.x) + 2 * reach,
                std::abs(to.y - from.y) + 2 * reach};
  const Point start = from * scale_, along = (to - from) * scale_;
  const double square = std::max(along.x * along.x + along.y * along.y, 1e-9), half = thickness * scale_ / 2;
  blend(box, colour, opacity, [&](double x, double y) {
    const Point off = Point{x, y} - start;
    const double t = std::clamp((off.x * along.x + off.y * along.y) / square, 0.0, 1.0);
    return std::min(half + 0.5 - length(off - along * t), 2 * half);
  });
}

void Canvas::ellipse(const Box& box, Colour colour, double opacity) {
  const double half_width = box.width * scale_ / 2, half_height = box.height * scale_ / 2;
  const Point middle{box.left * scale_ + half_width, box.top * scale_ + half_height};
  blend(box, colour, opacity, [&](double x, double y) {
    const double u = (x - middle.x) / half_width, v = (y - middle.y) / half_height;
    return (1 - std::sqrt(u * u + v * v)) * std::min(half_width, half_height) + 0.5;
  });
}

void Canvas::polygon(const std::vector<Point>& corners, Colour colour, double opacity) {
  Point low = corners[0], high = corners[0];
  for (Point p : corners) {
    low = {std::min(low.x, p.x), std::min(low.y, p.y)};
    high = {std::max(high.x, p.x), std::max(high.y, p.y)};
  }
  blend({low.x, low.y, high.x - low.x, high.y - low.y}, colour, opacity, [&](double x, double y) {
    double part = 1;
    for (std::size_t i = 0; i < corners.size() && part > 0; ++i) {
      const Point from = corners[i] * scale_, side = corners[(i + 1) % corners.size()] * scale_ - from;
      part = std::min(part, (side.x * (y - from.y) - side.y * (x - from.x)) / length(side) + 0.5);
    }
    return part;
  });
}

void Canvas::fade(const Box& box, Colour from, Colour to, double angle) {
  const Pixels area = within(box);
  const Point axis = unit(angle);
  const double reach = (std::abs(axis.x) * box.width + std::abs(axis.y) * box.height) * scale_ / 2;
  const Point middle{(box.left + box.width / 2) * scale_, (box.top + box.height / 2) * scale_};
  std::array<std::uint32_t, 256> ramp;
  for (std::size_t i = 0; i < ramp.size(); ++i) ramp[i] = packed(mixed(from, to, static_cast<double>(i) / 255));
  const double step = axis.x * 127.5 / reach;
  for (int y = area.top; y < area.bottom; ++y) {
    double at = ((area.left + 0.5 - middle.x) * axis.x + (y + 0.5 - middle.y) * axis.y) * 127.5 / reach + 127.5;
    std::uint32_t* row = texture_.row(y);
    for (int x = area.left; x < area.right; ++x, at += step) {
      row[x] = ramp[static_cast<std::size_t>(std::clamp(at, 0.0, 255.0))];
    }
  }
}

void Canvas::paste(const Box& box, const Texture& picture) {
  const Pixels area = within(box);
  if (area.empty()) return;
  Mapping mapping;
  mapping.m = {picture.width() / (box.width * scale_),
               0,
               -box.left * picture.width() / box.width,
               0,
               picture.height() / (box.height * scale_),
               -box.top * picture.height() / box.height,
               0,
               0,
               1};
  Row levels(texture_.width());
  for (int y = area.top; y < area.bottom; ++y) {
    picture.sample(mapping, Beyond::kBorder, y, area.left, area.right, levels);
    std::uint32_t* row = texture_.row(y);
    for (auto x = static_cast<std::size_t>(area.left); x < static_cast<std::size_t>(area.right); ++x) {
      const auto level = [](float value) { return static_cast<std::uint32_t>(static_cast<int>(value + 0.5F)); };
      row[x] = level(levels.b[x]) | level(levels.g[x]) << 8 | level(levels.r[x]) << 16;
    }
  }
}

void Canvas::grain(Random& random, double levels) {
  const float* deviates = normal_deviates();
  for (int y = 0; y < texture_.height(); ++y) {
    const float* noise = deviates + random.bits() % kDeviates;
    std::uint32_t* row = texture_.row(y);
    for (int x = 0; x < texture_.width(); ++x) {
      row[x] = packed(unpacked(row[x]) + static_cast<double>(noise[static_cast<std::size_t>(x) % kDeviates]) * levels);
    }
  }
}

void Canvas::stamp(int left, int top, const std::vector<unsigned char>& mask, int mask_width, Colour colour,
                   double opacity) {
  const std::uint32_t paint = packed(colour), strength = weight_of(opacity);
  const int mask_height = static_cast<int>(mask.size()) / std::max(mask_width, 1);
  const int first = std::max(0, -left), end = std::min(mask_width, texture_.width() - left);
  for (int y = std::max(0, -top); y < std::min(mask_height, texture_.height() - top); ++y) {
    const unsigned char* part = mask.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(mask_width);
    std::uint32_t* row = texture_.row(top + y) + left;
    for (int x = first; x < end; ++x) {
      if (part[x] > 0) row[x] = blended(row[x], paint, (part[x] + 1U) * strength >> 8);
    }
  }
}

}  // namespace vantrel::drawing
