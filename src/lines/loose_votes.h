/**
 * @file loose_votes.h
 * @brief Quick bounds for the votes of all lines, many of which are so weak that nothing closer need be known of them.
 */
#ifndef VANTREL_LINES_LOOSE_VOTES_H
#define VANTREL_LINES_LOOSE_VOTES_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "geometry/span.h"
#include "image/work_array.h"
#include "lines/kernels.h"
#include "lines/point_map.h"

namespace vantrel::lines {

/** How the lines of an angle lie on a map: distance = across * byte + along * slice, both counted from the centre. */
struct Slant {
  double across; /**< cosine of 30 degrees at least, or at most its negative: cells lie about a byte apart */
  double along;
};

/**
 * What the lines of some angles get at most, for those together that pass slice 0 between the same two bytes. That is
 * up to three times what they get, and takes an addition for each byte and angle, nothing else.
 */
class LooseVotes {
 public:
  /** None, and not ready. */
  LooseVotes() : lines_{} {}

  /** Check `ready` before use. */
  LooseVotes(const PointMap& points, std::span<const Slant> slants);

  bool ready() const { return sums_.ready() && rows_.ready(); }

  /** No less than what any line of the angle gets that passes slice 0 within these places, in whole votes. */
  int most(int angle, double from, double to) const;

 private:
  /** The lines of an angle by the place where they pass slice 0, the first of which may have points. */
  struct Lines {
    std::int64_t slope; /**< how much further they pass the next slice, in 2^-32 bytes */
    int first;
  };

  /** Slices that are added at once, and where their points are. */
  struct Tile {
    geometry::Span slices;
    std::array<geometry::Span, 16> spans;
    std::size_t count;

    std::span<const geometry::Span> all() const { return std::span(spans).first(count); }
  };

  static Tile tile_of(const PointMap& points, geometry::Span slices);
  void spread_slices(const PointMap& points, const Tile& tile);
  void add_slices(const Tile& tile, std::size_t angle);
  unsigned char* row(int index, int piece) {
    return rows_.get() + (static_cast<std::ptrdiff_t>(index) * kPieces + piece) * width_;
  }

  std::ptrdiff_t width_ = 0;
  std::size_t stride_ = 0;
  int slices_ = 0;
  std::array<Lines, kMostAngles> lines_;
  image::WorkArray<unsigned char> rows_; /**< of so many slices as are added at once */
  image::WorkArray<std::uint16_t> sums_;
};

}  // namespace vantrel::lines

#endif
