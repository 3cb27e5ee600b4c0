/**
 * @file hough.h
 * @brief The Hough vote that all border searches share: centred points, split votes, peaks, lines.
 *
 * A line is x cos(t) + y sin(t) = rho, x a column and y a memory row, both relative to the image's centre (cols / 2,
 * rows / 2); t is in whole degrees. A cell's angle index is t, its distance index is rho in whole pixels plus the
 * longer side of the image.
 */
#ifndef VANTREL_LINES_HOUGH_H
#define VANTREL_LINES_HOUGH_H

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <utility>

#include "geometry/hough.h"
#include "geometry/line.h"
#include "geometry/span.h"
#include "image/work_array.h"
#include "lines/dense_votes.h"
#include "lines/edge_maps.h"
#include "lines/kernels.h"

namespace vantrel::lines {

using geometry::AngleSpan;
using Peak = geometry::Peak<double>;

/** The angles of a vote or of a search, in increasing order: one span, or two around the vertical. */
struct Angles {
  AngleSpan low;
  AngleSpan high{};

  constexpr int size() const { return low.size() + high.size(); }
};

/** Sines and cosines of 0 to 179 degrees, from wherever they are kept. */
struct AngleTables {
  const double* sin;
  const double* cos;
};

/** The tables themselves. */
struct DegreeTables {
  double sin[180];
  double cos[180];

  DegreeTables();
  operator AngleTables() const { return {sin, cos}; }
};

/** The centre of an image, from which points are counted in the vote. */
struct Centre {
  int row;
  int col;

  Centre(int rows, int cols) : row(rows / 2), col(cols / 2) {}
  EdgePoint relative(const EdgePoint& point) const {
    return {point.row - static_cast<float>(row), point.col - static_cast<float>(col)};
  }
};

/** What the cells of one angle take for an image of that size. */
std::int64_t bytes_per_angle(int rows, int cols);

/** Where points lie, relative to the centre; bounds included. */
struct PointBox {
  double row_min;
  double row_max;
  double col_min;
  double col_max;
};

/** The votes of edge points for the lines of one image. */
class HoughAccumulator {
 public:
  /**
   * Allocates cells for lines of these angles; check `ready` before use.
   *
   * @param area the pixels that may vote, where those outside do not: then there are no cells but for their lines.
   */
  HoughAccumulator(int rows, int cols, const Angles& voted, const AngleTables& tables,
                   std::optional<geometry::Rect> area = std::nullopt);

  bool ready() const { return cells_.ready(); }

  /** Gives every point, relative to the centre, one vote per angle, split between the two distances next to it. */
  void vote(std::span<const EdgePoint> centred_points);

  /**
   * The same for many points, all there are: cells are summed when they are asked for, as far as they may be the
   * strongest. False when there is no memory for that, and nothing has voted.
   */
  bool vote(PointMap&& points);

  /**
   * The first strongest cell of the searched angles, by distance, then angle; cells near `excluded` are passed over.
   *
   * @param least so many votes are wanted: when no cell has them, another one that has fewer may be told.
   */
  Peak strongest(const Angles& searched, const Peak* excluded = nullptr, int least = 0);

  /** The distance of a peak's line from the image's origin: the line's c. */
  double distance(const Peak& peak) const;

  /** The line of a peak, every value rounded to single precision. */
  geometry::Line line(const Peak& peak) const;

 private:
  int column(int angle) const;
  VoteSheet sheet();
  geometry::Span distances_of(const PointBox& box) const;
  geometry::Span distances_within(const geometry::Rect& area) const;
  bool reach(std::span<const EdgePoint> centred_points);
  void sum_group(int angle, int group);
  void look_in(int angle, geometry::Span distances, Peak& best) const;
  void look_around(int angle, geometry::Span distances, const Peak* excluded, Peak& best) const;
  void look_in_all(const Angles& searched, const Peak* excluded, Peak& best) const;
  void look_in_bounded(const Angles& searched, const Peak* excluded, int least, Peak& best);

  Centre centre_;
  Angles voted_;
  AngleTables tables_;
  std::array<double, kMostAngles> cos_; /**< of the voted angles, one after the other */
  std::array<double, kMostAngles> sin_;
  int zero_;                 /**< the distance index of rho = 0 */
  geometry::Span distances_; /**< those that have cells */
  std::size_t stride_;
  image::WorkArray<double> cells_;
  geometry::Span reached_; /**< where votes may lie */
  DenseVotes dense_;       /**< when they are summed only on demand */
};

/** Hands points to a search in blocks, moved to the image's centre; the last ones when it ends. */
template <class Search>
class PointFeed {
 public:
  PointFeed(Search& search, int rows, int cols) : search_(search), centre_(rows, cols) {}
  PointFeed(const PointFeed&) = delete;
  PointFeed& operator=(const PointFeed&) = delete;
  ~PointFeed() { flush(); }

  /** Returns the point as it votes. */
  EdgePoint add(const EdgePoint& point) {
    if (count_ == block_.size()) flush();
    return block_[count_++] = centre_.relative(point);
  }

 private:
  void flush() {
    search_.vote(std::span(block_).first(count_));
    count_ = 0;
  }

  Search& search_;
  Centre centre_;
  std::array<EdgePoint, 256> block_;
  std::size_t count_ = 0;
};

/**
 * Whether so many points are better bounded and summed than let vote one after the other.
 *
 * @param area   where they lie: long enough both ways for blocks of cells and slices to be filled.
 * @param pixels those of the area that may be points.
 */
inline bool are_many(std::int64_t points, const geometry::Rect& area, std::int64_t pixels) {
  constexpr int kLeast = 4096;
  constexpr int kLeastSide = 64;
  constexpr int kPixelsAPoint = 32;
  return kernels->bounds_many && points >= kLeast && points >= pixels / kPixelsAPoint &&
         std::min(area.rows.size(), area.cols.size()) >= kLeastSide;
}

/** Lets the edge points of a band vote. */
template <class Search>
void vote_band(const EdgeMaps& maps, const geometry::Rect& band, Direction direction, bool many, Search& search) {
  if (many) {
    PointMap points(maps, band, direction);
    if (points.ready() && search.vote(std::move(points))) return;
  }
  PointFeed feed(search, maps.edge().rows, maps.edge().cols);
  maps.for_each_point(band, direction, [&](int r, int c) { feed.add({static_cast<float>(r), static_cast<float>(c)}); });
}

/** The row or column at which a line of this distance is taken to run. */
int crossing(double distance);

}  // namespace vantrel::lines

#endif
