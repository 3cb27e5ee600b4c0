#include "cards/cut.h"

#include <cstring>

#include "autoclip/warp.h"
#include "cards/quad.h"

namespace vantrel::cards {
namespace {

/** Half a pixel lies between a pixel's outer corner and its middle. */
constexpr double kHalfPixel = 0.5;

/** Where the corners are laid: on the target's own, moved inward by the margin, in positions of pixel centres. */
geometry::Quadrilateral<float> frame_of(int width, int height, double margin) {
  const auto left = static_cast<float>(margin - kHalfPixel);
  const auto right = static_cast<float>(width - margin - kHalfPixel);
  const auto bottom = static_cast<float>(height - margin - kHalfPixel);
  return {{left, left}, {right, left}, {left, bottom}, {right, bottom}};
}

/** Corners are half a pixel more than positions of pixel centres, and the sampler adds another half. */
geometry::Point<float> sampled_at(geometry::Point<float> corner) { return {corner.x - 1.0F, corner.y - 1.0F}; }

geometry::Quadrilateral<float> sampled_at(const geometry::Quadrilateral<float>& q) {
  return {sampled_at(q.top_left), sampled_at(q.top_right), sampled_at(q.bottom_left), sampled_at(q.bottom_right)};
}

/** A length and what the margins add to it, in whole pixels; more than the largest size for what is none. */
std::int64_t pixels(double mean_length, double margin) {
  constexpr auto kTooMany = image::kMaxBytes + 1;
  if (!(mean_length < static_cast<double>(kTooMany))) return kTooMany;
  const double margins = margin > 0.0 ? 2 * margin : 0.0;
  auto more = static_cast<std::int64_t>(margins);
  if (static_cast<double>(more) < margins) ++more;
  return static_cast<std::int64_t>(mean_length + 0.5) + more;
}

/** The means of opposite edges. The corners are taken as the core maps them: in single precision. */
struct MeanLengths {
  double across;
  double down;
};

MeanLengths mean_lengths(const vantrel_quad& corners) {
  const auto edges = edge_lengths(quad_of(single_precision(corners)));
  return {(edges[VANTREL_SIDE_TOP] + edges[VANTREL_SIDE_BOTTOM]) / 2,
          (edges[VANTREL_SIDE_LEFT] + edges[VANTREL_SIDE_RIGHT]) / 2};
}

/** Copies `count` bits that start at bit `first` of a row; the other bits of the target's last byte stay. */
void copy_bits(const unsigned char* source, int first, unsigned char* target, int count) {
  const unsigned char* from = source + first / 8;
  const int shift = first % 8;
  for (int x = 0; x < count; x += 8, ++from, ++target) {
    const int taken = count - x < 8 ? count - x : 8;
    // A second byte is only there when bits of it are taken.
    const int second = shift + taken > 8 ? from[1] : 0;
    const int bits = (from[0] << 8 | second) >> (8 - shift) & 0xff;
    const int mask = 0xff << (8 - taken) & 0xff;
    *target = static_cast<unsigned char>((bits & mask) | (*target & ~mask));
  }
}

}  // namespace

vantrel_status check_cut(const vantrel_quad& corners, double margin) {
  if (!(margin >= -VANTREL_MARGIN_MOST && margin <= VANTREL_MARGIN_MOST)) return VANTREL_ERROR_OPTION;
  if (!is_finite(corners)) return VANTREL_ERROR_GEOMETRY;
  const MeanLengths means = mean_lengths(corners);
  // What rounds to no pixel at all encloses nothing.
  if (means.across < kHalfPixel || means.down < kHalfPixel || area(corners) == 0.0) return VANTREL_ERROR_GEOMETRY;
  return VANTREL_OK;
}

Shape natural_cut(const vantrel_quad& corners, double margin, vantrel_format format) {
  const MeanLengths means = mean_lengths(corners);
  const std::int64_t width = pixels(means.across, margin);
  const std::int64_t height = pixels(means.down, margin);
  if (width > image::kMaxBytes || height > image::kMaxBytes) return {0, 0, format};
  return {static_cast<int>(width), static_cast<int>(height), format};
}

bool leaves_room(const Shape& shape, double margin) { return shape.width > 2 * margin && shape.height > 2 * margin; }

void cut(const vantrel_image& scan, const vantrel_quad& corners, double margin, Target& target) {
  const image::Pixels pixels = target.memory_rows();
  const autoclip::Mapping mapping =
      autoclip::solve_mapping(frame_of(pixels.cols, pixels.rows, margin), sampled_at(single_precision(corners)));
  const autoclip::WarpArea whole = {0, 0, pixels.cols - 1, pixels.rows - 1, pixels.cols, pixels.rows};
  // The outermost half pixel of the scan lies before the middle of its first pixel, where the given interface's warp
  // leads out of the range of a byte.
  autoclip::warp(memory_rows(scan), pixels, layout_of(scan.format).bytes, mapping, whole, autoclip::Rim::kRepeated);
}

bool lies_within(const vantrel_rect& rectangle, const vantrel_image& image) {
  return 0 <= rectangle.left && rectangle.left < rectangle.right && rectangle.right <= image.width &&
         0 <= rectangle.top && rectangle.top < rectangle.bottom && rectangle.bottom <= image.height;
}

void crop(const vantrel_image& image, const vantrel_rect& rectangle, Target& target) {
  const image::ConstPixels source = rows_from_top(image);
  const image::Pixels pixels = target.rows_from_top();
  for (int y = 0; y < pixels.rows; ++y) {
    const unsigned char* row = source.row(rectangle.top + y);
    if (image.format == VANTREL_FORMAT_BILEVEL) {
      copy_bits(row, rectangle.left, pixels.row(y), pixels.cols);
    } else {
      const auto bytes = layout_of(image.format).bytes;
      std::memcpy(pixels.row(y), row + std::ptrdiff_t{rectangle.left} * bytes,
                  static_cast<std::size_t>(row_bytes(pixels.cols, image.format)));
    }
  }
}

}  // namespace vantrel::cards
