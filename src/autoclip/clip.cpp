#include "autoclip/clip.h"

#include "autoclip/warp.h"

namespace vantrel::autoclip {
namespace {

/** The last position of the frame along a side of that many pixels. */
float frame_end(int pixels) { return static_cast<float>(pixels - 2.0); }

}  // namespace

bool has_frame(int rows, int cols) {
  const auto within = [](int pixels) { return frame_end(pixels) < static_cast<float>(pixels - 1.0); };
  return within(rows) && within(cols);
}

void clip_onto_frame(image::ConstPixels scan, image::Pixels target, int channels, const Corners& corners) {
  const float right = frame_end(scan.cols);
  const float low = frame_end(scan.rows);
  const Corners frame{{1, 1}, {right, 1}, {1, low}, {right, low}};
  warp(scan, target, channels, solve_mapping(frame, corners),
       WarpArea::between(1.0, 1.0, scan.cols - 2.0, scan.rows - 2.0));
}

}  // namespace vantrel::autoclip
