#include "lines/exports.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <new>

#include "image/work_array.h"
#include "lines/border_search.h"
#include "lines/edges.h"
#include "lines/exports_lines.h"
#include "lines/pair_search.h"
#include "lines/verify_density.h"

namespace vantrel::lines {
namespace {

using geometry::Rect;
using geometry::Side;
using image::ConstPixels;

/** A byte map as a view: rows padded to whole 32-bit words. */
ConstPixels padded_map(const unsigned char* bytes, int rows, int cols) {
  return {bytes, rows, cols, static_cast<std::ptrdiff_t>(image::stride_bytes(cols, 8))};
}

/** Levels of an image that has no last row: its caller knows where it ends. */
Levels trusted_levels(const unsigned char* gray, int stride) {
  constexpr int kEndless = std::numeric_limits<int>::max();
  return {{gray, kEndless, kEndless, stride}, kEndless};
}

Rect box_of(const MYRECT& rect) { return {{rect.bottom, rect.top + 1}, {rect.left, rect.right + 1}}; }

template <class Visit>
void for_each_box(const _BNODE* line, Visit visit) {
  if (line == nullptr) return;
  for (const _BNODE* node = line->child; node != nullptr; node = node->next) visit(box_of(node->rect));
}

/** The boxes of a line's characters. */
class LineBoxes {
 public:
  explicit LineBoxes(const _BNODE* line) : boxes_(count(line)) {
    if (!ready()) return;
    Rect* box = boxes_.get();
    for_each_box(line, [&](const Rect& found) { *box++ = found; });
  }

  bool ready() const { return boxes_.ready(); }
  std::span<const Rect> all() const { return boxes_.all(); }

 private:
  static std::size_t count(const _BNODE* line) {
    std::size_t boxes = 0;
    for_each_box(line, [&](const Rect&) { ++boxes; });
    return boxes;
  }

  image::WorkArray<Rect> boxes_;
};

template <class Test>
bool accepted_by(Test test, const _BNODE* line) {
  for_each_box(line, [&](const Rect& box) { test.add(box); });
  return test.accepts();
}

/** Moves the caller's points to the image's centre and lets them vote. */
template <class Search>
void centre_and_vote(std::span<typePoint> points, int rows, int cols, Search& search) {
  PointFeed feed(search, rows, cols);
  for (typePoint& point : points) {
    const EdgePoint centred = feed.add({point.row, point.col});
    point = {centred.row, centred.col};
  }
}

/** The direction of a class number; one that makes no border for all others. */
Direction border_direction(int dir_class) {
  const bool makes_border =
      dir_class == static_cast<int>(Direction::kAcrossRows) || dir_class == static_cast<int>(Direction::kAlongRows);
  return makes_border ? static_cast<Direction>(dir_class) : Direction::kNone;
}

/** The arguments of a search for one border. */
struct SearchArguments {
  unsigned char* gray;
  _BNODE* line;
  unsigned char* edge;
  LineArrays lines;
  std::span<typePoint> points;
  int rows;
  int cols;
  int dir_class;
  AngleTables tables;
  int side;
  short wb_class;
};

int search_border(const SearchArguments& given, const HorizontalRules& rules) {
  if (given.points.size() < kLeastPoints) return 0;
  const Direction direction = border_direction(given.dir_class);
  // Points that make no border are asked for no components, and the line need not be one.
  const LineBoxes boxes(direction == Direction::kNone ? nullptr : given.line);
  const BorderScene scene{padded_levels(padded_map(given.gray, given.rows, given.cols)),
                          padded_map(given.edge, given.rows, given.cols), boxes.all(), static_cast<Side>(given.side),
                          static_cast<Brightness>(given.wb_class)};
  BorderSearch search(scene, direction, given.tables, rules);
  if (!boxes.ready() || !search.ready()) return 0;
  centre_and_vote(given.points, given.rows, given.cols, search);
  const Border border = search.accept();
  if (border.settled != Settled::kNothing) given.lines.write_normal(scene.side, border.line);
  if (border.settled == Settled::kLine) given.lines.write_distance(scene.side, border.line);
  return static_cast<int>(border.acceptance);
}

}  // namespace
}  // namespace vantrel::lines

namespace lines = vantrel::lines;
using vantrel::geometry::Side;

void Sobel_Operator(unsigned char* gray, unsigned char* edge, unsigned char* dir, int rows, int cols, int stride,
                    MYRECT interior) {
  // Here, and only here, `top` is the lower row.
  lines::mark_edges({gray, rows, cols, stride}, {edge, rows, cols, stride}, {dir, rows, cols, stride},
                    {{interior.top, interior.bottom}, {interior.left, interior.right}});
}

int EstimateWB(unsigned char* gray, int rowFrom, int rowTo, int colFrom, int colTo, int stride) {
  return static_cast<int>(
      lines::brightness_of(lines::trusted_levels(gray, stride), {{rowFrom, rowTo}, {colFrom, colTo}}));
}

int EstimateBlkPixel(unsigned char* gray, int rowFrom, int rowTo, int colFrom, int colTo, int stride, int /*side*/) {
  return lines::mostly_dark(lines::trusted_levels(gray, stride), {{rowFrom, rowTo}, {colFrom, colTo}}) ? 1 : 0;
}

