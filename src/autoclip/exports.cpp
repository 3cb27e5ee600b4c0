#include "autoclip/exports.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "autoclip/clip.h"
#include "autoclip/corner_finder.h"
#include "autoclip/gradient_corners.h"
#include "autoclip/mapping.h"
#include "autoclip/warp.h"
#include "image/dib.h"
#include "lines/edge_maps.h"
#include "lines/exports_lines.h"

namespace vantrel::autoclip {
namespace {

using geometry::Side;
using image::ConstPixels;
using image::Pixels;

// Corners and boxes are handed over as eight floats, four (x, y) pairs.

void write(const CornerList& corners, int count, float* pairs) {
  for (int i = 0; i < count; ++i) {
    const Corner& corner = corners[static_cast<std::size_t>(i)];
    pairs[2 * i] = corner.x;
    pairs[2 * i + 1] = corner.y;
  }
}

void write(const Corners& q, float* pairs) {
  write({q.top_left, q.top_right, q.bottom_left, q.bottom_right}, 4, pairs);
}

void write(const CornerBox& box, float* pairs) {
  const auto left = static_cast<float>(box.left);
  const auto top = static_cast<float>(box.top);
  const auto right = static_cast<float>(box.right);
  const auto bottom = static_cast<float>(box.bottom);
  write(Corners{{left, top}, {right, top}, {left, bottom}, {right, bottom}}, pairs);
}

CornerList read_corners(const float* pairs) {
  return {{{pairs[0], pairs[1]}, {pairs[2], pairs[3]}, {pairs[4], pairs[5]}, {pairs[6], pairs[7]}}};
}

PerSide<Line> read_lines(double* normal, double* distance) {
  const lines::LineArrays arrays{normal, distance};
  PerSide<Line> lines;
  for (const Side side : geometry::kSides) lines[side] = arrays.read(side);
  return lines;
}

/** Hands over corners with their box, and tells whether they are a card. */
bool judge(const Corners& placed, int rows, int cols, float* corners, float* box) {
  const CornerBox bounds = bounding_box(placed);
  write(placed, corners);
  write(bounds, box);
  return bounds.covers_half(rows, cols);
}

CornerSearch search_image(const BITMAPPTR& gray) { return find_corners(lines::padded_levels(image::pixels_of(gray))); }

/** By Verdict. */
constexpr std::array kVerdicts = {VANTREL_CORNERS_FOUND, VANTREL_CORNERS_TOO_SMALL, VANTREL_LINES_DEGENERATE,
                                  VANTREL_NO_EDGES,      VANTREL_SIDE_TOO_LONG,     VANTREL_OUT_OF_MEMORY};
static_assert(static_cast<std::size_t>(Verdict::kNoMemory) + 1 == kVerdicts.size());

vantrel_verdict verdict_of(const CornerSearch& search) {
  return search.complete ? kVerdicts[static_cast<std::size_t>(search.verdict)] : VANTREL_OUT_OF_MEMORY;
}

/** The corners of the card on a scan of 8 or 24 bits; false for other depths and without memory. */
bool search_scan(const BITMAPPTR& scan, CornerSearch& search) {
  image::WorkImage gray;
  switch (scan.pInfo->biBitCount) {
    case 8:
      // What is too large for a copy of its own is refused, though none is made.
      if (!image::fits_block(scan.pInfo->biWidth, scan.pInfo->biHeight, 8)) return false;
      search = search_image(scan);
      return true;
    case 24:
      if (!image::create_gray(scan, *gray)) return false;
      search = search_image(*gray);
      return true;
    default:
      return false;
  }
}

Corners scaled(const Corners& corners, int scale) {
  const auto factor = static_cast<float>(scale);
  const auto moved = [factor](const Corner& corner) { return Corner{corner.x * factor, corner.y * factor}; };
  return {moved(corners.top_left), moved(corners.top_right), moved(corners.bottom_left), moved(corners.bottom_right)};
}

/** Maps the card onto the frame of a new image of the scan's size. */
bool clip(const BITMAPPTR& scan, const Corners& corners, BITMAPPTR& out) {
  const image::Shape shape = image::shape_of(scan);
  const ConstPixels pixels = image::pixels_of(scan);
  if (!has_frame(shape.height, shape.width) || !image::create(out, shape, image::Paper::kUnwritten)) return false;
  clip_onto_frame(pixels, image::pixels_of(out), shape.bit_count / 8, corners);
  return true;
}

/** What becomes of a search in which memory was missing. */
enum class Lack { kShowsAsNotFound, kFails };

int auto_clip(void** analysed_handle, void** scan_handle, BITMAPPTR* out, int scale, Lack lack) {
  if (out == nullptr) return -1;
  BITMAPPTR analysed{};
  if (!image::adopt(analysed_handle, analysed)) return -1;
  BITMAPPTR scan = analysed;
  if (scale != 1 && !image::adopt(scan_handle, scan)) return -1;
  // A bilevel scan has no levels to look for a card in.
  if (analysed.pInfo->biBitCount == 1) return image::copy(scan, *out) ? 0 : -1;

  CornerSearch search;
  if (!search_scan(analysed, search)) return -1;
  if (lack == Lack::kFails && verdict_of(search) == VANTREL_OUT_OF_MEMORY) return -1;
  if (search.verdict != Verdict::kFound) return image::copy(analysed, *out) ? 0 : -1;
  if (scan.pInfo->biBitCount != analysed.pInfo->biBitCount) return -1;
  return clip(scan, scaled(search.corners, scale), *out) ? 1 : -1;
}

/** 1: found; 0: not found; -1: no memory. */
int detect_by_gradient(const BITMAPPTR& image, float* corners, float* box) {
  if (image.pInfo == nullptr || image.pInfo->biBitCount != 8) return 0;
  const ConstPixels gray = image::pixels_of(image);
  const GradientSearch search = find_gradient_corners(gray);
  if (!search.complete) return -1;
  if (!search.has_lines) return 0;
  const Intersections& met = search.corners;
  write(met.corners, met.count, corners);
  // Never: borders up to 20 degrees from level and up to 30 from upright meet.
  if (!met.complete()) return 0;
  return judge(placed_in_image(met.corners, gray.rows, gray.cols), gray.rows, gray.cols, corners, box) ? 1 : 0;
}

constexpr int channels_of(int depth) { return depth == 8 ? 1 : 3; }

/** An image to write into, addressed by the stride of another width; it ends where the image's own pixels end. */
Pixels target_with_stride(BITMAPPTR& image, std::int64_t width, int channels) {
  const BITMAPINFOHEADER& header = *image.pInfo;
  const std::int64_t stride = image::stride_bytes(std::max<std::int64_t>(width, 0), 8 * channels);
  if (stride == 0) return {image.pBits, 0, 0, 0};
  const std::int64_t rows = std::min<std::int64_t>(header.biHeight, image::pixel_bytes(header) / stride);
  const std::int64_t cols = std::min<std::int64_t>(header.biWidth, stride / channels);
  return {image.pBits, static_cast<int>(rows), static_cast<int>(cols), static_cast<std::ptrdiff_t>(stride)};
}

WarpArea area_of(const double* rect) { return WarpArea::between(rect[0], rect[1], rect[2], rect[3]); }

void warp_image(const BITMAPPTR& src, BITMAPPTR& dst, const double* coeffs, const WarpArea& area, std::int64_t width,
                int depth) {
  const int channels = channels_of(depth);
  Mapping mapping;
  std::copy_n(coeffs, mapping.size(), mapping.begin());
  warp(image::pixels_of(src), target_with_stride(dst, width, channels), channels, mapping, area);
}

}  // namespace
}  // namespace vantrel::autoclip

