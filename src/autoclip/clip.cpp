#include "autoclip/clip.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "autoclip/warp.h"

namespace vantrel::autoclip {
namespace {

/** The last position of the frame along a side of that many pixels. */
float frame_end(int pixels) { return static_cast<float>(pixels - 2.0); }

/** Whitens what the mapped frame leaves of a picture, padding included. */
void whiten_rest(image::Pixels target, int channels) {
  const int mapped_rows = std::max(target.rows - 2, 0);
  const std::ptrdiff_t mapped_bytes = std::ptrdiff_t{std::max(target.cols - 2, 0)} * channels;
  for (int r = 0; r < target.rows; ++r) {
    const std::ptrdiff_t from = r < mapped_rows ? mapped_bytes : 0;
    std::memset(target.row(r) + from, 0xFF, static_cast<std::size_t>(target.stride - from));
  }
}

}  // namespace

bool has_frame(int rows, int cols) {
  const auto within = [](int pixels) { return frame_end(pixels) < static_cast<float>(pixels - 1.0); };
  return within(rows) && within(cols);
}

void clip_onto_frame(image::ConstPixels scan, image::Pixels target, int channels, const Corners& corners) {
  const float right = frame_end(scan.cols);
  const float low = frame_end(scan.rows);
  const Corners frame{{1, 1}, {right, 1}, {1, low}, {right, low}};
  whiten_rest(target, channels);
  warp(scan, target, channels, solve_mapping(frame, corners),
       WarpArea::between(1.0, 1.0, scan.cols - 2.0, scan.rows - 2.0));
}

}  // namespace vantrel::autoclip