double** MakeMatrix(int rows, int cols) {
  const std::int64_t cells = std::int64_t{rows} * cols;
  if (rows < 0 || cols < 0 || cells > std::numeric_limits<std::int32_t>::max()) return nullptr;
  // Never: so few cells are no more bytes than there can be.
  auto* block = new (std::nothrow) double[static_cast<std::size_t>(cells)]();
  if (block == nullptr) return nullptr;
  // The block is owned through the first row pointer, so even a matrix without rows has one.
  // Never: nor are so few rows.
  auto** matrix = new (std::nothrow) double*[static_cast<std::size_t>(rows > 0 ? rows : 1)];
  if (matrix == nullptr) {
    delete[] block;  // Never: it is not null.
    return nullptr;
  }
  matrix[0] = block;
  for (int k = 1; k < rows; ++k) matrix[k] = block + std::ptrdiff_t{k} * cols;
  return matrix;
}

void FreeMatrix(double** m) {
  delete[] m[0];  // Never: every matrix has a block.
  m[0] = nullptr;
  delete[] m;  // Never: it was looked into.
}

int Compute_Hough_Angle(double* lineNormal, double* lineDistance, typePoint* points, int rows, int cols, int count,
                        int dirClass, double* sinTable, double* cosTable) {
  if (count < lines::kLeastPairPoints) return 0;
  const lines::Direction direction = lines::border_direction(dirClass);
  const bool horizontal = direction == lines::Direction::kAcrossRows;
  lines::PairSearch search(rows, cols, horizontal, {sinTable, cosTable});
  if (!search.ready()) return 0;
  lines::centre_and_vote({points, static_cast<std::size_t>(count)}, rows, cols, search);
  if (direction == lines::Direction::kNone) return 1;
  const lines::BorderPair pair = search.find();
  if (!pair.found) return 0;
  const lines::LineArrays slots{lineNormal, lineDistance};
  slots.write(horizontal ? Side::kTop : Side::kLeft, pair.first);
  slots.write(horizontal ? Side::kBottom : Side::kRight, pair.second);
  return 1;
}

int Compute_Hough_Angle2(unsigned char* gray, _BNODE* line, unsigned char* edge, double* lineNormal,
                         double* lineDistance, typePoint* points, int rows, int cols, int count, int dirClass,
                         double* sinTable, double* cosTable, int side, short wbClass) {
  return lines::search_border({gray,
                               line,
                               edge,
                               {lineNormal, lineDistance},
                               {points, static_cast<std::size_t>(std::max(count, 0))},
                               rows,
                               cols,
                               dirClass,
                               {sinTable, cosTable},
                               side,
                               wbClass},
                              lines::kTiltedBorders);
}

int Compute_Hough_Angle3(unsigned char* gray, _BNODE* line, unsigned char* edge, double* lineNormal,
                         double* lineDistance, typePoint* points, int rows, int cols, int count, int dirClass,
                         double* sinTable, double* cosTable, int side, short wbClass) {
  return lines::search_border({gray,
                               line,
                               edge,
                               {lineNormal, lineDistance},
                               {points, static_cast<std::size_t>(std::max(count, 0))},
                               rows,
                               cols,
                               dirClass,
                               {sinTable, cosTable},
                               side,
                               wbClass},
                              lines::kLevelBorders);
}

bool VerifyCorrectLineV_0(unsigned char* edge, double* /*lineNormal*/, double* /*lineDistance*/, int L1, int L2,
                          int rows, int cols, int side) {
  if (!lines::worth_comparing(L1, L2, rows)) return false;
  const vantrel::image::ConstPixels map = lines::padded_map(edge, rows, cols);
  const auto row_bytes = static_cast<int>(map.stride);
  const lines::EdgeHistogram histogram(map, row_bytes);
  return histogram.ready() && lines::denser_beyond_first(histogram, L1, L2, static_cast<Side>(side), row_bytes);
}

bool VerifyCorrectLineV_1(unsigned char* edge, float* /*a*/, float* /*b*/, int L, int rows, int rowBytes, int side) {
  const lines::EdgeHistogram histogram({edge, rows, rowBytes, rowBytes}, rowBytes);
  return histogram.ready() && lines::clear_beyond(histogram, L, static_cast<Side>(side), rowBytes);
}

bool VerifyCorrectLineV_2(_BNODE* line, int L, int rows, int cols, int side, short /*wbClass*/) {
  return lines::accepted_by(lines::BandClutter(L, rows, cols, static_cast<Side>(side)), line);
}

bool VerifyCorrectLineV_3(_BNODE* line, int L, int rows, int cols, int /*side*/, short /*wbClass*/) {
  return lines::accepted_by(lines::CutComponents(L, rows, cols, lines::kTiltedCuts), line);
}

bool VerifyCorrectLineV_3_ORVA(_BNODE* line, int L, int rows, int cols, int /*side*/, short /*wbClass*/) {
  return lines::accepted_by(lines::CutComponents(L, rows, cols, lines::kLevelCuts), line);
}

bool VerifyCorrectLineH_0(_BNODE* line, int L, int rows, int cols, int side, short /*wbClass*/) {
  return lines::accepted_by(lines::SideClutter(L, rows, cols, static_cast<Side>(side)), line);
}