namespace autoclip = vantrel::autoclip;
namespace image = vantrel::image;

int AutoClipRedundantImg(void** analyseImage, void** cutImage, BITMAPPTR* out, int scale) {
  return autoclip::auto_clip(analyseImage, cutImage, out, scale, autoclip::Lack::kShowsAsNotFound);
}

int vantrel_auto_clip(void** analyseImage, void** cutImage, BITMAPPTR* out, int scale) {
  return autoclip::auto_clip(analyseImage, cutImage, out, scale, autoclip::Lack::kFails);
}

short ClipNameCardRedundantImg(BITMAPPTR* gray, float* corners, float* box) {
  const autoclip::CornerSearch search = autoclip::search_image(*gray);
  autoclip::write(search.corners, corners);
  autoclip::write(search.box, box);
  return search.verdict == autoclip::Verdict::kFound ? 1 : 0;
}

int vantrel_find_corners(const BITMAPPTR* gray, vantrel_corner_search* result) {
  if (result == nullptr) return 0;
  *result = {};
  result->verdict = VANTREL_NOT_GRAY;
  if (gray == nullptr || gray->pInfo == nullptr || gray->pInfo->biBitCount != 8) return 0;
  const autoclip::CornerSearch search = autoclip::search_image(*gray);
  result->verdict = autoclip::verdict_of(search);
  if (result->verdict == VANTREL_OUT_OF_MEMORY) return 0;
  if (search.has_lines()) {
    for (const vantrel::geometry::Side side : vantrel::geometry::kSides) {
      const autoclip::FoundSide& found = search.sides[side];
      result->side[static_cast<int>(side)] = {found.line.a, found.line.b, found.line.c, found.found ? 1 : 0};
    }
  }
  if (search.has_corners()) {
    autoclip::write(search.corners, result->corners);
    autoclip::write(search.box, result->box);
  }
  return result->verdict == VANTREL_CORNERS_FOUND ? 1 : 0;
}

