#include "card_image.h"

#include <cmath>
#include <new>

#include "autoclip/projective.h"
#include "autoclip/warp.h"
#include "failure.h"
#include "image/convert.h"
#include "pix_bitmap.h"

namespace tool {
namespace {

double edge_length(const Corners& c, std::size_t from, std::size_t to) {
  return std::hypot(double{c[2 * to]} - c[2 * from], double{c[2 * to + 1]} - c[2 * from + 1]);
}

int mean_length(double one, double other) { return static_cast<int>(std::lround((one + other) / 2)); }

}  // namespace

Bitmap card_image(Bitmap& scan, const Corners& corners) {
  const int width = mean_length(edge_length(corners, 0, 1), edge_length(corners, 2, 3));
  const int height = mean_length(edge_length(corners, 0, 2), edge_length(corners, 1, 3));
  if (width < 1 || height < 1) throw Failure("the corners found enclose nothing");

  // Both pixels beside a border count as its edge, so a line found may lie half a pixel outside the card. The corners
  // are therefore laid half a pixel outside the picture's outer edges, which keeps the background out. In positions of
  // pixel centres that is a whole pixel before the first and behind the last.
  const float before = -1.0F;
  const auto right = static_cast<float>(width);
  const auto below = static_cast<float>(height);
  Corners frame = {before, before, right, before, before, below, right, below};
  // Corners are half a pixel more than positions of pixel centres, and the sampler adds another half to what the
  // mapping gives it.
  Corners targets{};
  for (std::size_t i = 0; i < 8; ++i) targets[i] = corners[i] - 1.0F;

  std::array<double, 8> coefficients{};
  SolveMultiUnknownFunc(coefficients.data(), frame.data(), targets.data(), 8);
  std::array<double, 4> rect = {0.0, 0.0, width - 1.0, height - 1.0};
  const BITMAPINFOHEADER& header = *scan.record()->pInfo;
  Bitmap card(width, height, scan.depth(), header.biXPelsPerMeter, header.biYPelsPerMeter);
  if (!ConvertImg(scan.record(), card.record(), coefficients.data(), rect.data(), scan.depth())) throw std::bad_alloc();
  return card;
}

Bitmap reduced_copy(const Bitmap& scan, int n) {
  const int width = scan.width() / n;
  const int height = scan.height() / n;
  if (width < 1 || height < 1) throw Failure("too small to be reduced " + std::to_string(n) + " times");
  const PixPtr pix = to_pix(scan);
  BOX* whole_blocks = boxCreate(0, 0, width * n, height * n);
  const PixPtr clipped(pixClipRectangle(pix.get(), whole_blocks, nullptr));
  boxDestroy(&whole_blocks);
  if (!clipped) throw std::bad_alloc();
  const PixPtr reduced = checked(pixScaleAreaMapToSize(clipped.get(), width, height));
  return to_bitmap(reduced.get());
}

Bitmap with_depth(const Bitmap& image, int depth) {
  if (depth == 8) {
    Bitmap gray;
    BITMAPPTR colour = *image.record();
    if (!Color2Gray(&colour, gray.record())) throw std::bad_alloc();
    return gray;
  }
  const PixPtr gray = to_pix(image);
  const PixPtr colour = checked(pixConvertTo32(gray.get()));
  return to_bitmap(colour.get());
}

}  // namespace tool