bool AutoDetectCorner(BITMAPPTR* image, float* corners, float* box) {
  return image != nullptr && autoclip::detect_by_gradient(*image, corners, box) == 1;
}

int vantrel_find_gradient_corners(const BITMAPPTR* gray, float* corners, float* box) {
  return gray == nullptr ? 0 : autoclip::detect_by_gradient(*gray, corners, box);
}

int CalcPointCenter2(unsigned char* edge, unsigned char* dir, typePoint* points, int& count, int rowFrom, int rowTo,
                     int colFrom, int colTo, int stride, int dirValue) {
  int found = 0;
  vantrel::lines::for_each_edge({edge, rowTo, colTo, stride}, {dir, rowTo, colTo, stride},
                                {{rowFrom, rowTo}, {colFrom, colTo}}, dirValue, [&](int r, int c) {
                                  points[found++] = {static_cast<float>(r), static_cast<float>(c)};
                                });
  count = found;
  return 1;
}

int CalcPointCenter(unsigned char* edge, unsigned char* dir, float* points, int& count, int rows, int cols,
                    int dirValue) {
  int found = 0;
  vantrel::lines::for_each_edge({edge, rows, cols, cols}, {dir, rows, cols, cols}, {{0, rows}, {0, cols}}, dirValue,
                                [&](int r, int c) {
                                  points[2 * std::ptrdiff_t{found}] = static_cast<float>(r);
                                  points[2 * std::ptrdiff_t{found} + 1] = static_cast<float>(c);
                                  ++found;
                                });
  count = found;
  return 1;
}

typePoint CalcUnknownFun(double a, double b, double c, double d, double e, double f) {
  const autoclip::Corner at = autoclip::solve_two(a, b, c, d, e, f);
  return {at.y, at.x};
}

bool CalIntersectPoint(double* lineNormal, double* lineDistance, float* corners) {
  const autoclip::Intersections found = autoclip::intersect(autoclip::read_lines(lineNormal, lineDistance));
  autoclip::write(found.corners, found.count, corners);
  return found.complete();
}

int comp_ycoord(const void* p, const void* q) {
  return autoclip::compare_y(*static_cast<const float*>(p), *static_cast<const float*>(q));
}

bool VerifyCorrectLoc(float* corners, float* box, int rows, int cols) {
  return autoclip::judge(autoclip::placed_in_image(autoclip::read_corners(corners), rows, cols), rows, cols, corners,
                         box);
}

bool VerifyCorrectLoc_M(float* box, float* corners, int rows, int cols) {
  return autoclip::judge(autoclip::moved_into_columns(autoclip::read_corners(corners), cols), rows, cols, corners, box);
}

int SolveMultiUnknownFunc(double* coeffs, float* from, float* to, int n) {
  const auto equations = static_cast<std::size_t>(std::clamp(n, 0, 8));
  autoclip::solve_mapping({from, equations}, {to, equations}, {coeffs, equations});
  return 1;
}

float Get_U(double a, double b, double c, double d, int x, int y) { return autoclip::map_coordinate(a, b, c, d, x, y); }

float Get_V(double a, double b, double c, double d, int x, int y) { return autoclip::map_coordinate(a, b, c, d, x, y); }

int Bilinear(float col, float row, unsigned char* plane, int rows, int cols, int stride, int /*depth*/) {
  return autoclip::sample({plane, rows, cols, stride}, col, row);
}

bool ConvertImg2(BITMAPPTR* src, BITMAPPTR* dst, double* coeffs, double* rect, int depth) {
  autoclip::warp_image(*src, *dst, coeffs, autoclip::area_of(rect), src->pInfo->biWidth, depth);
  return true;
}

bool ConvertImg(BITMAPPTR* src, BITMAPPTR* dst, double* coeffs, double* rect, int depth) {
  const autoclip::WarpArea area = autoclip::area_of(rect);
  autoclip::warp_image(*src, *dst, coeffs, area, area.width, depth);
  return true;
}

bool ConvertImg3(BITMAPPTR* src, BITMAPPTR* dst, double* /*coeffs*/, double* rect, int depth) {
  const autoclip::WarpArea area = autoclip::area_of(rect);
  const int channels = autoclip::channels_of(depth);
  // With 8 bits the rows come out reversed; in colour the picture stays upright.
  autoclip::copy_area(image::pixels_of(*src), autoclip::target_with_stride(*dst, area.width, channels), channels, area,
                      channels == 1);
  return true;
}
